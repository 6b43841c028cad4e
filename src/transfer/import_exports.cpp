#include "transfer/import_run.h"
#include "transfer/import_values.h"
#include "wizards/record_wizard_common.h"

#include "internal/datatypes.h"
#include "internal/library.h"

#include <korvel/bounded_text.h>

#include <kodbc/kodbc_transfer.h>

#include <climits>
#include <string>

using namespace kodbc;
using namespace kodbc::transfer;

namespace {

// A dry run reads one record and shows no progress for it.
class NoProgress final : public wizards::WizardProgress {
public:
    void Start(long) override {}
    bool Step(long) override { return false; }
    void Finish() override {}
};

ImportTextFormat TextFormatOf(const KodbcImportOptions &options) {
    ImportTextFormat format;
    format.ascii = (options.flags & KODBC_IMPORT_ASCII) != 0;
    format.namesInFirstLine = (options.flags & KODBC_IMPORT_NUMBERED_NAMES) == 0;
    format.delimiter = options.delimiter == KODBC_EXPORT_BLANK   ? DelimiterChoice::Blank
                       : options.delimiter == KODBC_EXPORT_OTHER ? DelimiterChoice::Other
                                                                 : DelimiterChoice::Tab;
    if (options.otherDelimiter) format.otherDelimiter = std::string(options.otherDelimiter).substr(0, 9);
    format.decimal = options.decimal == KODBC_EXPORT_POINT   ? DecimalChoice::Point
                     : options.decimal == KODBC_EXPORT_OTHER ? DecimalChoice::Other
                                                             : DecimalChoice::Comma;
    if (options.otherDecimal) format.otherDecimal = std::string(1, options.otherDecimal);
    format.leftBracket = options.leftBracket;
    format.rightBracket = options.rightBracket;
    format.csv = (options.flags & KODBC_IMPORT_CSV) != 0;
    if (format.csv) format.leftBracket = format.rightBracket = 0;
    if (options.nullText) format.nullText = options.nullText;
    return format;
}

// The caller's changes, as the field dialog would make them. The index of
// a change naming no field, else -1; -2 for a type outside the table.
int ApplyFieldChoices(ImportFieldList &fields, const KodbcImportOptions &options) {
    for (int i = 0; options.fields && i < options.fieldCount; ++i) {
        const KodbcImportField &choice = options.fields[i];
        ImportField *field = nullptr;
        for (ImportField &candidate : fields)
            if (choice.name && candidate.sourceName == choice.name) field = &candidate;
        if (!field) return i;
        if (choice.targetName && *choice.targetName) field->targetName = choice.targetName;
        if (choice.targetType) {
            if (!FindDataType(choice.targetType)) return -2;
            field->targetType = choice.targetType;
            // A field made importable again by its type is meant to be taken.
            field->imported = true;
        }
        if (choice.targetLength > 0) field->targetLength = choice.targetLength;
        if (choice.flags & KODBC_IMPORT_SKIP) field->imported = false;
        field->autoIncrement = (choice.flags & KODBC_IMPORT_AUTOINC) != 0;
        field->fileContent = (choice.flags & KODBC_IMPORT_FILE_CONTENT) != 0;
        field->noFileMessage = (choice.flags & KODBC_IMPORT_FILE_MESSAGE) == 0;
    }
    return -1;
}

std::string TableNameOf(const char *fileName) {
    std::string name = std::string(fileName).substr(FolderOf(fileName).size());
    const std::size_t dot = name.rfind('.');
    if (dot != std::string::npos && dot > 0) name.resize(dot);
    return name;
}

void Keep(const std::string &text, char *buffer, int size) {
    if (buffer && size > 0) korvel::BoundedText(buffer, size).append(text);
}

template <std::size_t N>
void Keep(const std::string &text, char (&buffer)[N]) {
    Keep(text, buffer, static_cast<int>(N));
}

void KeepNotes(const ImportFieldList &fields, const ImportNotes &notes, KodbcImportResult &result) {
    result.valuesCut = notes.valuesCut;
    result.linesCut = notes.linesCut;
    result.numbersChanged = notes.numbersChanged;
    result.firstNumberAt = notes.firstNumberAt;
    result.firstNumberInLine = notes.byLine ? 1 : 0;
    Keep(notes.firstNumber, result.firstNumber);
    Keep(notes.firstNumberAs, result.firstNumberAs);
    Keep(notes.firstNumberField, result.firstNumberField);
    std::string left;
    for (const ImportField &field : fields) {
        if (field.imported) continue;
        const char *why = field.sourceType == KODBC_TYPE_LONG_TEXT ? "LangText"
                          : field.sourceType == KODBC_TYPE_BINARY  ? "Bin\xC3\xA4rdaten"
                                                                   : "";
        left += field.sourceName + "\t" + why + "\n";
    }
    Keep(left, result.notImported);
}

// Everything after the fields were discovered: the caller's changes, the
// page's checks, the table and the records (read by readRecords).
template <class ReadRecords>
int RunImport(SQLHDBC hdbc, const std::string &table, ImportFieldList &fields, const KodbcImportOptions &options,
              KodbcImportResult *result, ReadRecords readRecords) {
    const int bad = ApplyFieldChoices(fields, options);
    if (bad >= 0) {
        if (result) result->badField = bad;
        return KODBC_IMPORT_NO_SUCH_FIELD;
    }
    if (bad == -2) return KODBC_FAILURE;
    const ImportFieldCheck check = CheckImportFields(fields);
    if (check.message) {
        LibraryMessage(check.message, check.name.c_str());
        return KODBC_FAILURE;
    }
    const bool dryRun = (options.flags & KODBC_IMPORT_DRY_RUN) != 0;
    const std::string create = CreateImportTableStatement(hdbc, table.c_str(), fields, CounterTypeName(hdbc));
    if (result) Keep(create, result->createStatement, result->createSize);

    ImportRecordWriter writer(hdbc, table.c_str(), fields, dryRun, create, (options.flags & KODBC_IMPORT_BATCH) != 0);
    ImportCounts counts;
    bool ok;
    if (dryRun) {
        NoProgress none;
        ok = readRecords(writer, none, 1L, counts);
        counts.written = 0;
    } else {
        wizards::PlatformProgress progress(msg::CAPTION_RECORD_PROGRESS);
        ok = readRecords(writer, progress, LONG_MAX, counts) && writer.Start();
    }
    if (result) {
        result->written = counts.written;
        Keep(writer.first(), result->firstInsert, result->insertSize);
        KeepNotes(fields, counts.notes, *result);
    }
    if (!ok) return KODBC_FAILURE;
    return counts.cancelled ? KODBC_IMPORT_CANCELLED : KODBC_SUCCESS;
}

void ClearResult(KodbcImportResult *result) {
    if (!result) return;
    char *create = result->createStatement, *insert = result->firstInsert;
    const int createSize = result->createSize, insertSize = result->insertSize;
    *result = KodbcImportResult{};
    result->createStatement = create;
    result->createSize = createSize;
    result->firstInsert = insert;
    result->insertSize = insertSize;
    result->badField = -1;
    Keep("", result->createStatement, result->createSize);
    Keep("", result->firstInsert, result->insertSize);
}

} // namespace

