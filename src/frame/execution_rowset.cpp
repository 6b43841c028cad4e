// Carrying a result set into a delimited text file, and through a temporary
// file into a caller's buffer.
//
// The transfer is the library's bulk path: each value is fetched as text
// into one fixed buffer and copied into the file's block; column types are
// asked once per statement; nothing is allocated per row.
#include "internal/csv_field.h"
#include "internal/text.h"
#include "internal/execution.h"
#include "internal/library.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_diag.h>
#include <kodbc/kodbc_exec.h>

#include <cstdio>
#include <cstring>
#include <new>
#include <string_view>
#include <vector>

namespace kodbc {
namespace {

constexpr SQLLEN kValueBufferSize = 4999;
constexpr int kEncodedBufferSize = 30000;
constexpr long kProgressStep = 100;
constexpr int kTemporaryNameSize = 260;

// Writes a text with every "'" doubled.
void WriteDoublingQuotes(ResultFile &file, const char *text, std::size_t n) {
    const char *end = text + n;
    while (text < end) {
        const char *quote = static_cast<const char *>(std::memchr(text, '\'', end - text));
        if (!quote) {
            file.write(text, end - text);
            return;
        }
        file.write(text, quote - text + 1);
        file.write('\'');
        text = quote + 1;
    }
}

void WriteDigits(char *out, int value, int width) {
    for (int i = width - 1; i >= 0; --i) {
        out[i] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
}

bool IsBlankValue(const char *text, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i)
        if (text[i] != ' ') return false;
    return true;
}

// The progress indicator of a long transfer, touched every 100 lines.
class TransferProgress {
public:
    TransferProgress(unsigned flags, long expected) {
        if (!(flags & KODBC_ROWSET_PROGRESS) || expected <= kProgressStep) return;
        LoadLibraryString(LibraryInstance(), msg::PROGRESS_RECORD_OF, format_, sizeof format_);
        expected_ = expected;
        progress_ = Korvel_Progress_Create(Korvel_ActiveWindow(), Text(0), 0, expected);
    }
    ~TransferProgress() {
        if (progress_) Korvel_Progress_Destroy(progress_);
    }
    TransferProgress(const TransferProgress &) = delete;
    TransferProgress &operator=(const TransferProgress &) = delete;

    // Before each line: true when the user has asked to stop.
    bool cancelled(long linesSoFar) {
        if (!progress_ || linesSoFar % kProgressStep != 0) return false;
        Korvel_Progress_SetText(progress_, Text(linesSoFar));
        return Korvel_Progress_Set(progress_, linesSoFar) != 0;
    }

private:
    // "Datensatz %d von %d" filled with the lines so far and the expected count.
    const char *Text(long linesSoFar) {
        std::snprintf(text_, sizeof text_, format_, static_cast<int>(linesSoFar), static_cast<int>(expected_));
        return text_;
    }

    KorvelProgress *progress_ = nullptr;
    long expected_ = 0;
    char format_[200] = {};
    char text_[260] = {};
};

struct Separators {
    std::string_view field;
    std::string_view record;
    Separators(const char *f, const char *r)
        : field(f && *f ? f : "\t"), record(r && *r ? r : "\n") {}
};

// Reports a failed write of the result file: what is on disk is not the
// result set.
int ReportWriteError(const char *fileName) {
    LibraryMessage(msg::FILE_WRITE_ERROR, fileName);
    return KODBC_FAILURE;
}

// Text as a JSON string: quotes, backslashes and control characters escaped.
void AppendJsonString(std::string &out, std::string_view text) {
    out.push_back('"');
    for (char c : text) {
        const auto u = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out.push_back('\\');
            out.push_back(c);
        } else if (c == '\n') {
            out.append("\\n");
        } else if (c == '\r') {
            out.append("\\r");
        } else if (c == '\t') {
            out.append("\\t");
        } else if (u < 0x20) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", u);
            out.append(escaped);
        } else {
            out.push_back(c);
        }
    }
    out.push_back('"');
}

// Whether a driver's number text is a JSON number as it stands
// ("-12.5e+3"; not "+1", ".5", "1.", "NaN").
bool IsJsonNumber(std::string_view text) {
    std::size_t at = 0;
    auto digits = [&] {
        const std::size_t from = at;
        while (at < text.size() && text[at] >= '0' && text[at] <= '9') ++at;
        return at > from;
    };
    if (at < text.size() && text[at] == '-') ++at;
    if (at < text.size() && text[at] == '0') ++at;
    else if (!digits()) return false;
    if (at < text.size() && text[at] == '.' && (++at, !digits())) return false;
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        ++at;
        if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
        if (!digits()) return false;
    }
    return at == text.size();
}

