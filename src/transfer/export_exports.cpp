#include "transfer/export_file.h"

#include "internal/library.h"
#include "internal/text.h"

#include <kodbc/kodbc_seldesc.h>
#include <kodbc/kodbc_tableops.h>
#include <kodbc/kodbc_transfer.h>

#include <memory>
#include <string>

using namespace kodbc;
using namespace kodbc::transfer;

namespace {

constexpr int kWhereSize = 10000;

ExportField *FindField(std::vector<ExportField> &fields, const std::string &name) {
    for (ExportField &field : fields)
        if (field.name == name) return &field;
    return nullptr;
}

// The caller's choice of fields and headings; false for a name the table lacks.
bool ChooseFields(std::vector<ExportField> &fields, const KodbcExportOptions &options) {
    const std::vector<std::string> chosen = SplitAtTabs(options.fields);
    if (!chosen.empty())
        for (ExportField &field : fields) field.exported = false;
    for (const std::string &entry : chosen) {
        const std::size_t equals = entry.find('=');
        ExportField *field = FindField(fields, entry.substr(0, equals));
        if (!field) return false;
        field->exported = true;
        if (equals != std::string::npos) field->exportName = entry.substr(equals + 1);
    }
    for (const std::string &name : SplitAtTabs(options.skip)) {
        ExportField *field = FindField(fields, name);
        if (!field) return false;
        field->exported = false;
    }
    return true;
}

ExportFormat FormatOf(const KodbcExportOptions &options) {
    ExportFormat format;
    format.encoding = (options.flags & KODBC_EXPORT_ASCII) ? ExportEncoding::Ascii : ExportEncoding::Ansi;
    format.header = (options.flags & KODBC_EXPORT_NO_HEADER) == 0;
    format.delimiter = options.delimiter == KODBC_EXPORT_BLANK   ? DelimiterChoice::Blank
                       : options.delimiter == KODBC_EXPORT_OTHER ? DelimiterChoice::Other
                                                                 : DelimiterChoice::Tab;
    format.otherDelimiter = std::string(options.otherDelimiter ? options.otherDelimiter : "").substr(0, 9);
    format.decimal = options.decimal == KODBC_EXPORT_POINT   ? DecimalChoice::Point
                     : options.decimal == KODBC_EXPORT_OTHER ? DecimalChoice::Other
                                                             : DecimalChoice::Comma;
    if (options.otherDecimal) format.otherDecimal = std::string(1, options.otherDecimal);
    format.leftBracket = options.leftBracket;
    format.rightBracket = options.rightBracket;
    format.csv = (options.flags & KODBC_EXPORT_CSV) != 0;
    format.germanDates = (options.flags & KODBC_EXPORT_GERMAN_DATES) != 0;
    if (format.csv) format.leftBracket = format.rightBracket = 0;
    if (options.nullText) format.nullText = options.nullText;
    return format;
}

} // namespace

extern "C" KODBC_API int KODBC_CALL Kodbc_ExportTable(SQLHDBC hdbc, const char *table, const char *selDesc,
                                                      const KodbcExportOptions *options, const char *fileName,
                                                      long *written) {
    if (written) *written = 0;
    if (!hdbc || !table || !*table || !fileName || !*fileName) return KODBC_FAILURE;
    try {
        const KodbcExportOptions defaults = {};
        const KodbcExportOptions &chosen = options ? *options : defaults;
        std::vector<ExportField> fields;
        if (!ReadExportFields(hdbc, table, fields)) return KODBC_FAILURE;
        if (fields.empty()) {
            LibraryMessage(msg::TABLE_HAS_NO_FIELDS, table);
            return KODBC_FAILURE;
        }
        if (!ChooseFields(fields, chosen) || !HasNamedExportField(fields)) return KODBC_FAILURE;
        auto where = std::make_unique<char[]>(kWhereSize);
        if (Kodbc_SelDesc_To_WhereClause(hdbc, selDesc ? selDesc : "", where.get(), kWhereSize) != 0)
            return KODBC_FAILURE;
        const long count = Kodbc_GetRecordCountExt(hdbc, table, where[0] ? where.get() : nullptr, 0);
        wizards::PlatformProgress progress(msg::CAPTION_EXPORT);
        ExportCounts counts;
        const bool ok = WriteExportFile(hdbc, ExportStatement(hdbc, table, fields, where.get()), fields,
                                        FormatOf(chosen), fileName, count, progress, &counts);
        if (written) *written = counts.written;
        if (!ok) return KODBC_FAILURE;
        return counts.cancelled ? KODBC_EXPORT_CANCELLED : KODBC_SUCCESS;
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
}
