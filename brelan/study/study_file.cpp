// The only unit that meets the library for TOML: its headers cost the compiler more than all sources of this
// directory.
#include "study/study_file.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>
#include <toml.hpp>

#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/words.h"

namespace brelan::tool {

namespace {

using Toml = toml::basic_value<toml::discard_comments, std::map>;
namespace fs = std::filesystem;

int line_of(const Toml& value) {
    return static_cast<int>(value.location().line());
}

class StudyReader {
public:
    explicit StudyReader(const fs::path& file) { study_.file = file; }

    StudyFile read() {
        const Toml all = parsed();
        only(all,
             {"deck", "directory", "kind", "cut", "time_limit", "convert", "gather", "table", "values",
              "sample"},
             "the study");
        read_options(all);
        read_values(all);
        read_sample(all);
        if (study_.parameters.empty())
            fail(1, "expected values of parameters below [values], or a table of them");
        std::sort(study_.parameters.begin(), study_.parameters.end(),
                  [](const Parameter& a, const Parameter& b) { return a.line < b.line; });
        require_one_length();
        return study_;
    }

private:
    [[noreturn]] void fail(int line, const std::string& text) const {
        throw Failure(fmt::format("{}: {}", study_.place(line), text));
    }

    Toml parsed() const {
        std::istringstream stream(read_file(study_.file));
        try {
            return toml::parse<toml::discard_comments, std::map>(stream, study_.file.string());
        } catch (const toml::exception& fault) {
            // Its text has several lines, the first of which tells what is wrong.
            std::string text = fault.what();
            text.erase(std::min(text.find('\n'), text.size()));
            for (const std::string_view head : {"[error] ", "toml::", "parse_table: ", "parse_toml_file: "})
                if (const std::size_t at = text.find(head); at != std::string::npos)
                    text.erase(0, at + head.size());
            fail(static_cast<int>(fault.location().line()), "is no TOML: " + text);
        }
    }

    // Refuses a name that means nothing, which may be a slip of the finger.
    void only(const Toml& table, const std::vector<std::string>& known, std::string_view of) const {
        for (const auto& [name, value] : table.as_table())
            if (std::find(known.begin(), known.end(), name) == known.end())
                fail(line_of(value),
                     fmt::format("\"{}\": expected an entry of {}: {}", name, of, joined(known, ", ")));
    }

    const Toml* entry(const Toml& table, const std::string& name) const {
        const auto found = table.as_table().find(name);
        return found == table.as_table().end() ? nullptr : &found->second;
    }

    std::string text(const Toml& value, const std::string& name) const {
        if (!value.is_string())
            fail(line_of(value), fmt::format("{}: expected a text in quotation marks", name));
        return value.as_string().str;
    }

    std::string word(const Toml& value, const std::string& name,
                     const std::vector<std::string>& words) const {
        std::string found = text(value, name);
        if (std::find(words.begin(), words.end(), found) == words.end())
            fail(line_of(value),
                 fmt::format("{}: expected one of {}, found \"{}\"", name, joined(words, ", "), found));
        return found;
    }

    double number(const Toml& value, const std::string& name) const {
        const double found = value.is_integer()    ? static_cast<double>(value.as_integer())
                             : value.is_floating() ? value.as_floating()
                                                   : NAN;
        if (!std::isfinite(found))
            fail(line_of(value), fmt::format("{}: expected a number", name));
        return found;
    }

    std::size_t count(const Toml& value, const std::string& name) const {
        if (!value.is_integer() || value.as_integer() < 1 ||
            value.as_integer() > static_cast<std::int64_t>(MOST_CASES))
            fail(line_of(value), fmt::format("{}: expected a whole number from 1 to {}", name, MOST_CASES));
        return static_cast<std::size_t>(value.as_integer());
    }

    std::vector<Wanted> texts(const Toml& value, const std::string& name) const {
        if (!value.is_array())
            fail(line_of(value), fmt::format("{}: expected a list of texts in [ ]", name));
        std::vector<Wanted> found;
        for (const Toml& item : value.as_array())
            found.push_back({text(item, name), line_of(item)});
        return found;
    }

    fs::path beside_file(const std::string& name) const { return study_.file.parent_path() / name; }