// The compact form of an ODBC date text: yyyymmddhhmmss.
void CompactDate(const char *value, std::size_t length, char (&digits)[14]) {
    DateTimeFields d = ParseOdbcDateTime(value, length);
    WriteDigits(digits, d.year, 4);
    WriteDigits(digits + 4, d.month, 2);
    WriteDigits(digits + 6, d.day, 2);
    WriteDigits(digits + 8, d.hour, 2);
    WriteDigits(digits + 10, d.minute, 2);
    WriteDigits(digits + 12, d.second, 2);
}

int TransferRowSet(HWND owner, SQLHDBC hdbc, const char *sql, const Separators &separators, const char *fileName,
                   long *rowCount, const char *tolerated, unsigned flags, const char *nullText = nullptr) {
    const long expected = rowCount ? *rowCount : 0;
    if (rowCount) *rowCount = 0;

    odbc::Statement statement;
    if (!PrepareStatement(hdbc, sql, statement)) return KODBC_FAILURE;

    ResultFile file;
    if (!file.create(fileName)) {
        LibraryErrorHandler(owner, FileErrorClass(), fileName);
        return KODBC_FAILURE;
    }
    if (ExecuteStatement(statement, sql, tolerated) != ExecOutcome::Executed) return KODBC_FAILURE;

    SQLLEN columnCount = 0;
    SQLRETURN rc = KODBC_SQL(SQLColAttribute, statement.get(), static_cast<SQLUSMALLINT>(1),
                             static_cast<SQLUSMALLINT>(SQL_DESC_COUNT), static_cast<SQLPOINTER>(nullptr),
                             static_cast<SQLSMALLINT>(0), static_cast<SQLSMALLINT *>(nullptr), &columnCount);
    if (!odbc::succeeded(rc)) {
        ReportStatementError(statement, rc, sql, tolerated);
        return KODBC_FAILURE;
    }

    const bool csv = flags & KODBC_ROWSET_CSV;
    const bool json = flags & KODBC_ROWSET_JSON;
    std::string piece;  // a CSV or JSON value with its quotes; its room stays from value to value
    std::vector<std::string> jsonNames;  // each column's name as a JSON string and a colon
    long lines = 0;
    char name[100] = {};
    // Column c's name into name, cut to its size; false after the error was shown.
    const auto readName = [&](SQLUSMALLINT c, std::string_view &text) {
        SQLSMALLINT length = 0;
        SQLLEN unused = 0;
        name[0] = '\0';
        rc = KODBC_SQL(SQLColAttributes, statement.get(), c, static_cast<SQLUSMALLINT>(SQL_COLUMN_NAME),
                       static_cast<SQLPOINTER>(name), static_cast<SQLSMALLINT>(sizeof name), &length, &unused);
        if (!odbc::succeeded(rc)) {
            ReportStatementError(statement, rc, sql, tolerated);
            return false;
        }
        text = std::string_view(name, strnlen(name, sizeof name - 1));
        return true;
    };
    for (SQLUSMALLINT c = 1; json && c <= columnCount; ++c) {
        std::string_view text;
        if (!readName(c, text)) return KODBC_FAILURE;
        std::string &entry = jsonNames.emplace_back();
        AppendJsonString(entry, text);
        entry.push_back(':');
    }
    if (json) file.write('[');
    if ((flags & KODBC_ROWSET_HEADER) && !json) {
        for (SQLUSMALLINT c = 1; c <= columnCount; ++c) {
            std::string_view text;
            if (!readName(c, text)) return KODBC_FAILURE;
            if (c > 1) file.write(separators.field.data(), separators.field.size());
            if (csv) {
                piece.clear();
                AppendCsvField(piece, text, separators.field, text.empty() && columnCount == 1);
                file.write(piece.data(), piece.size());
            } else {
                file.write(text.data(), text.size());
            }
        }
        lines = 1;
    }

    std::vector<ValueClass> classes;
    try {
        classes.resize(static_cast<std::size_t>(columnCount));
    } catch (const std::bad_alloc &) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
    for (SQLUSMALLINT c = 1; c <= columnCount; ++c) {
        SQLLEN type = 0;
        rc = KODBC_SQL(SQLColAttribute, statement.get(), c, static_cast<SQLUSMALLINT>(SQL_DESC_TYPE),
                       static_cast<SQLPOINTER>(nullptr), static_cast<SQLSMALLINT>(0),
                       static_cast<SQLSMALLINT *>(nullptr), &type);
        if (!odbc::succeeded(rc)) {
            ReportStatementError(statement, rc, sql, tolerated);
            return KODBC_FAILURE;
        }
        classes[c - 1] = ClassifySqlType(type);
    }

    TransferProgress progress(flags, expected);
    const bool quote = flags & KODBC_ROWSET_QUOTE_TEXT;
    const bool zero = flags & KODBC_ROWSET_NUMERIC_ZERO;
    const bool compactDates = flags & KODBC_ROWSET_COMPACT_DATES;
    char value[kValueBufferSize];
    // Encoded text can grow fivefold; the room is taken once per transfer.
    std::vector<char> encoded;
    if (flags & KODBC_ROWSET_ENCODE_TEXT) {
        try {
            encoded.resize(kEncodedBufferSize);
        } catch (const std::bad_alloc &) {
            LibraryMessage(msg::OUT_OF_MEMORY);
            return KODBC_FAILURE;
        }
    }

    while (columnCount > 0) {
        if (progress.cancelled(lines)) break;
        rc = KODBC_SQL(SQLFetch, statement.get());
        if (rc == SQL_NO_DATA) break;
        if (!odbc::succeeded(rc)) {
            // Ending quietly here would pass a cut result off as complete.
            ReportStatementError(statement, rc, sql, tolerated);
            return KODBC_FAILURE;
        }
        if (json) file.write(lines > 0 ? ",\n{" : "{", lines > 0 ? 3 : 1);
        else if (lines > 0) file.write(separators.record.data(), separators.record.size());
        for (SQLUSMALLINT c = 1; c <= columnCount; ++c) {
            if (json) {
                if (c > 1) file.write(',');
                file.write(jsonNames[c - 1].data(), jsonNames[c - 1].size());
            } else if (c > 1) {
                file.write(separators.field.data(), separators.field.size());
            }
            SQLLEN indicator = 0;
            rc = KODBC_SQL(SQLGetData, statement.get(), c, static_cast<SQLSMALLINT>(SQL_C_CHAR),
                           static_cast<SQLPOINTER>(value), kValueBufferSize, &indicator);
            const bool isNull = rc == SQL_NO_DATA || indicator == SQL_NULL_DATA;
            if (!odbc::succeeded(rc) && rc != SQL_NO_DATA) {
                ReportStatementError(statement, rc, sql, tolerated);
                return KODBC_FAILURE;
            }
            std::size_t length = 0;
            if (!isNull) {
                // A cut value (01004) and an unknown total are measured.
                length = indicator >= 0 && indicator < kValueBufferSize ? static_cast<std::size_t>(indicator)
                                                                        : strnlen(value, kValueBufferSize - 1);
            }
            if (json) {
                const std::string_view text(value, length);
                piece.clear();
                if (isNull || (classes[c - 1] == ValueClass::Number && IsBlankValue(value, length)))
                    piece = "null";
                else if (classes[c - 1] == ValueClass::Number && IsJsonNumber(text))
                    piece.append(text);
                else
                    AppendJsonString(piece, text);
                file.write(piece.data(), piece.size());
                continue;
            }
            if (isNull && nullText) {
                file.write(nullText, std::strlen(nullText));
                continue;
            }
            if (csv) {
                std::string_view text(value, length);
                char digits[14];
                if (isNull) {
                    if (classes[c - 1] != ValueClass::Number || !zero) continue;
                    text = "0";
                } else if (classes[c - 1] == ValueClass::Text && !encoded.empty()) {
                    value[length] = '\0';
                    text = std::string_view(encoded.data(), static_cast<std::size_t>(Korvel_EncodeString(
                                                                value, encoded.data(), kEncodedBufferSize, 2)));
                } else if (classes[c - 1] == ValueClass::Number && zero && IsBlankValue(value, length)) {
                    text = "0";
                } else if (classes[c - 1] == ValueClass::Date && compactDates) {
                    CompactDate(value, length, digits);
                    text = std::string_view(digits, sizeof digits);
                }
                piece.clear();
                AppendCsvField(piece, text, separators.field,
                               (nullText && text == nullText) || (text.empty() && columnCount == 1));
                file.write(piece.data(), piece.size());
                continue;
            }
            switch (classes[c - 1]) {
            case ValueClass::Text: {
                const char *text = value;
                if (!encoded.empty() && !isNull) {
                    value[length] = '\0';
                    length = static_cast<std::size_t>(
                        Korvel_EncodeString(value, encoded.data(), kEncodedBufferSize, 2));
                    text = encoded.data();
                }
                if (quote) {
                    file.write('\'');
                    WriteDoublingQuotes(file, text, length);
                    file.write('\'');
                } else {
                    file.write(text, length);
                }
                break;
            }
            case ValueClass::Number:
                if (isNull || IsBlankValue(value, length)) {
                    if (zero) file.write('0');
                } else {
                    file.write(value, length);
                }
                break;
            case ValueClass::Date:
                if (!compactDates) {
                    file.write(value, length);
                    break;
                }
                if (quote) file.write('\'');
                if (!isNull) {
                    char digits[14];
                    CompactDate(value, length, digits);
                    file.write(digits, sizeof digits);
                }
                if (quote) file.write('\'');
                break;
            case ValueClass::Other:
                file.write(value, length);
                break;
            }
        }
        if (json) file.write('}');
        ++lines;
        if (!file.ok()) break;
    }
    if (json) file.write("]\n", 2);

    statement.reset();
    if (!file.close()) return ReportWriteError(fileName);
    if (rowCount) *rowCount = lines;
    return KODBC_SUCCESS;
}

} // namespace
} // namespace kodbc

