// What differs between the four kinds of mesh and is only data.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "mesh/edition.h"

namespace brelan {

// A heading line of a mesh section as it is written, leading blanks included.
struct KindRow {
    LayoutKind kind;
    int node_codes;  // words of IDN in use
    std::array<std::string_view, 5> code_names;
    int element_words;               // words of an element that name nodes: with or without midside nodes
    std::int32_t short_node_record;  // values on a node record without IEX and IEY; 0 where there are none
    std::string_view node_heading;
    std::string_view continuum_heading;
    std::string_view base_node_heading;  // those of a base mesh
    std::string_view base_element_heading;
    std::string_view node_record;  // the fields of a node record, for messages
    std::string_view continuum_record;
};

inline constexpr std::array<KindRow, 4> KINDS{{
    {LayoutKind::coupled,
     5,
     {"ISX", "ISY", "IFX", "IFY", "IRZ"},
     8,
     8,
     "    NODE  ISX  ISY  IFX  IFY  IRZ  IEX  IEY       XC            YC ",
     "    NEL     I1     I2     I3     I4     M5     M6     M7     M8 MATC    KS   KF INTR INTS   TBJWL",
     "    NODE  ISX  ISY  IFX  IFY  IRZ  IEX  IEY       XC            YC ",
     "    NEL     I1     I2     I3     I4     M5     M6     M7     M8 MATC KS KF INTR INTS   TBJWL",
     "a node record (NODE, ISX, ISY, IFX, IFY, IRZ, IEX, IEY, XC, YC)",
     "a continuum element record (NEL, I1 to I4, M5 to M8, MATC, KS, KF, INTR, INTS, TBJWL)"},
    {LayoutKind::temperature,
     2,
     {"ID", "IDF"},
     4,
     0,
     "    NODE   ID  IDF          XC            YC             T            CF ",
     "    NEL     I1     I2     I3     I4 MATNO  IDH",
     "    NODE   ID  IDF            XC            YC             T            CF ",
     "    NEL      I      J      K      L  MATNO    IDH",
     "a node record (NODE, ID, IDF, XC, YC, T, CF)",
     "a continuum element record (NEL, I1 to I4, MATNO, IDH)"},
    {LayoutKind::head,
     2,
     {"ID", "IDF"},
     4,
     0,
     "    NODE   ID  IDF          XC            YC             H            CF ",
     "    NEL     I1     I2     I3     I4 MATNO  IDH",
     "    NODE   ID  IDF            XC            YC             H            CF ",
     "    NEL      I      J      K      L  MATNO    IDH",
     "a node record (NODE, ID, IDF, XC, YC, H, CF)",
     "a continuum element record (NEL, I1 to I4, MATNO, IDH)"},
    {LayoutKind::displacement,
     3,
     {"IDX", "IDY", "IDT"},
     8,
     6,
     "    NODE  IDX  IDY  IDT  IEX  IEY       XC            YC ",
     "    NEL     I1     I2     I3     I4     M5     M6     M7     M8  MATC   THIC        DEN",
     "    NODE  IDX  IDY  IDT  IEX  IEY       XC            YC ",
     "   NEL     I1     I2     I3     I4     M5     M6     M7     M8  MATC   THIC        DEN",
     "a node record (NODE, IDX, IDY, IDT, IEX, IEY, XC, YC)",
     "a continuum element record (NEL, I1 to I4, M5 to M8, MATC, THIC, DEN)"},
}};

constexpr const KindRow& kind_row(LayoutKind kind) {
    return KINDS[static_cast<std::size_t>(kind)];
}

// The table is addressed by kind.
static_assert([] {
    for (std::size_t i = 0; i < KINDS.size(); ++i)
        if (static_cast<std::size_t>(KINDS[i].kind) != i)
            return false;
    return true;
}());

// True for the kinds whose nodes carry H (or T) and CF.
inline bool has_node_values(LayoutKind kind) {
    return kind == LayoutKind::temperature || kind == LayoutKind::head;
}

}  // namespace brelan
