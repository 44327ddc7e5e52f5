#include "support/mesh.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>
#include <stdexcept>

namespace brelan::test {

namespace {

// What differs from kind to kind in the file.
struct FileForm {
    int node_codes;
    bool edges;   // IEX and IEY, always 1
    bool values;  // temperature or head, and CF
    bool midsides;
    int element_codes;
    int element_reals;
    const char* node_heading;
    const char* continuum_heading;
};

const FileForm& form_of(Kind kind) {
    static const std::array<FileForm, 4> forms{{
        {5, true, false, true, 4, 1, "    NODE  ISX  ISY  IFX  IFY  IRZ  IEX  IEY       XC            YC ",
         "    NEL     I1     I2     I3     I4     M5     M6     M7     M8 MATC    KS   KF INTR INTS   TBJWL"},
        {2, false, true, false, 1, 0,
         "    NODE   ID  IDF          XC            YC             T            CF ",
         "    NEL     I1     I2     I3     I4 MATNO  IDH"},
        {2, false, true, false, 1, 0,
         "    NODE   ID  IDF          XC            YC             H            CF ",
         "    NEL     I1     I2     I3     I4 MATNO  IDH"},
        {3, true, false, true, 0, 2, "    NODE  IDX  IDY  IDT  IEX  IEY       XC            YC ",
         "    NEL     I1     I2     I3     I4     M5     M6     M7     M8  MATC   THIC        DEN"},
    }};
    return forms[static_cast<std::size_t>(kind)];
}

std::string node_text(const MeshNode& node, const FileForm& form) {
    std::string line = " " + i_field(node.number, 6);
    for (int k = 0; k < form.node_codes; ++k)
        line += i_field(node.codes.at(static_cast<std::size_t>(k)), 5);
    if (form.edges)
        line += i_field(1, 5) + i_field(1, 5);
    line += " " + e_field(node.x, 13, 6) + " " + e_field(node.y, 13, 6) + " ";
    if (form.values)
        line += e_field(node.value, 13, 6) + " " + e_field(node.factor, 13, 6) + " ";
    return line;
}

std::string element_text(const MeshElement& element, const FileForm& form) {
    std::string line = " " + i_field(element.number, 6);
    for (const int corner : element.corners)
        line += " " + i_field(corner, 6);
    if (form.midsides) {
        for (const int midside : element.midsides)
            line += " " + i_field(midside, 6);
    } else {
        line += " ";
    }
    line += i_field(element.material, 5);
    for (int k = 0; k < form.element_codes; ++k)
        line += i_field(element.codes.at(static_cast<std::size_t>(k)), 5);
    for (int k = 0; k < form.element_reals; ++k) {
        line += e_field(element.reals.at(static_cast<std::size_t>(k)), 11, 4);
    }
    return line;
}

std::string line_text(const MeshLine& line) {
    std::string text;
    for (const int value : {line.number, line.i, line.j, line.material, 1})
        text += " " + i_field(value, 6);
    return text;
}

// Takes fixed columns off a record, one after the other.
class Columns {
public:
    explicit Columns(std::string line) : line_(std::move(line)) {}

    void skip(std::size_t count) { next_ += count; }

    int integer(std::size_t width) {
        const std::string field = take(width);
        char* end = nullptr;
        const long value = std::strtol(field.c_str(), &end, 10);
        if (field.find_first_not_of(' ') == std::string::npos || *end != '\0')
            sound_ = false;
        return static_cast<int>(value);
    }

    double real(std::size_t width) {
        const std::string field = take(width);
        char* end = nullptr;
        const double value = std::strtod(field.c_str(), &end);
        if (field.find_first_not_of(' ') == std::string::npos || *end != '\0')
            sound_ = false;
        return value;
    }

    bool sound() const { return sound_; }

private:
    std::string take(std::size_t width) {
        const std::string field = next_ < line_.size() ? line_.substr(next_, width) : std::string();
        next_ += width;
        return field;
    }

