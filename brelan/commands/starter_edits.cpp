// Starter decks of the edits.
#include "commands/starter_decks.h"

namespace brelan::tool {

const std::string_view STARTER_EDIT_0 = R"(* Edit 0: a mesh is moved, scaled or mirrored.
* Kind: @kind@
*
*     brelan run @deck@           Start.Mes becomes Mirror.Mes
*     brelan plot Mirror.Mes -o mirror.html
*
* A line with * in column 1 is a comment, and text behind the numbers of a card is none. Do not leave blank lines.
*
* Card 1.1: mode. IMOD 1 is an edit; JK has no effect.
* IMOD  JK
  1     0
* Card 3.1-1: FILEA, the mesh that is read. A bare name is a file beside this deck.
Start.Mes
* Card 3.1-2: FILEM, the mesh that is written. It may be the one that is read.
Mirror.Mes
* Card 3.2: first numbers of continuum elements, nodes, beams and trusses.
* 0 for beams and trusses: they follow behind the continuum elements.
* NSNEL  NSNODE  NSBEAM  NSTRUS
  1      1       0       0
* Card 3.3: the edit.
* IEDIT
  0
* Card 3.3.1.1: the point (XO, YO) goes to (XN, YN), and all others with it.
* XO     YO     XN     YN
  6.0    0.0    6.0    0.0
* Card 3.3.1.2: scales. A negative one mirrors; 0.3048 turns feet into metres.
* SCX    SCY
  -1.0   1.0
)";

const std::string_view STARTER_EDIT_1 = R"(* Edit 1: nodes get new codes.
* Kind: @kind@
*
*     brelan run @deck@           Start.Mes becomes Held.Mes
*     brelan diff Start.Mes Held.Mes
*
* Card 1.1: mode. IMOD 1 is an edit; JK has no effect.
* IMOD  JK
  1     0
* Card 3.1-1: FILEA, the mesh that is read.
Start.Mes
* Card 3.1-2: FILEM, the mesh that is written.
Held.Mes
* Card 3.2: first numbers of continuum elements, nodes, beams and trusses.
* NSNEL  NSNODE  NSBEAM  NSTRUS
  1      1       0       0
* Card 3.3: the edit.
* IEDIT
  1
* Card 3.3.2.1: how the nodes are selected.
*   0  all nodes in a window; Card 3.3.2.2.1 with XMIN YMIN XMAX YMAX follows
*   1  the nodes of a list; 3 -7 means 3 to 7
*   2  all nodes on the polyline through the nodes of a list
*   3  all nodes of elements of the materials of a list
* ILOC
  2
* Card 3.3.2.2.2: count of numbers in the list, and the list: the top, from corner to corner.
* NSEL
  2
  1    25
* Card 3.3.2.3: 0 for what is selected, 1 for all other nodes.
* ISIDE
  0
* Card 3.3.2.4: the new codes.
* @code_names@
  @codes@
)";

const std::string_view STARTER_EDIT_2 =
    R"(* Edit 2: elements are deleted, and with them the nodes that no element has any longer.
* Kind: @kind@
*
*     brelan run @deck@           Start.Mes becomes Trench.Mes
*     brelan plot Trench.Mes -o trench.html
*
* Card 1.1: mode. IMOD 1 is an edit; JK has no effect.
* IMOD  JK
  1     0
* Card 3.1-1: FILEA, the mesh that is read.
Start.Mes
* Card 3.1-2: FILEM, the mesh that is written.
Trench.Mes
* Card 3.2: first numbers. This edit closes up the numbers of elements of all types from NSNEL on.
* NSNEL  NSNODE  NSBEAM  NSTRUS
  1      1       0       0
* Card 3.3: the edit. MATX1 to MATX3 are materials of continuum elements that stay, MATXB and MATXT one of
* beams and one of trusses; 0 or nothing for none.
* IEDIT  MATX1  MATX2  MATX3  MATXB  MATXT
  2      0      0      0      0      0
* Card 3.3.3.1: how the elements are selected.
*   0  all whose centroid is in a window
*   1  the elements of a list; Card 3.3.3.2.2 with NSEL and the list follow, 3 -7 means 3 to 7
* ILOC
  0
