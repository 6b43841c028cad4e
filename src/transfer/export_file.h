// The export wizard's work, for its pages and the command-line tool: the
// fields of a table with their export names, the file's format, the SELECT
// statement, and the writer that streams the records into a delimited
// text file (memory stays flat however many records there are).
#pragma once

#include "wizards/wizard_progress.h"

#include <kodbc/kodbc_types.h>

#include <optional>
#include <string>
#include <vector>

namespace kodbc::transfer {

struct ExportField {
    std::string name;        // the column's name in the table
    std::string exportName;  // the heading in the file
    int sqlType = 0;         // the catalogue's DATA_TYPE
    bool exported = true;
};

// The table's columns in catalogue order; each export name is the column's
// name with every point and blank replaced by "-". False after an ODBC
// error (shown).
bool ReadExportFields(SQLHDBC hdbc, const char *table, std::vector<ExportField> &fields);

// The fields page may be left when at least one exported field has a name.
bool HasNamedExportField(const std::vector<ExportField> &fields);

enum class ExportEncoding { Ansi, Ascii };
enum class DelimiterChoice { Tab, Blank, Other };
enum class DecimalChoice { Comma, Point, Other };

struct ExportFormat {
    ExportEncoding encoding = ExportEncoding::Ansi;
    bool header = true;
    DelimiterChoice delimiter = DelimiterChoice::Tab;
    std::string otherDelimiter;  // written whole, up to 9 characters
    DecimalChoice decimal = DecimalChoice::Comma;
    std::string otherDecimal;    // its first character is the mark
    char leftBracket = 0;        // 0: none
    char rightBracket = 0;
    // Comma-separated values as other programs read them: values quoted
    // where needed, no brackets, dates as "yyyy-mm-dd hh:mm:ss" unless
    // germanDates.
    bool csv = false;
    bool germanDates = false;
    std::optional<std::string> nullText;  // what a NULL is written as; none: nothing

    std::string DelimiterText() const;
    // "Anderes Zeichen" without a character falls back to the point.
    char DecimalMark() const;
};

// "SELECT a, b FROM table[ WHERE (where)]" over the exported fields, names
// prepared for SQL-92.
std::string ExportStatement(SQLHDBC hdbc, const char *table, const std::vector<ExportField> &fields,
                            const std::string &where);

struct ExportCounts {
    long written = 0;        // records written
    bool cancelled = false;  // the user stopped; what was written stays
};

// Runs the statement and writes the file: the header line (when asked),
// then at most maxRecords records, every line ended by CR LF. A NULL value
// writes nothing (or the format's NULL text), brackets included; values are
// not escaped unless the format is CSV. The file is
// replaced; failures to open it show 1637, 1639, 1640 or 1638, a write
// that does not reach the disk 1650, ODBC errors are shown with the
// statement. True when the file was written and closed (also after a
// cancel), false after any failure.
bool WriteExportFile(SQLHDBC hdbc, const std::string &statement, const std::vector<ExportField> &fields,
                     const ExportFormat &format, const char *fileName, long maxRecords,
                     wizards::WizardProgress &progress, ExportCounts *counts = nullptr);

} // namespace kodbc::transfer
