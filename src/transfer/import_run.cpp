#include "transfer/import_run.h"
#include "transfer/text_value.h"

#include "catalog/catalog_internal.h"
#include "internal/diagnostics.h"
#include "internal/execution.h"
#include "internal/library.h"
#include "sqltext/column_name.h"
#include "transfer/import_csv.h"
#include "transfer/import_selection_files.h"
#include "transfer/import_values.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_connect.h>
#include <kodbc/kodbc_diag.h>
#include <kodbc/kodbc_sqltext.h>
#include <kodbc/kodbc_tableops.h>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace kodbc::transfer {
namespace {

constexpr int kValueSize = 10000;
constexpr int kTableTextSize = 300;
// The table source reads numbers with a point and dates as the export
// writes them; the conversions below take both.
constexpr char kTableDecimalMark = '.';

bool IsTextType(int type) {
    return type == KODBC_TYPE_FIXED_TEXT || type == KODBC_TYPE_VAR_TEXT || type == KODBC_TYPE_LONG_TEXT;
}

} // namespace

ImportRecordWriter::ImportRecordWriter(SQLHDBC hdbc, const char *table, const ImportFieldList &fields, bool dryRun,
                                       std::string create, bool batch)
    : parts_(PrepareImportInsert(hdbc, table, fields)), runner_(hdbc), sql_(new char[kImportStatementSize]),
      create_(std::move(create)), dryRun_(dryRun), hdbc_(hdbc), table_(table ? table : "") {
    if (!batch || dryRun_) return;
    BatchMessages messages;
    messages.failedLine = msg::IMPORT_FAILED_LINE;
    messages.failedRecord = msg::IMPORT_FAILED_RECORD;
    messages.rolledBack = msg::IMPORT_ROLLED_BACK;
    messages.cancelledRolledBack = msg::IMPORT_CANCELLED_ROLLED_BACK;
    messages.tableLeft = msg::IMPORT_TABLE_LEFT;
    head_ = ImportInsertHead(parts_, fields);
    batch_ = std::make_unique<BatchInsert>(hdbc, head_, messages);
}

bool ImportRecordWriter::Start() {
    if (dryRun_ || create_.empty()) return true;
    const std::string create = std::move(create_);
    create_.clear();
    if (!runner_.Run(create.c_str())) {
        if (batch_) batch_->Undo();
        return false;
    }
    if (batch_) {
        char drop[kTableTextSize] = {};
        Kodbc_SprintfSqlStatement(hdbc_, drop, sizeof drop, "DROP TABLE %t", table_.c_str(), nullptr, nullptr,
                                  nullptr, nullptr, nullptr, nullptr, nullptr);
        batch_->TableCreated(table_, create, drop);
    }
    return true;
}

bool ImportRecordWriter::Write(const ImportFieldList &fields, long at, bool byLine) {
    if (!Start()) return false;
    if (!batch_) {
        BuildImportInsert(parts_, fields, sql_.get(), kImportStatementSize);
        if (first_.empty()) first_ = sql_.get();
        return dryRun_ || runner_.Run(sql_.get());
    }
    // The values get the room they have in a one-record statement, so a
    // batch writes each as that statement would.
    const int room = kImportStatementSize - static_cast<int>(head_.size());
    BuildImportValues(parts_, fields, sql_.get(), room > 1 ? room : 1);
    if (first_.empty()) first_ = head_ + sql_.get();
    return batch_->Add(sql_.get(), at, byLine);
}

bool ImportRecordWriter::Finish() {
    if (!batch_) return Start();
    return Start() && batch_->Finish();
}

void ImportRecordWriter::Abandon(bool cancelled) {
    if (batch_) batch_->Abandon(cancelled);
}

ImportFile OpenImportFile(const char *fileName) {
    ImportFile file(fileName ? std::fopen(fileName, "rb") : nullptr, std::fclose);
    if (!file) LibraryMessage(msg::IMPORT_FILE_OPEN_ERROR, fileName ? fileName : "");
    return file;
}

