#include "mesh/moves.h"

#include <algorithm>
#include <span>
#include <string>
#include <vector>

#include "group/tables.h"

namespace brelan {

namespace {

// Node a becomes node b.
struct Replacement {
    std::int32_t a, b;
};

// Orders to replace nodes, to be carried out on a node in the order of the list: what one gives, a later one
// may replace again. Sorted by node, so that the cost does not grow with the list.
class ReplacementList {
public:
    explicit ReplacementList(std::vector<Replacement> orders) : orders_(std::move(orders)) {
        for (std::size_t i = 0; i < orders_.size(); ++i)
            by_node_.push_back({orders_[i].a, i});
        std::sort(by_node_.begin(), by_node_.end());
    }

    // Counts the replacements made.
    int apply(std::int32_t& node) const {
        int made = 0;
        std::size_t next = 0;
        for (;;) {
            const auto order = std::lower_bound(by_node_.begin(), by_node_.end(), std::pair{node, next});
            if (order == by_node_.end() || order->first != node)
                return made;
            node = orders_[order->second].b;
            next = order->second + 1;
            ++made;
        }
    }

private:
    std::vector<Replacement> orders_;
    std::vector<std::pair<std::int32_t, std::size_t>> by_node_;
};

void replace_in_elements(const ReplacementList& orders) {
    const std::int32_t ELAST = last_element();
    for (std::int32_t n = 1; n <= ELAST; ++n) {
        if (ETYPE[n] == EL_DELETED)
            continue;
        ElementWords& w = IEL[n];
        int made = orders.apply(w.I1) + orders.apply(w.I2);
        if (ETYPE[n] == EL_CONTINUUM) {
            made += orders.apply(w.I3) + orders.apply(w.I4);
        } else {
            w.I4 = w.I1;
            w.I3 = w.I2;
        }
        if (made > 0)
            DEGENERATE(n);
    }
    // The lines of the groups name their nodes for the outputs.
    for (std::int32_t i = 1; i <= NGRP; ++i)
        for (std::int32_t& node : KEPTLINES[i].nodes)
            orders.apply(node);
}

bool is_listed(std::int32_t material, std::span<const std::int32_t> materials) {
    return std::find(materials.begin(), materials.end(), material) != materials.end();
}

bool is_considered(std::int32_t n) {
    const bool beam = ETYPE[n] == EL_BEAM;
    const bool truss = ETYPE[n] == EL_TRUSS;
    const bool listed_beam = beam && is_listed(IEL[n].MATNO, MATCB);
    const bool listed_truss = truss && is_listed(IEL[n].MATNO, MATCT);
    switch (IDCOL) {
        case 1:
            return beam || truss;
        case 2:
            return beam;
        case 3:
            return truss;
        case 4:
            return listed_beam;
        case 5:
            return listed_truss;
        case 6:
            return listed_beam || listed_truss;
        default:
            return false;
    }
}

float length_of(std::int32_t n) {
    const ElementWords& w = IEL[n];
    return DIST2D(XC[w.I1], YC[w.I1], XC[w.I2], YC[w.I2]);
}

// The k-th used node stands at NMAP(k). Returns their count.
std::int32_t refresh_ordinals() {
    NUSED.fill(0);
    const std::int32_t ELAST = last_element();
    for (std::int32_t n = 1; n <= ELAST; ++n) {
        if (ETYPE[n] == EL_DELETED)
            continue;
        const ElementWords& w = IEL[n];
        for (const std::int32_t corner : {w.I1, w.I2, w.I3, w.I4})
            if (corner > 0)
                NUSED[corner] = corner;
    }
    std::int32_t count = 0;
    for (std::int32_t n = 1; n <= MAXNP; ++n)
        if (NUSED[n] != 0)
            NMAP[++count] = n;
    return count;
}

std::int32_t node_at(std::int32_t ordinal, std::int32_t count) {
    if (ordinal < 1 || ordinal > count)
        FAIL("second move list: expected the position of a node from 1 to " + std::to_string(count) +
             ", found " + std::to_string(ordinal));
    return NMAP[ordinal];
}

void apply_moves(const std::vector<NodeMove>& moves) {
    std::vector<Replacement> merges;
    for (const NodeMove& move : moves) {
        const std::int32_t a = move.moved;
        const std::int32_t b = move.target;
        XC[a] = XC[a] + (XC[b] - XC[a]) * move.fraction;
        YC[a] = YC[a] + (YC[b] - YC[a]) * move.fraction;
        if (move.fraction == 1.0F)
            merges.push_back({a, b});
    }
    replace_in_elements(ReplacementList(std::move(merges)));
}

}  // namespace

std::int32_t last_element() {
    std::int32_t n = MAXEL;
    while (n > 0 && ETYPE[n] == EL_DELETED)
        --n;
    return n;
}

void DEGENERATE(std::int32_t element) {
    ElementWords& w = IEL[element];
    std::int32_t& type = ETYPE[element];
    if (type != EL_CONTINUUM) {
        if (w.I1 == w.I2)
            type = EL_DELETED;
        return;
    }
    if (w.I4 < 1) {
        if (w.I1 == w.I2 || w.I2 == w.I3 || w.I1 == w.I3)
            type = EL_DELETED;
        return;
    }
    // The three corners that are left; two of them in one leave nothing.
    const auto becomes = [&](std::int32_t i1, std::int32_t i2, std::int32_t i3, bool nothing_left) {
        if (nothing_left) {
            type = EL_DELETED;
            return;
        }
        w.I1 = i1;
        w.I2 = i2;
        w.I3 = i3;
        w.I4 = 0;
    };
    if (w.I1 == w.I2)
        becomes(w.I1, w.I3, w.I4, w.I3 == w.I4);
    else if (w.I1 == w.I3)
        type = EL_DELETED;
    else if (w.I1 == w.I4)
        becomes(w.I1, w.I2, w.I3, w.I2 == w.I3);
    else if (w.I2 == w.I3)
        becomes(w.I1, w.I2, w.I4, w.I1 == w.I4);
    else if (w.I2 == w.I4)
        type = EL_DELETED;
    else if (w.I3 == w.I4)
        becomes(w.I1, w.I2, w.I3, w.I1 == w.I2);
}

void COLLAPSE() {
    constexpr float longer_than_any = 1.0E31F;
    const std::int32_t ELAST = last_element();
    float sum = 0.0F;
    float LMIN = longer_than_any;
    std::int32_t count = 0;
    for (std::int32_t n = 1; n <= ELAST; ++n) {
        if (!is_considered(n))
            continue;
        const float length = length_of(n);
        sum = sum + length;
        ++count;
        LMIN = std::min(LMIN, length);
    }
    const float LCUT = count > 0 ? (sum / static_cast<float>(count)) * FCOL : 0.0F;
    if (count == 0 || LMIN > LCUT) {
        IDCOL = 0;
        return;
    }
    std::vector<Replacement> orders;
    for (std::int32_t n = 1; n <= ELAST; ++n)
        if (is_considered(n) && length_of(n) <= LCUT)
            orders.push_back({IEL[n].I2, IEL[n].I1});
    replace_in_elements(ReplacementList(std::move(orders)));
}

void MOVENODES() {
    std::vector<NodeMove> moves;
    if (NMOVE > 0) {
        for (std::int32_t k = 1; k <= NMOVE; ++k)
            moves.push_back(MOVES[k]);
        refresh_ordinals();
    } else if (NMOVE2 > 0) {
        const std::int32_t count = refresh_ordinals();
        for (std::int32_t k = 1; k <= NMOVE2; ++k)
            moves.push_back(
                {node_at(MOVES2[k].moved, count), node_at(MOVES2[k].target, count), MOVES2[k].fraction});
    } else {
        return;
    }
    apply_moves(moves);
}

}  // namespace brelan
