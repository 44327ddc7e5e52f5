// Free-field reading and writing.
//
// Reading takes values in order: blanks, tabs, commas and line ends separate them. Nothing between two
// commas, or in front of a first one, is a null value: it leaves its variable as it stood. n*value stands for
// n values, n* for n null values, and a slash ends the read, leaving what is not yet read as it stood. A read
// goes on over as many lines as it needs and leaves the channel at the line after the last one that it
// touched.
//
// Writing puts one blank in front of a line's first text and of each number, integers as I11 and reals as
// E16.9, so that reading gives the same 32-bit values back; a text directly follows a text.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

#include "text/channels.h"
#include "text/number_text.h"

namespace brelan {

// One read statement. `expected` names the record for the message that ends the run where a value is missing
// or cannot be read.
class FreeFieldReader {
public:
    enum class Reach { over_lines, one_line };

    FreeFieldReader(Channel& channel, std::string_view expected, Reach reach = Reach::over_lines)
        : channel_(channel), expected_(expected), reach_(reach) {}

    void read(std::int32_t& value) { read_value(value); }
    void read(float& value) { read_value(value); }

    // Ends the statement: goes to the start of the line after the one read last. Without any read it passes
    // one line.
    void finish();

private:
    template <class Number>
    void read_value(Number& value);
    template <class Number>
    NumberScan take(std::size_t position, Number& value);
    bool take_repeat_count();
    bool find_value();
    bool at_line_end(const char* at) const;
    void next_line(const char* at);
    [[noreturn]] void fail_value(const char* at, NumberScan scan, bool integer) const;

    Channel& channel_;
    std::string_view expected_;
    Reach reach_;
    bool began_ = false;          // a value has been asked for
    bool ended_ = false;          // by a slash
    bool separator_due_ = false;  // a comma that comes now only ends the value before it
    std::int32_t repeats_ = 0;    // of the value at repeated_ that are still to be given
    std::size_t repeated_ = 0;    // position of the repeated value, NULL_VALUE for repeated nulls

    static constexpr std::size_t NULL_VALUE = static_cast<std::size_t>(-1);
};

// Reads one record: the values in order.
template <class... Numbers>
void read_free(Channel& channel, std::string_view expected, Numbers&... values) {
    FreeFieldReader reader(channel, expected);
    (reader.read(values), ...);
    reader.finish();
}

// Reads a list of values in one statement. An empty list passes one line.
template <class Number>
requires(std::is_same_v<Number, std::int32_t> ||
         std::is_same_v<Number, float>) void read_free_list(Channel& channel, std::string_view expected,
                                                            std::span<Number> values) {
    FreeFieldReader reader(channel, expected);
    for (Number& value : values)
        reader.read(value);
    reader.finish();
}

inline void read_free_list(Channel& channel, std::string_view expected, std::span<std::int32_t> values) {
    read_free_list<std::int32_t>(channel, expected, values);
}

inline void read_free_list(Channel& channel, std::string_view expected, std::span<float> values) {
    read_free_list<float>(channel, expected, values);
}

// Builds one free-field line and writes it when write() is called.
class FreeFieldLine {
public:
    FreeFieldLine& add(std::string_view text);
    FreeFieldLine& add(std::int32_t value);
    FreeFieldLine& add(float value);
    void write(Channel& channel) { channel.write_line(line_); }

private:
    std::string line_;
    bool after_text_ = false;
};

// Writes one free-field line of texts, integers and reals.
template <class... Items>
void write_free(Channel& channel, const Items&... items) {
    if (channel.discards())
        return channel.pass_record();
    FreeFieldLine line;
    (line.add(items), ...);
    line.write(channel);
}

}  // namespace brelan
