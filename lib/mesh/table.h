// Tables of fixed size, indexed from 1 by the external number, every access checked in every build. The type
// of a table's last number is that of its index: a table of nodes cannot be asked for an element.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <string_view>
#include <type_traits>

#include "mesh/numbers.h"
#include "text/layout.h"

namespace brelan {

[[noreturn]] void fail_outside_table(std::string_view table, std::int32_t number, std::int32_t last);

// Numbers, and records that are all zeros before they are set: a large table of them costs no memory where it
// is never touched.
template <class T>
inline constexpr bool STARTS_AS_ZEROS = std::is_arithmetic_v<T> ||
                                        (std::is_aggregate_v<T> && std::is_trivially_copyable_v<T>);
template <class Tag>
inline constexpr bool STARTS_AS_ZEROS<NumberOf<Tag>> = true;

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
            throw std::bad_alloc();  // GCOVR_EXCL_LINE: tests/faults tries it
        return TableEntries<T>(static_cast<T*>(entries));
    } else {
        return TableEntries<T>(new T[count]());
    }
}

constexpr std::int32_t plain_number(std::int32_t number) {
    return number;
}
template <class Tag>
constexpr std::int32_t plain_number(NumberOf<Tag> number) {
    return number.value;
}

template <std::int32_t N>
std::size_t table_index(std::string_view name, std::int32_t number) {
    const std::uint32_t index = static_cast<std::uint32_t>(number) - 1U;
    if (index >= static_cast<std::uint32_t>(N))
        fail_outside_table(name, number, N);
    return index;
}

// Entries 1 to LAST. The name is shown in the message that ends a run at an access outside.
template <class T, auto LAST, FixedText NAME>
class Table {
public:
    using Index = std::remove_cv_t<decltype(LAST)>;
    static constexpr std::int32_t SIZE = plain_number(LAST);

    T& operator[](Index number) { return entry_[checked(number)]; }
    const T& operator[](Index number) const { return entry_[checked(number)]; }

    void fill(const T& value) { std::fill_n(entry_.get(), SIZE, value); }

    // All zeros again. New memory is all zeros without being written; one table at a time has it twice.
    void clear() { entry_ = table_entries<T>(static_cast<std::size_t>(SIZE)); }

private:
    static std::size_t checked(Index number) { return table_index<SIZE>(NAME.view(), plain_number(number)); }

    TableEntries<T> entry_ = table_entries<T>(static_cast<std::size_t>(SIZE));
};

// A table of entries 1 to LAST for each of the rows 1 to LAST_ROW.
template <class T, auto LAST_ROW, FixedText ROWS_NAME, auto LAST, FixedText NAME>
class RowTable {
public:
    using RowIndex = std::remove_cv_t<decltype(LAST_ROW)>;
    using Index = std::remove_cv_t<decltype(LAST)>;
    static constexpr std::int32_t ROWS = plain_number(LAST_ROW), SIZE = plain_number(LAST);

    template <class Entry>
    struct Row {
        Entry* entries;
        Entry& operator[](Index number) const {
            return entries[table_index<SIZE>(NAME.view(), plain_number(number))];
        }
    };

    Row<T> operator[](RowIndex row) { return {entry_.get() + start_of(row)}; }
    Row<const T> operator[](RowIndex row) const { return {entry_.get() + start_of(row)}; }

private:
    static std::size_t start_of(RowIndex row) {
        return table_index<ROWS>(ROWS_NAME.view(), plain_number(row)) * static_cast<std::size_t>(SIZE);
    }

    TableEntries<T> entry_ =
        table_entries<T>(static_cast<std::size_t>(ROWS) * static_cast<std::size_t>(SIZE));
};

}  // namespace brelan
