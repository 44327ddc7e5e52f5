// Record layouts as text, checked when compiled.
//
//     constexpr Layout<"(1X,I6,5I5,1X,2(E13.6,1X))"> NODE_RECORD;
//     NODE_RECORD.write(channel, n, idx, idy, idt, 1, 1, x, y);
//
// The notation: In integer, Ew.d and ESw.d scientific, Fw.d fixed, Aw text of w columns, A text of its own
// length, nX blanks, 'text' literal; repeat counts in front of In, Ew.d, ... and of groups in parentheses.
// The parser runs at compile time: a wrong notation, and a wrong count or kind of arguments, does not
// compile.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

#include "text/channels.h"
#include "text/number_text.h"

namespace brelan {

template <std::size_t N>
struct FixedText {
    char text[N]{};
    constexpr FixedText(const char (&from)[N]) { std::copy_n(from, N, text); }  // NOLINT: a literal is a text
    constexpr std::string_view view() const { return {text, N - 1}; }
};

enum class FieldKind : char { integer, exponent, scientific, fixed, text, own_text, blanks, literal };

struct LayoutField {
    FieldKind kind = FieldKind::blanks;
    int width = 0;   // columns; 0 for a text of its own length
    int digits = 0;  // behind the point; for a literal the place of its text in the notation
    constexpr bool takes_value() const { return kind != FieldKind::blanks && kind != FieldKind::literal; }
};

// A layout with its repeats written out.
struct LayoutFields {
    static constexpr int MOST = 64;
    std::array<LayoutField, MOST> field{};
    int count = 0;
    bool valid = false;
};

// Reads the notation. The result is not valid where the notation is not.
class LayoutParser {
public:
    constexpr explicit LayoutParser(std::string_view notation) : notation_(notation) {}

    constexpr LayoutFields parse() {
        LayoutFields fields;
        fields.valid = group(fields) && at_ == notation_.size();
        return fields;
    }

private:
    constexpr bool next_is(char c) const { return at_ < notation_.size() && notation_[at_] == c; }
    constexpr bool take(char c) {
        if (!next_is(c))
            return false;
        ++at_;
        return true;
    }
    constexpr bool next_is_digit() const {
        return at_ < notation_.size() && notation_[at_] >= '0' && notation_[at_] <= '9';
    }
    constexpr int number() {
        int value = 0;
        while (at_ < notation_.size() && notation_[at_] >= '0' && notation_[at_] <= '9')
            value = value * 10 + (notation_[at_++] - '0');
        return value;
    }
    constexpr bool append(LayoutFields& fields, LayoutField field, int repeats) const {
        for (int i = 0; i < repeats; ++i) {
            if (fields.count == LayoutFields::MOST)
                return false;
            fields.field[static_cast<std::size_t>(fields.count++)] = field;
        }
        return true;
    }
    constexpr bool group(LayoutFields& fields) {
        if (!take('('))
            return false;
        do {
            if (!item(fields))
                return false;
        } while (take(','));
        return take(')');
    }
    constexpr bool item(LayoutFields& fields) {
        const std::size_t start = at_;
        const int repeats = number();
        const bool repeated = at_ != start;
        if (repeated && repeats == 0)
            return false;
        if (next_is('(')) {
            const std::size_t group_start = at_;
            for (int i = 0; i < (repeated ? repeats : 1); ++i) {
                at_ = group_start;
                if (!group(fields))
                    return false;
            }
            return true;
        }
        if (take('\'')) {
            const std::size_t text = at_;
            while (at_ < notation_.size() && notation_[at_] != '\'')
                ++at_;
            const int width = static_cast<int>(at_ - text);
            return !repeated && take('\'') &&
                   append(fields, {FieldKind::literal, width, static_cast<int>(text)}, 1);
        }
        if (take('X'))
            return repeated && append(fields, {FieldKind::blanks, repeats, 0}, 1);
        LayoutField field;
        if (take('I'))
            field.kind = FieldKind::integer;
        else if (take('E'))
            field.kind = take('S') ? FieldKind::scientific : FieldKind::exponent;
        else if (take('F'))
            field.kind = FieldKind::fixed;
        else if (take('A'))
            field.kind = FieldKind::text;
        else
            return false;
        const bool has_width = next_is_digit();
        field.width = number();
        if (has_width && field.width == 0)
            return false;
        if (field.kind == FieldKind::text && field.width == 0) {
            field.kind = FieldKind::own_text;
        } else if (field.width == 0) {
            return false;
        } else if (field.kind != FieldKind::integer && field.kind != FieldKind::text) {
            if (!take('.') || !next_is_digit())
                return false;
            field.digits = number();
            if (field.digits >= field.width)
                return false;
        }
        return append(fields, field, repeated ? repeats : 1);
    }

