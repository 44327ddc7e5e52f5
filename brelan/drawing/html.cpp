#include "drawing/html.h"

#include <zlib.h>

#include <array>
#include <string>
#include <utility>

#include "cli/exit_status.h"
#include "cli/json.h"
#include "cli/output_file.h"
#include "drawing/mesh_data.h"
#include "drawing/viewer.h"
#include "formats/vtu_blocks.h"

namespace brelan::tool {

namespace {

// Arrays compressed as one.
Json packed(const ArrayList& arrays) {
    const std::string& bytes = arrays.bytes();
    std::string packed(compressBound(bytes.size()), '\0');
    uLongf size = packed.size();
    constexpr int LEVEL = 5;
    if (compress2(reinterpret_cast<Bytef*>(packed.data()), &size,
                  reinterpret_cast<const Bytef*>(bytes.data()), bytes.size(), LEVEL) != Z_OK)
        throw Failure("data cannot be compressed");
    packed.resize(size);
    return {{"list", arrays.list()}, {"base64", to_base64(packed)}};
}

// JSON inside a script: "</script>" in a title must not end it.
std::string for_script(std::string json) {
    for (std::size_t at = 0; (at = json.find("</", at)) != std::string::npos; at += 3)
        json.insert(at + 1, "\\");
    return json;
}

std::string for_html(std::string_view text) {
    std::string out;
    for (const char c : text)
        out += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : std::string(1, c);
    return out;
}

}  // namespace

void write_html(const MeshLists& mesh, const PictureOptions& options, const std::filesystem::path& path) {
    MeshData data = mesh_data(mesh, options, MeshParts::all);
    const std::string title = data.title;
    data.values["arrays"] = packed(data.arrays);
    const std::string page = VIEWER_PAGE;
    OutputFile out(path);
    // Each mark stands once; what is put in is not looked at again.
    std::size_t done = 0;
    const std::array<std::pair<std::string_view, std::string>, 4> parts{
        {{"%TITLE%", for_html(title)},
         {"%STYLE%", VIEWER_STYLE},
         {"%DATA%", for_script(data.values.compact())},
         {"%SCRIPT%", VIEWER_SCRIPT}}};
    for (const auto& [mark, text] : parts) {
        const std::size_t at = page.find(mark, done);
        out.write(std::string_view(page).substr(done, at - done));
        out.write(text);
        done = at + mark.size();
    }
    out.write(std::string_view(page).substr(done));
    out.commit();
}

}  // namespace brelan::tool
