// Writes the slope templates of the earth dam: meshes of a triangle with a finely divided slope.
//
//     slope_templates <directory>
//
// makes <directory>/Slope/ with node lines of eight values, for the coupled and displacement kinds, and
// <directory>/Slope_TH/ with node lines of seven values, for the temperature and head kinds.
//
// The triangle is made of rows of strips. Row line k runs from a point of the slope to the vertical side.
// Below it lies a line with as many sides as the chain above it, slope included, or one less:
//
//                 o----o                line k + 1
//          slope /|\   |\               the strip begins with a triangle at the slope, goes on with
//               / | \  | \              quadrilaterals, and has one more triangle about a third of the way
//              o--o--o-o--o             where the chain above has one side more
//                                       line k

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <limits>
#include <map>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "dam/slope_models.h"
#include "text/number_text.h"

namespace {

using brelan::SLOPE_MODELS;
using brelan::SlopeModel;

struct Node {
    double x = 0.0, y = 0.0;
};

struct Element {
    std::array<int, 4> corner{};  // places in Template::nodes; -1 for the fourth of a triangle
    int slope_part = -1;          // the part of the slope that is a side of it
};

struct Template {
    std::vector<Node> nodes;
    std::vector<int> slope_point;  // by node: its point on the slope from 0, the toe; -1 inside
    std::vector<Element> elements;
};

// --- the row lines ---------------------------------------------------------------------------------

// The slope point from which row line k starts: the nearest to its height.
int first_point(const SlopeModel& model, int k) {
    return (2 * k * model.divisions + model.rows) / (2 * model.rows);
}

// Sides of each row line, from the base to the top. A line has as many sides as the one below it less the
// slope parts between them, or one more. Of all choices that give the wanted count of elements, the one whose
// spacings differ least from those of the base.
std::vector<int> row_sides(const SlopeModel& model) {
    const int rows = model.rows;
    const int wanted = model.elements - model.divisions;  // sides of the lines between base and top
    struct Choice {
        double cost = std::numeric_limits<double>::infinity();
        std::pair<int, int> from;
    };
    using Reached = std::map<std::pair<int, int>, Choice>;  // by sides of the line, and sum of all so far
    std::vector<Reached> reached(static_cast<std::size_t>(rows) + 1);
    reached[0][{model.columns, 0}] = {0.0, {}};
    for (int k = 0; k < rows; ++k) {
        const bool top = k + 1 == rows;
        const int parts = first_point(model, k + 1) - first_point(model, k);
        for (const auto& [state, choice] : reached[static_cast<std::size_t>(k)]) {
            for (const int more : {0, 1}) {
                const int sides = state.first - parts + more;
                const int sum = state.second + sides;
                if (top ? sides != 0 : sides < 1 || sum > wanted)
                    continue;
                const double even = static_cast<double>(model.columns * (rows - k - 1)) / rows;
                const double off = top ? 0.0 : std::log(sides / even);
                Choice& best = reached[static_cast<std::size_t>(k) + 1][{sides, sum}];
                if (choice.cost + off * off < best.cost)
                    best = {choice.cost + off * off, state};
            }
        }
    }
    std::vector<int> sides(static_cast<std::size_t>(rows) + 1);
    std::pair<int, int> state{0, wanted};
    for (std::size_t k = sides.size(); k-- > 0;) {
        sides[k] = state.first;
        state = reached[k].at(state).from;
    }
    return sides;
}

// --- the mesh --------------------------------------------------------------------------------------

class Builder {
public:
    explicit Builder(const SlopeModel& model) : model_(model), width_(model.width), height_(model.height) {}

