// What a run of a base mesh deck without an edit leaves behind, file by file.
#pragma once

#include <string>
#include <vector>

#include "lib/blocks/listing.h"
#include "support/project.h"

namespace brelan::test {

// The files of a base mesh as listings. The others follow from them: "FILEA.TMP" is the base mesh file in 126
// columns with its element records in the mesh file's columns, "MeshFile.Mes" is "Basic.Tmp" in 126 columns.
struct BaseMeshFiles {
    const char* blocks;    // "Bmesh.Tmp"
    const char* coord;     // "Coord.dat"
    const char* index;     // "Index.dat"
    const char* base;      // "..\Bmesh.dat"
    const char* stripped;  // the counts line of "FILEA.TMP"
    const char* basic;     // "Basic.Tmp"
};

inline std::vector<std::string> in_126_columns(std::vector<std::string> lines) {
    for (std::string& line : lines)
        line = padded(line);
    return lines;
}

// Runs a deck and compares all seven files.
inline void expect_base_mesh_files(Kind kind, const std::vector<std::string>& cards,
                                   const BaseMeshFiles& files) {
    const Project project(kind);
    project.deck(text_of(cards));
    expect_finished(project.run());
    expect_work_file(project, "Bmesh.Tmp", listing(files.blocks));
    expect_work_file(project, "Coord.dat", listing(files.coord));
    expect_work_file(project, "Index.dat", listing(files.index));
    const std::vector<std::string> base = listing(files.base);
    expect_file(project, "Bmesh.dat", base);

    std::vector<std::string> basic = listing(files.basic);
    basic.front() = padded(basic.front());
    expect_work_file(project, "Basic.Tmp", basic);
    expect_work_file(project, "MeshFile.Mes", in_126_columns(basic));

    // Both meshes have five lines in front of the nodes and two behind the elements.
    const auto elements = static_cast<std::ptrdiff_t>(listing(files.index).size());
    std::vector<std::string> stripped = in_126_columns({base.begin(), base.end() - 2 - elements});
    stripped[2] = listing(files.stripped).front();
    stripped.insert(stripped.end(), basic.end() - 2 - elements, basic.end() - 2);
    expect_work_file(project, "FILEA.TMP", stripped);
    expect_data_file(project, "BRELAN2D.DAT", {"           0"});
}

}  // namespace brelan::test