* Card 3.3.3.2.1: the window.
* XMIN   YMIN   XMAX   YMAX
  2.0    2.0    4.0    3.5
* Card 3.3.3.3: 0 deletes what is in it, 1 all other elements.
* ISIDE
  0
)";

const std::string_view STARTER_EDIT_3 = R"(* Edit 3: elements get another material.
* Kind: @kind@
*
*     brelan run @deck@           Start.Mes becomes Layers.Mes
*     brelan info Layers.Mes
*
* Card 1.1: mode. IMOD 1 is an edit; JK has no effect.
* IMOD  JK
  1     0
* Card 3.1-1: FILEA, the mesh that is read.
Start.Mes
* Card 3.1-2: FILEM, the mesh that is written.
Layers.Mes
* Card 3.2: first numbers. This edit closes up the numbers of elements of all types from NSNEL on.
* NSNEL  NSNODE  NSBEAM  NSTRUS
  1      1       0       0
* Card 3.3: the edit. MATX1 to MATX3 are materials of continuum elements that stay, MATXB and MATXT one of
* beams and one of trusses: here elements of material 2 keep it, whatever is selected.
* IEDIT  MATX1  MATX2  MATX3  MATXB  MATXT
  3      2      0      0      0      0
* Card 3.3.4.1: how the elements are selected.
*   0  all whose centroid is in a window; Card 3.3.4.2.1 with XMIN YMIN XMAX YMAX follows
*   1  the elements of a list
* ILOC
  1
* Card 3.3.4.2.2: count of numbers in the list, and the list. 1 -9 means 1 to 9.
* NSEL
  3
  1   -9    21
* Card 3.3.4.3: 0 for what is selected, 1 for all other elements.
* ISIDE
  0
* Card 3.3.4.4: new material of continuum elements, beams and trusses; 0 leaves them as they are.
* MATNC  MATNB  MATNT
  3      0      2
)";

const std::string_view STARTER_EDIT_4 =
    R"(* Edit 4: groups are drawn over a mesh. Here a cut in two groups: the ground that is dug out, and the wall of
* beams on its left. The starter deck "groups" has joints, struts and stages.
* Kind: @kind@
*
*     brelan run @deck@           Start.Mes becomes Cut.Mes
*     brelan plot Cut.Mes --deck @deck@ -o cut.html
*
* Names of materials, as brelan run and plot --deck show them; the batch program passes them over.
* material 1: Ground
* material 2: Topsoil
* material 5: Cut
* beam 1: Old wall
* beam 2: New wall
* truss 1: Strut
*
* Card 1.1: mode. IMOD 1 is an edit; JK has no effect.
* IMOD  JK
  1     0
* Card 3.1-1: FILEA, the mesh that is read.
Start.Mes
* Card 3.1-2: FILEM, the mesh that is written.
Cut.Mes
* Card 3.2: first numbers of elements and nodes.
* NSNEL  NSNODE
  1      1
* Card 3.3: the edit.
* IEDIT
  4
* Card 3.3.5.1: count of nodes that must not move; their list follows where it is not 0.
* NODE
  0
* Card 3.3.5.2: count of elements that must not change; their list follows where it is not 0.
* NOEL
  0
* Card 3.3.5.3: 1 where limits follow on and beyond which no node moves: the border of the mesh.
* IBOUND
  1
* XMIN   YMIN   XMAX   YMAX
  0.0    0.0    6.0    3.0
* Card 3.3.5.4-1: count of groups; 1 where each has a title.
* NGROUP  IGTITL
  2       1
* Card 3.3.5.4-2: reference point, for groups whose IREF is 1.
* Xref   Yref   Hi
  0.0    0.0    0.0
* Group No = 1: its title, then its cards
Wall
* Card 3.3.5.4.1: kind of group. 2 is an open line.
* MTYPE
  2
* Card 3.3.5.4.1-1: LTP 2 puts beams along the line, 3 trusses; LMAT is their material.
* @line_names@
  2     2
* Card 3.3.5.4.2: count of points; MOVE 1 holds the nodes of the line in place for later groups.
* NPOINT  MOVE  IREF  XLo   YLo
  3       1     0     0.0   0.0
