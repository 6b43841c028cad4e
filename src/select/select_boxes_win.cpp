// The clauses of a SELECT statement in list or combo boxes: one line per
// column, table or sort key, and back from the lines to clause text.
#include <kodbc/kodbc_select.h>
#include <kodbc/kodbc_sqltext.h>

#include "internal/library.h"
#include "select/alias_dialog.h"
#include "select/select_box_lines.h"
#include "select/select_exports.h"
#include "select/select_scanner.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <memory>
#include <new>
#include <string>

namespace kodbc::select {
namespace {

constexpr int kLineSize = 200;        // a box line, 199 characters
constexpr int kPreparedSize = 200;    // a name prepared for the statement
constexpr int kEmptyTheBox = 9;       // separator of the fill call that only empties

std::string BoxLine(HWND box, int index) {
    char line[kLineSize] = "";
    if (Korvel_GetBoxEntry(box, index, line, sizeof line) < 0) return {};
    return line;
}

std::string Label(bool descending) {
    char label[100] = "";
    LoadLibraryString(LibraryInstance(), descending ? msg::SORT_DESCENDING : msg::SORT_ASCENDING, label,
                      sizeof label);
    return label;
}

NamePreparer Preparer(SQLHDBC hdbc) {
    return [hdbc](std::string_view name) {
        std::string text(name);
        char out[kPreparedSize] = "";
        Kodbc_PrepareNameForSql92(hdbc, text.c_str(), out, sizeof out);
        return std::string(out);
    };
}

template <typename Fill>
int ClauseToBox(SQLHDBC hdbc, const char *statement, HWND box, Fill fill) noexcept {
    if (!box) return -1;
    try {
        ScanContext context;
        context.quote = IdentifierQuote(hdbc);
        std::string_view text = statement ? std::string_view(statement) : std::string_view();
        Korvel_FillBox(box, kEmptyTheBox, nullptr);
        fill(context, text);
        ReportScanProblems(context);
        return 0;
    } catch (const std::bad_alloc &) {
        LibraryMessage(msg::OUT_OF_MEMORY);
    } catch (...) {
    }
    return -1;
}

// One clause text from the lines of a box; makeItem turns a line (and its
// item data) into the item's text.
template <typename MakeItem, typename Replace>
int BoxToClause(HWND box, char *statement, int statementSize, MakeItem makeItem, Replace replace) noexcept {
    if (!box) return -1;
    try {
        std::unique_ptr<char[]> work(new (std::nothrow) char[KODBC_SELECT_CLAUSE_BUFFER]);
        if (!work) return -1;
        korvel::BoundedText clause(work.get(), KODBC_SELECT_CLAUSE_BUFFER);
        const int count = Korvel_GetBoxCount(box);
        for (int i = 0; i < count; ++i) {
            if (i > 0) clause.append(',');
            clause.append(makeItem(BoxLine(box, i), Korvel_GetItemData(box, i)));
        }
        ScanContext context;
        int result = replace(context, statement, statementSize, clause.c_str());
        ReportScanProblems(context);
        return result;
    } catch (const std::bad_alloc &) {
        LibraryMessage(msg::OUT_OF_MEMORY);
    } catch (...) {
    }
    return -1;
}

} // namespace
} // namespace kodbc::select

using namespace kodbc::select;

