// One case of a study: its deck, its run, and all that is left in its folder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

#include "commands/memory_run.h"
#include "study/case_record.h"
#include "study/deck_template.h"
#include "study/plan.h"
#include "study/study_file.h"
#include "study/workers.h"

namespace brelan::tool {

class CaseRunner {
public:
    // Throws Failure for a study, deck or table that cannot be read, and for a parameter that no placeholder
    // names. The data of runs lie near the program.
    CaseRunner(const std::filesystem::path& study, std::filesystem::path program);

    const StudyFile& study() const { return study_; }
    const Plan& plan() const { return plan_; }

    // Tells whether a case that has ended is still what the study asks for.
    bool is_current(const CaseRecord& record);

    // Runs a case and leaves its folder; the record is the last file that it gets. Throws Failure where the
    // folder cannot be written.
    void run(std::size_t number);

    // The record of a case whose worker has not come to its end.
    void note_end(const CaseEnd& end);

private:
    struct KeptText {
        std::string text, mark;
        bool there = false;
    };
    std::string deck_text(std::size_t number) const;
    std::uint64_t input_of(std::string_view deck) const;
    const KeptText& beside_deck(const std::string& name);
    void take_files(const NotedDeck& deck, const std::filesystem::path& folder, CaseRecord& record);
    const Edition& edition_of(const NotedDeck& deck, const std::filesystem::path& folder);
    void run_deck_of_case(std::string text, const std::filesystem::path& folder, CaseRecord& record);
    void leave(const CaseRecord& record) const;

    StudyFile study_;
    Plan plan_;
    DeckTemplate deck_;
    std::filesystem::path program_;
    std::map<LayoutKind, TextsByName> data_;
    std::map<std::string, Edition> editions_;
    std::map<std::string, KeptText> beside_;  // files of the deck's directory that runs read
};

}  // namespace brelan::tool
