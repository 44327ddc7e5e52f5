#include "model/deck.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>

#include "cli/drive_c.h"
#include "cli/exit_status.h"
#include "deck/card_stream.h"
#include "text/file_names.h"
#include "text/real_to_integer.h"
#include "text/run_end.h"
#include "text/text_line.h"

namespace brelan::tool {

std::int32_t whole_number(float value) {
    return std::max(to_integer(value), -std::numeric_limits<std::int32_t>::max());
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

const DeckCard* NotedDeck::card(std::string_view number) const {
    const auto found = std::find_if(cards.begin(), cards.end(),
                                    [&](const DeckCard& candidate) { return candidate.number == number; });
    return found == cards.end() ? nullptr : &*found;
}

namespace {

bool separates_names(char c) {
    return c == '\\' || c == '/';
}

// A name from the working directory without the directories that it enters and leaves again.
std::string direct(std::string_view name) {
    if (separates_names(name.front()) || (name.size() > 1 && name[1] == ':'))
        return std::string(name);
    std::vector<std::string_view> parts;
    for (std::size_t from = 0; from < name.size();) {
        const std::size_t end = std::min(name.find_first_of("\\/", from), name.size());
        const std::string_view part = name.substr(from, end - from);
        from = end + 1;
        if (part == ".." && !parts.empty() && parts.back() != "..")
            parts.pop_back();
        else if (!part.empty() && part != ".")
            parts.push_back(part);
    }
    std::string text;
    for (const std::string_view part : parts)
        text += (text.empty() ? "" : "\\") + std::string(part);
    return text;
}

bool in_parent(std::string_view name) {
    return name.size() > 3 && name.starts_with("..") && separates_names(name[2]);
}

}  // namespace

bool in_working_directory(std::string_view name) {
    const TextLine line(name);
    if (is_bare_name(line))
        return false;
    const std::string rest = direct(line.trimmed());
    return !rest.empty() && !in_parent(rest) && !separates_names(rest.front()) &&
           !(rest.size() > 2 && rest[1] == ':');
}

std::filesystem::path file_of_card(const std::filesystem::path& project, std::string_view name,
                                   const std::filesystem::path& work) {
    const TextLine line(name);
    const bool here = in_working_directory(name);
    std::error_code error;
    if (line.blank() || (here && !std::filesystem::is_directory(work, error)))
        return {};
    const std::filesystem::path& from = here ? work : project;
    std::string rest(line.trimmed());
    if (is_bare_name(line))
        rest.erase(0, rest.find_first_not_of(' '));
    else
        rest = direct(rest);
    if (!is_bare_name(line) && in_parent(rest))
        rest.erase(0, 3);
    const std::filesystem::path there = from.empty() ? "." : from;
    if (access((there / ".").c_str(), X_OK) != 0)
        throw Failure(there.string() + ": expected a directory to work in: " + std::strerror(errno));
    try {
        return resolve_file_name({from, drive_c()}, rest);
    } catch (const RunEnd&) {
        return {};  // two files of the name, or no place for drive C:
    }
}

}  // namespace brelan::tool
