// The selection-mask file (".sms") of the selection editor: the magic
// "KORVEL-SMS" followed by a selection descriptor, in the single-byte code
// page, no terminator.
#pragma once

#include <string>
#include <string_view>

namespace kodbc::select {

inline constexpr char kSelectionMaskMagic[] = "KORVEL-SMS";
inline constexpr int kSelectionMaskMagicSize = 10;
inline constexpr int kSelectionMaskBufferSize = 5000;  // magic plus at most 4990 bytes of descriptor

// The descriptor held by a mask file's bytes, without a last byte 26 (an
// end-of-file mark some editors add). False, and descriptor untouched, when
// the bytes are shorter than the magic or do not begin with it exactly.
inline bool ParseSelectionMask(std::string_view bytes, std::string &descriptor) {
    if (bytes.size() < kSelectionMaskMagicSize || bytes.substr(0, kSelectionMaskMagicSize) != kSelectionMaskMagic)
        return false;
    bytes.remove_prefix(kSelectionMaskMagicSize);
    if (!bytes.empty() && bytes.back() == 26) bytes.remove_suffix(1);
    descriptor.assign(bytes);
    return true;
}

// The bytes of a mask file for descriptor, cut to the writer's buffer.
inline std::string SelectionMaskText(std::string_view descriptor) {
    std::string text(kSelectionMaskMagic);
    text.append(descriptor.substr(0, kSelectionMaskBufferSize - kSelectionMaskMagicSize));
    return text;
}

// The descriptor behind the magic; a last byte 26 (an end-of-file mark some
// editors add) is dropped. A file that cannot be read, is shorter than the
// magic or does not begin with it exactly is refused with 1649 (shown).
bool ReadSelectionMask(const char *fileName, std::string &descriptor);

// Writes the magic and the descriptor (cut to 4990 bytes), replacing the
// file. A file that cannot be opened shows the message for the system's
// error; a short write shows 1650.
bool WriteSelectionMask(const char *fileName, const std::string &descriptor);

} // namespace kodbc::select
