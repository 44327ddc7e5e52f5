#include "text/channels.h"

#include <algorithm>
#include <array>
#include <memory>

#include "text/run_end.h"

namespace brelan {

namespace {

// Pending text is written to the file when it exceeds this many characters.
constexpr std::size_t WRITE_CHUNK = std::size_t{1} << 20;

std::string without_trailing_blanks(std::string_view name) {
    const std::size_t last = name.find_last_not_of(' ');
    return last == std::string_view::npos ? std::string{} : std::string(name.substr(0, last + 1));
}

}  // namespace

FilePlace Channel::place_of(int line) const {
    const auto index = static_cast<std::size_t>(std::max(line, 0));
    FilePlace own{at_.file.name, static_cast<int>(index) + 1};
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

// --- opening and closing -------------------------------------------------------------------------

// A file that is open elsewhere is in use. Input stands in memory, so a result may replace it.
void Channel::refuse_in_use(const Channels& channels, OpenStatus status) const {
    const bool reads =
        status == OpenStatus::old || status == OpenStatus::forward || status == OpenStatus::setting_old;
    for (const std::unique_ptr<Channel>& other : channels.slots_) {
        if (other == nullptr || other.get() == this || !other->open_ || other->placing_ == Placing::never)
            continue;
        const bool both_read = reads && !other->writable_;
        const bool replaces_input =
            status == OpenStatus::result && !other->writable_ && other->file_ == nullptr;
        if (!both_read && !replaces_input && at_.identity == other->at_.identity)
            fail(at_.file.name + ": the file is in use in this run as " + other->at_.file.name +
                 "; expected a file of its own");
    }
}

void Channel::read(Channels& channels, OpenStatus status) {
    if (const Results::Entry* const held = channels.results_.find(at_.identity))
        content_.append(held->text.view());
    else if (status == OpenStatus::forward)
        file_ = channels.files_->open(at_.file, Access::forward);
    else
        channels.files_->load(at_.file, content_);
    if (status != OpenStatus::setting_old && !channels.written_.contains(at_.identity))
        channels.inputs_.add(at_, Inputs::Role::kept);
}

void Channel::write(Channels& channels, OpenStatus status, FileKind kind) {
    if (kind == FileKind::directory)
        fail(at_.file.name + ": expected a file, found a directory");
    if (status == OpenStatus::fresh && kind != FileKind::none)
        fail(at_.file.name + ": expected a name that is free, but there is a file of this name");
    channels.inputs_.refuse(at_, status == OpenStatus::result);
    if (status == OpenStatus::work) {
        file_ = channels.files_->open(at_.file, Access::work);
        at_.identity = channels.files_->identity(at_.file.path);
    } else {
        channels.files_->require_replaceable(at_.file);
        placing_ = status == OpenStatus::result || status == OpenStatus::side_result ? Placing::with_deck
                                                                                     : Placing::at_close;
    }
    channels.written_.insert(at_.identity);
    writable_ = true;
}

void Channel::open(Channels& channels, std::string_view name, OpenStatus status) {
    channels_ = &channels;
    at_ = channels.file_of(name);
    if (status == OpenStatus::scratch) {
        channels.inputs_.refuse(at_, false);  // a file of this name goes when the channel is closed
        placing_ = Placing::never;
        writable_ = open_ = true;
        return;
    }
    refuse_in_use(channels, status);
    if (status == OpenStatus::old || status == OpenStatus::forward || status == OpenStatus::setting_old)
        read(channels, status);
    else
        write(channels, status, channels.kind_of(at_));
    open_ = true;
}

void Channel::open_to_append(Channels& channels, std::string_view name) {
    channels_ = &channels;
    at_ = channels.file_of(name);
    channels.files_->load(at_.file, content_);
    file_ = channels.files_->open(at_.file, Access::append);
    written_ = position_ = content_.size();
    lines_before_ = static_cast<int>(std::count(content_.data(), content_.data() + content_.size(), '\n'));
    writable_ = true;
    open_ = true;
}

void Channel::open_in_memory(std::string_view name, std::string_view text) {
    at_.file.name = name;
    content_.resize(0);
    content_.append(text);
    placing_ = Placing::never;
    writable_ = open_ = true;
}

void Channel::flush() {
    if (!writable_ || broken_ || file_ == nullptr || written_ >= content_.size())
        return;
    broken_ = true;  // until the write is known to be done
    file_->write(text().substr(written_));
    written_ = content_.size();
    broken_ = false;
    if (write_only_) {
        content_.resize(0);
        written_ = position_ = 0;
    }
}

// A file to which nothing has been written stays as it was.
void Channel::place() {
    if (content_.size() == 0 && channels_->kind_of(at_) != FileKind::none)
        return;
    if (placing_ == Placing::at_close)
        channels_->files_->replace(at_.file, text());
    else
        channels_->results_.hold(at_, std::move(content_));
}

void Channel::close(CloseAction action) {
    if (!open_)
        return;
    open_ = false;
    if (placing_ == Placing::never) {
        // One that a broken-off run has left goes, as it would if this channel had been it.
        if (!at_.file.path.empty())
            channels_->files_->remove_if_there(at_.file.path);
        return;
    }
    if (action == CloseAction::remove) {
        file_ = nullptr;
        channels_->files_->remove(at_.file);
    } else if (writable_ && placing_ != Placing::as_it_grows) {
        place();
    } else {
        flush();
        if (const std::unique_ptr<OpenFile> file = std::move(file_); file != nullptr)
            file->close();
    }
}

// A result that is cut off does not take the place of one that is whole, nor does one that was never begun.
void Channel::abandon() {
    if (placing_ == Placing::with_deck && content_.size() > 0)
        channels_->results_.drop(at_.identity);
    if (placing_ == Placing::with_deck || placing_ == Placing::at_close)
        open_ = false;
}

// --- writing -------------------------------------------------------------------------------------

void Channel::cut_behind_position() {
    content_.resize(position_);
    if (static_cast<std::size_t>(lines_before_) < origin_.line.size())
        origin_.line.resize(static_cast<std::size_t>(lines_before_));
    if (written_ <= position_)
        return;
    written_ = position_;
    if (file_ != nullptr)
        file_->cut(position_);
}

char* Channel::begin_record(std::size_t size) {
    if (!writable_)
        fail(at_.file.name + ": the file is open for reading only");
    finished_ = false;
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
    if (write_through_ || content_.size() - written_ > WRITE_CHUNK)
        flush();
}

void Channel::write_line(std::string_view text) {
    if (discards_)
        return pass_record();
    std::copy(text.begin(), text.end(), begin_record(text.size()));
    end_record(text.size());
}

void Channel::write_columns(std::string_view line) {
    if (discards_)
        return pass_record();
    constexpr auto columns = static_cast<std::size_t>(LINE_COLUMNS);
    char* record = begin_record(columns);
    const std::size_t used = std::min(line.size(), columns);
    std::copy_n(line.data(), used, record);
    std::fill(record + used, record + columns, ' ');
    end_record(columns);
    if (followed_ != nullptr && line.size() > columns && line[columns - 1] != ' ' && line[columns] != ' ')
        origin_.cut.insert(lines_before_ - 1);
}

void Channel::follow(const Channel& source) {
    followed_ = &source;
    origin_.name = source.origin_.name.empty() ? source.at_.file.name : source.origin_.name;
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
            if (held != nullptr && (held->placing_ == Channel::Placing::as_it_grows ||
                                    held->placing_ == Channel::Placing::never))
                held->close(CloseAction::keep);
        } catch (...) {  // GCOVR_EXCL_LINE: tests/faults tries it
            // The run ends already with a message of its own, for want of memory too; what could be written
            // has been.
        }
        held.reset();
    }
    results_.drop_all();
}

