#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "cli/exit_status.h"
#include "formats/cell_mesh.h"
#include "formats/gmsh.h"
#include "formats/vtu.h"
#include "formats/vtu_blocks.h"
#include "support/mesh_sample.h"

namespace brelan::tool {
namespace {

using test::Sample;

TEST(Base64, KnownTexts) {
    EXPECT_EQ(to_base64(""), "");
    EXPECT_EQ(to_base64("f"), "Zg==");
    EXPECT_EQ(to_base64("fo"), "Zm8=");
    EXPECT_EQ(to_base64("foo"), "Zm9v");
    EXPECT_EQ(to_base64("foobar"), "Zm9vYmFy");
    EXPECT_EQ(to_base64(std::string_view("\xFF\xFE\x00\x01", 4)), "//4AAQ==");
}

TEST(Base64, GoesThereAndBack) {
    std::mt19937 random(7);
    for (std::size_t size = 0; size < 200; ++size) {
        std::string bytes;
        for (std::size_t k = 0; k < size; ++k)
            bytes += static_cast<char>(random());
        const std::string text = to_base64(bytes);
        const Decoded decoded = from_base64(text + "<", size);
        EXPECT_EQ(decoded.bytes, bytes);
        EXPECT_EQ(decoded.used, text.size());
    }
    EXPECT_THROW(from_base64("Zm9<", 100), Failure);
}

TEST(Blocks, DecompressToWhatTheyWere) {
    std::string bytes;
    for (int k = 0; k < 200000; ++k)
        bytes += static_cast<char>(k % 251);
    const Compressed packed = compress_blocks(bytes);
    const auto word = [&](std::size_t k) {
        std::uint64_t value = 0;
        for (std::size_t b = 8; b-- > 0;)
            value = value << 8U | static_cast<unsigned char>(packed.header[8 * k + b]);
        return value;
    };
    EXPECT_EQ(word(0), 4U);  // 200,000 bytes in blocks of 65,536
    EXPECT_EQ(word(1), 65536U);
    EXPECT_EQ(word(2), 200000U - 3 * 65536U);
    std::string back;
    std::size_t at = 0;
    for (std::size_t k = 0; k < 4; ++k) {
        back += decompress_block(std::string_view(packed.blocks).substr(at, word(3 + k)),
                                 k < 3 ? word(1) : word(2));
        at += word(3 + k);
    }
    EXPECT_EQ(back, bytes);
    EXPECT_EQ(at, packed.blocks.size());
    EXPECT_THROW(decompress_block("no zlib", 10), Failure);
}

// A VTU file as a person would write it, for the displacement kind.
constexpr const char* TEXT_VTU = R"(<?xml version="1.0"?>
<VTKFile type="UnstructuredGrid" version="0.1" byte_order="LittleEndian">
  <UnstructuredGrid><Piece NumberOfPoints="5" NumberOfCells="3">
    <Points><DataArray type="Float64" NumberOfComponents="3" format="ascii">
      0 0 0  1 0 0  1 1 0  0 1 0  2 0 0</DataArray></Points>
    <Cells>
      <DataArray type="Int64" Name="connectivity" format="ascii">0 1 2 3  1 4 2  0 1</DataArray>
      <DataArray type="Int64" Name="offsets" format="ascii">4 7 9</DataArray>
      <DataArray type="UInt8" Name="types" format="ascii">9 5 3</DataArray>
    </Cells>
    <CellData><DataArray type="Int32" Name="material" format="ascii">2 3 1</DataArray></CellData>
  </Piece></UnstructuredGrid>
</VTKFile>
)";

TEST(Vtu, TextOfAnotherProgramBecomesAMesh) {
    const FromCells read = mesh_of(read_vtu(TEXT_VTU, "a.vtu"), LayoutKind::coupled);
    const MeshLists& mesh = read.mesh;
    EXPECT_EQ(read.left_out, 1U);  // the line, which nothing calls a beam or truss
    ASSERT_EQ(mesh.elements.size(), 2U);
    EXPECT_EQ(mesh.nodes.size(), 5U);
    EXPECT_EQ(mesh.elements[0].words.material.value, 2);
    EXPECT_EQ(mesh.elements[1].words.material.value, 3);
    EXPECT_EQ(mesh.elements[1].words.corner_4.value, 0);
    EXPECT_EQ(mesh.elements[0].fluid, 1);
    EXPECT_EQ(mesh.elements[0].integration_r, 2);
    EXPECT_EQ(mesh.nodes[0].codes, (NodeCodes{0, 0, 0, 0, 1}));
    EXPECT_THROW(mesh_of(read_vtu(TEXT_VTU, "a.vtu"), std::nullopt), Failure);
}

TEST(CellGroups, HaveTagsOfTheirOwnAboveZeroWhateverTheMaterials) {
    constexpr std::int32_t LARGEST = std::numeric_limits<std::int32_t>::max();
    Sample sample;
    sample.nodes({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    for (const std::int32_t material : {LARGEST, 1, 0, -LARGEST - 1, 3})
        sample.solid({1, 2, 3, 4}, material);
    sample.joint({1, 2, 3, 4}, 3);
    std::vector<std::int32_t> tags;
    for (const CellGroup& group : cells_of(sample.mesh()).groups)
        tags.push_back(group.tag);
    // -2147483648 and 0 take 2 and 4, the joint what is free behind them.
    EXPECT_EQ(tags, (std::vector<std::int32_t>{2, 4, 1, 3, LARGEST, 5}));
}

TEST(Vtu, SaysWhatIsWrong) {
    const auto message = [](const std::string& text) -> std::string {
        try {
            mesh_of(read_vtu(text, "a.vtu"), LayoutKind::head);
        } catch (const Failure& failure) {
            return failure.what();
        }
        return "none";
    };
    const auto with = [](const std::string& from, const std::string& to) {
        std::string text = TEXT_VTU;
        const std::size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        return text.replace(at, from.size(), to);
    };
    EXPECT_EQ(message(with("4 7 9", "4 8 9")), "a.vtu: cell 1: expected 3 nodes, found 4");
    EXPECT_EQ(message(with("1 4 2", "1 5 2")),
              "a.vtu: cell 1: expected places of the 5 points, counted from 0");
    EXPECT_EQ(message(with("9 5 3", "9 10 3")),
              "a.vtu: cell 1: expected vertices, lines, triangles and quadrilaterals, found VTK type 10");
    EXPECT_EQ(message(with("2 0 0", "2 0")), "a.vtu: array \"without name\": expected 15 values, found 14");
    EXPECT_EQ(message(with("2 0 0", "2 0 1")), "a.vtu: expected a plane mesh, found z from 0 to 1");
    EXPECT_EQ(message(with("2 3 1", "2 x 1")), "a.vtu: array \"material\": a value that is no number");
    EXPECT_EQ(message(with("2 3 1", "2 2.5 1")), "a.vtu: expected whole numbers in \"material\", found 2.5");
    EXPECT_EQ(message(with("UnstructuredGrid\"", "PolyData\"")),
              "a.vtu: expected a VTKFile of type UnstructuredGrid, found \"PolyData\"");
}

constexpr const char* GMSH_22 = R"($MeshFormat
2.2 0 8
$EndMeshFormat
$PhysicalNames
3
1 4 "beam 2"
2 1 "clay"
1 9 "edge"
$EndPhysicalNames
$Nodes
4
10 0 0 0
20 1 0 0
30 1 1 0
40 0 1 0
$EndNodes
$Elements
5
1 15 2 0 1 10
2 1 2 4 1 10 20
3 1 2 9 2 20 30
7 2 2 1 1 10 30 20
8 2 2 1 1 10 30 40
$EndElements
)";

TEST(Gmsh, GroupsTellBeamsAndOtherLinesAreLeftOut) {
    const FromCells read = mesh_of(read_gmsh(GMSH_22, "a.msh"), LayoutKind::displacement);
    const MeshLists& mesh = read.mesh;
    EXPECT_EQ(read.left_out, 2U);  // the point and the line called "edge"
    ASSERT_EQ(mesh.elements.size(), 3U);
    EXPECT_EQ(mesh.elements[0].number.value, 7);
    EXPECT_EQ(mesh.elements[2].of, ElementClass::beam);
    EXPECT_EQ(mesh.elements[2].words.material.value, 2);
    EXPECT_EQ(mesh.elements[0].words.material.value, 1);
    EXPECT_EQ(mesh.nodes[1].number.value, 20);
    EXPECT_EQ(mesh.nodes[0].codes[2], 0);  // of the beam: free to turn
    EXPECT_EQ(mesh.nodes[2].codes[2], 1);
}

TEST(Gmsh, ClockwiseElementsOfOthersAreTurned) {
    const FromCells read = mesh_of(read_gmsh(GMSH_22, "a.msh"), LayoutKind::displacement);
    EXPECT_EQ(read.turned, 1U);  // 10 30 20
    EXPECT_EQ(read.mesh.elements[0].words.corner_2.value, 20);
    EXPECT_EQ(read.mesh.elements[0].words.corner_3.value, 30);
}

TEST(Gmsh, SaysWhereSomethingIsWrong) {
    const auto message = [](const std::string& text) -> std::string {
        try {
            read_gmsh(text, "a.msh");
        } catch (const Failure& failure) {
            return failure.what();
        }
        return "none";
    };
    const auto with = [](const std::string& from, const std::string& to) {
        std::string text = GMSH_22;
        const std::size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        return text.replace(at, from.size(), to);
    };
    EXPECT_EQ(message(GMSH_22), "none");
    EXPECT_EQ(message(with("20 1 0 0", "20 1 z 0")), "a.msh, line 13: expected a number, found \"z\"");
    EXPECT_EQ(
        message(with("7 2 2", "7 4 2")),
        "a.msh, line 22: expected points, lines, triangles and quadrilaterals, found the element type 4");
    EXPECT_EQ(message(with("10 30 40", "10 30 41")),
              "a.msh, line 23: element 8 names node 41, which is not there");
    EXPECT_EQ(message(with("2.2 0 8", "3.0 0 8")),
              "a.msh, line 2: expected version 2.2 or 4.1 of the format, found 3");
    EXPECT_EQ(message(with("$Nodes\n4", "$Nodes\n5")),
              "a.msh, line 16: expected an integer, found \"$EndNodes\"");
    EXPECT_EQ(message(with("40 0 1 0", "30 0 1 0")), "a.msh, line 15: node 30 stands twice");
    for (std::size_t length = 0; length + 2 < std::string(GMSH_22).size(); ++length)
        EXPECT_NE(message(std::string(GMSH_22).substr(0, length)), "none") << length;
}

// One quadrilateral of second order, its centre the first of the points, with a code on its third corner.
constexpr const char* SECOND_ORDER_NODES = R"(5 1 1 0
1 0 0 0
2 2 0 0
3 2 2 0
4 0 2 0
6 1 0 0
7 2 1 0
8 1 2 0
9 0 1 0
)";
constexpr const char* SECOND_ORDER_DATA = R"($NodeData
1
"IDX"
0
3
0
1
9
5 9
1 0
2 0
3 1
4 0
6 0
7 0
8 0
9 0
$EndNodeData
)";
const std::string SECOND_ORDER_22 =
    "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n9\n" + std::string(SECOND_ORDER_NODES) +
    "$EndNodes\n$Elements\n1\n1 10 2 0 1 1 2 3 4 6 7 8 9 5\n$EndElements\n" + SECOND_ORDER_DATA;
