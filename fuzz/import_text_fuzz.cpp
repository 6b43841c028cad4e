// Fuzzes the text import's reader: lines of any bytes (line ends, NUL bytes, no end at all), the
// fields of the first line with their unique names, and the values of every further line.
// Input: byte 0 flags (bit 0: brackets, bit 1: numbered names), byte 1 the delimiter, bytes 2 and 3
// the left and right bracket, the rest the file.
#include "fuzz_support.h"

#include "transfer/import_text.h"

using fuzz::Check;
using namespace kodbc::transfer;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 4) return 0;
    ImportTextFormat format;
    format.delimiter = DelimiterChoice::Other;
    format.otherDelimiter = std::string(1, static_cast<char>(data[1]));
    format.namesInFirstLine = (data[0] & 2) == 0;
    if (data[0] & 1) {
        format.leftBracket = static_cast<char>(data[2]);
        format.rightBracket = static_cast<char>(data[3]);
    }
    fuzz::MemoryFile file(data, size, 4);
    if (!file.file) return 0;

    LineReader reader(file.file);
    std::string_view line;
    long lines = 0;
    std::vector<std::string> values;
    while (reader.Next(line)) {
        Check(line.size() < kImportLineSize);
        Check(line.find('\n') == std::string_view::npos && line.find('\0') == std::string_view::npos);
        const std::size_t count =
            SplitLine(line, format.Delimiter(), format.leftBracket, format.rightBracket, values);
        Check(line.empty() == (count == 0));
        for (std::size_t i = 0; i < count; ++i) {
            Check(values[i].size() <= kImportValueLength);
            if (!format.leftBracket) Check(values[i].find(format.Delimiter()) == std::string::npos);
        }
        if (lines++ == 0) {
            ImportFieldList fields;
            FieldsFromNameLine(line, format, fields);
            Check(fields.size() == count);
            fuzz::CheckUniqueNames(fields);
            for (const ImportField &field : fields) Check(field.targetType == KODBC_TYPE_VAR_TEXT && field.imported);
        }
    }
    // Every byte was read, and reading again from the start sees as much.
    Check(!reader.Error() && reader.Offset() == static_cast<long>(file.bytes.size()));
    Check(reader.Rewind(0));
    while (reader.Next(line)) --lines;
    Check(lines == 0);
    return 0;
}