    void read_options(const Toml& all) {
        const Toml* deck = entry(all, "deck");
        if (deck == nullptr)
            fail(1, "expected deck = \"...\", the deck with placeholders");
        study_.deck = beside_file(text(*deck, "deck"));
        study_.directory = study_.file;
        study_.directory.replace_extension(".study");
        if (const Toml* value = entry(all, "directory"))
            study_.directory = beside_file(text(*value, "directory"));
        if (const Toml* value = entry(all, "kind"))
            study_.kind = word(*value, "kind", {"coupled", "temperature", "head", "displacement"});
        if (const Toml* value = entry(all, "cut"))
            study_.cut = word(*value, "cut", {"rules", "sound", "auto"});
        if (const Toml* value = entry(all, "time_limit")) {
            study_.time_limit = number(*value, "time_limit");
            if (!(study_.time_limit > 0.0))
                fail(line_of(*value), "time_limit: expected seconds above 0");
        }
        if (const Toml* value = entry(all, "convert"))
            for (const Wanted& wanted : texts(*value, "convert")) {
                static const std::vector<std::string> WORDS{"vtu", "msh", "msh2", "mdpa", "inp"};
                if (std::find(WORDS.begin(), WORDS.end(), wanted.path) == WORDS.end())
                    fail(wanted.line, fmt::format("convert: expected some of {}, found \"{}\"",
                                                  joined(WORDS, ", "), wanted.path));
                study_.conversions.push_back(wanted.path);
            }
        if (const Toml* value = entry(all, "gather"))
            study_.gather = texts(*value, "gather");
    }

    void read_values(const Toml& all) {
        const Toml* table = entry(all, "table");
        const Toml* values = entry(all, "values");
        if (table != nullptr && values != nullptr)
            fail(line_of(*table), "expected a table or [values], found both");
        if (table != nullptr) {
            study_.parameters = read_value_table(beside_file(text(*table, "table")));
            study_.method = Method::list;
        }
        if (values == nullptr)
            return;
        if (!values->is_table())
            fail(line_of(*values), "values: expected a section [values]");
        for (const auto& [name, value] : values->as_table())
            study_.parameters.push_back(parameter(name, value));
    }

    Parameter parameter(const std::string& name, const Toml& value) const {
        Parameter made;
        made.name = name;
        made.line = line_of(value);
        if (!is_parameter_name(name))
            fail(made.line, fmt::format("\"{}\": expected a name of letters, digits and underscores", name));
        if (value.is_table())
            range(made, value);
        else if (value.is_array())
            for (const Toml& item : value.as_array())
                made.values.push_back(single(item, name));
        else
            made.values.push_back(single(value, name));
        if (value.is_array() && made.values.empty())
            fail(made.line, fmt::format("{}: expected at least one value", name));
        return made;
    }

    StudyValue single(const Toml& item, const std::string& name) const {
        if (item.is_integer())
            return std::int64_t{item.as_integer()};
        if (item.is_string()) {
            const std::string found = item.as_string().str;
            if (found.find_first_of("\r\n") != std::string::npos)
                fail(line_of(item), fmt::format("{}: expected a text of one line", name));
            return found;
        }
        return number(item, name);
    }

    // { from = 1, to = 3, step = 0.5 }, { from = 1, to = 3, count = 5 }, { from = 1, to = 3 }
    void range(Parameter& made, const Toml& value) const {
        only(value, {"from", "to", "step", "count"}, made.name);
        const Toml *from = entry(value, "from"), *to = entry(value, "to"), *step = entry(value, "step"),
                   *number_of = entry(value, "count");
        if (from == nullptr || to == nullptr || (step != nullptr && number_of != nullptr))
            fail(made.line, fmt::format("{}: expected from and to, and step or count", made.name));
        made.from = number(*from, made.name);
        made.to = number(*to, made.name);
        if (step == nullptr && number_of == nullptr) {
            if (!(made.to > made.from))
                fail(made.line, fmt::format("{}: expected to above from", made.name));
            return;
        }
        const bool whole = from->is_integer() && (step == nullptr || step->is_integer());
        if (number_of != nullptr) {
            const std::size_t steps = count(*number_of, made.name);
            for (std::size_t k = 0; k < steps; ++k)
                made.values.emplace_back(steps == 1
                                             ? made.from
                                             : made.from + (made.to - made.from) * static_cast<double>(k) /
                                                               static_cast<double>(steps - 1));
            return;
        }
        const double size = number(*step, made.name), steps = std::floor((made.to - made.from) / size + 1e-9);
        if (size == 0.0 || !(steps >= 0.0) || steps > static_cast<double>(MOST_CASES))
            fail(made.line,
                 fmt::format("{}: expected a step that leads from {} to {}", made.name, made.from, made.to));
        for (std::size_t k = 0; k <= static_cast<std::size_t>(steps); ++k) {
            const double at = made.from + static_cast<double>(k) * size;
            made.values.push_back(whole ? StudyValue(static_cast<std::int64_t>(at)) : StudyValue(at));
        }
    }

