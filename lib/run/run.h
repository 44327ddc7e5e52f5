// One run and all that it has. Two runs do not know of each other.
#pragma once

#include <vector>

#include "dam/dam_tables.h"
#include "deck/deck.h"
#include "deck/deck_tables.h"
#include "group/engine.h"
#include "mesh/block_tables.h"
#include "mesh/combine_tables.h"
#include "mesh/cut_method.h"
#include "mesh/edit_tables.h"
#include "mesh/edition.h"
#include "mesh/element_activity.h"
#include "mesh/group_tables.h"
#include "mesh/line_up.h"
#include "mesh/move_tables.h"
#include "mesh/tables.h"
#include "output/unit_table.h"
#include "text/channels.h"
#include "text/console.h"
#include "text/trace.h"
#include "text/watch.h"

namespace brelan {

struct Run {
    Run(std::shared_ptr<Files> files, Console& shown_on, RunWatcher* watcher = nullptr)
        : channels(std::move(files)), console(shown_on), watch(watcher) {}
    Run(Directories directories, Console& shown_on, RunWatcher* watcher = nullptr)
        : Run(std::make_shared<DiskFiles>(std::move(directories)), shown_on, watcher) {}

    void set_edition(std::int32_t edition) {
        settings.edition = edition;
        mesh.kind = settings.kind();
    }

    Channels channels;
    Console& console;
    Watch watch;
    Trace trace{channels, watch};
    Settings settings;
    CutMethod cut = CutMethod::by_rules;  // in every deck of the run
    DeckList decks;
    CardMemory card_memory;
    Deck deck;
    EditSource source;
    Mesh mesh;
    Combination combination;
    MoveLists moves;
    LineUp line_up;
    Tolerances tolerances;
    Engine engine;
    GroupListing listing;
    std::vector<ElementActivity> activity;  // of the elements of this deck's mesh, in ascending number
    DamSizes sizes;
    UnitLabels units;
};

}  // namespace brelan
