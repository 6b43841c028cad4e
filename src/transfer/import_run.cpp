#include "transfer/import_run.h"

#include "catalog/catalog_internal.h"
#include "internal/execution.h"
#include "internal/library.h"
#include "transfer/import_values.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_sqltext.h>
#include <kodbc/kodbc_tableops.h>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace kodbc::transfer {
namespace {

constexpr int kValueSize = 10000;
constexpr int kNameSize = 200;
constexpr int kTableTextSize = 300;
// The table source reads numbers with a point and dates as the export
// writes them; the conversions below take both.
constexpr char kTableDecimalMark = '.';

using File = std::unique_ptr<std::FILE, int (*)(std::FILE *)>;

File OpenSource(const char *fileName) {
    File file(fileName ? std::fopen(fileName, "rb") : nullptr, std::fclose);
    if (!file) LibraryMessage(msg::IMPORT_FILE_OPEN_ERROR, fileName ? fileName : "");
    return file;
}

// An OEM line in the ANSI code page; a character may grow on the way.
std::string_view ToAnsi(std::string_view line, std::string &buffer) {
    const std::string oem(line);
    buffer.resize(oem.size() * 3 + 1);
    const int length = Korvel_OemToAnsi(oem.c_str(), buffer.data(), static_cast<int>(buffer.size()));
    return std::string_view(buffer.data(), static_cast<std::size_t>(length));
}

bool TakesTextValues(const ImportField &field) {
    return field.sourceType == KODBC_TYPE_FIXED_TEXT || field.sourceType == KODBC_TYPE_VAR_TEXT;
}

bool IsTextType(int type) {
    return type == KODBC_TYPE_FIXED_TEXT || type == KODBC_TYPE_VAR_TEXT || type == KODBC_TYPE_LONG_TEXT;
}

} // namespace

ImportRecordWriter::ImportRecordWriter(SQLHDBC hdbc, const char *table, const ImportFieldList &fields, bool dryRun)
    : parts_(PrepareImportInsert(hdbc, table, fields)), runner_(hdbc), sql_(new char[kImportStatementSize]),
      dryRun_(dryRun) {}

bool ImportRecordWriter::Write(const ImportFieldList &fields) {
    BuildImportInsert(parts_, fields, sql_.get(), kImportStatementSize);
    if (first_.empty()) first_ = sql_.get();
    return dryRun_ || runner_.Run(sql_.get());
}

bool DiscoverTextFields(const char *fileName, const ImportTextFormat &format, ImportFieldList &fields) {
    fields.clear();
    File file = OpenSource(fileName);
    if (!file) return false;
    LineReader reader(file.get());
    std::string_view line;
    if (!reader.Next(line)) return !reader.Error();
    std::string ansi;
    FieldsFromNameLine(format.ascii ? ToAnsi(line, ansi) : line, format, fields);
    return true;
}

bool ImportTextRecords(const char *fileName, const ImportTextFormat &format, ImportFieldList &fields,
                       ImportRecordWriter &writer, wizards::WizardProgress &progress, long maxRecords,
                       ImportCounts &counts) {
    counts = ImportCounts();
    File file = OpenSource(fileName);
    if (!file) return false;
    LineReader reader(file.get());
    std::string_view line;
    if (format.namesInFirstLine) reader.Next(line);
    const long start = reader.Offset();
    long lines = 0;
    while (reader.Next(line))
        if (!line.empty()) ++lines;
    if (reader.Error() || !reader.Rewind(start)) {
        LibraryMessage(msg::IMPORT_FILE_OPEN_ERROR, fileName);
        return false;
    }
    counts.expected = std::min(lines, maxRecords);

    const std::string folder = FolderOf(fileName);
    const char delimiter = format.Delimiter(), mark = format.DecimalMark();
    std::vector<std::string> values;
    std::string ansi;
    bool failed = false;
    progress.Start(counts.expected);
    for (long n = 1; n <= counts.expected; ++n) {
        if (!reader.Next(line)) break;
        const std::size_t found = SplitLine(format.ascii ? ToAnsi(line, ansi) : line, delimiter, format.leftBracket,
                                            format.rightBracket, values);
        for (std::size_t i = 0; i < found && i < fields.size(); ++i) {
            if (!TakesTextValues(fields[i])) continue;
            if (!SetImportValue(fields[i], values[i], mark, folder)) {
                LibraryMessage(msg::OUT_OF_MEMORY);
                failed = true;
                break;
            }
        }
        if (failed || !writer.Write(fields)) {
            failed = true;
            break;
        }
        ++counts.written;
        ClearImportValues(fields);
        if (progress.Step(n)) {
            counts.cancelled = true;
            break;
        }
    }
    progress.Finish();
    ClearImportValues(fields);
    return !failed;
}

