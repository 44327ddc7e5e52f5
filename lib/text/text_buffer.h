// Text that grows at its end and is not cleared as it grows: the content of a channel may be tens of
// megabytes.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <string_view>
#include <utility>

namespace brelan {

class TextBuffer {
public:
    TextBuffer() = default;
    TextBuffer(const TextBuffer&) = delete;
    TextBuffer& operator=(const TextBuffer&) = delete;
    TextBuffer(TextBuffer&& other) noexcept
        : data_(std::exchange(other.data_, nullptr)),
          size_(std::exchange(other.size_, 0)),
          capacity_(std::exchange(other.capacity_, 0)) {}
    TextBuffer& operator=(TextBuffer&& other) noexcept {
        std::swap(data_, other.data_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
        return *this;
    }
    ~TextBuffer() { std::free(data_); }

    char* data() { return data_; }
    const char* data() const { return data_; }
    std::size_t size() const { return size_; }
    char operator[](std::size_t place) const { return data_[place]; }
    std::string_view view() const { return {data_, size_}; }

    // Characters that are new are not set.
    void resize(std::size_t size) {
        if (size > capacity_)
            grow(size);
        size_ = size;
    }

    void append(std::string_view text) {
        const std::size_t end = size_;
        resize(end + text.size());
        std::copy(text.begin(), text.end(), data_ + end);
    }

private:
    void grow(std::size_t size) {
        constexpr std::size_t smallest = 4096;
        std::size_t capacity = capacity_ < smallest ? smallest : capacity_;
        while (capacity < size)
            capacity *= 2;
        void* const larger = std::realloc(data_, capacity);
        if (larger == nullptr)
            throw std::bad_alloc();  // GCOVR_EXCL_LINE: tests/faults tries it
        data_ = static_cast<char*>(larger);
        capacity_ = capacity;
    }

    char* data_ = nullptr;
    std::size_t size_ = 0, capacity_ = 0;
};

}  // namespace brelan
