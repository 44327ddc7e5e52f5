// The records of a mesh file, to the column, and how they are read back.
#include "mesh/mesh_records.h"

#include "support/state.h"

namespace brelan::test {
namespace {

using Lines = std::vector<std::string>;

class MeshRecords : public ChannelTest {
protected:
    // The one line, or the lines, that a call writes.
    template <class Write>
    Lines lines(std::int32_t edition, Write write) const {
        const Edition kind(edition);
        Channel& mesh = state.channels.open(7, "mesh.Mes", OpenStatus::work);
        write(mesh);
        mesh.rewind();
        return rest_of(mesh);
    }
    Lines node_line(std::int32_t edition) const {
        return lines(edition, [](Channel& mesh) {
            write_node_record(state.settings.kind(), mesh,
                              {NodeNumber(11), {1, 0, -1, 0, 2}, 8.0F, -0.5F, 12.5F, 0.025F});
        });
    }
    Lines element_line(std::int32_t edition, std::int8_t type) const {
        return lines(edition, [&](Channel& mesh) {
            ElementRecord e;
            e.number = ElementNumber(21);
            e.words = words_of({11, 12, 13, 14}, 5, {51, 52, 53, 54});
            e.fluid = 1;
            e.integration_r = e.integration_s = 2;
            e.real_attribute = -1.0F;
            e.thickness = 1.0F;
            e.density = -1.8F;
            e.attribute = -7;
            write_element_record(state.settings.kind(), mesh, type, e);
        });
    }

