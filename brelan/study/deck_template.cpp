#include "study/deck_template.h"

#include <fmt/core.h>

#include <cmath>
#include <utility>

#include "cli/exit_status.h"
#include "study/expression.h"

namespace brelan::tool {

namespace {

Failure failure_at(const std::filesystem::path& file, int line, std::string_view text) {
    return Failure(fmt::format("{}, line {}: {}", file.string(), line, text));
}

// "[+][0][width][.digits][d|f|e|g]"
bool is_format(std::string_view format) {
    std::size_t at = 0;
    const auto digits = [&] {
        const std::size_t from = at;
        while (at < format.size() && format[at] >= '0' && format[at] <= '9')
            ++at;
        return at - from <= 2;
    };
    if (at < format.size() && format[at] == '+')
        ++at;
    if (!digits())
        return false;
    if (at < format.size() && format[at] == '.') {
        ++at;
        if (!digits())
            return false;
    }
    if (at < format.size() && std::string_view("dfeg").find(format[at]) != std::string_view::npos)
        ++at;
    return at == format.size();
}

std::string formatted_number(double number, const std::string& format) {
    if (format.empty() || format.back() != 'd') {
        constexpr const char* USUAL = "{:.12g}";  // 0.1 + 0.2 is 0.3 on a card
        return fmt::format(fmt::runtime(format.empty() ? USUAL : "{:" + format + "}"), number);
    }
    if (std::fabs(number - std::round(number)) > 1e-9 || std::fabs(number) > 1e15)
        throw Failure(fmt::format("expected a whole number for the format \"{}\", found {}", format, number));
    return fmt::format(fmt::runtime("{:" + format + "}"), std::llround(number));
}

std::string formatted_value(const StudyValue& value, const std::string& format) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        if (!format.empty())
            throw Failure(
                fmt::format("expected a number for the format \"{}\", found \"{}\"", format, *text));
        return *text;
    }
    if (const auto* whole = std::get_if<std::int64_t>(&value))
        return format.empty() ? fmt::format("{}", *whole)
                              : formatted_number(static_cast<double>(*whole), format);
    if (const auto* number = std::get_if<double>(&value))
        return formatted_number(*number, format);
    return {};
}

}  // namespace

DeckTemplate::DeckTemplate(std::filesystem::path file, std::string_view text) : file_(std::move(file)) {
    Piece piece;
    piece.line = 1;
    int line = 1;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        const bool doubled = at + 1 < text.size() && text[at + 1] == c;
        if (c == '\n')
            ++line;
        if ((c == '{' || c == '}') && doubled) {
            piece.text += c;
            ++at;
        } else if (c == '}') {
            throw failure_at(file_, line, "a } without its {; a brace of the deck's own is written }}");
        } else if (c == '{') {
            const std::size_t end = text.find_first_of("}\n", at);
            if (end == std::string_view::npos || text[end] != '}')
                throw failure_at(file_, line, "a { without its }; a brace of the deck's own is written {{");
            const std::string_view inside = text.substr(at + 1, end - at - 1);
            const std::size_t colon = inside.find(':');
            piece.expression = inside.substr(0, colon);
            piece.format = colon == std::string_view::npos ? std::string() : inside.substr(colon + 1);
            piece.line = line;
            if (piece.expression.find_first_not_of(" \t") == std::string::npos)
                throw failure_at(file_, line, "expected a parameter between { and }");
            if (!is_format(piece.format))
                throw failure_at(
                    file_, line,
                    fmt::format("\"{}\": expected a format such as .3f, 8.2f, d or g", piece.format));
            pieces_.push_back(std::move(piece));
            piece = {};
            at = end;
        } else {
            piece.text += c;
        }
    }
    pieces_.push_back(std::move(piece));
}

std::string DeckTemplate::deck(const NamedValues& values) const {
    std::string text;
    for (const Piece& piece : pieces_) {
        text += piece.text;
        if (piece.expression.empty())
            continue;
        try {
            text += formatted_value(evaluate(piece.expression, values), piece.format);
        } catch (const Failure& failure) {
            throw failure_at(file_, piece.line, failure.what());
        }
    }
    return text;
}

std::string DeckTemplate::unused(const std::vector<std::string>& names) const {
    const auto stands_in = [](const std::string& expression, const std::string& name) {
        const auto part_of_name = [&](std::size_t at) {
            return at < expression.size() && is_parameter_name("_" + expression.substr(at, 1));
        };
        for (std::size_t at = 0; (at = expression.find(name, at)) != std::string::npos; ++at)
            if ((at == 0 || !part_of_name(at - 1)) && !part_of_name(at + name.size()))
                return true;
        return false;
    };
    for (const std::string& name : names) {
        bool used = false;
        for (const Piece& piece : pieces_)
            used = used || stands_in(piece.expression, name);
        if (!used)
            return name;
    }
    return {};
}

}  // namespace brelan::tool
