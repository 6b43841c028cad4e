// Fuzzes the selection files' readers: the SDI header with its field lines and FORMAT words, the SEL
// header with its counts, field lines and records, and the contact-field conversion over SDI files.
// Input: byte 0 the kind (bit 0: SEL, else SDI), the rest the file.
#include "fuzz_support.h"

#include "transfer/import_selection_files.h"

#include <algorithm>

using fuzz::Check;
using namespace kodbc::transfer;

namespace {

// A header gives fields, each with a name of its own.
void CheckFields(const ImportFieldList &fields) {
    Check(!fields.empty());
    fuzz::CheckUniqueNames(fields);
    for (const ImportField &field : fields) {
        Check(!field.targetName.empty() && field.targetLength == kDefaultImportLength);
        Check(field.targetName.find('.') == std::string::npos || field.targetName.find('_') != std::string::npos);
    }
}

void Sdi(LineReader &reader) {
    ImportFieldList fields;
    if (!ReadSdiHeader(reader, fields)) return;
    CheckFields(fields);
    for (const ImportField &field : fields)
        Check(field.targetType == KODBC_TYPE_VAR_TEXT || field.targetType == KODBC_TYPE_INTEGER ||
              field.targetType == KODBC_TYPE_FLOAT || field.targetType == KODBC_TYPE_DATETIME);

    const std::size_t fileFields = fields.size();
    ContactConversion conversion;
    conversion.on = true;
    conversion.keywords = SplitKeywords("Telefon,Handy,Telefax,eMail,Telefon_Privat");
    AddContactFields(fields, conversion);
    Check(fields.size() == fileFields + (conversion.on ? conversion.keywords.size() : 0));
    for (std::size_t i = 0; i < fileFields; ++i) {
        const bool prefixed = !PrefixedNumber(fields[i].sourceName, conversion.namePrefix).empty() ||
                              !PrefixedNumber(fields[i].sourceName, conversion.contentsPrefix).empty();
        Check(fields[i].imported == !prefixed);
        Check(!prefixed || conversion.on);
    }

    // The records, as the run hands them on, through the conversion.
    std::string_view line;
    std::vector<std::string> values;
    std::string ansi;
    while (reader.Next(line)) {
        const std::size_t count = SplitLine(OemLineToAnsi(line, ansi), '\t', 0, 0, values);
        ClearImportValues(fields);
        for (std::size_t i = 0; i < count && i < fileFields; ++i)
            if (!values[i].empty()) fields[i].value = values[i];
        ConvertContacts(fields, conversion);
        // A contact field's value is one of the file's.
        for (auto added = fields.begin() + fileFields; added != fields.end(); ++added)
            Check(!added->value || std::any_of(fields.begin(), fields.begin() + fileFields,
                                               [&](const ImportField &field) { return field.value == added->value; }));
    }
}

void Sel(LineReader &reader) {
    ImportFieldList fields;
    long records = 0;
    if (!ReadSelHeader(reader, fields, records)) return;
    CheckFields(fields);
    std::vector<std::string> values;
    while (ReadSelRecord(reader, fields.size(), values)) {
        Check(values.size() == fields.size());
        for (const std::string &value : values)
            Check(value.empty() || (value.front() != ' ' && value.back() != ' '));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 1) return 0;
    fuzz::MemoryFile file(data, size, 1);
    if (!file.file) return 0;
    LineReader reader(file.file);
    if (data[0] & 1) Sel(reader);
    else Sdi(reader);
    return 0;
}
