// The text import's way for comma-separated values, and the NULL text
// both text formats may be given.
#pragma once

#include "transfer/import_run.h"

namespace kodbc::transfer {

// The fields of a CSV file from its first record, as DiscoverTextFields.
bool DiscoverCsvFields(const char *fileName, const ImportTextFormat &format, ImportFieldList &fields);

// Reads a CSV file's records (counted first) as ImportTextRecords reads
// lines; a value that makes no number is told by its record.
bool ImportCsvRecords(const char *fileName, const ImportTextFormat &format, ImportFieldList &fields,
                      ImportRecordWriter &writer, wizards::WizardProgress &progress, long maxRecords,
                      ImportCounts &counts);

// SetRecordValues for a text file's record under the format's NULL text:
// a value equal to it (and not quoted, when quoted is given) is NULL, an
// empty value gives a text field an empty text. values may be changed.
bool SetTextRecordValues(ImportFieldList &fields, std::vector<std::string> &values, const std::vector<bool> *quoted,
                         std::size_t count, const ImportTextFormat &format, const std::string &folder,
                         ImportCounts &counts);

} // namespace kodbc::transfer
