#include "mesh/combine.h"

#include <cstdlib>
#include <string>
#include <vector>

#include "mesh/kinds.h"
#include "mesh/node_grid.h"

namespace brelan {

namespace {

constexpr float NO_SPACING = 1.0E35F;  // start of the smallest spacing

constexpr int CONTINUUM = 0, BEAM = 1, TRUSS = 2;  // places in Region::old_elements and Region::start

// The first region's nodes in ascending number, and the second's.
std::vector<NumberedPoint> first_nodes() {
    std::vector<NumberedPoint> nodes;
    for (std::int32_t n = REGION1.nodes.lowest; n <= REGION1.nodes.highest; ++n)
        if (NACT1[n] == 1)
            nodes.push_back({n, XC1[n], YC1[n]});
    return nodes;
}

std::vector<NumberedPoint> second_nodes() {
    std::vector<NumberedPoint> nodes;
    for (std::int32_t n = REGION2.nodes.lowest; n <= REGION2.nodes.highest; ++n)
        if (NACT2[n] == 1)
            nodes.push_back({n, XC[n], YC[n]});
    return nodes;
}

// Numbers rise strictly in the order second continuum, first continuum, second beam, first beam, second
// truss, first truss.
bool numbers_can_stay() {
    const NumberRange(&first)[3] = REGION1.old_elements;
    const NumberRange(&second)[3] = REGION2.old_elements;
    return second[CONTINUUM].highest < first[CONTINUUM].lowest &&
           first[CONTINUUM].highest < second[BEAM].lowest && second[BEAM].highest < first[BEAM].lowest &&
           first[BEAM].highest < second[TRUSS].lowest && second[TRUSS].highest < first[TRUSS].lowest;
}

// Puts a first-region node's data into a slot of the working set.
void copy_first_node(std::int32_t from, std::int32_t to) {
    for (int i = 0; i < kind_row().node_codes; ++i)
        IDN[to][static_cast<std::size_t>(i)] = IDN1[from][static_cast<std::size_t>(i)];
    XC[to] = XC1[from];
    YC[to] = YC1[from];
    if (has_node_values()) {
        H[to] = H1[from];
        CF[to] = CF1[from];
    }
}

// The type of an element in the combined mesh; below 1 for none.
std::int8_t combined_type(std::int32_t n) {
    return EACT1[n] < EL_CONTINUUM ? EACT2[n] : EACT1[n];
}

}  // namespace

void SCANREGION(Channel& mesh, Region& region) {
    mesh.skip_lines(2, "a heading line");
    region.counts = read_mesh_counts(mesh);
    mesh.skip_lines(2, "a heading line");
    for (std::int32_t i = 0; i < region.counts.NUMNP; ++i)
        read_node_record(mesh, region.stripped.NFIELDS);
    for (const std::int8_t type : {EL_CONTINUUM, EL_BEAM, EL_TRUSS}) {
        NumberRange& range = region.old_elements[type - EL_CONTINUUM];
        range = NumberRange{};
        if (region.counts.of(type) > 0)
            mesh.skip_lines(region.stripped.headings_of(type), "a heading line");
        for (std::int32_t i = 0; i < region.counts.of(type); ++i)
            range.include(read_element_number(mesh, type));
    }
    mesh.rewind();
}

void FIXREGIONNUMBERS() {
    const NumberRange(&first)[3] = REGION1.old_elements;
    const NumberRange(&second)[3] = REGION2.old_elements;
    if (numbers_can_stay()) {
        for (const int type : {CONTINUUM, BEAM, TRUSS}) {
            REGION1.start[type] = first[type].lowest;
            REGION2.start[type] = second[type].lowest;
        }
        return;
    }
    // An empty set takes part with its start values, 100,000 and 0: only the numbers of types behind it
    // suffer.
    const auto extent = [](const NumberRange& range) { return range.highest - range.lowest; };
    REGION2.start[CONTINUUM] = 1;
    REGION1.start[CONTINUUM] = extent(second[CONTINUUM]) + 2;
    std::int32_t E = extent(first[CONTINUUM]) + 2 + extent(second[CONTINUUM]);
    REGION2.start[BEAM] = E + 1;
    E = E + extent(second[BEAM]) + 1;
    REGION1.start[BEAM] = E + 1;
    E = E + extent(first[BEAM]) + 1;
    REGION2.start[TRUSS] = E + 1;
    REGION1.start[TRUSS] = E + extent(second[TRUSS]) + 2;
}

void READREGIONHEAD(Channel& mesh, Region& region) {
    mesh.skip_lines(2, "a heading line");
    region.counts = read_mesh_counts(mesh);
    mesh.skip_lines(2, "a heading line");
    region.nodes = NumberRange{};
    region.elements = NumberRange{};
    const int start = mesh.lines_before();
    for (std::int32_t i = 0; i < region.counts.NUMNP; ++i)
        region.nodes.include(read_node_record(mesh, region.stripped.NFIELDS).NODE);
    mesh.step_back(mesh.lines_before() - start);
}

void READFIRSTNODES(Channel& mesh) {
    for (std::int32_t i = 0; i < REGION1.counts.NUMNP; ++i) {
        const NodeRecord node = read_node_record(mesh, REGION1.stripped.NFIELDS);
        IDN1[node.NODE] = node.ID;
        XC1[node.NODE] = node.XC;
        YC1[node.NODE] = node.YC;
        H1[node.NODE] = node.H;
        CF1[node.NODE] = node.CF;
        NACT1[node.NODE] = 1;
    }
}

void READSECONDNODES(Channel& mesh) {
    for (std::int32_t i = 0; i < REGION2.counts.NUMNP; ++i) {
        const NodeRecord node = read_node_record(mesh, REGION2.stripped.NFIELDS);
        IDN[node.NODE] = node.ID;
        XC[node.NODE] = node.XC;
        YC[node.NODE] = node.YC;
        if (has_node_values()) {
            H[node.NODE] = node.H;
            CF[node.NODE] = node.CF;
        }
        NACT2[node.NODE] = 1;
        NUSED[node.NODE] = node.NODE;
    }
}

void READREGIONELEMENTS(Channel& mesh, Region& region, std::int8_t type) {
    const int place = type - EL_CONTINUUM;
    const bool first = &region == &REGION1;
    mesh.skip_lines(region.stripped.headings_of(type), "a heading line");
    for (std::int32_t i = 0; i < region.counts.of(type); ++i) {
        const ElementRecord element = read_element_record(mesh, type);
        const std::int32_t number = element.NEL - region.old_elements[place].lowest + region.start[place];
        if (number < 1 || number > MAXEL)
            mesh.fail_behind("element " + std::to_string(element.NEL) + ": expected a new number from 1 to " +
                             std::to_string(MAXEL) + ", but the renumbering of the two regions makes it " +
                             std::to_string(number));
        store_element(number, type, element);
        if (first)
            EACT1[number] = type;
        else
            EACT2[number] = type;
        region.elements.include(number);
    }
}

bool regions_collide() {
    return REGION1.elements.lowest == REGION2.elements.lowest;
}

float SMALLESTSPACING() {
    return SMALLESTDISTANCE(second_nodes(), SMALLESTDISTANCE(first_nodes(), NO_SPACING));
}

void MATCHLISTED() {
    for (std::int32_t i = 1; i <= NINT; ++i) {
        const std::int32_t second = LISTB[i];
        if (second < 1 || second > MAXNP || NACT2[second] != 1)
            FAIL(LISTPLACE +
                 ": Card 2.3: expected node numbers of the mesh of Card 2.1-1 in the first list, found " +
                 std::to_string(second));
        if (LISTA[i] < 1 || LISTA[i] > MAXNP)
            FAIL(LISTPLACE + ": Card 2.3: expected node numbers from 1 to " + std::to_string(MAXNP) +
                 " in the second list, found " + std::to_string(LISTA[i]));
        if (NACT1[LISTA[i]] == 1)
            NMAP[LISTA[i]] = -second;
    }
}

void MATCHNEAREST(float DMIN) {
    const float TOL = 0.5F * DMIN;
    const std::vector<NumberedPoint> candidates = second_nodes();
    NodeGrid grid(TOL, candidates.size());
    for (const NumberedPoint& node : candidates)
        grid.add(node);
    for (const NumberedPoint& node : first_nodes())
        if (const std::int32_t match = grid.highest_within_reach(node.x, node.y); match != 0)
            NMAP[node.number] = -match;
}

void MERGENODES() {
    std::int32_t NEXT = REGION2.nodes.highest + 1;
    for (std::int32_t n = REGION1.nodes.lowest; n <= REGION1.nodes.highest; ++n) {
        if (NACT1[n] != 1)
            continue;
        if (NMAP[n] < 0) {
            if (KEEPDUP)
                copy_first_node(n, -NMAP[n]);
            continue;
        }
        if (NEXT > MAXNP)
            FAIL(REGION1.name + ": expected node numbers of at most " + std::to_string(MAXNP) +
                 ", but its nodes go on behind the highest of " + REGION2.name + ", " +
                 std::to_string(REGION2.nodes.highest));
        copy_first_node(n, NEXT);
        NMAP[n] = NEXT;
        NUSED[NEXT] = NEXT;
        ++NEXT;
    }
    for (std::int32_t n = REGION1.nodes.lowest; n <= REGION1.nodes.highest; ++n)
        NMAP[n] = std::abs(NMAP[n]);
}

void RENUMBERFIRST() {
    const bool midside = kind_row().element_words == 8;
    for (std::int32_t n = REGION1.elements.lowest; n <= REGION1.elements.highest; ++n) {
        if (EACT1[n] < 0)
            continue;
        ElementWords& w = IEL[n];
        for (std::int32_t* word : {&w.I1, &w.I2, &w.I3, &w.I4})
            if (*word > 0)
                *word = NMAP[*word];
        if (!midside)
            continue;
        for (std::int32_t* word : {&w.M5, &w.M6, &w.M7, &w.M8})
            if (*word > 0)
                *word = NMAP[*word];
    }
}

void COUNTCOMBINED(ResultMesh& result) {
    for (std::int32_t n = 1; n <= MAXNP; ++n) {
        if (NUSED[n] <= 0)
            continue;
        ++result.counts.NUMNP;
        result.nodes.include(n);
    }
    for (std::int32_t n = 1; n <= MAXEL; ++n) {
        const std::int8_t type = combined_type(n);
        if (type < EL_CONTINUUM)
            continue;
        result.elements.include(n);
        ++(type == EL_CONTINUUM ? result.counts.NCONT
           : type == EL_BEAM    ? result.counts.NBEAM
                                : result.counts.NTRUS);
    }
}

void WRITECOMBINEDNODES(Channel& mesh, const ResultMesh& result) {
    for (std::int32_t n = result.nodes.lowest; n <= result.nodes.highest; ++n)
        if (NUSED[n] > 0)
            write_node_record(mesh, load_node(n));
}

void WRITECOMBINEDELEMENTS(Channel& mesh, const ResultMesh& result, std::int8_t type) {
    write_section_heading(mesh, type);
    for (std::int32_t n = result.elements.lowest; n <= result.elements.highest; ++n)
        if (EACT1[n] == type || EACT2[n] == type)
            write_element_record(mesh, type, load_element_for_writing(n));
}

}  // namespace brelan