long CountRecordLines(LineReader &reader, const char *fileName) {
    const long start = reader.Offset();
    long lines = 0;
    std::string_view line;
    while (reader.Next(line))
        if (!line.empty()) ++lines;
    if (reader.Error() || !reader.Rewind(start)) {
        LibraryMessage(msg::IMPORT_FILE_OPEN_ERROR, fileName);
        return -1;
    }
    return lines;
}

namespace {

// The value of the record being read (the one after those written) as its
// field takes it; false after a message.
bool TakeValue(ImportField &field, std::string_view text, char decimalMark, const std::string &folder,
               ImportCounts &counts) {
    bool changed = false;
    const ValueResult taken = SetImportValue(field, text, decimalMark, folder, &changed);
    if (taken == ValueResult::OutOfMemory) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return false;
    }
    ImportNotes &notes = counts.notes;
    const long at = counts.written + 1 + (notes.byLine ? notes.linesBefore : 0);
    if (taken == ValueResult::NotANumber) {
        const std::string where = std::to_string(at);
        LibraryMessage(notes.byLine ? msg::IMPORT_NOT_A_NUMBER_LINE : msg::IMPORT_NOT_A_NUMBER_RECORD,
                       std::string(text).c_str(), where.c_str(), field.targetName.c_str());
        return false;
    }
    if (changed && notes.numbersChanged++ == 0) {
        notes.firstNumber = text;
        notes.firstNumberAs = field.value.value_or(std::string());
        notes.firstNumberField = field.targetName;
        notes.firstNumberAt = at;
    }
    return true;
}

} // namespace

bool SetRecordValues(ImportFieldList &fields, const std::vector<std::string> &values, std::size_t count,
                     char decimalMark, const std::string &folder, bool textSourcesOnly, ImportCounts *counts) {
    ImportCounts none;
    for (ImportField &field : fields) {
        if (field.sourceIndex >= count) continue;
        const int source = field.sourceType;
        if (textSourcesOnly && source != KODBC_TYPE_FIXED_TEXT && source != KODBC_TYPE_VAR_TEXT) continue;
        if (!TakeValue(field, values[field.sourceIndex], decimalMark, folder, counts ? *counts : none)) return false;
    }
    return true;
}

bool WriteRecords(ImportFieldList &fields, ImportRecordWriter &writer, wizards::WizardProgress &progress,
                  ImportCounts &counts, const std::function<RecordRead()> &readRecord) {
    bool failed = false, writeFailed = false;
    const ImportNotes &notes = counts.notes;
    progress.Start(counts.expected);
    for (long n = 1; n <= counts.expected; ++n) {
        const RecordRead read = readRecord();
        if (read == RecordRead::End) break;
        if (read == RecordRead::Failed) {
            failed = true;
            break;
        }
        if (!writer.Write(fields, counts.written + 1 + (notes.byLine ? notes.linesBefore : 0), notes.byLine)) {
            failed = writeFailed = true;
            break;
        }
        ++counts.written;
        ClearImportValues(fields);
        if (progress.Step(n)) {
            counts.cancelled = true;
            break;
        }
    }
    if (writer.batch()) {
        if (!failed && !counts.cancelled) failed = !writer.Finish();
        else if (!writeFailed) writer.Abandon(counts.cancelled);
        if (failed || counts.cancelled) counts.written = 0;
    }
    progress.Finish();
    ClearImportValues(fields);
    return !failed;
}

bool DiscoverTextFields(const char *fileName, const ImportTextFormat &format, ImportFieldList &fields) {
    if (format.csv) return DiscoverCsvFields(fileName, format, fields);
    fields.clear();
    ImportFile file = OpenImportFile(fileName);
    if (!file) return false;
    LineReader reader(file.get());
    std::string_view line;
    if (!reader.Next(line)) return !reader.Error();
    std::string ansi;
    FieldsFromNameLine(format.ascii ? OemLineToAnsi(line, ansi) : line, format, fields);
    return true;
}

