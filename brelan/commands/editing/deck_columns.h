// The places of a deck as an editor counts them: lines from 0, columns from 0 in units of UTF-16.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace brelan::tool {

// Of a text in UTF-8; one that is none has a character for each of its bytes. The text has to live as long.
class DeckColumns {
public:
    explicit DeckColumns(std::string_view text);

    // Column of a byte of a line, the line from 1 as cards count, the byte from 0.
    std::size_t column(int line, std::size_t byte) const;
    std::size_t columns_of(int line) const;
    std::size_t line_count() const { return lines_.size(); }

    // What stands in the deck, as UTF-8.
    std::string shown(std::string_view bytes) const;

private:
    std::size_t units(std::string_view bytes) const;

    std::vector<std::string_view> lines_;
    bool is_utf8_ = true;
};

}  // namespace brelan::tool
