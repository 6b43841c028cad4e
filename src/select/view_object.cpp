#include "select/view_object.h"

#include "internal/db_capabilities.h"
#include "internal/execution.h"
#include "internal/library.h"

#include <kodbc/kodbc_exec.h>
#include <kodbc/kodbc_sqltext.h>
#include <kodbc/kodbc_systable.h>

#include <cstring>
#include <strings.h>
#include <memory>

namespace kodbc::select {
namespace {

constexpr char kType[] = "VIEW";
constexpr char kTestView[] = "__KORVEL_TEST__";
constexpr int kItemSize = 5000;
constexpr int kNameSize = 100;
constexpr int kStatementSize = 5000;
constexpr int kReadStatementSize = 300;
constexpr char kNameCharacters[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ123456789_";

std::string Item(const ViewObject &view, const char *item, const char *fallback) {
    auto text = std::make_unique<char[]>(kItemSize);
    Kodbc_ReadSysTableString(view.hdbc, view.name.c_str(), kType, item, fallback, text.get(), kItemSize);
    return text.get();
}

std::string Qualified(const ViewObject &view, const char *sqlTemplate, const char *first, const std::string &name,
                      int size) {
    auto text = std::make_unique<char[]>(static_cast<std::size_t>(size));
    if (first)
        Kodbc_SprintfSqlStatement(view.hdbc, text.get(), size, sqlTemplate, first, view.schema.c_str(), name.c_str(),
                                  nullptr, nullptr, nullptr, nullptr, nullptr);
    else
        Kodbc_SprintfSqlStatement(view.hdbc, text.get(), size, sqlTemplate, view.schema.c_str(), name.c_str(), nullptr,
                                  nullptr, nullptr, nullptr, nullptr, nullptr);
    return text.get();
}

std::string UniqueName(SQLHDBC hdbc, const std::string &schema, const std::string &name) {
    char text[kNameSize] = {};
    std::strncpy(text, name.c_str(), sizeof text - 1);
    OdbcEh_CreateUniqueTableName(nullptr, hdbc, schema.c_str(), text, sizeof text, 0);
    return text;
}

// Reads the view's first row, if it has one. Some databases (SQLite) take a
// view over a column that does not exist and refuse it only when it is
// read; the error is shown like any other.
bool ReadsFirstRow(const ViewObject &view, const std::string &name) {
    const std::string sql = Qualified(view, "SELECT * FROM %t%.%t", nullptr, name, kReadStatementSize);
    odbc::Statement statement;
    if (!PrepareStatement(view.hdbc, sql.c_str(), statement, kReadStatementSize)) return false;
    if (ExecuteStatement(statement, sql.c_str(), nullptr) != ExecOutcome::Executed) return false;
    const SQLRETURN rc = KODBC_SQL(SQLFetch, statement.get());
    if (odbc::succeeded(rc) || rc == SQL_NO_DATA) return true;
    ReportStatementError(statement.get(), rc, sql.c_str(), nullptr);
    return false;
}

std::string LibraryText(int id) {
    char text[kNameSize] = {};
    LoadLibraryString(LibraryInstance(), id, text, sizeof text);
    return text;
}

} // namespace

bool IsViewNameCharacter(char c) { return c && std::strchr(kNameCharacters, c) != nullptr; }

ViewObject NewViewObject(SQLHDBC hdbc, const std::string &schema, const std::string &name, int mode) {
    ViewObject view;
    view.hdbc = hdbc;
    view.schema = schema.substr(0, kViewNameLimit);
    view.mode = mode;
    if (name.empty()) {
        view.name = UniqueName(hdbc, view.schema, LibraryText(msg::NAME_NEW_VIEW));
    } else {
        view.name = name.substr(0, kViewNameLimit);
        LoadViewObject(view);
    }
    view.openingName = view.name;
    return view;
}

std::string CopyName(SQLHDBC hdbc, const std::string &schema, const std::string &name) {
    char proposal[kNameSize] = {};
    std::snprintf(proposal, sizeof proposal, LibraryText(msg::NAME_COPY_OF).c_str(), name.c_str());
    return UniqueName(hdbc, schema, proposal);
}

void LoadViewObject(ViewObject &view) {
    view.sql = Item(view, "Sql", "");
    view.tables = Item(view, "Tables", "");
    view.columns = Item(view, "Columns", "*");
    view.selection = Item(view, "Selection", "");
}

bool HasStoredDefinition(const ViewObject &view) {
    if (!Item(view, "Sql", "").empty()) return true;
    LibraryMessage(msg::VIEW_NOT_IN_SYSTEM_TABLE, view.name.c_str());
    return false;
}

int CreateStoredView(ViewObject &view, const std::string &name) {
    const std::string viewName = name.empty() ? view.name : name;
    if (viewName.empty() || view.sql.empty()) return KODBC_FAILURE;
    const std::string qualified = Qualified(view, "%t%.%t", nullptr, viewName, kNameSize);
    // Not through the formatter: its %s keeps 299 characters, and a view's
    // definition must arrive whole (within the statement's 5000).
    std::string statement = "CREATE VIEW " + qualified + " AS " + view.sql;
    if (statement.size() > kStatementSize - 1) statement.resize(kStatementSize - 1);
    if (OdbcEh_PerformSqlStatement(nullptr, view.hdbc, statement.c_str(), nullptr) != KODBC_SUCCESS)
        return KODBC_FAILURE;
    const struct {
        const char *item;
        const std::string &value;
    } items[] = {{"Sql", view.sql}, {"Tables", view.tables}, {"Columns", view.columns}, {"Selection", view.selection}};
    for (const auto &item : items)
        Kodbc_WriteSysTableString(view.hdbc, viewName.c_str(), kType, item.item, item.value.c_str());
    return KODBC_SUCCESS;
}

int DropStoredView(const ViewObject &view, const std::string &name, int tolerance) {
    if (name.empty()) return KODBC_FAILURE;
    const char *drop = tabledesign::DropViewStatement(tabledesign::CapabilitiesOf(view.hdbc));
    const std::string statement = Qualified(view, "%s %t%.%t", drop, name, kNameSize + 50);
    const char *tolerated = (tolerance & kViewDropTolerateAll)       ? "*"
                            : (tolerance & kViewDropTolerateMissing) ? "S0002"
                                                                     : nullptr;
    if (OdbcEh_PerformSqlStatement(nullptr, view.hdbc, statement.c_str(), tolerated) != KODBC_SUCCESS)
        return KODBC_FAILURE;
    Kodbc_DeleteSysTableItem(view.hdbc, name.c_str(), kType, "");
    return KODBC_SUCCESS;
}

int TestStoredView(ViewObject &view) {
    DropStoredView(view, kTestView, kViewDropTolerateAll);
    if (CreateStoredView(view, kTestView) != KODBC_SUCCESS) return KODBC_FAILURE;
    // The statement is closed before the drop, which its open cursor could block.
    const bool readable = ReadsFirstRow(view, kTestView);
    DropStoredView(view, kTestView, 0);
    return readable ? KODBC_SUCCESS : KODBC_FAILURE;
}

std::string ViewNameOnly(const std::string &name) {
    std::string kept;
    for (char c : name)
        if (IsViewNameCharacter(c)) kept += c;
    return kept;
}

int CheckViewEntries(const ViewObject &view, ViewField &focus) {
    focus = ViewField::Name;
    if (view.name.empty()) return msg::ENTER_VIEW_NAME;
    if (ViewNameOnly(view.name) != view.name) return msg::VIEW_NAME_INVALID_CHARS;
    focus = ViewField::Sql;
    if (view.sql.empty()) return msg::ENTER_SQL_STATEMENT;
    focus = ViewField::None;
    return 0;
}

int SaveEditedView(ViewObject &view, ViewField &focus) {
    focus = ViewField::Sql;
    if (TestStoredView(view) != KODBC_SUCCESS) return KODBC_FAILURE;
    focus = ViewField::None;
    const bool replaces = (view.mode & (kViewModeExisting | kViewModeCallers)) && !view.openingName.empty() &&
                          OdbcEh_DoesTableExist(nullptr, view.hdbc, KODBC_OBJECT_VIEW, view.schema.c_str(),
                                                view.openingName.c_str(), 0) == 1;
    if (!replaces) return CreateStoredView(view);
    // Under the same name the old view has to go first. A new name is made
    // before the old one goes, so that a name already taken loses nothing.
    if (strcasecmp(view.name.c_str(), view.openingName.c_str()) == 0)
        return DropStoredView(view, view.openingName, 0) == KODBC_SUCCESS ? CreateStoredView(view) : KODBC_FAILURE;
    if (CreateStoredView(view) != KODBC_SUCCESS) return KODBC_FAILURE;
    DropStoredView(view, view.openingName, 0);
    return KODBC_SUCCESS;
}

} // namespace kodbc::select
