#include "commands/checking/doubts.h"

#include <algorithm>

namespace brelan::tool {

void Doubts::doubt(std::string_view id, const DeckCard* card, std::string message) {
    list_.push_back({std::string(id), card == nullptr ? 0 : card->line, std::move(message), false});
}

void Doubts::end_of_run(std::string_view id, const DeckCard* card, std::string message) {
    doubt(id, card, std::move(message));
    list_.back().ends_run = true;
}

void Doubts::sort() {
    std::stable_sort(list_.begin(), list_.end(),
                     [](const Doubt& a, const Doubt& b) { return a.line < b.line; });
}

}  // namespace brelan::tool
