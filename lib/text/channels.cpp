#include "text/channels.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <system_error>

#include "text/file_names.h"
#include "text/run_end.h"

namespace brelan {

namespace {

namespace fs = std::filesystem;

// Pending text is written to disk when it exceeds this many characters.
constexpr std::size_t WRITE_CHUNK = std::size_t{1} << 20;

std::string without_trailing_blanks(std::string_view name) {
    const std::size_t last = name.find_last_not_of(' ');
    return last == std::string_view::npos ? std::string{} : std::string(name.substr(0, last + 1));
}

std::string system_reason() {
    return std::strerror(errno);
}

bool is_regular(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

}  // namespace

Channel::~Channel() {
    if (file_ != nullptr)
        std::fclose(file_);
}

FilePlace Channel::place_of(int line) const {
    const auto index = static_cast<std::size_t>(std::max(line, 0));
    const FilePlace own{name_, static_cast<int>(index) + 1};
    if (origin_.name.empty())
        return own;
    // A copy names the line it was made from; behind its last line, the line after the last known one.
    if (origin_.line.empty())
        return {origin_.name, 1};
    if (index < origin_.line.size() && origin_.line[index] > 0)
        return {origin_.name, origin_.line[index]};
    if (index == origin_.line.size() && origin_.line[index - 1] > 0)
        return {origin_.name, origin_.line[index - 1] + 1};
    return own;
}

void Channel::fail_write() const {
    fail(name_ + ": the file cannot be written: " + system_reason());
}

// --- opening and closing -------------------------------------------------------------------------

void Channel::open(const Channels& channels, std::string_view name, OpenStatus status) {
    name_ = without_trailing_blanks(name);
    path_ = channels.place_of(name);
    if (status == OpenStatus::scratch) {
        scratch_ = writable_ = open_ = true;
        return;
    }
    std::error_code error;
    const bool exists = fs::exists(path_, error);
    // A file that is open elsewhere is in use. Input stands in memory, so a result may replace it.
    for (const std::unique_ptr<Channel>& other : channels.slots_) {
        if (!exists || other == nullptr || other.get() == this || !other->open_ || other->scratch_)
            continue;
        const bool reads = status == OpenStatus::old || status == OpenStatus::forward;
        const bool both_read = reads && !other->writable_;
        const bool replaces_input =
            status == OpenStatus::result && !other->writable_ && other->file_ == nullptr;
        if (!both_read && !replaces_input && fs::equivalent(path_, other->path_, error) && !error)
            fail(name_ + ": the file is in use in this run as " + other->name_ +
                 "; expected a file of its own");
    }
    if (status == OpenStatus::old) {
        read_content();
        open_ = true;
        return;
    }
    if (status == OpenStatus::forward) {
        file_ = open_source();
        open_ = true;
        return;
    }
    if (exists && fs::is_directory(path_, error))
        fail(name_ + ": expected a file, found a directory");
    if (status == OpenStatus::fresh && exists)
        fail(name_ + ": expected a name that is free, but there is a file of this name");
    const bool keep = status == OpenStatus::result && exists;
    file_ = std::fopen(path_.string().c_str(), keep ? "r+b" : "w+b");
    if (file_ == nullptr)
        fail(name_ + ": the file cannot be " + (exists ? "opened" : "created") +
             " for writing: " + system_reason());
    std::setvbuf(file_, nullptr, _IONBF, 0);
    replace_pending_ = keep;
    writable_ = true;
    open_ = true;
}

void Channel::open_to_append(const Channels& channels, std::string_view name) {
    name_ = without_trailing_blanks(name);
    path_ = channels.place_of(name);
    read_content();
    file_ = std::fopen(path_.string().c_str(), "r+b");
    if (file_ == nullptr || std::fseek(file_, 0, SEEK_END) != 0)
        fail_write();
    std::setvbuf(file_, nullptr, _IONBF, 0);
    on_disk_ = position_ = content_.size();
    lines_before_ = static_cast<int>(std::count(content_.data(), content_.data() + content_.size(), '\n'));
    writable_ = true;
    open_ = true;
}

void Channel::open_in_memory(std::string_view name, std::string_view text) {
    name_ = name;
    content_.resize(text.size());
    std::copy(text.begin(), text.end(), content_.data());
    scratch_ = writable_ = open_ = true;
}

void Channel::flush() {
    if (!writable_ || broken_ || file_ == nullptr || on_disk_ >= content_.size())
        return;
    broken_ = true;  // until the write is known to be done
    if (replace_pending_) {
        std::error_code error;
        if (is_regular(path_))
            fs::resize_file(path_, 0, error);
        if (error)
            fail(name_ + ": the file cannot be emptied: " + error.message());
        std::rewind(file_);
        replace_pending_ = false;
    }
    const std::size_t pending = content_.size() - on_disk_;
    if (std::fwrite(content_.data() + on_disk_, 1, pending, file_) != pending || std::fflush(file_) != 0)
        fail_write();
    on_disk_ = content_.size();
    broken_ = false;
    if (write_only_) {
        content_.resize(0);
        on_disk_ = position_ = 0;
    }
}

void Channel::close(CloseAction action) {
    if (!open_)
        return;
    if (action == CloseAction::keep)
        flush();
    open_ = false;
    std::FILE* file = file_;
    file_ = nullptr;
    if (file != nullptr && std::fclose(file) != 0 && action == CloseAction::keep)
        fail_write();
    if (scratch_) {
        if (path_.empty())
            return;
        // One that a broken-off run has left goes, as it would if this channel had been it.
        std::error_code none_there;
        fs::remove(path_, none_there);
    } else if (action == CloseAction::remove) {
        std::error_code error;
        fs::remove(path_, error);
        if (error)
            fail(name_ + ": the file cannot be deleted: " + error.message());
    }
}

// --- writing -------------------------------------------------------------------------------------

void Channel::cut_behind_position() {
    content_.resize(position_);
    if (static_cast<std::size_t>(lines_before_) < origin_.line.size())
        origin_.line.resize(static_cast<std::size_t>(lines_before_));
    if (on_disk_ <= position_)
        return;
    on_disk_ = position_;
    std::error_code error;
    if (is_regular(path_))
        fs::resize_file(path_, position_, error);
    if (error || std::fseek(file_, static_cast<long>(position_), SEEK_SET) != 0)
        fail_write();
}

char* Channel::begin_record(std::size_t size) {
    if (!writable_)
        fail(name_ + ": the file is open for reading only");
    if (position_ < content_.size())
        cut_behind_position();
    record_start_ = content_.size();
    content_.resize(record_start_ + size + 1);
    return content_.data() + record_start_;
}

void Channel::end_record(std::size_t used) {
    content_.resize(record_start_ + used + 1);
    content_.data()[content_.size() - 1] = '\n';
    position_ = content_.size();
    ++lines_before_;
    if (followed_ != nullptr) {
        const int line = followed_->lines_before_ - 1;
        const auto index = static_cast<std::size_t>(std::max(line, 0));
        const bool copied = !followed_->origin_.name.empty();
        origin_.line.push_back(!copied                                  ? line + 1
                               : index < followed_->origin_.line.size() ? followed_->origin_.line[index]
                                                                        : 0);
    }
    if (write_through_ || content_.size() - on_disk_ > WRITE_CHUNK)
        flush();
}

void Channel::write_line(std::string_view text) {
    std::copy(text.begin(), text.end(), begin_record(text.size()));
    end_record(text.size());
}

void Channel::write_columns(std::string_view line) {
    constexpr auto columns = static_cast<std::size_t>(LINE_COLUMNS);
    char* record = begin_record(columns);
    const std::size_t used = std::min(line.size(), columns);
    std::copy_n(line.data(), used, record);
    std::fill(record + used, record + columns, ' ');
    end_record(columns);
}

void Channel::follow(const Channel& source) {
    followed_ = &source;
    origin_.name = source.origin_.name.empty() ? source.name_ : source.origin_.name;
    origin_.line.resize(static_cast<std::size_t>(lines_before_), 0);
}

// --- the channels of a run -----------------------------------------------------------------------

std::unique_ptr<Channel>& Channels::slot(int number) {
    if (number < 1 || number >= NUMBERS)
        fail("channel " + std::to_string(number) + ": expected a number from 1 to " +
             std::to_string(NUMBERS - 1));
    return slots_[static_cast<std::size_t>(number)];
}

bool Channels::is_open(int number) {
    return slot(number) != nullptr && slot(number)->is_open();
}

Channel& Channels::at(int number) {
    if (!is_open(number))
        fail("channel " + std::to_string(number) + ": no file is open on it");
    return *slot(number);
}

Channel& Channels::begin(int number) {
    close(number);
    slot(number) = std::make_unique<Channel>();
    return *slot(number);
}

Channel& Channels::open(int number, std::string_view name, OpenStatus status) {
    Channel& opened = begin(number);
    opened.open(*this, name, status);
    return opened;
}

Channel& Channels::continue_file(int number, std::string_view name) {
    Channel& opened = begin(number);
    opened.open_to_append(*this, name);
    return opened;
}

Channel& Channels::open_in_memory(int number, std::string_view name, std::string_view text) {
    Channel& opened = begin(number);
    opened.open_in_memory(name, text);
    return opened;
}

void Channels::close(int number, CloseAction action) {
    std::unique_ptr<Channel>& held = slot(number);
    if (held == nullptr)
        return;
    // A channel that follows this one keeps the origins it has noted.
    for (const std::unique_ptr<Channel>& other : slots_)
        if (other != nullptr && other->followed_ == held.get())
            other->followed_ = nullptr;
    held->close(action);
    held.reset();
}

void Channels::flush_all() {
    for (const std::unique_ptr<Channel>& held : slots_)
        if (held != nullptr)
            held->flush();
}

void Channels::close_all() noexcept {
    for (std::unique_ptr<Channel>& held : slots_) {
        try {
            if (held != nullptr)
                held->close(CloseAction::keep);
        } catch (const RunEnd&) {
            // The run ends already with a message of its own; what could be written has been.
        }
        held.reset();
    }
}

bool Channels::file_exists(std::string_view name) const {
    if (without_trailing_blanks(name).empty())
        return false;
    std::error_code error;
    return fs::exists(place_of(name), error);
}

}  // namespace brelan