    std::string_view notation_;
    std::size_t at_ = 0;
};

// True for a notation that a Layout can be made of.
constexpr bool is_layout(std::string_view notation) {
    return LayoutParser(notation).parse().valid;
}

template <FixedText NOTATION>
class Layout {
public:
    static constexpr LayoutFields FIELDS = LayoutParser(NOTATION.view()).parse();
    static_assert(FIELDS.valid, "this is not the notation of a record layout");

    static constexpr const LayoutField& field_at(int i) { return FIELDS.field[static_cast<std::size_t>(i)]; }

    // Values that one record takes.
    static constexpr int VALUES = [] {
        int values = 0;
        for (int i = 0; i < FIELDS.count; ++i)
            values += FIELDS.field[static_cast<std::size_t>(i)].takes_value() ? 1 : 0;
        return values;
    }();

    // True when the arguments fit the first fields in kind: integers, reals and texts each to their own.
    template <class... Values>
    static constexpr bool accepts_front() {
        if (sizeof...(Values) > static_cast<std::size_t>(VALUES))
            return false;
        [[maybe_unused]] int field = 0;
        return (fits<Values>(field) && ...);
    }
    // True when the arguments fit all fields.
    template <class... Values>
    static constexpr bool accepts() {
        return sizeof...(Values) == static_cast<std::size_t>(VALUES) && accepts_front<Values...>();
    }

    // Columns of a record, texts of their own length apart.
    static constexpr std::size_t columns() { return WIDTH; }

    // Puts the fields at a place in a record that is being built, and returns the place behind them.
    template <class... Values>
    requires(accepts<Values...>()) char* put(char* at, const Values&... values) const {
        put_all(at, std::make_index_sequence<sizeof...(Values)>{}, values...);
        return at;
    }

    // Writes one record.
    template <class... Values>
    requires(accepts<Values...>()) void write(Channel& channel, const Values&... values) const {
        write_values(channel, values...);
    }

    // Writes a record that ends with the last value given. Blanks behind it are written, those in front of a
    // value that is not there are not.
    template <class... Values>
    requires(accepts_front<Values...>()) void write_front(Channel& channel, const Values&... values) const {
        write_values(channel, values...);
    }

    // Writes a list, beginning a new record whenever the layout is full. An empty list is one empty record.
    template <class Number>
    void write_list(Channel& channel, std::span<const Number> values) const {
        static_assert(all_take<Number>(), "a list has one kind of value");
        if (values.empty())
            channel.write_line("");
        while (!values.empty()) {
            const std::size_t part = std::min(values.size(), static_cast<std::size_t>(VALUES));
            char* const begin = channel.begin_record(WIDTH);
            char* at = begin;
            int field = 0;
            for (std::size_t i = 0; i < part; ++i)
                put_next(at, field, values[i]);
            put_blanks(at, field);
            channel.end_record(static_cast<std::size_t>(at - begin));
            values = values.subspan(part);
        }
    }

private:
    static constexpr std::size_t WIDTH = [] {
        int width = 0;
        for (int i = 0; i < FIELDS.count; ++i)
            width += FIELDS.field[static_cast<std::size_t>(i)].width;
        return static_cast<std::size_t>(width);
    }();

    template <class Value>
    static constexpr bool takes(const LayoutField& field) {
        using Plain = std::remove_cvref_t<Value>;
        if (field.kind == FieldKind::integer)
            return std::is_same_v<Plain, std::int32_t>;
        if (field.kind == FieldKind::text || field.kind == FieldKind::own_text)
            return std::is_convertible_v<Plain, std::string_view>;
        return std::is_same_v<Plain, float>;
    }
    template <class Value>
    static constexpr bool fits(int& field) {
        while (!field_at(field).takes_value())
            ++field;
        return takes<Value>(field_at(field++));
    }
    template <class Number>
    static constexpr bool all_take() {
        for (int i = 0; i < FIELDS.count; ++i)
            if (field_at(i).takes_value() && !takes<Number>(field_at(i)))
                return false;
        return true;
    }

