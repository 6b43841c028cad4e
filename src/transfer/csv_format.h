// Comma-separated values as other programs write and read them: a value
// that would break the record is put in quotes, a quote inside doubled,
// and line breaks inside a quoted value kept. The wizards' text format
// escapes nothing; this one is asked for explicitly.
#pragma once

#include "internal/csv_field.h"

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kodbc::transfer {

// A date, time or timestamp as "yyyy-mm-dd[ hh:mm:ss]" in place (size
// bytes); a text that is no date is left as it is.
void ToIsoDate(char *text, int size);

// Reads the records of a file. A record ends at a line feed outside
// quotes (a CR before it is dropped), so records may span lines; a value
// has no length limit. A quoted value loses its quotes and its doubled
// quotes become one; characters after the closing quote are kept. An empty
// line is no record. A file that ends inside quotes ends the record there.
class CsvReader {
public:
    CsvReader(std::FILE *file, char delimiter);
    // The next record's values into values (strings reused, count given),
    // and whether each was quoted. False at the end or on a read error.
    bool Next(std::vector<std::string> &values, std::vector<bool> &quoted, std::size_t &count);
    bool Error() const noexcept { return error_; }
    // Remembers where the reader stands; Rewind() goes back there (false
    // when the file cannot seek).
    void Mark() noexcept;
    bool Rewind();
    // The file line the last record began on, counted from 1.
    long Line() const noexcept { return recordLine_; }

private:
    int Get();
    std::FILE *file_;
    char delimiter_;
    std::unique_ptr<char[]> block_;
    std::size_t begin_ = 0, end_ = 0;
    long offset_ = 0, line_ = 1, recordLine_ = 0;
    long markOffset_ = 0, markLine_ = 1;
    bool error_ = false;
};

} // namespace kodbc::transfer
