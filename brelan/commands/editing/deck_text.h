// The bytes of a deck's file as an editor has them, and back: what the editor does not show stays as it is.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brelan::tool {

class DeckText {
public:
    // Of a file, which is no text where it holds a zero byte or a carriage return inside of a line. Throws
    // Failure then; `name` is the file's.
    DeckText(std::string bytes, std::string_view name);

    // UTF-8 with lines that end with "\n", without a byte order mark. A file that is not UTF-8 is one of an
    // older code of 8 bits: each of its bytes is shown as the character of that number.
    const std::string& shown() const { return shown_; }

    // The bytes of a file for an edited text: lines that are unchanged at its start and end have the line
    // ends that they had, those between what most lines have. Throws Failure where a character has no byte in
    // the file's code.
    std::string bytes_of(std::string_view shown) const;

    // The same without the byte order mark, as a deck is read.
    std::string deck_of(std::string_view shown) const;

private:
    std::string shown_;
    std::vector<bool> carriage_return_;  // of each line end: in front of it
    bool most_ = false;                  // lines have one
    bool byte_order_mark_ = false, is_utf8_ = true;
};

}  // namespace brelan::tool
