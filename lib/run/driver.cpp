#include "run/driver.h"

#include <utility>

#include "blocks/base_file.h"
#include "dam/dam_deck.h"
#include "dam/shell_decks.h"
#include "deck/deck_checker.h"
#include "deck/deck_tables.h"
#include "deck/error_report.h"
#include "mesh/combine_tables.h"
#include "mesh/group_tables.h"
#include "mesh/result_names.h"
#include "mesh/tables.h"
#include "run/base_mesh_run.h"
#include "run/combination_run.h"
#include "run/edit_run.h"
#include "run/expected_files.h"
#include "run/flush_to_zero.h"
#include "run/run.h"
#include "run/slope_run.h"
#include "run/start_up.h"
#include "text/channel_numbers.h"
#include "text/channels.h"
#include "text/free_field.h"
#include "text/run_end.h"
#include "text/trace.h"

namespace brelan {

namespace {

constexpr std::string_view NORMALISED_DECK = "BRELAN.TMP";

// Meshes that the decks of an earth dam leave to each other.
constexpr std::string_view SHELL_FILES[] = {"..\\Shell_Left.Mes", "..\\Shell_Right.Mes", "..\\Dam_Shell.Mes",
                                            "..\\EarthDam.Meg", "..\\EarthDam.Mes"};

void remove_file(Run& run, std::string_view name) {
    if (!run.channels.file_exists(name))
        return;
    run.channels.open(CHANNEL_DELETE, name, OpenStatus::old);
    run.channels.close(CHANNEL_DELETE, CloseAction::remove);
}

void remove_shell_files(Run& run) {
    for (const std::string_view name : SHELL_FILES)
        remove_file(run, name);
    if (run.cut == CutMethod::sound)
        remove_file(run, "..\\" + std::string(JOINED_MESH));
}

void open_result_copy(Run& run) {
    run.channels.open(CHANNEL_RESULT_COPY, "MeshFile.Mes", OpenStatus::work).set_write_only(true);
}

void run_mode_0(Run& run) {
    open_combination(run);
    open_result_copy(run);
    run_combination(run);
}

void run_mode_1(Run& run) {
    if (!run.deck.has_edit)
        fail_at(run.deck.end_place, "the file ends here; expected a file name");
    // With IEDIT 5 the deck names no FILEA: MODEL has chosen a slope template.
    if (run.deck.uses_template)
        run.deck.names.first = slope_template(run);
    open_edit_files(run);
    begin_edit(run);
    open_result_copy(run);
    run_edit(run);
}

// A base mesh that no edit follows is passed on unchanged: as a value where nobody sees the copy of its file
// that it would go through.
void run_base_mesh_alone(Run& run, BaseMesh base) {
    reset_mesh(run.mesh);
    run.deck.names.first = TextLine(BASE_MESH_FILE);
    run.deck.names.result = TextLine("Basic.Tmp");
    const bool as_value = !run.channels.keeps_file(WORKING_COPY) && round_as_file(base);
    if (as_value) {
        open_result_files(run);
    } else {
        base = {};
        open_edit_files(run);
    }
    set_identity_edit(run);
    run.trace.pass(" Pass 4C ", 4.3F);
    open_result_copy(run);
    if (as_value)
        pass_on(run, base);
    else
        run_edit(run);
}

// A mode that no cards belong to: the passes begin, and find no mesh.
[[noreturn]] void run_unknown_mode(Run& run, std::int32_t mode) {
    open_result_copy(run);
    run.trace.pass(" Pass 6 ", 6.0F);
    fail_at(run.deck.mode_place,
            "expected an IMOD of -1 to 3 on Card 1.1, found " + std::to_string(mode) + ": no mesh is open");
}

void end_deck(Run& run) {
    for (const int number :
         {CHANNEL_DECK, CHANNEL_DATA, CHANNEL_MESH_A, CHANNEL_MESH_B, CHANNEL_WORK, CHANNEL_RESULT_COPY,
          CHANNEL_SOURCE_A, CHANNEL_SOURCE_B, CHANNEL_GROUP, CHANNEL_RESULT})
        run.channels.close(number);
    run.channels.take_results();
}

// The decks that are made of a dam's cards take its place.
void normalise_deck(Run& run) {
    const LayoutKind kind = run.settings.kind();
    const auto check = [&] {
        const MadeCards& made = run.decks.made[run.decks.number];
        check_deck(run.channels, kind, run.card_memory, run.deck, run.console, run.decks.name,
                   NORMALISED_DECK, made.values.empty() ? nullptr : &made);
    };
    for (check(); run.deck.is_dam(); check()) {
        run.deck.require(DeckPart::mode);
        write_dam_decks(run.channels, kind, run.cut, run.card_memory, run.decks, run.deck.dam, run.sizes);
        run.decks.name = run.decks.names[1];
        drop_checked_deck(run.channels);
    }
}

void run_deck(Run& run) {
    run.listing = {};
    run.activity.clear();
    run.decks.name = run.decks.names[run.decks.number];
    normalise_deck(run);
    run.watch.set_deck(run.decks.number, run.decks.count);
    run.deck.require(DeckPart::mode);
    std::int32_t mode = run.deck.mode;
    expect_files(run);
    run.combination.keeps_first_data = mode == -1;
    if (run.combination.keeps_first_data)
        mode = 0;
    run.trace.pass(" Pass 3 ...", 3.0F);
    if (mode == 2) {
        mode = 1;
        BaseMesh base = run_base_mesh(run);
        if (run.deck.blocks.edit_follows == 0) {
            run_base_mesh_alone(run, std::move(base));
            end_deck(run);
            return;
        }
    }
    reset_mesh(run.mesh);
    run.trace.pass(" Pass 4D ", 4.4F);
    if (mode == 0) {
        run_mode_0(run);
    } else if (mode == 1) {
        run_mode_1(run);
    } else {
        run_unknown_mode(run, mode);
    }
    end_deck(run);
}

}  // namespace

void run_program(Run& run) {
    const FlushToZero mode;
    start_up(run);
    run.decks.count = 1;
    run.decks.names[1] = run.decks.name;
    for (run.decks.number = 1; run.decks.number <= run.decks.count; ++run.decks.number)
        run_deck(run);
    run.watch = Watch{};  // the results are in their places: what is left is no run that could be called off
    if (run.decks.count > 1)
        remove_shell_files(run);
    write_status(run.channels, 0);
    run.trace.pass(" Pass 43 ", 43.0F);
    run.channels.close(CHANNEL_TRACE);
}

}  // namespace brelan
