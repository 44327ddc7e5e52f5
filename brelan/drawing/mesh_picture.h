// A mesh as a picture: materials filled, joints, beams and trusses told apart, supports, numbers, and the
// outlines of a deck over it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/soundness.h"
#include "drawing/scene.h"
#include "drawing/step_marks.h"
#include "model/deck.h"

namespace brelan::tool {

struct PictureOptions {
    double width = 1000.0;         // of the page
    std::optional<Bounds> window;  // part of the mesh; all of it when there is none
    bool node_numbers = false, element_numbers = false;
    bool codes = true;  // supports
    bool lines = true;  // sides of elements
    bool legend = true;
    bool axes = true;
    std::string title;                  // "": the file's name
    std::vector<DeckShape> shapes;      // over the mesh
    const Soundness* faults = nullptr;  // to be marked
    std::optional<StepMarks> step;      // none: the mesh is drawn as it is
};

struct Picture {
    Scene scene;
    std::vector<std::string> remarks;  // what was left out for lack of room
};

// The title that is given, else the name of the file.
std::string title_of(const MeshLists& mesh, const PictureOptions& options);

Picture picture_of(const MeshLists& mesh, const PictureOptions& options);

}  // namespace brelan::tool