    // A channel that holds the text, at its start.
    Channel& holding(std::string_view text) const {
        directory.write("in.Mes", text);
        return state.channels.open(5, "in.Mes", OpenStatus::old);
    }
    NodeRecord node(std::int32_t edition, std::string_view text, std::int32_t field_count) const {
        const Edition kind(edition);
        return read_node_record(state.settings.kind(), holding(text), field_count);
    }
    ElementRecord element(std::int32_t edition, std::int8_t type, std::string_view text) const {
        const Edition kind(edition);
        return read_element_record(state.settings.kind(), holding(text), type);
    }
};

void expect_words(const ElementWords& words, const std::vector<std::int32_t>& expected) {
    EXPECT_EQ((std::vector<std::int32_t>{words.corner_1.value, words.corner_2.value, words.corner_3.value,
                                         words.corner_4.value, words.midside_5.value, words.midside_6.value,
                                         words.midside_7.value, words.midside_8.value, words.material.value}),
              expected);
}

// --- nodes as written --------------------------------------------------------------------------------------

TEST_F(MeshRecords, NodeOfTheCoupledKindHasFiveCodesAndTheConstants) {
    EXPECT_EQ(node_line(COUPLED),
              (Lines{"     11    1    0   -1    0    2    1    1  0.800000E+01 -0.500000E+00 "}));
}

TEST_F(MeshRecords, NodeOfTheDisplacementKindHasThreeCodesAndTheConstants) {
    EXPECT_EQ(node_line(DISPLACEMENT),
              (Lines{"     11    1    0   -1    1    1  0.800000E+01 -0.500000E+00 "}));
}

TEST_F(MeshRecords, NodeOfTheTemperatureAndHeadKindsHasTwoCodesAndFourReals) {
    const Lines line{"     11    1    0  0.800000E+01 -0.500000E+00  0.125000E+02  0.250000E-01 "};
    EXPECT_EQ(node_line(TEMPERATURE), line);
    EXPECT_EQ(node_line(HEAD), line);
}

TEST_F(MeshRecords, EditionsOfAKindShareItsRecord) {
    for (const std::int32_t edition : {2, 3, 4, 11, 12})
        EXPECT_EQ(node_line(edition), node_line(COUPLED)) << edition;
    EXPECT_EQ(node_line(6), node_line(TEMPERATURE));
    EXPECT_EQ(node_line(10), node_line(HEAD));
    for (const std::int32_t edition : {1, 7, 8, 0, 13, -4})
        EXPECT_EQ(node_line(edition), node_line(DISPLACEMENT)) << edition;
}

// --- elements as written -----------------------------------------------------------------------------------

TEST_F(MeshRecords, ContinuumElementOfTheCoupledKind) {
    EXPECT_EQ(element_line(COUPLED, ELEMENT_CONTINUUM),
              (Lines{"     21     11     12     13     14     51     52     53     54    5    0    1    2    "
                     "2-0.1000E+01"}));
}

TEST_F(MeshRecords, ContinuumElementOfTheDisplacementKind) {
    EXPECT_EQ(
        element_line(DISPLACEMENT, ELEMENT_CONTINUUM),
        (Lines{
            "     21     11     12     13     14     51     52     53     54    5 0.1000E+01-0.1800E+01"}));
}

TEST_F(MeshRecords, ContinuumElementOfTheTemperatureAndHeadKinds) {
    const Lines line{"     21     11     12     13     14     5   -7"};
    EXPECT_EQ(element_line(TEMPERATURE, ELEMENT_CONTINUUM), line);
    EXPECT_EQ(element_line(HEAD, ELEMENT_CONTINUUM), line);
}

TEST_F(MeshRecords, BeamAndTrussOfEachKindHaveFiveFields) {
    for (const std::int32_t edition : {COUPLED, TEMPERATURE, HEAD, DISPLACEMENT})
        for (const std::int8_t type : {ELEMENT_BEAM, ELEMENT_TRUSS})
            EXPECT_EQ(element_line(edition, type), (Lines{"     21     11     12      5      1"})) << edition;
}

// --- heads and headings ------------------------------------------------------------------------------------

TEST_F(MeshRecords, HeadHasNameTextAndCounts) {
    EXPECT_EQ(lines(DISPLACEMENT,
                    [](Channel& mesh) {
                        write_mesh_head(mesh, "..\\out.Mes", {99990, 2, 1, 0});
                    }),
              (Lines{"..\\out.Mes" + std::string(116, ' '), "  NUMNP   NCONT   NBEAM   NTRUS ",
                     " 99990       2       1       0"}));
}

TEST_F(MeshRecords, CountsOfTheWorkingCopyAreFreeField) {
    EXPECT_EQ(lines(DISPLACEMENT,
                    [](Channel& mesh) {
                        write_mesh_counts(mesh, {5, 2, 1, 0});
                    }),
              (Lines{"           5           2           1           0"}));
}

TEST_F(MeshRecords, NodeHeadingNamesTheFieldsOfTheKind) {
    const auto heading = [&](std::int32_t edition) {
        return lines(edition, [](Channel& mesh) { write_node_heading(state.settings.kind(), mesh); });
    };
    EXPECT_EQ(heading(COUPLED),
              (Lines{"    NODAL COORDINATES ",
                     "    NODE  ISX  ISY  IFX  IFY  IRZ  IEX  IEY       XC            YC "}));
    EXPECT_EQ(heading(DISPLACEMENT),
              (Lines{"    NODAL COORDINATES ", "    NODE  IDX  IDY  IDT  IEX  IEY       XC            YC "}));
    EXPECT_EQ(heading(TEMPERATURE),
              (Lines{"    NODAL COORDINATES ",
                     "    NODE   ID  IDF          XC            YC             T            CF "}));
    EXPECT_EQ(heading(HEAD),
              (Lines{"    NODAL COORDINATES ",
                     "    NODE   ID  IDF          XC            YC             H            CF "}));
}

TEST_F(MeshRecords, ContinuumHeadingNamesTheFieldsOfTheKind) {
    const auto heading = [&](std::int32_t edition) {
        return lines(edition, [](Channel& mesh) {
            write_section_heading(state.settings.kind(), mesh, ELEMENT_CONTINUUM);
        });
    };
    EXPECT_EQ(heading(COUPLED), (Lines{"    CONTINUUM ELEMENT INDEX ",
                                       "    NEL     I1     I2     I3     I4     M5     M6     M7     M8 MATC"
                                       "    KS   KF INTR INTS   TBJWL"}));
    EXPECT_EQ(heading(DISPLACEMENT), (Lines{"    CONTINUUM ELEMENT INDEX ",
                                            "    NEL     I1     I2     I3     I4     M5     M6     M7     M8"
                                            "  MATC   THIC        DEN"}));
    const Lines scalar{"    CONTINUUM ELEMENT INDEX ", "    NEL     I1     I2     I3     I4 MATNO  IDH"};
    EXPECT_EQ(heading(TEMPERATURE), scalar);
    EXPECT_EQ(heading(HEAD), scalar);
}

TEST_F(MeshRecords, BeamAndTrussHeadingsAreTheSameInAllKinds) {
    for (const std::int32_t edition : {COUPLED, TEMPERATURE, HEAD, DISPLACEMENT}) {
        EXPECT_EQ(
            lines(edition,
                  [](Channel& mesh) { write_section_heading(state.settings.kind(), mesh, ELEMENT_BEAM); }),
            (Lines{"    BEAM ELEMENT ", "    NEL      I      J   MSEC  NODEK "}));
        EXPECT_EQ(
            lines(edition,
                  [](Channel& mesh) { write_section_heading(state.settings.kind(), mesh, ELEMENT_TRUSS); }),
            (Lines{"    TRUSS ELEMENT ", "    NEL      I      J   MATT  NODEK "}));
    }
}

// --- nodes as read -----------------------------------------------------------------------------------------

TEST_F(MeshRecords, NodeWithTheConstantsPassesOverThem) {
    const NodeRecord coupled = node(COUPLED, "11 1 0 -1 0 2 7 8 3.5 -4.5\n", 10);
    EXPECT_EQ(coupled.number.value, 11);
    EXPECT_EQ(coupled.codes, (NodeCodes{1, 0, -1, 0, 2}));
    EXPECT_EQ(coupled.x, 3.5F);
    EXPECT_EQ(coupled.y, -4.5F);
    const NodeRecord displacement = node(DISPLACEMENT, "11 1 0 -1 7 8 3.5 -4.5\n", 8);
    EXPECT_EQ(displacement.codes, (NodeCodes{1, 0, -1, 0, 0}));
    EXPECT_EQ(displacement.x, 3.5F);
    EXPECT_EQ(displacement.y, -4.5F);
}

TEST_F(MeshRecords, NodeWithoutTheConstantsIsKnownByItsCount) {
    const NodeRecord coupled = node(COUPLED, "11 1 0 -1 0 2 3.5 -4.5\n", 8);
    EXPECT_EQ(coupled.codes, (NodeCodes{1, 0, -1, 0, 2}));
    EXPECT_EQ(coupled.x, 3.5F);
    EXPECT_EQ(coupled.y, -4.5F);
    const NodeRecord displacement = node(DISPLACEMENT, "11 1 0 -1 3.5 -4.5\n", 6);
    EXPECT_EQ(displacement.codes, (NodeCodes{1, 0, -1, 0, 0}));
    EXPECT_EQ(displacement.x, 3.5F);
    EXPECT_EQ(displacement.y, -4.5F);
}

TEST_F(MeshRecords, AnyOtherCountMeansThatTheConstantsAreThere) {
    for (const std::int32_t field_count : {0, 6, 7, 9, 12})
        EXPECT_EQ(node(COUPLED, "11 1 0 -1 0 2 7 8 3.5 -4.5\n", field_count).x, 3.5F) << field_count;
    for (const std::int32_t field_count : {0, 5, 7, 10})
        EXPECT_EQ(node(DISPLACEMENT, "11 1 0 -1 7 8 3.5 -4.5\n", field_count).x, 3.5F) << field_count;
}

TEST_F(MeshRecords, NodeOfTheTemperatureAndHeadKindsHasNoConstants) {
    for (const std::int32_t edition : {TEMPERATURE, HEAD}) {
        for (const std::int32_t field_count : {0, 6, 7, 8}) {
            const NodeRecord read = node(edition, "11 1 -1 3.5 -4.5 12.5 0.25\n", field_count);
            EXPECT_EQ(read.codes, (NodeCodes{1, -1, 0, 0, 0}));
            EXPECT_EQ(read.x, 3.5F);
            EXPECT_EQ(read.y, -4.5F);
            EXPECT_EQ(read.head, 12.5F);
            EXPECT_EQ(read.coefficient, 0.25F);
        }
    }
}

TEST_F(MeshRecords, WhatFollowsTheLastFieldOnItsLineIsIgnored) {
    const Edition kind(DISPLACEMENT);
    Channel& mesh = holding("11 1 0 1 1 1 3.5 -4.5 and a remark\n12 1 0 1 1 1 5.5 6.5\n");
    EXPECT_EQ(read_node_record(state.settings.kind(), mesh, 8).number.value, 11);
    EXPECT_EQ(read_node_record(state.settings.kind(), mesh, 8).number.value, 12);
}

TEST_F(MeshRecords, RecordMayTakeSeveralLines) {
    const Edition kind(DISPLACEMENT);
    Channel& mesh = holding("11 1 0\n\n1 1 1 3.5\n-4.5\n12");
    const NodeRecord read = read_node_record(state.settings.kind(), mesh, 8);
    EXPECT_EQ(read.codes, (NodeCodes{1, 0, 1, 0, 0}));
    EXPECT_EQ(read.y, -4.5F);
    EXPECT_EQ(mesh.peek_line(), "12");
}

// --- elements as read --------------------------------------------------------------------------------------

TEST_F(MeshRecords, WrittenElementIsReadBackWithItsTouchingFields) {
    const ElementRecord coupled =
        element(COUPLED, ELEMENT_CONTINUUM, element_line(COUPLED, ELEMENT_CONTINUUM)[0]);
    expect_words(coupled.words, {11, 12, 13, 14, 51, 52, 53, 54, 5});
    EXPECT_EQ(coupled.skeleton, 0);
    EXPECT_EQ(coupled.fluid, 1);
    EXPECT_EQ(coupled.integration_r, 2);
    EXPECT_EQ(coupled.integration_s, 2);
    EXPECT_EQ(coupled.real_attribute, -1.0F);
    const ElementRecord displacement =
        element(DISPLACEMENT, ELEMENT_CONTINUUM, element_line(DISPLACEMENT, ELEMENT_CONTINUUM)[0]);
    expect_words(displacement.words, {11, 12, 13, 14, 51, 52, 53, 54, 5});
    EXPECT_EQ(displacement.thickness, 1.0F);
    EXPECT_EQ(displacement.density, -1.8F);
}

TEST_F(MeshRecords, ElementOfTheTemperatureAndHeadKindsHasNoMidsides) {
    for (const std::int32_t edition : {TEMPERATURE, HEAD}) {
        const ElementRecord read = element(edition, ELEMENT_CONTINUUM, "21 11 12 13 0 5 -105\n");
        EXPECT_EQ(read.number.value, 21);
        expect_words(read.words, {11, 12, 13, 0, 0, 0, 0, 0, 5});
        EXPECT_EQ(read.attribute, -105);
    }
}

TEST_F(MeshRecords, BeamAndTrussAreHeldAsQuadrilaterals) {
    for (const std::int8_t type : {ELEMENT_BEAM, ELEMENT_TRUSS}) {
        const ElementRecord read = element(COUPLED, type, "31 11 12 7 99\n");
        EXPECT_EQ(read.number.value, 31);
        expect_words(read.words, {11, 12, 12, 11, 0, 0, 0, 0, 7});
    }
}

TEST_F(MeshRecords, BeamAndTrussHaveTheAttributesOfTheirKind) {
    for (const std::int8_t type : {ELEMENT_BEAM, ELEMENT_TRUSS}) {
        const ElementRecord coupled = element(COUPLED, type, "31 11 12 7\n");
        EXPECT_EQ(coupled.skeleton, 0);
        EXPECT_EQ(coupled.fluid, 1);
        EXPECT_EQ(coupled.integration_r, 2);
        EXPECT_EQ(coupled.integration_s, 2);
        EXPECT_EQ(coupled.real_attribute, 0.0F);
        const ElementRecord displacement = element(DISPLACEMENT, type, "31 11 12 7\n");
        EXPECT_EQ(displacement.thickness, 1.0F);
        EXPECT_EQ(displacement.density, 1.0F);
        EXPECT_EQ(element(HEAD, type, "31 11 12 7\n").attribute, 0);
        EXPECT_EQ(element(TEMPERATURE, type, "31 11 12 7\n").attribute, 0);
    }
}

// --- counts ------------------------------------------------------------------------------------------------

TEST_F(MeshRecords, CountsMayReachTheSizeOfTheTables) {
    const MeshCounts counts = read_mesh_counts(holding("99990 99990 0 99990\n"));
    EXPECT_EQ(counts.nodes, 99990);
    EXPECT_EQ(counts.of(ELEMENT_CONTINUUM), 99990);
    EXPECT_EQ(counts.of(ELEMENT_BEAM), 0);
    EXPECT_EQ(counts.of(ELEMENT_TRUSS), 99990);
}

TEST_F(MeshRecords, CountOutsideTheTablesIsAMessage) {
    EXPECT_EQ(failure_of([&] { read_mesh_counts(holding("99991 1 0 0\n")); }),
              "in.Mes, line 1: expected a NUMNP of 0 to 99990, found 99991");
    EXPECT_EQ(failure_of([&] { read_mesh_counts(holding("-1 1 0 0\n")); }),
              "in.Mes, line 1: expected a NUMNP of 0 to 99990, found -1");
    for (const char* line : {"1 -7 0 0\n", "1 0 -7 0\n", "1 0 0 -7\n"})
        EXPECT_EQ(failure_of([&] { read_mesh_counts(holding(line)); }),
                  "in.Mes, line 1: expected element counts of 0 to 99990, found -7");
}

}  // namespace
}  // namespace brelan::test
