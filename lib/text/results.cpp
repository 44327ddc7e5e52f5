#include "text/results.h"

#include <algorithm>

#include "text/run_end.h"

namespace brelan {

namespace {

template <class Entries>
auto entry_of(Entries& entries, const std::string& identity) {
    return std::find_if(entries.begin(), entries.end(),
                        [&](const auto& entry) { return entry.known.identity == identity; });
}

}  // namespace

void Results::hold(const KnownFile& known, TextBuffer text) {
    if (const auto found = entry_of(entries_, known.identity); found != entries_.end())
        found->text = std::move(text);
    else
        entries_.push_back({known, std::move(text)});
}

const Results::Entry* Results::find(const std::string& identity) const {
    const auto found = entry_of(entries_, identity);
    return found == entries_.end() ? nullptr : &*found;
}

void Results::drop(const std::string& identity) {
    if (const auto found = entry_of(entries_, identity); found != entries_.end())
        entries_.erase(found);
}

std::vector<NamedFile> Results::take_places(Files& files) {
    const std::vector<Entry> entries = std::exchange(entries_, {});
    std::vector<NamedFile> replaced;
    for (const Entry& entry : entries) {
        files.replace(entry.known.file, entry.text.view());
        replaced.push_back(entry.known.file);
    }
    return replaced;
}

void Inputs::add(const KnownFile& known, Role role) {
    if (entry_of(entries_, known.identity) == entries_.end())
        entries_.push_back({known, role});
}

void Inputs::forget_sources() {
    std::erase_if(entries_, [](const Entry& entry) { return entry.role == Role::source; });
}

void Inputs::refuse(const KnownFile& written, bool may_replace_source) const {
    const auto input = entry_of(entries_, written.identity);
    if (input == entries_.end() || (may_replace_source && input->role == Role::source))
        return;
    fail(written.file.name + ": the run would write it in the place of " + input->known.file.name +
         ", which it reads; expected a file of its own");
}

}  // namespace brelan
