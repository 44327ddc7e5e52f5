// The result mesh of an edit as a file, written section by section, and its copy.
#pragma once

#include <cstdint>

#include "mesh/edit_tables.h"
#include "mesh/tables.h"
#include "text/channels.h"

namespace brelan {

// What the result holds: active nodes (node_in_use) and elements by type (type_in_use), with the ranges of
// their numbers.
struct ResultMesh {
    MeshCounts counts;
    NumberRange<NodeNumber> nodes;
    NumberRange<ElementNumber> elements;
};

void count_nodes(const Mesh& mesh, ResultMesh& result);
void count_elements(const Mesh& mesh, ResultMesh& result);

// The records of the active nodes, in ascending number.
void write_result_nodes(const Mesh& mesh, Channel& mesh_file, const ResultMesh& result);

// The same with one value for every H.
void write_result_nodes(const Mesh& mesh, Channel& mesh_file, const ResultMesh& result, float head);

// Headings and records of one type, in ascending number. A negative IDH is written as its absolute value less
// 100: the solver knows codes of 100 and above by their sign only inside the package.
void write_result_elements(const Mesh& mesh, Channel& mesh_file, const ResultMesh& result, std::int8_t type);

// The two lines that close a file of the edit.
void write_closing_lines(Channel& mesh_file);

// Copies the lines of a mesh file, from its start and 320,000 at most, as 126 columns each. Rewinds the
// source.
void copy_result(Channel& mesh_file, Channel& copy);

}  // namespace brelan