const std::string SECOND_ORDER_41 =
    "$MeshFormat\n4.1 0 8\n$EndMeshFormat\n$Nodes\n1 9 1 9\n2 1 0 9\n5\n1\n2\n3\n4\n6\n7\n8\n9\n"
    "1 1 0\n0 0 0\n2 0 0\n2 2 0\n0 2 0\n1 0 0\n2 1 0\n1 2 0\n0 1 0\n"
    "$EndNodes\n$Elements\n1 1 1 1\n2 1 10 1\n1 1 2 3 4 6 7 8 9 5\n$EndElements\n" +
    std::string(SECOND_ORDER_DATA);
constexpr const char* SECOND_ORDER_VTU = R"(<VTKFile type="UnstructuredGrid"><UnstructuredGrid>
<Piece NumberOfPoints="9" NumberOfCells="1">
<Points><DataArray type="Float64" NumberOfComponents="3" format="ascii">
1 1 0  0 0 0  2 0 0  2 2 0  0 2 0  1 0 0  2 1 0  1 2 0  0 1 0</DataArray></Points>
<Cells><DataArray type="Int64" Name="connectivity" format="ascii">1 2 3 4 5 6 7 8 0</DataArray>
<DataArray type="Int64" Name="offsets" format="ascii">9</DataArray>
<DataArray type="UInt8" Name="types" format="ascii">28</DataArray></Cells>
<PointData><DataArray type="Int32" Name="IDX" format="ascii">9 0 0 1 0 0 0 0 0</DataArray></PointData>
</Piece></UnstructuredGrid></VTKFile>
)";