extern "C" KODBC_API int KODBC_CALL Kodbc_ImportTextFile(SQLHDBC hdbc, const char *table, const char *fileName,
                                                         const KodbcImportOptions *options,
                                                         KodbcImportResult *result) {
    ClearResult(result);
    if (!hdbc || !fileName || !*fileName) return KODBC_FAILURE;
    try {
        const KodbcImportOptions defaults = {};
        const KodbcImportOptions &chosen = options ? *options : defaults;
        const std::string name = table && *table ? std::string(table) : TableNameOf(fileName);
        ImportFieldList fields;
        switch (chosen.kind) {
        case KODBC_IMPORT_KIND_TEXT: {
            const ImportTextFormat format = TextFormatOf(chosen);
            if (!DiscoverTextFields(fileName, format, fields)) return KODBC_FAILURE;
            if (fields.empty()) {
                LibraryMessage(msg::IMPORT_NO_FIELDS, fileName);
                return KODBC_FAILURE;
            }
            return RunImport(hdbc, name, fields, chosen, result,
                             [&](ImportRecordWriter &writer, wizards::WizardProgress &progress, long most,
                                 ImportCounts &counts) {
                                 return ImportTextRecords(fileName, format, fields, writer, progress, most, counts);
                             });
        }
        case KODBC_IMPORT_KIND_SDI: {
            ContactConversion conversion = ReadContactConversion();
            if (!DiscoverSdiFields(fileName, fields, conversion)) return KODBC_FAILURE;
            return RunImport(hdbc, name, fields, chosen, result,
                             [&](ImportRecordWriter &writer, wizards::WizardProgress &progress, long most,
                                 ImportCounts &counts) {
                                 return ImportSdiRecords(fileName, fields, conversion, writer, progress, most,
                                                         counts);
                             });
        }
        case KODBC_IMPORT_KIND_SEL:
            if (!DiscoverSelFields(fileName, fields)) return KODBC_FAILURE;
            return RunImport(hdbc, name, fields, chosen, result,
                             [&](ImportRecordWriter &writer, wizards::WizardProgress &progress, long most,
                                 ImportCounts &counts) {
                                 return ImportSelRecords(fileName, fields, writer, progress, most, counts);
                             });
        default:
            return KODBC_FAILURE;
        }
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
}

extern "C" KODBC_API int KODBC_CALL Kodbc_ImportTable(SQLHDBC hdbc, const char *table, SQLHDBC source,
                                                      const char *sourceTable, const KodbcImportOptions *options,
                                                      KodbcImportResult *result) {
    ClearResult(result);
    if (!hdbc || !source || !sourceTable || !*sourceTable) return KODBC_FAILURE;
    try {
        const KodbcImportOptions defaults = {};
        const KodbcImportOptions &chosen = options ? *options : defaults;
        ImportFieldList fields;
        if (!DiscoverTableFields(source, sourceTable, fields)) return KODBC_FAILURE;
        if (fields.empty()) {
            LibraryMessage(msg::TABLE_HAS_NO_FIELDS, sourceTable);
            return KODBC_FAILURE;
        }
        const std::string name = table && *table ? table : sourceTable;
        return RunImport(hdbc, name, fields, chosen, result,
                         [&](ImportRecordWriter &writer, wizards::WizardProgress &progress, long most,
                             ImportCounts &counts) {
                             return ImportTableRecords(wizards::SourceQueryConnection(source, hdbc), sourceTable,
                                                       fields, writer, progress, most, counts);
                         });
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
}
