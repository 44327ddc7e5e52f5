#include "commands/checking/doubts.h"

#include <algorithm>
#include <cctype>

namespace brelan::tool {

namespace {

// Where a name stands as a word of its own; npos where it does not.
std::size_t place_of_word(std::string_view text, std::string_view word) {
    const auto is_letter = [&](std::size_t i) {
        return i < text.size() && (std::isalnum(static_cast<unsigned char>(text[i])) != 0 || text[i] == '_');
    };
    std::size_t at = text.find(word);
    while (at != std::string_view::npos && ((at > 0 && is_letter(at - 1)) || is_letter(at + word.size())))
        at = text.find(word, at + 1);
    return at;
}

std::optional<std::size_t> field_named(const DeckCard& card, std::string_view message) {
    std::optional<std::size_t> named;
    std::size_t first = std::string_view::npos;
    for (std::size_t i = 0; i < card.fields.size(); ++i) {
        const std::string& name = card.fields[i].name;
        if (name.empty() || name == "-")
            continue;
        const std::size_t at = place_of_word(message, name);
        if (at < first) {
            first = at;
            named = i;
        }
    }
    return named;
}

}  // namespace

void Doubts::doubt(std::string_view id, const DeckCard* card, std::string message) {
    Doubt doubt{std::string(id), card == nullptr ? 0 : card->line, std::move(message), false, {}, {}};
    const auto place = std::find_if(deck_.cards.begin(), deck_.cards.end(),
                                    [&](const DeckCard& candidate) { return &candidate == card; });
    if (place != deck_.cards.end()) {
        doubt.card = static_cast<std::size_t>(place - deck_.cards.begin());
        doubt.field = field_named(*card, doubt.message);
    }
    list_.push_back(std::move(doubt));
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
