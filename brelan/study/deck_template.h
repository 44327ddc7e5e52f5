// A deck with placeholders.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "study/value.h"

namespace brelan::tool {

// "{depth}", "{2*depth+1}", "{depth:.3f}" stand for values; "{{" and "}}" for braces.
class DeckTemplate {
public:
    // Throws Failure "FILE, line N: ..." for a placeholder that has no end, and braces that stand alone.
    DeckTemplate(std::filesystem::path file, std::string_view text);

    // The deck of a case. Throws Failure with file and line.
    std::string deck(const NamedValues& values) const;

    // The first of the parameters that no placeholder names; empty where all are used.
    std::string unused(const std::vector<std::string>& names) const;

    const std::filesystem::path& file() const { return file_; }

private:
    struct Piece {
        std::string text;        // as it stands
        std::string expression;  // of the placeholder behind it; empty for none
        std::string format;      // behind its colon
        int line = 0;
    };
    std::filesystem::path file_;
    std::vector<Piece> pieces_;
};

}  // namespace brelan::tool