    Template build() {
        for (int i = 0; i <= model_.divisions; ++i)
            slope_.push_back(add_node({width_ * i / model_.divisions, height_ * i / model_.divisions}, i));
        const std::vector<int> sides = row_sides(model_);
        std::vector<int> line = row_line(0, sides[0]);
        for (int k = 0; k < model_.rows; ++k) {
            const std::vector<int> next = row_line(k + 1, sides[static_cast<std::size_t>(k) + 1]);
            fill_strip(k, line, next);
            line = next;
        }
        return std::move(mesh_);
    }

private:
    int add_node(Node node, int slope_point) {
        mesh_.nodes.push_back(node);
        mesh_.slope_point.push_back(slope_point);
        return static_cast<int>(mesh_.nodes.size()) - 1;
    }

    std::vector<int> row_line(int k, int sides) {
        const int start = slope_[static_cast<std::size_t>(first_point(model_, k))];
        const Node a = mesh_.nodes[static_cast<std::size_t>(start)];
        const Node b{width_, height_ * k / model_.rows};
        std::vector<int> line{start};
        for (int j = 1; j <= sides; ++j)
            line.push_back(add_node({a.x + (b.x - a.x) * j / sides, a.y + (b.y - a.y) * j / sides}, -1));
        return line;
    }

    void fill_strip(int k, const std::vector<int>& lower, const std::vector<int>& next) {
        const int first = first_point(model_, k);
        const int parts = first_point(model_, k + 1) - first;
        std::vector<int> upper(slope_.begin() + first, slope_.begin() + first + parts);
        upper.insert(upper.end(), next.begin(), next.end());
        const std::size_t l = lower.size() - 1, u = upper.size() - 1;
        const std::size_t more = u > l ? std::max<std::size_t>(1, (2 * u + 3) / 6) : u + 1;
        add_element({lower[0], lower[1], upper[1], -1}, first);
        for (std::size_t i = 1, j = 1; j < u; ++j) {
            const int part = static_cast<int>(j) < parts ? first + static_cast<int>(j) : -1;
            if (j == more) {
                add_element({lower[i], upper[j + 1], upper[j], -1}, part);
            } else {
                add_element({lower[i], lower[i + 1], upper[j + 1], upper[j]}, part);
                ++i;
            }
        }
    }

    void add_element(const std::array<int, 4>& corner, int slope_part) {
        mesh_.elements.push_back({corner, slope_part});
    }

