#include "tabledesign/create_table.h"

#include "internal/execution.h"
#include "internal/library.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_sqltext.h>
#include <kodbc/kodbc_tableops.h>

#include <memory>

namespace kodbc::tabledesign {
namespace {

constexpr int kAddressColumnsSize = 200;
constexpr char kSettings[] = "Create Table";

CreateTableStatement Format(SQLHDBC hdbc, int bufferSize, const char *sqlTemplate, const char *arg1,
                            const char *arg2) {
    auto buffer = std::make_unique<char[]>(static_cast<std::size_t>(bufferSize));
    Kodbc_SprintfSqlStatement(hdbc, buffer.get(), bufferSize, sqlTemplate, arg1, arg2, nullptr, nullptr, nullptr,
                              nullptr, nullptr, nullptr);
    return {buffer.get(), bufferSize};
}

} // namespace

StructureChoice ChooseStructure(const DbCapabilityRow &capabilities, int storedKind) {
    StructureChoice choice{true, capabilities.selectInto, storedKind};
    if (storedKind != kCopiedStructure && storedKind != kAddressTable) choice.checkedKind = kAutoIncrementTable;
    if (!SupportsAutoIncrement(capabilities)) {
        choice.autoIncrementEnabled = false;
        choice.checkedKind = kAddressTable;
    }
    return choice;
}

std::string ProposeNewTableName(SQLHDBC hdbc) {
    char name[kNewTableNameSize] = {};
    LoadLibraryString(LibraryInstance(), msg::NAME_NEW_TABLE, name, sizeof name);
    Kodbc_CreateUniqueTableName(hdbc, name, sizeof name);
    return name;
}

int CheckNewTableName(SQLHDBC hdbc, const char *name) {
    if (!name || !*name) return msg::SELECT_TABLE;
    if (Kodbc_DoesTableExist(hdbc, KODBC_OBJECT_ALL, name) == 1) return msg::TABLE_OR_VIEW_EXISTS;
    return 0;
}

CreateTablePlan PlanCreateTable(SQLHDBC hdbc, const DbCapabilityRow &capabilities, int kind, const char *name,
                                const char *source) {
    CreateTablePlan plan;
    switch (kind) {
    case kAutoIncrementTable:
        if (!SupportsAutoIncrement(capabilities)) {
            plan.refusal = msg::AUTOINC_NOT_SUPPORTED;
            break;
        }
        plan.statements.push_back(Format(hdbc, 300, "CREATE TABLE %t (Id %s)", name, capabilities.autoIncrementColumn));
        break;
    case kCopiedStructure:
        // The wizard has always answered a missing SELECT INTO with the
        // auto-increment message; users' documentation shows that text.
        if (!capabilities.selectInto) {
            plan.refusal = msg::AUTOINC_NOT_SUPPORTED;
            break;
        }
        // The condition that never holds copies the structure without rows.
        plan.statements.push_back(Format(hdbc, 200, "SELECT * INTO %t FROM %t WHERE 3=5", name, source));
        break;
    default: {
        char columns[kAddressColumnsSize] = {};
        LoadLibraryString(LibraryInstance(), msg::ADDRESS_TABLE_COLUMNS, columns, sizeof columns);
        plan.statements.push_back(Format(hdbc, 400, "CREATE TABLE %t (%s)", name, columns));
        if (SupportsAutoIncrement(capabilities))
            plan.statements.push_back(
                Format(hdbc, 300, "ALTER TABLE %t ADD Id %s", name, capabilities.autoIncrementColumn));
        break;
    }
    }
    return plan;
}

bool RunCreateTable(SQLHDBC hdbc, const CreateTablePlan &plan) {
    if (plan.refusal) {
        LibraryMessage(plan.refusal);
        return false;
    }
    // One statement handle carries them all, as the wizard always ran them.
    odbc::Statement handle;
    for (const CreateTableStatement &statement : plan.statements) {
        const char *sql = statement.text.c_str();
        if (!handle.ok()) {
            if (!PrepareStatement(hdbc, sql, handle, statement.bufferSize)) return false;
        } else if (Korvel_DumpSqlStatement(sql, statement.bufferSize) != 1) {
            return false;
        }
        if (ExecuteStatement(handle, sql, nullptr) != ExecOutcome::Executed) return false;
    }
    return true;
}

void LoadCreateTableContext(CreateTableContext &context, SQLHDBC hdbc) {
    context.hdbc = hdbc;
    context.kind = static_cast<int>(
        Korvel_ReadRegistryNumber(HKEY_CURRENT_USER, kRegistryKey, 0, kSettings, "Type", kAutoIncrementTable));
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, kRegistryKey, 0, kSettings, "Copy", "", context.source,
                              sizeof context.source);
    korvel::BoundedText(context.name, sizeof context.name).append(ProposeNewTableName(hdbc));
}

void LeaveStructurePage(CreateTableContext &context, int checkedKind) {
    context.kind = checkedKind;
    Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, kRegistryKey, 0, kSettings, "Type", checkedKind);
}

wizards::PageDecision LeaveSourcePage(CreateTableContext &context, unsigned direction, const char *selected) {
    if (!wizards::IsLeavingForwards(direction)) return wizards::GoOn();
    if (!selected || !*selected) return wizards::Stay(msg::SELECT_TABLE, wizards::PageFocus::TableList);
    korvel::BoundedText(context.source, sizeof context.source).append(selected);
    Korvel_WriteRegistryString(HKEY_CURRENT_USER, kRegistryKey, 0, kSettings, "Copy", context.source);
    return wizards::GoOn();
}

wizards::PageDecision LeaveNamePage(const CreateTableContext &context, unsigned direction) {
    if (!wizards::IsLeavingForwards(direction)) return wizards::GoOn();
    const int refusal = CheckNewTableName(context.hdbc, context.name);
    return refusal ? wizards::Stay(refusal) : wizards::GoOn();
}

bool CreateChosenTable(const CreateTableContext &context) {
    return RunCreateTable(context.hdbc, PlanCreateTable(context.hdbc, context.kind, context.name, context.source));
}

int FinishCreateTable(const CreateTableContext &context, char *tableName, int size) {
    if (!CreateChosenTable(context)) return KODBC_FAILURE;
    korvel::BoundedText(tableName, size).append(context.name);
    return KODBC_SUCCESS;
}

} // namespace kodbc::tabledesign
