// The add-records work for batch callers: the wizard's mapping, checks and
// work loop without its pages.
#include "wizards/add_records.h"
#include "wizards/add_records_run.h"

#include "internal/library.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_wizards.h>

#include <strings.h>

using namespace kodbc;
using namespace kodbc::wizards;

namespace {

AddRecField *FindDestinationField(AddRecFieldList &fields, const char *name) {
    if (!name) return nullptr;
    for (const auto &field : fields)
        if (field && strcasecmp(field->destinationName.c_str(), name) == 0) return field.get();
    return nullptr;
}

// The source connection belongs to the caller: the context must not
// disconnect it when it goes.
struct BorrowedSource {
    AddRecordsContext &context;
    ~BorrowedSource() {
        context.sourceEnv = nullptr;
        context.sourceDbc = nullptr;
    }
};

int AddRecords(SQLHDBC destination, const char *destinationTable, SQLHDBC source, const char *sourceTable,
               const KodbcAddRecordsOptions *options, KodbcAddRecordsResult *result) {
    if (!destination || !source || !destinationTable || !*destinationTable || !sourceTable || !*sourceTable)
        return KODBC_FAILURE;
    TableRecord table{};
    KorvelCopyString(table.Object.DbObjectName, destinationTable, sizeof table.Object.DbObjectName);
    std::unique_ptr<AddRecordsContext> context = CreateAddRecordsContext(destination, &table);
    if (!context) return KODBC_FAILURE;
    BorrowedSource borrowed{*context};
    context->sourceDbc = source;
    KorvelCopyString(context->sourceTable, sourceTable, sizeof context->sourceTable);
    if (!BuildMapping(*context)) return KODBC_FAILURE;

    const int count = options && options->Fields ? options->FieldCount : 0;
    for (int i = 0; i < count; ++i) {
        const KodbcAddRecordsField &choice = options->Fields[i];
        AddRecField *field = FindDestinationField(context->fields, choice.DestinationField);
        const char *value = choice.Value ? choice.Value : "";
        if (!field || !ApplyFieldChoice(*field, choice.Mode, value, value)) {
            if (result) result->RefusedField = i;
            return KODBC_ADDREC_REFUSED_CHOICE;
        }
    }
    if (LeaveMappingPage(*context).stays()) return KODBC_FAILURE;

    const int32_t mode = options ? options->RecordMode & ~KODBC_ADDREC_BATCH : KODBC_ADDREC_ADD;
    context->batch = options && (options->RecordMode & KODBC_ADDREC_BATCH) != 0;
    if (mode == KODBC_ADDREC_REPLACE) {
        context->recordMode = kRecordModeReplace;
        KorvelCopyString(context->sourceIdField, options->SourceIdField, sizeof context->sourceIdField);
        KorvelCopyString(context->destIdField, options->DestIdField, sizeof context->destIdField);
    } else {
        context->recordMode = kRecordModeAdd;
    }

    PlatformProgress progress(msg::CAPTION_RECORD_PROGRESS);
    AddRecordsRunCounts counts;
    if (RunAddRecords(*context, progress, &counts) != KODBC_SUCCESS) return KODBC_FAILURE;
    if (result) {
        result->RecordsRead = counts.read;
        result->RecordsWritten = counts.written;
        result->Ended = counts.cancelled ? KODBC_ADDREC_CANCELLED
                        : counts.stopped ? KODBC_ADDREC_STOPPED
                                         : KODBC_ADDREC_COMPLETE;
        result->ValuesCut = counts.valuesCut;
        result->NumbersChanged = counts.numbersChanged;
        result->FirstNumberRecord = counts.firstNumberRecord;
        KorvelCopyString(result->FirstNumber, counts.firstNumber.c_str(), sizeof result->FirstNumber);
        KorvelCopyString(result->FirstNumberAs, counts.firstNumberAs.c_str(), sizeof result->FirstNumberAs);
        KorvelCopyString(result->FirstNumberField, counts.firstNumberField.c_str(), sizeof result->FirstNumberField);
    }
    return KODBC_SUCCESS;
}

} // namespace

extern "C" {

KODBC_API int KODBC_CALL Kodbc_AddRecords(SQLHDBC destination, const char *destinationTable, SQLHDBC source,
                                          const char *sourceTable, const KodbcAddRecordsOptions *options,
                                          KodbcAddRecordsResult *result) {
    if (result) {
        *result = KodbcAddRecordsResult{};
        result->RefusedField = -1;
    }
    try {
        return AddRecords(destination, destinationTable, source, sourceTable, options, result);
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_FAILURE;
    }
}

} // extern "C"
