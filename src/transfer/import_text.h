// Reading a delimited text file for an import: its format, the lines, the
// values of a line, and the fields its first line gives. Nothing here talks
// to the user or the database, so the pieces run on any bytes.
#pragma once

#include "transfer/export_file.h"
#include "transfer/import_fields.h"

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kodbc::transfer {

// A line keeps at most this many bytes, its terminator's place included.
inline constexpr std::size_t kImportLineSize = 30000;
// A value keeps at most this many characters.
inline constexpr std::size_t kImportValueLength = 99;
inline constexpr int kFormatDescriptionSize = 400;

struct ImportTextFormat {
    bool ascii = false;             // the file is in the OEM code page
    bool namesInFirstLine = true;   // else the fields are F0, F1, ...
    DelimiterChoice delimiter = DelimiterChoice::Tab;
    std::string otherDelimiter;     // its first character is the delimiter
    DecimalChoice decimal = DecimalChoice::Comma;
    std::string otherDecimal;       // its first character is the mark
    char leftBracket = 0;           // 0: none
    char rightBracket = 0;
    bool csv = false;               // comma-separated values (no brackets, no cut)
    // A value equal to it is NULL and an empty value an empty text; none:
    // an empty value is NULL.
    std::optional<std::string> nullText;

    // 0 for "other" without a character: nothing splits a line then.
    char Delimiter() const noexcept;
    // "other" without a character falls back to the point.
    char DecimalMark() const noexcept;
};

// The summary "file\encoding\names\delimiter\mark\left\right" of what a
// field discovery depended on; fields are discovered again only when it
// changes. A bracket of 0 ends the text where it stands, as it always has,
// so the right bracket only counts when there is a left one.
std::string FormatDescription(const char *fileName, const ImportTextFormat &format);

// Reads a file line by line through a block buffer. A line ends at a line
// feed, a carriage return before it is dropped, and the last line needs no
// end. A line keeps its first kImportLineSize-1 bytes; the rest of an
// overlong line is read and thrown away, so one line of the file is always
// one record. A NUL byte ends the line's text there (the rest of that
// line is dropped), as every text after it is a terminated string.
class LineReader {
public:
    explicit LineReader(std::FILE *file);
    // The next line into line (valid until the next call). False at the end
    // of the file or on a read error.
    bool Next(std::string_view &line);
    // Bytes of the file consumed by the lines read so far.
    long Offset() const noexcept { return offset_; }
    // Goes back to offset (one that Offset() gave). False when the file
    // cannot seek.
    bool Rewind(long offset);
    bool Error() const noexcept { return error_; }
    // Whether the last line read was cut to the limit.
    bool Cut() const noexcept { return cut_; }
    // Lines read so far (going back does not count them down).
    long Lines() const noexcept { return lines_; }

private:
    bool Fill();
    std::FILE *file_;
    std::unique_ptr<char[]> block_;
    std::size_t begin_ = 0, end_ = 0;
    long offset_ = 0;
    long lines_ = 0;
    bool error_ = false, cut_ = false;
    std::string line_;
};

// Splits a line into values. The delimiter ends a value outside brackets;
// the left bracket opens a stretch inside which the delimiter is an
// ordinary character and which the right bracket closes (the same
// character may be both: a doubled one closes and reopens, leaving
// nothing). Brackets are dropped, nothing is trimmed, a value keeps its
// first kImportValueLength characters. An empty line gives no value. The
// strings of values are reused; count is the number of values. cut (may be
// null) receives the number of values cut.
std::size_t SplitLine(std::string_view line, char delimiter, char leftBracket, char rightBracket,
                      std::vector<std::string> &values, std::size_t *cut = nullptr);

// The fields of a file whose first line (already in the ANSI code page)
// is line: one per value, named by the value or "F0", "F1", ..., each
// VarText of 255, imported.
void FieldsFromNameLine(std::string_view line, const ImportTextFormat &format, ImportFieldList &fields);

} // namespace kodbc::transfer
