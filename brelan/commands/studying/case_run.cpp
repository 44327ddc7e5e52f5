#include "commands/studying/case_run.h"

#include <fmt/core.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <set>
#include <utility>

#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/words.h"
#include "commands/batch/edition.h"
#include "commands/checking/drawn_lines.h"
#include "commands/mesh_run.h"
#include "commands/run_failure.h"
#include "commands/studying/gathering.h"
#include "deck/card_stream.h"
#include "formats/any_target.h"
#include "text/run_end.h"
#include "text/text_line.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view MESSAGES = "messages.txt";

// Not as a whole file: what counts is the record, which comes last and takes its name when it is whole.
void write_text(const fs::path& path, std::string_view text) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    bool good = file != nullptr && std::fwrite(text.data(), 1, text.size(), file) == text.size();
    if (file != nullptr)
        good = std::fclose(file) == 0 && good;
    if (!good)
        throw Failure(fmt::format("{}: cannot be written: {}", path.string(), std::strerror(errno)));
}

// A folder may hold files of a person's own: those of an earlier run of the case alone go.
void clear_folder(const fs::path& folder, const std::optional<CaseRecord>& before) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error)
        throw Failure(fmt::format("{}: cannot be made: {}", folder.string(), error.message()));
    fs::remove(folder / CASE_RECORD, error);
    if (before)
        for (const std::string& name : before->written)
            if (fs::path(name) == fs::path(name).filename())
                fs::remove(folder / name, error);
}

Cut cut_of_word(const std::string& word) {
    return word == "rules" ? Cut::rules : word == "sound" ? Cut::sound : Cut::automatic;
}

// The files that a run has left in the project; not what it was given, nor the base mesh that it began with.
void leave_files_of_run(const MeshRun& run, const RunInput& input, const fs::path& folder,
                        CaseRecord& record) {
    if (run.result.files == nullptr)
        return;
    constexpr std::string_view project = "project/";
    for (const std::string& path : run.result.files->names()) {
        const std::string name = path.starts_with(project) ? path.substr(project.size()) : std::string();
        if (name.empty() || name.find('/') != std::string::npos || name == "deck.dat" ||
            (name == BASE_MESH && name != record.mesh))
            continue;
        const std::string in_run = name_in_run(name);
        const std::string_view text = run.result.files->text(in_run);
        const auto given = input.files.find(in_run);
        if (given != input.files.end() && given->second == text)
            continue;
        write_text(folder / name, text);
        record.written.push_back(name);
    }
}

}  // namespace

CaseRunner::CaseRunner(const fs::path& study, fs::path program)
    : study_(read_study_file(study)),
      plan_(study_),
      deck_(study_.deck, read_file(study_.deck)),
      program_(std::move(program)) {
    std::vector<std::string> names;
    for (const Parameter& parameter : study_.parameters)
        names.push_back(parameter.name);
    const std::string unused = deck_.unused(names);
    for (const Parameter& parameter : study_.parameters)
        if (!unused.empty() && parameter.name == unused)
            throw Failure(fmt::format("{}: {}: no placeholder of {} names it", study_.place(parameter.line),
                                      unused, study_.deck.string()));
    require_known_paths(study_);
    deck_text(1);  // a wrong placeholder is wrong in every case
}

std::string CaseRunner::deck_text(std::size_t number) const {
    std::string text = deck_.deck(plan_.values(number));
    // So that the deck tells its kind by itself.
    if (!study_.kind.empty() && lower(text).find("* kind:") == std::string::npos)
        text.insert(0, fmt::format("* Kind: {}\n", study_.kind));
    return text;
}

std::uint64_t CaseRunner::input_of(std::string_view deck) const {
    std::uint64_t hash = hash_of(study_.cut, hash_of(deck));
    for (const std::string& word : study_.conversions)
        hash = hash_of("\n" + word, hash);
    for (const Wanted& wanted : study_.gather)
        hash = hash_of("\n" + wanted.path, hash);
    return hash_of(study_.deck.filename().string(), hash);
}

