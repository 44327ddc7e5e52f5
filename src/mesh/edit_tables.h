// The cards of a mode 1 deck and what the reading of its mesh finds out. Who fills them: the cards,
// run/read_cards.cpp; the source mesh, mesh/edit_source.cpp. The edit stages read them.
#pragma once

#include <cstdint>
#include <string>

#include "mesh/mesh_records.h"
#include "mesh/tables.h"

namespace brelan {

// Longest list of a selection card.
inline constexpr std::int32_t MAXSEL = 500;

// A row of IEDIT 6. -10 leaves a field as it is.
struct RebuildRow {
    std::int32_t MATold = 0;
    std::int32_t NS[4] = {};  // corner sources: positions 1 to 4 in the element's own corners
    std::int32_t MATNEW = 0;
    std::int32_t KS = 0, KF = 0, IDH = 0;  // by kind
    float THIC = 0.0F, DEN = 0.0F;
};

struct EditCards {
    std::string start_place, list_place;  // file and line of Card 3.2 and of the list, for messages

    std::int32_t NSNEL = 1, NSNODE = 1, NSBEAM = 0, NSTRUS = 0;  // first new numbers
    std::int32_t IEDIT = 0;
    std::int32_t MATX1 = 0, MATX2 = 0, MATX3 = 0, MATXB = 0,
                 MATXT = 0;  // materials that a selection never touches

    float XO = 0.0F, YO = 0.0F, XN = 0.0F, YN = 0.0F;  // IEDIT 0: x = (x - XO) * SCX + XN
    float SCX = 1.0F, SCY = 1.0F;

    std::int32_t ILOC = 0;  // IEDIT 1 to 3: how the selection is made
    float XMIN = 0.0F, YMIN = 0.0F, XMAX = 0.0F, YMAX = 0.0F;
    std::int32_t NSEL = 0;
    Table<std::int32_t, MAXSEL, "the list of a selection card"> LIST;
    std::int32_t ISIDE = 0;
    NodeCodes IDNEW{};                             // IEDIT 1
    std::int32_t MATNC = 0, MATNB = 0, MATNT = 0;  // IEDIT 3

    std::int32_t MODEL = 0;    // IEDIT 5: the slope template
    std::int32_t MATNO_T = 0;  // material of its elements
    float rHw = 0.0F;          // water level as a share of the slope
    float Hi = 0.0F;           // head or temperature of its nodes
    float X1 = 0.0F, Y1 = 0.0F, X2 = 0.0F, Y2 = 0.0F, X3 = 0.0F, Y3 = 0.0F;  // crest, toe, foot
    std::string triangle_place;

    std::int32_t NEDC = 0, NEDB = 0, NEDT = 0;  // IEDIT 6
    Table<RebuildRow, MAXEDLIST, "the rows of Card 3.6.1-1"> EDC;
    Table<RebuildRow, MAXEDLIST, "the rows of Card 3.6.2-1"> EDB;
    Table<RebuildRow, MAXEDLIST, "the rows of Card 3.6.3-1"> EDT;
};

// Lowest and highest number seen.
struct NumberRange {
    std::int32_t lowest = NOMIN, highest = 0;

    void include(std::int32_t number) {
        lowest = number < lowest ? number : lowest;
        highest = number > highest ? number : highest;
    }
};

// The mesh that is edited.
struct EditSource {
    StrippedMesh stripped;
    MeshCounts counts;
    NumberRange nodes;
    NumberRange elements[3];           // by type from EL_CONTINUUM
    std::int32_t first_continuum = 0;  // IEDIT 5: new number of the first continuum record, 0 for none
};

// IEDIT 5: where the water level divides an element of the slope. Who fills it: dam/phreatic_line.cpp.
struct SlopeSplit {
    std::int32_t element = 0;  // number in the template
    std::int32_t node = 0;     // on the water level; 0: no element is divided
};

}  // namespace brelan
