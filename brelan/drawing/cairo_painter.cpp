#include <cairo-pdf.h>
#include <cairo.h>
#include <fmt/core.h>

#include <cmath>
#include <memory>

#include "cli/exit_status.h"
#include "cli/output_file.h"
#include "drawing/scene.h"

namespace brelan::tool {

namespace {

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
using Context = std::unique_ptr<cairo_t, decltype(&cairo_destroy)>;

cairo_status_t write_bytes(void* file, const unsigned char* data, unsigned int length) {
    auto* const stream = static_cast<std::FILE*>(file);
    return std::fwrite(data, 1, length, stream) == length ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
}

cairo_status_t add_bytes(void* text, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(text)->append(data, data + length);
    return CAIRO_STATUS_SUCCESS;
}

void require(cairo_status_t status, const std::string& name) {
    if (status != CAIRO_STATUS_SUCCESS)
        throw Failure(fmt::format("{}: cannot be written: {}", name, cairo_status_to_string(status)));
}

class Painter {
public:
    Painter(cairo_t* cr, const Scene& scene) : cr_(cr), scene_(scene) {}

    void paint() {
        cairo_set_source_rgb(cr_, 1.0, 1.0, 1.0);
        cairo_paint(cr_);
        cairo_set_line_join(cr_, CAIRO_LINE_JOIN_ROUND);
        cairo_set_line_cap(cr_, CAIRO_LINE_CAP_ROUND);
        for (const auto& item : scene_.items)
            std::visit(
                [this](const auto& it) {
                    cairo_save(cr_);
                    if (it.clipped) {
                        const Bounds& a = scene_.area;
                        cairo_rectangle(cr_, a.low.x, a.low.y, a.width(), a.height());
                        cairo_clip(cr_);
                    }
                    paint_item(it);
                    cairo_restore(cr_);
                },
                item);
    }

private:
    void set_color(Rgb c, double opacity = 1.0) {
        cairo_set_source_rgba(cr_, c.r / 255.0, c.g / 255.0, c.b / 255.0, opacity);
    }

    void paint_item(const Path& path) {
        // One line after the other: a single path of very many takes far longer to stroke.
        constexpr std::size_t MANY = 200;
        const bool one_by_one = !path.fill && path.lines.ends.size() > MANY;
        if (path.stroke) {
            cairo_set_line_width(cr_, path.stroke->width);
            cairo_set_dash(cr_, path.stroke->dash.data(), static_cast<int>(path.stroke->dash.size()), 0.0);
        }
        std::size_t k = 0;
        for (const std::size_t end : path.lines.ends) {
            for (bool first = true; k < end; ++k, first = false) {
                const Position& p = path.lines.points[k];
                first ? cairo_move_to(cr_, p.x, p.y) : cairo_line_to(cr_, p.x, p.y);
            }
            if (path.closed)
                cairo_close_path(cr_);
            if (one_by_one && path.stroke) {
                set_color(path.stroke->color, path.stroke->opacity);
                cairo_stroke(cr_);
            }
        }
        if (path.fill) {
            set_color(*path.fill);
            path.stroke ? cairo_fill_preserve(cr_) : cairo_fill(cr_);
        }
        if (path.stroke) {
            set_color(path.stroke->color, path.stroke->opacity);
            cairo_stroke(cr_);
        }
        cairo_new_path(cr_);
    }

    void paint_item(const Labels& labels) {
        cairo_select_font_face(cr_, "Helvetica", CAIRO_FONT_SLANT_NORMAL,
                               labels.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
        cairo_set_font_size(cr_, labels.size);
        for (const Label& label : labels.labels) {
            cairo_text_extents_t extents;
            cairo_text_extents(cr_, label.text.c_str(), &extents);
            const double share = labels.anchor == Anchor::start    ? 0.0
                                 : labels.anchor == Anchor::middle ? 0.5
                                                                   : 1.0;
            cairo_move_to(cr_, label.at.x - share * extents.x_advance, label.at.y);
            if (labels.halo) {
                cairo_text_path(cr_, label.text.c_str());
                cairo_set_source_rgb(cr_, 1.0, 1.0, 1.0);
                cairo_set_line_width(cr_, labels.size / 5.0);
                cairo_stroke_preserve(cr_);
                set_color(labels.color);
                cairo_fill(cr_);
            } else {
                set_color(labels.color);
                cairo_show_text(cr_, label.text.c_str());
            }
        }
    }

    cairo_t* cr_;
    const Scene& scene_;
};

Surface image_of(const Scene& scene, double scale, const std::string& name) {
    Surface surface(
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(std::ceil(scene.width * scale)),
                                   static_cast<int>(std::ceil(scene.height * scale))),
        cairo_surface_destroy);
    const Context context(cairo_create(surface.get()), cairo_destroy);
    cairo_scale(context.get(), scale, scale);
    Painter(context.get(), scene).paint();
    require(cairo_status(context.get()), name);
    return surface;
}

}  // namespace

void write_pdf(const Scene& scene, const std::filesystem::path& path) {
    OutputFile out(path);
    const Surface surface(
        cairo_pdf_surface_create_for_stream(write_bytes, out.stream(), scene.width, scene.height),
        cairo_surface_destroy);
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE, scene.title.c_str());
    {
        const Context context(cairo_create(surface.get()), cairo_destroy);
        Painter(context.get(), scene).paint();
        require(cairo_status(context.get()), out.name());
    }
    cairo_surface_finish(surface.get());
    require(cairo_surface_status(surface.get()), out.name());
    out.commit();
}

void write_png(const Scene& scene, const std::filesystem::path& path, double scale) {
    OutputFile out(path);
    const Surface surface = image_of(scene, scale, out.name());
    require(cairo_surface_write_to_png_stream(surface.get(), write_bytes, out.stream()), out.name());
    out.commit();
}

std::string png_bytes(const Scene& scene, double scale) {
    const std::string name = "the picture";
    std::string bytes;
    const Surface surface = image_of(scene, scale, name);
    require(cairo_surface_write_to_png_stream(surface.get(), add_bytes, &bytes), name);
    return bytes;
}

}  // namespace brelan::tool
