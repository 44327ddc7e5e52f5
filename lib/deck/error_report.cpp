#include "deck/error_report.h"

#include <array>
#include <string>

#include "text/channel_numbers.h"
#include "text/channels.h"
#include "text/console.h"
#include "text/free_field.h"
#include "text/layout.h"
#include "text/run_end.h"

namespace brelan {

namespace {

constexpr std::string_view STATUS_FILE = "C:\\VORK\\QX\\QXDATA\\BRELAN2D.DAT";
constexpr std::string_view MANUAL_FILE = "C:\\VORK\\QX\\QXDATA\\MANUAL.DAT";

// A message has eight lines, filled or not.
constexpr std::int32_t MESSAGE_LINES = 8;
constexpr std::size_t MESSAGE_COLUMNS = 60;
constexpr Layout<"(A60)"> MESSAGE_LINE;

constexpr Layout<"(' Card Group No: ',A11,' requires ',I5,' data entry')"> REQUIRED_LINE;
constexpr Layout<"(' But user input contains ',I5,' data ')"> FOUND_LINE;
constexpr Layout<"(' Please check the following listing of input data   ')"> LISTING_LINE;
constexpr Layout<"(1X,A)"> CARD_LINE;

}  // namespace

void write_status(Channels& channels, std::int32_t value) {
    write_free(channels.open(CHANNEL_STATUS, STATUS_FILE, OpenStatus::setting), value);
    channels.close(CHANNEL_STATUS);
}

void show_last_lines(Channels& channels, Console& console, int channel_number, std::int32_t n) {
    std::int32_t manual = 0;
    read_free(channels.open(CHANNEL_MESSAGE, MANUAL_FILE, OpenStatus::old), "the console mode", manual);
    channels.close(CHANNEL_MESSAGE);
    const bool front_end = manual == 0;
    if (front_end)
        channels.open(CHANNEL_MESSAGE, "MESSAGE.INP", OpenStatus::work);

    std::array<std::string, MESSAGE_LINES> lines;
    Channel& listing = channels.at(channel_number);
    listing.step_back(n);
    for (std::int32_t i = 0; i < n; ++i)
        lines[static_cast<std::size_t>(i)] =
            listing.read_whole_line("a line of the listing").substr(0, MESSAGE_COLUMNS);

    if (front_end) {
        Channel& message = channels.at(CHANNEL_MESSAGE);
        write_free(message, n);
        for (const std::string& line : lines)
            MESSAGE_LINE.write(message, line);
        channels.close(CHANNEL_MESSAGE);
        return;
    }
    for (std::string& line : lines) {
        line.resize(MESSAGE_COLUMNS, ' ');
        console.write(line + "\n");
    }
    // Waits until the person has pressed enter. What the run has written so far is put on disk first: nobody
    // may ever answer.
    channels.flush_all();
    std::string answer;
    console.read(answer);
}

void report_card(Channels& channels, Console& console, const WrongCount& card) {
    const ValueCount& found = card.found;
    Channel& listing = channels.at(CHANNEL_WORK);
    write_free(listing, "************* ERROR IN THE USER INPUT **************");
    REQUIRED_LINE.write(listing, card.label, card.maximum);
    FOUND_LINE.write(listing, found.count);
    LISTING_LINE.write(listing);
    listing.write_line("");
    if (found.count == 0) {
        for (const std::string_view text : {"------------", " Blank data ", "------------"})
            write_free(listing, text);
    } else {
        const std::string dashes(static_cast<std::size_t>(found.last_column), '-');
        CARD_LINE.write(listing, dashes);
        CARD_LINE.write(listing, card.line.first(found.last_column));
        CARD_LINE.write(listing, dashes);
    }
    listing.flush();
    show_last_lines(channels, console, CHANNEL_WORK, 7);
    write_status(channels, 1);
    stop_run("300");
}

}  // namespace brelan
