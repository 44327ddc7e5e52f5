// The results of a deck: texts that take their places when the deck has ended.
#pragma once

#include <string>
#include <vector>

#include "text/files.h"

namespace brelan {

// A file, and what tells it from all others while the run knows of it.
struct KnownFile {
    NamedFile file;
    std::string identity;
};

class Results {
public:
    struct Entry {
        KnownFile known;
        TextBuffer text;
    };

    // A text takes the place of an earlier one of the same file, which has its name from the first.
    void hold(const KnownFile& known, TextBuffer text);
    // Null where none is held for the file.
    const Entry* find(const std::string& identity) const;
    // What is in the place of a file stays there.
    void drop(const std::string& identity);
    void drop_all() { entries_.clear(); }
    // Replaces the files, in the order in which they were written, and returns them. Ends the run where that
    // fails; what has its place by then is whole.
    std::vector<NamedFile> take_places(Files& files);

private:
    std::vector<Entry> entries_;
};

// The files that a run reads: none of them is written, but a mesh by the result that its deck names.
class Inputs {
public:
    enum class Role { kept, source };  // source: of the deck that runs

    void add(const KnownFile& known, Role role);
    void forget_sources();
    // Ends the run where a file is one of them.
    void refuse(const KnownFile& written, bool may_replace_source) const;

private:
    struct Entry {
        KnownFile known;
        Role role;
    };
    std::vector<Entry> entries_;
};

}  // namespace brelan
