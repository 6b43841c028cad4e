// The update-records wizard's core and its batch entry point.
#include "wizards/update_records.h"

#include "internal/library.h"

#include <korvel/bounded_text.h>

#include <kodbc/kodbc_seldesc.h>
#include <kodbc/kodbc_wizards.h>

#include <new>

namespace kodbc::wizards {
namespace {

bool HasSetClause(SQLHDBC hdbc, const char *setDesc) {
    char set[kSetCheckSize];
    Kodbc_OpDesc_To_SetClause(hdbc, setDesc, set, sizeof set);
    return set[0] != '\0';
}

} // namespace

std::unique_ptr<UpdateRecordsContext> CreateUpdateRecordsContext(SQLHDBC hdbc, const TableRecord *table,
                                                                 std::int32_t reserved) noexcept {
    std::unique_ptr<UpdateRecordsContext> context(new (std::nothrow) UpdateRecordsContext);
    if (!context || !context->selDesc.allocate(kDescriptorCapacity) ||
        !context->setDesc.allocate(kDescriptorCapacity) || !context->fieldList.allocate(kFieldListCapacity)) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return nullptr;
    }
    context->hdbc = hdbc;
    CopyTableRecord(context->table, table);
    context->reserved = reserved;
    return context;
}

void SelectTable(UpdateRecordsContext &context, const char *name) noexcept {
    StoreTableName(context.table, name);
    context.selDesc.clear();
    context.setDesc.clear();
}

PageDecision LeaveTablePage(UpdateRecordsContext &context, unsigned direction, const char *selected) noexcept {
    PageDecision decision = CheckTableChoice(context.table, direction, selected);
    if (decision.goOn && IsLeavingForwards(direction))
        ReadFieldList(context.hdbc, context.table.Object.DbObjectName, context.fieldList);
    return decision;
}

PageDecision LeaveConditionPage(UpdateRecordsContext &context, unsigned direction) noexcept {
    if (!IsLeavingForwards(direction)) return GoOn();
    long count = CountSelectedRecords(context.hdbc, context.table.Object.DbObjectName, context.selDesc.get());
    context.recordCount = static_cast<std::int32_t>(count);
    return count > 0 ? GoOn() : Stay(msg::NO_MATCHING_RECORDS);
}

PageDecision LeaveAssignmentPage(UpdateRecordsContext &context, unsigned direction) noexcept {
    if (!IsLeavingForwards(direction)) return GoOn();
    return HasSetClause(context.hdbc, context.setDesc.get()) ? GoOn() : Stay(msg::SET_AT_LEAST_ONE_FIELD);
}

void ConfirmationText(const UpdateRecordsContext &context, char *text, int size) noexcept {
    FormatCountText(msg::UPDATE_RECORD_COUNT, context.recordCount, text, size);
}

void ResultText(const UpdateRecordsContext &context, char *text, int size) noexcept {
    // The count taken on the condition page, not what the driver reports.
    FormatCountText(msg::UPDATE_DONE, context.recordCount, text, size);
}

PageDecision LeaveConfirmationPage(UpdateRecordsContext &context, unsigned direction) noexcept {
    if (!IsLeavingForwards(direction)) return GoOn();
    if (const int refusal = RecordStatementRefusal(context.hdbc, context.table.Object.DbObjectName,
                                                   context.selDesc.get(), context.setDesc.get()))
        return Stay(refusal);
    if (UpdateSelectedRecords(context.hdbc, context.table.Object.DbObjectName, context.selDesc.get(),
                              context.setDesc.get()))
        return GoOn();
    return PageDecision{false, 0, PageFocus::None};
}

bool UpdateSelectedRecords(SQLHDBC hdbc, const char *table, const char *selDesc, const char *setDesc) noexcept {
    if (!hdbc || !table || !*table) return false;
    if (const int refusal = RecordStatementRefusal(hdbc, table, selDesc, setDesc ? setDesc : "")) {
        LibraryMessage(refusal);
        return false;
    }
    char statement[kStatementSize];
    if (BuildRecordStatement(hdbc, table, selDesc, setDesc ? setDesc : "", statement) != RecordStatement::Whole)
        return false;
    return RunRecordStatement(hdbc, statement);
}

} // namespace kodbc::wizards

using namespace kodbc;
using namespace kodbc::wizards;

extern "C" {

KODBC_API int KODBC_CALL Kodbc_UpdateRecords(SQLHDBC hdbc, const char *table, const char *selDesc,
                                             const char *setDesc, long *count) {
    if (count) *count = 0;
    if (!hdbc || !table || !*table) return KODBC_FAILURE;
    // The checks the condition and assignment pages make, in their order.
    long matching = CountSelectedRecords(hdbc, table, selDesc);
    if (count) *count = matching;
    if (matching <= 0) {
        LibraryMessage(msg::NO_MATCHING_RECORDS);
        return KODBC_FAILURE;
    }
    if (!HasSetClause(hdbc, setDesc)) {
        LibraryMessage(msg::SET_AT_LEAST_ONE_FIELD);
        return KODBC_FAILURE;
    }
    return UpdateSelectedRecords(hdbc, table, selDesc, setDesc) ? KODBC_SUCCESS : KODBC_FAILURE;
}

} // extern "C"