std::vector<CellMesh> second_order_cells() {
    return {read_gmsh(SECOND_ORDER_22, "2.msh"), read_gmsh(SECOND_ORDER_41, "4.msh"),
            read_vtu(SECOND_ORDER_VTU, "a.vtu")};
}

TEST(SecondOrder, CentresOfQuadrilateralsBecomeNoNodes) {
    for (const CellMesh& cells : second_order_cells()) {
        SCOPED_TRACE(cells.file);
        const FromCells read = mesh_of(cells, LayoutKind::displacement);
        EXPECT_EQ(read.centres, 1U);
        EXPECT_EQ(read.midsides, 0U);
        ASSERT_EQ(read.mesh.nodes.size(), 8U);
        for (const Node& node : read.mesh.nodes) {
            EXPECT_FALSE(node.x == 1.0F && node.y == 1.0F);
            EXPECT_EQ(node.codes[0], node.x == 2.0F && node.y == 2.0F ? 1 : 0) << node.number.value;
        }
        const ElementWords& w = read.mesh.elements.front().words;
        const auto point = [&](Number number) { return read.mesh.point(read.mesh.node_place(number)); };
        EXPECT_EQ(point(w.corner_3.value).x + point(w.corner_3.value).y, 4.0);
        EXPECT_EQ(point(w.midside_5.value).x, 1.0);  // between the corners at (0, 0) and (2, 0)
        EXPECT_EQ(point(w.midside_5.value).y, 0.0);
        EXPECT_EQ(point(w.midside_8.value).y, 1.0);  // between (0, 2) and (0, 0)
    }
}

