#include "cli/formatted_text.h"

#include <fmt/format.h>

#include <iterator>
#include <utility>

namespace brelan::tool {

struct FormattedText::Buffer {
    fmt::memory_buffer text;
};

FormattedText::FormattedText(OutputFile& out)
    : FormattedText([&out](std::string_view text) { out.write(text); }) {}
FormattedText::FormattedText(std::function<void(std::string_view)> to)
    : to_(std::move(to)), text_(std::make_unique<Buffer>()) {}
FormattedText::~FormattedText() = default;

void FormattedText::add_values(fmt::string_view form, fmt::format_args values) {
    constexpr std::size_t piece = std::size_t{1} << 20U;
    fmt::vformat_to(fmt::appender(text_->text), form, values);
    if (text_->text.size() > piece)
        flush();
}

void FormattedText::flush() {
    to_({text_->text.data(), text_->text.size()});
    text_->text.clear();
}

}  // namespace brelan::tool
