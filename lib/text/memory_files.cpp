#include <algorithm>
#include <cerrno>
#include <cstring>

#include "text/files.h"
#include "text/run_end.h"

namespace brelan {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view WORKING_DIRECTORY = "project/work", DRIVE_C = "C";

// The directories that a run finds without a file in them.
constexpr std::string_view DIRECTORIES[] = {WORKING_DIRECTORY, "C/Vork/Qx/Qxdata"};

bool is_below(std::string_view path, std::string_view directory) {
    return directory.empty() || (path.size() > directory.size() && path[directory.size()] == '/' &&
                                 same_but_for_case(path.substr(0, directory.size()), directory));
}

class MemoryFile : public OpenFile {
public:
    MemoryFile(std::shared_ptr<TextBuffer> text, bool kept) : text_(std::move(text)), kept_(kept) {}

    std::size_t read(char* to, std::size_t size) override {
        const std::size_t read = std::min(size, text_->size() - position_);
        std::copy_n(text_->data() + position_, read, to);
        position_ += read;
        return read;
    }
    void write(std::string_view text) override {
        if (kept_)
            text_->append(text);
    }
    void cut(std::size_t size) override { text_->resize(std::min(size, text_->size())); }
    void close() override {}
    bool keeps_text() const override { return kept_; }

private:
    std::shared_ptr<TextBuffer> text_;
    bool kept_;
    std::size_t position_ = 0;  // of the reading
};

}  // namespace

bool MemoryFiles::CaseBlind::operator()(const std::string& a, const std::string& b) const {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [](char x, char y) { return folded(x) < folded(y); });
}

void MemoryFiles::put(std::string_view name, std::string_view text) {
    replace({std::string(name), path_of(name)}, text);
}

std::string_view MemoryFiles::text(std::string_view name) const {
    const auto found = files_.find(path_of(name).generic_string());
    return found == files_.end() ? std::string_view{} : found->second.text->view();
}

bool MemoryFiles::contains(std::string_view name) const {
    const auto found = files_.find(path_of(name).generic_string());
    return found != files_.end() && found->second.kept;
}

std::vector<std::string> MemoryFiles::names() const {
    std::vector<std::string> names;
    for (const auto& [name, held] : files_)
        if (held.kept)
            names.push_back(name);
    return names;
}

void MemoryFiles::leave_out(std::string_view name) {
    left_out_.insert(path_of(name).generic_string());
}

bool MemoryFiles::keeps(std::string_view name) const {
    return !left_out_.contains(path_of(name).generic_string());
}

fs::path MemoryFiles::path_of(std::string_view name) const {
    const FileNameParts parts = parts_of_file_name(name);
    fs::path path = parts.start == FileNameStart::working   ? fs::path(WORKING_DIRECTORY)
                    : parts.start == FileNameStart::drive_c ? fs::path(DRIVE_C)
                                                            : fs::path("/");
    for (const std::string_view part : parts.parts)
        path /= part;
    return path.lexically_normal();
}

FileKind MemoryFiles::kind_of(const fs::path& path) const {
    const std::string name = path.generic_string();
    if (files_.contains(name))
        return FileKind::ordinary;
    const auto holds = [&](std::string_view other) {
        return same_but_for_case(other, name) || is_below(other, name);
    };
    if (std::any_of(std::begin(DIRECTORIES), std::end(DIRECTORIES), holds) ||
        std::any_of(files_.begin(), files_.end(),
                    [&](const auto& file) { return is_below(file.first, name); }))
        return FileKind::directory;
    return FileKind::none;
}

std::string MemoryFiles::identity(const fs::path& path) const {
    return folded(path.generic_string());
}

void MemoryFiles::load(const NamedFile& file, TextBuffer& content) const {
    require_ordinary(file);
    content.resize(0);
    content.append(files_.at(file.path.generic_string()).text->view());
}

std::unique_ptr<OpenFile> MemoryFiles::open(const NamedFile& file, Access access) {
    const std::string name = file.path.generic_string();
    if (access == Access::forward) {
        require_ordinary(file);
        return std::make_unique<MemoryFile>(files_.at(name).text, true);
    }
    require_replaceable(file);
    Held& held = files_[name];
    if (access == Access::work)
        held = {std::make_shared<TextBuffer>(), !left_out_.contains(name)};
    return std::make_unique<MemoryFile>(held.text, held.kept);
}

void MemoryFiles::require_replaceable(const NamedFile& file) const {
    if (kind_of(file.path.parent_path()) != FileKind::directory)
        fail(file.name + ": the file cannot be created for writing: " + std::strerror(ENOENT));
}

void MemoryFiles::replace(const NamedFile& file, std::string_view text) {
    auto held = std::make_shared<TextBuffer>();
    held->append(text);
    files_[file.path.generic_string()] = {std::move(held)};
}

void MemoryFiles::remove(const NamedFile& file) {
    remove_if_there(file.path);
}

void MemoryFiles::remove_if_there(const fs::path& path) {
    files_.erase(path.generic_string());
}

}  // namespace brelan
