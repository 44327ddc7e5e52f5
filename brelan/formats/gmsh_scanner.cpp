#include "formats/gmsh_scanner.h"

#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <cstring>

#include "cli/exit_status.h"

namespace brelan::tool {

namespace {

bool is_blank(char c) {
    return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

}  // namespace

void GmshScanner::fail(const std::string& what) const {
    const auto line =
        1 + std::count(content_.begin(), content_.begin() + static_cast<std::ptrdiff_t>(at_), '\n');
    throw Failure(binary ? fmt::format("byte {}: {}", at_, what) : fmt::format("line {}: {}", line, what));
}

void GmshScanner::skip_blanks() {
    while (at_ < content_.size() && is_blank(content_[at_]))
        ++at_;
}

bool GmshScanner::next_line(std::string_view& line) {
    skip_blanks();
    if (at_ == content_.size())
        return false;
    const std::size_t end = std::min(content_.find('\n', at_), content_.size());
    line = content_.substr(at_, end - at_);
    while (!line.empty() && is_blank(line.back()))
        line.remove_suffix(1);
    at_ = std::min(end + 1, content_.size());
    return true;
}

void GmshScanner::finish_line() {
    at_ = std::min(content_.find('\n', at_), content_.size() - 1) + 1;
}

template <class Value>
Value GmshScanner::text_value(std::string_view what) {
    skip_blanks();
    Value value{};
    const auto [stop, error] =
        std::from_chars(content_.data() + at_, content_.data() + content_.size(), value);
    if (error != std::errc{}) {
        if (at_ == content_.size())
            fail(fmt::format("the file ends here; expected {}", what));
        std::size_t end = at_;
        while (end < content_.size() && end - at_ < 24 && !is_blank(content_[end]))
            ++end;
        fail(fmt::format("expected {}, found \"{}\"", what, content_.substr(at_, end - at_)));
    }
    at_ = static_cast<std::size_t>(stop - content_.data());
    return value;
}

std::int64_t GmshScanner::text_integer() {
    return text_value<std::int64_t>("an integer");
}

double GmshScanner::text_real() {
    return text_value<double>("a number");
}

template <class Value>
Value GmshScanner::binary_value() {
    if (content_.size() - at_ < sizeof(Value))
        fail("the file ends here; expected binary data");
    Value value;
    std::memcpy(&value, content_.data() + at_, sizeof value);
    at_ += sizeof value;
    return value;
}

std::int64_t GmshScanner::integer_32() {
    return binary ? binary_value<std::int32_t>() : text_integer();
}

std::int64_t GmshScanner::integer_64() {
    return binary ? binary_value<std::int64_t>() : text_integer();
}

double GmshScanner::real() {
    return binary ? binary_value<double>() : text_real();
}

std::size_t GmshScanner::count(std::int64_t value) const {
    if (value < 0 || static_cast<std::uint64_t>(value) > content_.size() - at_)
        fail(fmt::format("expected a count that the file can hold, found {}", value));
    return static_cast<std::size_t>(value);
}

std::string GmshScanner::quoted() {
    const std::size_t begin = content_.find('"', at_);
    const std::size_t end = begin == std::string_view::npos ? begin : content_.find('"', begin + 1);
    const std::size_t line = content_.find('\n', at_);
    if (end == std::string_view::npos ||
        (line < begin &&
         content_.substr(at_, line - at_).find_first_not_of(" \t\r") != std::string_view::npos))
        fail("expected a name between quotes");
    at_ = end + 1;
    return std::string(content_.substr(begin + 1, end - begin - 1));
}

void GmshScanner::end_section(std::string_view section) {
    std::string_view line;
    const std::size_t before = at_;
    if (!next_line(line) || !line.starts_with("$End") || line.substr(4) != section) {
        at_ = before;
        fail(fmt::format("expected $End{}", section));
    }
}

void GmshScanner::skip_section(std::string_view section) {
    const std::string mark = fmt::format("$End{}", section);
    const std::size_t found = content_.find(mark, at_);
    if (found == std::string_view::npos)
        fail(fmt::format("expected {} in what follows", mark));
    at_ = found + mark.size();
}

}  // namespace brelan::tool