extern "C" {

KODBC_API int KODBC_CALL Kodbc_Select_FieldsClause_To_FieldsBox(SQLHDBC hdbc, const char *statement, int flags,
                                                                HWND box) {
    return ClauseToBox(hdbc, statement, box, [&](ScanContext &context, std::string_view text) {
        for (const FieldItem &field : ReadFieldItems(ClauseText(context, text, "SELECT", {}), context.quote)) {
            if (field.column.empty()) continue;
            Korvel_AddBoxEntry(box, FieldBoxLine(field, flags & kBoxFieldAlias).c_str(), 0, -1, 0);
        }
    });
}

KODBC_API int KODBC_CALL Kodbc_Select_TablesClause_To_TablesBox(SQLHDBC hdbc, const char *statement, int /*flags*/,
                                                                HWND box) {
    return ClauseToBox(hdbc, statement, box, [&](ScanContext &context, std::string_view text) {
        for (const std::string &table : ReadTableItems(ClauseText(context, text, "FROM", {}), context.quote))
            Korvel_AddBoxEntry(box, table.c_str(), 0, -1, 0);
    });
}

KODBC_API int KODBC_CALL Kodbc_Select_OrderByClause_To_OrderByBox(SQLHDBC hdbc, const char *statement, int flags,
                                                                  HWND box) {
    return ClauseToBox(hdbc, statement, box, [&](ScanContext &context, std::string_view text) {
        for (const SortItem &key : ReadSortItems(ClauseText(context, text, "ORDER", "BY"), context.quote)) {
            // The label is a string-table read: only when the box shows it.
            const std::string label = (flags & kBoxSortLabel) ? Label(key.descending) : std::string();
            const std::string line = SortBoxLine(key.column, (flags & kBoxSortLabel) ? label.c_str() : nullptr);
            Korvel_AddBoxEntry(box, line.c_str(), SortBoxData(key.descending), -1, 0);
        }
    });
}

KODBC_API int KODBC_CALL Kodbc_Select_FieldsBox_To_FieldsClause(SQLHDBC hdbc, HWND box, char *statement,
                                                                int statementSize) {
    return BoxToClause(
        box, statement, statementSize,
        [prepare = Preparer(hdbc)](const std::string &line, LPARAM) { return FieldClauseItem(line, prepare); },
        ReplaceFieldsClause);
}

KODBC_API int KODBC_CALL Kodbc_Select_TablesBox_To_TablesClause(SQLHDBC hdbc, HWND box, char *statement,
                                                                int statementSize) {
    return BoxToClause(
        box, statement, statementSize,
        [prepare = Preparer(hdbc)](const std::string &line, LPARAM) { return TableClauseItem(line, prepare); },
        ReplaceTablesClause);
}

KODBC_API int KODBC_CALL Kodbc_Select_OrderByBox_To_OrderByClause(SQLHDBC hdbc, HWND box, char *statement,
                                                                  int statementSize) {
    return BoxToClause(
        box, statement, statementSize,
        [prepare = Preparer(hdbc)](const std::string &line, LPARAM data) {
            return SortClauseItem(line, data, prepare);
        },
        ReplaceOrderByClause);
}

KODBC_API int KODBC_CALL Kodbc_FieldsBox_EditAlias(HWND box, int index) {
    try {
        if (!box) return 2;
        index = ChosenLine(index, Korvel_GetBoxIndex(box), Korvel_GetBoxCount(box));
        if (index < 0) return 2;
        const std::string line = BoxLine(box, index);
        std::string alias = LineAlias(line);
        if (!AskForAlias(GetAncestor(box, GA_ROOT), alias)) return 2;
        Korvel_DeleteBoxEntry(box, index);
        Korvel_AddBoxEntry(box, AliasedLine(line, alias).c_str(), 0, index, 0);
        Korvel_SetBoxIndex(box, index);
        return 1;
    } catch (const std::bad_alloc &) {
        kodbc::LibraryMessage(kodbc::msg::OUT_OF_MEMORY);
    } catch (...) {
    }
    return 2;
}

KODBC_API int KODBC_CALL Kodbc_OrderByBox_ToggleDirection(HWND box, int index) {
    try {
        if (!box) return -1;
        index = ChosenLine(index, Korvel_GetBoxIndex(box), Korvel_GetBoxCount(box));
        if (index < 0) return -1;
        const bool descending = ToggledDescending(Korvel_GetItemData(box, index));
        const std::string line = ToggledLine(BoxLine(box, index), Label(descending));
        Korvel_DeleteBoxEntry(box, index);
        Korvel_AddBoxEntry(box, line.c_str(), SortBoxData(descending), index, 0);
        return Korvel_SetBoxIndex(box, index);
    } catch (...) {
    }
    return -1;
}

} // extern "C"