    const SlopeModel& model_;
    const double width_, height_;
    Template mesh_;
    std::vector<int> slope_;
};

// --- numbers ---------------------------------------------------------------------------------------

// Fixed numbers where the slope asks for them, the others in the order of the places, without a gap.
template <class Fixed>
std::vector<int> numbers_of(std::size_t count, Fixed fixed) {
    std::vector<int> number(count, 0);
    std::vector<bool> taken(count + 1, false);
    for (std::size_t i = 0; i < count; ++i) {
        number[i] = fixed(i);
        taken.at(static_cast<std::size_t>(number[i])) = true;
    }
    std::size_t next = 1;
    for (int& n : number) {
        if (n != 0)
            continue;
        while (taken[next])
            ++next;
        n = static_cast<int>(next++);
    }
    return number;
}

// Places in ascending order of their numbers.
std::vector<std::size_t> by_number(const std::vector<int>& number) {
    std::vector<std::size_t> place(number.size());
    for (std::size_t i = 0; i < number.size(); ++i)
        place[static_cast<std::size_t>(number[i]) - 1] = i;
    return place;
}

// --- the files -------------------------------------------------------------------------------------

enum class Set { mechanical, scalar };

void put_integer(std::string& text, int width, int value) {
    std::array<char, 8> field{};
    brelan::put_integer(field.data(), width, value);
    text.append(field.data(), static_cast<std::size_t>(width));
}

void put_real(std::string& text, double value) {
    std::array<char, 14> field{};
    brelan::put_exponent(field.data(), 13, 6, static_cast<float>(value));
    field[13] = ' ';
    text.append(field.data(), field.size());
}

void put_node(std::string& text, int number, const Node& node, Set set) {
    text += ' ';
    put_integer(text, 6, number);
    const int words = set == Set::scalar ? 2 : 5;
    for (int word = 0; word < words; ++word)
        put_integer(text, 5, word < 2 ? 0 : 1);
    text += ' ';
    put_real(text, node.x);
    put_real(text, node.y);
    if (set == Set::scalar) {
        put_real(text, 0.0);
        put_real(text, 1.0);
    }
    text += '\n';
}

void put_element(std::string& text, int number, const std::array<int, 4>& corner, Set set) {
    for (const int word : {number, corner[0], corner[1], corner[2], corner[3]}) {
        text += ' ';
        put_integer(text, 6, word);
    }
    if (set == Set::scalar)
        text += "     1    0\n";
    else
        text += "      0      0      0      0    1    0    1    2    2 0.0000E+00\n";
}

std::string file_name(const SlopeModel& model) {
    return std::string(model.file.substr(model.file.rfind('\\') + 1));
}

std::string text_of(const SlopeModel& model, const Template& mesh, Set set) {
    const std::vector<int> node = numbers_of(mesh.nodes.size(), [&](std::size_t i) {
        return mesh.slope_point[i] < 0 ? 0 : model.node(mesh.slope_point[i] + 1).value;
    });
    const std::vector<int> element = numbers_of(mesh.elements.size(), [&](std::size_t i) {
        return mesh.elements[i].slope_part < 0 ? 0 : model.element(mesh.elements[i].slope_part).value;
    });
    const bool scalar = set == Set::scalar;
    std::string text = "* Slope template of the earth dam, written by tools/slope_templates\n";
    text += file_name(model);
    text += "\n  NUMNP   NCONT   NBEAM   NTRUS \n ";
    put_integer(text, 5, static_cast<int>(node.size()));
    text += "   ";
    put_integer(text, 5, static_cast<int>(element.size()));
    text += "       0       0\n    NODAL COORDINATES \n";
    text += scalar ? "    NODE   ID  IDF          XC            YC             H            CF \n"
                   : "    NODE  ID1  ID2  ID3  ID4  ID5       XC            YC \n";
    for (const std::size_t i : by_number(node))
        put_node(text, node[i], mesh.nodes[i], set);
    text += "    CONTINUUM ELEMENT INDEX \n";
    text += scalar
                ? "    NEL     I1     I2     I3     I4 MATNO  IDH\n"
                : "    NEL     I1     I2     I3     I4     M5     M6     M7     M8 MATC    KS   KF INTR INTS"
                  "   TBJWL\n";
    for (const std::size_t i : by_number(element)) {
        std::array<int, 4> corner{};
        for (std::size_t k = 0; k < corner.size(); ++k)
            if (const int place = mesh.elements[i].corner[k]; place >= 0)
                corner[k] = node[static_cast<std::size_t>(place)];
        put_element(text, element[i], corner, set);
    }
    return text;
}

void write_file(const std::filesystem::path& path, const std::string& text) {
    std::FILE* const file = std::fopen(path.string().c_str(), "wb");
    const bool written = file != nullptr && std::fwrite(text.data(), 1, text.size(), file) == text.size();
    if (file == nullptr || std::fclose(file) != 0 || !written)
        throw std::filesystem::filesystem_error("cannot write", path,
                                                std::error_code(errno, std::generic_category()));
}

void write_sets(const std::filesystem::path& directory) {
    for (const auto& [name, set] :
         {std::pair{"Slope", Set::mechanical}, std::pair{"Slope_TH", Set::scalar}}) {
        std::filesystem::create_directories(directory / name);
        for (const SlopeModel& model : SLOPE_MODELS) {
            write_file(directory / name / file_name(model), text_of(model, Builder(model).build(), set));
        }
    }
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fprintf(stderr, "usage: slope_templates <directory>\n");
        return EXIT_FAILURE;
    }
    try {
        write_sets(arguments[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "slope_templates: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
