#include "transfer/import_fields.h"

#include "wizards/value_conversion.h"

#include <kodbc_internal/message_ids.h>

#include <algorithm>
#include <string>
#include <vector>

namespace kodbc::transfer {
namespace {

bool NameUsed(const ImportFieldList &fields, const std::string &name) {
    return std::any_of(fields.begin(), fields.end(),
                       [&](const ImportField &field) { return field.targetName == name; });
}

bool HasForbiddenCharacter(const std::string &name) {
    return name.find_first_of(".'\"[]()") != std::string::npos;
}

} // namespace

ImportField &AddImportField(ImportFieldList &fields, std::string_view name, int type, int length) {
    std::string unique(name);
    std::replace(unique.begin(), unique.end(), '.', '_');
    if (NameUsed(fields, unique)) {
        // The smallest number not yet behind the name, from one pass over
        // the list: trying the numbers one by one, a line of many equal
        // names passed over the whole list for every number it tried.
        const std::string stem = std::string(name) + "_";
        const std::size_t limit = fields.size() + 2;
        std::vector<char> taken(limit);
        for (const ImportField &field : fields) {
            const std::string &other = field.targetName;
            if (other.size() <= stem.size() || other.compare(0, stem.size(), stem) != 0 || other[stem.size()] == '0')
                continue;
            std::size_t n = 0;
            for (std::size_t i = stem.size(); n < limit && i < other.size(); ++i)
                n = other[i] >= '0' && other[i] <= '9' ? n * 10 + static_cast<std::size_t>(other[i] - '0') : limit;
            if (n < limit) taken[n] = true;
        }
        std::size_t n = 1;
        while (taken[n]) ++n;
        unique = stem + std::to_string(n);
    }

    ImportField field;
    field.sourceName = unique;
    field.targetName = unique;
    field.sourceType = field.targetType = type;
    field.sourceLength = field.targetLength = length;
    field.sourceIndex = fields.size();
    if (type == KODBC_TYPE_BINARY || type == KODBC_TYPE_LONG_TEXT) {
        field.targetType = KODBC_TYPE_VAR_TEXT;
        field.targetLength = kDefaultImportLength;
        field.imported = false;
    }
    fields.push_back(std::move(field));
    return fields.back();
}

ImportFieldCheck CheckImportFields(const ImportFieldList &fields) {
    // No table can have a column without a name, wherever it stands (two
    // of them would otherwise be taken for one name given twice).
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (fields[i].imported && fields[i].targetName.empty()) return {msg::IMPORT_NAME_EMPTY, i, {}};
    // The page has always stopped these checks one field short; users'
    // lists depend on the last field passing unexamined.
    const std::size_t examined = fields.empty() ? 0 : fields.size() - 1;
    for (std::size_t i = 0; i < examined; ++i)
        if (fields[i].imported && HasForbiddenCharacter(fields[i].targetName))
            return {msg::IMPORT_NAME_INVALID_CHARS, i, fields[i].targetName};
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (!fields[i].imported) continue;
        for (std::size_t j = i + 1; j < fields.size(); ++j)
            if (fields[j].targetName == fields[i].targetName)
                return {msg::IMPORT_NAME_TWICE, j, fields[i].targetName};
    }
    bool counting = false;
    for (std::size_t i = 0; i < examined; ++i) {
        if (!fields[i].imported || !fields[i].autoIncrement) continue;
        if (counting) return {msg::IMPORT_AUTOINC_TWICE, i, fields[i].targetName};
        counting = true;
    }
    for (std::size_t i = 0; i < examined; ++i) {
        const ImportField &field = fields[i];
        if (field.imported && field.targetType != field.sourceType &&
            !wizards::IsTypeCompatible(field.sourceType, field.targetType))
            return {msg::TYPE_CONVERSION_SENSELESS, i, field.sourceName};
    }
    // Nor a table without a column.
    if (std::none_of(fields.begin(), fields.end(), [](const ImportField &field) { return field.imported; }))
        return {msg::IMPORT_NOTHING_IMPORTED, 0, {}};
    return {};
}

void ClearImportValues(ImportFieldList &fields) noexcept {
    for (ImportField &field : fields) field.value.reset();
}

} // namespace kodbc::transfer
