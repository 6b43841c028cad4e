#include "transfer/export_file.h"
#include "transfer/csv_format.h"
#include "transfer/text_value.h"

#include "catalog/catalog_internal.h"
#include "internal/execution.h"
#include "internal/library.h"
#include "internal/odbc_call.h"
#include "sqltext/column_name.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_diag.h>
#include <kodbc/kodbc_sqltext.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

namespace kodbc::transfer {
namespace {

constexpr int kValueSize = 10000;
constexpr int kTableTextSize = 300;

// One value: brackets around the text (none in CSV), converted to the OEM code page
// for ASCII files.
class ValueWriter {
public:
    ValueWriter(ResultFile &file, const ExportFormat &format)
        : file_(file), format_(format), oem_(new char[kValueSize]) {}

    void Write(const char *text) {
        if (format_.leftBracket && !format_.csv) file_.write(format_.leftBracket);
        if (format_.encoding == ExportEncoding::Ascii) {
            const int length = Korvel_AnsiToOem(text, oem_.get(), kValueSize);
            file_.write(oem_.get(), static_cast<std::size_t>(length));
        } else {
            file_.write(text, std::strlen(text));
        }
        if (format_.rightBracket && !format_.csv) file_.write(format_.rightBracket);
    }

private:
    ResultFile &file_;
    const ExportFormat &format_;
    std::unique_ptr<char[]> oem_;
};

bool IsDateType(int sqlType) {
    return sqlType == SQL_DATE || sqlType == SQL_TIME || sqlType == SQL_TIMESTAMP || sqlType == SQL_TYPE_DATE ||
           sqlType == SQL_TYPE_TIME || sqlType == SQL_TYPE_TIMESTAMP;
}

// A value quoted where a reader would misread it: also one that reads
// like the NULL text, and the empty value of a one-field record, which
// would make an empty line.
const char *CsvField(std::string &out, std::string_view value, const ExportFormat &format, std::size_t fields) {
    out.clear();
    const bool quoted = (format.nullText && value == *format.nullText) || (value.empty() && fields == 1);
    AppendCsvField(out, value, format.DelimiterText(), quoted);
    return out.c_str();
}

} // namespace

bool ReadExportFields(SQLHDBC hdbc, const char *table, std::vector<ExportField> &fields) {
    fields.clear();
    return catalog::ForEachColumnDescription(hdbc, table, [&](const catalog::ColumnDescription &column) {
               std::string exportName = column.name;
               std::replace(exportName.begin(), exportName.end(), '.', '-');
               std::replace(exportName.begin(), exportName.end(), ' ', '-');
               fields.push_back({column.name, exportName, column.sqlType, true});
           }) == KODBC_SUCCESS;
}

bool HasNamedExportField(const std::vector<ExportField> &fields) {
    return std::any_of(fields.begin(), fields.end(),
                       [](const ExportField &field) { return field.exported && !field.exportName.empty(); });
}

std::string ExportFormat::DelimiterText() const {
    switch (delimiter) {
    case DelimiterChoice::Tab: return "\t";
    case DelimiterChoice::Blank: return " ";
    default: return otherDelimiter;
    }
}

char ExportFormat::DecimalMark() const {
    switch (decimal) {
    case DecimalChoice::Comma: return ',';
    case DecimalChoice::Point: return '.';
    default: return otherDecimal.empty() ? '.' : otherDecimal[0];
    }
}

std::string ExportStatement(SQLHDBC hdbc, const char *table, const std::vector<ExportField> &fields,
                            const std::string &where) {
    std::string sql = "SELECT ";
    bool first = true;
    for (const ExportField &field : fields) {
        if (!field.exported) continue;
        if (!first) sql += ", ";
        sql += sqltext::PrepareColumnName(hdbc, field.name);
        first = false;
    }
    char from[kTableTextSize] = {};
    Kodbc_SprintfSqlStatement(hdbc, from, sizeof from, " FROM %t", table, nullptr, nullptr, nullptr, nullptr, nullptr,
                              nullptr, nullptr);
    sql += from;
    if (!where.empty()) sql += " WHERE (" + where + ")";
    return sql;
}

bool WriteExportFile(SQLHDBC hdbc, const std::string &statement, const std::vector<ExportField> &fields,
                     const ExportFormat &format, const char *fileName, long maxRecords,
                     wizards::WizardProgress &progress, ExportCounts *counts) {
    ExportCounts done;
    if (counts) *counts = done;
    std::vector<const ExportField *> columns;
    for (const ExportField &field : fields)
        if (field.exported) columns.push_back(&field);
    if (columns.empty()) return false;

    odbc::Statement handle;
    if (!PrepareStatement(hdbc, statement.c_str(), handle)) return false;
    if (ExecuteStatement(handle, statement.c_str(), nullptr) != ExecOutcome::Executed) return false;

    ResultFile file;
    if (!file.create(fileName)) {
        LibraryMessage(FileOpenErrorMessage(), fileName);
        return false;
    }
    const std::string delimiter = format.DelimiterText();
    const char mark = format.DecimalMark();
    ValueWriter values(file, format);

    std::string quoted;
    if (format.header) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (i) file.write(delimiter.data(), delimiter.size());
            if (format.csv) values.Write(CsvField(quoted, columns[i]->exportName, format, columns.size()));
            else values.Write(columns[i]->exportName.c_str());
        }
        file.write("\r\n", 2);
    }

    auto text = std::make_unique<char[]>(kValueSize);
    bool failed = false;
    progress.Start(maxRecords);
    while (done.written < maxRecords) {
        SQLRETURN rc = KODBC_SQL(SQLFetch, handle.get());
        if (rc == SQL_NO_DATA) break;
        if (!SQL_SUCCEEDED(rc)) {
            ReportStatementError(handle.get(), rc, statement.c_str(), nullptr);
            failed = true;
            break;
        }
        for (std::size_t i = 0; i < columns.size() && !failed; ++i) {
            if (i) file.write(delimiter.data(), delimiter.size());
            SQLLEN indicator = 0;
            rc = ReadTextValue(handle.get(), static_cast<SQLUSMALLINT>(i + 1), text.get(), SQLLEN{kValueSize},
                               &indicator, columns[i]->sqlType);
            if (!SQL_SUCCEEDED(rc)) {
                ReportStatementError(handle.get(), rc, statement.c_str(), nullptr);
                failed = true;
            } else if (indicator == SQL_NULL_DATA) {
                if (format.nullText) file.write(format.nullText->data(), format.nullText->size());
            } else if (format.csv) {
                if (!format.germanDates && IsDateType(columns[i]->sqlType)) ToIsoDate(text.get(), kValueSize);
                else Kodbc_OdbcDataToString(text.get(), kValueSize, columns[i]->sqlType, mark);
                values.Write(CsvField(quoted, text.get(), format, columns.size()));
            } else {
                Kodbc_OdbcDataToString(text.get(), kValueSize, columns[i]->sqlType, mark);
                values.Write(text.get());
            }
        }
        if (failed) break;
        ++done.written;
        if (progress.Step(done.written)) {
            done.cancelled = true;
            break;
        }
        file.write("\r\n", 2);
    }
    progress.Finish();
    if (!file.close() && !failed) {
        LibraryMessage(msg::FILE_WRITE_ERROR, fileName);
        failed = true;
    }
    if (counts) *counts = done;
    return !failed;
}

} // namespace kodbc::transfer
