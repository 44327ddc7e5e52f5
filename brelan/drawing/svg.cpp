#include <fmt/core.h>

#include <cmath>
#include <utility>

#include "cli/formatted_text.h"
#include "drawing/scene.h"

namespace brelan::tool {

namespace {

std::string escaped(std::string_view text) {
    std::string out;
    for (const char c : text)
        if (c == '&')
            out += "&amp;";
        else if (c == '<')
            out += "&lt;";
        else if (c == '>')
            out += "&gt;";
        else if (c == '"')
            out += "&quot;";
        else if (static_cast<unsigned char>(c) < ' ' || c == 127)
            out += '?';
        else
            out += c;
    return out;
}

class Writer {
public:
    template <class Target>
    Writer(const Scene& scene, Target&& out) : scene_(scene), text_(std::forward<Target>(out)) {}

    void write() {
        const Bounds& a = scene_.area;
        text_.add(
            "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0:.0f}\" height=\"{1:.0f}\" viewBox=\"0 0 "
            "{0:.0f} "
            "{1:.0f}\" font-family=\"Helvetica, Arial, sans-serif\">\n<title>{2}</title>\n",
            scene_.width, scene_.height, escaped(scene_.title));
        text_.add(
            "<clipPath id=\"area\"><rect x=\"{:.2f}\" y=\"{:.2f}\" width=\"{:.2f}\" "
            "height=\"{:.2f}\"/></clipPath>\n",
            a.low.x, a.low.y, a.width(), a.height());
        text_.add("<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n");
        for (const auto& item : scene_.items)
            std::visit([this](const auto& it) { write_item(it); }, item);
        text_.add("</svg>\n");
        text_.flush();
    }

private:
    void begin(const std::string& id, bool clipped) {
        if (!id.empty())
            text_.add(" id=\"{}\"", escaped(id));
        if (clipped)
            text_.add(" clip-path=\"url(#area)\"");
    }

    // Hundredths of a unit, as short as can be.
    void add_number(std::int64_t hundredths, bool first) {
        if (hundredths < 0)
            text_.add("-");
        else if (!first)
            text_.add(" ");
        const std::int64_t v = std::abs(hundredths);
        text_.add("{}", v / 100);
        if (v % 10 != 0)
            text_.add(".{:02}", v % 100);
        else if (v % 100 != 0)
            text_.add(".{}", v % 100 / 10);
    }

    void write_item(const Path& path) {
        if (path.lines.empty())
            return;
        text_.add("<path");
        begin(path.id, path.clipped);
        text_.add(" fill=\"{}\"", path.fill ? hex(*path.fill) : "none");
        if (path.stroke) {
            text_.add(
                " stroke=\"{}\" stroke-width=\"{:.4g}\" stroke-linejoin=\"round\" stroke-linecap=\"round\"",
                hex(path.stroke->color), path.stroke->width);
            if (path.stroke->opacity < 1.0)
                text_.add(" stroke-opacity=\"{:.3g}\"", path.stroke->opacity);
            for (std::size_t k = 0; k < path.stroke->dash.size(); ++k)
                text_.add("{}{:.4g}", k == 0 ? " stroke-dasharray=\"" : " ", path.stroke->dash[k]);
            if (!path.stroke->dash.empty())
                text_.add("\"");
        }
        text_.add(" d=\"");
        std::size_t k = 0;
        for (const std::size_t end : path.lines.ends) {
            std::int64_t x = 0, y = 0;
            for (bool first = true; k < end; ++k, first = false) {
                const auto to_x = std::llround(path.lines.points[k].x * 100.0);
                const auto to_y = std::llround(path.lines.points[k].y * 100.0);
                text_.add("{}", first ? "M" : "l");
                add_number(to_x - x, true);
                add_number(to_y - y, false);
                x = to_x;
                y = to_y;
            }
            text_.add("{}", path.closed ? "z" : "");
        }
        text_.add("\"/>\n");
    }

    void write_item(const Labels& labels) {
        if (labels.labels.empty())
            return;
        static constexpr std::array<const char*, 3> ANCHORS{"start", "middle", "end"};
        text_.add("<g");
        begin(labels.id, labels.clipped);
        text_.add(" font-size=\"{:.4g}\" text-anchor=\"{}\" fill=\"{}\"", labels.size,
                  ANCHORS[static_cast<std::size_t>(labels.anchor)], hex(labels.color));
        if (labels.bold)
            text_.add(" font-weight=\"bold\"");
        if (labels.halo)
            text_.add(
                " stroke=\"#fff\" stroke-width=\"{:.3g}\" paint-order=\"stroke\" stroke-linejoin=\"round\"",
                labels.size / 5.0);
        text_.add(">\n");
        for (const Label& label : labels.labels)
            text_.add("<text x=\"{:.2f}\" y=\"{:.2f}\">{}</text>\n", label.at.x, label.at.y,
                      escaped(label.text));
        text_.add("</g>\n");
    }

    const Scene& scene_;
    FormattedText text_;
};

}  // namespace

void write_svg(const Scene& scene, const std::filesystem::path& path) {
    OutputFile out(path);
    Writer(scene, out).write();
    out.commit();
}

std::string svg_text(const Scene& scene) {
    std::string text;
    Writer(scene, [&](std::string_view piece) { text += piece; }).write();
    return text;
}

}  // namespace brelan::tool
