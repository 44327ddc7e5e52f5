// A list by the numbers of nodes or elements that is as long as the highest that was asked for: most meshes
// have far fewer than there is room for, and to fill the rest would cost more than the work on them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace brelan {

template <class T>
class ByNumber {
public:
    explicit ByNumber(T unset = {}) : unset_(std::move(unset)) {}

    // The entry of a place; as it is unset where nothing has been put there.
    T& operator[](std::size_t place) {
        if (place >= entries_.size())
            entries_.resize(std::max(place + 1, 2 * entries_.size()), unset_);
        return entries_[place];
    }
    const T& operator[](std::size_t place) const {
        return place < entries_.size() ? entries_[place] : unset_;
    }

    // Places that have an entry.
    std::size_t size() const { return entries_.size(); }

    void clear() { entries_.clear(); }
    bool empty() const { return entries_.empty(); }

private:
    T unset_;
    std::vector<T> entries_;
};

}  // namespace brelan
