// The create-table wizard's work, for its pages and the command-line tool:
// which structures a database can have, the proposed name, the checks of a
// chosen name and the statements of each structure.
#pragma once

#include "internal/db_capabilities.h"

#include "wizards/record_wizard_common.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kodbc::tabledesign {

// The three structures, numbered as their buttons and the stored "Type".
enum CreateTableKind : int {
    kAutoIncrementTable = 2100,  // one auto-incrementing column "Id"
    kCopiedStructure = 2101,     // the empty structure of another table
    kAddressTable = 2102,        // a sample address table
};

inline constexpr int kNewTableNameSize = 50;

// What the structure page offers: a database without an auto-incrementing
// definition cannot have the first kind and gets the address table
// preselected; one without SELECT INTO cannot copy a structure, but a
// stored choice of it stays checked on the disabled button (and then
// fails when the table is created, as the wizard always did).
struct StructureChoice {
    bool autoIncrementEnabled;
    bool copyEnabled;
    int checkedKind;
};
StructureChoice ChooseStructure(const DbCapabilityRow &capabilities, int storedKind);

// "Neue_Tabelle", made the name of no object on the connection.
std::string ProposeNewTableName(SQLHDBC hdbc);

// 0 when a table may be created under name; else the message that refuses
// it: 1625 for an empty name, 1616 when any object has that name.
int CheckNewTableName(SQLHDBC hdbc, const char *name);

// One statement of a creation, formatted for the connection, with the size
// of the buffer it was formed in.
struct CreateTableStatement {
    std::string text;
    int bufferSize;
};
struct CreateTablePlan {
    int refusal = 0;  // message shown instead of any statement (1642), 0: none
    std::vector<CreateTableStatement> statements;  // run in order; the first failure ends
};
// The statements that create table name of kind (source: the table whose
// structure is copied, for kCopiedStructure only), formatted for hdbc, by
// the capabilities of its database or those given.
CreateTablePlan PlanCreateTable(SQLHDBC hdbc, const DbCapabilityRow &capabilities, int kind, const char *name,
                                const char *source);
inline CreateTablePlan PlanCreateTable(SQLHDBC hdbc, int kind, const char *name, const char *source) {
    return PlanCreateTable(hdbc, CapabilitiesOf(hdbc), kind, name, source);
}

// Shows the plan's refusal, or offers each statement to the dump and runs
// it (errors shown with the statement). True when every statement ran. A
// failure after the first statement leaves the table as far as it came.
bool RunCreateTable(SQLHDBC hdbc, const CreateTablePlan &plan);

// The wizard's state. The kind and the source table are remembered under
// HKEY_CURRENT_USER, the library's key, subkey "Create Table" ("Type",
// "Copy") as the pages are left.
struct CreateTableContext {
    std::intptr_t wizard = 0;  // the frame's handle, stored on every callback
    SQLHDBC hdbc = nullptr;
    int kind = kAutoIncrementTable;
    char name[kNewTableNameSize] = {};
    char source[kNewTableNameSize] = {};
};

// A context with the stored kind and source and the proposed name.
void LoadCreateTableContext(CreateTableContext &context, SQLHDBC hdbc);

// Leaving the structure page, either way: the checked kind is kept and
// stored. Always goes on.
void LeaveStructurePage(CreateTableContext &context, int checkedKind);
// Leaving the source page forwards: nothing selected is refused with 1625;
// else the table is kept and stored.
wizards::PageDecision LeaveSourcePage(CreateTableContext &context, unsigned direction, const char *selected);
// Leaving the name page forwards: the name checked by CheckNewTableName.
wizards::PageDecision LeaveNamePage(const CreateTableContext &context, unsigned direction);

// After "Fertigstellen": the table of the chosen kind (messages shown).
bool CreateChosenTable(const CreateTableContext &context);

// The wizard's end after "Fertigstellen": the table created, its name handed
// back in tableName (size bytes); KODBC_FAILURE, the name untouched, when
// the database refused it.
int FinishCreateTable(const CreateTableContext &context, char *tableName, int size);

} // namespace kodbc::tabledesign
