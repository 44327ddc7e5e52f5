#include <algorithm>
#include <cstring>

#include "text/channels.h"

namespace brelan {

void Channel::read_piece() {
    constexpr std::size_t piece = std::size_t{1} << 20;
    const std::size_t kept = content_.size() - position_;
    std::copy_n(content_.data() + position_, kept, content_.data());
    content_.resize(kept + piece);
    position_ = 0;
    content_.resize(kept + file_->read(content_.data() + kept, piece));
}

// --- lines ---------------------------------------------------------------------------------------

std::string_view Channel::peek_line() const {
    if (at_end())
        return {};
    const char* begin = content_.data() + position_;
    const std::size_t left = content_.size() - position_;
    const void* end = std::memchr(begin, '\n', left);
    std::size_t length =
        end == nullptr ? left : static_cast<std::size_t>(static_cast<const char*>(end) - begin);
    if (length > 0 && begin[length - 1] == '\r')
        --length;
    return {begin, length};
}

std::string_view Channel::read_whole_line(std::string_view expected) {
    if (at_end())
        fail_here("the file ends here; expected " + std::string(expected));
    const std::string_view line = peek_line();
    position_ += line.size();
    if (position_ < content_.size() && content_[position_] == '\r')
        ++position_;
    if (position_ < content_.size())
        ++position_;
    ++lines_before_;
    return line;
}

bool Channel::more() {
    const auto line_is_there = [this] {
        const std::size_t left = content_.size() - position_;
        return left > 0 && std::memchr(content_.data() + position_, '\n', left) != nullptr;
    };
    while (file_ != nullptr && !writable_ && !line_is_there()) {
        const std::size_t left = content_.size() - position_;
        read_piece();
        if (content_.size() == left)
            break;
    }
    return !at_end();
}

void Channel::skip_lines(int count, std::string_view expected) {
    for (int i = 0; i < count; ++i)
        read_whole_line(expected);
}

bool Channel::pass_byte_order_mark() {
    const std::string_view rest(content_.data() + position_, content_.size() - position_);
    if (!rest.starts_with(BYTE_ORDER_MARK))
        return false;
    position_ += BYTE_ORDER_MARK.size();
    return true;
}

void Channel::rewind() {
    flush();
    position_ = 0;
    lines_before_ = 0;
}

void Channel::step_back(int lines) {
    for (int i = 0; i < lines && position_ > 0; ++i) {
        --position_;  // over the line's end, if it has one
        while (position_ > 0 && content_[position_ - 1] != '\n')
            --position_;
        --lines_before_;
    }
}

}  // namespace brelan
