// The import's work after "Fertigstellen", for the wizard and the
// command-line tool: the fields a source offers, and the loops that read
// its records and write one INSERT each. Records are read and written one
// at a time, so memory stays flat however many there are; nothing is
// undone, records written before a stop stay.
#pragma once

#include "transfer/import_statements.h"
#include "transfer/import_text.h"
#include "wizards/wizard_progress.h"

#include <string>

namespace kodbc::transfer {

// Writes the records of a run: builds each INSERT and runs it, or in a dry
// run keeps the first one only.
class ImportRecordWriter {
public:
    ImportRecordWriter(SQLHDBC hdbc, const char *table, const ImportFieldList &fields, bool dryRun);
    // False when the statement was refused or failed (shown).
    bool Write(const ImportFieldList &fields);
    // The first record's statement.
    const std::string &first() const { return first_; }

private:
    ImportInsertParts parts_;
    ImportStatementRunner runner_;
    std::unique_ptr<char[]> sql_;
    std::string first_;
    bool dryRun_;
};

struct ImportCounts {
    long expected = 0;       // records the progress runs over
    long written = 0;        // records written
    bool cancelled = false;  // the user stopped; what was written stays
};

// The fields of a text file from its first line (converted from the OEM
// code page for ASCII files). False when the file cannot be opened (3800
// shown); an empty first line gives no field.
bool DiscoverTextFields(const char *fileName, const ImportTextFormat &format, ImportFieldList &fields);

// Reads the file's records: skips the line of names, counts the non-empty
// lines after it and reads that many lines (an empty line among them is a
// record without values, so as many lines at the end stay unread), at most
// maxRecords. Value n of a line goes to field n when that field's source is
// text; values beyond the last field are ignored. A file-content field
// finds a name without a folder in the text file's folder. Stops at the
// first record that cannot be written, or when the user cancels. True
// when every record read was written (also after a cancel).
bool ImportTextRecords(const char *fileName, const ImportTextFormat &format, ImportFieldList &fields,
                       ImportRecordWriter &writer, wizards::WizardProgress &progress, long maxRecords,
                       ImportCounts &counts);

// The fields of another data source's table, in catalogue order, with
// their library types and lengths. False after an ODBC error (shown).
bool DiscoverTableFields(SQLHDBC source, const char *table, ImportFieldList &fields);

// Reads the source table's rows (the imported fields' columns, as text,
// dates as the export writes them) and writes each as above.
bool ImportTableRecords(SQLHDBC source, const char *table, ImportFieldList &fields, ImportRecordWriter &writer,
                        wizards::WizardProgress &progress, long maxRecords, ImportCounts &counts);

} // namespace kodbc::transfer