    std::string line_;
    std::size_t next_ = 0;
    bool sound_ = true;
};

// Reads the lines of a mesh file one after the other and notes what is wrong.
class MeshReader {
public:
    MeshReader(std::string_view text, Kind kind) : lines_(lines_of(text)), form_(form_of(kind)) {
        check_.mesh.kind = kind;
    }

    MeshCheck read() {
        std::string name = next();
        name.erase(name.find_last_not_of(' ') + 1);
        check_.mesh.name = name;
        next();
        read_counts();
        if (check_.problems.empty())
            read_sections();
        read_end();
        if (check_.problems.empty())
            compare_with_own_text();
        check_numbers();
        check_corners();
        return std::move(check_);
    }

private:
    void complain(const std::string& text) {
        check_.problems.push_back("line " + std::to_string(line_) + ": " + text);
    }

    std::string next() {
        if (line_ >= lines_.size()) {
            ++line_;
            complain("the file ends here");
            return {};
        }
        return lines_[line_++];
    }

    void read_counts() {
        Columns columns(next());
        columns.skip(1);
        for (std::size_t k = 0; k < 4; ++k) {
            if (k > 0)
                columns.skip(3);
            check_.counts[k] = columns.integer(5);
            if (check_.counts[k] < 0)
                complain("a count is negative");
        }
        if (!columns.sound())
            complain("no four counts");
    }

    void read_sections() {
        next();
        next();
        for (int n = 0; n < check_.counts[0] && line_ < lines_.size(); ++n)
            read_node();
        if (check_.counts[1] > 0) {
            next();
            next();
            for (int n = 0; n < check_.counts[1] && line_ < lines_.size(); ++n)
                read_element();
        }
        read_lines(check_.counts[2], check_.mesh.beams);
        read_lines(check_.counts[3], check_.mesh.trusses);
    }

    void read_node() {
        Columns columns(next());
        MeshNode node;
        columns.skip(1);
        node.number = columns.integer(6);
        for (int k = 0; k < form_.node_codes; ++k)
            node.codes.push_back(columns.integer(5));
        if (form_.edges)
            columns.skip(10);
        columns.skip(1);
        node.x = columns.real(13);
        columns.skip(1);
        node.y = columns.real(13);
        if (form_.values) {
            columns.skip(1);
            node.value = columns.real(13);
            columns.skip(1);
            node.factor = columns.real(13);
        }
        if (!columns.sound())
            complain("not the columns of a node");
        check_.mesh.nodes.push_back(node);
    }

    void read_element() {
        Columns columns(next());
        MeshElement element;
        columns.skip(1);
        element.number = columns.integer(6);
        for (int& corner : element.corners) {
            columns.skip(1);
            corner = columns.integer(6);
        }
        if (form_.midsides) {
            for (int& midside : element.midsides) {
                columns.skip(1);
                midside = columns.integer(6);
            }
        } else {
            columns.skip(1);
        }
        element.material = columns.integer(5);
        for (int k = 0; k < form_.element_codes; ++k)
            element.codes.push_back(columns.integer(5));
        for (int k = 0; k < form_.element_reals; ++k)
            element.reals.push_back(columns.real(11));
        if (!columns.sound())
            complain("not the columns of a continuum element");
        check_.mesh.continuum.push_back(element);
    }

    void read_lines(int count, std::vector<MeshLine>& lines) {
        if (count <= 0)
            return;
        next();
        next();
        for (int n = 0; n < count && line_ < lines_.size(); ++n) {
            Columns columns(next());
            MeshLine line;
            for (int* word : {&line.number, &line.i, &line.j, &line.material}) {
                columns.skip(1);
                *word = columns.integer(6);
            }
            if (!columns.sound())
                complain("not the columns of a beam or truss");
            lines.push_back(line);
        }
    }

