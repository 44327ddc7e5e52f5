// A picture as a list of things to paint, in the units of the page with y downwards. Painters for SVG, PNG
// and PDF draw the same scene.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "drawing/colors.h"
#include "drawing/mesh_lines.h"

namespace brelan::tool {

struct Stroke {
    Rgb color = INK;
    double width = 1.0;
    std::vector<double> dash = {};  // lengths of strokes and gaps
    double opacity = 1.0;
};

// Lines that are filled (non-zero rule), stroked, or both.
struct Path {
    std::string id;  // for those who edit the SVG; may be empty
    Polylines lines;
    bool closed = false;
    std::optional<Rgb> fill = std::nullopt;
    std::optional<Stroke> stroke = std::nullopt;
    bool clipped = true;  // to the drawing area
};

enum class Anchor { start, middle, end };

struct Label {
    Position at;  // on the base line
    std::string text;
};

// Labels of one look.
struct Labels {
    std::string id;
    std::vector<Label> labels;
    double size = 12.0;
    Anchor anchor = Anchor::start;
    Rgb color = INK;
    bool bold = false;
    bool halo = false;  // a white rim, to be read on any ground
    bool clipped = true;
};

struct Scene {
    double width = 0.0, height = 0.0;
    std::string title;
    Bounds area;  // the drawing area, where clipped things show
    std::vector<std::variant<Path, Labels>> items;
};

// Each writes the file whole or not at all.
void write_svg(const Scene& scene, const std::filesystem::path& path);
void write_pdf(const Scene& scene, const std::filesystem::path& path);
// `scale` pixels for a unit of the page.
void write_png(const Scene& scene, const std::filesystem::path& path, double scale);

// The same in memory.
std::string svg_text(const Scene& scene);
std::string png_bytes(const Scene& scene, double scale);

}  // namespace brelan::tool
