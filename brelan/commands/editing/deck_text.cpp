#include "commands/editing/deck_text.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstdint>

#include "cli/exit_status.h"
#include "commands/editing/character_code.h"
#include "text/text_line.h"
#include "text/utf_8.h"

namespace brelan::tool {

namespace {

std::string to_bytes(std::string_view text) {
    std::string bytes;
    while (!text.empty()) {
        const std::size_t length = size_of_character(text);
        const auto first = static_cast<unsigned char>(text.front());
        if (length == 2 && first <= 0xC3)
            bytes +=
                static_cast<char>(((first & 0x03U) << 6U) | (static_cast<unsigned char>(text[1]) & 0x3FU));
        else if (length == 1)
            bytes += text.front();
        else
            throw Failure(fmt::format("the deck's file has a code of 8 bits, in which there is no \"{}\"",
                                      text.substr(0, std::max<std::size_t>(length, 1))));
        text.remove_prefix(length);
    }
    return bytes;
}

// How many line ends of two texts are the same ones from their start on.
std::size_t same_lines(std::string_view a, std::string_view b) {
    const auto [end, other] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    return static_cast<std::size_t>(std::count(a.begin(), end, '\n'));
}

}  // namespace

DeckText::DeckText(std::string bytes, std::string_view name) {
    byte_order_mark_ = bytes.starts_with(BYTE_ORDER_MARK);
    if (byte_order_mark_)
        bytes.erase(0, BYTE_ORDER_MARK.size());
    std::string text;
    std::size_t line = 1;
    for (std::size_t k = 0; k < bytes.size(); ++k) {
        const char c = bytes[k];
        const bool ends_line = c == '\r' && k + 1 < bytes.size() && bytes[k + 1] == '\n';
        if (c == '\0' || (c == '\r' && !ends_line))
            throw Failure(fmt::format(
                "{}, line {}: expected a card deck, found {}", name, line,
                c == '\0' ? "a zero byte: the file is no text" : "a carriage return that ends no line"));
        if (c == '\n') {
            carriage_return_.push_back(k > 0 && bytes[k - 1] == '\r');
            ++line;
        }
        if (!ends_line)
            text += c;
    }
    most_ = std::count(carriage_return_.begin(), carriage_return_.end(), true) * 2 >
            static_cast<std::ptrdiff_t>(carriage_return_.size());
    is_utf8_ = is_utf8(text);
    shown_ = is_utf8_ ? std::move(text) : utf8_of_bytes(text);
}

std::string DeckText::bytes_of(std::string_view shown) const {
    return (byte_order_mark_ ? std::string(BYTE_ORDER_MARK) : std::string()) + deck_of(shown);
}

std::string DeckText::deck_of(std::string_view shown) const {
    const std::string text = is_utf8_ ? std::string(shown) : to_bytes(shown);
    const auto ends = static_cast<std::size_t>(std::count(shown.begin(), shown.end(), '\n'));
    const std::size_t least = std::min(ends, carriage_return_.size());
    const std::size_t at_start = same_lines(shown_, shown);
    std::string_view rest = shown_, other = shown;
    std::size_t at_end = 0;
    while (!rest.empty() && !other.empty() && rest.back() == other.back()) {
        at_end += rest.back() == '\n' ? 1 : 0;
        rest.remove_suffix(1);
        other.remove_suffix(1);
    }
    at_end = std::min(at_end, least - std::min(at_start, least));
    std::string bytes;
    std::size_t line = 0;
    for (const char c : text) {
        if (c == '\n') {
            const bool with_return = line < at_start ? carriage_return_[line]
                                     : line >= ends - at_end
                                         ? carriage_return_[line + carriage_return_.size() - ends]
                                         : most_;
            if (with_return)
                bytes += '\r';
            ++line;
        }
        bytes += c;
    }
    return bytes;
}

}  // namespace brelan::tool
