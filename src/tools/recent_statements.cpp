#include "tools/recent_statements.h"

#include "internal/library.h"
#include "internal/text.h"

#include <korvel/korvel32.h>

#include <algorithm>
#include <cstdio>

namespace kodbc::tools {
namespace {

// "E%03d" names three digits: a larger Total was not written here, and a
// value edited by hand must not keep the dialog reading for ever.
constexpr long kHighestEntryNumber = 999;

std::string EntryName(std::size_t position) {
    char name[24];
    std::snprintf(name, sizeof name, "E%03zu", position);
    return name;
}

} // namespace

bool RecentStatements::Add(const std::string &statement) {
    if (statement.empty()) return false;
    char encoded[kRecentStatementSize];
    Korvel_EncodeString(statement.c_str(), encoded, sizeof encoded, 0);
    if (auto same = std::find(entries_.begin(), entries_.end(), statement); same != entries_.end())
        entries_.erase(same);
    entries_.insert(entries_.begin(), encoded);
    if (entries_.size() > kRecentStatementLimit) entries_.resize(kRecentStatementLimit);
    return true;
}

void RecentStatements::Load() {
    entries_.clear();
    const long total = std::min(
        Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kRegistryKey, 0, kRecentSection, "Total", 0), kHighestEntryNumber);
    for (long i = 1; i <= total; ++i) {
        char entry[kRecentStatementSize + 1];
        Korvel_ReadRegistryString(HKEY_CURRENT_USER, kRegistryKey, 0, kRecentSection,
                                  EntryName(static_cast<std::size_t>(i)).c_str(), "", entry, sizeof entry);
        if (!IsBlank(entry)) entries_.emplace_back(entry);
    }
}

bool RecentStatements::Save() const {
    Korvel_DeleteRegistryKey(HKEY_CURRENT_USER, kRegistryKey, 0, kRecentSection);
    bool written = Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, kRegistryKey, 0, kRecentSection, "Total",
                                              static_cast<long>(entries_.size())) == 1;
    for (std::size_t i = 0; i < entries_.size(); ++i)
        written = Korvel_WriteRegistryString(HKEY_CURRENT_USER, kRegistryKey, 0, kRecentSection,
                                             EntryName(i + 1).c_str(), entries_[i].c_str()) == 1 &&
                  written;
    return written;
}

std::string RecentStatements::Decoded(std::size_t index) const {
    if (index >= entries_.size()) return {};
    char text[kRecentStatementSize + 1];
    const std::size_t length = std::min(entries_[index].size(), sizeof text - 1);
    entries_[index].copy(text, length);
    text[length] = '\0';
    Korvel_DecodeString(text);
    return text;
}

std::string ReadPresetStatement() {
    char text[kRecentStatementSize + 1];
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, kRegistryKey, 0, kPresetSection, kPresetValue, "", text,
                              sizeof text);
    return text;
}

} // namespace kodbc::tools
