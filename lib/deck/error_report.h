// What a user and the front end learn of an error in the input, and the run status.
#pragma once

#include <cstdint>

#include "deck/card_stream.h"
#include "text/channels.h"
#include "text/console.h"

namespace brelan {

// Writes the value to the run status file of the front end: 0 for a finished run, 1 for an error in the
// input.
void write_status(Channels& channels, std::int32_t value);

// Shows the last n lines (at most 8) of a channel, cut to 60 columns: in "MESSAGE.INP" when a front end
// listens (MANUAL.DAT is 0), else on the console, waiting until the person has read them.
void show_last_lines(Channels& channels, Console& console, int channel_number, std::int32_t n);

// Lists a card with a wrong count of values on channel 7, shows the listing, writes status 1 and stops with
// "300". The stop names the place.
[[noreturn]] void report_card(Channels& channels, Console& console, const WrongCount& card);

}  // namespace brelan
