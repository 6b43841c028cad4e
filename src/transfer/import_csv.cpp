#include "transfer/import_csv.h"

#include "internal/library.h"
#include "transfer/csv_format.h"
#include "transfer/import_selection_files.h"
#include "transfer/import_values.h"

#include <algorithm>

namespace kodbc::transfer {
namespace {

bool IsTextType(int type) {
    return type == KODBC_TYPE_FIXED_TEXT || type == KODBC_TYPE_VAR_TEXT || type == KODBC_TYPE_LONG_TEXT;
}

// The record's values from the OEM code page, for ASCII files.
void ToAnsi(std::vector<std::string> &values, std::size_t count) {
    std::string buffer;
    for (std::size_t i = 0; i < count; ++i) values[i] = std::string(OemLineToAnsi(values[i], buffer));
}

} // namespace

bool SetTextRecordValues(ImportFieldList &fields, std::vector<std::string> &values, const std::vector<bool> *quoted,
                         std::size_t count, const ImportTextFormat &format, const std::string &folder,
                         ImportCounts &counts) {
    const char mark = format.DecimalMark();
    if (!format.nullText) return SetRecordValues(fields, values, count, mark, folder, true, &counts);
    std::vector<bool> emptyText(count, false);
    for (std::size_t i = 0; i < count; ++i) {
        const bool isQuoted = quoted && (*quoted)[i];
        if (values[i] == *format.nullText && !isQuoted) values[i].clear();
        else emptyText[i] = values[i].empty();
    }
    if (!SetRecordValues(fields, values, count, mark, folder, true, &counts)) return false;
    for (ImportField &field : fields)
        if (field.sourceIndex < count && emptyText[field.sourceIndex] && IsTextType(field.sourceType) &&
            IsTextType(field.targetType) && !field.fileContent)
            field.value.emplace();
    return true;
}

bool DiscoverCsvFields(const char *fileName, const ImportTextFormat &format, ImportFieldList &fields) {
    fields.clear();
    ImportFile file = OpenImportFile(fileName);
    if (!file) return false;
    CsvReader reader(file.get(), format.Delimiter());
    std::vector<std::string> names;
    std::vector<bool> quoted;
    std::size_t count = 0;
    if (!reader.Next(names, quoted, count)) return !reader.Error();
    if (format.ascii) ToAnsi(names, count);
    ImportFieldAdder adder(fields);
    for (std::size_t i = 0; i < count; ++i) adder.Add(format.namesInFirstLine ? names[i] : "F" + std::to_string(i));
    return true;
}

bool ImportCsvRecords(const char *fileName, const ImportTextFormat &format, ImportFieldList &fields,
                      ImportRecordWriter &writer, wizards::WizardProgress &progress, long maxRecords,
                      ImportCounts &counts) {
    counts = ImportCounts();
    ImportFile file = OpenImportFile(fileName);
    if (!file) return false;
    CsvReader reader(file.get(), format.Delimiter());
    std::vector<std::string> values;
    std::vector<bool> quoted;
    std::size_t count = 0;
    if (format.namesInFirstLine) reader.Next(values, quoted, count);
    reader.Mark();
    long records = 0;
    while (reader.Next(values, quoted, count)) ++records;
    if (reader.Error() || !reader.Rewind()) {
        LibraryMessage(msg::IMPORT_FILE_OPEN_ERROR, fileName);
        return false;
    }
    counts.expected = std::min(records, maxRecords);

    const std::string folder = FolderOf(fileName);
    return WriteRecords(fields, writer, progress, counts, [&] {
        if (!reader.Next(values, quoted, count)) return RecordRead::End;
        if (format.ascii) ToAnsi(values, count);
        return SetTextRecordValues(fields, values, &quoted, count, format, folder, counts) ? RecordRead::Read
                                                                                           : RecordRead::Failed;
    });
}

} // namespace kodbc::transfer
