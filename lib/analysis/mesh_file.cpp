#include "analysis/mesh_file.h"

#include "mesh/kinds.h"
#include "mesh/mesh_walk.h"
#include "mesh/result_file.h"
#include "text/channel_numbers.h"
#include "text/channels.h"
#include "text/line_values.h"
#include "text/number_text.h"
#include "text/run_end.h"
#include "text/text_line.h"

namespace brelan {

namespace {

constexpr std::string_view HEADING = "a heading line of a mesh file";

// --- reading -------------------------------------------------------------------------------------

// What stands in a file besides the mesh.
struct AsideOfMesh {
    bool byte_order_mark = false;
    MaterialNames names;
};

// The mesh without its comment lines, on a channel that knows the line of the file for each of its own.
Channel& without_comments(Channels& channels, AsideOfMesh& aside) {
    Channel& from = channels.at(CHANNEL_SOURCE_A);
    aside.byte_order_mark = from.pass_byte_order_mark();
    Channel& mesh = channels.open_in_memory(CHANNEL_MESH_A, from.name());
    mesh.follow(from);
    while (!from.at_end()) {
        const std::string_view line = from.read_whole_line("a line");
        if (line.empty() || line.front() != '*')
            mesh.write_line(line.substr(0, LINE_COLUMNS));
        else
            aside.names.take_comment(line);
    }
    channels.close(CHANNEL_SOURCE_A);
    mesh.rewind();
    return mesh;
}

// Numbers at the start of a line, also where fields touch.
int numbers_on(std::string_view line) {
    const char* at = line.data();
    const char* const end = at + line.size();
    for (int count = 0;; ++count) {
        while (at != end && (*at == ' ' || *at == ',' || *at == '\t'))
            ++at;
        float value = 0.0F;
        if (at == end || scan_number(at, end, value) != NumberScan::ok)
            return count;
    }
}

int continuum_values(LayoutKind kind) {
    return kind == LayoutKind::coupled ? 15 : kind == LayoutKind::displacement ? 12 : 7;
}

std::optional<LayoutKind> kind_of_heading(std::string_view heading) {
    const auto has = [&](std::string_view word) { return heading.find(word) != std::string_view::npos; };
    if (has(" ISX "))
        return LayoutKind::coupled;
    if (has(" IDX "))
        return LayoutKind::displacement;
    if (!has(" IDF "))
        return std::nullopt;
    return has(" T ")   ? std::optional(LayoutKind::temperature)
           : has(" H ") ? std::optional(LayoutKind::head)
                        : std::nullopt;
}

// The kind by the node heading, as long as the first element record has values enough for it; by the count of
// values alone where the heading tells nothing. Temperature and head differ in the heading only.
std::optional<LayoutKind> find_kind(Channel& mesh) {
    mesh.skip_lines(2, HEADING);
    const MeshCounts counts = read_mesh_counts(mesh);
    mesh.skip_lines(1, HEADING);
    const std::optional<LayoutKind> heading =
        kind_of_heading(std::string(" ").append(mesh.read_whole_line(HEADING)).append(" "));
    int values = 0;  // of the first continuum record; 0 none seen
    if (counts.continuum_elements > 0) {
        mesh.skip_lines(counts.nodes, "a node record");
        mesh.skip_lines(2, HEADING);
        values = numbers_on(mesh.peek_line());
    }
    mesh.rewind();
    if (heading && (values == 0 || values >= continuum_values(*heading)))
        return heading;
    for (const LayoutKind kind : {LayoutKind::coupled, LayoutKind::displacement})
        if (values == continuum_values(kind))
            return kind;
    return std::nullopt;
}

class Reader {
public:
    Reader(Channel& file, MeshLists& mesh) : file_(file), mesh_(mesh) {}

    void read() {
        mesh_.name = TextLine(file_.peek_line()).trimmed();
        MeshWalk head(mesh_.kind, file_, {});
        const MeshCounts counts = head.head();
        StrippedMesh form;
        form.field_count = count_values(TextLine(file_.peek_line())).count;
        MeshWalk walk(mesh_.kind, file_, form, counts);
        mesh_.nodes.reserve(static_cast<std::size_t>(counts.nodes));
        walk.each_node([&](const NodeRecord& node) {
            mesh_.nodes.push_back(node);
            require_numbers(file_, node);
        });
        mesh_.elements.reserve(static_cast<std::size_t>(counts.continuum_elements));
        for (const std::int8_t type : ELEMENT_TYPES)
            walk.each_element(type, [&](const ElementRecord& element) { add(element, type); });
        if (counts.trusses == 0)
            read_flow_lines();
    }

private:
    void add(const ElementRecord& element, std::int8_t type) {
        Element e{element};
        if (e.number.value < 0) {
            ++mesh_.deleted;
            return;
        }
        require_numbers(file_, e);
        e.of = type == ELEMENT_BEAM    ? ElementClass::beam
               : type == ELEMENT_TRUSS ? ElementClass::truss
                                       : ElementClass::solid;
        mesh_.elements.push_back(e);
    }

    // A truss section that the head does not count: records up to the closing lines, which have one value.
    void read_flow_lines() {
        if (file_.peek_line().find("TRUSS") == std::string_view::npos)
            return;
        file_.skip_lines(2, HEADING);
        while (!file_.at_end() && numbers_on(file_.peek_line()) >= 4) {
            mesh_.flow_lines = true;
            add(read_element_record(mesh_.kind, file_, ELEMENT_TRUSS), ELEMENT_TRUSS);
        }
    }

