#include "formats/property_table.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <utility>

#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/output_file.h"
#include "cli/words.h"
#include "text/text_line.h"

namespace brelan::tool {

namespace {

// Which numbers a column takes.
enum class Bound { above_zero, from_zero, poisson };

struct Column {
    std::string_view name;
    std::optional<double> PropertyRow::*value;
    double Properties::*placeholder;
    Bound bound;
    std::string_view classes;  // first letters of the classes that have it
};

constexpr std::array<Column, 7> COLUMNS{
    {{"E", &PropertyRow::young, &Properties::young, Bound::above_zero, "sbt"},
     {"nu", &PropertyRow::poisson, &Properties::poisson, Bound::poisson, "sbt"},
     {"density", &PropertyRow::density, &Properties::density, Bound::from_zero, "sbt"},
     {"area", &PropertyRow::area, &Properties::area, Bound::above_zero, "bt"},
     {"inertia", &PropertyRow::inertia, &Properties::inertia, Bound::above_zero, "b"},
     {"kn", &PropertyRow::across, &Properties::across, Bound::above_zero, "j"},
     {"ks", &PropertyRow::along, &Properties::along, Bound::above_zero, "j"}}};
constexpr std::string_view HEADER = "class,material,name,E,nu,density,area,inertia,kn,ks";

std::string_view without_blanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r");
    return first == std::string_view::npos ? std::string_view{}
                                           : text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// The cells of a line; one in quotes may hold commas, and quotes twice.
std::vector<std::string> cells_of_line(std::string_view line) {
    std::vector<std::string> cells(1);
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"' && quoted && i + 1 < line.size() && line[i + 1] == '"')
            cells.back() += line[i++];
        else if (line[i] == '"')
            quoted = !quoted;
        else if (line[i] == ',' && !quoted)
            cells.emplace_back();
        else
            cells.back() += line[i];
    }
    for (std::string& cell : cells)
        cell = without_blanks(std::string(cell));
    return cells;
}

std::string in_quotes(const std::string& name) {
    if (name.find_first_of(",\"") == std::string::npos)
        return name;
    std::string text = "\"";
    for (const char c : name)
        text += c == '"' ? "\"\"" : std::string(1, c);
    return text + "\"";
}

std::optional<double> number_of(const std::string& text) {
    std::size_t end = 0;
    try {
        const double value = std::stod(text, &end);
        return end == text.size() && std::isfinite(value) ? std::optional(value) : std::nullopt;
    } catch (const std::exception&) {
        return {};
    }
}

bool is_within(Bound bound, double value) {
    return bound == Bound::above_zero  ? value > 0.0
           : bound == Bound::from_zero ? value >= 0.0
                                       : value > -1.0 && value < 0.5;
}

std::string_view words_of(Bound bound) {
    return bound == Bound::above_zero  ? "a number above 0"
           : bound == Bound::from_zero ? "a number of 0 or more"
                                       : "a number between -1 and 0.5";
}

class TableReader {
public:
    explicit TableReader(const std::filesystem::path& path) { table_.file = path.string(); }

    PropertyTable read(std::string_view content) {
        if (content.starts_with(BYTE_ORDER_MARK))
            content.remove_prefix(BYTE_ORDER_MARK.size());
        while (!content.empty()) {
            const std::size_t end = std::min(content.find('\n'), content.size());
            take(without_blanks(content.substr(0, end)));
            content.remove_prefix(std::min(end + 1, content.size()));
        }
        if (header_.empty())
            throw Failure(fmt::format("{}: expected a header row such as {}", table_.file, HEADER));
        return std::move(table_);
    }

private:
    [[noreturn]] void refuse(std::size_t column, std::string_view name, std::string_view expected,
                             std::string_view found) const {
        throw Failure(fmt::format("{}, line {}, column {}{}: expected {}, found \"{}\"", table_.file, line_,
                                  column + 1, name.empty() ? "" : fmt::format(" ({})", name), expected,
                                  found));
    }

    void take(std::string_view line) {
        ++line_;
        if (line.empty() || line.front() == '#')
            return;
        const std::vector<std::string> cells = cells_of_line(line);
        if (header_.empty())
            take_header(cells);
        else
            take_row(cells);
    }

