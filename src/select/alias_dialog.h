// Dialog 10070: asks for the alias under which a column is used. Run through
// kodbc::select::AskForAlias.
#pragma once

#include "select/alias_dialog_ids.h"
#include "select/select_box_lines.h"

#include <windows.h>

#include <string>
#include <string_view>

namespace kodbc::select {

inline constexpr int kAliasLimit = 99;

// Shows the dialog over owner. True on OK, with alias replaced.
bool AskForAlias(HWND owner, std::string &alias);

} // namespace kodbc::select
