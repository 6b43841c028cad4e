// How a message text becomes what is shown: placeholders filled, type
// prefix read. Shared by both platforms' message boxes.
#pragma once

#include <string>
#include <string_view>

namespace korvel {

struct MessageText {
    int kind;          // KODBC_MESSAGE_* from the prefix
    std::string text;  // prefix removed
};

// Reads the type prefix: "s " stop, "! " notice, "?YN " yes/no,
// "?YNC " yes/no/cancel; none: plain.
MessageText ParseMessagePrefix(std::string_view text);

// Fills the first three "%s" in order with args (a null argument fills an
// empty text); "%%" gives "%"; other placeholders are left as they are.
std::string FillMessageArguments(std::string_view format, const char *const args[3]);

// The answer given when nobody can be asked: No for yes/no, Cancel for
// yes/no/cancel, OK otherwise.
int SafeAnswer(int kind);

} // namespace korvel
