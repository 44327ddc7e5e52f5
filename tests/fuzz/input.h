// How the bytes of a fuzzer become what a target drives.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "deck/deck.h"
#include "mesh/cut_method.h"
#include "mesh/edition.h"

namespace brelan::fuzz {

// The first byte of an input: a kind by its last two bits; bit 2 the sound cut, or that no kind is given.
struct Header {
    LayoutKind kind = LayoutKind::displacement;
    bool bit_2 = false;

    std::int32_t edition() const;  // the first of the kind
    CutMethod cut() const { return bit_2 ? CutMethod::sound : CutMethod::by_rules; }
    std::optional<LayoutKind> kind_or_none() const {
        return bit_2 ? std::nullopt : std::optional<LayoutKind>(kind);
    }
};

// Takes the header from the front of the input.
Header take_header(std::string_view& input);

// The parts of an input, which zero bytes part; those behind the last are empty.
std::vector<std::string> parts_of(std::string_view input, std::size_t count);

// The deck that the checker reads from a text in memory; none where it ends the run.
std::unique_ptr<Deck> checked_deck(std::string_view text, LayoutKind kind);

// Throws std::logic_error, which no target catches.
void require(bool holds, const std::string& law);

}  // namespace brelan::fuzz
