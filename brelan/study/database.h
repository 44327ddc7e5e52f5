// The results of a study in one file of SQLite: a table `cases` with a row for each case that has ended, its
// parameters and gathered values as columns; `columns` tells which are which, `facts` what belongs to the
// study as a whole.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "study/case_record.h"

namespace brelan::tool {

struct CaseRow {
    CaseRecord record;
    NamedValues parameters;
};

enum class DatabaseUse { read, gather };

// Throws Failure for whatever SQLite says.
class Database {
public:
    Database(const std::filesystem::path& file, DatabaseUse use);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    // Rows are put in one after the other; all since the last commit() come in with the next one, whole or
    // not at all.
    void put(const CaseRow& row);
    void commit();

    // Without the rows of numbers above the last.
    void cut_behind(std::size_t last);
    // Names of columns in their order.
    std::vector<std::string> parameters() const;
    std::vector<std::string> gathered() const;
    // In ascending number. The record's `written` is not kept.
    void for_each(const std::function<void(const CaseRow&)>& take) const;

    void set_fact(const std::string& name, const std::string& value);
    std::string fact(const std::string& name) const;

private:
    struct Handles;
    std::unique_ptr<Handles> handles_;
};

inline constexpr std::string_view DATABASE = "study.sqlite";

}  // namespace brelan::tool
