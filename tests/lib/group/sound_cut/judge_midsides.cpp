// Midside nodes: named ones are there, lie on their side, and neighbours share them.
#include "lib/group/sound_cut/judged_mesh.h"

namespace brelan::test {

// Where both ends stand still, a midside node is as far off its side as the digits of its file put it.
constexpr double SIX_DIGITS = 1e-5;

void judge_midsides(const Judgement& j) {
    std::map<Side, int> known;
    std::map<int, Side> side_of_midside;
    bool any = false;
    for (const CutSolid& solid : j.run.before.solids)
        for (const int m : solid.midsides)
            any = any || m > 0;
    if (!any)
        return;
    for (const std::size_t s : j.mesh.originals) {
        const CutSolid& solid = j.run.after.solids[s];
        for (std::size_t i = 0; i < solid.corners.size(); ++i) {
            const int a = solid.corners[i], b = solid.corners[(i + 1) % solid.corners.size()];
            const int m = solid.midsides[i];
            const std::string where = "the side from node " + std::to_string(a) + " to " + std::to_string(b) +
                                      " of element " + std::to_string(solid.number);
            if (m <= 0 || !j.mesh.has(m)) {
                j.add(Law::midside,
                      where + " has no midside node (" + std::to_string(m) + ") at " + words(j.mesh.at(a)));
                continue;
            }
            const Spot &from = j.mesh.at(a), &to = j.mesh.at(b);
            const double t = share_along(j.mesh.at(m), from, to);
            if (distance_to(j.mesh.at(m), from, to) > j.rounding + SIX_DIGITS || t < 0.25 || t > 0.75)
                j.add(Law::midside, "node " + std::to_string(m) + " is off the middle of " + where + " at " +
                                        words(j.mesh.at(m)));
            if (const auto [at, fresh] = known.emplace(side_of(a, b), m); !fresh && at->second != m)
                j.add(Law::midside, where + " has node " + std::to_string(m) + ", its neighbour " +
                                        std::to_string(at->second));
            if (const auto [at, fresh] = side_of_midside.emplace(m, side_of(a, b));
                !fresh && at->second != side_of(a, b))
                j.add(Law::midside,
                      "node " + std::to_string(m) + " is the middle of two sides, one of them " + where);
        }
    }
}

}  // namespace brelan::test
