#include "cli/formatted_text.h"

#include <fmt/format.h>

#include <iterator>

namespace brelan::tool {

struct FormattedText::Buffer {
    fmt::memory_buffer text;
};

FormattedText::FormattedText(OutputFile& out) : out_(out), text_(std::make_unique<Buffer>()) {}
FormattedText::~FormattedText() = default;

void FormattedText::add_values(fmt::string_view form, fmt::format_args values) {
    constexpr std::size_t piece = std::size_t{1} << 20U;
    fmt::vformat_to(fmt::appender(text_->text), form, values);
    if (text_->text.size() > piece)
        flush();
}

void FormattedText::flush() {
    out_.write({text_->text.data(), text_->text.size()});
    text_->text.clear();
}

}  // namespace brelan::tool
