// A short list: its first entries need no memory of their own. Elements round a node, corners of an element:
// such lists are made by the thousand, and nearly all of them are short.
#pragma once

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

namespace brelan {

template <class T, std::size_t N>
class Few {
public:
    void push_back(const T& entry) {
        if (size_ < N && more_.empty()) {
            own_[size_++] = entry;
            return;
        }
        if (more_.empty())
            more_.assign(own_.begin(), own_.end());
        more_.push_back(entry);
        ++size_;
    }

    T* begin() { return more_.empty() ? own_.data() : more_.data(); }
    T* end() { return begin() + size_; }
    const T* begin() const { return more_.empty() ? own_.data() : more_.data(); }
    const T* end() const { return begin() + size_; }
    T& operator[](std::size_t i) { return begin()[i]; }
    const T& operator[](std::size_t i) const { return begin()[i]; }
    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }

    bool operator==(const Few& other) const {
        for (std::size_t i = 0; i < size_ && size_ == other.size_; ++i)
            if (!((*this)[i] == other[i]))
                return false;
        return size_ == other.size_;
    }

private:
    std::array<T, N> own_{};
    std::vector<T> more_;  // all of them, where there are more
    std::size_t size_ = 0;
};

}  // namespace brelan
