// Numbered text channels: sequential text files with rewind, stepping back by lines and closing with
// deletion.
//
// A channel holds its file as text (one that is read forward, a piece of it) and writes it to the files of
// the run (text/files.h) as it grows, when it is rewound and when it is closed; a record written behind
// others replaces what followed. Results are held until their deck has ended (text/results.h). Lines end with
// LF or CR LF on input and with LF on output. The numbers of the package's channels are listed in
// text/channel_numbers.h.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "text/files.h"
#include "text/results.h"
#include "text/run_end.h"
#include "text/text_buffer.h"
#include "text/text_line.h"

namespace brelan {

enum class OpenStatus {
    old,          // must exist; is only read, and not written later in the run
    forward,      // the same, read once from start to end, and never held whole
    setting_old,  // must exist; is only read, and may be written as a setting
    setting,      // is replaced as a whole when it is closed
    fresh,        // the same; must not exist
    work,         // a file of the program's own: created, or emptied at once
    result,  // the result that a deck names: replaced as a whole when the deck has ended; an input of it, too
    side_result,  // the same under a name of the program's own, which no input has
    scratch,      // a file of the program's own that is deleted when it is closed: it stays in memory
};

enum class CloseAction { keep, remove };

// Where the lines of a working copy stem from: the user's file, and the line there for each line of the copy
// from 0; 0 where none is known.
struct LineOrigin {
    std::string name;
    std::vector<int> line;
    std::set<int> cut;  // lines of the copy whose last column is in the middle of a word
};

class Channels;

class Channel {
public:
    Channel() = default;
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    bool is_open() const { return open_; }
    const std::string& name() const { return at_.file.name; }

    // --- reading ---------------------------------------------------------------------------------

    // True when no line is left to read.
    bool at_end() const { return position_ >= content_.size(); }

    // Asked before each record of a channel that is read forward: brings the next line into memory and gives
    // up what has been read. False at the end of the file.
    bool more();

    // The next line, whole and without its end; the view holds until the channel is written or closed.
    // Ends the run at the end of the file, naming what was expected.
    std::string_view read_whole_line(std::string_view expected);

    // The next line as a record of 126 columns.
    TextLine read_line(std::string_view expected) { return TextLine(read_whole_line(expected)); }

    // True when the line that was read last is a copy that ends in the middle of a word.
    bool was_cut() const { return origin_.cut.contains(lines_before_ - 1); }

    // The next line without moving past it; empty at the end of the file.
    std::string_view peek_line() const;

    void skip_lines(int count, std::string_view expected);

    // At the start of a file: true when a byte order mark stands here, and goes behind it.
    bool pass_byte_order_mark();

    // Lines from the start of the file to the current position.
    int lines_before() const { return lines_before_; }

    void rewind();
    void step_back(int lines);

    // Ends the run with "<file>, line <n>: <message>" for the line a reader stands on.
    [[noreturn]] void fail_here(std::string_view message) const { fail_at(place_here(), message); }
    // The same for the line that was read last.
    [[noreturn]] void fail_behind(std::string_view message) const { fail_at(place_behind(), message); }

    // Where the reader stands, and the line that was read last, for a message about what it holds.
    FilePlace place_here() const { return place_of(lines_before_); }
    FilePlace place_behind() const { return place_of(lines_before_ - 1); }

    // --- writing ---------------------------------------------------------------------------------

    // Room for a record of at most `size` characters; the caller fills it and calls end_record with the count
    // that it used. The line end is put by end_record.
    char* begin_record(std::size_t size);
    void end_record(std::size_t used);

    // Writes one line. Text longer than a record of this program is no error here: the caller cuts.
    void write_line(std::string_view text);

    // Writes the line as 126 columns, trailing blanks included.
    void write_columns(std::string_view line);

    // From now on each record written is remembered to stem from the line that was last read on the source,
    // so that a message about this working copy names the user's own file and line.
    void follow(const Channel& source);

    // Hands the origins of a copy on to the channel that reads it again.
    const LineOrigin& origin() const { return origin_; }
    void set_origin(const LineOrigin& origin) { origin_ = origin; }

    // What the channel holds; the view is good until it is written or closed.
    std::string_view text() const { return content_.view(); }

    // A result holds all that it is to hold: it takes its place even where the run stops before the end.
    void finish() { finished_ = true; }

    // Writes what is pending to disk.
    void flush();

    // Every record goes to disk at once.
    void set_write_through(bool on) { write_through_ = on; }

