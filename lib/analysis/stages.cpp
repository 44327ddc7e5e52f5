#include "analysis/stages.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <utility>

namespace brelan {

bool is_there(const ActivityPair& pair, std::int32_t step) {
    const bool has_come = pair.activated <= 0 || step >= pair.activated;
    const bool has_gone = pair.deactivated > 0 && step >= pair.deactivated;
    return has_come && !has_gone && !(pair.deactivated > 0 && pair.activated >= pair.deactivated);
}

std::int32_t StageSet::comes() const {
    return never_there() ? 0 : std::max(pair.activated, 0);
}

std::int32_t StageSet::goes() const {
    return never_there() ? 0 : std::max(pair.deactivated, 0);
}

Stages::Stages(const MeshLists& mesh, std::span<const ElementActivity> activity)
    : elements_(activity.begin(), activity.end()) {
    std::erase_if(elements_, [&mesh](const ElementActivity& e) {
        return mesh.element_place(e.element.value) == MeshLists::NONE || e.pair == ActivityPair{};
    });
    std::ranges::sort(elements_, {}, &ElementActivity::element);
    std::map<std::tuple<ElementClass, std::int32_t, std::int32_t>, std::vector<Number>> sets;
    for (const ElementActivity& e : elements_) {
        const Element& element = mesh.elements[static_cast<std::size_t>(mesh.element_place(e.element.value))];
        sets[{element.of, e.pair.activated, e.pair.deactivated}].push_back(e.element.value);
    }
    std::set<std::int32_t> steps;
    for (auto& [key, elements] : sets) {
        const auto [of, activated, deactivated] = key;
        sets_.push_back({of, {activated, deactivated}, std::move(elements)});
        for (const std::int32_t step : {sets_.back().comes(), sets_.back().goes()})
            if (step > 0)
                steps.insert(step);
    }
    steps_.assign(steps.begin(), steps.end());
}

const ElementActivity* Stages::find(Number element) const {
    const auto found =
        std::ranges::lower_bound(elements_, ElementNumber(element), {}, &ElementActivity::element);
    return found != elements_.end() && found->element.value == element ? &*found : nullptr;
}

ActivityPair Stages::pair_of(Number element) const {
    const ElementActivity* found = find(element);
    return found != nullptr ? found->pair : ActivityPair{};
}

MaterialNumber Stages::old_material(Number element) const {
    const ElementActivity* found = find(element);
    return found != nullptr ? found->old_material : MaterialNumber{};
}

}  // namespace brelan
