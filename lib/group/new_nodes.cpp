#include "group/new_nodes.h"

#include <algorithm>

#include "group/engine_mesh.h"
#include "mesh/kinds.h"

namespace brelan {

namespace {

// The code words of a new node follow other nodes one after the other: in the coupled and displacement kinds
// a word stays 1 only if no other has 0, in the temperature and head kinds a word that is not 0 is taken, or
// one stays only if no other has another.
void follow_node(Mesh& mesh, NodeNumber node, NodeNumber other, Codes codes) {
    NodeCodes& words = mesh.codes[node];
    const NodeCodes& from = mesh.codes[other];
    const auto count = static_cast<std::size_t>(kind_row(mesh.kind).node_codes);
    for (std::size_t i = 0; i < count; ++i) {
        if (has_node_values(mesh.kind)) {
            if (codes == Codes::of_all && from[i] != words[i])
                words[i] = 0;
            else if (from[i] != 0)
                words[i] = from[i];
        } else if (from[i] == 0) {
            words[i] = 0;
        }
    }
    if (!has_node_values(mesh.kind))
        return;
    if (mesh.head[other] != 0.0F)
        mesh.head[node] = mesh.head[other];
    if (mesh.coefficient[other] != 0.0F)
        mesh.coefficient[node] = mesh.coefficient[other];
}

void begin_codes(Mesh& mesh, NodeNumber node, std::int32_t value, std::size_t words) {
    for (std::size_t i = 0; i < words; ++i)
        mesh.codes[node][i] = value;
    if (has_node_values(mesh.kind))
        mesh.head[node] = mesh.coefficient[node] = 0.0F;
}

}  // namespace

NodeNumber add_side_node(Mesh& mesh, Engine& engine, const Point& point, NodeNumber a, NodeNumber b,
                         Codes codes) {
    const NodeNumber node = add_node(mesh, engine, point);
    begin_codes(mesh, node, has_node_values(mesh.kind) ? 0 : 1,
                static_cast<std::size_t>(kind_row(mesh.kind).node_codes));
    if (codes == Codes::of_all && has_node_values(mesh.kind))
        mesh.codes[node] = mesh.codes[a];
    follow_node(mesh, node, std::min(a, b), codes);
    follow_node(mesh, node, std::max(a, b), codes);
    return node;
}

NodeNumber add_inner_node(Mesh& mesh, Engine& engine, const Point& point,
                          std::span<const NodeNumber, 4> corners, Codes codes) {
    const NodeNumber node = add_node(mesh, engine, point);
    const bool begins_three = mesh.kind == LayoutKind::head;  // one code more than its nodes have
    begin_codes(mesh, node, mesh.kind == LayoutKind::temperature ? 0 : 1,
                begins_three ? 3 : static_cast<std::size_t>(kind_row(mesh.kind).node_codes));
    if (codes == Codes::of_all && has_node_values(mesh.kind))
        mesh.codes[node] = mesh.codes[corners.front()];
    for (const NodeNumber n : corners)
        if (n.names_one())
            follow_node(mesh, node, n, codes);
    return node;
}

}  // namespace brelan
