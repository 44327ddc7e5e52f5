#include "lib/group/sound_cut/judge.h"

#include <algorithm>
#include <cmath>

#include "lib/group/sound_cut/judged_mesh.h"

namespace brelan::test {

std::string_view name_of(Law law) {
    switch (law) {
        case Law::shape:
            return "shape";
        case Law::fit:
            return "fit";
        case Law::border:
            return "border";
        case Law::line:
            return "line";
        case Law::pinned:
            return "pinned";
        case Law::region:
            return "region";
        case Law::midside:
            break;
    }
    return "midside";
}

bool Verdict::breaks(Law law) const {
    return std::any_of(violations.begin(), violations.end(),
                       [law](const Violation& violation) { return violation.law == law; });
}

std::string Verdict::text() const {
    constexpr std::size_t most = 12;  // the first ones tell it
    std::string lines;
    for (std::size_t i = 0; i < std::min(most, violations.size()); ++i)
        lines += "  " + std::string(name_of(violations[i].law)) + ": " + violations[i].text + "\n";
    if (violations.size() > most)
        lines += "  and " + std::to_string(violations.size() - most) + " more\n";
    return lines;
}

Verdict judge(const CutDeck& deck, const CutRun& run) {
    Verdict verdict;
    const JudgedMesh mesh(run.after);
    const double extent = std::max(
        {std::abs(deck.low.x), std::abs(deck.low.y), std::abs(deck.high.x), std::abs(deck.high.y), 1.0E-3});
    // Four units in the last place; of the six digits of a file where a second deck has read one.
    const double rounding = extent * (deck.groups_of_first_deck == 0 ? 0x1p-21 : 1.0E-5);
    const Judgement judgement{deck, run, mesh, rounding, static_cast<double>(deck.same), verdict};
    if (!judge_names(judgement))
        return verdict;
    judge_shapes(judgement);
    judge_fit(judgement);
    judge_border(judgement);
    judge_lines(judgement);
    judge_regions(judgement);
    judge_midsides(judgement);
    return verdict;
}

}  // namespace brelan::test
