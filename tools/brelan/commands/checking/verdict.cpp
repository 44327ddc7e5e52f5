#include "commands/checking/verdict.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "channel/channels.h"
#include "channel/free_field.h"
#include "channel/run_end.h"
#include "cli/exit_status.h"
#include "cli/output_file.h"
#include "commands/batch/temporary_directory.h"
#include "dam/dam_deck.h"
#include "deck/deck_checker.h"
#include "deck/deck_tables.h"
#include "model/in_directory.h"
#include "model/mesh_file.h"
#include "run/base_mesh_run.h"
#include "run/channel_numbers.h"
#include "run/flush_to_zero.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view DECK_NAME = "..\\deck.dat";
constexpr std::string_view NORMALISED = "BRELAN.TMP";

// The cards of an earth dam are right, and the decks made of them: those are no matter of this check.
struct DamIsRight {};

void write_dam() {
    DAMDECK();
    throw DamIsRight{};
}

// A drive C: that holds what the checker reads and writes there, for as long as the object lives.
class PrivateDrive {
public:
    explicit PrivateDrive(const fs::path& drive) {
        const char* before = std::getenv("BRELAN_DRIVE_C");
        if (before != nullptr)
            before_ = before;
        const fs::path files = drive / "Vork" / "Qx" / "Qxdata";
        fs::create_directories(files);
        write_file(files / "MANUAL.DAT", "0\n");
        setenv("BRELAN_DRIVE_C", drive.c_str(), 1);
    }
    ~PrivateDrive() {
        close_all_channels();
        if (before_)
            setenv("BRELAN_DRIVE_C", before_->c_str(), 1);
        else
            unsetenv("BRELAN_DRIVE_C");
    }
    PrivateDrive(const PrivateDrive&) = delete;
    PrivateDrive& operator=(const PrivateDrive&) = delete;

private:
    std::optional<std::string> before_;
};

// The line that a message about the deck names.
int line_in(const std::string& message) {
    constexpr std::string_view line = ", line ";
    return message.starts_with(line) ? std::atoi(message.c_str() + line.size()) : 0;
}

void take_end(const RunEnd& end, const Deck& deck, Verdict& verdict) {
    verdict.status = end.status;
    if (end.status == STATUS_STOPPED) {  // the report of a wrong count
        verdict.line = deck.fault ? deck.fault->line : 0;
        verdict.message = deck.file.string();
        if (verdict.line > 0)
            verdict.message += ", line " + std::to_string(verdict.line) + ": " + deck.fault->message;
        else
            verdict.message += ": a card has a wrong count of values";
        return;
    }
    if (!end.text.starts_with(DECK_NAME)) {
        verdict.message = deck.file.string() + ": " + end.text;
        return;
    }
    const std::string rest = end.text.substr(DECK_NAME.size());
    verdict.line = line_in(rest);
    verdict.message = deck.file.string() + rest;
}

void make_base_mesh(const Deck& deck, const fs::path& project, Verdict& verdict) {
    try {
        Channel& cards = open_channel(CH_DECK, NORMALISED, OpenStatus::old);
        std::int32_t IMOD = 0, JK = 0;
        read_free(cards, "Card 1.1", IMOD, JK);
        run_base_mesh();
        close_all_channels();
        verdict.base_mesh = read_mesh_file(project / BASE_MESH, deck.kind);
    } catch (const RunEnd& end) {
        verdict.no_base_mesh =
            end.status == STATUS_STOPPED ? "the base mesh is larger than the program can hold" : end.text;
    } catch (const Failure& failure) {
        verdict.no_base_mesh = failure.what();
    }
}

}  // namespace

Verdict verdict_of(const Deck& deck, const Edition& edition) {
    constexpr std::int32_t base_mesh = 2;
    Verdict verdict;
    const TemporaryDirectory place("brelan-check-");
    const fs::path project = place.path() / "project";
    fs::create_directories(project / "work");
    write_file(project / "deck.dat", read_deck_text(deck.file).text);

    const PrivateDrive drive(place.path() / "C");
    const InDirectory work(project / "work");
    flush_to_zero();
    IPROGM = edition.number;
    ISKEL = skeleton_switch(IPROGM);
    IDEBUG = 0;
    for (std::int32_t position = 1; position <= MAXCARDVAL; ++position)
        CARDVAL[position] = 0.0F;  // as when the batch program starts
    JKPREP = 0;
    DECKCOUNT = 1;
    DECKLIST[1] = TextLine(DECK_NAME);
    try {
        TextLine name(DECK_NAME);
        DECKCHK(name, NORMALISED, write_dam);
    } catch (const DamIsRight&) {
        return verdict;
    } catch (const RunEnd& end) {
        take_end(end, deck, verdict);
        return verdict;
    }
    close_all_channels();
    std::ifstream normalised(NORMALISED.data(), std::ios::binary);
    verdict.normalised.assign(std::istreambuf_iterator<char>(normalised), {});
    if (deck.IMOD == base_mesh)
        make_base_mesh(deck, project, verdict);
    return verdict;
}

}  // namespace brelan::tool
