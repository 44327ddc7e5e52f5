#include "commands/editing/session.h"

#include <fmt/core.h>

#include <array>
#include <chrono>
#include <utility>

#include "analysis/soundness.h"
#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "commands/batch/pass_trace.h"
#include "commands/editing/deck_json.h"
#include "commands/editing/question.h"
#include "commands/editing/run_answer.h"
#include "text/run_end.h"

namespace brelan::tool {

namespace fs = std::filesystem;

namespace {

constexpr std::array CUT_NAMES{std::pair{"auto", Cut::automatic}, std::pair{"rules", Cut::rules},
                               std::pair{"sound", Cut::sound}};

Cut cut_in(const Json& question) {
    const std::string& wanted = text_in(question, "cut");
    for (const auto& [name, cut] : CUT_NAMES)
        if (wanted == name)
            return cut;
    throw Failure("the question's \"cut\" is none of auto, rules and sound");
}

Answer newer_text() {
    return error_answer(409, "a newer text is run");
}

fs::path file_of(const EditOptions& options) {
    if (options.deck == STANDARD_STREAM)
        throw Failure("expected a deck in a file, which can be saved");
    return options.deck;
}

fs::path project_of(const EditOptions& options) {
    fs::path project = options.project;
    if (project.empty())
        project = fs::path(options.deck).parent_path();
    if (project.empty())
        project = ".";
    std::error_code error;
    if (!fs::is_directory(project, error))
        throw Failure(fmt::format("{}: expected the project's directory", project.string()));
    return project;
}

}  // namespace

struct EditSession::Drawn {
    std::int64_t number;
    MeshRun run;
};

EditSession::EditSession(const EditOptions& options, const Context& context)
    : options_(options),
      context_(context),
      changes_(file_of(options)),
      file_(file_of(options)),
      place_{project_of(options), {}},
      server_(routes(), options.port),
      watcher_([this](const std::stop_token& end) { watch(end); }) {}

EditSession::~EditSession() {
    ends_soon_ = true;  // a run that is in work ends
}

PageRoutes EditSession::routes() {
    return {{{"deck", [this] { return deck(); }}},
            {{"check", [this](const Json& question) { return check(question); }},
             {"doubts", [this](const Json& question) { return doubts(question); }},
             {"move", [this](const Json& question) { return move(question); }},
             {"draw", [this](const Json& question) { return draw(question); }},
             {"run", [this](const Json& question) { return run(question); }},
             {"details", [this](const Json& question) { return details(question); }},
             {"save", [this](const Json& question) { return save(question); }}}};
}

EditSession::Noted EditSession::noted(const std::string& shown) {
    const DeckSource source{file_.path(), file_.deck_of(shown), false};
    Noted noted;
    noted.edition = edition_of_deck(source, place_.project, {}, options_.edition).edition;
    noted.deck = read_deck(source, noted.edition.kind);
    return noted;
}

void EditSession::watch(const std::stop_token& end) {
    std::mutex mutex;
    std::unique_lock lock(mutex);
    while (!ends_.wait_for(lock, end, FileWatch::EACH, [&] { return end.stop_requested(); })) {
        if (!changes_.changed())
            continue;
        try {
            if (const std::optional<DeckState> news = file_.news())
                server_.tell("disk", {{"text", news->text}, {"stamp", news->stamp}});
        } catch (const std::exception& failure) {  // no text, or not to be read
            server_.tell("disk", {{"error", failure.what()}});
        }
    }
}

Answer EditSession::deck() {
    const DeckState state = file_.state();
    Json cuts = Json::Array();
    const char* first = "auto";
    for (const auto& [name, cut] : CUT_NAMES) {
        cuts.push_back(name);
        if (cut == options_.cut)
            first = name;
    }
    const Noted now = noted(state.text);
    return json_answer({{"name", file_.path().filename().string()},
                        {"file", file_.path().string()},
                        {"text", state.text},
                        {"stamp", state.stamp},
                        {"kind", name_of(now.edition.kind)},
                        {"edition", now.edition.number},
                        {"watch", options_.watch},
                        {"cut", first},
                        {"cuts", cuts}});
}

Answer EditSession::check(const Json& question) {
    const Noted now = noted(text_in(question, "text"));
    return json_answer(deck_json(now.deck, now.edition));
}

Answer EditSession::doubts(const Json& question) {
    const Noted now = noted(text_in(question, "text"));
    return json_answer(findings_json(now.deck, now.edition, place_));
}

Answer EditSession::move(const Json& question) {
    return json_answer(move_json(noted(text_in(question, "text")).deck, question));
}

Answer EditSession::draw(const Json& question) {
    return json_answer(draw_json(noted(text_in(question, "text")).deck, question));
}

const TextsByName& EditSession::data_of(LayoutKind kind) {
    const std::scoped_lock lock(data_mutex_);
    const auto found = data_.find(kind);
    return found != data_.end() ? found->second
                                : data_.emplace(kind, package_data(context_.program, kind)).first->second;
}

std::shared_ptr<EditSession::Newest> EditSession::newest_of(const std::string& page) {
    constexpr std::size_t MOST_PAGES = 64;
    const std::scoped_lock lock(newest_mutex_);
    if (newest_.size() > MOST_PAGES)
        std::erase_if(newest_, [](const auto& known) { return known.second.use_count() == 1; });
    std::shared_ptr<Newest>& newest = newest_[page];
    if (!newest)
        newest = std::make_shared<Newest>(0);
    return newest;
}

// Ends a run when its page has a newer text to be run, and tells the page how far a long one has come. What
// comes in first need not have been sent first: a page counts its texts.
class EditSession::Follower : public RunWatcher {
public:
    Follower(EditSession& session, const std::string& page, std::int64_t number)
        : session_(session), newest_(session.newest_of(page)), number_(number) {
        std::int64_t known = *newest_;
        while (known < number_ && !newest_->compare_exchange_weak(known, number_)) {
        }
    }

