#include "drawing/html.h"

#include <zlib.h>

#include <string>
#include <utility>

#include "cli/exit_status.h"
#include "cli/json.h"
#include "cli/output_file.h"
#include "cli/page_text.h"
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

}  // namespace

void write_html(const MeshLists& mesh, const PictureOptions& options, const std::filesystem::path& path) {
    MeshData data = mesh_data(mesh, options, MeshParts::all);
    const std::string title = data.title;
    data.values["arrays"] = packed(data.arrays);
    OutputFile out(path);
    write_page(out, VIEWER_PAGE,
               {{"%TITLE%", for_html(title)},
                {"%STYLE%", VIEWER_STYLE},
                {"%DATA%", for_script(data.values.compact())},
                {"%SCRIPT%", VIEWER_SCRIPT}});
    out.commit();
}

}  // namespace brelan::tool
