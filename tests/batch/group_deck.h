// Decks with groups over a grid of unit squares, for tests of what the groups' outputs hold.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "batch/edit_run.h"
#include "support/mesh.h"
#include "support/project.h"

namespace brelan::test {

// Squares of side 1 in rows from below, node 1 at (0, 0). Four columns and two rows:
//
//   11---12---13---14---15
//    | 5  | 6  | 7  | 8  |      material 1, attributes 0, real attributes 1; free nodes that do not rotate;
//    6----7----8----9---10      T or H of node n is 10n, CF 0.5
//    | 1  | 2  | 3  | 4  |
//    1----2----3----4----5
Mesh grid_mesh(Kind kind, int columns, int rows);

using Points = std::vector<std::pair<double, double>>;

// The cards of a group from Card 3.3.5.4.2 on: a closed outline, or an open line, straight from point to
// point. IEND 2 makes the mesh follow it, 3 leaves the mesh as it is.
Lines outline(const Points& points, int IEND = 2);
Lines open_line(const Points& points, int IEND = 2);

struct GroupCards {
    std::string title{};
    int MTYPE = 0;
    int OVERLAY = 0;
    std::string material{};  // the material line; none for an MTYPE that has no such card
    Lines line{};
    int IGPOST = 1;
    std::array<std::string, 6> pairs{"0 0", "0 0", "0 0", "0 0", "0 0", "0 0"};
    std::array<int, 7> switches{};
};

// A deck of IEDIT 4 that makes out.Mes of mesh.Mes.
std::string group_deck(const std::vector<GroupCards>& groups, const std::string& Hi = "0",
                       const std::string& card_3_2 = "1 1");

// A project with the mesh and the deck of the groups, ready to run. TOLMOVE and TOLLINE are 0.01.
class GroupProject {
public:
    GroupProject(int edition, const Mesh& mesh, const std::vector<GroupCards>& groups,
                 const std::string& Hi = "0");
    GroupProject(Kind kind, const Mesh& mesh, const std::vector<GroupCards>& groups,
                 const std::string& Hi = "0")
        : GroupProject(edition_of(kind), mesh, groups, Hi) {}

    // Runs the deck and expects it to finish.
    void run(const char* source = __builtin_FILE(), int line = __builtin_LINE()) const;

    // A file of the project as lines.
    Lines lines(std::string_view name) const { return lines_of(project.read(name)); }

    Project project;
};

// Lines from the first that is `first` up to the one before `last`, which is sought behind it; all that
// follow when there is no `last`. Reports a `first` that is not there.
Lines section(const Lines& lines, std::string_view first, std::string_view last,
              const char* source = __builtin_FILE(), int line = __builtin_LINE());

// The banner's line of a section of "..\Group.Pos".
std::string section_banner(int NPTYPE);

// The blocks of a section of the plot deck with results: from its first group to the line behind it.
Lines section_of(const Lines& post, int NPTYPE);

// How often a line stands in the list.
int count_of(const Lines& lines, std::string_view line);

}  // namespace brelan::test