    bool goes_on(const RunProgress& progress) noexcept override {
        const auto now = std::chrono::steady_clock::now();
        if (now - told_ >= TELL_EACH) {
            told_ = now;
            try {
                session_.server_.tell("progress", {{"number", number_},
                                                   {"pass", progress.pass},
                                                   {"work", work_of_pass(progress.pass)},
                                                   {"deck", progress.deck},
                                                   {"decks", progress.decks},
                                                   {"group", progress.group},
                                                   {"groups", progress.groups},
                                                   {"title", progress.title}});
            } catch (const std::exception&) {  // what cannot be told is told next time
                return !superseded();
            }
        }
        return !superseded();
    }

    bool superseded() const { return number_ < *newest_ || session_.ends_soon_; }

private:
    static constexpr auto TELL_EACH = std::chrono::milliseconds(200);

    EditSession& session_;
    const std::shared_ptr<Newest> newest_;
    const std::int64_t number_;
    std::chrono::steady_clock::time_point told_ = std::chrono::steady_clock::now();
};

Answer EditSession::run(const Json& question) {
    const std::string& text = text_in(question, "text");
    const Cut cut = cut_in(question);
    const std::int64_t number = value_in<std::int64_t>(question, "number");
    constexpr std::size_t LONGEST_NAME = 64;
    const std::string page = question.find("page") != nullptr ? text_in(question, "page") : std::string();
    if (page.size() > LONGEST_NAME)
        throw Failure("the question's \"page\" is no name of a page");
    Follower follower(*this, page, number);

    // One at a time: the one before it ends soon, since this one is newer.
    const std::scoped_lock lock(run_mutex_);
    if (follower.superseded())
        return newer_text();
    Noted now = noted(text);
    RunInput input = run_input(now.deck, now.edition, place_, data_of(now.edition.kind));
    input.watcher = &follower;
    MeshRun run = run_with(cut, {now.deck, now.edition, place_}, input);
    if (follower.superseded())
        return newer_text();
    auto drawn = std::make_shared<const Drawn>(Drawn{number, std::move(run)});
    Answer answer = run_answer(drawn->run, number);
    const std::scoped_lock keeping(drawn_mutex_);
    drawn_ = std::move(drawn);
    return answer;
}

Answer EditSession::details(const Json& question) {
    const std::int64_t number = value_in<std::int64_t>(question, "number");
    std::shared_ptr<const Drawn> drawn;
    {
        const std::scoped_lock lock(drawn_mutex_);
        drawn = drawn_;
    }
    if (!drawn || drawn->number != number || !drawn->run.mesh)
        return error_answer(409, "another mesh is shown");
    return details_answer(*drawn->run.mesh, number);
}

Answer EditSession::save(const Json& question) {
    const bool over = value_in<bool>(question, "over");
    try {
        const DeckState state =
            file_.save(text_in(question, "text"), text_in(question, "stamp"),
                       over ? DeckFile::Replace::whatever_is_there : DeckFile::Replace::what_is_known);
        return json_answer({{"stamp", state.stamp}});
    } catch (const ChangedOnDisk& changed) {
        Answer answer = json_answer({{"error", "the deck was changed by another program"},
                                     {"text", changed.state.text},
                                     {"stamp", changed.state.stamp}});
        answer.status = 409;
        return answer;
    }
}

}  // namespace brelan::tool
