#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>

#include "text/files.h"
#include "text/native_file.h"
#include "text/run_end.h"

namespace brelan {

namespace {

namespace fs = std::filesystem;

std::string system_reason() {
    return std::strerror(errno);
}

bool is_regular(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
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

    void empty() override {
        std::error_code error;
        if (is_regular(file_.path))
            fs::resize_file(file_.path, 0, error);
        if (error)
            fail(file_.name + ": the file cannot be emptied: " + error.message());
        std::rewind(stream_);
    }

    void cut(std::size_t size) override {
        std::error_code error;
        if (is_regular(file_.path))
            fs::resize_file(file_.path, size, error);
        if (error || std::fseek(stream_, static_cast<long>(size), SEEK_SET) != 0)
            fail_write();
    }

    void close() override {
        std::FILE* const stream = stream_;
        stream_ = nullptr;
        if (std::fclose(stream) != 0)
            fail_write();
    }

private:
    [[noreturn]] void fail_write() const {
        fail(file_.name + ": the file cannot be written: " + system_reason());
    }

    NamedFile file_;
    std::FILE* stream_;
};

// The stream of a file that is to be read.
std::FILE* source_of(const NamedFile& file) {
    std::FILE* const source = open_stream(file.path, "rb");
    if (source == nullptr)
        fail(file.name + ": the file cannot be opened: " + system_reason());
    return source;
}

}  // namespace

FileKind DiskFiles::kind_of(const fs::path& path) const {
    std::error_code error;
    switch (fs::status(path, error).type()) {
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

bool DiskFiles::same(const fs::path& a, const fs::path& b) const {
    std::error_code error;
    return fs::equivalent(a, b, error) && !error;
}

void DiskFiles::load(const NamedFile& file, TextBuffer& content) const {
    require_ordinary(file);
    DiskFile source(file, source_of(file));
    std::error_code error;
    const std::uintmax_t size = fs::file_size(file.path, error);
    content.resize(error ? 0 : static_cast<std::size_t>(size));
    content.resize(source.read(content.data(), content.size()));
}

std::unique_ptr<OpenFile> DiskFiles::open(const NamedFile& file, Access access) {
    if (access == Access::forward) {
        require_ordinary(file);
        return std::make_unique<DiskFile>(file, source_of(file));
    }
    const bool appends = access == Access::append, keeps = appends || access == Access::replace;
    const std::string what = appends             ? "written"
                             : exists(file.path) ? "opened for writing"
                                                 : "created for writing";
    const auto refuse = [&] { fail(file.name + ": the file cannot be " + what + ": " + system_reason()); };
    std::FILE* const stream = open_stream(file.path, keeps ? "r+b" : "w+b");
    if (stream == nullptr)
        refuse();
    auto opened = std::make_unique<DiskFile>(file, stream);
    // Text comes in large pieces already.
    std::setvbuf(stream, nullptr, _IONBF, 0);
    if (appends && std::fseek(stream, 0, SEEK_END) != 0)
        refuse();
    return opened;
}

void DiskFiles::remove(const NamedFile& file) {
    std::error_code error;
    fs::remove(file.path, error);
    if (error)
        fail(file.name + ": the file cannot be deleted: " + error.message());
}

void DiskFiles::remove_if_there(const fs::path& path) {
    std::error_code none_there;
    fs::remove(path, none_there);
}

}  // namespace brelan
