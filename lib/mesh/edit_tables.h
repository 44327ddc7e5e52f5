// The cards of a mode 1 deck and what the reading of its mesh finds out. Who fills them: the cards,
// deck/deck_walk.cpp; the source mesh, mesh/edit_source.cpp. The edit stages read them.
#pragma once

#include <cstdint>
#include <string>

#include "mesh/mesh_records.h"
#include "mesh/mesh_walk.h"
#include "mesh/tables.h"

namespace brelan {

// Longest list of a selection card.
inline constexpr std::int32_t MOST_LIST_NUMBERS = 500;

// A row of IEDIT 6. -10 leaves a field as it is.
struct RebuildRow : ElementAttributes {
    MaterialNumber old_material;         // MATold
    std::int32_t corner_source[4] = {};  // NS: corner sources: positions 1 to 4 in the element's own corners
    MaterialNumber new_material;         // MATNEW
};

struct EditCards {
    FilePlace start_place, list_place;  // of Card 3.2 and of the list, for messages

    // NSNEL, NSNODE, NSBEAM, NSTRUS: first new numbers
    ElementNumber first_element{1};
    NodeNumber first_node{1};
    ElementNumber first_beam, first_truss;
    std::int32_t operation = 0;  // IEDIT
    // Materials that a selection never touches.
    MaterialNumber excluded_material_1;      // MATX1
    MaterialNumber excluded_material_2;      // MATX2
    MaterialNumber excluded_material_3;      // MATX3
    MaterialNumber excluded_beam_material;   // MATXB
    MaterialNumber excluded_truss_material;  // MATXT

    // IEDIT 0: x = (x - XO) * SCX + XN
    float old_x = 0.0F, old_y = 0.0F, new_x = 0.0F, new_y = 0.0F;  // XO, YO, XN, YN
    float scale_x = 1.0F, scale_y = 1.0F;                          // SCX, SCY

    std::int32_t selection_mode = 0;  // ILOC: IEDIT 1 to 3: how the selection is made
    float window_left = 0.0F, window_bottom = 0.0F, window_right = 0.0F,
          window_top = 0.0F;                                                      // XMIN, YMIN, XMAX, YMAX
    std::int32_t list_count = 0;                                                  // NSEL
    Table<std::int32_t, MOST_LIST_NUMBERS, "the list of a selection card"> list;  // LIST
    std::int32_t side = 0;                                                        // ISIDE
    NodeCodes new_codes{};                                                        // IDNEW: IEDIT 1
    MaterialNumber new_continuum_material, new_beam_material,
        new_truss_material;  // MATNC, MATNB, MATNT: IEDIT 3

    std::int32_t slope_code = 0;           // MODEL: IEDIT 5: the slope template
    MaterialNumber template_material;      // MATNO_T: material of its elements
    float water_share = 0.0F;              // rHw: water level as a share of the slope
    float initial_head = 0.0F;             // Hi: head or temperature of its nodes
    float crest_x = 0.0F, crest_y = 0.0F;  // X1, Y1
    float toe_x = 0.0F, toe_y = 0.0F;      // X2, Y2
    float foot_x = 0.0F, foot_y = 0.0F;    // X3, Y3
    FilePlace triangle_place;              // of Card 3.3.6.3

    std::int32_t continuum_row_count = 0, beam_row_count = 0,
                 truss_row_count = 0;  // NEDC, NEDB, NEDT: IEDIT 6
    Table<RebuildRow, MOST_REBUILD_ROWS, "the rows of Card 3.6.1-1"> continuum_rows;  // EDC
    Table<RebuildRow, MOST_REBUILD_ROWS, "the rows of Card 3.6.2-1"> beam_rows;       // EDB
    Table<RebuildRow, MOST_REBUILD_ROWS, "the rows of Card 3.6.3-1"> truss_rows;      // EDT
};

// The mesh that is edited.
struct EditSource {
    StrippedMesh stripped;
    MeshCounts counts;
    NumberRange<NodeNumber> nodes;
    NumberRange<ElementNumber> elements[3];  // by type from ELEMENT_CONTINUUM
    ElementNumber first_continuum;           // IEDIT 5: new number of the first continuum record, 0 for none
};

}  // namespace brelan
