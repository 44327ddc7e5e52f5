#include "model/deck.h"

#include <algorithm>
#include <limits>

#include "channel/file_names.h"
#include "channel/real_to_integer.h"
#include "channel/run_end.h"
#include "channel/text_line.h"
#include "deck/card_stream.h"
#include "model/in_directory.h"

namespace brelan::tool {

std::int32_t whole_number(float value) {
    return std::max(TRUNCATE(value), -std::numeric_limits<std::int32_t>::max());
}

std::int32_t DeckField::integer() const {
    return whole_number(value);
}

const DeckField* DeckCard::field(std::string_view field_name) const {
    const auto found = std::find_if(fields.begin(), fields.end(),
                                    [&](const DeckField& candidate) { return candidate.name == field_name; });
    return found == fields.end() ? nullptr : &*found;
}

std::int32_t DeckCard::integer(std::string_view field_name) const {
    const DeckField* found = field(field_name);
    return found == nullptr ? 0 : found->integer();
}

float DeckCard::real(std::string_view field_name) const {
    const DeckField* found = field(field_name);
    return found == nullptr ? 0.0F : found->value;
}

const DeckCard* Deck::card(std::string_view number) const {
    const auto found = std::find_if(cards.begin(), cards.end(),
                                    [&](const DeckCard& candidate) { return candidate.number == number; });
    return found == cards.end() ? nullptr : &*found;
}

std::filesystem::path file_of_card(const std::filesystem::path& project, std::string_view name) {
    const TextLine line(name);
    if (line.blank())
        return {};
    const auto separator = [](char c) { return c == '\\' || c == '/'; };
    std::string_view rest = line.trimmed();
    if (is_bare_name(line)) {
        rest.remove_prefix(rest.find_first_not_of(' '));
    } else if (rest.size() > 3 && rest.starts_with("..") && separator(rest[2])) {
        rest.remove_prefix(3);
    } else if (!separator(rest.front()) && !(rest.size() > 2 && rest[1] == ':')) {
        return {};
    }
    try {
        const InDirectory there(project.empty() ? "." : project);
        const std::filesystem::path found = RESOLVE(rest);
        return found.is_absolute() ? found : project / found;
    } catch (const RunEnd&) {
        return {};  // two files of the name, or no place for drive C:
    }
}

}  // namespace brelan::tool
