// The delete-records wizard's core and its batch entry points.
#include "wizards/delete_records.h"

#include "internal/library.h"

#include <korvel/bounded_text.h>

#include <kodbc/kodbc_wizards.h>

#include <new>
#include <strings.h>

namespace kodbc::wizards {

std::unique_ptr<DeleteRecordsContext> CreateDeleteRecordsContext(SQLHDBC hdbc, const TableRecord *table,
                                                                 std::int32_t reserved) noexcept {
    std::unique_ptr<DeleteRecordsContext> context(new (std::nothrow) DeleteRecordsContext);
    if (!context || !context->selDesc.allocate(kDescriptorCapacity) ||
        !context->fieldList.allocate(kFieldListCapacity)) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return nullptr;
    }
    context->hdbc = hdbc;
    CopyTableRecord(context->table, table);
    context->reserved = reserved;
    return context;
}

void SelectTable(DeleteRecordsContext &context, const char *name) noexcept { StoreTableName(context.table, name); }

PageDecision LeaveTablePage(DeleteRecordsContext &context, unsigned direction, const char *selected) noexcept {
    return CheckTableChoice(context.table, direction, selected);
}

void ActivateConditionPage(DeleteRecordsContext &context) noexcept {
    const char *table = context.table.Object.DbObjectName;
    if (strncasecmp(table, context.lastAnalysed, sizeof context.lastAnalysed) == 0) return;
    context.selDesc.clear();
    ReadFieldList(context.hdbc, table, context.fieldList);
    korvel::BoundedText(context.lastAnalysed, sizeof context.lastAnalysed).append(table);
}

PageDecision LeaveConditionPage(DeleteRecordsContext &, unsigned) noexcept { return GoOn(); }

long DeleteSummaryText(SQLHDBC hdbc, const char *table, const char *selDesc, char *text, int size) noexcept {
    long count = CountSelectedRecords(hdbc, table, selDesc);
    // The number shown comes from a count of its own.
    if (count >= 1) count = CountSelectedRecords(hdbc, table, selDesc);
    FormatCountText(count < 1 ? msg::DELETE_NOTHING : msg::DELETE_RECORD_COUNT, count, text, size);
    return count;
}

long DeleteSummaryText(const DeleteRecordsContext &context, char *text, int size) noexcept {
    return DeleteSummaryText(context.hdbc, context.table.Object.DbObjectName, context.selDesc.get(), text, size);
}

PageDecision LeaveSummaryPage(const DeleteRecordsContext &context, unsigned direction) noexcept {
    if (!IsLeavingForwards(direction)) return GoOn();
    const int refusal =
        RecordStatementRefusal(context.hdbc, context.table.Object.DbObjectName, context.selDesc.get(), nullptr);
    return refusal ? Stay(refusal) : GoOn();
}

bool DeleteSelectedRecords(SQLHDBC hdbc, const char *table, const char *selDesc) noexcept {
    if (!hdbc || !table || !*table) return false;
    if (const int refusal = RecordStatementRefusal(hdbc, table, selDesc, nullptr)) {
        LibraryMessage(refusal);
        return false;
    }
    char statement[kStatementSize];
    if (BuildRecordStatement(hdbc, table, selDesc, nullptr, statement) != RecordStatement::Whole) return false;
    return RunRecordStatement(hdbc, statement);
}

bool DeleteSelectedRecords(const DeleteRecordsContext &context) noexcept {
    return DeleteSelectedRecords(context.hdbc, context.table.Object.DbObjectName, context.selDesc.get());
}

} // namespace kodbc::wizards

using namespace kodbc::wizards;

extern "C" {

KODBC_API long KODBC_CALL Kodbc_DeleteRecordsSummary(SQLHDBC hdbc, const char *table, const char *selDesc,
                                                     char *text, int textSize) {
    korvel::BoundedText(text, textSize);  // empties a usable buffer
    if (!hdbc || !table || !*table) return 0;
    return DeleteSummaryText(hdbc, table, selDesc, text, textSize);
}

KODBC_API int KODBC_CALL Kodbc_DeleteRecords(SQLHDBC hdbc, const char *table, const char *selDesc) {
    return DeleteSelectedRecords(hdbc, table, selDesc) ? KODBC_SUCCESS : KODBC_FAILURE;
}

KODBC_API int KODBC_CALL Kodbc_CheckRecordStatement(SQLHDBC hdbc, const char *table, const char *selDesc,
                                                    const char *setDesc) {
    if (!hdbc || !table || !*table) return KODBC_FAILURE;
    if (const int refusal = RecordStatementRefusal(hdbc, table, selDesc, setDesc)) {
        kodbc::LibraryMessage(refusal);
        return KODBC_FAILURE;
    }
    return KODBC_SUCCESS;
}

} // extern "C"
