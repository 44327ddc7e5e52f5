// What the codes on cards mean.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "model/deck.h"

namespace brelan::tool {

struct CodeMeaning {
    bool is_code = false;   // the field has a list of known values
    bool known = false;     // the value is one of them
    std::string_view text;  // what the value does; of an unknown one, what the batch program makes of it
    bool ends_run = false;  // an unknown value ends the run
};

CodeMeaning meaning_of(const DeckCard& card, const DeckField& field);

// All known values of a field; none where it is no code.
struct CodeValue {
    std::int32_t value;
    std::string_view text;
};
std::span<const CodeValue> code_values(std::string_view card_number, std::string_view field);

}  // namespace brelan::tool
