// The files of a run: on disk, or in memory.
#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "text/file_names.h"
#include "text/text_buffer.h"

namespace brelan {

enum class FileKind { none, ordinary, directory, other };

enum class Access {
    forward,  // is read once from start to end
    work,     // a file of the program's own, created or emptied at once
    append,   // is written on behind its end
};

// A file by the name that messages call it, and where it lies.
struct NamedFile {
    std::string name;
    std::filesystem::path path;
};

// A file that is open to be read forward or to be written. Every routine ends the run where it fails.
class OpenFile {
public:
    OpenFile() = default;
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    virtual ~OpenFile() = default;

    // Reads up to a size; fewer characters at the end alone.
    virtual std::size_t read(char* to, std::size_t size) = 0;
    // Writes behind what is there.
    virtual void write(std::string_view text) = 0;
    virtual void cut(std::size_t size) = 0;
    virtual void close() = 0;

    // False where what is written goes nowhere.
    virtual bool keeps_text() const { return true; }
};

class Files {
public:
    Files() = default;
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;
    virtual ~Files() = default;

    // Where a file lies whose name a deck or the program wrote. Ends the run at a name that is none.
    virtual std::filesystem::path path_of(std::string_view name) const = 0;
    virtual FileKind kind_of(const std::filesystem::path& path) const = 0;
    // What is the same for two paths of one file alone, by what it is and not by its name; where there is
    // none, for two names that would be those of one file.
    virtual std::string identity(const std::filesystem::path& path) const = 0;

    // Reads a whole file.
    virtual void load(const NamedFile& file, TextBuffer& content) const = 0;
    virtual std::unique_ptr<OpenFile> open(const NamedFile& file, Access access) = 0;
    // Ends the run where a file of the user's cannot be replaced as a whole, or be made.
    virtual void require_replaceable(const NamedFile& file) const = 0;
    // Replaces a file of the user's as a whole, or makes it.
    virtual void replace(const NamedFile& file, std::string_view text) = 0;
    virtual void remove(const NamedFile& file) = 0;
    // The same where it does not matter whether that succeeds.
    virtual void remove_if_there(const std::filesystem::path& path) = 0;
    // False for a working file whose text goes nowhere.
    virtual bool keeps(std::string_view name) const = 0;

    bool exists(const std::filesystem::path& path) const { return kind_of(path) != FileKind::none; }

protected:
    // Ends the run where a file cannot be read because it is none.
    void require_ordinary(const NamedFile& file) const;
};

class DiskFiles : public Files {
public:
    explicit DiskFiles(Directories directories) : directories_(std::move(directories)) {}

    std::filesystem::path path_of(std::string_view name) const override {
        return resolve_file_name(directories_, name);
    }
    FileKind kind_of(const std::filesystem::path& path) const override;
    std::string identity(const std::filesystem::path& path) const override;
    void load(const NamedFile& file, TextBuffer& content) const override;
    std::unique_ptr<OpenFile> open(const NamedFile& file, Access access) override;
    void require_replaceable(const NamedFile& file) const override;
    void replace(const NamedFile& file, std::string_view text) override;
    void remove(const NamedFile& file) override;
    void remove_if_there(const std::filesystem::path& path) override;
    bool keeps(std::string_view) const override { return true; }

private:
    Directories directories_;
};

// Texts by their names as decks and the program write them: "X" is "project/work/X", "..\X" is "project/X",
// and "C:\X" is "C/X". The case of letters does not count, and a name is shown as it was written first.
class MemoryFiles : public Files {
public:
    // Puts a text in, with the directories that its name needs.
    void put(std::string_view name, std::string_view text);
    // The text of a file, empty where there is none. Good until the file is written or removed.
    std::string_view text(std::string_view name) const;
    bool contains(std::string_view name) const;
    // The files, as "project/work/X"; those that are left out are not among them.
    std::vector<std::string> names() const;

    // A working file that no other channel reads: what is written to it goes nowhere.
    void leave_out(std::string_view name);

    std::filesystem::path path_of(std::string_view name) const override;
    FileKind kind_of(const std::filesystem::path& path) const override;
    std::string identity(const std::filesystem::path& path) const override;
    void load(const NamedFile& file, TextBuffer& content) const override;
    std::unique_ptr<OpenFile> open(const NamedFile& file, Access access) override;
    void require_replaceable(const NamedFile& file) const override;
    void replace(const NamedFile& file, std::string_view text) override;
    void remove(const NamedFile& file) override;
    void remove_if_there(const std::filesystem::path& path) override;
    bool keeps(std::string_view name) const override;

private:
    struct CaseBlind {
        bool operator()(const std::string& a, const std::string& b) const;
    };
    struct Held {
        std::shared_ptr<TextBuffer> text;
        bool kept = true;
    };

    std::map<std::string, Held, CaseBlind> files_;
    std::set<std::string, CaseBlind> left_out_;
};

}  // namespace brelan
