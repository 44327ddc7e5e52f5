#include "analysis/material_names.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "text/utf_8.h"

namespace brelan {

namespace {

constexpr std::string_view BLANKS = " \t\r";

MaterialNames::Key key_of(ElementClass of, std::int32_t material) {
    return {of == ElementClass::joint ? ElementClass::solid : of, material};
}

std::string_view without_blanks(std::string_view text) {
    const std::size_t first = std::min(text.find_first_not_of(BLANKS), text.size());
    text.remove_prefix(first);
    return text.substr(0, text.find_last_not_of(BLANKS) + 1);
}

// Control characters, and the two that XML has no place for.
bool is_control(std::string_view character) {
    const auto first = static_cast<unsigned char>(character.front());
    return first < ' ' || first == 127 ||
           (first == 0xC2U && static_cast<unsigned char>(character.back()) < 0xA0U) ||
           character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF";
}

struct Name {
    std::string text;
    bool changed = false;
};

// Decks have long been written in the code pages of Windows, whose letters are those of Latin-1.
Name name_in_utf_8(std::string_view raw) {
    Name name;
    raw = without_blanks(raw);
    for (std::size_t count = 0; !raw.empty(); ++count) {
        if (count == MaterialNames::LONGEST) {
            name.changed = true;
            break;
        }
        const std::size_t size = size_of_character(raw);
        std::string character(raw.substr(0, std::max<std::size_t>(size, 1)));
        raw.remove_prefix(character.size());
        if (const auto byte = static_cast<unsigned char>(character.front()); size == 0)
            character = {static_cast<char>(0xC0U | (byte >> 6U)), static_cast<char>(0x80U | (byte & 0x3FU))};
        if (is_control(character)) {
            name.changed = name.changed || character != "\t";
            character = " ";
        }
        name.text += character;
    }
    name.text = without_blanks(name.text);
    return name;
}

// Takes a word in front of the text, in any case.
bool take_word(std::string_view& text, std::string_view word) {
    const auto same = [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b; };
    if (text.size() < word.size() ||
        !std::equal(word.begin(), word.end(), text.begin(), [&](char b, char a) { return same(a, b); }))
        return false;
    text.remove_prefix(word.size());
    return true;
}

std::optional<ElementClass> take_class(std::string_view& text) {
    if (take_word(text, "material") || take_word(text, "joint"))
        return ElementClass::solid;
    if (take_word(text, "beam"))
        return ElementClass::beam;
    if (take_word(text, "truss"))
        return ElementClass::truss;
    return std::nullopt;
}

}  // namespace

const std::string& MaterialNames::of(ElementClass of, std::int32_t material) const {
    static const std::string none;
    const auto found = names_.find(key_of(of, material));
    return found == names_.end() ? none : found->second;
}

void MaterialNames::set(ElementClass of, std::int32_t material, std::string_view name) {
    Name clean = name_in_utf_8(name);
    changed_ += clean.changed ? 1 : 0;
    if (clean.text.empty())
        names_.erase(key_of(of, material));
    else
        names_[key_of(of, material)] = std::move(clean.text);
}

bool MaterialNames::take_comment(std::string_view line) {
    if (!line.starts_with('*'))
        return false;
    line = without_blanks(line.substr(1));
    const std::optional<ElementClass> of = take_class(line);
    if (!of || line.empty() || BLANKS.find(line.front()) == std::string_view::npos)
        return false;
    line = without_blanks(line);
    std::int32_t material = 0;
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), material);
    if (error != std::errc())
        return false;
    line = without_blanks(line.substr(static_cast<std::size_t>(end - line.data())));
    if (!line.starts_with(':'))
        return false;
    set(*of, material, line.substr(1));
    return true;
}

void MaterialNames::take(const MaterialNames& others) {
    for (const auto& [key, name] : others)
        names_[key] = name;
}

std::string comment_of(const MaterialNames::Key& key, std::string_view name) {
    return "* " + group_name(key.of, key.material) + ": " + std::string(name);
}

}  // namespace brelan
