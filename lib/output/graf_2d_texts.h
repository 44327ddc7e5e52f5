// The fixed lines of the sections of a GRAF-2D deck, as the tool reads them.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace brelan {

using TextLines = std::span<const std::string_view>;

// --- section 1: mesh -----------------------------------------------------------------------------

inline constexpr std::array<std::string_view, 5> MESH_HEAD = {
    "* Card 11.1  ",  //
    "*  NPTYPE    ",  //
    "    1        ",  //
    "* Card 11.2.1",  //
    "*  TITLE     ",
};
// The title stands here.
inline constexpr std::array<std::string_view, 8> MESH_SETTINGS = {
    "* Card 11.2.2",  //
    "*  IUNIT     ",  //
    "    4        ",  //
    "* Card 11.2.4",  //
    "*  IMODE     ",  //
    "    1        ",  //
    "* Card 11.2.5",  //
    "*  NGROUP    ",
};

// --- what the sections with results have in common -----------------------------------------------

inline constexpr std::array<std::string_view, 4> TIME_SETTINGS = {
    "*  NLTIME  TIMEref",                                  //
    "    1       0.0   ",                                  //
    "*  TIME1  TIME2  TIME3  TIME4  TIME5  TIME6  TIME7",  //
    "    1.0           ",
};

inline constexpr std::array<std::string_view, 1> ELEMENT_HEADING = {"*    NSS    NEE    NIC    NNN"};
inline constexpr std::array<std::string_view, 2> DISPLACEMENT_HEADING = {
    "*      1  IDISP ",  //
    "*    NSR    JCR    NJR    ICR    NIR",
};
inline constexpr std::array<std::string_view, 3> BEAM_HEADING = {
    "*  NBLIST",  //
    "*      0 ",  //
    "*  NFBEAM NLBEAM",
};
inline constexpr std::array<std::string_view, 3> TRUSS_HEADING = {
    "*  NTLIST",  //
    "*      0 ",  //
    "*  NFTRUS NLTRUS",
};

// --- section 2: contours of the continuum --------------------------------------------------------

inline constexpr std::array<std::string_view, 2> CONTOUR_COUNT = {
    "* Card 11.3.5",
    "*  NGROUP  IAVG  ISCRIN  IMESH  IPSTRS",
};

// --- section 3: displacements --------------------------------------------------------------------

inline constexpr std::array<std::string_view, 3> END_OF_PLOT = {
    "* For End of Plot",  //
    "*  0,    0       ",  //
    "   0,    0       ",
};

// --- sections 4 and 5: beams and trusses; the user moves the star to choose ----------------------

inline constexpr std::array<std::string_view, 22> BEAM_CHOICES = {
    "* Card 11.5.5                   ",  //
    "*  NBTS                         ",  //
    "*  ----                         ",  //
    "*                               ",  //
    "*  BENDING MOMENT               ",  //
    "    1                           ",  //
    "*  THRUST                       ",  //
    "*   2                           ",  //
    "*  SHEAR                        ",  //
    "*   3                           ",  //
    "*  INNER EXTREME FIBER STRESS   ",  //
    "*   4                           ",  //
    "*  OUTER EXTREME FIBER STRESS   ",  //
    "*   5                           ",  //
    "*  INNER EXTREME FIBER STRAIN   ",  //
    "*   6                           ",  //
    "*  OUTER EXTREME FIBER STRAIN   ",  //
    "*   7                           ",  //
    "*  INNER REINFORCING BAR STRESS ",  //
    "*   8                           ",  //
    "*  OUTER REINFORCING BAR STRESS ",  //
    "*   9                           ",
};
inline constexpr std::array<std::string_view, 2> BEAM_COUNT = {"* Card 11.5.6", "*  NTGROUP"};

inline constexpr std::array<std::string_view, 10> TRUSS_CHOICES = {
    "* Card 11.6.5   ",  //
    "*  NTTS         ",  //
    "*  ----         ",  //
    "*               ",  //
    "*  AXIAL FORCE  ",  //
    "    1           ",  //
    "*  AXIAL STRESS ",  //
    "*   2           ",  //
    "*  AXIAL STRAIN ",  //
    "*   3           ",
};
inline constexpr std::array<std::string_view, 2> TRUSS_COUNT = {"* Card 11.6.6", "*  NTGROUP"};

// --- section 6: results of the continuum ---------------------------------------------------------

inline constexpr std::array<std::string_view, 4> RESULT_CHOICES_HEAD = {
    "* Card 11.7.5",  //
    "*  NCTS",        //
    "*  ----",        //
    "*",
};

struct ResultChoice {
    std::string_view name;
    std::int32_t number;
};
inline constexpr std::int32_t ACTIVE_RESULT = 26;  // the one without a star
inline constexpr std::array<ResultChoice, 28> RESULT_CHOICES{{
    {"Normal XX Stress", 2},
    {"Normal YY Stress", 3},
    {"Normal ZZ Stress", 4},
    {"Shear XY Stress", 5},
    {"Shear YZ Stress", 6},
    {"Shear XZ Stress", 7},
    {"Mean Pressure", 8},
    {"Fluid Pressure", 9},
    {"Normal XX Total Stress", 10},
    {"Normal YY Total Stress", 11},
    {"Normal ZZ Total Stress", 12},
    {"Total Mean Pressure", 13},
    {"Deviatoric Stress", 14},
    {"Normal XX Strain", 15},
    {"Normal YY Strain", 16},
    {"Normal ZZ Strain", 17},
    {"Shear XY Strain", 18},
    {"Shear YZ Strain", 19},
    {"Shear XZ Strain", 20},
    {"Volumetric Strain", 21},
    {"Octahedral Shear Strain", 22},
    {"Octahedral Shear Stress", 23},
    {"Safety Factor", 24},
    {"Yield Flag", 25},
    {"Major Principal Stress", 26},
    {"Intermediate Principal Stress", 27},
    {"Minor Principal Stress", 28},
    {"Safety Factor", 29},
}};

// A temperature deck has one choice, under the head of section 2.
inline constexpr std::array<std::string_view, 5> TEMPERATURE_CHOICE = {
    "* Card 11.3.5                    ",  //
    "*  NCTS                          ",  //
    "*  ----                          ",  //
    "*  Temperature Distribution      ",  //
    "    31                           ",
};

inline constexpr std::array<std::string_view, 2> RESULT_SETTINGS = {
    "* Card 11.7.6",
    "*  DELTA   IRES  IRGP  IENL  RX      RY",
};
inline constexpr std::array<std::string_view, 2> RESULT_COUNT = {"* Card 11.7.7", "*  NGROUP"};

// --- end of the deck -----------------------------------------------------------------------------

inline constexpr std::array<std::string_view, 10> END_OF_GRAF_2D = {
    "*                      ",                             //
    "*=================================================",  //
    "*                      ",                             //
    "*                      ",                             //
    "* For End of GRAF-2D   ",                             //
    "*                      ",                             //
    "* Card 11.1            ",                             //
    "*  NPTYPE              ",                             //
    "    0                  ",                             //
    "*                      ",
};

}  // namespace brelan
