#include "study/case_record.h"

#include <fmt/core.h>

#include <charconv>
#include <cstdio>
#include <memory>

#include "cli/words.h"

namespace brelan::tool {

namespace {

constexpr std::string_view LAST_LINE = "end";

// Values on lines of their own: a backslash, "n" for a line end.
std::string on_one_line(std::string_view text) {
    std::string line;
    for (const char c : text)
        line += c == '\\' ? std::string("\\\\") : c == '\n' ? std::string("\\n") : std::string(1, c);
    return line;
}

std::string with_line_ends(std::string_view line) {
    std::string text;
    for (std::size_t at = 0; at < line.size(); ++at) {
        const bool mark = line[at] == '\\' && at + 1 < line.size();
        text += !mark ? line[at] : line[at + 1] == 'n' ? '\n' : line[at + 1];
        at += mark ? 1 : 0;
    }
    return text;
}

// A text that looks like a number stays a text by a quotation mark in front.
std::string marked_text(const StudyValue& value) {
    return std::holds_alternative<std::string>(value) ? "\"" + std::get<std::string>(value)
                                                      : text_of_value(value);
}

StudyValue value_of_mark(const std::string& text) {
    if (text.starts_with('"'))
        return text.substr(1);
    return value_of_text(text);
}

template <class Number>
Number number_in(std::string_view text, int base) {
    Number number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number, base);
    return number;
}

}  // namespace

std::string folder_of_case(std::size_t number) {
    return fmt::format("{:05}/{:06}", number / 1000, number);
}

std::uint64_t hash_of(std::string_view text, std::uint64_t before) {
    for (const char c : text)
        before = (before ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
    return before;
}

std::string record_text(const CaseRecord& record) {
    std::string text = fmt::format("case {}\ninput {:016x}\nstate {}\nseconds {:.4f}\n", record.number,
                                   record.input, record.state, record.seconds);
    const auto line = [&](std::string_view name, std::string_view value) {
        if (!value.empty())
            text += fmt::format("{} {}\n", name, on_one_line(value));
    };
    line("files", record.files);
    line("cut", record.cut);
    line("mesh", record.mesh);
    line("message", record.message);
    line("details", record.details);
    for (const std::string& name : record.written)
        line("written", name);
    for (const auto& [name, value] : record.gathered)
        text += fmt::format("value {}\t{}\n", name, on_one_line(marked_text(value)));
    return text + std::string(LAST_LINE) + "\n";
}

std::optional<CaseRecord> record_of_text(std::string_view text) {
    CaseRecord record;
    bool whole = false;
    for (const std::string_view line : lines_of(text)) {
        const std::size_t blank = std::min(line.find(' '), line.size());
        const std::string_view name = line.substr(0, blank);
        const std::string value = with_line_ends(line.substr(std::min(blank + 1, line.size())));
        if (name == "case")
            record.number = number_in<std::size_t>(value, 10);
        else if (name == "input")
            record.input = number_in<std::uint64_t>(value, 16);
        else if (name == "state")
            record.state = value;
        else if (name == "seconds")
            std::from_chars(value.data(), value.data() + value.size(), record.seconds);
        else if (name == "files")
            record.files = value;
        else if (name == "cut")
            record.cut = value;
        else if (name == "mesh")
            record.mesh = value;
        else if (name == "message")
            record.message = value;
        else if (name == "details")
            record.details = value;
        else if (name == "written")
            record.written.push_back(value);
        else if (name == "value") {
            const std::size_t tab = std::min(value.find('\t'), value.size());
            record.gathered.emplace_back(value.substr(0, tab),
                                         value_of_mark(value.substr(std::min(tab + 1, value.size()))));
        } else if (name == LAST_LINE)
            whole = true;
    }
    return whole && record.number > 0 && !record.state.empty() ? std::optional(record) : std::nullopt;
}

std::optional<CaseRecord> read_record(const std::filesystem::path& study, std::size_t number) {
    const std::filesystem::path file = study / CASES / folder_of_case(number) / CASE_RECORD;
    // Most are not there while cases are still to be run: that is no failure.
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(file.c_str(), "rb"),
                                                                 &std::fclose);
    if (!stream)
        return std::nullopt;
    std::string text;
    char piece[4096];
    while (const std::size_t count = std::fread(piece, 1, sizeof piece, stream.get()))
        text.append(piece, count);
    return record_of_text(text);
}

}  // namespace brelan::tool
