#include "commands/run_failure.h"

#include <fmt/core.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "commands/batch/pass_trace.h"
#include "commands/card_report.h"
#include "commands/placed_remark.h"
#include "mesh/edition.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

constexpr int STOPPED = 1;  // exit status of a stop of the batch program's own
constexpr std::string_view OWN_NAME = "brelan2d: ";
constexpr std::string_view LINE = ", line ";

std::string text_of(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string last_line(std::string text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == ' '))
        text.pop_back();
    text.erase(0, text.rfind('\n') + 1);
    text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
    return text;
}

// The message of a failure as the program gave it, without its name.
std::string own_message(const FailedRun& run) {
    std::string message = last_line(run.result.err);
    if (message.starts_with(OWN_NAME))
        message.erase(0, OWN_NAME.size());
    return message;
}

// The person's name for the file that a message begins with; the message as it is where it begins with none.
std::string with_known_file(const FailedRun& run, std::string message) {
    constexpr std::string_view parent = "..\\";
    if (message.starts_with(run.name_in_messages))
        return run.deck.file.string() + message.substr(run.name_in_messages.size());
    if (message.starts_with(parent))
        return (run.project / message.substr(parent.size())).lexically_normal().string();
    return message;
}

// The field that a message names in brackets, or that its `found "..."` is about.
std::optional<std::size_t> field_found(const DeckCard& card, const std::string& message) {
    for (std::size_t i = 0; i < card.fields.size(); ++i)
        if (message.find("(" + card.fields[i].name + ")") != std::string::npos)
            return i;
    constexpr std::string_view found = "found \"";
    const std::size_t begin = message.find(found);
    if (begin == std::string::npos)
        return std::nullopt;
    const std::size_t from = begin + found.size();
    const std::string text = message.substr(from, message.find('"', from) - from);
    // Whole numbers that do not fit into the normalised deck stand there as asterisks.
    const bool asterisks = !text.empty() && text.find_first_not_of('*') == std::string::npos;
    for (std::size_t i = 0; i < card.fields.size(); ++i) {
        const DeckField& field = card.fields[i];
        if (field.text == text)
            return i;
        if (asterisks && field.form != FieldForm::real &&
            (field.integer() > 99999 || field.integer() < -9999))
            return i;
    }
    return std::nullopt;
}

std::string report_of_deck(const NotedDeck& deck, int line, const std::string& message) {
    if (deck.fault && deck.fault->line == line)
        return card_report(deck, *deck.fault);
    DeckFault fault;
    fault.line = line;
    fault.card = card_at(deck, line);
    if (fault.card)
        fault.field = field_found(deck.cards[*fault.card], message);
    return card_report(deck, fault);
}

std::string line_of_file(const fs::path& file, int number) {
    std::ifstream stream(file);
    std::string line;
    for (int i = 0; i < number; ++i)
        if (!std::getline(stream, line))
            return "";
    return fmt::format("  {:>6} | {}\n", number, printable(line.substr(0, 126)));
}

// The card that names the file that a message begins with.
std::string card_that_names(const FailedRun& run, const std::string& message) {
    for (std::size_t i = 0; i < run.deck.cards.size(); ++i) {
        const DeckCard& card = run.deck.cards[i];
        const fs::path file = card.type == CardType::name ? file_of_card(run.project, card.name) : fs::path{};
        const bool here = card.type == CardType::name && in_working_directory(card.name);
        const std::string name = here ? card.name : file.lexically_normal().string();
        if (name.empty() || !message.starts_with(name + ": "))
            continue;
        DeckFault fault;
        fault.line = card.line;
        fault.card = i;
        return fmt::format("    {}, line {}:\n", run.deck.file.string(), card.line) +
               card_report(run.deck, fault) + (here ? fmt::format("    {}\n", name_here(name)) : "");
    }
    return "";
}

// Below a failure: the card of a deck, the line of a mesh.
std::string details_of_failure(const FailedRun& run) {
    const std::string message = with_known_file(run, own_message(run));
    const PlacedRemark place = taken_apart(message, "");
    if (place.line == 0)
        return card_that_names(run, message);
    if (fs::path(place.file) == run.deck.file)
        return report_of_deck(run.deck, place.line, message);
    std::error_code error;
    if (!fs::is_regular_file(place.file, error))
        return "";
    if (message.find("Card ") == std::string::npos)
        return line_of_file(place.file, place.line);
    try {  // a deck that the run has made itself
        return report_of_deck(read_deck(place.file, run.deck.kind), place.line, message);
    } catch (const Failure&) {
        return "";
    }
}

// The listing of a wrong card without its frame of blanks.
std::string listing(const FailedRun& run) {
    std::string lines;
    const std::string text = text_of(run.working_directory / "T7.TMP");
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        lines += "   " + printable(text.substr(begin, end - begin)) + "\n";
        begin = end + 1;
    }
    return lines;
}

std::string message_of_stop(const FailedRun& run) {
    const std::string stop = last_line(run.result.out);
    const std::string deck = run.deck.file.string();
    if (stop == "300") {
        if (run.deck.fault && run.deck.fault->line > 0)
            return fmt::format("{}, line {}: {}", deck, run.deck.fault->line, run.deck.fault->message);
        return fmt::format("{}: a card of a deck that the run has made itself has a wrong count of values",
                           deck);
    }
    if (stop == "100" && run.deck.mode <= 0)
        return fmt::format(
            "{}: the lowest element numbers of {} and {} are the same; give one of them other "
            "numbers, with Card 3.2 of an edit (brelan new edit-0)",
            deck, run.deck.first_mesh, run.deck.second_mesh);
    if (stop == "100")
        return fmt::format(
            "{}: the base mesh is larger than the program can hold; larger DX and DY make fewer "
            "elements",
            deck);
    return fmt::format("{}: the batch program stopped with \"{}\"", deck, stop);
}

}  // namespace

std::string failure_message(const FailedRun& run) {
    if (run.result.status == STOPPED)
        return message_of_stop(run);
    const std::string message = with_known_file(run, own_message(run));
    return message.empty() ? fmt::format("{}: the batch program ended with exit status {} and no message",
                                         run.deck.file.string(), run.result.status)
                           : message;
}

std::string failure_details(const FailedRun& run) {
    std::string details;
    if (run.result.status != STOPPED)
        details = details_of_failure(run);
    else if (last_line(run.result.out) == "300")
        details = run.deck.fault ? card_report(run.deck, *run.deck.fault) : listing(run);
    const std::string_view work = work_of_pass(run.pass);
    const bool cards = run.pass.empty() || run.pass == "1" || run.pass == "2";
    if (!cards && !work.empty())
        details += fmt::format("    The run came to pass {}: {}.\n", run.pass, work);
    return details;
}

}  // namespace brelan::tool