    template <class... Values>
    static void write_values(Channel& channel, const Values&... values) {
        if (channel.discards())
            return channel.pass_record();
        const std::size_t own = (own_length(values) + ... + std::size_t{0});
        char* const begin = channel.begin_record(WIDTH + own);
        char* at = begin;
        put_all(at, std::make_index_sequence<sizeof...(Values)>{}, values...);
        channel.end_record(static_cast<std::size_t>(at - begin));
    }

    template <class Value>
    static std::size_t own_length(const Value& value) {
        if constexpr (std::is_convertible_v<Value, std::string_view>)
            return std::string_view(value).size();
        else
            return 0;
    }

    static void put_fill(char*& at, const LayoutField& field) {
        const auto width = static_cast<std::size_t>(field.width);
        if (field.kind == FieldKind::literal)
            std::copy_n(NOTATION.text + field.digits, width, at);
        else
            std::fill_n(at, width, ' ');
        at += width;
    }
    // What stands behind the last value of the layout.
    static void put_rest(char*& at, int& field) {
        for (; field < FIELDS.count; ++field)
            put_fill(at, field_at(field));
    }
    // The blanks that directly follow a value.
    static void put_blanks(char*& at, int& field) {
        if (field < FIELDS.count && field_at(field).kind == FieldKind::blanks && !leads_to_value(field))
            put_fill(at, field_at(field++));
    }
    // True when the blanks at a field belong to a value behind them rather than to the value in front: in a
    // group such as (3X,I5) they come first, in one such as (I5,1X) last.
    static constexpr bool leads_to_value(int field) {
        return FIELDS.count > 0 && field_at(FIELDS.count - 1).takes_value() && field + 1 < FIELDS.count;
    }

    // The place in the layout of each value, known when compiled.
    static constexpr std::array<int, static_cast<std::size_t>(VALUES) + 1> PLACES = [] {
        std::array<int, static_cast<std::size_t>(VALUES) + 1> places{};
        std::size_t value = 0;
        for (int i = 0; i < FIELDS.count; ++i)
            if (field_at(i).takes_value())
                places[value++] = i;
        places[value] = FIELDS.count;
        return places;
    }();

    // Each value with what stands between it and the value before; then what stands behind the last.
    template <std::size_t... INDEX, class... Values>
    static void put_all(char*& at, std::index_sequence<INDEX...>, const Values&... values) {
        (put_one<INDEX>(at, values), ...);
        constexpr std::size_t count = sizeof...(Values);
        int field = count == 0 ? 0 : PLACES[count == 0 ? 0 : count - 1] + 1;
        if constexpr (count == static_cast<std::size_t>(VALUES))
            put_rest(at, field);
        else
            put_blanks(at, field);
    }
    template <std::size_t INDEX, class Value>
    static void put_one(char*& at, const Value& value) {
        constexpr int first = INDEX == 0 ? 0 : PLACES[INDEX == 0 ? 0 : INDEX - 1] + 1;
        for (int field = first; field < PLACES[INDEX]; ++field)
            put_fill(at, field_at(field));
        put_value(at, field_at(PLACES[INDEX]), value);
    }

    template <class Value>
    static void put_next(char*& at, int& field, const Value& value) {
        while (!field_at(field).takes_value())
            put_fill(at, field_at(field++));
        put_value(at, field_at(field++), value);
    }
    static void put_value(char*& at, const LayoutField& field, std::int32_t value) {
        put_integer(at, field.width, value);
        at += field.width;
    }
    static void put_value(char*& at, const LayoutField& field, float value) {
        if (field.kind == FieldKind::exponent)
            put_exponent(at, field.width, field.digits, value);
        else if (field.kind == FieldKind::scientific)
            put_scientific(at, field.width, field.digits, value);
        else
            put_fixed(at, field.width, field.digits, value);
        at += field.width;
    }
    static void put_value(char*& at, const LayoutField& field, std::string_view value) {
        if (field.kind == FieldKind::own_text) {
            at = std::copy(value.begin(), value.end(), at);
            return;
        }
        const auto width = static_cast<std::size_t>(field.width);
        const std::size_t used = std::min(value.size(), width);
        at = std::copy_n(value.data(), used, at);
        at = std::fill_n(at, width - used, ' ');
    }
};

}  // namespace brelan
