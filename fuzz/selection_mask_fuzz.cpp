// Fuzzes the selection-mask reader over any file and what the loaded
// descriptor goes through next: a file that is refused leaves the
// descriptor alone, one that is taken holds the magic and ends up in the
// descriptor byte for byte, the writer's bytes read back to what was
// written, and the lines split and turn into a WHERE clause within bounds.
//
// Input: the file. Its last byte also picks the WHERE buffer's size.
#include "fuzz_support.h"

#include "select/selection_mask.h"
#include "select/seldesc.h"

using namespace kodbc;
using fuzz::Check;

namespace {

constexpr std::string_view kUntouched = "\x01untouched";

void CheckRoundTrip(const std::string &descriptor) {
    const std::string text = select::SelectionMaskText(descriptor);
    Check(text.size() <= static_cast<std::size_t>(select::kSelectionMaskBufferSize));
    std::string again;
    Check(select::ParseSelectionMask(text, again));
    const std::size_t kept = text.size() - select::kSelectionMaskMagicSize;
    // Only a descriptor that was cut, or that ends in the end-of-file mark
    // itself, comes back shorter.
    if (kept == descriptor.size() && (descriptor.empty() || descriptor.back() != 26)) Check(again == descriptor);
    else Check(descriptor.compare(0, again.size(), again) == 0 && again.size() + 1 >= kept);
}

void CheckLines(const std::string &descriptor, int whereSize) {
    seldesc::ForEachGroup(descriptor, [](std::string_view group) {
        seldesc::ForEachLine(group, [](std::string_view text) {
            const seldesc::Line line = seldesc::SplitLine(text);
            Check(line.field.size() <= seldesc::kFieldChars && line.value.size() <= seldesc::kValueChars);
            Check(text.find(line.field) == 0);
            return true;
        });
        return true;
    });
    fuzz::Buffer where(whereSize);
    fuzz::QuoteQuery fetch{"\""};
    sqltext::QuoteText quote = sqltext::QuoteText::Lazy(&fuzz::QuoteQuery::Run, &fetch);
    char pattern[4];
    seldesc::ReadPatternChars(nullptr, pattern);
    seldesc::BuildWhereClause(quote, descriptor.c_str(), where.data, where.size, pattern);
    Check(where.terminated() && (where.data[0] == '\0' || where.data[0] == '('));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char *>(data), size);
    std::string descriptor(kUntouched);
    const bool taken = select::ParseSelectionMask(bytes, descriptor);
    const bool hasMagic = size >= 10 && std::memcmp(data, "KORVEL-SMS", 10) == 0;
    Check(taken == hasMagic);
    if (!taken) {
        Check(descriptor == kUntouched);
        return 0;
    }
    const std::string_view behind = bytes.substr(10);
    Check(behind.compare(0, descriptor.size(), descriptor) == 0);
    Check(descriptor.size() == behind.size() || (descriptor.size() + 1 == behind.size() && behind.back() == 26));
    CheckRoundTrip(descriptor);
    CheckLines(descriptor, size ? 1 + data[size - 1] * 8 : 1);
    return 0;
}