TEST(SecondOrder, NodesKeepTheirNumbersWhereTheFileHasThem) {
    std::vector<Number> numbers;
    for (const Node& node : mesh_of(read_gmsh(SECOND_ORDER_22, "2.msh"), LayoutKind::coupled).mesh.nodes)
        numbers.push_back(node.number.value);
    EXPECT_EQ(numbers, (std::vector<Number>{1, 2, 3, 4, 6, 7, 8, 9}));
}

TEST(SecondOrder, MidsideNodesGoWhereTheKindHasNone) {
    for (const CellMesh& cells : second_order_cells()) {
        SCOPED_TRACE(cells.file);
        const FromCells read = mesh_of(cells, LayoutKind::head);
        EXPECT_EQ(read.centres, 1U);
        EXPECT_EQ(read.midsides, 4U);
        EXPECT_EQ(read.mesh.nodes.size(), 4U);
        EXPECT_EQ(read.mesh.elements.front().words.midside_5.value, 0);
    }
}

TEST(SecondOrder, NodeThatAnotherElementHasStays) {
    CellMesh cells = read_gmsh(SECOND_ORDER_22, "2.msh");
    const std::int32_t from_centre[]{0, 2, 3};  // a triangle to the corners at (2, 0) and (2, 2)
    cells.add_cell(Shape2D::triangle, from_centre);
    cells.cell_tags.push_back(2);
    cells.group_of.push_back(-1);
    EXPECT_EQ(mesh_of(cells, LayoutKind::displacement).centres, 0U);
    EXPECT_EQ(mesh_of(cells, LayoutKind::displacement).mesh.nodes.size(), 9U);
}

