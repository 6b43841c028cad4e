// The selection-mask file (".sms") of the selection editor: the magic
// "KORVEL-SMS" followed by a selection descriptor, in the single-byte code
// page, no terminator.
#pragma once

#include <string>

namespace kodbc::select {

inline constexpr char kSelectionMaskMagic[] = "KORVEL-SMS";
inline constexpr int kSelectionMaskMagicSize = 10;
inline constexpr int kSelectionMaskBufferSize = 5000;  // magic plus at most 4990 bytes of descriptor

// The descriptor behind the magic; a last byte 26 (an end-of-file mark some
// editors add) is dropped. A file that cannot be read, is shorter than the
// magic or does not begin with it exactly is refused with 1649 (shown).
bool ReadSelectionMask(const char *fileName, std::string &descriptor);

// Writes the magic and the descriptor (cut to 4990 bytes), replacing the
// file. A file that cannot be opened shows the message for the system's
// error; a short write shows 1650.
bool WriteSelectionMask(const char *fileName, const std::string &descriptor);

} // namespace kodbc::select
