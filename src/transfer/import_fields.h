// The fields of an import, whatever the source (another table, a text
// file, the selection files): what each source column is, what it becomes
// in the new table, and the value it holds for the record being imported.
// The field page edits this list; the checks below decide whether it may
// be left.
#pragma once

#include <kodbc/kodbc_types.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace kodbc::transfer {

inline constexpr int kDefaultImportLength = 255;

struct ImportField {
    std::string sourceName;
    std::string sourceColumn;  // a table source's column as the catalogue names it
    int sourceType = KODBC_TYPE_VAR_TEXT;   // KODBC_TYPE_*
    int sourceLength = kDefaultImportLength;
    std::string targetName;
    int targetType = KODBC_TYPE_VAR_TEXT;
    int targetLength = kDefaultImportLength;
    bool autoIncrement = false;
    bool imported = true;
    bool fileContent = false;    // the value names a file whose content is imported instead
    bool noFileMessage = true;   // a file that cannot be opened leaves the field empty silently
    std::optional<std::string> value;  // the current record's value; none: NULL
    // The column of a source record the field reads, which stays with it
    // when the field is moved to another place in the list.
    std::size_t sourceIndex = 0;
};

using ImportFieldList = std::vector<ImportField>;

// Appends a field for a source column. Its name has every point replaced
// by "_"; when a field of that name exists already, "<name>_1", "<name>_2",
// ... are tried, formed from the name as it came (points kept), until one
// is free. Source and target both take that name, type and length; the
// field reads the source column of its position at the time it is added. A
// long-text or binary column cannot be carried over as it is: such a
// field becomes VarText of 255 and is not imported unless the user says so.
ImportField &AddImportField(ImportFieldList &fields, std::string_view name, int type = KODBC_TYPE_VAR_TEXT,
                            int length = kDefaultImportLength);

// Appends fields the way AddImportField does, in time proportional to the
// fields added: a name line of thousands of equal names would otherwise
// compare every new name with every field before it. The list must not be
// changed otherwise while the adder is in use.
class ImportFieldAdder {
public:
    explicit ImportFieldAdder(ImportFieldList &fields);
    ImportField &Add(std::string_view name, int type = KODBC_TYPE_VAR_TEXT, int length = kDefaultImportLength);

private:
    ImportFieldList &fields_;
    std::unordered_set<std::string> names_;
    // Per "<name>_", the number below which every numbered name is taken.
    std::unordered_map<std::string, std::size_t> next_;
};

// The first refusal of the field page, in the order the page checks: an
// imported field without a target name (over every field), forbidden characters in an imported target name (point, quotes, square
// and round brackets), a target name that occurs again in a later field,
// a second imported auto-increment field, a type conversion that makes no
// sense. The characters, auto-increment and conversion checks stop before
// the last field of the list, which they have never examined; the
// duplicate check sees it as the later partner. Last, a list with no
// imported field at all (its name is empty). message is 0 when the page
// may be left; field is the row to select, name the text the message
// shows.
struct ImportFieldCheck {
    int message = 0;
    std::size_t field = 0;
    std::string name;
};
ImportFieldCheck CheckImportFields(const ImportFieldList &fields);

// Every field without a value, for the next record.
void ClearImportValues(ImportFieldList &fields) noexcept;

} // namespace kodbc::transfer
