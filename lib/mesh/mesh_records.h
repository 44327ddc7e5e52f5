// The records of a mesh file: one node or element as text, by kind.
#pragma once

#include <cstdint>

#include "mesh/edition.h"
#include "mesh/tables.h"
#include "text/channels.h"

namespace brelan {

// The counts line of a mesh file.
struct MeshCounts {
    std::int32_t nodes = 0, continuum_elements = 0, beams = 0, trusses = 0;  // NUMNP, NCONT, NBEAM, NTRUS

    // The count of the section of an element type (ELEMENT_CONTINUUM, ELEMENT_BEAM, ELEMENT_TRUSS).
    std::int32_t& of(std::int8_t type) {
        return type == ELEMENT_CONTINUUM ? continuum_elements : type == ELEMENT_BEAM ? beams : trusses;
    }
    std::int32_t of(std::int8_t type) const { return MeshCounts(*this).of(type); }
};

struct NodeRecord {
    NodeNumber number;                      // NODE
    NodeCodes codes{};                      // ID
    float x = 0.0F, y = 0.0F;               // XC, YC
    float head = 0.0F, coefficient = 0.0F;  // H, CF: temperature and head kinds
};

struct ElementAttributes {
    std::int32_t skeleton = 0, fluid = 0, integration_r = 0,
                 integration_s = 0;          // KS, KF, INTR, INTS: coupled kind
    float real_attribute = 0.0F;             // TBJWL
    float thickness = 0.0F, density = 0.0F;  // THIC, DEN: displacement kind
    std::int32_t attribute = 0;              // IDH: temperature and head kinds
};

struct ElementRecord : ElementAttributes {
    ElementNumber number;  // NEL
    ElementWords words;
};

// The files that list continuum elements; each has columns of its own.
enum class ElementForm {
    result,     // mesh files that an edit or a combination writes
    base,       // the mesh file of a base mesh
    raw,        // "Index.dat"
    rewritten,  // the mesh file with group materials
};

// What the stripper found out about a mesh file, for the reader of its working copy.
struct StrippedMesh {
    std::int32_t field_count = 0;  // values on the first node record
    // Heading lines in front of the sections' records, by type from ELEMENT_CONTINUUM: two of their own, and
    // two more for each section before them that lost all its records.
    std::int32_t heading_lines[3] = {2, 2, 2};

    std::int32_t headings_of(std::int8_t type) const { return heading_lines[type - ELEMENT_CONTINUUM]; }
};

// --- reading: free-field, one record each; what follows the last field on its line is ignored ----
// -----------------

// Reads the counts. Ends the run at a count below 0 or above the tables' size.
MeshCounts read_mesh_counts(Channel& mesh_file);

// field_count tells whether the file has IEX and IEY, which are passed over.
NodeRecord read_node_record(LayoutKind kind, Channel& mesh_file, std::int32_t field_count);

// Reads an element of a type; beams and trusses become I1 = I4 = I, I2 = I3 = J with the attributes that a
// two-node element has in memory.
ElementRecord read_element_record(LayoutKind kind, Channel& mesh_file, std::int8_t type);

// A beam or truss between two nodes, with the attributes that a two-node element has in memory.
ElementRecord two_node_element(NodeNumber from, NodeNumber to, MaterialNumber material);

// Ends the run where the record that was read last names a node or element outside the tables.
void require_numbers(const Channel& mesh_file, const NodeRecord& node);
void require_numbers(const Channel& mesh_file, const ElementRecord& element);

// Reads the number of an element alone.
ElementNumber read_element_number(LayoutKind kind, Channel& mesh_file, std::int8_t type);

// --- writing -------------------------------------------------------------------------------------

// The counts as the stripper hands them on, free-field.
void write_mesh_counts(Channel& mesh_file, const MeshCounts& counts);

// Name line, heading and counts of a mesh file.
void write_mesh_head(Channel& mesh_file, std::string_view name, const MeshCounts& counts);
void write_node_heading(LayoutKind kind, Channel& mesh_file);
void write_section_heading(LayoutKind kind, Channel& mesh_file, std::int8_t type);
void write_node_record(LayoutKind kind, Channel& mesh_file, const NodeRecord& node);

// A line of "Coord.dat": its codes are 0, as they follow with the base mesh.
void write_raw_node(LayoutKind kind, Channel& file, NodeNumber number, float x, float y);

// Writes the record with its fields as they are.
void write_element_record(LayoutKind kind, Channel& mesh_file, std::int8_t type, const ElementRecord& element,
                          ElementForm form = ElementForm::result);

// --- between records and tables ------------------------------------------------------------------

// Stores an element's words and attributes at a number. Kinds without midside nodes leave M5 to M8 as they
// were.
void store_element(Mesh& mesh, ElementNumber number, std::int8_t type, const ElementRecord& element);
ElementRecord load_element(const Mesh& mesh, ElementNumber number);

// Copies the attributes of the kind from one element to another.
void copy_attributes(Mesh& mesh, ElementNumber from, ElementNumber to);

// The element as a result file shows it: a negative IDH as its absolute value less 100.
ElementRecord load_element_for_writing(const Mesh& mesh, ElementNumber number);

// A node of the working set at a number. Kinds without H and CF leave those as they were.
void store_node(Mesh& mesh, NodeNumber number, const NodeRecord& node);
NodeRecord load_node(const Mesh& mesh, NodeNumber number);

}  // namespace brelan
