// Fuzzes the selection-mask reader over any file (the input), the writer's bytes read back and the
// loaded descriptor's line split; its WHERE clause is the seldesc_clauses fuzzer's business.
#include "fuzz_support.h"

#include "select/selection_mask.h"
#include "select/seldesc.h"

using namespace kodbc;
using fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char *>(data), size);
    constexpr std::string_view kUntouched = "\x01untouched";
    std::string descriptor(kUntouched);
    // Taken only behind the magic, then byte for byte; refused, untouched.
    const bool taken = select::ParseSelectionMask(bytes, descriptor);
    Check(taken == (size >= 10 && std::memcmp(data, "KORVEL-SMS", 10) == 0));
    if (!taken) {
        Check(descriptor == kUntouched);
        return 0;
    }
    const std::string_view behind = bytes.substr(10);
    Check(behind.compare(0, descriptor.size(), descriptor) == 0);
    Check(descriptor.size() == behind.size() || (descriptor.size() + 1 == behind.size() && behind.back() == 26));

    // The writer's bytes fit its buffer and read back; only a descriptor
    // that was cut, or that ends in the end-of-file mark itself, comes back
    // shorter.
    const std::string text = select::SelectionMaskText(descriptor);
    Check(text.size() <= static_cast<std::size_t>(select::kSelectionMaskBufferSize));
    std::string again;
    Check(select::ParseSelectionMask(text, again));
    const std::size_t kept = text.size() - select::kSelectionMaskMagicSize;
    if (kept == descriptor.size() && (descriptor.empty() || descriptor.back() != 26)) Check(again == descriptor);
    else Check(descriptor.compare(0, again.size(), again) == 0 && again.size() + 1 >= kept);

    seldesc::ForEachGroup(descriptor, [](std::string_view group) {
        seldesc::ForEachLine(group, [](std::string_view text) {
            const seldesc::Line line = seldesc::SplitLine(text);
            Check(line.field.size() <= seldesc::kFieldChars && line.value.size() <= seldesc::kValueChars);
            Check(text.find(line.field) == 0);
            return true;
        });
        return true;
    });
    return 0;
}
