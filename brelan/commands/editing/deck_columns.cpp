#include "commands/editing/deck_columns.h"

#include <algorithm>

#include "cli/words.h"
#include "commands/editing/character_code.h"
#include "text/utf_8.h"

namespace brelan::tool {

DeckColumns::DeckColumns(std::string_view text) : lines_(lines_of(text)), is_utf8_(is_utf8(text)) {}

std::size_t DeckColumns::units(std::string_view bytes) const {
    if (!is_utf8_)
        return bytes.size();
    std::size_t units = 0;
    while (!bytes.empty()) {
        const std::size_t size = std::max<std::size_t>(size_of_character(bytes), 1);
        units += size == 4 ? 2 : 1;
        bytes.remove_prefix(size);
    }
    return units;
}

std::size_t DeckColumns::column(int line, std::size_t byte) const {
    const auto place = static_cast<std::size_t>(line) - 1;
    return place < lines_.size() ? units(lines_[place].substr(0, byte)) : 0;
}

std::size_t DeckColumns::columns_of(int line) const {
    return column(line, std::string_view::npos);
}

std::string DeckColumns::shown(std::string_view bytes) const {
    return is_utf8_ ? std::string(bytes) : utf8_of_bytes(bytes);
}

}  // namespace brelan::tool
