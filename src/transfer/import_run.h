// The import's work after "Fertigstellen", for the wizard and the
// command-line tool: the fields a source offers, and the loops that read
// its records and write them. Records are read one at a time and written
// one INSERT each, or a bounded batch at a time, so memory stays flat
// however many there are. One INSERT each runs in the connection's commit
// mode and keeps what was written before a stop; a batch run is all or
// nothing.
#pragma once

#include "transfer/import_statements.h"
#include "transfer/import_text.h"
#include "transfer/import_selection_files.h"
#include "wizards/wizard_progress.h"

#include "internal/batch_insert.h"

#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kodbc::transfer {

// Writes the records of a run: builds each INSERT and runs it, or in a dry
// run keeps the first one only. A create statement given runs just before
// the first record is written, so a source that cannot be read leaves no
// table behind; Start() runs it for a source without records.
//
// In batch mode the connection's auto-commit must be off (its owner's
// choice): the records go out in INSERTs of several records each, where the
// database takes them, within one transaction that Finish() commits. A
// failure undoes everything, the created table included (dropped where the
// database commits its DDL by itself), and names the record that failed.
class ImportRecordWriter {
public:
    ImportRecordWriter(SQLHDBC hdbc, const char *table, const ImportFieldList &fields, bool dryRun,
                       std::string create = {}, bool batch = false);
    // False when a statement was refused or failed (shown). at is where the
    // record stands in the source: its line (byLine) or its number.
    bool Write(const ImportFieldList &fields, long at = 0, bool byLine = false);
    // Runs the create statement unless it ran (or there is none, or the run
    // is dry). False when it was refused or failed (shown).
    bool Start();
    // Batch mode: writes what waits and commits. False after a failure
    // (shown; nothing is left). Otherwise Start().
    bool Finish();
    // Batch mode: undoes the run after the reading failed or the user
    // cancelled, and says so.
    void Abandon(bool cancelled);
    bool batch() const { return batch_ != nullptr; }
    // The first record's statement.
    const std::string &first() const { return first_; }

private:
    ImportInsertParts parts_;
    ImportStatementRunner runner_;
    std::unique_ptr<char[]> sql_;
    std::string first_;
    std::string create_;
    bool dryRun_;
    SQLHDBC hdbc_;
    std::string table_;
    // Batch mode: the INSERT every record's values follow, and the
    // transaction they go in.
    std::string head_;
    std::unique_ptr<BatchInsert> batch_;
};

// What the text format's and the number rule's ways changed on the way,
// for a summary after the run.
struct ImportNotes {
    long valuesCut = 0;      // values cut to kImportValueLength characters
    long linesCut = 0;       // lines cut to the line limit
    long numbersChanged = 0; // numbers that lost characters to the rule
    // The first of those numbers: the source's text, what it became, its
    // field, and the line (byLine) or record it stood in.
    std::string firstNumber, firstNumberAs, firstNumberField;
    long firstNumberAt = 0;
    bool byLine = false;      // the source's records are its lines...
    long linesBefore = 0;     // ...after this many others
};

struct ImportCounts {
    long expected = 0;       // records the progress runs over
    long written = 0;        // records written
    bool cancelled = false;  // the user stopped; what was written stays (not in batch mode)
    ImportNotes notes;
};

// A source file opened for binary reading; null after 3800 was shown.
using ImportFile = std::unique_ptr<std::FILE, int (*)(std::FILE *)>;
ImportFile OpenImportFile(const char *fileName);

// The non-empty lines from where reader stands to the end, which it then
// goes back to; -1 after a read error (3800 shown).
long CountRecordLines(LineReader &reader, const char *fileName);

// Value n to the field that reads source column n, for the first count
// values; with textSourcesOnly only fields whose source is text take one.
// False when out of memory (shown) or when a number field's value makes no
// number (3820 or 3821 shown, with the line or record after the counts'
// written ones). Numbers that lost characters are noted in counts.
bool SetRecordValues(ImportFieldList &fields, const std::vector<std::string> &values, std::size_t count,
                     char decimalMark, const std::string &folder, bool textSourcesOnly,
                     ImportCounts *counts = nullptr);

// What a source's reader made of its next record.
enum class RecordRead { Read, End, Failed };

// The loop every source shares: the progress runs from 1 to
// counts.expected; readRecord gives the fields their values, then the
// record is written and the values cleared, until the expected number, the
// source's end, a failure, or the user's cancel. A batch writer is then
// finished, or abandoned (written back to 0). True unless a record could
// not be read or written.
bool WriteRecords(ImportFieldList &fields, ImportRecordWriter &writer, wizards::WizardProgress &progress,
                  ImportCounts &counts, const std::function<RecordRead()> &readRecord);

// The fields of a text file from its first line (converted from the OEM
// code page for ASCII files). False when the file cannot be opened (3800
// shown); an empty first line gives no field.
bool DiscoverTextFields(const char *fileName, const ImportTextFormat &format, ImportFieldList &fields);

// Reads the file's records: skips the line of names, counts the non-empty
// lines after it and reads that many lines (an empty line among them is a
// record without values, so as many lines at the end stay unread), at most
// maxRecords. Value n of a line goes to the field of source column n when
// that field's source is text; values beyond the last field are ignored.
// A file-content field finds a name without a folder in the text file's
// folder. Stops at the first record that cannot be written, or when the
// user cancels. True when every record read was written (also after a
// cancel).
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

// The fields of an SDI file, with the contact-field conversion's keyword
// fields when conversion (read from the settings by the caller) is on and
// the file has prefixed fields; otherwise conversion is switched off. False
// when the file cannot be opened (3800) or does not follow the layout
// (3810 shown).
bool DiscoverSdiFields(const char *fileName, ImportFieldList &fields, ContactConversion &conversion);

// The contact-field conversion's settings as the user left them
// (TelFaxConverter, FieldnamePrefix, ContentsPrefix, FieldnameKeywords).
ContactConversion ReadContactConversion();

// Reads an SDI file's records: skips the header, counts the non-empty
// lines after it and reads that many lines, at most maxRecords, as the
// text-file run does; values are tab-separated OEM text, value n goes to
// the field of source column n (the keyword fields take none), then the
// contact conversion runs. Results as ImportTextRecords.
bool ImportSdiRecords(const char *fileName, ImportFieldList &fields, const ContactConversion &conversion,
                      ImportRecordWriter &writer, wizards::WizardProgress &progress, long maxRecords,
                      ImportCounts &counts);

// The fields of a SEL file. False when the file cannot be opened (3800) or
// does not follow the layout (3811 shown).
bool DiscoverSelFields(const char *fileName, ImportFieldList &fields);

// Reads a SEL file's records, at most as many as its second line
// announces and maxRecords: one line per field each; a file that ends
// inside a record ends the import there. Results as ImportTextRecords.
bool ImportSelRecords(const char *fileName, ImportFieldList &fields, ImportRecordWriter &writer,
                      wizards::WizardProgress &progress, long maxRecords, ImportCounts &counts);

} // namespace kodbc::transfer
