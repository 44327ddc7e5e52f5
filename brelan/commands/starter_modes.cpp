// Starter decks of the other modes.
#include "commands/starter_decks.h"

namespace brelan::tool {

const std::string_view STARTER_BASE_MESH = R"(* A base mesh: a rectangle of blocks, fine where it matters.
* Kind: @kind@
*
*     brelan run @deck@           makes Bmesh.dat
*     brelan plot Bmesh.dat -o base.html
*
* A line with * in column 1 is a comment, and text behind the numbers of a card is none. Do not leave blank lines.
*
* Card 1.1: mode. IMOD 2 is a base mesh; JK has no effect.
* IMOD  JK
  2     0
* Card 4.1: count of block columns and block rows; a side with 1 is fixed, with 0 it is free.
* NBX   NBY   IB_LEFT  IB_RIGHT  IB_TOP  IB_BOTTOM
  3     2     1        1         0       1
* Card 4.2: lower left corner@third_text@.
* @corner_names@
  @corner@
* Card 4.3: width of each block column, from left to right; wanted width of its smallest element; where it is
* fine. AX 0.5 is even. From 0.3 on elements grow to the right, from -0.3 on to the left.
* W      DX     AX
  13.0   1.0    -0.35
  10.0   1.0    0.5
  13.0   1.0    0.35
* Card 4.4: the same for the block rows, from the top: positive is finest at the top.
* H      DY     AY
  6.0    1.0    0.5
  9.0    1.0    0.35
* Card 4.5: 0 the deck ends here; 1 the cards of an edit follow, from Card 3.1-1 on, with Bmesh.dat as its FILEA.
* IGMOD
  0
)";

const std::string_view STARTER_COMBINATION = R"(* A combination: two meshes become one where their nodes meet.
* Kind: @kind@
*
*     brelan run @deck@           Left.Mes and Right.Mes become Both.Mes
*     brelan plot Both.Mes -o both.html
*
* Card 1.1: mode. IMOD 0 joins two meshes: codes and values of common nodes are those of FILEA; with -1 those
* of FILEB. JK has no effect.
* IMOD  JK
  0     0
* Card 2.1-1: FILEA, the mesh whose nodes keep their numbers. A bare name is a file beside this deck.
Left.Mes
* Card 2.1-2: FILEB, the mesh that is joined to it.
Right.Mes
* Card 2.1-3: FILEC, the mesh that is written.
Both.Mes
* Card 2.2: 0 where nodes at one place become one. With 1 pairs are listed: Card 2.3 with their count NINT, then
* the nodes of FILEA and, on lines of their own, their partners of FILEB.
* INTERFACE
  0
)";

const std::string_view STARTER_DAM =
    R"(* An earth dam with a core on two layers of subsoil, with a cut-off wall under the core.
* Kind: @kind@
*
*     brelan run @deck@           makes EarthDam.Mes (Earth_Dam.Mes with ISHELL 1)
*     brelan plot EarthDam.Mes -o dam.html
*
* Names of materials, as brelan run and plot --deck show them; the batch program passes them over.
* material 1: Main shell
* material 2: Upstream shell
* material 3: Downstream shell
* material 4: Core
* material 5: Cut-off wall
* material 6: Upper layer
* material 7: Lower layer
*
*                      ____ crest        y = HDAM
*               RUNL  /    \  RUNR
*                    / core \
*     _____________ /________\ ________  y = 0, x = 0 at the toe on the left
*       XLEFT         | wall |  XRIGHT
*     _________________________________  layers, from the top
*
* Card 1.1: mode. IMOD 3 is an earth dam; JK has no effect.
* IMOD  JK
  3     0
* Card 5.1: count of layers; 1 for a core; 1 for a cut-off wall; 1 for slopes made of templates with the water
* level on them; divisions of the crest, 0 for elements like the others; head or temperature to start with.
* NLAYER  ICORE  ICUT  ISHELL  NCREST  Hi
  2       1      1     0       0       0.0
* Card 5.2: height of the dam and of the water; run of the left slope and width of the block column under it;
* width of the crest and of the middle block column; run of the right slope and its block column.
* HDAM   HWATER  RUNL   WLEFT  WCREST  WMID   RUNR   WRIGHT
  20.0   15.0    40.0   40.0   8.0     8.0    40.0   40.0
* Card 5.3: the four points of the core.
* X1     Y1     X2     Y2     X3     Y3     X4     Y4
  36.0   0.0    42.0   18.0   46.0   18.0   52.0   0.0
* Card 5.4-1: width of the ground beside the dam, and the thickness of the layers from the top.
* XLEFT  XRIGHT
  30.0   30.0
  6.0    8.0
* Card 5.5: the four points of the cut-off wall.
* X1     Y1     X2     Y2     X3     Y3     X4     Y4
  42.0   0.0    42.0   -11.0  46.0   -11.0  46.0   0.0
)";

const std::string_view STARTER_GROUPS =
    R"(* An excavation in two stages, drawn as groups over a base mesh: a wall on its left with a joint towards the