bool ImportTextRecords(const char *fileName, const ImportTextFormat &format, ImportFieldList &fields,
                       ImportRecordWriter &writer, wizards::WizardProgress &progress, long maxRecords,
                       ImportCounts &counts) {
    if (format.csv) return ImportCsvRecords(fileName, format, fields, writer, progress, maxRecords, counts);
    counts = ImportCounts();
    ImportFile file = OpenImportFile(fileName);
    if (!file) return false;
    LineReader reader(file.get());
    std::string_view line;
    if (format.namesInFirstLine) reader.Next(line);
    counts.notes.byLine = true;
    counts.notes.linesBefore = reader.Lines();
    const long lines = CountRecordLines(reader, fileName);
    if (lines < 0) return false;
    counts.expected = std::min(lines, maxRecords);

    const std::string folder = FolderOf(fileName);
    const char delimiter = format.Delimiter();
    std::vector<std::string> values;
    std::string ansi;
    return WriteRecords(fields, writer, progress, counts, [&] {
        if (!reader.Next(line)) return RecordRead::End;
        std::size_t cut = 0;
        const std::size_t found = SplitLine(format.ascii ? OemLineToAnsi(line, ansi) : line, delimiter,
                                            format.leftBracket, format.rightBracket, values, &cut);
        counts.notes.valuesCut += static_cast<long>(cut);
        if (reader.Cut()) ++counts.notes.linesCut;
        return SetTextRecordValues(fields, values, nullptr, found, format, folder, counts) ? RecordRead::Read
                                                                                           : RecordRead::Failed;
    });
}

bool DiscoverTableFields(SQLHDBC source, const char *table, ImportFieldList &fields) {
    fields.clear();
    ImportFieldAdder adder(fields);
    return catalog::ForEachColumnDescription(source, table, [&](const catalog::ColumnDescription &column) {
               const int type = Kodbc_SqlDataTypeToKodbcDataType(column.sqlType);
               const bool sized = IsTextType(type) && column.size > 0;
               adder.Add(column.name, type, sized ? column.size : kDefaultImportLength).sourceColumn = column.name;
           }) == KODBC_SUCCESS;
}

bool ImportTableRecords(SQLHDBC source, const char *table, ImportFieldList &fields, ImportRecordWriter &writer,
                        wizards::WizardProgress &progress, long maxRecords, ImportCounts &counts) {
    counts = ImportCounts();
    std::vector<std::size_t> columns;  // the field each selected column fills
    std::string sql = "SELECT ";
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (!fields[i].imported || fields[i].autoIncrement) continue;
        // The catalogue's name: the field's own is made unique and freed of points.
        const std::string &column = fields[i].sourceColumn.empty() ? fields[i].sourceName : fields[i].sourceColumn;
        sql += columns.empty() ? "" : ", ";
        sql += sqltext::PrepareColumnName(source, column);
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
    return WriteRecords(fields, writer, progress, counts, [&] {
        SQLRETURN rc = KODBC_SQL(SQLFetch, statement.get());
        if (rc == SQL_NO_DATA) return RecordRead::End;
        if (!odbc::succeeded(rc)) {
            ReportStatementError(statement.get(), rc, sql.c_str(), nullptr);
            return RecordRead::Failed;
        }
        for (std::size_t c = 0; c < columns.size(); ++c) {
            SQLLEN indicator = 0;
            rc = ReadTextValue(statement.get(), static_cast<SQLUSMALLINT>(c + 1), text.get(), SQLLEN{kValueSize},
                               &indicator, sqlTypes[c]);
            if (!odbc::succeeded(rc)) {
                ReportStatementError(statement.get(), rc, sql.c_str(), nullptr);
                return RecordRead::Failed;
            }
            if (indicator == SQL_NULL_DATA) continue;
            Kodbc_OdbcDataToString(text.get(), kValueSize, static_cast<int>(sqlTypes[c]), kTableDecimalMark);
            if (!TakeValue(fields[columns[c]], text.get(), kTableDecimalMark, std::string(), counts))
                return RecordRead::Failed;
        }
        return RecordRead::Read;
    });
}

} // namespace kodbc::transfer
