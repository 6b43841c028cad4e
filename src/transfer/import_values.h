// How a value read from an import's source becomes the value of its field
// in the new table.
#pragma once

#include "transfer/import_fields.h"

#include <string>
#include <string_view>

namespace kodbc::transfer {

// Gives field the value text (as the source holds it) by the field's target
// type; an empty text leaves it without a value (NULL):
// - FixText, LangText, VarText: the text as it stands; for a file-content
//   field the text names a file, and the file's bytes are the value (a
//   name without a folder is looked for in folder, which ends in a
//   separator or is empty). The bytes are taken up to the first NUL byte,
//   which no text column and no statement text can hold, and up to what an
//   INSERT can carry; a file that cannot be opened leaves the field empty,
//   with message 3805 unless the field says not to tell;
// - Ganzzahl, Gleitkommazahl: only the digits and the signs, each decimal
//   mark turned into a point, every other character (blanks, thousands
//   marks, currency signs) dropped;
// - Datum/Zeit: read as a German (or ODBC) date and written as ODBC
//   timestamp text; a text that is no date leaves the field empty;
// - any other type: no value.
// Returns false only when out of memory.
bool SetImportValue(ImportField &field, std::string_view text, char decimalMark, const std::string &folder) noexcept;

// The folder part of a file name, with its separator ("" when none).
std::string FolderOf(const std::string &fileName);

} // namespace kodbc::transfer