bool DiscoverTableFields(SQLHDBC source, const char *table, ImportFieldList &fields) {
    fields.clear();
    return catalog::ForEachColumnDescription(source, table, [&](const catalog::ColumnDescription &column) {
               const int type = Kodbc_SqlDataTypeToKodbcDataType(column.sqlType);
               const bool sized = IsTextType(type) && column.size > 0;
               AddImportField(fields, column.name, type, sized ? column.size : kDefaultImportLength);
           }) == KODBC_SUCCESS;
}

bool ImportTableRecords(SQLHDBC source, const char *table, ImportFieldList &fields, ImportRecordWriter &writer,
                        wizards::WizardProgress &progress, long maxRecords, ImportCounts &counts) {
    counts = ImportCounts();
    std::vector<std::size_t> columns;  // the field each selected column fills
    std::string sql = "SELECT ";
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (!fields[i].imported || fields[i].autoIncrement) continue;
        char name[kNameSize] = {};
        Kodbc_PrepareNameForSql92(source, fields[i].sourceName.c_str(), name, sizeof name);
        sql += columns.empty() ? "" : ", ";
        sql += name;
        columns.push_back(i);
    }
    if (columns.empty()) return false;
    char from[kTableTextSize] = {};
    Kodbc_SprintfSqlStatement(source, from, sizeof from, " FROM %t", table, nullptr, nullptr, nullptr, nullptr,
                              nullptr, nullptr, nullptr);
    sql += from;
    counts.expected = std::min(Kodbc_GetRecordCountExt(source, table, nullptr, 0), maxRecords);

    odbc::Statement statement;
    if (!PrepareStatement(source, sql.c_str(), statement)) return false;
    if (ExecuteStatement(statement, sql.c_str(), nullptr) != ExecOutcome::Executed) return false;
    std::vector<SQLLEN> sqlTypes(columns.size(), 0);
    for (std::size_t c = 0; c < columns.size(); ++c)
        KODBC_SQL(SQLColAttributes, statement.get(), static_cast<SQLUSMALLINT>(c + 1),
                  SQLUSMALLINT{SQL_COLUMN_TYPE}, nullptr, SQLSMALLINT{0}, nullptr, &sqlTypes[c]);

    auto text = std::make_unique<char[]>(kValueSize);
    bool failed = false;
    progress.Start(counts.expected);
    while (counts.written < counts.expected && !failed) {
        SQLRETURN rc = KODBC_SQL(SQLFetch, statement.get());
        if (rc == SQL_NO_DATA) break;
        if (!odbc::succeeded(rc)) {
            ReportStatementError(statement.get(), rc, sql.c_str(), nullptr);
            failed = true;
            break;
        }
        for (std::size_t c = 0; c < columns.size() && !failed; ++c) {
            SQLLEN indicator = 0;
            rc = KODBC_SQL(SQLGetData, statement.get(), static_cast<SQLUSMALLINT>(c + 1), SQLSMALLINT{SQL_C_CHAR},
                           text.get(), SQLLEN{kValueSize}, &indicator);
            if (!odbc::succeeded(rc)) {
                ReportStatementError(statement.get(), rc, sql.c_str(), nullptr);
                failed = true;
            } else if (indicator != SQL_NULL_DATA) {
                Kodbc_OdbcDataToString(text.get(), kValueSize, static_cast<int>(sqlTypes[c]), kTableDecimalMark);
                if (!SetImportValue(fields[columns[c]], text.get(), kTableDecimalMark, std::string())) {
                    LibraryMessage(msg::OUT_OF_MEMORY);
                    failed = true;
                }
            }
        }
        if (failed || !writer.Write(fields)) {
            failed = true;
            break;
        }
        ++counts.written;
        ClearImportValues(fields);
        if (progress.Step(counts.written)) {
            counts.cancelled = true;
            break;
        }
    }
    progress.Finish();
    ClearImportValues(fields);
    return !failed;
}

} // namespace kodbc::transfer
