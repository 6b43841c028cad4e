// A stored view: the view in the database and, beside it in the system
// table, the query designer's descriptors it was made from, so that it can
// be opened in the designer again. The view dialog and the database-object
// dialog work on this object.
#pragma once

#include <kodbc/kodbc_types.h>

#include <string>

namespace kodbc::select {

inline constexpr int kViewModeNew = 0x1;
inline constexpr int kViewModeExisting = 0x2;
inline constexpr int kViewModeCallers = 0x1000000;  // set by both callers

inline constexpr int kViewDropTolerateAll = 0x1;
inline constexpr int kViewDropTolerateMissing = 0x2;

inline constexpr int kViewNameLimit = 99;

struct ViewObject {
    SQLHDBC hdbc = nullptr;
    std::string schema;
    std::string name;
    std::string openingName;  // the name when the dialog opened
    std::string sql;
    std::string tables;
    std::string columns = "*";
    std::string selection;
    int mode = 0;
    bool showing = false;  // set while the dialog itself writes the name and SQL fields
};

// A view object in schema: with a name, its design read from the system
// table; without one, named "Neue_Abfrage" made unique among the schema's
// objects.
ViewObject NewViewObject(SQLHDBC hdbc, const std::string &schema, const std::string &name, int mode);

// The name proposed for a copy: "Kopie_von_<name>" made unique.
std::string CopyName(SQLHDBC hdbc, const std::string &schema, const std::string &name);

// Reads "Sql", "Tables", "Columns" ("*" when missing) and "Selection".
void LoadViewObject(ViewObject &view);

// An existing view without its "Sql" item cannot be edited: message 1612
// is shown and false returned.
bool HasStoredDefinition(const ViewObject &view);

// CREATE VIEW under name (empty: the object's name) from the SQL text, then
// the four items for that name. 1 done, 2 for an empty name or SQL text or
// a failure (shown).
int CreateStoredView(ViewObject &view, const std::string &name = {});

// The database's drop statement for the view, tolerating every error or a
// missing view as `tolerance` says; on success the view's items go too.
int DropStoredView(const ViewObject &view, const std::string &name, int tolerance);

// Creates and drops "__KORVEL_TEST__" from the SQL text. 1 when the
// creation succeeded.
int TestStoredView(ViewObject &view);

// Whether every character of name may stand in a view's name (no digit 0,
// as the applications have always had it).
bool IsViewNameCharacter(char c);

// name with the characters a view's name may not have left out.
std::string ViewNameOnly(const std::string &name);

// Where the dialog puts the focus after a refusal.
enum class ViewField { None, Name, Sql };

// The entries OK needs before anything is run: the message that refuses
// them (1611 no name, 1603 a character a name may not have, 1609 no SQL
// text) with the field to go to, or 0.
int CheckViewEntries(const ViewObject &view, ViewField &focus);

// OK's work once the entries pass: the test, then the view created under
// the name; for an existing view or one of the family's callers, a view of
// the opening name in the schema is replaced (the same name) or dropped
// after the creation (a rename). 1 done; 2 when a step failed (shown),
// with focus on the SQL text when the test failed.
int SaveEditedView(ViewObject &view, ViewField &focus);

} // namespace kodbc::select
