#include "transfer/import_fields.h"

#include "wizards/value_conversion.h"

#include <kodbc_internal/message_ids.h>

#include <algorithm>
#include <string>
#include <vector>

namespace kodbc::transfer {
namespace {

bool HasForbiddenCharacter(const std::string &name) {
    return name.find_first_of(".'\"[]()") != std::string::npos;
}

} // namespace

ImportField &AddImportField(ImportFieldList &fields, std::string_view name, int type, int length) {
    return ImportFieldAdder(fields).Add(name, type, length);
}

ImportFieldAdder::ImportFieldAdder(ImportFieldList &fields) : fields_(fields) {
    for (const ImportField &field : fields) names_.insert(field.targetName);
}

ImportField &ImportFieldAdder::Add(std::string_view name, int type, int length) {
    std::string unique(name);
    std::replace(unique.begin(), unique.end(), '.', '_');
    if (names_.count(unique) != 0) {
        // The smallest number not yet behind the name; names only come in
        // while the adder lives, so the search goes on where it last ended.
        const std::string stem = std::string(name) + "_";
        std::size_t &n = next_[stem];
        n = std::max<std::size_t>(n, 1);
        while (names_.count(stem + std::to_string(n)) != 0) ++n;
        unique = stem + std::to_string(n);
    }
    names_.insert(unique);

    ImportField field;
    field.sourceName = unique;
    field.targetName = unique;
    field.sourceType = field.targetType = type;
    field.sourceLength = field.targetLength = length;
    field.sourceIndex = fields_.size();
    if (type == KODBC_TYPE_BINARY || type == KODBC_TYPE_LONG_TEXT) {
        field.targetType = KODBC_TYPE_VAR_TEXT;
        field.targetLength = kDefaultImportLength;
        field.imported = false;
    }
    fields_.push_back(std::move(field));
    return fields_.back();
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