    void take_header(const std::vector<std::string>& cells) {
        for (std::size_t c = 0; c < cells.size(); ++c) {
            const std::string word = lower(cells[c]);
            const bool known =
                word == "class" || word == "material" || word == "name" ||
                std::ranges::any_of(COLUMNS, [&](const Column& k) { return lower(k.name) == word; });
            if (!known)
                refuse(c, "", fmt::format("a name of {}", HEADER), cells[c]);
            if (std::ranges::find(header_, word) != header_.end())
                refuse(c, "", "each column once", cells[c]);
            header_.push_back(word);
        }
        for (const std::string needed : {"class", "material"})
            if (std::ranges::find(header_, needed) == header_.end())
                throw Failure(fmt::format("{}, line {}: expected a column \"{}\" in the header row",
                                          table_.file, line_, needed));
    }

    void take_row(const std::vector<std::string>& cells) {
        PropertyRow row;
        row.line = line_;
        if (cells.size() > header_.size())
            refuse(header_.size(), "", fmt::format("{} cells, as the header row has", header_.size()),
                   cells[header_.size()]);
        for (std::size_t c = 0; c < header_.size(); ++c)
            take_cell(row, c, c < cells.size() ? cells[c] : "");
        if (const PropertyRow* other = table_.find(row.of, row.material); other != nullptr)
            throw Failure(fmt::format("{}, line {}: expected one row for {}, but line {} has it too",
                                      table_.file, line_, group_name(row.of, row.material), other->line));
        table_.rows.push_back(row);
    }

    void take_cell(PropertyRow& row, std::size_t c, const std::string& cell) {
        const std::string& column = header_[c];
        if (column == "class") {
            const auto found = std::ranges::find(CLASS_NAMES, lower(cell));
            if (found == CLASS_NAMES.end())
                refuse(c, column, "solid, joint, beam or truss", cell);
            row.of = static_cast<ElementClass>(found - CLASS_NAMES.begin());
        } else if (column == "material") {
            const std::optional<double> value = number_of(cell);
            if (!value || *value != std::floor(*value) || std::abs(*value) > 1.0E9)
                refuse(c, column, "a whole number", cell);
            row.material = static_cast<std::int32_t>(*value);
        } else if (column == "name") {
            row.name = cell;
        } else if (!cell.empty()) {
            const Column& k =
                *std::ranges::find_if(COLUMNS, [&](const Column& one) { return lower(one.name) == column; });
            const std::optional<double> value = number_of(cell);
            if (!value || !is_within(k.bound, *value))
                refuse(c, k.name, words_of(k.bound), cell);
            row.*k.value = value;
        }
    }

    PropertyTable table_;
    std::vector<std::string> header_;
    std::size_t line_ = 0;
};

}  // namespace

const PropertyRow* PropertyTable::find(ElementClass of, std::int32_t material) const {
    const auto found = std::ranges::find_if(
        rows, [&](const PropertyRow& row) { return row.of == of && row.material == material; });
    return found == rows.end() ? nullptr : &*found;
}

PropertyTable read_properties(const std::filesystem::path& path) {
    return TableReader(path).read(read_file(path));
}

void write_properties(const MeshLists& mesh, const std::filesystem::path& path) {
    std::map<std::pair<ElementClass, std::int32_t>, float> densities;
    const auto attributes = attribute_fields(mesh.kind);
    const bool has_density = std::ranges::any_of(attributes, [](const auto& a) { return a.name == "DEN"; });
    for (const Element& e : mesh.elements)
        densities.try_emplace({e.of, e.words.material.value},
                              has_density && e.of == ElementClass::solid ? e.density : 0.0F);
    std::string text = fmt::format("{}\n", HEADER);
    for (const auto& [key, density] : densities) {
        const auto& [element_class, material] = key;
        const std::string& name = mesh.names.of(element_class, material);
        text += fmt::format("{},{},{}", name_of(element_class), material, in_quotes(name));
        Properties values = placeholders(element_class);
        if (density > 0.0F)
            values.density = std::stod(fmt::format("{}", density));
        for (const Column& column : COLUMNS)
            text += column.classes.find(name_of(element_class).front()) == std::string_view::npos
                        ? ","
                        : fmt::format(",{}", values.*column.placeholder);
        text += "\n";
    }
    write_file(path, text);
}

Properties placeholders(ElementClass of) {
    Properties p;
    switch (of) {
        case ElementClass::solid:
            p.young = 5.0E4;
            p.poisson = 0.3;
            p.density = 2.0;
            break;
        case ElementClass::joint:
            p.across = 1.0E6;
            p.along = 1.0E5;
            break;
        case ElementClass::beam:
            p.young = 3.0E7;
            p.poisson = 0.2;
            p.density = 2.5;
            p.area = 0.5;
            p.inertia = 0.0104;
            break;
        case ElementClass::truss:
            p.young = 2.1E8;
            p.poisson = 0.3;
            p.density = 7.85;
            p.area = 0.01;
            break;
    }
    return p;
}

}  // namespace brelan::tool
