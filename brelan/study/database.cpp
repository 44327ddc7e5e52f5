// The only unit that meets SQLite.
#include "study/database.h"

#include <fmt/core.h>
#include <sqlite3.h>

#include <algorithm>
#include <map>
#include <type_traits>

#include "cli/exit_status.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

constexpr const char* SCHEMA =
    "CREATE TABLE IF NOT EXISTS cases (number INTEGER PRIMARY KEY, input TEXT, files TEXT, state TEXT, "
    "message TEXT,"
    " details TEXT, cut TEXT, mesh TEXT, seconds REAL);"
    "CREATE TABLE IF NOT EXISTS columns (name TEXT PRIMARY KEY, place INTEGER, role TEXT);"
    "CREATE TABLE IF NOT EXISTS facts (name TEXT PRIMARY KEY, value TEXT);";
constexpr std::size_t FIXED = 9;  // columns of every case
constexpr int PATIENCE = 30'000;  // milliseconds, while another process holds the file

std::string quoted_name(const std::string& name) {
    std::string text = "\"";
    for (const char c : name)
        text += c == '"' ? std::string("\"\"") : std::string(1, c);
    return text + "\"";
}

// Of columns; SQLite does not tell letters by their case.
std::string role_prefix(const std::string& role) {
    return role == "parameter" ? "p " : "v ";
}

}  // namespace

struct Database::Handles {
    sqlite3* file = nullptr;
    std::string name;
    sqlite3_stmt* insertion = nullptr;
    std::map<std::string, std::size_t> place;  // of a column with its role, from 0 behind the fixed ones
    bool in_transaction = false;

    ~Handles() {
        sqlite3_finalize(insertion);
        sqlite3_close(file);
    }

    [[noreturn]] void fail() const { throw Failure(fmt::format("{}: {}", name, sqlite3_errmsg(file))); }

    void require(int status) const {
        if (status != SQLITE_OK)
            fail();
    }

    void execute(const std::string& statement) const {
        require(sqlite3_exec(file, statement.c_str(), nullptr, nullptr, nullptr));
    }

    struct Finish {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    using Statement = std::unique_ptr<sqlite3_stmt, Finish>;

    Statement prepared(const std::string& text) const {
        sqlite3_stmt* statement = nullptr;
        require(sqlite3_prepare_v2(file, text.c_str(), -1, &statement, nullptr));
        return Statement(statement);
    }

    bool step(sqlite3_stmt* statement) const {
        const int status = sqlite3_step(statement);
        if (status != SQLITE_ROW && status != SQLITE_DONE)
            fail();
        return status == SQLITE_ROW;
    }

    void bind(sqlite3_stmt* statement, std::size_t at, const StudyValue& value) const {
        const int place_of = static_cast<int>(at) + 1;
        const int status = std::visit(
            [&](const auto& held) {
                using Held = std::decay_t<decltype(held)>;
                if constexpr (std::is_same_v<Held, std::monostate>)
                    return sqlite3_bind_null(statement, place_of);
                else if constexpr (std::is_same_v<Held, std::int64_t>)
                    return sqlite3_bind_int64(statement, place_of, held);
                else if constexpr (std::is_same_v<Held, double>)
                    return sqlite3_bind_double(statement, place_of, held);
                else
                    return sqlite3_bind_text(statement, place_of, held.data(), static_cast<int>(held.size()),
                                             SQLITE_TRANSIENT);
            },
            value);
        require(status);
    }

    static std::string text_at(sqlite3_stmt* statement, int at) {
        const unsigned char* text = sqlite3_column_text(statement, at);
        return text == nullptr ? std::string() : reinterpret_cast<const char*>(text);
    }

    static StudyValue value_at(sqlite3_stmt* statement, int at) {
        switch (sqlite3_column_type(statement, at)) {
            case SQLITE_INTEGER:
                return std::int64_t{sqlite3_column_int64(statement, at)};
            case SQLITE_FLOAT:
                return sqlite3_column_double(statement, at);
            case SQLITE_TEXT:
                return text_at(statement, at);
            default:
                return {};
        }
    }

    void begin() {
        if (!in_transaction)
            execute("BEGIN IMMEDIATE");
        in_transaction = true;
    }

    std::vector<std::string> names(const std::string& role) const {
        const Statement statement = prepared("SELECT name FROM columns WHERE role = ? ORDER BY place");
        bind(statement.get(), 0, role);
        std::vector<std::string> found;
        while (step(statement.get()))
            found.push_back(text_at(statement.get(), 0).substr(role_prefix(role).size()));
        return found;
    }

    void note_columns() {
        const Statement statement = prepared("SELECT name, place FROM columns");
        while (step(statement.get()))
            place[text_at(statement.get(), 0)] =
                static_cast<std::size_t>(sqlite3_column_int64(statement.get(), 1));
    }

    // Of a value that no case before had, a column is added.
    std::size_t column(const std::string& role, const std::string& name_of) {
        const std::string key = role_prefix(role) + name_of;
        const auto found = place.find(key);
        if (found != place.end())
            return found->second;
        const std::size_t at = place.size();
        execute("ALTER TABLE cases ADD COLUMN " + quoted_name(key));
        const Statement statement = prepared("INSERT INTO columns VALUES (?, ?, ?)");
        bind(statement.get(), 0, key);
        bind(statement.get(), 1, static_cast<std::int64_t>(at));
        bind(statement.get(), 2, role);
        step(statement.get());
        place.emplace(key, at);
        sqlite3_finalize(insertion);
        insertion = nullptr;
        return at;
    }