* ground, the ground that is dug out in each stage, and a strut from the wall to the other side.
* Kind: @kind@
*
*     brelan run @deck@           makes Pit.Mes
*     brelan plot Pit.Mes --deck @deck@ -o pit.html
*
* Names of materials, as brelan run and plot --deck show them; the batch program passes them over.
* material 1: Ground
* material 2: First cut
* material 3: Second cut
* material 5: Back-fill
* material 7: Joint of the wall
* beam 1: Sheet piles
* truss 1: Strut
*
* IMOD  JK
  2     0
* Cards 4.1 to 4.5: the base mesh, 40 wide and 20 high; an edit follows.
* NBX   NBY   IB_LEFT  IB_RIGHT  IB_TOP  IB_BOTTOM
  3     2     1        1         0       1
* @corner_names@
  @corner@
* W      DX     AX
  13.0   1.0    -0.35
  14.0   1.0    0.5
  13.0   1.0    0.35
* H      DY     AY
  10.0   1.0    0.5
  10.0   1.0    0.35
* IGMOD
  1
* Cards 3.1-1 and 3.1-2: the base mesh is read, Pit.Mes is written.
Bmesh.dat
Pit.Mes
* NSNEL  NSNODE
  1      1
* Card 3.3: IEDIT 4 draws groups.
* IEDIT
  4
* Cards 3.3.5.1 and 3.3.5.2: no lists of nodes and elements that stay as they are.
* NODE
  0
* NOEL
  0
* Card 3.3.5.3: the border of the mesh stays where it is.
* IBOUND
  1
* XMIN   YMIN   XMAX   YMAX
  0.0    0.0    40.0   20.0
* Card 3.3.5.4-1: count of groups; each has a title.
* NGROUP  IGTITL
  4       1
* Xref   Yref   Hi
  0.0    0.0    0.0
* Group No = 1: its title, then its cards
Wall
* It is drawn upwards, so that the joint lies on its left, towards the ground.
* Card 3.3.5.4.1: MTYPE -2 is a joint along a line.
* MTYPE  IGPOST  OVERLAY
  -2     0       0
* Card 3.3.5.4.1-1: material, attribute and thickness of the joint; line elements on the line (LTi) and on its
* twin (LTo): 2 beams, 3 trusses, 0 none, with their materials.
* @joint_names@
  7     @joint@   0.0    2    1    0    0
* Card 3.3.5.4.2: the points, one at each level that meets the wall later.
* NPOINT  MOVE  IREF  XLo   YLo
  5       1     0     13.0  0.0
* NP     X      Y
  1      0.0    10.0
  2      0.0    14.0
  3      0.0    17.0
  4      0.0    18.0
  5      0.0    20.0
* Card 3.3.5.4.3: the segments between them: straight, cut all along.
* NSEGMENT
  4
* SEGNO  LTYPE  NDIV   IEND
  1      1      0      2
  2      1      0      2
  3      1      0      2
  4      1      0      2
* Group No = 2
Stage 1
* Down to 17, with a slope of 1 in 1 on the right: ground of material 2, back-fill of material 5.
* MTYPE 4 doubles the elements inside: the old ones get MATold, the new ones MAT.
* MTYPE  IGPOST  OVERLAY
  4      0       0
* @stage_names@
  5     @region@   0     0     2
* NPOINT  MOVE  IREF  XLo   YLo
  4       1     0     0.0   0.0
* NP     X      Y
  1      13.0   20.0
  2      13.0   17.0
  3      26.0   17.0
  4      29.0   20.0
* NSEGMENT
  4
* SEGNO  LTYPE  NDIV   IEND
  1      1      0      2
  2      1      0      2
  3      1      0      2
  4      1      0      2
* Group No = 3
Stage 2
* Down to 14: ground of material 3, back-fill of material 5.
* MTYPE  IGPOST  OVERLAY
  4      0       0
* @stage_names@
  5     @region@   0     0     3
* NPOINT  MOVE  IREF  XLo   YLo
  4       1     0     0.0   0.0
* NP     X      Y
  1      13.0   17.0
  2      13.0   14.0
  3      26.0   14.0
  4      26.0   17.0
* NSEGMENT
  4
* SEGNO  LTYPE  NDIV   IEND
  1      1      0      2
  2      1      0      2
  3      1      0      2
  4      1      0      2
* Group No = 4
Strut
* From the wall to the slope on the other side of the pit.
* MTYPE 2 with OVERLAY 1: a line that does not cut the mesh; it takes the nodes at its ends.
* MTYPE  IGPOST  OVERLAY
  2      0       1
* @line_names@
  3     1
* NPOINT  MOVE  IREF  XLo   YLo
  2       0     0     0.0   18.0
* NP     X      Y
  1      13.0   0.0
  2      27.0   0.0
* NSEGMENT
  1
* SEGNO  LTYPE  NDIV   IEND
  1      1      1      0
)";

}  // namespace brelan::tool
