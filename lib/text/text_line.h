// A line of text as cards, names and mesh lines see it: 126 columns, padded with blanks. What stands further
// right on a line is never seen.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace brelan {

// What some editors put in front of a text (UTF-8).
inline constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

inline constexpr int LINE_COLUMNS = 126;

class TextLine {
public:
    constexpr TextLine() { columns_.fill(' '); }

    // Takes the first 126 characters of the text and pads with blanks.
    constexpr TextLine(std::string_view text) : TextLine() {  // NOLINT: a line is a text
        std::copy_n(text.begin(), std::min<std::size_t>(text.size(), columns_.size()), columns_.begin());
    }

    // Column numbers count from 1.
    constexpr char& operator()(int column) { return columns_[static_cast<std::size_t>(column - 1)]; }
    constexpr char operator()(int column) const { return columns_[static_cast<std::size_t>(column - 1)]; }

    // All 126 columns.
    constexpr std::string_view view() const { return {columns_.data(), columns_.size()}; }

    // The first columns, count of them.
    constexpr std::string_view first(int count) const {
        return view().substr(0, static_cast<std::size_t>(count));
    }

    // The text without its trailing blanks.
    constexpr std::string_view trimmed() const {
        const std::size_t last = view().find_last_not_of(' ');
        return last == std::string_view::npos ? std::string_view{} : view().substr(0, last + 1);
    }

    constexpr bool blank() const { return trimmed().empty(); }

    friend constexpr bool operator==(const TextLine&, const TextLine&) = default;

private:
    std::array<char, LINE_COLUMNS> columns_{};
};

}  // namespace brelan
