#include "cli/page_text.h"

namespace brelan::tool {

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

void write_page(OutputFile& out, std::string_view page,
                const std::vector<std::pair<std::string_view, std::string>>& parts) {
    std::size_t done = 0;
    for (const auto& [mark, text] : parts) {
        const std::size_t at = page.find(mark, done);
        out.write(page.substr(done, at - done));
        out.write(text);
        done = at + mark.size();
    }
    out.write(page.substr(done));
}

}  // namespace brelan::tool
