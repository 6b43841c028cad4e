// The SQL performer's memory: the statements executed last, the statement
// an application presets, and the examples of the help dialog. Portable, so
// the list's rules are the same wherever they are checked.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace kodbc::tools {

// At most this many statements are kept, newest first.
inline constexpr std::size_t kRecentStatementLimit = 20;
// An entry is encoded into, and read back from, buffers of this many bytes
// (1000 characters where a terminator is added).
inline constexpr int kRecentStatementSize = 1000;
// Below the library's key: "Total" and "E001", "E002", ... in list order.
inline constexpr const char *kRecentSection = "SqlPerformer\\Recent";
// Below the library's key: the value "Sql" presets the edit field.
inline constexpr const char *kPresetSection = "Parameters";
inline constexpr const char *kPresetValue = "Sql";

// The list as the drop-down list holds it: entries in the base library's
// string encoding.
class RecentStatements {
public:
    const std::vector<std::string> &entries() const noexcept { return entries_; }

    // Puts statement (as typed) at the top and cuts the list to the limit.
    // An entry equal to the typed text is removed first; entries hold the
    // encoded text, so a statement whose encoding differs from itself (a
    // quote, a tab, a line break) is never found and stays twice. The
    // applications have always had it so. False for an empty statement
    // (nothing added).
    bool Add(const std::string &statement);
    void Clear() noexcept { entries_.clear(); }

    // Replaces the list with the stored one: "Total" entries (0 when
    // missing), blank ones skipped.
    void Load();
    // Replaces the stored list with this one: the whole key is deleted, then
    // "Total" and the entries are written. False when a write failed.
    bool Save() const;

    // Entry `index` decoded for the edit field; empty when there is none.
    std::string Decoded(std::size_t index) const;

private:
    std::vector<std::string> entries_;
};

// The value "Sql" of "Parameters" (empty when missing). The library only
// reads it; the applications write it.
std::string ReadPresetStatement();

// The examples the help dialog offers, in its order.
inline constexpr std::array<const char *, 18> kSqlExamples = {
    "CREATE TABLE tablename (Name VARCHAR (255), BirthDate DATETIME, Count INTEGER, Price DOUBLE)",
    "DROP TABLE tablename",
    "CREATE VIEW viewname AS SELECT * FROM Table WHERE Name='Schmidt' ORDER BY Name",
    "DROP VIEW viewname",
    "ALTER TABLE tablename ADD colname varchar (255)",
    "ALTER TABLE tablename ADD INDEX index (name)",
    "ALTER TABLE tablename ADD UNIQUE index (name)",
    "ALTER TABLE tablename ADD PRIMARY KEY (name)",
    "ALTER TABLE tablename DROP name",
    "ALTER TABLE tablename DROP PRIMARY KEY",
    "ALTER TABLE tablename DROP INDEX name",
    "ALTER TABLE tablename RENAME AS newname",
    "INSERT INTO tablename (name,count) VALUES ('Schmidt',100)",
    "UPDATE tablename SET name='Schmidt' WHERE name='Meier'",
    "DELETE FROM tablename WHERE name='Meier'",
    "SELECT * FROM tablename ORDER BY name",
    "SELECT * FROM tablename WHERE name='schmidt' ORDER BY name",
    "CREATE INDEX indexname ON tablename (colname)",
};

} // namespace kodbc::tools