    // The channel is never rewound, stepped back or read: what is written is not held.
    void set_write_only(bool on) {
        write_only_ = on;
        discards_ = on && file_ != nullptr && !file_->keeps_text();
    }

    // True when nobody will read what is written: a record is then passed over instead of being made.
    bool discards() const { return discards_; }
    void pass_record() { ++lines_before_; }

private:
    friend class FreeFieldReader;
    friend class Channels;

    // When what is written reaches its file.
    enum class Placing { as_it_grows, at_close, with_deck, never };

    void open(Channels& channels, std::string_view name, OpenStatus status);
    void read(Channels& channels, OpenStatus status);
    void write(Channels& channels, OpenStatus status, FileKind kind);
    void open_to_append(Channels& channels, std::string_view name);
    void refuse_in_use(const Channels& channels, OpenStatus status) const;
    void open_in_memory(std::string_view name, std::string_view text);
    void close(CloseAction action);
    void abandon();
    void place();
    void read_piece();
    void cut_behind_position();
    FilePlace place_of(int line) const;

    bool open_ = false;
    bool writable_ = false;
    bool finished_ = false;
    bool write_through_ = false;
    bool write_only_ = false;
    bool discards_ = false;
    bool broken_ = false;  // a write failed: nothing more is tried
    Placing placing_ = Placing::as_it_grows;
    KnownFile at_;  // its name as the program or the deck wrote it, without trailing blanks
    Channels* channels_ = nullptr;
    std::unique_ptr<OpenFile> file_;  // only for channels that may be written, or are read forward
    TextBuffer content_;
    std::size_t position_ = 0;  // of the next character to be read or written
    std::size_t record_start_ = 0;
    std::size_t written_ = 0;  // characters of content_ that are in the file already
    int lines_before_ = 0;     // lines in front of position_

    // Where the lines of a working copy stem from.
    const Channel* followed_ = nullptr;
    LineOrigin origin_;
};

// The numbered channels of a run.
class Channels {
public:
    explicit Channels(std::shared_ptr<Files> files) : files_(std::move(files)) {}
    explicit Channels(Directories directories = {})
        : Channels(std::make_shared<DiskFiles>(std::move(directories))) {}

    // The channel of a number from 1 to 999. Ends the run when it is not open.
    Channel& at(int number);

    // True when the channel is open.
    bool is_open(int number);

    // Opens a file on a channel, positioned at its start; a channel that is open is closed first. Ends the
    // run when the file cannot be opened as the status asks, or when it is open on another channel and one of
    // the two writes.
    Channel& open(int number, std::string_view name, OpenStatus status);

    // Opens a file that this run began earlier to write on behind its end.
    Channel& continue_file(int number, std::string_view name);

    // Opens a channel without a file, on a text that is read or written on; `name` stands for it in messages.
    Channel& open_in_memory(int number, std::string_view name, std::string_view text = {});

    // Closes a channel, keeping or deleting its file. A channel that is not open is passed over.
    void close(int number, CloseAction action = CloseAction::keep);

    // Writes what is pending on every channel to its file.
    void flush_all();

    // Closes every channel as a run ends, whatever way; a write that fails here is not reported. Results that
    // have not taken their places are given up.
    void close_all() noexcept;

    // Results, those of the deck that runs: when it has ended they take their places.
    void take_results();
    // The same where the deck does not reach its end: results that are finished or closed take their places.
    void take_finished_results();

    // A file that the deck names as a source: no file takes its place from now on, but its result.
    void expect_source(std::string_view name);
    // Ends the run where a file that the deck will write cannot be, or is one that the run reads. What cannot
    // be said before it is opened is passed over.
    void expect_result(std::string_view name, OpenStatus status) const;

    // True when a file of the name exists.
    bool file_exists(std::string_view name) const;

    // False for a working file that nobody will see: what it would hold can be handed on as a value.
    bool keeps_file(std::string_view name) const { return files_->keeps(name); }

private:
    friend class Channel;

    static constexpr int NUMBERS = 1000;
    using Slots = std::array<std::unique_ptr<Channel>, NUMBERS>;

    std::unique_ptr<Channel>& slot(int number);
    Channel& begin(int number);
    KnownFile file_of(std::string_view name) const;
    FileKind kind_of(const KnownFile& known) const;

    std::shared_ptr<Files> files_;
    Results results_;
    Inputs inputs_;
    std::set<std::string> written_;  // by this run: the identities of the files
    Slots slots_;
};

}  // namespace brelan
