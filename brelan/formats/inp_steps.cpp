#include "formats/inp_steps.h"

#include <algorithm>
#include <functional>

#include "cli/words.h"

namespace brelan::tool {

namespace {

// Springs know nothing of the ground's movements before they come, and would pull it back: those of joints
// are there from the start.
std::int32_t comes_in_file(const StageSet& set) {
    return set.of == ElementClass::joint ? 0 : set.comes();
}

std::string name_of_set(const StageSet& set) {
    std::string name(CLASS_PLURALS[static_cast<std::size_t>(set.of)]);
    if (set.never_there())
        return name + "_NEVER";
    if (comes_in_file(set) > 0)
        name += fmt::format("_COME_{}", set.comes());
    if (set.goes() > 0)
        name += fmt::format("_GO_{}", set.goes());
    return name;
}

std::vector<std::string> names_where(const std::vector<InpStageSet>& sets,
                                     const std::function<bool(const InpStageSet&)>& holds) {
    std::vector<std::string> names;
    for (const InpStageSet& set : sets)
        if (holds(set))
            names.push_back(set.name);
    return names;
}

class StepWriter {
public:
    StepWriter(FormattedText& text, const std::vector<InpStageSet>& sets)
        : text_(text),
          is_nonlinear_(std::ranges::any_of(sets, [](const InpStageSet& s) { return s.comes > 0; })) {}

    void begin(const std::string& title) {
        text_.add("** {}\n*STEP{}\n*STATIC\n", title, is_nonlinear_ ? ", NLGEOM, INC=1000" : "");
        if (is_nonlinear_)
            text_.add("1., 1., 1e-6, 1.\n");
    }

    void change(const std::vector<std::string>& going, const std::vector<std::string>& coming) {
        if (!going.empty()) {
            text_.add("*MODEL CHANGE, TYPE=ELEMENT, REMOVE\n");
            add_names(text_, going);
        }
        if (!coming.empty()) {
            text_.add("*MODEL CHANGE, TYPE=ELEMENT, ADD=STRAINFREE\n");
            add_names(text_, coming);
        }
    }

    void end() { text_.add("*NODE FILE, OUTPUT=2D\nU, RF\n*EL FILE, OUTPUT=2D\nS, E\n*END STEP\n"); }

private:
    FormattedText& text_;
    bool is_nonlinear_;
};

}  // namespace

std::vector<InpStageSet> add_stage_sets(FormattedText& text, const Stages& stages, const InpJoints& joints,
                                        SetNames& names) {
    std::vector<InpStageSet> made;
    for (const StageSet& set : stages.sets()) {
        std::vector<Number> elements;
        for (const Number n : set.elements) {
            const auto springs = joints.of_joint.find(n);
            if (springs != joints.of_joint.end())
                elements.insert(elements.end(), springs->second.begin(), springs->second.end());
            else if (set.of != ElementClass::joint)
                elements.push_back(n);
        }
        if (elements.empty() || (comes_in_file(set) == 0 && set.goes() == 0 && !set.never_there()))
            continue;
        made.push_back({names.take(name_of_set(set)), comes_in_file(set), set.goes(), set.never_there()});
        text.add("*ELSET, ELSET={}\n", made.back().name);
        add_numbers(text, elements);
    }
    return made;
}

void add_steps(FormattedText& text, const std::vector<InpStageSet>& sets, const Stages& stages,
               const std::vector<std::string>& heavy_sets, double gravity) {
    StepWriter step(text, sets);
    const std::vector<std::string> away =
        names_where(sets, [](const InpStageSet& s) { return s.is_away_at_first(); });
    if (!sets.empty()) {
        step.begin("Nothing happens: elements can be taken away from the second step on");
        step.end();
    }
    step.begin(sets.empty() ? "Own weight" : "Before the first stage");
    step.change(away, {});
    if (gravity != 0.0 && !heavy_sets.empty()) {
        text.add("*DLOAD\n");
        for (const std::string& set : heavy_sets)
            text.add("{}, GRAV, {}, 0., -1., 0.\n", set, real_text(gravity));
    }
    step.end();
    for (const std::int32_t number : stages.steps()) {
        const std::vector<std::string> going =
            names_where(sets, [&](const InpStageSet& s) { return s.goes == number; });
        const std::vector<std::string> coming =
            names_where(sets, [&](const InpStageSet& s) { return s.comes == number; });
        step.begin(fmt::format("Stage {}{}{}", number, going.empty() ? "" : ": going " + joined(going, ", "),
                               coming.empty() ? "" : ": coming " + joined(coming, ", ")));
        step.change(going, coming);
        step.end();
    }
}

}  // namespace brelan::tool
