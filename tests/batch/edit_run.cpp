#include "batch/edit_run.h"

#include <gtest/gtest.h>

#include <array>
#include <iterator>

#include "support/mesh.h"

namespace brelan::test {

namespace {

// What a run adds to a project.
const Lines NEW_FILES{
    "project/out.Mes",           "project/work/BRELAN.TMP",       "project/work/FILEA.TMP",
    "project/work/MeshFile.Mes", "project/work/T7.TMP",           "project/work/TEMPO.TMP",
    "project/work/TT55.TMP",     "C/Vork/Qx/Qxdata/BRELAN2D.DAT", "C/Vork/Qx/Qxdata/FnPlot2D.dat"};

void set_up(const Project& project, const Lines& mesh, const Lines& cards) {
    project.write("mesh.Mes", text_of(mesh));
    project.deck(commented_deck(Lines{"1 0", "mesh.Mes", "out.Mes"} + cards));
}

// That the run has added the files that it should and no other, and changed none.
void expect_files(const Project& project, const Snapshot& before, const char* source, int line) {
    for (const std::string& change : project.changed_since(before))
        ADD_FAILURE_AT(source, line) << change;
    Snapshot left = project.snapshot();
    for (const auto& [path, content] : before)
        left.erase(path);
    for (const std::string& path : NEW_FILES)
        if (left.erase(path) == 0)
            ADD_FAILURE_AT(source, line) << path << " is not there";
    for (const auto& [path, content] : left)
        ADD_FAILURE_AT(source, line) << path << " should not be there";
}

Lines whole_result(const Lines& result) {
    return Lines{padded("..\\out.Mes"), "  NUMNP   NCONT   NBEAM   NTRUS "} + result;
}

// What has one form in the kinds that share a layout.
Lines site(const std::string& codes, const std::string& values, const std::string& quadrilateral,
           const std::string& triangle) {
    const auto node = [&](const char* number, const char* place) {
        return std::string(number) + " " + codes + " " + place + values;
    };
    return {"site",
            " NUMNP NCONT NBEAM NTRUS",
            "6 2 1 1",
            " NODES",
            " NODE CODES XC YC",
            node("11", "0 0"),
            node("12", "2.0 0.0"),
            node("13", "2 1"),
            node("14", ".0,1"),
            node("15", "1E0 0"),
            node("16", "3 5D-1"),
            " ELEMENTS",
            " NEL I1 I2 I3 I4",
            "21 11 12 13 14 " + quadrilateral,
            "22,12,16,13,0," + triangle,
            " BEAMS",
            " NEL I J",
            "31 11 12 7 1",
            " TRUSSES",
            " NEL I J",
            "41 14 13 8 2"};
}

const std::array<KindText, 4>& texts() {
    static const std::array<KindText, 4> all{{
        {"    NODE  ISX  ISY  IFX  IFY  IRZ  IEX  IEY       XC            YC ",
         "    NEL     I1     I2     I3     I4     M5     M6     M7     M8 MATC    KS   KF INTR INTS   TBJWL",
         "    1    0    0    1    2    1    1", "    2    3    4    5    6    1    1", "",
         "     51     52     53     54    5    0    1    2    2 0.5000E+00",
         "     61     62     63      0    6    1    0    3    4-0.1000E+01",
         "     61     62     63      0    6    1    0    3    4-0.1000E+01", "2 3 4 5 6",
         "    2     3     4     5     6 ",
         site("1 0 0 1 2 0 0", "", "51 52 53 54 5 0 1 2 2 0.5", "61 62 63 0 6 1 0 3 4 -1")},
        {"    NODE   ID  IDF          XC            YC             T            CF ",
         "    NEL     I1     I2     I3     I4 MATNO  IDH", "    1    0", "    2    3",
         " 0.125000E+02  0.250000E+00 ", "     5    3", "     6 -105", "     6    5", "2 3", "    2     3 ",
         site("1 0", " 12.5 0.25", "5 3", "6 -105")},
        {"    NODE   ID  IDF          XC            YC             H            CF ",
         "    NEL     I1     I2     I3     I4 MATNO  IDH", "    1    0", "    2    3",
         " 0.125000E+02  0.250000E+00 ", "     5    3", "     6 -105", "     6    5", "2 3", "    2     3 ",
         site("1 0", " 12.5 0.25", "5 3", "6 -105")},
        {"    NODE  IDX  IDY  IDT  IEX  IEY       XC            YC ",
         "    NEL     I1     I2     I3     I4     M5     M6     M7     M8  MATC   THIC        DEN",
         "    1    0    1    1    1", "    2    3    4    1    1", "",
         "     51     52     53     54    5 0.1000E+01 0.1800E+01",
         "     61     62     63      0    6 0.5000E+00-0.1000E+01",
         "     61     62     63      0    6 0.5000E+00-0.1000E+01", "2 3 4", "    2     3     4 ",
         site("1 0 1 0 0", "", "51 52 53 54 5 1 1.8", "61 62 63 0 6 0.5 -1")},
    }};
    return all;
}

}  // namespace

Lines operator+(const Lines& first, const Lines& second) {
    Lines joined = first;
    joined.insert(joined.end(), second.begin(), second.end());
    return joined;
}

Lines in_full(const Lines& lines) {
    Lines full;
    for (const std::string& line : lines)
        full.push_back(padded(line));
    return full;
}

void expect_edit(Kind kind, const Lines& mesh, const Lines& cards, const EditFiles& expected,
                 const char* source, int line) {
    const Project project(kind);
    set_up(project, mesh, cards);
    const Snapshot before = project.snapshot();
    expect_finished(project.run(), source, line);
    expect_files(project, before, source, line);

    const Lines result = whole_result(expected.result);
    const Lines names{"mesh.Mes", "out.Mes"};
    expect_file(project, "out.Mes", result, source, line);
    expect_work_file(project, "MeshFile.Mes", in_full(result), source, line);
    expect_work_file(project, "FILEA.TMP", expected.stripped, source, line);
    expect_work_file(
        project, "BRELAN.TMP",
        Lines{"    1     0 ", padded("..\\mesh.Mes"), padded("..\\out.Mes")} + expected.normalised, source,
        line);
    expect_work_file(project, "TT55.TMP", in_full(Lines{"1 0"} + names + cards), source, line);
    expect_work_file(project, "T7.TMP", {}, source, line);
    expect_work_file(project, "TEMPO.TMP", {}, source, line);
    expect_data_file(project, "BRELAN2D.DAT", {"           0"}, source, line);
    expect_data_file(project, "FnPlot2D.dat", {padded("..\\out.Mes")}, source, line);
}

void expect_result(Kind kind, const Lines& mesh, const Lines& cards, const Lines& result, const char* source,
                   int line) {
    const Project project(kind);
    set_up(project, mesh, cards);
    expect_finished(project.run(), source, line);
    expect_file(project, "out.Mes", whole_result(result), source, line);
    expect_work_file(project, "MeshFile.Mes", in_full(whole_result(result)), source, line);
}

void expect_edit_fails(Kind kind, const Lines& mesh, const Lines& cards, const Lines& fragments,
                       const char* source, int line) {
    const Project project(kind);
    set_up(project, mesh, cards);
    project.write("out.Mes", "a result of yesterday\n");
    const Snapshot before = project.snapshot();
    expect_failed(project.run(), fragments, source, line);
    for (const std::string& change : project.changed_since(before))
        ADD_FAILURE_AT(source, line) << change;
}

const KindText& text_of_kind(Kind kind) {
    return texts()[static_cast<std::size_t>(kind)];
}

Lines stripped_site(Kind kind) {
    const KindText& text = text_of_kind(kind);
    Lines lines{padded("site"), padded(" NUMNP NCONT NBEAM NTRUS"),
                "           6           2           1           1"};
    for (std::size_t i = 3; i < 13; ++i)
        lines.push_back(padded(text.source[i]));
    return lines + Lines{"     21     11     12     13     14" + text.quadrilateral,
                         "     22     12     16     13      0" + text.triangle,
                         padded(" BEAMS"),
                         padded(" NEL I J"),
                         "     31     11     12      7      1",
                         padded(" TRUSSES"),
                         padded(" NEL I J"),
                         "     41     14     13      8      1"};
}

std::string node_line(Kind kind, std::string_view number, const std::string& codes, std::string_view x,
                      std::string_view y) {
    const auto column = [](std::string_view text, std::size_t width) {
        return std::string(width - text.size(), ' ') + std::string(text);
    };
    return " " + column(number, 6) + codes + " " + column(x, 13) + " " + column(y, 13) + " " +
           text_of_kind(kind).values;
}

Lines node_headings(Kind kind) {
    return {"    NODAL COORDINATES ", text_of_kind(kind).node_heading};
}

Lines continuum_headings(Kind kind) {
    return {"    CONTINUUM ELEMENT INDEX ", text_of_kind(kind).continuum_heading};
}

}  // namespace brelan::test
