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
// - Ganzzahl, Gleitkommazahl: the number ToNumberText makes of it; a text
//   that makes no single number gives no value and NotANumber;
// - Datum/Zeit: read as a German (or ODBC) date and written as ODBC
//   timestamp text; a text that is no date leaves the field empty;
// - any other type: no value.
// numberChanged (may be null) tells whether a number lost characters.
enum class ValueResult { Taken, NotANumber, OutOfMemory };
ValueResult SetImportValue(ImportField &field, std::string_view text, char decimalMark, const std::string &folder,
                           bool *numberChanged = nullptr) noexcept;

// The text of a number as a statement takes it bare: the digits and the
// signs, each decimal mark turned into a point, every other character
// (blanks, thousands marks, currency signs) dropped; an exponent ("e" or
// "E", a sign, digits: "1,0e+20", "-2.5E-7") after a mantissa with digits
// is kept as "e" and its signed digits. Number when the result is one
// number ("[+-]digits[.digits][e[+-]digits]"), Empty when nothing is left,
// NotANumber otherwise ("12-05-2024"), which must never reach a statement
// bare. dropped tells whether characters other than blanks were dropped.
enum class NumberText { Number, Empty, NotANumber };
NumberText ToNumberText(std::string_view text, char decimalMark, std::string &out, bool &dropped);

// The folder part of a file name, with its separator ("" when none).
std::string FolderOf(const std::string &fileName);

} // namespace kodbc::transfer