    void read_sample(const Toml& all) {
        const Toml* sample = entry(all, "sample");
        if (sample != nullptr) {
            if (!sample->is_table())
                fail(line_of(*sample), "sample: expected a section [sample]");
            only(*sample, {"method", "count", "seed"}, "[sample]");
            const Toml* method = entry(*sample, "method");
            if (method == nullptr)
                fail(line_of(*sample), "expected method = \"grid\", \"list\", \"random\" or \"latin\"");
            static const std::vector<std::string> WORDS{"grid", "list", "random", "latin"};
            const std::string found = word(*method, "method", WORDS);
            study_.method = static_cast<Method>(std::find(WORDS.begin(), WORDS.end(), found) - WORDS.begin());
            const bool drawn = study_.method == Method::random || study_.method == Method::latin;
            const Toml *number_of = entry(*sample, "count"), *seed = entry(*sample, "seed");
            if (drawn != (number_of != nullptr))
                fail(line_of(*method), drawn ? "expected count, how many cases are drawn"
                                             : "expected count with \"random\" and \"latin\" alone");
            if (number_of != nullptr)
                study_.count = count(*number_of, "count");
            if (seed != nullptr) {
                if (!seed->is_integer() || seed->as_integer() < 0)
                    fail(line_of(*seed), "seed: expected a whole number from 0");
                study_.seed = static_cast<std::uint64_t>(seed->as_integer());
            }
        }
        if (study_.method == Method::grid || study_.method == Method::list)
            for (const Parameter& parameter : study_.parameters)
                if (parameter.is_interval())
                    fail(parameter.line,
                         fmt::format("{}: expected step or count, as the method draws no samples",
                                     parameter.name));
    }

    // Values of a list belong together one by one; a single value goes with all.
    void require_one_length() const {
        if (study_.method != Method::list)
            return;
        std::size_t length = 1;
        for (const Parameter& parameter : study_.parameters) {
            const std::size_t size = parameter.values.size();
            if (size != 1 && length != 1 && size != length)
                fail(parameter.line,
                     fmt::format("{}: expected {} values, as the parameters before have, found {}",
                                 parameter.name, length, size));
            length = std::max(length, size);
        }
    }

    StudyFile study_;
};

std::vector<std::string> cells_of_row(std::string_view line, const std::string& place) {
    std::vector<std::string> cells(1);
    bool quoted = false;
    for (std::size_t at = 0; at < line.size(); ++at) {
        const char c = line[at];
        if (c == '"' && quoted && at + 1 < line.size() && line[at + 1] == '"') {
            cells.back() += '"';
            ++at;
        } else if (c == '"') {
            quoted = !quoted;
        } else if (c == ',' && !quoted) {
            cells.emplace_back();
        } else {
            cells.back() += c;
        }
    }
    if (quoted)
        throw Failure(place + ": expected a second quotation mark");
    for (std::string& cell : cells) {
        cell.erase(0, std::min(cell.find_first_not_of(" \t"), cell.size()));
        cell.erase(cell.find_last_not_of(" \t\r") + 1);
    }
    return cells;
}

}  // namespace

std::string StudyFile::place(int line) const {
    return fmt::format("{}, line {}", file.string(), std::max(line, 1));
}

StudyFile read_study_file(const fs::path& file) {
    return StudyReader(file).read();
}

std::vector<Parameter> read_value_table(const fs::path& file) {
    std::string text = read_file(file);
    if (text.starts_with("\xEF\xBB\xBF"))
        text.erase(0, 3);
    std::vector<Parameter> columns;
    int number = 0;
    for (const std::string_view line : lines_of(text)) {
        const std::string place = fmt::format("{}, line {}", file.string(), ++number);
        if (line.find_first_not_of(" \t\r") == std::string_view::npos)
            continue;
        const std::vector<std::string> cells = cells_of_row(line, place);
        if (columns.empty()) {
            for (const std::string& name : cells) {
                if (!is_parameter_name(name) ||
                    std::any_of(columns.begin(), columns.end(),
                                [&](const Parameter& p) { return p.name == name; }))
                    throw Failure(fmt::format(
                        "{}: expected names of parameters, each once, separated by commas, found \"{}\"",
                        place, name));
                columns.emplace_back().name = name;
            }
            continue;
        }
        if (cells.size() != columns.size())
            throw Failure(fmt::format("{}: expected {}, found {}", place,
                                      counted(columns.size(), "value", "values"), cells.size()));
        for (std::size_t k = 0; k < cells.size(); ++k) {
            if (cells[k].empty())
                throw Failure(fmt::format("{}: expected a value of {}", place, columns[k].name));
            columns[k].values.push_back(value_of_text(cells[k]));
        }
    }
    if (columns.empty() || columns.front().values.empty())
        throw Failure(fmt::format("{}: expected a line of names and lines of values", file.string()));
    return columns;
}

}  // namespace brelan::tool
