// What the codes on cards mean.
#pragma once

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

}  // namespace brelan::tool
