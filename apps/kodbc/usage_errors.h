// The command-line parser's complaints, said in the tool's language.
#pragma once

#include <string>

namespace kodbc_cli {

// The German line for a complaint of the command-line parser (its English
// text as it stands); a complaint of an unknown form keeps its text behind
// a German lead-in, so nothing the user needs to know is lost.
std::string GermanUsageError(const std::string &complaint);

} // namespace kodbc_cli
