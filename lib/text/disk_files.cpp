#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>

#include "text/files.h"
#include "text/native_file.h"
#include "text/run_end.h"
#include "text/whole_file.h"

namespace brelan {

namespace {

namespace fs = std::filesystem;

std::string system_reason() {
    return std::strerror(errno);
}

class DiskFile : public OpenFile {
public:
    DiskFile(NamedFile file, std::FILE* stream) : file_(std::move(file)), stream_(stream) {}
    DiskFile(const DiskFile&) = delete;
    DiskFile& operator=(const DiskFile&) = delete;
    ~DiskFile() override {
        if (stream_ != nullptr)
            std::fclose(stream_);
    }

    std::size_t read(char* to, std::size_t size) override {
        const std::size_t read = std::fread(to, 1, size, stream_);
        if (std::ferror(stream_) != 0)
            fail(file_.name + ": the file cannot be read: " + system_reason());
        return read;
    }

    void write(std::string_view text) override {
        if (std::fwrite(text.data(), 1, text.size(), stream_) != text.size() || std::fflush(stream_) != 0)
            fail_write();
    }

    void cut(std::size_t size) override {
        if (type_of_file(file_.path) == fs::file_type::regular && !resize_stream(stream_, size))
            fail_write();
        if (std::fseek(stream_, static_cast<long>(size), SEEK_SET) != 0)
            fail_write();
    }

    void close() override {
        std::FILE* const stream = stream_;
        stream_ = nullptr;
        if (std::fclose(stream) != 0)
            fail_write();  // GCOVR_EXCL_LINE: a disk far away says it so late; tests/faults tries it
    }

private:
    [[noreturn]] void fail_write() const {
        fail(file_.name + ": the file cannot be written: " + system_reason());
    }

    NamedFile file_;
    std::FILE* stream_;
};

[[noreturn]] void refuse(const NamedFile& file, bool is_there, const std::string& reason) {
    fail(file.name + ": the file cannot be " + (is_there ? "opened" : "created") + " for writing: " + reason);
}

// The stream of a file that is to be read.
std::FILE* source_of(const NamedFile& file) {
    std::FILE* const source = open_stream(file.path, "rb");
    if (source == nullptr)
        fail(file.name + ": the file cannot be opened: " + system_reason());
    return source;
}

}  // namespace

FileKind DiskFiles::kind_of(const fs::path& path) const {
    switch (type_of_file(path)) {
        case fs::file_type::none:
        case fs::file_type::not_found:
            return FileKind::none;
        case fs::file_type::regular:
            return FileKind::ordinary;
        case fs::file_type::directory:
            return FileKind::directory;
        default:
            return FileKind::other;
    }
}

std::string DiskFiles::identity(const fs::path& path) const {
    const auto text = [](const FileNumber& found) {
        return std::to_string(found.volume) + ":" + std::to_string(found.number);
    };
    if (const std::optional<FileNumber> found = number_of_file(path))
        return text(*found);
    const std::optional<FileNumber> directory =
        number_of_file(path.has_parent_path() ? path.parent_path() : fs::path("."));
    return (directory ? text(*directory) : utf_8(path.parent_path())) + "/" + folded(utf_8(path.filename()));
}

void DiskFiles::load(const NamedFile& file, TextBuffer& content) const {
    require_ordinary(file);
    DiskFile source(file, source_of(file));
    std::error_code error;
    const std::uintmax_t size = size_of_file(file.path, error);
    content.resize(error ? 0 : static_cast<std::size_t>(size));
    content.resize(source.read(content.data(), content.size()));
}

std::unique_ptr<OpenFile> DiskFiles::open(const NamedFile& file, Access access) {
    if (access == Access::forward) {
        require_ordinary(file);
        return std::make_unique<DiskFile>(file, source_of(file));
    }
    const bool appends = access == Access::append;
    const bool is_there = exists(file.path);
    std::FILE* const stream = open_stream(file.path, appends ? "r+b" : "w+b");
    if (stream == nullptr)
        refuse(file, is_there, system_reason());
    auto opened = std::make_unique<DiskFile>(file, stream);
    // Text comes in large pieces already.
    std::setvbuf(stream, nullptr, _IONBF, 0);
    if (appends && std::fseek(stream, 0, SEEK_END) != 0)
        refuse(file, is_there, system_reason());
    return opened;
}

void DiskFiles::require_replaceable(const NamedFile& file) const {
    const Replaceable found = replaceable(file.path);
    const bool is_there = exists(file.path);
    if (found.file)
        refuse(file, is_there, found.file.message());
    if (!found.directory)
        return;
    if (!is_there)
        refuse(file, is_there, found.directory.message());
    fail(file.name +
         ": its directory cannot hold the file that is to take its place: " + found.directory.message());
}

void DiskFiles::replace(const NamedFile& file, std::string_view text) {
    if (const FileKind kind = kind_of(file.path); kind == FileKind::other) {
        const std::unique_ptr<OpenFile> there = open(file, Access::work);
        there->write(text);
        there->close();
        return;
    }
    try {
        WholeFile whole(file.path);
        whole.write(text);
        whole.commit();
    } catch (const std::system_error& error) {
        fail(file.name + ": the file cannot be written: " + error.code().message());
    }
}

void DiskFiles::remove(const NamedFile& file) {
    std::error_code error;
    remove_file(file.path, error);
    if (error)
        fail(file.name + ": the file cannot be deleted: " + error.message());
}

void DiskFiles::remove_if_there(const fs::path& path) {
    std::error_code none_there;
    remove_file(path, none_there);
}

}  // namespace brelan
