// Type compatibility and value conversion of the add-records wizard.
#include "wizards/value_conversion.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_types.h>

#include <new>

namespace kodbc::wizards {
namespace {

bool IsTextType(int type) noexcept {
    return type == KODBC_TYPE_FIXED_TEXT || type == KODBC_TYPE_LONG_TEXT || type == KODBC_TYPE_VAR_TEXT;
}

bool IsNumberType(int type) noexcept { return type == KODBC_TYPE_INTEGER || type == KODBC_TYPE_FLOAT; }

// The date that fills in what a typed date leaves out.
KorvelDate StartDate() noexcept {
    KorvelDate date{};
    date.year = 1900;
    date.month = 1;
    date.day = 1;
    return date;
}

// The parser reads at most a short text; longer input is no date anyway.
bool ReadDate(std::string_view value, KorvelDate &date) noexcept {
    char text[64];
    if (value.size() >= sizeof text) return false;
    value.copy(text, value.size());
    text[value.size()] = '\0';
    return Korvel_StringToDate(text, &date) == 1;
}

void KeepOnly(std::string_view value, std::string_view allowed, std::string &out) {
    out.clear();
    for (char c : value)
        if ((c >= '0' && c <= '9') || allowed.find(c) != std::string_view::npos) out.push_back(c);
}

} // namespace

bool IsTypeCompatible(int sourceType, int destinationType) noexcept {
    if (sourceType == destinationType) return true;
    if (IsNumberType(sourceType)) return IsTextType(destinationType) || IsNumberType(destinationType);
    if (sourceType == KODBC_TYPE_DATETIME)
        return destinationType == KODBC_TYPE_FIXED_TEXT || destinationType == KODBC_TYPE_DATETIME ||
               destinationType == KODBC_TYPE_VAR_TEXT;
    return true;
}

bool ConvertSourceValue(int sourceType, int destinationType, std::string_view value, std::string &out) noexcept {
    try {
        if (IsTextType(destinationType)) {
            if (sourceType == KODBC_TYPE_INTEGER) {
                KeepOnly(value, "-+", out);
                return true;
            }
            if (sourceType == KODBC_TYPE_FLOAT) {
                KeepOnly(value, "-+.", out);
                return true;
            }
            if (sourceType == KODBC_TYPE_DATETIME) {
                KorvelDate date = StartDate();
                ReadDate(value, date);
                char text[32];
                out.assign(text, static_cast<std::size_t>(Korvel_FormatDate(&date, "%D1.%M1.%Y2", text, sizeof text)));
                return true;
            }
        } else if (destinationType == KODBC_TYPE_DATETIME && IsTextType(sourceType)) {
            KorvelDate date = StartDate();
            ReadDate(value, date);
            char text[32];
            out.assign(text, static_cast<std::size_t>(Korvel_DateToTimestampText(&date, text, sizeof text)));
            return true;
        }
        out.assign(value);
        return true;
    } catch (const std::bad_alloc &) {
        return false;
    }
}

} // namespace kodbc::wizards
