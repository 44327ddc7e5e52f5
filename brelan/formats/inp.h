// CalculiX's .inp, which programs of its dialect read as well.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "analysis/stages.h"
#include "formats/property_table.h"

namespace brelan::tool {

// What stands for the joints, which the dialect does not have.
enum class JointForm {
    refused,  // nothing: a mesh that has joints cannot be written
    tied,     // equations: the two nodes of a pair move together
    springs,  // two springs for a pair, across and along the joint
};

struct JointChoice {
    JointForm form = JointForm::refused;
    double across = 0.0, along = 0.0;  // stiffness for an area, as kN/m3
};

// "tie" or "spring:KN,KS". Throws Failure.
JointChoice joint_choice(const std::string& text);

enum class PlaneForm { strain, axisymmetric };

struct InpOptions {
    PlaneForm form = PlaneForm::strain;
    JointChoice joints;
    double gravity = 9.81;  // downwards; 0 for none
    PropertyTable materials;
};

// Writes the mesh, its supports, materials and one step for each number at which elements come or go. Whole
// or not at all. `remark` is told what the file cannot carry. Throws Failure for what would come out wrong.
void write_inp(const MeshLists& mesh, const Stages& stages, const InpOptions& options,
               const std::filesystem::path& path, const std::function<void(const std::string&)>& remark);

}  // namespace brelan::tool