    void read_end() {
        const std::array<std::size_t, 4> found{check_.mesh.nodes.size(), check_.mesh.continuum.size(),
                                               check_.mesh.beams.size(), check_.mesh.trusses.size()};
        for (std::size_t k = 0; k < 4; ++k) {
            if (static_cast<std::size_t>(std::max(check_.counts[k], 0)) != found[k]) {
                complain("count " + std::to_string(k + 1) + " of the header is not that of the records");
            }
        }
        check_.mesh.closing_lines = line_ + 2 == lines_.size();
        if (line_ != lines_.size() && !check_.mesh.closing_lines)
            complain("unknown lines behind the last section");
    }

    // Everything that the file shows must come out again when it is written in the columns of its kind.
    void compare_with_own_text() {
        const std::string difference = first_difference(lines_of(check_.mesh.text()), lines_);
        if (!difference.empty())
            check_.problems.push_back("not the layout of the kind: " + difference);
    }

    void check_numbers() {
        int last = 0;
        for (const auto& node : check_.mesh.nodes)
            last = ascending("node", node.number, last);
        std::set<int> used;
        last = 0;
        for (const auto& element : check_.mesh.continuum)
            last = element_number(element.number, last, used);
        last = 0;
        for (const auto& beam : check_.mesh.beams)
            last = element_number(beam.number, last, used);
        last = 0;
        for (const auto& truss : check_.mesh.trusses)
            last = element_number(truss.number, last, used);
    }

    int ascending(const char* what, int number, int last) {
        if (number <= last || number > 99990) {
            check_.problems.push_back(std::string(what) + " " + std::to_string(number) + " follows " +
                                      std::to_string(last));
        }
        return number;
    }

    int element_number(int number, int last, std::set<int>& used) {
        if (!used.insert(number).second) {
            check_.problems.push_back("element " + std::to_string(number) + " stands twice");
        }
        return ascending("element", number, last);
    }

    void check_corners() {
        std::map<int, const MeshNode*> nodes;
        for (const auto& node : check_.mesh.nodes)
            nodes[node.number] = &node;
        for (const auto& element : check_.mesh.continuum) {
            double twice = 0.0;
            const std::size_t corners = element.corners[3] == 0 ? 3 : 4;
            for (std::size_t k = 0; k < corners; ++k) {
                const MeshNode* a = corner(nodes, element.number, element.corners[k]);
                const MeshNode* b = corner(nodes, element.number, element.corners[(k + 1) % corners]);
                if (a != nullptr && b != nullptr)
                    twice += a->x * b->y - b->x * a->y;
            }
            check_.area += std::fabs(twice) / 2.0;
            if (twice < 0.0)
                ++check_.clockwise;
        }
        for (const auto* lines : {&check_.mesh.beams, &check_.mesh.trusses}) {
            for (const auto& line : *lines) {
                corner(nodes, line.number, line.i);
                corner(nodes, line.number, line.j);
            }
        }
    }

    const MeshNode* corner(const std::map<int, const MeshNode*>& nodes, int element, int number) {
        const auto found = nodes.find(number);
        if (found != nodes.end())
            return found->second;
        check_.problems.push_back("element " + std::to_string(element) + " has a corner " +
                                  std::to_string(number) + " that is no node");
        return nullptr;
    }

