#include "transfer/import_values.h"

#include "internal/library.h"
#include "wizards/record_statements.h"

#include <korvel/korvel32.h>

#include <cstdio>
#include <memory>
#include <new>

namespace kodbc::transfer {
namespace {

constexpr int kTimestampSize = 100;
// More than this cannot travel inside one INSERT anyway.
constexpr std::size_t kContentLimit = wizards::kRecordStatementSize;

bool HasFolder(const std::string &name) {
#ifdef _WIN32
    return name.find_first_of("\\/:") != std::string::npos;
#else
    return name.find('/') != std::string::npos;
#endif
}

void ReadContent(ImportField &field, const std::string &name, const std::string &folder) {
    const std::string path = HasFolder(name) ? name : folder + name;
    std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!file) {
        if (!field.noFileMessage) LibraryMessage(msg::IMPORT_CONTENT_FILE_ERROR, path.c_str(), field.targetName.c_str());
        return;
    }
    std::string content(kContentLimit, '\0');
    content.resize(std::fread(content.data(), 1, content.size(), file.get()));
    const std::size_t nul = content.find('\0');
    if (nul != std::string::npos) content.resize(nul);
    if (!content.empty()) field.value = std::move(content);
}

void KeepNumber(std::string_view text, char decimalMark, std::string &out) {
    out.clear();
    for (char c : text) {
        if (c == decimalMark) out.push_back('.');
        else if ((c >= '0' && c <= '9') || c == '+' || c == '-') out.push_back(c);
    }
}

} // namespace

bool SetImportValue(ImportField &field, std::string_view text, char decimalMark, const std::string &folder) noexcept {
    field.value.reset();
    if (text.empty()) return true;
    try {
        switch (field.targetType) {
        case KODBC_TYPE_FIXED_TEXT:
        case KODBC_TYPE_LONG_TEXT:
        case KODBC_TYPE_VAR_TEXT:
            if (field.fileContent) ReadContent(field, std::string(text), folder);
            else field.value.emplace(text);
            break;
        case KODBC_TYPE_INTEGER:
        case KODBC_TYPE_FLOAT:
            KeepNumber(text, decimalMark, field.value.emplace());
            break;
        case KODBC_TYPE_DATETIME: {
            KorvelDate date{};
            if (Korvel_StringToDate(std::string(text).c_str(), &date) != 1) break;
            char timestamp[kTimestampSize];
            const int length = Korvel_DateToTimestampText(&date, timestamp, sizeof timestamp);
            field.value.emplace(timestamp, static_cast<std::size_t>(length));
            break;
        }
        default:
            break;
        }
        return true;
    } catch (const std::bad_alloc &) {
        field.value.reset();
        return false;
    }
}

std::string FolderOf(const std::string &fileName) {
#ifdef _WIN32
    const std::size_t at = fileName.find_last_of("\\/:");
#else
    const std::size_t at = fileName.rfind('/');
#endif
    return at == std::string::npos ? std::string() : fileName.substr(0, at + 1);
}

} // namespace kodbc::transfer
