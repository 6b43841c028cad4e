// Reading the family's two selection files for an import: the Windows one
// (SDI: a header, one line of blank-separated words per field, records of
// tab-separated values) and the older one (SEL: counts, comma-separated
// field lines, then one line per value). Both are written in the OEM code
// page. Also the contact-field conversion an SDI import may apply, which
// turns pairs of "kind of contact" and "number" fields into one field per
// kind. Nothing here talks to the user or the database.
#pragma once

#include "transfer/import_fields.h"
#include "transfer/import_text.h"

#include <string>
#include <string_view>
#include <vector>

namespace kodbc::transfer {

// An SDI header line keeps at most this many bytes, its terminator's place
// included; a SEL value line at most kSelValueLength characters.
inline constexpr std::size_t kSdiHeaderLineSize = 400;
inline constexpr std::size_t kSelValueLength = 999;
inline constexpr std::size_t kSelNameLength = 99;
inline constexpr std::size_t kSelFormatLength = 49;

// line from the OEM into the ANSI code page; buffer holds the result.
std::string_view OemLineToAnsi(std::string_view line, std::string &buffer);

// Reads an SDI header from the start of the file up to and including the
// line after the field lines: "SDI" (any case), three lines the program
// does not need, the number of fields (at least 1), a line per field. Each
// field is named by its line's first word after its last point, made
// unique, VarText unless a word "FORMAT=x..." of at least 9 characters
// says otherwise (the last one wins): D or T date/time, N then G integer,
// N then anything else floating-point. Length 255. False (fields then
// undefined) when a line is missing or wrong.
bool ReadSdiHeader(LineReader &reader, ImportFieldList &fields);

// Reads a SEL header: a line the program does not need, "fields,records",
// then a line per field whose third comma-separated item is the name
// (blanks trimmed, at most 99 characters; empty: "Unbenannt_<index>") and
// whose fourth is the format (at most 49 characters; the second of at
// least three characters F, G or N makes a floating-point field, anything
// else VarText). records receives the number of records the file
// announces. False when a line is missing or fewer than one field is
// announced.
bool ReadSelHeader(LineReader &reader, ImportFieldList &fields, long &records);

// The values of one SEL record: count lines, each cut to 999 characters,
// blanks trimmed on both sides, converted to ANSI. False when the file ends
// before the record is complete.
bool ReadSelRecord(LineReader &reader, std::size_t count, std::vector<std::string> &values);

// The contact-field conversion: fields named name prefix + one or two
// digits say what kind of contact the field named contents prefix + the
// same digits holds; kinds listed as keywords get fields of their own.
struct ContactConversion {
    bool on = false;
    std::string namePrefix = "Ko_Name";
    std::string contentsPrefix = "Ko_Nummer";
    std::vector<std::string> keywords;
};

// The comma-separated keywords (empty items left out).
std::vector<std::string> SplitKeywords(std::string_view text);

// The digits of name when it is prefix (any case) followed by exactly one
// or two decimal digits; empty otherwise.
std::string_view PrefixedNumber(std::string_view name, std::string_view prefix);

// With the conversion on: appends one VarText field per keyword and takes
// every prefixed field out of the import. When no field carries either
// prefix the keyword fields go again and the conversion is switched off
// for this file.
void AddContactFields(ImportFieldList &fields, ContactConversion &conversion);

// One record's conversion: for each name field holding a keyword (any
// case), the keyword's field receives the value of the contents field with
// the same digits, when both fields exist. Does nothing when off.
void ConvertContacts(ImportFieldList &fields, const ContactConversion &conversion);

} // namespace kodbc::transfer
