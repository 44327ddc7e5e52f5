#include "channel/free_field.h"

#include <algorithm>
#include <string>

#include "channel/run_end.h"

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

template <class Number>
void FreeFieldReader::read_value(Number& value) {
    constexpr bool integer = std::is_same_v<Number, std::int32_t>;
    began_ = true;
    if (ended_)
        return;
    if (repeats_ == 0) {
        if (!find_value())
            return;
        const char* const begin = channel_.content_.data();
        const char* const end = begin + channel_.content_.size();
        const char* at = begin + channel_.position_;
        const char* digits_end = std::find_if(at, end, [](char c) { return c < '0' || c > '9'; });
        if (digits_end != at && digits_end != end && *digits_end == '*') {
            // n*value or n*
            const std::string count_text = std::string(at, digits_end) + " ";
            const char* count = count_text.data();
            std::int32_t repeats = 0;
            const NumberScan scan = scan_number(count, count + count_text.size(), repeats);
            if (scan != NumberScan::ok || repeats == 0)
                fail_value(at, scan, integer);
            repeats_ = repeats;
            at = digits_end + 1;
            channel_.position_ = static_cast<std::size_t>(at - begin);
            repeated_ = at == end || separates(*at) ? NULL_VALUE : channel_.position_;
        } else {
            repeats_ = 1;
            repeated_ = channel_.position_;
        }
        separator_due_ = true;
    }
    --repeats_;
    if (repeated_ == NULL_VALUE)
        return;
    const char* const begin = channel_.content_.data();
    const char* const end = begin + channel_.content_.size();
    const char* at = begin + repeated_;
    Number number{};
    if (const NumberScan scan = scan_number(at, end, number); scan != NumberScan::ok)
        fail_value(begin + repeated_, scan, integer);
    value = number;
    channel_.position_ = static_cast<std::size_t>(at - begin);
}

template void FreeFieldReader::read_value(std::int32_t& value);
template void FreeFieldReader::read_value(float& value);

void FreeFieldReader::finish() {
    if (!began_ && channel_.at_end())
        channel_.fail_here("the file ends here; expected " + std::string(expected_));
    const char* const begin = channel_.content_.data();
    const std::size_t end = channel_.content_.find('\n', channel_.position_);
    const std::size_t line_end = end == std::string::npos ? channel_.content_.size() : end;
    next_line(begin + line_end);
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
