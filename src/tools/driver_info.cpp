#include "tools/driver_info.h"

#include "internal/driver_info.h"
#include "internal/library.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_connect.h>
#include <kodbc/kodbc_tools.h>

#include <cstdio>

namespace kodbc::tools {
namespace {

constexpr int kInfoSize = 100;       // each SQLGetInfo text
constexpr int kDatabaseSize = 500;   // the database name
constexpr int kQuoteSize = 10;       // SQL_IDENTIFIER_QUOTE_CHAR
constexpr int kLineSize = 100;       // the delimiter line, 99 characters

// Each buffer starts cleared, so a refused query shows an empty field
// rather than what an earlier one left.
std::string Info(SQLHDBC hdbc, SQLUSMALLINT item) {
    char text[kInfoSize] = {};
    GetInfoText(hdbc, item, text, sizeof text);
    return text;
}

} // namespace

std::string DelimiterLine(const char *quoteText) {
    char format[kLineSize] = {};
    LoadLibraryString(LibraryInstance(), msg::DRIVER_INFO_DELIMITER, format, sizeof format);
    const auto first = static_cast<unsigned char>(quoteText[0]);
    char line[kLineSize] = {};
    std::snprintf(line, sizeof line, format, quoteText, static_cast<int>(first), static_cast<unsigned>(first));
    return line;
}

std::array<DriverInfoField, kDriverInfoFieldCount> ReadDriverInformation(SQLHDBC hdbc) {
    char database[kDatabaseSize] = {};
    Kodbc_GetDatabaseName(hdbc, database, sizeof database);
    char quote[kQuoteSize] = {};
    GetInfoText(hdbc, SQL_IDENTIFIER_QUOTE_CHAR, quote, sizeof quote);
    return {{
        {msg::DRIVER_INFO_DATA_SOURCE, Info(hdbc, SQL_DATA_SOURCE_NAME)},
        {msg::DRIVER_INFO_DBMS, Info(hdbc, SQL_DBMS_NAME)},
        {msg::DRIVER_INFO_DBMS_VERSION, Info(hdbc, SQL_DBMS_VER)},
        {msg::DRIVER_INFO_ODBC_VERSION, Info(hdbc, SQL_DRIVER_ODBC_VER)},
        {msg::DRIVER_INFO_DRIVER_VERSION, Info(hdbc, SQL_DRIVER_VER)},
        {msg::DRIVER_INFO_DATABASE, database},
        {msg::DRIVER_INFO_QUOTE, DelimiterLine(quote)},
    }};
}

} // namespace kodbc::tools

using namespace kodbc;

extern "C" KODBC_API int KODBC_CALL Kodbc_GetDriverInformation(SQLHDBC hdbc, char *out, int size) {
    korvel::BoundedText text(out, size);
    if (!hdbc || !text.valid()) return KODBC_FAILURE;
    try {
        for (const tools::DriverInfoField &field : tools::ReadDriverInformation(hdbc)) {
            char label[tools::kDriverInfoLabelSize] = {};
            LoadLibraryString(LibraryInstance(), field.labelId, label, sizeof label);
            if (text.length() != 0) text.append('\n');
            text.append(label);
            text.append('\t');
            text.append(field.value);
        }
        return KODBC_SUCCESS;
    } catch (...) {
        text.clear();
        return KODBC_FAILURE;
    }
}
