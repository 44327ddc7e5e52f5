// Whole runs of a mode 1 deck over a small mesh, and every file that such a run leaves.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/project.h"

namespace brelan::test {

using Lines = std::vector<std::string>;

// The lists one behind the other.
Lines operator+(const Lines& first, const Lines& second);

// Each line filled up to 126 columns.
Lines in_full(const Lines& lines);

// What is to be seen of a run that turns mesh.Mes into out.Mes.
struct EditFiles {
    Lines normalised;  // "BRELAN.TMP" from Card 3.2 on; mode and names stand in front of it in every run
    Lines stripped;    // "FILEA.TMP"
    Lines result;      // "..\out.Mes" from the counts on; name and header stand in front of them
};

// Runs the cards from Card 3.2 on over the mesh and compares every file of the project: what the run writes,
// line by line, that it writes nothing else, and that it changes nothing that stood there.
void expect_edit(Kind kind, const Lines& mesh, const Lines& cards, const EditFiles& expected,
                 const char* source = __builtin_FILE(), int line = __builtin_LINE());

// The same run where only the result is of interest.
void expect_result(Kind kind, const Lines& mesh, const Lines& cards, const Lines& result,
                   const char* source = __builtin_FILE(), int line = __builtin_LINE());

// A run over the mesh that must fail with a message that holds the fragments.
void expect_edit_fails(Kind kind, const Lines& mesh, const Lines& cards, const Lines& fragments,
                       const char* source = __builtin_FILE(), int line = __builtin_LINE());

// --- one mesh in the four kinds ----------------------------------------------------------------------------
//
//   14-----41------13           nodes 11 to 16, 15 without an element
//    |              | \         quadrilateral 21 (11, 12, 13, 14) of material 5
//    |      21      | 22 16     triangle 22 (12, 16, 13) of material 6
//    |              | /         beam 31 (11, 12) of material 7
//   11---15---31---12           truss 41 (14, 13) of material 8
//
// What differs from kind to kind is text: the codes of a node, what stands behind its coordinates, what
// stands behind the corners of an element.
struct KindText {
    std::string node_heading, continuum_heading;
    std::string codes;                    // of each node as written, with IEX and IEY where the kind has them
    std::string new_codes;                // the same with the codes of IDNEW
    std::string values;                   // behind the coordinates: H or T, and CF
    std::string quadrilateral, triangle;  // behind the corners, as the source has them
    std::string triangle_written;         // as the result shows them: a negative IDH is changed
    std::string IDNEW, IDNEW_normalised;
    Lines source;  // the mesh as a person would type it
};
const KindText& text_of_kind(Kind kind);

// The working copy of the source.
Lines stripped_site(Kind kind);

// A node record of the result: number, codes and coordinates as they are shown, and the kind's values.
std::string node_line(Kind kind, std::string_view number, const std::string& codes, std::string_view x,
                      std::string_view y);

// Headings of the sections.
Lines node_headings(Kind kind);
Lines continuum_headings(Kind kind);
inline const Lines BEAM_HEADINGS{"    BEAM ELEMENT ", "    NEL      I      J   MSEC  NODEK "};
inline const Lines TRUSS_HEADINGS{"    TRUSS ELEMENT ", "    NEL      I      J   MATT  NODEK "};
inline const Lines CLOSING{"     0", "     0"};

}  // namespace brelan::test
