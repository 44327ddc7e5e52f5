#include "commands/studying/starter_study.h"

namespace brelan::tool {

const std::string_view STARTER_STUDY = R"(# A study: one deck with placeholders, run for many values.
#
#   brelan study @NAME@.toml             runs what is missing; may be ended and started again
#   brelan study report @NAME@.toml      a page for the browser: table, pictures, plots
#   brelan study csv @NAME@.toml         the table as CSV
#
# All results lie in @NAME@.study/, each case in a folder of its own.

# The deck. {depth} stands for a value, {100-depth} for an expression, {depth:.2f} for a value with a
# format; {{ and }} are braces. Meshes that the deck reads lie beside it.
deck = "@NAME@.dat"

# kind = "displacement"     # coupled, temperature, head; without it the kind that the deck is for
cut = "auto"                # rules, sound, or auto: the sound cut where the mesh by the rules is unsound
time_limit = 60             # seconds for a case; one that needs more is ended, and told as such
convert = []                # files of other programs for each case: "vtu", "msh", "inp", "mdpa"

# What is gathered from each mesh: any value that "brelan info --json" shows, by its path; of what has a
# count the count. "areas" are those of all materials.
gather = [
    "nodes",
    "elements",
    "sound",
    "areas",
    "smallest_angle",
    "quality.aspect_ratio.largest",
]

# The values. A list, a range with a step or a count, or texts. Every combination of them is a case.
[values]
depth = { from = 4.0, to = 8.0, step = 1.0 }
width = [8.0, 10.0, 12.0]
spacing = { from = 0.8, to = 1.2, count = 3 }

# Not all combinations, but samples: ranges without step are drawn from evenly. The seed decides on them,
# on every machine alike.
#
# [sample]
# method = "latin"          # or "random"; "list" takes the first values together, then the second ...
# count = 50
# seed = 1
#
# A table of cases in place of [values], its first line the names of the parameters:
#
# table = "cases.csv"
)";

const std::string_view STARTER_STUDY_DECK =
    R"(* Half an excavation, {width} m wide and {depth} m deep: a base mesh that is
* fine under and beside the pit, from which the pit is cut. Levels in metres.
* Card 1.1
* IMOD  JK
  2     0
* Card 4.1
* NBX   NBY   IB_LEFT  IB_RIGHT  IB_TOP  IB_BOTTOM
  2     2     1        0         0       1
* Card 4.2
*    Xo            Yo
     0.0           80.0
* Card 4.3
*    W             DX            AX
     20.0          {spacing:.4f}       -0.35
     {width:.3f}         {spacing:.4f}        0.5
* Card 4.4
*    H             DY            AY
     {depth:.3f}         {spacing:.4f}        0.5
     {20-depth:.3f}        {spacing:.4f}        0.35
* Card 4.5
* IGMOD
  1
* Card 3.1-1
* FILEA
Bmesh.dat
* Card 3.1-2
* FILEM
Pit.Mes
* Card 3.2
* NSNEL  NSNODE
  1      1
* Card 3.3
* IEDIT
  2
* Card 3.3.3.1
* ILOC
  0
* Card 3.3.3.2.1
* XMIN   YMIN   XMAX   YMAX
  20.0   {100-depth:.3f}   {20+width:.3f}   100.0
* Card 3.3.3.3
* ISIDE
  0
)";

}  // namespace brelan::tool
