// The templates of the GRAF-XY deck: what each plots, by name and number as the tool knows it.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>

namespace brelan {

// A quantity that is plotted against time.
struct PlotPair {
    std::string_view name;
    std::int32_t number;
};

// Pairs under a heading of their own; without one when it is blank.
struct PairGroup {
    std::string_view heading;
    std::span<const PlotPair> pairs;
};

using PairGroups = std::span<const PairGroup>;

// --- histories of elements -----------------------------------------------------------------------

inline constexpr PlotPair TEMPERATURE_PAIRS[] = {{"TEMPERATURE", 31}};
inline constexpr PairGroup ELEMENT_TEMPERATURE[] = {{"*  [Continuum Element]", TEMPERATURE_PAIRS}};

inline constexpr PlotPair CONTINUUM_STRESS_PAIRS[] = {
    {"STRESS-XX", 2},   {"STRESS-YY", 3},  {"STRESS-ZZ", 4},   {"STRESS-XY", 5},   {"STRESS-YZ", 6},
    {"STRESS-XZ", 7},   {"PRESSURE", 8},   {"FLUID-PRES", 9},  {"TSTRESS-XX", 10}, {"TSTRESS-YY", 11},
    {"TSTRESS-ZZ", 12}, {"TPRESSURE", 13}, {"D.STRES(Q)", 14}, {"TAU-COT.", 23},   {"STRESS-1", 26},
    {"STRESS-2", 27},   {"STRESS-3", 28},
};
inline constexpr PlotPair BEAM_STRESS_PAIRS[] = {
    {"STRESS-FT", 42}, {"STRESS-RT", 44}, {"STRESS-RB", 46}, {"STRESS-FB", 48}};
inline constexpr PlotPair TRUSS_STRESS_PAIRS[] = {{"STRESS-XX", 62}};
inline constexpr PairGroup STRESS_GROUPS[] = {{"*  [Continuum Element]", CONTINUUM_STRESS_PAIRS},
                                              {"*  [Beam Element]", BEAM_STRESS_PAIRS},
                                              {"*  [Truss Element]", TRUSS_STRESS_PAIRS}};

inline constexpr PlotPair CONTINUUM_STRAIN_PAIRS[] = {
    {"STRAIN-XX", 15}, {"STRAIN-YY", 16}, {"STRAIN-ZZ", 17},  {"STRAIN-XY", 18},
    {"STRAIN-YZ", 19}, {"STRAIN-XZ", 20}, {"VOL-STRAIN", 21}, {"GAMMA-OCT.", 22},
};
inline constexpr PlotPair BEAM_STRAIN_PAIRS[] = {
    {"STRAIN-FT", 41}, {"STRAIN-RT", 43}, {"STRAIN-RB", 45}, {"STRAIN-FB", 47}};
inline constexpr PlotPair TRUSS_STRAIN_PAIRS[] = {{"STRAIN-XX", 63}};
inline constexpr PairGroup STRAIN_GROUPS[] = {{"*  [Continuum Element]", CONTINUUM_STRAIN_PAIRS},
                                              {"*  [Beam Element]", BEAM_STRAIN_PAIRS},
                                              {"*  [Truss Element]", TRUSS_STRAIN_PAIRS}};

inline constexpr PlotPair BEAM_FORCE_PAIRS[] = {{"THRUST", 35}, {"SHEAR-Y", 36}};
inline constexpr PlotPair TRUSS_FORCE_PAIRS[] = {{"FORCE-XX", 61}};
inline constexpr PairGroup FORCE_GROUPS[] = {{"*  [Beam Element]", BEAM_FORCE_PAIRS},
                                             {"*  [Truss Element]", TRUSS_FORCE_PAIRS}};

inline constexpr PlotPair MOMENT_PAIRS[] = {{"MOMENT-Z", 40}};
inline constexpr PairGroup MOMENT_GROUPS[] = {{"*  [Beam Element]", MOMENT_PAIRS}};

// --- histories of nodes --------------------------------------------------------------------------

inline constexpr PairGroup NODE_TEMPERATURE[] = {{"", TEMPERATURE_PAIRS}};

inline constexpr PlotPair HEAD_PAIRS[] = {{"TOTAL HEAD", 41}};
inline constexpr PairGroup NODE_HEAD[] = {{"", HEAD_PAIRS}};

inline constexpr PlotPair SKELETON_DISPLACEMENTS[] = {{"X-DIS.", 2}, {"Y-DIS.", 3}, {"Z-DIS.", 4}};
inline constexpr PlotPair FLUID_DISPLACEMENTS[] = {
    {"R.FL.X-DIS", 11}, {"R.FL.Y-DIS", 12}, {"R.FL.Z-DIS", 13}};
inline constexpr PairGroup DISPLACEMENT_GROUPS[] = {
    {"*  [Skeleton Displacement]", SKELETON_DISPLACEMENTS},
    {"*  [Relative Fluid Displacement]", FLUID_DISPLACEMENTS}};

inline constexpr PlotPair SKELETON_VELOCITIES[] = {{"X-VEL.", 5}, {"Y-VEL.", 6}, {"Z-VEL.", 7}};
inline constexpr PlotPair FLUID_VELOCITIES[] = {{"R.FL.X-VEL", 14}, {"R.FL.Y-VEL", 15}, {"R.FL.Z-VEL", 16}};
inline constexpr PairGroup VELOCITY_GROUPS[] = {{"*  [Skeleton Velocity]", SKELETON_VELOCITIES},
                                                {"*  [Relative Fluid Velocity]", FLUID_VELOCITIES}};

inline constexpr PlotPair SKELETON_ACCELERATIONS[] = {{"X-ACC.", 8}, {"Y-ACC.", 9}, {"Z-ACC.", 10}};
inline constexpr PlotPair FLUID_ACCELERATIONS[] = {
    {"R.FL.X-ACC", 17}, {"R.FL.Y-ACC", 18}, {"R.FL.Z-ACC", 19}};
inline constexpr PairGroup ACCELERATION_GROUPS[] = {
    {"*  [Skeleton Acceleration]", SKELETON_ACCELERATIONS},
    {"*  [Relative Fluid Acceleration]", FLUID_ACCELERATIONS}};

// --- factors -------------------------------------------------------------------------------------

struct Factors {
    std::string_view names, values;
};
inline constexpr Factors ELEMENT_FACTORS = {"*  TMFAC  STFAC  SNFAC", "    1.0    1.0    1.0"};
inline constexpr Factors STRAIN_FACTORS = {"*  TMFAC  STFAC  SNFAC", "    1.0    1.0    100."};
inline constexpr Factors NODE_FACTORS = {"*  TMFAC  SND  SNV  SNA  NC  ANGLE",
                                         "    1.0   1.0  1.0  1.0  0   0.0"};
inline constexpr Factors SCALAR_FACTORS = {"*  TMFAC  TPFAC", "    1.0    1.0"};

// --- the cards of histories of elements and of nodes ---------------------------------------------

struct HistoryCards {
    std::string_view history_type;
    std::string_view cards;     // the cards' number without the last part
    std::string_view count;     // heading of the count of elements or nodes
    std::string_view one, two;  // heading of the number, of two numbers
    std::string_view two_numbers;
};
inline constexpr HistoryCards ELEMENT_CARDS = {"    1",      "* Card 12.2.",          "*  NUMBER OF ELEMENTS",
                                               "*  ELEMENT", "*  ELEMENT1  ELEMENT2", "    1         2"};
inline constexpr HistoryCards NODE_CARDS = {"    2",   "* Card 12.3.",    "*  NUMBER OF NODES",
                                            "*  NODE", "*  NODE1  NODE2", "    1      2"};

// --- decks with two plots ------------------------------------------------------------------------

inline constexpr std::string_view PRESSURE_PAIRS[] = {"    1    8", "    1    9"};
inline constexpr std::string_view STRESS_PATH_PAIRS[] = {"    8   14"};
inline constexpr std::string_view TWO_DISPLACEMENTS[] = {"    1    2", "    1    3"};

// --- end of the deck -----------------------------------------------------------------------------

inline constexpr std::array<std::string_view, 10> END_OF_GRAF_XY = {
    "*                      ",                             //
    "*=================================================",  //
    "*                      ",                             //
    "*                      ",                             //
    "* For End of GRAF-XY   ",                             //
    "*                      ",                             //
    "* Card 12.1            ",                             //
    "*  IPTYPE              ",                             //
    "    0                  ",                             //
    "*                      ",
};

}  // namespace brelan