    Channel& file_;
    MeshLists& mesh_;
};

// --- writing -------------------------------------------------------------------------------------

void require_range(std::int64_t value, std::int64_t low, std::int64_t high, std::string_view what,
                   Number number) {
    if (value < low || value > high)
        fail(std::string(what) + " " + std::to_string(number) + ": " + std::to_string(value) +
             " does not fit into its field of a mesh file; expected " + std::to_string(low) + " to " +
             std::to_string(high));
}

// A value that fills its field to the left end would run into the field before it, and one that does not fit
// comes out as asterisks: nothing reads either back.
void require_fields(const MeshLists& mesh) {
    constexpr std::int64_t LOW = -9999, HIGH = 9999;  // of five columns; a minus sign ends the number before
    constexpr std::int64_t SIX_LOW = -99999, SIX_HIGH = 999999;  // of six columns behind a blank
    constexpr std::int64_t FIVE_HIGH = 99999;                    // of five columns behind a blank
    const bool midsides = has_midside_nodes(mesh.kind);
    require_range(static_cast<std::int64_t>(mesh.nodes.size()), 0, HIGHEST_NODE_NUMBER,
                  "count of nodes:", HIGHEST_NODE_NUMBER);
    for (const Node& node : mesh.nodes) {
        require_range(node.number.value, 1, HIGHEST_NODE_NUMBER, "node", node.number.value);
        for (const std::int32_t code : node.codes)
            require_range(code, LOW, HIGH, "code of node", node.number.value);
    }
    for (const Element& e : mesh.elements) {
        require_range(e.number.value, 1, HIGHEST_ELEMENT_NUMBER, "element", e.number.value);
        const ElementWords& w = e.words;
        require_range(w.material.value, e.is_line() ? SIX_LOW : LOW,
                      e.is_line() ? SIX_HIGH
                      : midsides  ? HIGH
                                  : FIVE_HIGH,
                      "material of element", e.number.value);
        for (const NodeNumber word : {w.corner_1, w.corner_2, w.corner_3, w.corner_4, w.midside_5,
                                      w.midside_6, w.midside_7, w.midside_8})
            require_range(word.value, SIX_LOW, HIGHEST_NODE_NUMBER, "node of element", e.number.value);
        if (!e.is_line())
            for (const AttributeField& attribute : attribute_fields(mesh.kind))
                if (attribute.whole != nullptr)
                    require_range(e.*attribute.whole, LOW, HIGH, "attribute of element", e.number.value);
    }
}

// --- the whole file ------------------------------------------------------------------------------

// The mesh on the source channel.
std::optional<MeshLists> read_mesh(Channels& channels, const std::string& name,
                                   std::optional<LayoutKind> kind) {
    MeshLists mesh;
    mesh.file = name;
    AsideOfMesh aside;
    Channel& file = without_comments(channels, aside);
    mesh.byte_order_mark = aside.byte_order_mark;
    mesh.names = std::move(aside.names);
    if (!kind)
        kind = find_kind(file);
    if (!kind)
        return std::nullopt;
    mesh.kind = *kind;
    Reader(file, mesh).read();
    mesh.finish();
    return mesh;
}

std::optional<LayoutKind> kind_of_mesh(Channels& channels) {
    AsideOfMesh aside;
    return find_kind(without_comments(channels, aside));
}

}  // namespace

std::optional<MeshLists> mesh_of_file(const std::filesystem::path& path, const Directories& directories,
                                      std::optional<LayoutKind> kind) {
    Channels channels(directories);
    channels.open(CHANNEL_SOURCE_A, path.string(), OpenStatus::old);
    return read_mesh(channels, path.string(), kind);
}

std::optional<MeshLists> mesh_of_text(std::string_view text, const std::string& name,
                                      std::optional<LayoutKind> kind) {
    Channels channels;
    channels.open_in_memory(CHANNEL_SOURCE_A, name, text);
    return read_mesh(channels, name, kind);
}

std::optional<LayoutKind> kind_of_mesh_file(const std::filesystem::path& path,
                                            const Directories& directories) {
    Channels channels(directories);
    channels.open(CHANNEL_SOURCE_A, path.string(), OpenStatus::old);
    return kind_of_mesh(channels);
}

std::optional<LayoutKind> kind_of_mesh_text(std::string_view text, const std::string& name) {
    Channels channels;
    channels.open_in_memory(CHANNEL_SOURCE_A, name, text);
    return kind_of_mesh(channels);
}

void write_mesh(Channel& file, const MeshLists& mesh, std::string_view name) {
    require_fields(mesh);
    MeshCounts counts;
    counts.nodes = static_cast<std::int32_t>(mesh.nodes.size());
    for (const Element& e : mesh.elements)
        ++counts.of(e.section());
    MeshCounts shown = counts;
    if (mesh.flow_lines)
        shown.trusses = 0;

    write_mesh_head(file, name, shown);
    write_node_heading(mesh.kind, file);
    for (const Node& node : mesh.nodes)
        write_node_record(mesh.kind, file, node);
    for (const std::int8_t type : ELEMENT_TYPES) {
        if (counts.of(type) == 0)
            continue;
        write_section_heading(mesh.kind, file, type);
        for (const Element& e : mesh.elements)
            if (e.section() == type)
                write_element_record(mesh.kind, file, type, e);
    }
    write_closing_lines(file);
    // Behind all that readers who count lines come to.
    for (const auto& [key, material_name] : mesh.names)
        file.write_line(comment_of(key, material_name));
}

}  // namespace brelan
