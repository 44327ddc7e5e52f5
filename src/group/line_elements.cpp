#include "group/line_elements.h"

#include <cstdlib>

#include "group/engine_mesh.h"
#include "mesh/kinds.h"
#include "mesh/mesh_records.h"

namespace brelan {

namespace {

constexpr std::int32_t BEAM_LINE = 2, TRUSS_LINE = 3, TRUSS_CODE_0 = 4, TRUSS_CODE_1 = 5;  // |LTP|

void add_line_element(std::int32_t L, std::int32_t LTP, std::int32_t LMAT, std::int32_t from,
                      std::int32_t to) {
    const std::int32_t e = add_element();
    const std::int8_t type = L == BEAM_LINE ? EL_BEAM : EL_TRUSS;
    ElementRecord element = two_node_element(from, to, LMAT);
    const ElementWords stood = IEL[e];
    element.words.M5 = stood.M5;
    element.words.M6 = stood.M6;
    element.words.M7 = stood.M7;
    element.words.M8 = stood.M8;
    store_element(e, type, element);
    ETYPE[e] = type;
    note_element(e);
    const auto mark = static_cast<std::int8_t>(CURRENT_GROUP % 256);
    NMARK[from] = mark;
    NMARK[to] = mark;
    if (LTP < 0)
        ELEMSIGN[e] = -1;
}

// The words of one node of a line of beams or trusses, for the flow sections of the temperature and head
// kinds.
struct LineWords {
    std::int32_t L, LMAT, line, count;

    void write(std::int32_t node, std::size_t position) const {
        IDN[node] = {L, LMAT, line, static_cast<std::int32_t>(position), count};
    }
};

void write_line_words(std::int32_t L, std::int32_t LMAT, bool closed, std::span<const std::int32_t> nodes) {
    const std::int32_t line = L == BEAM_LINE ? NPIPE : NCONV;
    const std::size_t c = nodes.size();
    const std::size_t elements = closed ? c : c - 1;
    if (KIND() == LayoutKind::head && L == TRUSS_LINE) {
        for (std::size_t i = 0; !closed && i < elements; ++i) {
            for (const std::int32_t node : {nodes[i], nodes[i + 1]}) {
                IDN[node][0] = TRUSS_LINE;
                IDN[node][1] = 0;
            }
        }
        return;
    }
    const auto count = static_cast<std::int32_t>(c);
    const LineWords words{L, LMAT, line, closed && L == TRUSS_LINE ? -count : count};
    for (std::size_t i = 0; i < elements; ++i) {
        const bool closing = closed && i + 1 == elements;
        if (i == 0)
            words.write(nodes[0], 1);
        if (!closing && i + 1 < c)
            words.write(nodes[i + 1], i + 2);
    }
}

void write_node_words(std::int32_t L, std::int32_t LMAT, bool closed, std::span<const std::int32_t> nodes) {
    switch (KIND()) {
        case LayoutKind::coupled:
            for (const std::int32_t node : nodes)
                if (L == BEAM_LINE)
                    IDN[node][4] = 0;
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            if (L == BEAM_LINE || L == TRUSS_LINE) {
                write_line_words(L, LMAT, closed, nodes);
                break;
            }
            for (const std::int32_t node : nodes) {
                IDN[node][0] = L == TRUSS_CODE_0 ? 0 : 1;
                IDN[node][1] = LMAT;
            }
            break;
        case LayoutKind::displacement:
            for (const std::int32_t node : nodes)
                if (L == BEAM_LINE)
                    IDN[node][2] = 0;
            break;
    }
}

}  // namespace

void LINEELEM(std::int32_t MOVE, bool closed, std::int32_t LTP, std::int32_t LMAT,
              std::span<const std::int32_t> nodes) {
    if (MOVE == 1)
        for (const std::int32_t node : nodes)
            FROZEN[node] = 1;
    const std::int32_t L = std::abs(LTP);
    if (L < BEAM_LINE || L > TRUSS_CODE_1)
        return;
    if (L == BEAM_LINE)
        ++NPIPE;
    if (L == TRUSS_LINE) {
        ++NCONV;
        if (KIND() == LayoutKind::head && !closed)
            ++NFSEC;
    }
    const std::size_t c = nodes.size();
    const std::size_t elements = closed ? c : c - (c > 0 ? 1 : 0);
    // Closed lines of beams are walked backwards in the kinds of the mechanical solvers.
    const bool backwards = closed && L == BEAM_LINE && !has_node_values();
    for (std::size_t i = 0; i < elements; ++i) {
        const std::size_t from = backwards ? (c - i) % c : i;
        const std::size_t to = backwards ? c - i - 1 : (i + 1) % c;
        add_line_element(L, LTP, LMAT, nodes[from], nodes[to]);
    }
    if (elements > 0)
        write_node_words(L, LMAT, closed, nodes);
}

}  // namespace brelan