using namespace kodbc;

extern "C" {

KODBC_API int KODBC_CALL OdbcEh_SelectRowSetToFile(HWND owner, SQLHDBC hdbc, const char *sql,
                                                   const char *fieldSeparator, const char *recordSeparator,
                                                   const char *fileName, long *rowCount, const char *tolerated,
                                                   unsigned flags) {
    if (IsBlank(fileName) || !hdbc || IsBlank(sql)) return KODBC_FAILURE;
    return TransferRowSet(owner, hdbc, sql, Separators(fieldSeparator, recordSeparator), fileName, rowCount,
                          tolerated, flags);
}

KODBC_API int KODBC_CALL OdbcEh_SelectRowSetToFileWithNull(HWND owner, SQLHDBC hdbc, const char *sql,
                                                           const char *fieldSeparator, const char *recordSeparator,
                                                           const char *nullText, const char *fileName,
                                                           long *rowCount, const char *tolerated, unsigned flags) {
    if (IsBlank(fileName) || !hdbc || IsBlank(sql)) return KODBC_FAILURE;
    return TransferRowSet(owner, hdbc, sql, Separators(fieldSeparator, recordSeparator), fileName, rowCount,
                          tolerated, flags, nullText);
}

KODBC_API int KODBC_CALL OdbcEh_SelectRowSetToBuffer(HWND owner, SQLHDBC hdbc, const char *sql,
                                                     const char *fieldSeparator, const char *recordSeparator,
                                                     char *buffer, int size, const char *tolerated, unsigned flags) {
    if (!buffer || size < 3) return KODBC_FAILURE;
    korvel::BoundedText out(buffer, size);

    char fileName[kTemporaryNameSize];
    if (!CreateTemporaryFileName("XB", fileName, sizeof fileName)) {
        LibraryErrorHandler(owner, FileErrorClass(), nullptr);
        return KODBC_FAILURE;
    }
    // The temporary file goes on every path, whatever the transfer did.
    struct Remove {
        const char *name;
        ~Remove() { std::remove(name); }
    } removeTemporary{fileName};

    if (OdbcEh_SelectRowSetToFile(owner, hdbc, sql, fieldSeparator, recordSeparator, fileName, nullptr, tolerated,
                                  flags) != KODBC_SUCCESS)
        return KODBC_FAILURE;

    std::FILE *in = std::fopen(fileName, "rb");
    if (!in) {
        LibraryErrorHandler(owner, FileErrorClass(), fileName);
        return KODBC_FAILURE;
    }
    std::size_t n = std::fread(buffer, 1, static_cast<std::size_t>(size) - 1, in);
    bool failed = std::ferror(in) != 0;
    std::fclose(in);
    if (failed) {
        out.clear();
        LibraryErrorHandler(owner, FileErrorClass(), fileName);
        return KODBC_FAILURE;
    }
    buffer[n] = '\0';
    return KODBC_SUCCESS;
}

} // extern "C"
