#include "select/view_object.h"

#include "internal/library.h"

#include <korvel/bounded_text.h>

#include <kodbc/kodbc_views.h>

using namespace kodbc;
using namespace kodbc::select;

namespace {

std::string Text(const char *text) { return text ? text : ""; }

bool Given(const char *text) { return text && *text; }

ViewObject Bare(SQLHDBC hdbc, const char *schema) {
    ViewObject view;
    view.hdbc = hdbc;
    view.schema = Text(schema).substr(0, kViewNameLimit);
    return view;
}

} // namespace

extern "C" {

KODBC_API int KODBC_CALL Kodbc_View_Create(SQLHDBC hdbc, const char *schema, const char *name, const char *sql,
                                           const char *tables, const char *columns, const char *selection) {
    if (!hdbc || !Given(name) || !Given(sql)) return KODBC_VIEW_FAILED;
    try {
        ViewObject view = Bare(hdbc, schema);
        view.sql = sql;
        view.tables = Text(tables);
        view.columns = columns ? columns : "*";
        view.selection = Text(selection);
        return CreateStoredView(view, name);
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_VIEW_FAILED;
    }
}

KODBC_API int KODBC_CALL Kodbc_View_Drop(SQLHDBC hdbc, const char *schema, const char *name, int tolerance) {
    if (!hdbc || !Given(name)) return KODBC_VIEW_FAILED;
    try {
        return DropStoredView(Bare(hdbc, schema), name, tolerance);
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_VIEW_FAILED;
    }
}

KODBC_API int KODBC_CALL Kodbc_View_Test(SQLHDBC hdbc, const char *schema, const char *sql) {
    if (!hdbc || !Given(sql)) return KODBC_VIEW_FAILED;
    try {
        ViewObject view = Bare(hdbc, schema);
        view.sql = sql;
        return TestStoredView(view);
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_VIEW_FAILED;
    }
}

KODBC_API int KODBC_CALL Kodbc_View_Load(SQLHDBC hdbc, const char *schema, const char *name, char *sql, int sqlSize,
                                         char *tables, int tablesSize, char *columns, int columnsSize,
                                         char *selection, int selectionSize, unsigned flags) {
    if (!hdbc || !Given(name)) return KODBC_VIEW_FAILED;
    try {
        ViewObject view = Bare(hdbc, schema);
        view.name = Text(name).substr(0, kViewNameLimit);
        LoadViewObject(view);
        korvel::BoundedText(sql, sqlSize).append(view.sql);
        korvel::BoundedText(tables, tablesSize).append(view.tables);
        korvel::BoundedText(columns, columnsSize).append(view.columns);
        korvel::BoundedText(selection, selectionSize).append(view.selection);
        if (!view.sql.empty()) return KODBC_VIEW_OK;
        if (!(flags & KODBC_VIEW_LOAD_QUIET)) LibraryMessage(msg::VIEW_NOT_IN_SYSTEM_TABLE, view.name.c_str());
        return KODBC_VIEW_NOT_DEFINED;
    } catch (...) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_VIEW_FAILED;
    }
}

KODBC_API int KODBC_CALL Kodbc_View_CopyName(SQLHDBC hdbc, const char *schema, const char *name, char *out,
                                             int outSize) {
    if (!hdbc || !out || outSize < 1) return KODBC_VIEW_FAILED;
    korvel::BoundedText text(out, outSize);
    try {
        const std::string owner = Text(schema).substr(0, kViewNameLimit);
        text.append(Given(name) ? CopyName(hdbc, owner, name) : NewViewObject(hdbc, owner, "", 0).name);
        return KODBC_VIEW_OK;
    } catch (...) {
        text.clear();
        LibraryMessage(msg::OUT_OF_MEMORY);
        return KODBC_VIEW_FAILED;
    }
}

} // extern "C"
