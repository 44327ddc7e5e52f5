// Earth dams for whole runs: the cards, the profile that they stand for, and what makes a mesh of it sound.

#pragma once

#include <array>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "support/project.h"

namespace brelan::test {

struct DamPlace {
    double x = 0.0, y = 0.0;
};

// Cards 5.1 to 5.5.
struct DamInput {
    double HDAM = 20.0, HWATER = 13.0;
    double RUNL = 40.0, WLEFT = 40.0, crest = 16.0, WMID = 16.0, RUNR = 40.0, WRIGHT = 40.0;
    std::vector<double> layers;
    double XLEFT = 25.0, XRIGHT = 25.0;
    std::vector<DamPlace> core, wall;  // four points each, or none
    int ISHELL = 0, NCREST = 0;
    double Hi = 0.0;

    // The deck, a comment in front of each card: card k is line 2k.
    std::string deck() const;

    double crest_left() const { return ISHELL != 0 ? WLEFT : RUNL; }
    double crest_right() const { return ISHELL != 0 ? WLEFT + WMID : RUNL + crest; }
    double toe() const { return WLEFT + WMID + WRIGHT; }
    double depth() const;

    // The outline of dam and ground, and its area.
    std::vector<DamPlace> outline() const;
    double area() const;

    // The mesh that the run leaves in the project.
    std::string mesh_name() const { return ISHELL != 0 ? "Earth_Dam.Mes" : "EarthDam.Mes"; }
};

struct DamNode {
    DamPlace at;
    std::vector<int> codes;
};
struct DamElement {
    std::vector<int> corners;
    int material = 0;
};

// Nodes and continuum elements of a mesh file, by its counts line.
struct DamMesh {
    std::map<int, DamNode> nodes;
    std::map<int, DamElement> elements;

    DamMesh(std::string_view text, Kind kind);

    double area_of(const DamElement& element) const;
    double total_area() const;
    std::map<int, double> zone_areas() const;
};

// What is wrong with a dam's mesh; nothing for one that is sound: the areas add up to the profile's, no
// element is inverted or degenerate, every side is shared by two elements or lies on the profile's outline.
std::vector<std::string> dam_problems(const DamInput& dam, const DamMesh& mesh);

// Puts the package's slope templates of the kind, and its defaults, into the project's data directory.
void install_dam_files(const Project& project, Kind kind);

// Runs a dam in a project of its own that has the package's files.
class DamRun {
public:
    DamRun(const DamInput& dam, Kind kind, std::vector<std::string> arguments = {});

    const Project& project() const { return project_; }
    const RunResult& result() const { return result_; }
    std::string mesh_text() const { return project_.read(dam_.mesh_name()); }
    DamMesh mesh() const { return {mesh_text(), kind_}; }

private:
    DamInput dam_;
    Kind kind_;
    Project project_;
    RunResult result_;
};

}  // namespace brelan::test
