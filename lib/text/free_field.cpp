#include "text/free_field.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace brelan {

namespace {

// The text at a place as a message shows it: to the next separator, at most 24 characters, none of them
// unprintable.
std::string shown(const char* at, const char* end) {
    std::string text;
    for (; at != end && (text.empty() || !separates(*at)) && text.size() < 24; ++at)
        text += *at >= ' ' && *at <= '~' ? *at : '?';
    return text;
}

}  // namespace

bool FreeFieldReader::at_line_end(const char* at) const {
    const char* const end = channel_.content_.data() + channel_.content_.size();
    return at == end || *at == '\n' || (*at == '\r' && (at + 1 == end || at[1] == '\n'));
}

void FreeFieldReader::next_line(const char* at) {
    const char* const begin = channel_.content_.data();
    const char* const end = begin + channel_.content_.size();
    if (at != end && *at == '\r')
        ++at;
    if (at != end)
        ++at;
    channel_.position_ = static_cast<std::size_t>(at - begin);
    ++channel_.lines_before_;
}

// Goes to the next value. False for a null value and behind a slash.
bool FreeFieldReader::find_value() {
    for (;;) {
        const char* const begin = channel_.content_.data();
        const char* const end = begin + channel_.content_.size();
        const char* at = begin + channel_.position_;
        while (at != end && (*at == ' ' || *at == '\t'))
            ++at;
        channel_.position_ = static_cast<std::size_t>(at - begin);
        if (at_line_end(at)) {
            if (at == end)
                channel_.fail_here("the file ends here; expected " + std::string(expected_));
            if (reach_ == Reach::one_line)
                channel_.fail_here("the line ends here; expected " + std::string(expected_));
            next_line(at);
        } else if (*at == ',') {
            ++channel_.position_;
            if (!separator_due_)
                return false;
            separator_due_ = false;
        } else if (*at == '/') {
            ended_ = true;
            return false;
        } else {
            return true;
        }
    }
}

void FreeFieldReader::fail_value(const char* at, NumberScan scan, bool integer) const {
    const char* const end = channel_.content_.data() + channel_.content_.size();
    const std::string kind = integer ? "an integer" : "a number";
    channel_.fail_here("expected " + kind + " in " + std::string(expected_) + ", found \"" + shown(at, end) +
                       "\"" + (scan == NumberScan::too_large ? ", which is too large" : ""));
}

// Takes the number at a position; the channel then stands behind it.
template <class Number>
NumberScan FreeFieldReader::take(std::size_t position, Number& value) {
    const char* const begin = channel_.content_.data();
    const char* at = begin + position;
    const NumberScan scan = scan_number(at, begin + channel_.content_.size(), value);
    if (scan == NumberScan::ok)
        channel_.position_ = static_cast<std::size_t>(at - begin);
    return scan;
}

// Takes n* at the current position as the count of repeats; false where the text is another.
bool FreeFieldReader::take_repeat_count() {
    const char* const begin = channel_.content_.data();
    const char* const end = begin + channel_.content_.size();
    const char* at = begin + channel_.position_;
    const char* star = std::find_if(at, end, [](char c) { return c < '0' || c > '9'; });
    if (star == at || star == end || *star != '*')
        return false;
    const std::string digits = std::string(at, star) + " ";
    const char* count = digits.data();
    std::int32_t repeats = 0;
    if (scan_number(count, count + digits.size(), repeats) != NumberScan::ok || repeats == 0)
        return false;
    ++star;
    channel_.position_ = static_cast<std::size_t>(star - begin);
    repeats_ = repeats;
    repeated_ = star == end || separates(*star) ? NULL_VALUE : channel_.position_;
    return true;
}

template <class Number>
void FreeFieldReader::read_value(Number& value) {
    constexpr bool integer = std::is_same_v<Number, std::int32_t>;
    began_ = true;
    if (ended_)
        return;
    if (repeats_ == 0) {
        if (!find_value())
            return;
        separator_due_ = true;
        const NumberScan scan = take(channel_.position_, value);
        if (scan == NumberScan::ok)
            return;
        if (!take_repeat_count())
            fail_value(channel_.content_.data() + channel_.position_, scan, integer);
    }
    --repeats_;
    if (repeated_ == NULL_VALUE)
        return;
    if (const NumberScan scan = take(repeated_, value); scan != NumberScan::ok)
        fail_value(channel_.content_.data() + repeated_, scan, integer);
}

template void FreeFieldReader::read_value(std::int32_t& value);
template void FreeFieldReader::read_value(float& value);

void FreeFieldReader::finish() {
    if (!began_ && channel_.at_end())
        channel_.fail_here("the file ends here; expected " + std::string(expected_));
    const char* const begin = channel_.content_.data() + channel_.position_;
    const std::size_t left = channel_.content_.size() - channel_.position_;
    const void* line_end = left == 0 ? nullptr : std::memchr(begin, '\n', left);
    next_line(line_end == nullptr ? begin + left : static_cast<const char*>(line_end));
}

FreeFieldLine& FreeFieldLine::add(std::string_view text) {
    if (!after_text_)
        line_ += ' ';
    line_ += text;
    after_text_ = true;
    return *this;
}

FreeFieldLine& FreeFieldLine::add(std::int32_t value) {
    constexpr int width = 11;
    line_ += ' ';
    line_.resize(line_.size() + width);
    put_integer(line_.data() + line_.size() - width, width, value);
    after_text_ = false;
    return *this;
}

FreeFieldLine& FreeFieldLine::add(float value) {
    constexpr int width = 16;
    line_ += ' ';
    line_.resize(line_.size() + width);
    put_exponent(line_.data() + line_.size() - width, width, 9, value);
    after_text_ = false;
    return *this;
}

}  // namespace brelan