* Card 3.3.5.4.2-1: the points.
* NP     X      Y
  1      1.5    3.0
  2      1.5    2.0
  3      1.5    0.75
* Card 3.3.5.4.3: count of segments, one less than the points of an open line.
* NSEGMENT
  2
* Card 3.3.5.4.3.1: LTYPE 1 is straight; NDIV 0 and IEND 2 cut the mesh along all of it.
* SEGNO  LTYPE  NDIV   IEND
  1      1      0      2
  2      1      0      2
* Group No = 2
Cut
* Between the wall and a slope.
* Card 3.3.5.4.1: 3 is an outline whose inside gets a material.
* MTYPE
  3
* Card 3.3.5.4.1-1: MAT is the material; LTP 0 puts nothing along the outline.
* @region_names@
  5     @region@   0     0
* NPOINT  MOVE  IREF  XLo   YLo
  4       1     0     0.0   0.0
* NP     X      Y
  1      1.5    3.0
  2      1.5    2.0
  3      4.0    2.0
  4      5.0    3.0
* Card 3.3.5.4.3: as many segments as points close the outline.
* NSEGMENT
  4
* SEGNO  LTYPE  NDIV   IEND
  1      1      0      2
  2      1      0      2
  3      1      0      2
  4      1      0      2
)";

const std::string_view STARTER_EDIT_5 = R"(* Edit 5: a ready-made mesh of a slope is mapped onto a triangle.
* Kind: @kind@
*
*     brelan run @deck@           makes Slope.Mes
*     brelan plot Slope.Mes -o slope.html
*
* Card 1.1: mode. IMOD 1 is an edit; JK has no effect.
* IMOD  JK
  1     0
* Card 3.1-1: not used by this edit, but the line must be there.
-
* Card 3.1-2: FILEM, the mesh that is written.
Slope.Mes
* Card 3.2: first numbers of elements and nodes.
* NSNEL  NSNODE
  1      1
* Card 3.3: the edit.
* IEDIT
  5
* Card 3.3.6.1: the template, by the slope that it is made for.
*   1  1 : 1      2  1 : 1.5      3  1 : 2      4  1 : 2.5      5  1 : 3
* MODEL
  3
* Card 3.3.6.2: material; height of the water as a share of the slope's height, 0 to 1, any other for none;
* head or temperature that the nodes start with.
* MATNO_T  rHw    Hi
  1        0.6    0.0
* Card 3.3.6.3: crest, toe and foot below the crest.
* X1     Y1     X2     Y2     X3     Y3
  20.0   10.0   0.0    0.0    20.0   0.0
)";

const std::string_view STARTER_EDIT_6 =
    R"(* Edit 6: elements of a material are built anew: their corners in another order, with another material and
* other attributes.
* Kind: @kind@
*
*     brelan run @deck@           Start.Mes becomes Rebuilt.Mes
*     brelan diff Start.Mes Rebuilt.Mes
*
* Card 1.1: mode. IMOD 1 is an edit; JK has no effect.
* IMOD  JK
  1     0
* Card 3.1-1: FILEA, the mesh that is read.
Start.Mes
* Card 3.1-2: FILEM, the mesh that is written.
Rebuilt.Mes
* Card 3.2: first numbers of continuum elements, nodes, beams and trusses.
* NSNEL  NSNODE  NSBEAM  NSTRUS
  1      1       0       0
* Card 3.3: the edit.
* IEDIT
  6
* Card 3.6.1: count of rows for continuum elements.
* NEDC
  1
* Card 3.6.1-1: elements of MATold begin at their corner NS1, go on with NS2, NS3, NS4 and get the material
* MATNEW. In place of a number -10 leaves what there is, and 0 for NS4 makes triangles of squares.
* @rebuild_names@
  @rebuild@
* Card 3.6.2: count of rows for beams.
* NEDB
  1
* Card 3.6.2-1: beams of material 1 turn round: 1 is their first node, 2 their second.
* MATold  NS1  NS2  MATNEW
  1       2    1    -10
* Card 3.6.3: count of rows for trusses.
* NEDT
  0
)";

}  // namespace brelan::tool
