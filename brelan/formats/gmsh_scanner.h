// The values of a Gmsh file one after the other, as text or binary.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace brelan::tool {

class GmshScanner {
public:
    explicit GmshScanner(std::string_view content) : content_(content) {}

    bool binary = false;

    // The next line that is not blank; false at the end of the file.
    bool next_line(std::string_view& line);

    // Text values even in a binary file, as the counts in front of data are.
    std::int64_t text_integer();
    double text_real();

    // Values of the file's own form; the binary width is that of the format.
    std::int64_t integer_32();
    std::int64_t integer_64();
    double real();

    // An integer from 0 to what the rest of the file can hold.
    std::size_t count(std::int64_t value) const;

    // The text between quotes.
    std::string quoted();

    // Reads to the end of the line that is being read, as before binary data.
    void finish_line();

    // The mark "$End<section>" comes next.
    void end_section(std::string_view section);
    void skip_section(std::string_view section);

    [[noreturn]] void fail(const std::string& what) const;  // with the line in a text file

private:
    void skip_blanks();
    template <class Value>
    Value text_value(std::string_view what);
    template <class Value>
    Value binary_value();

    std::string_view content_;
    std::size_t at_ = 0;
};

}  // namespace brelan::tool