// --- results and inputs --------------------------------------------------------------------------

void Channels::take_results() {
    for (std::unique_ptr<Channel>& held : slots_)
        if (held != nullptr && held->placing_ == Channel::Placing::with_deck) {
            held->close(CloseAction::keep);
            held.reset();
        }
    for (const NamedFile& file : results_.take_places(*files_))
        written_.insert(files_->identity(file.path));
    inputs_.forget_sources();
}

void Channels::take_finished_results() {
    for (const std::unique_ptr<Channel>& held : slots_)
        if (held != nullptr && !held->finished_)
            held->abandon();
    take_results();
}

void Channels::expect_source(std::string_view name) {
    if (const KnownFile known = file_of(name);
        kind_of(known) != FileKind::none && !written_.contains(known.identity))
        inputs_.add(known, Inputs::Role::source);
}

void Channels::expect_result(std::string_view name, OpenStatus status) const {
    const KnownFile known = file_of(name);
    if (kind_of(known) != FileKind::ordinary)
        return;
    inputs_.refuse(known, status == OpenStatus::result);
    if (status != OpenStatus::work)
        files_->require_replaceable(known.file);
}

// --- files ---------------------------------------------------------------------------------------

KnownFile Channels::file_of(std::string_view name) const {
    NamedFile file{without_trailing_blanks(name), files_->path_of(name)};
    std::string identity = files_->identity(file.path);
    return {std::move(file), std::move(identity)};
}

// A result that waits for its deck to end is there.
FileKind Channels::kind_of(const KnownFile& known) const {
    return results_.find(known.identity) != nullptr ? FileKind::ordinary : files_->kind_of(known.file.path);
}

bool Channels::file_exists(std::string_view name) const {
    return !without_trailing_blanks(name).empty() && kind_of(file_of(name)) != FileKind::none;
}

}  // namespace brelan
