// Dialog 10070: asks for the alias under which a column is used. Run through
// kodbc::select::AskForAlias.
#pragma once

#include "select/alias_dialog_ids.h"

#include <windows.h>

#include <string>
#include <string_view>

namespace kodbc::select {

// The characters an alias may have. The digit 0 is missing; the set is the
// one the applications have always had, so it stays as it is.
inline constexpr std::string_view kAliasCharacters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ123456789_";
inline constexpr int kAliasLimit = 99;

// Shows the dialog over owner. True on OK, with alias replaced.
bool AskForAlias(HWND owner, std::string &alias);

} // namespace kodbc::select