    std::vector<std::string> lines_;
    const FileForm& form_;
    MeshCheck check_;
    std::size_t line_ = 0;
};

}  // namespace

std::string i_field(long long value, int width) {
    const std::string digits = std::to_string(value);
    const auto columns = static_cast<std::size_t>(width);
    if (digits.size() > columns)
        return std::string(columns, '*');
    return std::string(columns - digits.size(), ' ') + digits;
}

std::string e_field(double value, int width, int digits) {
    char scientific[64];
    std::snprintf(scientific, sizeof scientific, "%.*E", digits - 1, std::fabs(value));
    const std::string text = scientific;
    const std::size_t mark = text.find('E');
    const int exponent = value == 0.0 ? 0 : std::atoi(text.c_str() + mark + 1) + 1;
    std::string mantissa = text.substr(0, mark);
    if (const std::size_t point = mantissa.find('.'); point != std::string::npos)
        mantissa.erase(point, 1);
    char power[16];
    std::snprintf(power, sizeof power, "E%c%02d", exponent < 0 ? '-' : '+', std::abs(exponent));
    const std::string field = (value < 0.0 ? "-0." : "0.") + mantissa + power;
    const auto columns = static_cast<std::size_t>(width);
    if (field.size() > columns)
        throw std::runtime_error("a value is too wide for its field");
    return std::string(columns - field.size(), ' ') + field;
}

std::string Mesh::text() const {
    const FileForm& form = form_of(kind);
    std::string result = padded(name) + "\n  NUMNP   NCONT   NBEAM   NTRUS \n";
    result += " " + i_field(static_cast<long long>(nodes.size()), 5);
    for (const std::size_t count : {continuum.size(), beams.size(), trusses.size()}) {
        result += "   " + i_field(static_cast<long long>(count), 5);
    }
    result += "\n    NODAL COORDINATES \n" + std::string(form.node_heading) + "\n";
    for (const auto& node : nodes)
        result += node_text(node, form) + "\n";
    if (!continuum.empty()) {
        result += "    CONTINUUM ELEMENT INDEX \n" + std::string(form.continuum_heading) + "\n";
        for (const auto& element : continuum)
            result += element_text(element, form) + "\n";
    }
    if (!beams.empty()) {
        result += "    BEAM ELEMENT \n    NEL      I      J   MSEC  NODEK \n";
        for (const auto& beam : beams)
            result += line_text(beam) + "\n";
    }
    if (!trusses.empty()) {
        result += "    TRUSS ELEMENT \n    NEL      I      J   MATT  NODEK \n";
        for (const auto& truss : trusses)
            result += line_text(truss) + "\n";
    }
    if (closing_lines)
        result += "     0\n     0\n";
    return result;
}

Mesh sample_mesh(Kind kind) {
    const FileForm& form = form_of(kind);
    Mesh mesh;
    mesh.kind = kind;
    mesh.name = "mesh.Mes";
    const auto node = [&](int number, double x, double y) {
        MeshNode result;
        result.number = number;
        for (int k = 0; k < form.node_codes; ++k)
            result.codes.push_back((number + k) % 2);
        result.x = x;
        result.y = y;
        if (form.values) {
            result.value = 10.0 + number;
            result.factor = 0.5;
        }
        mesh.nodes.push_back(result);
    };
    const auto element = [&](int number, std::array<int, 4> corners, int material) {
        MeshElement result;
        result.number = number;
        result.corners = corners;
        result.material = material;
        if (kind == Kind::coupled) {
            result.codes = {0, 1, 2, 2};
            result.reals = {0.25};
        } else if (kind == Kind::displacement) {
            result.reals = {1.0, 1.8};
        } else {
            result.codes = {3};
        }
        mesh.continuum.push_back(result);
    };
    node(1, 0.0, 0.0);
    node(2, 1.0, 0.0);
    node(3, 2.0, 0.0);
    node(4, 0.0, 1.0);
    node(5, 1.0, 1.0);
    node(6, 2.0, 1.0);
    node(7, 3.0, 0.0);
    element(1, {1, 2, 5, 4}, 1);
    element(2, {2, 3, 6, 5}, 2);
    element(3, {3, 7, 6, 0}, 1);
    mesh.beams = {{4, 1, 2, 1}, {5, 2, 3, 2}};
    mesh.trusses = {{6, 4, 5, 1}, {7, 5, 6, 2}};
    return mesh;
}

MeshCheck check_mesh(std::string_view text, Kind kind) {
    return MeshReader(text, kind).read();
}

MeshCheck expect_sound_mesh(const Project& project, std::string_view name, Kind kind, const char* source,
                            int line) {
    MeshCheck check = check_mesh(project.read(name), kind);
    for (const auto& problem : check.problems)
        ADD_FAILURE_AT(source, line) << name << ": " << problem;
    return check;
}

}  // namespace brelan::test
