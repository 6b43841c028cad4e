// Fuzzes the name rules: bracket and SQL-92 preparation, lists, quoting, stripping and the schema
// split, each into a heap buffer of exactly the stated size so that a write past it is caught.
// Input: byte 0 the buffer size, byte 1 picks the quote text and flags, the rest (up to a zero byte)
// the name or list.
#include "fuzz_support.h"

using namespace kodbc::sqltext;
using fuzz::Buffer;
using fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t length) {
    if (length < 2) return 0;
    const int size = bytes[0];
    const std::string name = fuzz::Pieces(bytes, length, 2, 1)[0];
    const char *quoteText = fuzz::kQuotes[bytes[1] & 7];
    const int flags = (bytes[1] >> 3) & 1;
    const char separator = (bytes[1] & 0x10) ? '\t' : ',';
    QuoteText quote = QuoteText::Fixed(quoteText);

    {   // Bracket style in place; brackets come off again for simple names.
        Buffer b(size, name);
        const std::string before(size > 0 ? b.data : "");
        PrepareBracketName(b.data, b.size, flags);
        Check(b.terminated());
        if (flags == 0 && !before.empty() && before.size() <= 97 && before.find_first_of(".[]") == std::string::npos &&
            !IsBlank(before) && before != "*" && static_cast<int>(before.size()) + 2 < size) {
            StripDelimiters(b.data, '[', ']');
            Check(before == b.data);
        }
    }
    {   // SQL-92 style: into another buffer and in place give the same text.
        Buffer apart(size), inPlace(size, name);
        Check(PrepareSql92Name(quote, name.c_str(), apart.data, apart.size));
        const bool whole = size > 0 && inPlace.data == name;
        Check(PrepareSql92Name(quote, inPlace.data, inPlace.data, inPlace.size));
        Check(apart.terminated() && inPlace.terminated());
        if (whole) Check(std::strcmp(apart.data, inPlace.data) == 0);
        // A plain identifier that fits needs no quoting.
        if (size > 0 && IsPlainSqlIdentifier(name) && name.size() < 200 && name.size() < static_cast<std::size_t>(size))
            Check(name == apart.data);
    }
    {   // Both list styles, and whole-name quoting.
        Buffer out(size), list(size, name), whole(size, name);
        PrepareBracketNameList(name.c_str(), separator, out.data, out.size, flags);
        Check(PrepareSql92NameList(quote, list.data, list.size, separator, (bytes[1] & 0x20) ? '\0' : ';'));
        QuoteIfNotPlain(quote, whole.data, whole.size);
        Check(out.terminated() && list.terminated() && whole.terminated());
    }
    {   // Stripping only shortens.
        std::string copy = name;
        StripDelimiters(copy.data(), quoteText[0], quoteText[0]);
        Check(std::strlen(copy.c_str()) <= name.size());
    }
    {   // The schema split, including the name living in an output buffer.
        Buffer schema(size / 2 + 1), table(size - size / 2 + 1);
        ParseSchemaAndTable(name.c_str(), flags != 0, schema.data, schema.size, table.data, table.size);
        Check(schema.size < 2 || table.size < 2 || (schema.terminated() && table.terminated()));
        table.load(name);
        ParseSchemaAndTable(table.data, true, schema.data, schema.size, table.data, table.size);
        Check(schema.size < 2 || table.size < 2 || (schema.terminated() && table.terminated()));
    }
    return 0;
}
