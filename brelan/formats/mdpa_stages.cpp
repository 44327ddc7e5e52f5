// The project files. What the mesh tells is filled in: parts, constraints of the codes, parts that come and
// go. The rest are placeholders for a person to replace.
#include <fmt/core.h>

#include <utility>

#include "cli/json.h"
#include "cli/output_file.h"
#include "formats/mdpa.h"

namespace brelan::tool {

namespace {

constexpr std::string_view ROOT = "PorousDomain", LIBRARY = "KratosMultiphysics.GeoMechanicsApplication";
constexpr double GRAVITY = 9.81, WATER_WEIGHT = 9.81;  // m/s2, kN/m3

std::string whole_name(std::string_view part) {
    return fmt::format("{}.{}", ROOT, part);
}

Json process(std::string_view module, std::string_view name, Json parameters) {
    return {{"python_module", module},
            {"kratos_module", LIBRARY},
            {"process_name", name},
            {"Parameters", std::move(parameters)}};
}

Json vector_process(Json::Object parameters) {
    parameters.emplace_back("table", Json::array({0, 0, 0}));
    return process("apply_vector_constraint_table_process", "ApplyVectorConstraintTableProcess",
                   std::move(parameters));
}

// Components that are held at 0, as x, y, z.
Json held(std::string_view part, std::string_view variable, const Json& components) {
    return vector_process({{"model_part_name", part},
                           {"variable_name", variable},
                           {"active", components},
                           {"is_fixed", components},
                           {"value", Json::array({0.0, 0.0, 0.0})}});
}

// A value that is held; `further` members stand in front of the table's number.
Json scalar_process(std::string_view part, std::string_view variable, Json::Object further) {
    Json::Object parameters{{"model_part_name", part}, {"variable_name", variable}, {"is_fixed", true}};
    parameters.insert(parameters.end(), further.begin(), further.end());
    parameters.emplace_back("table", 0);
    return process("apply_scalar_constraint_table_process", "ApplyScalarConstraintTableProcess",
                   std::move(parameters));
}

// The value of the field among a part's codes; 0 where it is a part of another field.
std::int32_t value_of(const MdpaPart& part, std::string_view field) {
    for (std::size_t k = 0; k < part.codes.size(); ++k)
        if (part.codes[k] == field)
            return part.values[k];
    return 0;
}

// What a base mesh gives the sides that are fixed in the temperature kind.
constexpr std::int32_t FIXED_SIDE = -100;

class Project {
public:
    Project(const MdpaModel& model, const std::filesystem::path& path)
        : model_(model), mesh_(path.stem().string()) {}

    std::string materials_file() const { return mesh_ + "_materials.json"; }
    std::string stage_file(std::size_t stage) const { return fmt::format("{}_stage_{}.json", mesh_, stage); }

    Json stage(std::size_t number, std::int32_t step) const {
        return {{"problem_data",
                 {{"problem_name", fmt::format("{}_stage_{}", mesh_, number)},
                  {"start_time", static_cast<double>(number - 1)},
                  {"end_time", static_cast<double>(number)},
                  {"echo_level", 1},
                  {"parallel_type", "OpenMP"},
                  {"number_of_threads", 1}}},
                {"solver_settings", solver(number)},
                {"processes",
                 {{"constraints_process_list", constraints(step)}, {"loads_process_list", loads()}}}};
    }

    Json materials() const {
        Json all = Json::Array();
        for (const MdpaPart& part : model_.parts)
            if (part.purpose == PartPurpose::material && !part.elements.empty())
                all.push_back({{"model_part_name", whole_name(part.name)},
                               {"properties_id", part.properties},
                               {"Material",
                                {{"constitutive_law", {{"name", law(part)}}},
                                 {"Variables", variables(part)},
                                 {"Tables", Json::Object()}}}});
        return {{"properties", std::move(all)}};
    }

private:
    bool has_stresses() const { return has_midside_nodes(model_.kind); }

    template <class Wanted>
    Json names_of(const Wanted& wanted) const {
        Json names = Json::Array();
        for (const MdpaPart& part : model_.parts)
            if (wanted(part))
                names.push_back(part.name);
        return names;
    }

