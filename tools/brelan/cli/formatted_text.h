// Text that is put together piece by piece and handed on to a file in large pieces.
#pragma once

#include <fmt/core.h>

#include <iterator>
#include <utility>

#include "cli/output_file.h"

namespace brelan::tool {

class FormattedText {
public:
    explicit FormattedText(OutputFile& out) : out_(out) {}

    template <class... Values>
    void add(fmt::format_string<Values...> form, Values&&... values) {
        constexpr std::size_t piece = std::size_t{1} << 20U;
        fmt::format_to(std::back_inserter(text_), form, std::forward<Values>(values)...);
        if (text_.size() > piece)
            flush();
    }

    // Called once at the end.
    void flush() {
        out_.write({text_.data(), text_.size()});
        text_.clear();
    }

private:
    OutputFile& out_;
    std::string text_;
};

}  // namespace brelan::tool
