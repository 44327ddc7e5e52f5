// Node codes that physical groups give to the nodes of their cells: by their own names, and as the user says.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "formats/cell_mesh.h"
#include "formats/wanted_codes.h"

namespace brelan::tool {

// As the command line has them. Throws Failure where the text is of another form.
GroupCodes group_codes_of(const std::string& text);

// What the name of a curve or point says to the nodes of a kind: "fix x", "fix y", "fixed", "head 12.5" and
// "temperature 20". Empty where it says nothing.
std::vector<CodeSetting> codes_in_name(std::string_view name, LayoutKind kind);

struct CodesGiven {
    std::set<std::int32_t> groups;       // places of those whose nodes got some
    std::vector<std::string> unmatched;  // names and tags that no group has
};

// Sets the codes of a mesh's nodes, first by the names of groups, then as the user wants in this order.
// `numbers` are those of the nodes by place of the point, 0 for a point that became none. Throws Failure for
// a code that the kind does not have.
CodesGiven give_codes(MeshLists& mesh, const CellMesh& cells, const std::vector<GroupCodes>& wanted,
                      const std::vector<Number>& numbers);

// "physical curve \"left\"", "physical point 7".
std::string title_of(const CellGroup& group);

}  // namespace brelan::tool