    Json solver(std::size_t stage) const {
        const char* const type = has_stresses()                           ? "U_Pw"
                                 : model_.kind == LayoutKind::temperature ? "T"
                                                                          : "Pw";
        const auto has_elements = [](const MdpaPart& part) {
            return part.purpose == PartPurpose::material && !part.elements.empty();
        };
        Json::Object settings{
            {"solver_type", type},
            {"model_part_name", ROOT},
            {"domain_size", 2},
            {"start_time", static_cast<double>(stage - 1)},
            {"model_import_settings", {{"input_type", "mdpa"}, {"input_filename", mesh_}}},
            {"material_import_settings", {{"materials_filename", materials_file()}}},
            {"time_stepping", {{"time_step", 1.0}, {"max_delta_time_factor", 1000}}},
            {"solution_type", model_.kind == LayoutKind::head ? "Steady-State" : "Quasi-Static"},
            {"scheme_type", "Backward_Euler"},
            {"strategy_type", "newton_raphson"},
            {"convergence_criterion", has_stresses() ? "displacement_criterion" : "residual_criterion"},
            {"min_iterations", 2},
            {"max_iterations", 30},
            {"number_cycles", 100},
            {"linear_solver_settings", {{"solver_type", "LinearSolversApplication.sparse_lu"}}}};
        if (has_stresses()) {
            settings.emplace_back("reset_displacements", stage == 1);
            settings.emplace_back("rotation_dofs", model_.has(ElementClass::beam));
        }
        settings.emplace_back("problem_domain_sub_model_part_list", names_of(has_elements));
        settings.emplace_back("processes_sub_model_part_list", names_of([](const MdpaPart& part) {
                                  return part.purpose == PartPurpose::code ||
                                         part.purpose == PartPurpose::activity;
                              }));
        settings.emplace_back("body_domain_sub_model_part_list", names_of([&](const MdpaPart& part) {
                                  return has_elements(part) && part.of == ElementClass::solid;
                              }));
        return settings;
    }

    Json constraints(std::int32_t step) const {
        Json all = Json::Array();
        for (const MdpaPart& part : model_.parts)
            if (part.purpose == PartPurpose::code)
                add_constraint(all, part);
        if (model_.kind == LayoutKind::displacement)  // without water everywhere
            all.push_back(
                scalar_process(ROOT, "WATER_PRESSURE", {{"fluid_pressure_type", "Uniform"}, {"value", 0.0}}));
        for (const MdpaPart& part : model_.parts)
            if (part.purpose == PartPurpose::activity && !part.elements.empty())
                all.push_back(process("apply_excavation_process", "ApplyExcavationProcess",
                                      {{"model_part_name", whole_name(part.name)},
                                       {"deactivate_soil_part", !is_there(part.pair, step)}}));
        return all;
    }

    void add_constraint(Json& all, const MdpaPart& part) const {
        const std::string name = whole_name(part.name);
        const auto holds = [&](std::string_view one, std::string_view other) {
            return value_of(part, one) != 0 || value_of(part, other) != 0;
        };
        if (has_stresses()) {
            if (holds("IDX", "ISX"))
                all.push_back(held(name, "DISPLACEMENT", Json::array({true, false, false})));
            else if (holds("IDY", "ISY"))
                all.push_back(held(name, "DISPLACEMENT", Json::array({false, true, false})));
            else if (holds("IDT", "IRZ") && model_.has(ElementClass::beam))
                all.push_back(held(name, "ROTATION", Json::array({false, false, true})));
            return;
        }
        const std::int32_t given = value_of(part, "ID");
        if (part.codes.size() < 2 || (given != 1 && given != FIXED_SIDE))
            return;
        if (model_.kind == LayoutKind::temperature)
            all.push_back(scalar_process(name, "TEMPERATURE", {{"value", part.given}}));
        else
            all.push_back(scalar_process(name, "WATER_PRESSURE",
                                         {{"fluid_pressure_type", "Hydrostatic"},
                                          {"gravity_direction", 1},
                                          {"reference_coordinate", part.given},
                                          {"specific_weight", WATER_WEIGHT}}));
    }

