// What a page asks while a deck is edited: each question is answered from the text that comes with it.
#pragma once

#include <atomic>
#include <condition_variable>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>

#include "cli/context.h"
#include "cli/file_watch.h"
#include "cli/json.h"
#include "commands/commands.h"
#include "commands/editing/deck_file.h"
#include "commands/memory_run.h"
#include "commands/mesh_run.h"
#include "page/server.h"

namespace brelan::tool {

class EditSession {
public:
    EditSession(const EditOptions& options, const Context& context);

    ~EditSession();
    EditSession(const EditSession&) = delete;
    EditSession& operator=(const EditSession&) = delete;

    // Of the page.
    const std::string& address() const { return server_.address(); }

private:
    struct Drawn;  // the run whose mesh is shown
    class Follower;
    using Newest = std::atomic<std::int64_t>;  // number of the newest text that a page wants to be run

    PageRoutes routes();

    Answer deck();
    Answer check(const Json& question);
    Answer doubts(const Json& question);
    Answer move(const Json& question);
    Answer draw(const Json& question);
    Answer run(const Json& question);
    Answer details(const Json& question);
    Answer save(const Json& question);

    // The deck of a text, noted for its edition.
    struct Noted {
        NotedDeck deck;
        Edition edition;
    };
    Noted noted(const std::string& shown);

    // Tells the page of what others write, until the session ends.
    void watch(const std::stop_token& end);

    const TextsByName& data_of(LayoutKind kind);

    std::shared_ptr<Newest> newest_of(const std::string& page);

    const EditOptions options_;
    const Context context_;
    FileWatch changes_;  // of the file, from before it is read, so that none is missed
    DeckFile file_;
    DeckPlace place_;
    std::mutex data_mutex_;
    std::map<LayoutKind, TextsByName> data_;  // of the package, read when a deck of the kind is run first
    std::mutex newest_mutex_;
    std::map<std::string, std::shared_ptr<Newest>> newest_;  // by the names of the pages
    std::atomic<bool> ends_soon_ = false;
    std::mutex run_mutex_;  // one run at a time
    std::mutex drawn_mutex_;
    std::shared_ptr<const Drawn> drawn_;
    PageServer server_;  // it answers as soon as it is there
    std::condition_variable_any ends_;
    std::jthread watcher_;  // tells of the changes; last, so that it ends first
};

}  // namespace brelan::tool
