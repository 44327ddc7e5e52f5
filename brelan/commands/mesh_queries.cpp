#include "commands/mesh_queries.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "analysis/queries.h"
#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/json.h"
#include "cli/words.h"
#include "deck/deck_tables.h"
#include "formats/any_mesh.h"

namespace brelan::tool {

namespace {

// --- what is asked -------------------------------------------------------------------------------

AxisLine line_of(const std::string& text, std::string_view option) {
    AxisLine line;
    double at = 0.0;
    const char* const end = text.data() + text.size();
    const bool named = text.starts_with("x=") || text.starts_with("y=");
    const auto [stop, error] = std::from_chars(text.data() + (named ? 2 : 0), end, at);
    if (!named || error != std::errc{} || stop != end)
        throw Failure(
            fmt::format("{}: expected x= or y= and a number, as in x=20, found \"{}\"", option, text));
    line.axis = text.front() == 'x' ? Axis::x : Axis::y;
    line.at = at;
    return line;
}

std::string line_text(const AxisLine& line) {
    return fmt::format("{} = {:.9g}", line.axis == Axis::x ? 'x' : 'y', line.at);
}

// "5" and "material 5" are solids and joints of a material; a word before the number asks for a class alone.
struct ElementsWanted {
    std::optional<ElementClass> of;
    std::int32_t material = 0;
};

std::optional<ElementsWanted> elements_by_number(std::string_view text) {
    ElementsWanted wanted;
    std::string_view number = text;
    if (const std::size_t blank = text.find_first_of(" ="); blank != std::string_view::npos) {
        const std::string word = lower(text.substr(0, blank));
        const auto known = std::find(CLASS_NAMES.begin(), CLASS_NAMES.end(), word);
        if (known == CLASS_NAMES.end() && word != "material")
            return std::nullopt;
        if (known != CLASS_NAMES.end())
            wanted.of = static_cast<ElementClass>(known - CLASS_NAMES.begin());
        number = text.substr(blank + 1);
    }
    const char* const end = number.data() + number.size();
    const auto [stop, error] = std::from_chars(number.data(), end, wanted.material);
    return error == std::errc{} && stop == end ? std::optional(wanted) : std::nullopt;
}

std::vector<Number> elements_wanted(const MeshLists& mesh, const ElementsWanted& wanted) {
    return wanted.of ? elements_of(mesh, *wanted.of, wanted.material)
                     : continuum_elements_of(mesh, wanted.material);
}

// By number, else by the names that the mesh gives.
std::vector<Number> elements_asked(const MeshLists& mesh, const std::string& text) {
    if (const auto wanted = elements_by_number(text))
        return elements_wanted(mesh, *wanted);
    std::vector<Number> numbers;
    bool known = false;
    for (const auto& [key, name] : mesh.names)
        if (name == text) {
            known = true;
            const bool continuum = key.of == ElementClass::solid;
            const std::vector<Number> more =
                elements_wanted(mesh, {continuum ? std::nullopt : std::optional(key.of), key.material});
            numbers.insert(numbers.end(), more.begin(), more.end());
        }
    if (!known)
        throw Failure(
            fmt::format("--elements-of: expected a material's number, solid, joint, beam or truss before it "
                        "where that is meant, or a name that {} gives, found \"{}\"",
                        mesh.file, text));
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

// --- what is answered ----------------------------------------------------------------------------

struct QueryAnswer {
    std::string query;  // "nodes on x = 20"
    std::size_t count = 0;
    std::string one, many;  // what is counted
    std::vector<std::vector<Number>> lists;
    bool takes_ranges = true;  // the lists of the card
};

std::vector<QueryAnswer> answers_of(const MeshLists& mesh, const QueryOptions& queries, double tolerance) {
    std::vector<QueryAnswer> answers;
    const auto add = [&](const std::string& where, const char* one, const char* many,
                         std::vector<Number> list) {
        const std::size_t count = list.size();
        answers.push_back({where, count, one, many, {std::move(list)}});
    };
    for (const std::string& text : queries.nodes_on) {
        const AxisLine line = line_of(text, "--nodes-on");
        add("on " + line_text(line), "node", "nodes", nodes_on(mesh, line, tolerance));
    }
    if (const std::vector<double>& w = queries.nodes_in; !w.empty())
        add(fmt::format("in ({:.9g}, {:.9g}) to ({:.9g}, {:.9g})", w[0], w[1], w[2], w[3]), "node", "nodes",
            nodes_in(mesh, {{w[0], w[1]}, {w[2], w[3]}}, tolerance));
    for (const std::string& text : queries.elements_of)
        add(fmt::format("of {}{}",
                        std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })
                            ? "material "
                            : "",
                        text),
            "element", "elements", elements_asked(mesh, text));
    if (queries.border)
        add("on the border", "node", "nodes", border_nodes(mesh));
    return answers;
}

QueryAnswer pairs_of(const MeshLists& first, const MeshLists& second, const QueryOptions& queries,
                     double tolerance, const Remark& remark) {
    std::optional<AxisLine> line;
    if (!queries.on.empty())
        line = line_of(queries.on, "--on");
    const CoincidentPairs found = coincident_pairs(first, second, line, tolerance);
    if (!found.unpaired_first.empty())
        remark(fmt::format("nodes that are not alone at their place are in no pair: {} of {}, {} of {}",
                           fmt::join(found.unpaired_first, ", "), first.file,
                           fmt::join(found.unpaired_second, ", "), second.file));
    QueryAnswer answer{line ? "on " + line_text(*line) : "at one place",
                       found.pairs.size(),
                       "pair of nodes",
                       "pairs of nodes",
                       {{}, {}},
                       false};
    for (const auto& [a, b] : found.pairs) {
        answer.lists[0].push_back(a);
        answer.lists[1].push_back(b);
    }
    return answer;
}

// --- as text -------------------------------------------------------------------------------------

constexpr std::size_t LIST_WIDTH = 100;  // well within the columns of a card

// Words on lines of at most that width, each behind two blanks.
std::string on_lines(const std::vector<std::string>& words, std::string_view between) {
    std::string text, line;
    for (const std::string& word : words) {
        if (!line.empty() && line.size() + between.size() + word.size() > LIST_WIDTH) {
            text += line + std::string(between.substr(0, between.find(' '))) + "\n";
            line.clear();
        }
        line += (line.empty() ? "  " : std::string(between)) + word;
    }
    return line.empty() ? text : text + line + "\n";
}

std::vector<std::string> words_of(const QueryAnswer& answer) {
    std::vector<std::string> words;
    if (answer.lists.size() == 2)
        for (std::size_t k = 0; k < answer.count; ++k)
            words.push_back(fmt::format("{}:{}", answer.lists[0][k], answer.lists[1][k]));
    else
        for (const auto& [first, last] : ranges_of(answer.lists[0]))
            words.push_back(first == last ? std::to_string(first) : fmt::format("{}-{}", first, last));
    return words;
}

std::string heading_of(const QueryAnswer& answer, const std::string& file) {
    return fmt::format("{}: {} {}", printable(file), counted(answer.count, answer.one, answer.many),
                       printable(answer.query));
}

// The numbers of a list as a card takes them: a negative one stands for the range up to it.
std::vector<std::string> card_words(const std::vector<Number>& list, bool takes_ranges) {
    std::vector<std::string> words;
    if (!takes_ranges) {
        for (const Number number : list)
            words.push_back(std::to_string(number));
        return words;
    }
    for (const auto& [first, last] : ranges_of(list)) {
        words.push_back(std::to_string(first));
        if (last > first)
            words.push_back(std::to_string(last > first + 1 ? -last : last));
    }
    return words;
}

std::string card_of(const QueryAnswer& answer, const std::string& file) {
    std::string text = fmt::format("* {}\n", heading_of(answer, file));
    std::size_t count = 0;
    std::string lists;
    for (const std::vector<Number>& list : answer.lists) {
        const std::vector<std::string> words = card_words(list, answer.takes_ranges);
        count = words.size();
        lists += on_lines(words, "  ");
    }
    if (count > static_cast<std::size_t>(MOST_CARD_VALUES))
        throw Failure(fmt::format("{}: {} take {} numbers, and a card's list has at most {}", file,
                                  answer.many, count, MOST_CARD_VALUES));
    return text + fmt::format("  {}\n", count) + lists;
}

Json json_of(const QueryAnswer& answer) {
    Json json{{"query", fmt::format("{} {}", answer.many, answer.query)}, {"count", answer.count}};
    if (answer.lists.size() == 2) {
        Json pairs = Json::Array();
        for (std::size_t k = 0; k < answer.count; ++k)
            pairs.push_back(Json::array({answer.lists[0][k], answer.lists[1][k]}));
        json["pairs"] = pairs;
        return json;
    }
    json["numbers"] = Json::array(answer.lists[0]);
    json["ranges"] = Json::Array();
    for (const auto& [first, last] : ranges_of(answer.lists[0]))
        json["ranges"].push_back(Json::array({first, last}));
    return json;
}

// --- the whole -----------------------------------------------------------------------------------

class Answers {
public:
    explicit Answers(const InfoOptions& options) : options_(options) {}