const CaseRunner::KeptText& CaseRunner::beside_deck(const std::string& name) {
    const auto [entry, is_new] = beside_.try_emplace(name);
    KeptText& kept = entry->second;
    if (!is_new)
        return kept;
    const fs::path file =
        file_of_card(study_.deck.parent_path().empty() ? "." : study_.deck.parent_path(), name);
    std::error_code error;
    kept.there = !file.empty() && fs::is_regular_file(file, error);
    if (kept.there)
        kept.text = read_file(file);
    kept.mark = fmt::format("{}={:016x}", name, kept.there ? hash_of(kept.text) : 0);
    return kept;
}

bool CaseRunner::is_current(const CaseRecord& record) {
    if (record.number < 1 || record.number > plan_.count())
        return false;
    std::string text;
    try {
        text = deck_text(record.number);
    } catch (const Failure& failure) {
        text = failure.what();
    }
    if (record.input != input_of(text))
        return false;
    for (std::string_view marks = record.files; !marks.empty();) {
        const std::string_view mark = marks.substr(0, marks.find(';'));
        if (beside_deck(std::string(mark.substr(0, mark.rfind('=')))).mark != mark)
            return false;
        marks.remove_prefix(std::min(mark.size() + 1, marks.size()));
    }
    return true;
}

// The meshes that the cards name, and what else a run reads from its project, so that the folder is all that
// the case needs.
void CaseRunner::take_files(const NotedDeck& deck, const fs::path& folder, CaseRecord& record) {
    constexpr std::int32_t base_mesh = 2;
    std::set<std::string> names{"UNIT.DAT", "DV-BRELAN.dat"};
    for (const DeckCard& card : deck.cards) {
        const TextLine line(card.name);
        const bool read = card.type == CardType::name && (card.heading == "FILEA" || card.heading == "FILEB");
        if (read && !line.blank() && is_bare_name(line) &&
            !(deck.mode == base_mesh && line.trimmed() == BASE_MESH))
            names.emplace(line.trimmed());
    }
    for (const std::string& name : names) {
        const KeptText& kept = beside_deck(name);
        record.files += (record.files.empty() ? "" : ";") + kept.mark;
        if (!kept.there)
            continue;
        write_text(folder / name, kept.text);
        record.written.push_back(name);
    }
}

// By what it depends on: to find it reads the deck once more, which is a tenth of a small run.
const Edition& CaseRunner::edition_of(const NotedDeck& deck, const fs::path& folder) {
    std::string key = deck.first_mesh + "\n" + deck.second_mesh;
    for (const std::string_view line : lines_of(deck.text))
        if (lower(line).find("kind") != std::string::npos)
            key += "\n" + std::string(line);
    const auto known = editions_.find(key);
    if (known != editions_.end())
        return known->second;
    return editions_.emplace(key, edition_of_deck(deck, folder, {}, {}).edition).first->second;
}