    void prepare_insertion() {
        if (insertion != nullptr)
            return;
        std::string marks = "?";
        for (std::size_t k = 1; k < FIXED + place.size(); ++k)
            marks += ",?";
        insertion = prepared("INSERT OR REPLACE INTO cases VALUES (" + marks + ")").release();
    }
};

Database::Database(const fs::path& file, DatabaseUse use) : handles_(std::make_unique<Handles>()) {
    handles_->name = file.string();
    const int flags =
        use == DatabaseUse::read ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    const int status = sqlite3_open_v2(file.c_str(), &handles_->file, flags, nullptr);
    if (status != SQLITE_OK)
        throw Failure(fmt::format("{}: {}", file.string(), sqlite3_errstr(status)));
    sqlite3_busy_timeout(handles_->file, PATIENCE);
    if (use == DatabaseUse::gather)
        handles_->execute(SCHEMA);
    handles_->note_columns();
}

Database::~Database() = default;

void Database::put(const CaseRow& row) {
    Handles& h = *handles_;
    h.begin();
    std::vector<std::pair<std::size_t, const StudyValue*>> values;
    for (const auto& [name, value] : row.parameters)
        values.emplace_back(h.column("parameter", name), &value);
    for (const auto& [name, value] : row.record.gathered)
        values.emplace_back(h.column("value", name), &value);
    h.prepare_insertion();
    sqlite3_reset(h.insertion);
    sqlite3_clear_bindings(h.insertion);
    const CaseRecord& r = row.record;
    const StudyValue fixed[FIXED] = {static_cast<std::int64_t>(r.number),
                                     fmt::format("{:016x}", r.input),
                                     r.files,
                                     r.state,
                                     r.message,
                                     r.details,
                                     r.cut,
                                     r.mesh,
                                     r.seconds};
    for (std::size_t k = 0; k < FIXED; ++k)
        h.bind(h.insertion, k, fixed[k]);
    for (const auto& [at, value] : values)
        h.bind(h.insertion, FIXED + at, *value);
    h.step(h.insertion);
}

void Database::commit() {
    if (!handles_->in_transaction)
        return;
    if (handles_->insertion != nullptr)
        sqlite3_reset(handles_->insertion);
    handles_->execute("COMMIT");
    handles_->in_transaction = false;
}

void Database::cut_behind(std::size_t last) {
    handles_->begin();
    const auto statement = handles_->prepared("DELETE FROM cases WHERE number > ?");
    handles_->bind(statement.get(), 0, static_cast<std::int64_t>(last));
    handles_->step(statement.get());
}

std::vector<std::string> Database::parameters() const {
    return handles_->names("parameter");
}

std::vector<std::string> Database::gathered() const {
    return handles_->names("value");
}

void Database::for_each(const std::function<void(const CaseRow&)>& take) const {
    const Handles& h = *handles_;
    std::vector<std::pair<std::string, std::size_t>> parameters, values;
    for (const auto& [key, at] : h.place)
        (key.starts_with("p ") ? parameters : values).emplace_back(key.substr(2), at);
    const auto by_place = [](const auto& a, const auto& b) { return a.second < b.second; };
    std::sort(parameters.begin(), parameters.end(), by_place);
    std::sort(values.begin(), values.end(), by_place);
    const auto statement = h.prepared("SELECT * FROM cases ORDER BY number");
    sqlite3_stmt* row = statement.get();
    const auto named = [&](const std::vector<std::pair<std::string, std::size_t>>& columns) {
        NamedValues all;
        for (const auto& [name, at] : columns)
            all.emplace_back(name, Handles::value_at(row, static_cast<int>(FIXED + at)));
        return all;
    };
    while (h.step(row)) {
        CaseRow found;
        CaseRecord& r = found.record;
        r.number = static_cast<std::size_t>(sqlite3_column_int64(row, 0));
        r.input = std::stoull("0" + Handles::text_at(row, 1), nullptr, 16);
        r.files = Handles::text_at(row, 2);
        r.state = Handles::text_at(row, 3);
        r.message = Handles::text_at(row, 4);
        r.details = Handles::text_at(row, 5);
        r.cut = Handles::text_at(row, 6);
        r.mesh = Handles::text_at(row, 7);
        r.seconds = sqlite3_column_double(row, 8);
        found.parameters = named(parameters);
        r.gathered = named(values);
        take(found);
    }
}

void Database::set_fact(const std::string& name, const std::string& value) {
    handles_->begin();
    const auto statement = handles_->prepared("INSERT OR REPLACE INTO facts VALUES (?, ?)");
    handles_->bind(statement.get(), 0, name);
    handles_->bind(statement.get(), 1, value);
    handles_->step(statement.get());
}

std::string Database::fact(const std::string& name) const {
    const auto statement = handles_->prepared("SELECT value FROM facts WHERE name = ?");
    handles_->bind(statement.get(), 0, name);
    return handles_->step(statement.get()) ? Handles::text_at(statement.get(), 0) : std::string();
}

}  // namespace brelan::tool
