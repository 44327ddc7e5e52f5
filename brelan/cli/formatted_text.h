// Text that is put together piece by piece and handed on in large pieces.
#pragma once

#include <fmt/core.h>

#include <functional>
#include <memory>
#include <string_view>

#include "cli/output_file.h"

namespace brelan::tool {

class FormattedText {
public:
    explicit FormattedText(OutputFile& out);
    explicit FormattedText(std::function<void(std::string_view)> to);
    ~FormattedText();

    template <class... Values>
    void add(fmt::format_string<Values...> form, const Values&... values) {
        add_values(form, fmt::make_format_args(values...));
    }

    // Called once at the end.
    void flush();

private:
    void add_values(fmt::string_view form, fmt::format_args values);

    std::function<void(std::string_view)> to_;
    struct Buffer;
    std::unique_ptr<Buffer> text_;
};

}  // namespace brelan::tool
