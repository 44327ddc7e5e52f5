// Tables of fixed size, indexed from 1 by the external number, every access checked in every build.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>

#include "text/layout.h"
#include "text/run_end.h"

namespace brelan {

[[noreturn]] inline void fail_outside_table(std::string_view table, std::int32_t number, std::int32_t last) {
    fail("table " + std::string(table) + ": number " + std::to_string(number) + " is outside 1 to " +
         std::to_string(last));
}

// Numbers, and records that are all zeros before they are set: a large table of them costs no memory where it
// is never touched.
template <class T>
inline constexpr bool STARTS_AS_ZEROS = std::is_arithmetic_v<T> ||
                                        (std::is_aggregate_v<T> && std::is_trivially_copyable_v<T>);

template <class T>
struct ReleaseTable {
    void operator()(T* entries) const {
        if constexpr (STARTS_AS_ZEROS<T>)
            std::free(entries);
        else
            delete[] entries;
    }
};

template <class T>
using TableEntries = std::unique_ptr<T[], ReleaseTable<T>>;

template <class T>
TableEntries<T> table_entries(std::size_t count) {
    if constexpr (STARTS_AS_ZEROS<T>) {
        void* const entries = std::calloc(count, sizeof(T));
        if (entries == nullptr)
            throw std::bad_alloc();
        return TableEntries<T>(static_cast<T*>(entries));
    } else {
        return TableEntries<T>(new T[count]());
    }
}

template <std::int32_t N>
std::size_t table_index(std::string_view name, std::int32_t number) {
    const std::uint32_t index = static_cast<std::uint32_t>(number) - 1U;
    if (index >= static_cast<std::uint32_t>(N))
        fail_outside_table(name, number, N);
    return index;
}

// Entries 1 to N. The name is shown in the message that ends a run at an access outside.
template <class T, std::int32_t N, FixedText NAME>
class Table {
public:
    static constexpr std::int32_t SIZE = N;

    T& operator[](std::int32_t number) { return entry_[checked(number)]; }
    const T& operator[](std::int32_t number) const { return entry_[checked(number)]; }

    void fill(const T& value) { std::fill_n(entry_.get(), N, value); }

private:
    static std::size_t checked(std::int32_t number) { return table_index<N>(NAME.view(), number); }

    TableEntries<T> entry_ = table_entries<T>(static_cast<std::size_t>(N));
};

// A table of N entries for each of ROWS rows, both from 1.
template <class T, std::int32_t ROWS, FixedText ROWS_NAME, std::int32_t N, FixedText NAME>
class RowTable {
public:
    template <class Entry>
    struct Row {
        Entry* entries;
        Entry& operator[](std::int32_t number) const { return entries[table_index<N>(NAME.view(), number)]; }
    };

    Row<T> operator[](std::int32_t row) { return {entry_.get() + start_of(row)}; }
    Row<const T> operator[](std::int32_t row) const { return {entry_.get() + start_of(row)}; }

private:
    static std::size_t start_of(std::int32_t row) {
        return table_index<ROWS>(ROWS_NAME.view(), row) * static_cast<std::size_t>(N);
    }

    TableEntries<T> entry_ = table_entries<T>(static_cast<std::size_t>(ROWS) * static_cast<std::size_t>(N));
};

}  // namespace brelan
