// Runs of groups over eight unit squares, in which every number can be told by hand.
//
//   11---12---13---14---15      squares 1 to 4 below, 5 to 8 above
//    | 5  | 6  | 7  | 8  |      node 1 at (0, 0), node 15 at (4, 2)
//    6----7----8----9---10
//    | 1  | 2  | 3  | 4  |
//    1----2----3----4----5
#pragma once

#include <string>
#include <vector>

#include "batch/edit_run.h"
#include "support/mesh.h"

namespace brelan::test {

Mesh squares(Kind kind);

// The lists of Cards 3.3.5.1 to 3.3.5.3 and the defaults file of a run.
struct GroupSetting {
    Lines lists{"0", "0", "0"};
    std::string defaults = "0 0.01 0.01 0.001\n0 0.01 0 0 0 0 0 0\n0\n";
    std::string Hi = "0";
};

// Writes mesh, defaults and deck into a project.
void lay_out_groups(const Project& project, int groups, const Lines& cards, const Mesh& mesh,
                    const GroupSetting& setting = {});

// Runs the groups; `out.Mes` is the result.
class GroupRun {
public:
    GroupRun(Kind kind, int groups, const Lines& cards, const Mesh& mesh, const GroupSetting& setting = {});
    GroupRun(Kind kind, const Lines& cards) : GroupRun(kind, 1, cards, squares(kind)) {}

    void expect_counts(std::size_t nodes, std::size_t continuum, std::size_t beams,
                       std::size_t trusses) const;
    const MeshElement& element(int number) const;
    const MeshNode& node(int number) const;
    void expect_place(int number, double x, double y) const;
    std::string result() const { return project_.read("out.Mes"); }
    // The records of members, each as its numbers with one blank between. A run deletes them when it has used
    // them; one that lacks the units for its output decks ends in front of them and leaves them.
    Lines members() const;
    // Materials in the order of numbers.
    std::vector<int> materials() const;
    MeshCheck check;

private:
    Kind kind_;
    Project project_;
};

// The outline round squares 2 and 6, counter-clockwise, and the line between squares 2 and 3 from below.
Lines outline(const std::string& IEND = "2");
inline const Lines UPWARDS{"2 0 0 0 0", "1 2 0", "2 2 2", "1", "1 1 0 2"};

// A line upwards at x through the whole mesh and beyond.
Lines upright(const std::string& x, const std::string& NDIV = "0", const std::string& IEND = "2");

}  // namespace brelan::test
