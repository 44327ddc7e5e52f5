// The working copy of a mesh: comments and deleted elements gone, records in their columns.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "batch/edit_run.h"
#include "deck/strip_mesh.h"
#include "support/state.h"

namespace brelan::test {
namespace {

const Lines STRIPPED_IDENTITY{"1 1", "0", "0 0 0 0", "1 1"};

// A mesh of the displacement kind, whole and as its working copy shows it.
const Lines HEAD{"a mesh", "counts"};
const Lines NODE_HEADINGS{"nodes", "NODE"};
const Lines NODES{"1 1 0 0 1 1 0 0", "2 0 1 0 1 1 1 0", "3 0 0 1 1 1 0 1"};
const Lines ELEMENT_HEADINGS{"elements", "NEL"};
const Lines TRIANGLES{"1 1 2 3 0 0 0 0 0 1 1 2", "2 3 2 1 0 0 0 0 0 2 1 2"};
const Lines BEAM_LINES{"beams", "NEL I J"};
const Lines BEAMS{"3 1 2 7 1", "4 2 3 7 1"};
const Lines TRUSS_LINES{"trusses", "NEL I J"};
const Lines TRUSSES{"5 3 1 8 1"};

const Lines TRIANGLES_WRITTEN{
    "      1      1      2      3      0      0      0      0      0    1 0.1000E+01 0.2000E+01",
    "      2      3      2      1      0      0      0      0      0    2 0.1000E+01 0.2000E+01"};
const Lines BEAMS_WRITTEN{"      3      1      2      7      1", "      4      2      3      7      1"};
const Lines TRUSSES_WRITTEN{"      5      3      1      8      1"};

const Lines WHOLE = HEAD + Lines{"3 2 2 1"} + NODE_HEADINGS + NODES + ELEMENT_HEADINGS + TRIANGLES +
                    BEAM_LINES + BEAMS + TRUSS_LINES + TRUSSES;
const std::string WHOLE_COUNTS = "           3           2           2           1";
const Lines WHOLE_COPY = in_full(HEAD) + Lines{WHOLE_COUNTS} +
                         in_full(NODE_HEADINGS + NODES + ELEMENT_HEADINGS) + TRIANGLES_WRITTEN +
                         in_full(BEAM_LINES) + BEAMS_WRITTEN + in_full(TRUSS_LINES) + TRUSSES_WRITTEN;

// Runs a deck that changes nothing over the text of a mesh; compares the working copy, and gives back the
// lines of the result from the counts on.
Lines strip(const std::string& mesh, const Lines& copy, const char* source = __builtin_FILE(),
            int line = __builtin_LINE()) {
    const Project project(Kind::displacement);
    project.write("mesh.Mes", mesh);
    project.deck(text_of(Lines{"1 0", "mesh.Mes", "out.Mes"} + STRIPPED_IDENTITY));
    expect_finished(project.run(), source, line);
    expect_work_file(project, "FILEA.TMP", copy, source, line);
    EXPECT_FALSE(project.exists_work("TT123.TMP"));
    EXPECT_EQ(project.read("mesh.Mes"), mesh);
    Lines result = lines_of(project.read("out.Mes"));
    result.erase(result.begin(), result.begin() + std::min<std::ptrdiff_t>(2, std::ssize(result)));
    return result;
}
Lines strip(const Lines& mesh, const Lines& copy, const char* source = __builtin_FILE(),
            int line = __builtin_LINE()) {
    return strip(text_of(mesh), copy, source, line);
}

// What stands behind the counts, two headings and three nodes of a result.
Lines behind_nodes(const Lines& result) {
    return {result.begin() + 6, result.end()};
}

void expect_strip_fails(const Lines& mesh, const Lines& fragments, const char* source = __builtin_FILE(),
                        int line = __builtin_LINE()) {
    expect_edit_fails(Kind::displacement, mesh, STRIPPED_IDENTITY, fragments, source, line);
}

// --- comments ----------------------------------------------------------------------------------------------

TEST(Stripper, CopiesAMeshWithoutComments) {
    const Lines result = strip(WHOLE, WHOLE_COPY);
    EXPECT_EQ(result.at(0), "     3       2       2       1");
}

TEST(Stripper, TakesCommentsOutWhereverTheyStand) {
    Lines commented{"* in front of the first line"};
    for (const std::string& line : WHOLE)
        commented = commented + Lines{line, "* behind " + line, "*"};
    EXPECT_EQ(strip(commented, WHOLE_COPY), strip(WHOLE, WHOLE_COPY));
}

TEST(Stripper, TakesACommentBetweenHeaderAndCounts) {
    Lines commented = WHOLE;
    commented.insert(commented.begin() + 2, "* NUMNP NCONT NBEAM NTRUS");
    strip(commented, WHOLE_COPY);
}

TEST(Stripper, TakesCommentsBetweenSections) {
    strip(HEAD + Lines{"3 2 2 1"} + NODE_HEADINGS + NODES + Lines{"* elements"} + ELEMENT_HEADINGS +
              TRIANGLES + Lines{"* 99 beams"} + BEAM_LINES + BEAMS + Lines{"* trusses", "* and more"} +
              TRUSS_LINES + TRUSSES,
          WHOLE_COPY);
}

TEST(Stripper, TakesNoCommentBehindABlank) {
    Lines mesh = WHOLE;
    mesh.insert(mesh.begin() + 5, " * no comment");
    expect_strip_fails(mesh, {"mesh.Mes, line 6: ", "\"*\""});
}

TEST(Stripper, NamesTheLineOfTheSourceBehindComments) {
    Lines mesh = WHOLE;
    mesh[6] = "2 0 one 0 1 1 1 0";
    mesh.insert(mesh.begin() + 1, 3, "* comment");
    expect_strip_fails(mesh, {"mesh.Mes, line 10: ", "\"one\""});
}

// --- deleted elements --------------------------------------------------------------------------------------

TEST(Stripper, LeavesOutElementsWithANegativeNumber) {
    const Lines mesh = HEAD + Lines{"3 2 2 2"} + NODE_HEADINGS + NODES + ELEMENT_HEADINGS +
                       Lines{TRIANGLES[0], "-2 3 2 1 0 0 0 0 0 2 1 2"} + BEAM_LINES +
                       Lines{"-3 1 2 7 1", BEAMS[1]} + TRUSS_LINES + Lines{TRUSSES[0], "-6 1 2 8 1"};
    const Lines copy = in_full(HEAD) + Lines{"           3           1           1           1"} +
                       in_full(NODE_HEADINGS + NODES + ELEMENT_HEADINGS) + Lines{TRIANGLES_WRITTEN[0]} +
                       in_full(BEAM_LINES) + Lines{BEAMS_WRITTEN[1]} + in_full(TRUSS_LINES) + TRUSSES_WRITTEN;
    const Lines result = strip(mesh, copy);
    EXPECT_EQ(result.at(0), "     3       1       1       1");
    EXPECT_EQ(behind_nodes(result),
              (continuum_headings(Kind::displacement) + Lines{TRIANGLES_WRITTEN[0]} + BEAM_HEADINGS +
               Lines{"      2      2      3      7      1"} + TRUSS_HEADINGS +
               Lines{"      3      3      1      8      1"} + CLOSING));
}

TEST(Stripper, KeepsTheHeadingsOfASectionThatLostAllItsElements) {
    const Lines deleted{"-1 1 2 3 0 0 0 0 0 1 1 2", "-2 3 2 1 0 0 0 0 0 2 1 2"};
    const Lines mesh = HEAD + Lines{"3 2 2 1"} + NODE_HEADINGS + NODES + ELEMENT_HEADINGS + deleted +
                       BEAM_LINES + BEAMS + TRUSS_LINES + TRUSSES;
    const Lines copy = in_full(HEAD) + Lines{"           3           0           2           1"} +
                       in_full(NODE_HEADINGS + NODES + ELEMENT_HEADINGS + BEAM_LINES) + BEAMS_WRITTEN +
                       in_full(TRUSS_LINES) + TRUSSES_WRITTEN;
    // The reader passes over the headings that have no records.
    const Lines result = strip(mesh, copy);
    EXPECT_EQ(result.at(0), "     3       0       2       1");
    EXPECT_EQ(
        behind_nodes(result),
        (BEAM_HEADINGS + Lines{"      1      1      2      7      1", "      2      2      3      7      1"} +
         TRUSS_HEADINGS + Lines{"      3      3      1      8      1"} + CLOSING));
}

TEST(Stripper, PassesOverTheHeadingsOfTwoEmptiedSections) {
    const Lines mesh = HEAD + Lines{"3 1 1 1"} + NODE_HEADINGS + NODES + ELEMENT_HEADINGS +
                       Lines{"-1 1 2 3 0 0 0 0 0 1 1 2"} + BEAM_LINES + Lines{"-3 1 2 7 1"} + TRUSS_LINES +
                       TRUSSES;
    const Lines copy = in_full(HEAD) + Lines{"           3           0           0           1"} +
                       in_full(NODE_HEADINGS + NODES + ELEMENT_HEADINGS + BEAM_LINES + TRUSS_LINES) +
                       TRUSSES_WRITTEN;
    const Lines result = strip(mesh, copy);
    EXPECT_EQ(behind_nodes(result),
              (TRUSS_HEADINGS + Lines{"      1      3      1      8      1"} + CLOSING));
}

TEST(Stripper, PassesOverTheHeadingsOfAnEmptiedSectionInTheMiddleAndAtTheEnd) {
    const Lines front = NODE_HEADINGS + NODES + ELEMENT_HEADINGS;
    const Lines middle = HEAD + Lines{"3 2 1 1"} + front + TRIANGLES + BEAM_LINES + Lines{"-3 1 2 7 1"} +
                         TRUSS_LINES + TRUSSES;
    const Lines middle_copy = in_full(HEAD) + Lines{"           3           2           0           1"} +
                              in_full(front) + TRIANGLES_WRITTEN + in_full(BEAM_LINES + TRUSS_LINES) +
                              TRUSSES_WRITTEN;
    EXPECT_EQ(strip(middle, middle_copy).at(0), "     3       2       0       1");
    const Lines end = HEAD + Lines{"3 2 0 1"} + front + TRIANGLES + TRUSS_LINES + Lines{"-5 3 1 8 1"};
    const Lines end_copy = in_full(HEAD) + Lines{"           3           2           0           0"} +
                           in_full(front) + TRIANGLES_WRITTEN + in_full(TRUSS_LINES);
    EXPECT_EQ(strip(end, end_copy).at(0), "     3       2       0       0");
}

TEST(Stripper, HeadingsOfEmptiedSectionsMayHoldNumbers) {
    // A heading that looks like a beam is still a heading.
    const Lines mesh = HEAD + Lines{"3 1 1 0"} + NODE_HEADINGS + NODES + Lines{"8 1 2 9 1", "9 1 2 9 1"} +
                       Lines{"-1 1 2 3 0 0 0 0 0 1 1 2"} + Lines{"7 1 2 9 1", "6 1 2 9 1"} + Lines{BEAMS[0]};
    const Lines copy = in_full(HEAD) + Lines{"           3           0           1           0"} +
                       in_full(NODE_HEADINGS + NODES) +
                       in_full({"8 1 2 9 1", "9 1 2 9 1", "7 1 2 9 1", "6 1 2 9 1"}) +
                       Lines{BEAMS_WRITTEN[0]};
    const Lines result = strip(mesh, copy);
    EXPECT_EQ(behind_nodes(result), (BEAM_HEADINGS + Lines{"      1      1      2      7      1"} + CLOSING));
}

TEST(Stripper, DoesNotTakeANegativeNodeForDeleted) {
    Lines mesh = WHOLE;
    mesh[6] = "-2 0 1 0 1 1 1 0";
    expect_strip_fails(mesh, {"mesh.Mes, line 7: ", "1 to 99990", "found -2"});
}

TEST(Stripper, RefusesAnElementOfNumberZero) {
    Lines mesh = WHOLE;
    mesh[10] = "0 1 2 3 0 0 0 0 0 1 1 2";
    expect_strip_fails(mesh, {"mesh.Mes, line 11: ", "1 to 99990", "found 0"});
}

TEST(Stripper, HasNoHeadingsForASectionThatTheSourceDoesNotHave) {
    strip(HEAD + Lines{"3 0 2 0"} + NODE_HEADINGS + NODES + BEAM_LINES + BEAMS,
          in_full(HEAD) + Lines{"           3           0           2           0"} +
              in_full(NODE_HEADINGS + NODES + BEAM_LINES) + BEAMS_WRITTEN);
}

// --- the form of the source --------------------------------------------------------------------------------

TEST(Stripper, ReadsRecordsOverSeveralLines) {
    const Lines mesh = HEAD + Lines{"3 2", "2,1"} + NODE_HEADINGS +
                       Lines{"1 1 0 0 1 1 0 0", "2 0 1 0", "1 1 1", "0", "3 0 0 1 1 1 0 1"} +
                       ELEMENT_HEADINGS + Lines{"1 1 2 3", "", "0 0 0 0 0 1 1 2", TRIANGLES[1]} + BEAM_LINES +
                       Lines{"3 1", "2 7 1", BEAMS[1]} + TRUSS_LINES + Lines{"5", "3", "1", "8", "1"};
    // Node records stand as text; elements come out in one line each.
    const Lines copy =
        in_full(HEAD) + Lines{WHOLE_COUNTS} +
        in_full(NODE_HEADINGS + Lines{"1 1 0 0 1 1 0 0", "2 0 1 0", "1 1 1", "0", "3 0 0 1 1 1 0 1"} +
                ELEMENT_HEADINGS) +
        TRIANGLES_WRITTEN + in_full(BEAM_LINES) + BEAMS_WRITTEN + in_full(TRUSS_LINES) + TRUSSES_WRITTEN;
    EXPECT_EQ(strip(mesh, copy), strip(WHOLE, WHOLE_COPY));
}

TEST(Stripper, ReadsRecordsAroundACommentInTheirMiddle) {
    Lines mesh = WHOLE;
    mesh[10] = "1 1 2 3 0";
    mesh.insert(mesh.begin() + 11, {"* the second half", "0 0 0 0 1 1 2"});
    EXPECT_EQ(strip(mesh, WHOLE_COPY), strip(WHOLE, WHOLE_COPY));
}

TEST(Stripper, TakesCommasTabsAndExponents) {
    Lines mesh = WHOLE;
    mesh[10] = "1,1\t2,3,0 4*0 1 1D0 .2E+1 behind the last field";
    EXPECT_EQ(strip(mesh, WHOLE_COPY), strip(WHOLE, WHOLE_COPY));
}

TEST(Stripper, TakesEitherLineEndAndALastLineWithoutOne) {
    std::string text = text_of(WHOLE);
    EXPECT_EQ(strip(text.substr(0, text.size() - 1), WHOLE_COPY), strip(WHOLE, WHOLE_COPY));
    std::string other;
    for (const char c : text)
        other += c == '\n' ? "\r\n" : std::string(1, c);
    EXPECT_EQ(strip(other, WHOLE_COPY), strip(WHOLE, WHOLE_COPY));
}

TEST(Stripper, SeesNothingBehindColumn126) {
    Lines mesh = WHOLE;
    mesh[0] = padded("a mesh") + "with a long name";
    mesh[5] = padded(mesh[5]) + "99 99 99";
    mesh[10] = padded(mesh[10]) + "99 99 99";
    EXPECT_EQ(strip(mesh, WHOLE_COPY), strip(WHOLE, WHOLE_COPY));
    // A value that begins there is not there.
    mesh[18] = padded("5 3 1") + "8 1";
    expect_strip_fails(mesh, {"mesh.Mes, line 20: the file ends here"});
}

TEST(Stripper, WritesNODEKAsOneAndRealsInTheDigitsOfTheLayout) {
    Lines mesh = WHOLE;
    mesh[10] = "1 1 2 3 0 0 0 0 0 1 1.23456789 -2E-20";
    mesh[14] = "3 1 2 7 44";
    Lines copy = WHOLE_COPY;
    copy[10] = "      1      1      2      3      0      0      0      0      0    1 0.1235E+01-0.2000E-19";
    strip(mesh, copy);
}

TEST(Stripper, LeavesNoWorkingFile) {
    const Project project(Kind::displacement);
    project.write("mesh.Mes", text_of(WHOLE));
    project.write_work("TT123.TMP", "left by a run that was broken off\n");
    project.deck(text_of(Lines{"1 0", "mesh.Mes", "out.Mes"} + STRIPPED_IDENTITY));
    expect_finished(project.run());
    EXPECT_FALSE(project.exists_work("TT123.TMP"));
}

// --- the count of fields -----------------------------------------------------------------------------------

TEST(StripperFields, AreCountedAnewForEachFile) {
    const WorkDirectory directory;
    const Edition edition(DISPLACEMENT);
    const auto fields_of = [&](const Lines& mesh) {
        directory.write("in.Mes", text_of(mesh));
        state.channels.open(15, "in.Mes", OpenStatus::old);
        state.channels.open(5, "FILEA.TMP", OpenStatus::work);
        Watch watch;
        return strip_mesh(state.channels, state.settings.kind(), 15, 5, watch).field_count;
    };
    EXPECT_EQ(fields_of(HEAD + Lines{"1 0 0 0"} + NODE_HEADINGS + Lines{"1 1 0 0 1 1 0 0"}), 8);
    EXPECT_EQ(fields_of(HEAD + Lines{"1 0 0 0"} + NODE_HEADINGS + Lines{"1 1 0 0 0 0"}), 6);
    EXPECT_EQ(fields_of(HEAD + Lines{"1 0 0 0"} + NODE_HEADINGS + Lines{"* 1 2", "1,1,,0 0 1 1 0 0 text"}),
              9);
    // The first line counts, not the first record.
    EXPECT_EQ(fields_of(HEAD + Lines{"1 0 0 0"} + NODE_HEADINGS + Lines{"1 1 0", "0 1 1 0 0"}), 3);
    // Without nodes whatever follows is counted.
    EXPECT_EQ(fields_of(HEAD + Lines{"0 0 1 0"} + NODE_HEADINGS + BEAM_LINES + Lines{BEAMS[0]}), 1);
    EXPECT_EQ(fields_of(HEAD + Lines{"0 0 0 0"} + NODE_HEADINGS), 0);
}

TEST(StripperFields, StripperClosesItsSourceAndRewindsTheCopy) {
    const WorkDirectory directory;
    const Edition edition(DISPLACEMENT);
    directory.write("in.Mes", text_of(WHOLE));
    state.channels.open(16, "in.Mes", OpenStatus::old);
    Channel& copy = state.channels.open(6, "FILEB.TMP", OpenStatus::work);
    Watch watch;
    strip_mesh(state.channels, state.settings.kind(), 16, 6, watch);
    EXPECT_FALSE(state.channels.is_open(16));
    EXPECT_EQ(copy.lines_before(), 0);
    EXPECT_EQ(copy.read_line("the name").trimmed(), "a mesh");
    EXPECT_FALSE(state.channels.is_open(123));
}

TEST(Stripper, ByteOrderMarkInFrontOfAMeshIsNamed) {
    const Project project(Kind::displacement);
    for (const std::string start : {"* comment\n", ""}) {
        project.write("mesh.Mes", "\xEF\xBB\xBF" + start + text_of(WHOLE));
        project.deck(text_of(Lines{"1 0", "mesh.Mes", "out.Mes"} + STRIPPED_IDENTITY));
        expect_failed(project.run(), {"..\\mesh.Mes, line 1: ", "byte order mark"});
        EXPECT_EQ(project.read("out.Mes"), "");
    }
}

}  // namespace
}  // namespace brelan::test