    Json loads() const {
        Json all = Json::Array();
        if (model_.kind != LayoutKind::temperature)
            all.push_back(vector_process({{"model_part_name", ROOT},
                                          {"variable_name", "VOLUME_ACCELERATION"},
                                          {"active", Json::array({false, true, false})},
                                          {"value", Json::array({0.0, -GRAVITY, 0.0})}}));
        return all;
    }

    std::string_view law(const MdpaPart& part) const {
        switch (part.of) {
            case ElementClass::joint:
                return "GeoIncrementalLinearElasticInterfaceLaw";
            case ElementClass::beam:
                return "BeamConstitutiveLaw";
            case ElementClass::truss:
                return "TrussConstitutiveLaw";
            case ElementClass::solid:
                break;
        }
        return model_.kind == LayoutKind::temperature ? "GeoThermalDispersion2DLaw"
                                                      : "GeoLinearElasticPlaneStrain2DLaw";
    }

    // Placeholders in kN, m, t, s; the same for all of a class, so that nobody takes them for the ground's
    // own.
    Json variables(const MdpaPart& part) const {
        switch (part.of) {
            case ElementClass::joint:
                return {{"INTERFACE_NORMAL_STIFFNESS", 1.0E6}, {"INTERFACE_SHEAR_STIFFNESS", 1.0E5}};
            case ElementClass::beam:
                return {{"YOUNG_MODULUS", 2.0E8},
                        {"POISSON_RATIO", 0.0},
                        {"DENSITY", 0.0},
                        {"CROSS_AREA", 0.02},
                        {"I33", 5.0E-4}};
            case ElementClass::truss:
                return {{"YOUNG_MODULUS", 2.0E8},
                        {"DENSITY", 0.0},
                        {"CROSS_AREA", 0.01},
                        {"TRUSS_PRESTRESS_PK2", 0.0}};
            case ElementClass::solid:
                break;
        }
        if (model_.kind == LayoutKind::temperature)
            return {{"DENSITY_SOLID", 2.65},
                    {"DENSITY_WATER", 1.0},
                    {"POROSITY", 0.3},
                    {"SPECIFIC_HEAT_CAPACITY_SOLID", 0.8},
                    {"SPECIFIC_HEAT_CAPACITY_WATER", 4.2},
                    {"THERMAL_CONDUCTIVITY_SOLID_XX", 2.0E-3},
                    {"THERMAL_CONDUCTIVITY_SOLID_YY", 2.0E-3},
                    {"THERMAL_CONDUCTIVITY_SOLID_XY", 0.0},
                    {"THERMAL_CONDUCTIVITY_WATER", 6.0E-4}};
        return {{"IGNORE_UNDRAINED", model_.kind == LayoutKind::displacement},
                {"YOUNG_MODULUS", 3.0E4},
                {"POISSON_RATIO", 0.3},
                {"DENSITY_SOLID", 2.65},
                {"DENSITY_WATER", 1.0},
                {"POROSITY", 0.3},
                {"BULK_MODULUS_SOLID", 1.0E9},
                {"BULK_MODULUS_FLUID", 2.0E6},
                {"PERMEABILITY_XX", 1.0E-12},
                {"PERMEABILITY_YY", 1.0E-12},
                {"PERMEABILITY_XY", 0.0},
                {"DYNAMIC_VISCOSITY", 1.0E-6},
                {"BIOT_COEFFICIENT", 1.0},
                {"RETENTION_LAW", "SaturatedLaw"},
                {"SATURATED_SATURATION", 1.0}};
    }

    const MdpaModel& model_;
    const std::string mesh_;  // its file's name without the ending
};

}  // namespace

void write_mdpa_stages(const MdpaModel& model, const std::filesystem::path& path) {
    const Project project(model, path);
    const auto beside = [&](const std::string& name) { return path.parent_path() / name; };
    write_file(beside(project.materials_file()), project.materials().text());
    for (std::size_t k = 0; k < model.steps.size(); ++k)
        write_file(beside(project.stage_file(k + 1)), project.stage(k + 1, model.steps[k]).text());
}

}  // namespace brelan::tool