TEST(SecondOrder, PointsThatNoCellNamesStay) {
    CellMesh cells = read_vtu(SECOND_ORDER_VTU, "a.vtu");
    cells.points.insert(cells.points.end(), {9.0F, 9.0F, 0.0F});
    cells.point_data.clear();
    EXPECT_EQ(mesh_of(cells, LayoutKind::displacement).mesh.nodes.size(), 9U);
}

// Elements with midside nodes on some sides only are cells without them; the arrays tell.
TEST(SecondOrder, SingleMidsideNodesOfAMeshGoWithAKindWithoutThem) {
    Sample sample;
    sample.nodes({{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0.5, 0}}).solid({1, 2, 3, 4});
    sample.last().words.midside_5 = NodeNumber(5);
    const CellMesh cells = cells_of(sample.mesh());
    EXPECT_EQ(mesh_of(cells, LayoutKind::coupled).mesh.nodes.size(), 5U);
    const FromCells head = mesh_of(cells, LayoutKind::head);
    EXPECT_EQ(head.mesh.nodes.size(), 4U);
    EXPECT_EQ(head.midsides, 1U);
}

TEST(CellMesh, GivesEveryClassAndMaterialAGroupOfItsOwn) {
    const MeshLists mesh = Sample()
                               .nodes({{0, 0}, {1, 0}, {1, 1}, {0, 1}})
                               .solid({1, 2, 3, 4}, 7)
                               .joint({1, 2, 2, 1}, 7)
                               .beam(1, 2, 7)
                               .truss(2, 3, 7)
                               .solid({1, 2, 3}, -4)
                               .mesh();
    const CellMesh cells = cells_of(mesh);
    std::vector<std::pair<int, std::int32_t>> tags;
    for (const CellGroup& group : cells.groups) {
        EXPECT_GT(group.tag, 0);
        EXPECT_EQ(std::count(tags.begin(), tags.end(), std::pair(group.dimension, group.tag)), 0);
        tags.emplace_back(group.dimension, group.tag);
    }
    EXPECT_EQ(cells.groups.size(), 5U);
    EXPECT_EQ(cells.groups[1].name, "material 7");
    EXPECT_EQ(cells.groups[1].tag, 7);
    EXPECT_EQ(cells.groups[2].name, "joint 7");
    EXPECT_EQ(cells.groups[3].name, "beam 7");
    EXPECT_EQ(cells.groups[4].name, "truss 7");
}

// Midside nodes behind their corners' sides, as both formats number them.
TEST(CellMesh, MidsideNodesMakeQuadraticCells) {
    Sample sample;
    sample.nodes({{1, 1}, {0, 1}, {0, 0}, {1, 0}, {0.5, 1}, {0, 0.5}, {0.5, 0}, {1, 0.5}})
        .solid({1, 2, 3, 4});
    sample.last().words.midside_5 = NodeNumber(5);
    sample.last().words.midside_6 = NodeNumber(6);
    sample.last().words.midside_7 = NodeNumber(7);
    sample.last().words.midside_8 = NodeNumber(8);
    const MeshLists mesh = sample.mesh();
    CellMesh cells = cells_of(mesh);
    ASSERT_EQ(cells.shapes[0], Shape2D::quad8);
    EXPECT_EQ(cells.nodes, (std::vector<std::int32_t>{0, 1, 2, 3, 4, 5, 6, 7}));
    cells.cell_data.clear();  // the cells alone tell them as well
    const MeshLists back = mesh_of(cells, std::nullopt).mesh;
    EXPECT_EQ(back.elements[0].words.midside_5.value, 5);
    EXPECT_EQ(back.elements[0].words.midside_8.value, 8);
}

TEST(CellMesh, CornerThatIsNoNodeCannotBeCarriedOver) {
    const MeshLists mesh = Sample().nodes({{0, 0}, {1, 0}, {1, 1}}).solid({1, 2, 9}).mesh();
    EXPECT_THROW(cells_of(mesh), Failure);
}

}  // namespace
}  // namespace brelan::tool