    void add(const std::string& file, const std::vector<QueryAnswer>& answers) {
        Json list = Json::Array();
        for (const QueryAnswer& answer : answers) {
            all_found_ = all_found_ && answer.count > 0;
            if (options_.json)
                list.push_back(json_of(answer));
            else if (options_.queries.card)
                print(card_of(answer, file));
            else
                print(heading_of(answer, file) + "\n" + on_lines(words_of(answer), ", "));
        }
        json_.push_back({{"file", file}, {"answers", list}});
    }

    int finish() const {
        if (options_.json)
            print(json_.text());
        return all_found_ ? STATUS_OK : STATUS_FOUND;
    }

private:
    const InfoOptions& options_;
    Json json_ = Json::Array();
    bool all_found_ = true;
};

}  // namespace

int answer_queries(const InfoOptions& options, const Context& context) {
    const QueryOptions& queries = options.queries;
    require_one_standard_input(options.files);
    const Remark remark = [&](const std::string& text) { note(context, text); };
    const auto read = [&](const std::string& file) {
        return read_any_mesh(mesh_source(file), options.kind.kind(), remark);
    };
    if (const std::vector<double>& w = queries.nodes_in; !w.empty() && (!(w[2] >= w[0]) || !(w[3] >= w[1])))
        throw Failure("--nodes-in: expected XMIN YMIN XMAX YMAX with XMAX and YMAX the larger ones");
    Answers answers(options);
    if (queries.pairs) {
        if (options.files.size() != 2)
            throw Failure(fmt::format("--pairs: expected two meshes, found {}", options.files.size()));
        QueryOptions others = queries;
        others.pairs = false;
        if (others.any())
            throw Failure("--pairs: expected no other question besides it");
        const MeshLists first = read(options.files[0]), second = read(options.files[1]);
        answers.add(first.file + " and " + second.file,
                    {pairs_of(first, second, queries, options.tolerance, remark)});
        return answers.finish();
    }
    for (const std::string& file : options.files) {
        const MeshLists mesh = read(file);
        answers.add(mesh.file, answers_of(mesh, queries, options.tolerance));
    }
    return answers.finish();
}

}  // namespace brelan::tool