void CaseRunner::run_deck_of_case(std::string text, const fs::path& folder, CaseRecord& record) {
    const std::string name = study_.deck.filename().string();
    write_text(folder / name, text);
    record.written.push_back(name);
    DeckSource source{name, std::move(text), false};
    if (source.text.starts_with(BYTE_ORDER_MARK)) {
        source.text.erase(0, BYTE_ORDER_MARK.size());
        source.byte_order_mark = true;
    }
    NotedDeck deck = read_deck(source, kind_named(study_.kind).value_or(LayoutKind::displacement));
    take_files(deck, folder, record);
    const Edition edition = edition_of(deck, folder);
    if (edition.kind != deck.kind)
        deck = read_deck(source, edition.kind);
    auto data = data_.find(edition.kind);
    if (data == data_.end())
        data = data_.emplace(edition.kind, package_data(program_, edition.kind)).first;
    const DeckPlace place{folder, {}};
    RunInput input = run_input(deck, edition, place, data->second);
    const MeshRun run = run_with(cut_of_word(study_.cut), {deck, edition, place}, input);
    record.seconds = run.seconds;
    record.cut = run.cut == CutMethod::sound ? "sound" : "rules";
    std::string remarks;
    const auto remark = [&](const std::string& remark_text) { remarks += "remark: " + remark_text + "\n"; };
    if (!run.cut_reason.empty())
        remark(run.cut_reason);
    const RunEnd& end = run.result.end;
    if (end.status != STATUS_OK) {
        const FailedRun failed{
            deck, folder, {}, std::string(MEMORY_DECK), "", {end.status, end.text, end.text}};
        record.state = end.status == STATUS_FOUND ? "stopped" : "failed";
        record.message = failure_message(failed);
        record.details = failure_details(failed);
        return;
    }
    record.state = FINISHED;
    if (run.mesh) {
        record.mesh = name_of_result(run.result);
        leave_files_of_run(run, input, folder, record);
        record.gathered = gathered_values(*run.mesh, study_.gather);
        if (!deck.groups.empty())
            for (const std::string& line : changed_lines(deck, std::nullopt, *run.mesh))
                remark(line);
        Carried carried;
        carried.stages = Stages(*run.mesh, run.result.activity);
        for (const std::string& word : study_.conversions) {
            const std::string target =
                fs::path(record.mesh).stem().string() + "." + (word == "msh2" ? "msh" : word);
            write_any_mesh(*run.mesh, *target_named(word), folder / target, carried, remark);
            record.written.push_back(target);
        }
    } else {
        leave_files_of_run(run, input, folder, record);
    }
    record.details = remarks;
}

void CaseRunner::leave(const CaseRecord& record) const {
    const fs::path folder = study_.directory / CASES / folder_of_case(record.number);
    CaseRecord left = record;
    if (!left.message.empty() || !left.details.empty()) {
        write_text(folder / MESSAGES, (left.message.empty() ? "" : left.message + "\n") + left.details);
        left.written.emplace_back(MESSAGES);
    }
    const fs::path beside = folder / "case.part";
    write_text(beside, record_text(left));
    std::error_code error;
    fs::rename(beside, folder / CASE_RECORD, error);
    if (error)
        throw Failure(
            fmt::format("{}: cannot be written: {}", (folder / CASE_RECORD).string(), error.message()));
}

void CaseRunner::run(std::size_t number) {
    const fs::path folder = study_.directory / CASES / folder_of_case(number);
    clear_folder(folder, read_record(study_.directory, number));
    CaseRecord record;
    record.number = number;
    std::string text;
    try {
        text = deck_text(number);
        record.input = input_of(text);
    } catch (const Failure& failure) {
        record.input = input_of(failure.what());
        record.state = "no deck";
        record.message = failure.what();
        leave(record);
        return;
    }
    try {
        run_deck_of_case(std::move(text), folder, record);
    } catch (const Failure& failure) {
        record.state = "failed";
        record.message = failure.what();
    } catch (const RunEnd& end) {
        record.state = "failed";
        record.message = end.text;
    }
    leave(record);
}

void CaseRunner::note_end(const CaseEnd& end) {
    CaseRecord record;
    record.number = end.number;
    record.input = input_of(deck_text(end.number));
    record.seconds = end.seconds;
    record.written.push_back(study_.deck.filename().string());
    if (end.how == CaseEnd::How::time_limit) {
        record.state = "time limit";
        record.message = fmt::format("ended after {:.3g} s, the study's time_limit", study_.time_limit);
    } else {
        record.state = "crashed";
        record.message = end.signal > 0
                             ? fmt::format("the process that ran it was ended by signal {}", end.signal)
                             : std::string("the process that ran it has ended");
    }
    std::error_code error;
    fs::create_directories(study_.directory / CASES / folder_of_case(end.number), error);
    leave(record);
}

}  // namespace brelan::tool
