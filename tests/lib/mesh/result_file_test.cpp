// The sections of a result mesh file out of tables with gaps in their numbers.
#include "mesh/result_file.h"

#include "mesh/tables.h"
#include "support/state.h"

namespace brelan::test {
namespace {

using ResultFile = ChannelTest;

TEST_F(ResultFile, OneHeadForAllNodesPassesOverTheNumbersThatAreNone) {
    const Edition edition(9);  // heads
    reset_mesh(state.mesh);
    state.mesh.head.clear();
    state.mesh.coefficient.clear();
    for (const std::int32_t n : {2, 4}) {
        state.mesh.node_in_use[NodeNumber(n)] = 1;
        state.mesh.x[NodeNumber(n)] = 1.0F;
        state.mesh.y[NodeNumber(n)] = 0.0F;
    }
    ResultMesh result;
    result.nodes.include(NodeNumber(1));
    result.nodes.include(NodeNumber(5));
    Channel& file = state.channels.open_in_memory(7, "a mesh");
    write_result_nodes(state.mesh, file, result, 2.0F);
    const std::string behind = "    0    0  0.100000E+01  0.000000E+00  0.200000E+01  0.000000E+00 \n";
    EXPECT_EQ(file.text(), "      2" + behind + "      4" + behind);
}

}  // namespace
}  // namespace brelan::test
