// The three small dialogs of table administration, each asking what one
// change needs before table_admin.cpp makes it: a column (10010), an
// auto-incrementing column (10057), the columns of a primary key (10059).
// Each request is WM_INITDIALOG's parameter of its exported dialog
// procedure and is filled only when the dialog ends with OK.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace kodbc::tabledesign {

// Dialog 10010. typeCode on entry: the type shown first (a code outside the
// data-type table: its first row).
struct AddColumnRequest {
    std::string name;
    int typeCode = 0;
    int length = 0;
    bool notEmpty = false;  // what the user ticked; the statement does not depend on it
};

// Dialog 10057.
struct AutoIncrementRequest {
    std::string name;
};

// Dialog 10059: candidates are offered on the left; columns receives the
// right list in its order.
struct PrimaryKeyRequest {
    std::vector<std::string> candidates;
    std::vector<std::string> columns;
};

// Each runs its dialog over owner; true when it ended with OK.
bool AskForColumn(HWND owner, AddColumnRequest &request);
bool AskForAutoIncrementColumn(HWND owner, AutoIncrementRequest &request);
bool AskForPrimaryKey(HWND owner, PrimaryKeyRequest &request);

} // namespace kodbc::tabledesign
