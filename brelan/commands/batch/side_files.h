// Files that a run writes or deletes in the project under names of its own, besides the mesh that a card
// names.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "commands/batch/user_copies.h"
#include "model/deck.h"

namespace brelan::tool {

// The names that a run of the deck may write, without that of the deck's result.
std::vector<std::string> side_file_names(const NotedDeck& deck, const std::filesystem::path& project);

class SideFiles {
public:
    // Notes what there is. With a directory to keep the run's files apart in (empty: none), those of the
    // project are set aside until the run has ended. Throws Failure.
    SideFiles(std::filesystem::path project, const NotedDeck& deck, std::filesystem::path apart);
    ~SideFiles();
    SideFiles(const SideFiles&) = delete;
    SideFiles& operator=(const SideFiles&) = delete;

    // When the batch program has ended: finds what it has written and deleted, moves it to the directory, and
    // puts back what was set aside. Throws Failure.
    void collect();

    const std::vector<std::filesystem::path>& written() const { return written_; }  // where they are now
    const std::vector<std::filesystem::path>& deleted() const { return deleted_; }

    // Where a file of the project is now.
    std::filesystem::path place_of(const std::filesystem::path& file) const;

private:
    struct Entry {
        std::string name;
        std::filesystem::path there;  // its file before the run
        std::string state;            // what tells that it has been written; empty: not there
        std::filesystem::path aside;  // empty: left in its place
    };
    void set_aside(Entry& entry, std::size_t number);
    // Why it cannot be moved; empty where it was.
    std::string move_apart(const Entry& entry, const std::filesystem::path& file);

    std::filesystem::path project_, apart_;
    std::optional<UserCopies> aside_;
    std::vector<Entry> entries_;
    std::vector<std::filesystem::path> written_, deleted_;
    bool collected_ = false;
};

}  // namespace brelan::tool
