// A result as the laws look at it: twins of joints are one with their line nodes, doubles are set apart from
// the elements that they lie over.
#pragma once

#include <map>
#include <set>
#include <utility>
#include <vector>

#include "lib/group/sound_cut/judge.h"

namespace brelan::test {

using Side = std::pair<int, int>;  // the smaller number in front

Side side_of(int a, int b);

double cross(const Spot& a, const Spot& b, const Spot& c);  // of a-b and a-c
double distance(const Spot& a, const Spot& b);
double distance_to(const Spot& p, const Spot& a, const Spot& b);  // to the piece from a to b
double share_along(const Spot& p, const Spot& a, const Spot& b);  // 0 at a, 1 at b
std::string words(const Spot& p);

class JudgedMesh {
public:
    explicit JudgedMesh(const CutMesh& mesh);

    const CutMesh& mesh;
    std::vector<std::size_t> originals;  // places in mesh.solids: the first of each set of corners
    std::vector<std::size_t> doubles;
    std::map<Side, std::vector<std::size_t>> raw_sides;  // originals by sides, twins apart
    std::map<Side, std::vector<std::size_t>> sides;      // twins and line one
    std::vector<int> solid_nodes;                        // nodes of solids

    bool has(int node) const { return places_.contains(node); }
    const Spot& at(int node) const { return places_.at(node); }
    int root(int node) const;
    bool is_side(int a, int b) const { return sides.contains(side_of(root(a), root(b))); }

    // The original that covers the spot.
    const CutSolid* solid_at(const Spot& p) const;
    bool covers(const Spot& p) const { return solid_at(p) != nullptr; }

private:
    std::map<int, Spot> places_;
    std::map<int, int> joined_;
    std::map<std::pair<int, int>, std::vector<std::size_t>> cells_;
    double cell_ = 1.0;
};

// The laws, each in a file of its own; they add to the verdict.
struct Judgement {
    const CutDeck& deck;
    const CutRun& run;
    const JudgedMesh& mesh;
    double rounding;  // how far a coordinate may be off by its digits
    double same;      // TOLSAME
    Verdict& verdict;

    void add(Law law, std::string text) const { verdict.violations.push_back({law, std::move(text)}); }
    bool on_border(const Spot& p) const;
    bool on_border(const Spot& a, const Spot& b) const;  // both on one side of it
};

bool judge_names(const Judgement& judgement);  // false: nothing else can be judged
void judge_shapes(const Judgement& judgement);
void judge_fit(const Judgement& judgement);
void judge_border(const Judgement& judgement);
void judge_lines(const Judgement& judgement);
void judge_regions(const Judgement& judgement);
void judge_midsides(const Judgement& judgement);

}  // namespace brelan::test
