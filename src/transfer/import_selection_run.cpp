// The selection files' field discovery and record loops over the import's
// shared record loop.
#include "transfer/import_run.h"

#include "internal/library.h"
#include "transfer/import_values.h"

#include <korvel/korvel32.h>

#include <algorithm>

namespace kodbc::transfer {
namespace {

constexpr const char *kContactKey = "Software\\Korvel Software\\Brano";
constexpr const char *kContactSection = "Settings";
constexpr int kPrefixSize = 50;
constexpr int kKeywordsSize = 1000;
// The selection files hold numbers as German users type them.
constexpr char kSelectionDecimalMark = ',';

} // namespace

ContactConversion ReadContactConversion() {
    ContactConversion conversion;
    conversion.on = Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kContactKey, 0, kContactSection, "TelFaxConverter",
                                              0) != 0;
    char text[kKeywordsSize];
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, kContactKey, 0, kContactSection, "FieldnamePrefix", "Ko_Name", text,
                              kPrefixSize);
    conversion.namePrefix = text;
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, kContactKey, 0, kContactSection, "ContentsPrefix", "Ko_Nummer",
                              text, kPrefixSize);
    conversion.contentsPrefix = text;
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, kContactKey, 0, kContactSection, "FieldnameKeywords",
                              "Telefon,Handy,Telefax,eMail,Telefon_Privat", text, sizeof text);
    conversion.keywords = SplitKeywords(text);
    return conversion;
}

bool DiscoverSdiFields(const char *fileName, ImportFieldList &fields, ContactConversion &conversion) {
    fields.clear();
    ImportFile file = OpenImportFile(fileName);
    if (!file) return false;
    LineReader reader(file.get());
    if (!ReadSdiHeader(reader, fields)) {
        fields.clear();
        LibraryMessage(msg::IMPORT_SDI_INVALID, fileName);
        return false;
    }
    AddContactFields(fields, conversion);
    return true;
}

bool ImportSdiRecords(const char *fileName, ImportFieldList &fields, const ContactConversion &conversion,
                      ImportRecordWriter &writer, wizards::WizardProgress &progress, long maxRecords,
                      ImportCounts &counts) {
    counts = ImportCounts();
    ImportFile file = OpenImportFile(fileName);
    if (!file) return false;
    LineReader reader(file.get());
    ImportFieldList header;
    if (!ReadSdiHeader(reader, header)) {
        LibraryMessage(msg::IMPORT_SDI_INVALID, fileName);
        return false;
    }
    counts.notes.byLine = true;
    counts.notes.linesBefore = reader.Lines();
    const long lines = CountRecordLines(reader, fileName);
    if (lines < 0) return false;
    counts.expected = std::min(lines, maxRecords);

    // The keyword fields come after the file's own and take no value of it.
    const std::size_t fileFields = header.size();
    const std::string folder = FolderOf(fileName);
    std::vector<std::string> values;
    std::string ansi;
    return WriteRecords(fields, writer, progress, counts, [&] {
        std::string_view line;
        if (!reader.Next(line)) return RecordRead::End;
        std::size_t cut = 0;
        const std::size_t found = SplitLine(OemLineToAnsi(line, ansi), '\t', 0, 0, values, &cut);
        counts.notes.valuesCut += static_cast<long>(cut);
        if (reader.Cut()) ++counts.notes.linesCut;
        if (!SetRecordValues(fields, values, std::min(found, fileFields), kSelectionDecimalMark, folder, false,
                             &counts))
            return RecordRead::Failed;
        ConvertContacts(fields, conversion);
        return RecordRead::Read;
    });
}

bool DiscoverSelFields(const char *fileName, ImportFieldList &fields) {
    fields.clear();
    ImportFile file = OpenImportFile(fileName);
    if (!file) return false;
    LineReader reader(file.get());
    long records = 0;
    if (!ReadSelHeader(reader, fields, records)) {
        fields.clear();
        LibraryMessage(msg::IMPORT_SEL_INVALID, fileName);
        return false;
    }
    return true;
}

bool ImportSelRecords(const char *fileName, ImportFieldList &fields, ImportRecordWriter &writer,
                      wizards::WizardProgress &progress, long maxRecords, ImportCounts &counts) {
    counts = ImportCounts();
    ImportFile file = OpenImportFile(fileName);
    if (!file) return false;
    LineReader reader(file.get());
    ImportFieldList header;
    long records = 0;
    if (!ReadSelHeader(reader, header, records)) {
        LibraryMessage(msg::IMPORT_SEL_INVALID, fileName);
        return false;
    }
    counts.expected = std::max(0L, std::min(records, maxRecords));

    const std::string folder = FolderOf(fileName);
    std::vector<std::string> values;
    return WriteRecords(fields, writer, progress, counts, [&] {
        if (!ReadSelRecord(reader, header.size(), values)) return RecordRead::End;
        return SetRecordValues(fields, values, values.size(), kSelectionDecimalMark, folder, false, &counts)
                   ? RecordRead::Read
                   : RecordRead::Failed;
    });
}

} // namespace kodbc::transfer
