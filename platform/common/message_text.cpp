#include "message_text.h"

#include <kodbc/kodbc_messages.h>

namespace korvel {

MessageText ParseMessagePrefix(std::string_view text) {
    struct Prefix {
        std::string_view marker;
        int kind;
    };
    // "?YNC " before "?YN " so the longer marker wins.
    static constexpr Prefix prefixes[] = {
        {"?YNC ", KODBC_MESSAGE_YESNOCANCEL},
        {"?YN ", KODBC_MESSAGE_YESNO},
        {"s ", KODBC_MESSAGE_STOP},
        {"! ", KODBC_MESSAGE_NOTICE},
    };
    for (const Prefix &p : prefixes) {
        if (text.starts_with(p.marker)) return {p.kind, std::string(text.substr(p.marker.size()))};
    }
    return {KODBC_MESSAGE_PLAIN, std::string(text)};
}

std::string FillMessageArguments(std::string_view format, const char *const args[3]) {
    std::string out;
    out.reserve(format.size());
    int next = 0;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] == '%' && i + 1 < format.size()) {
            char c = format[i + 1];
            if (c == 's' && next < 3) {
                if (const char *arg = args ? args[next] : nullptr) out += arg;
                ++next;
                ++i;
                continue;
            }
            if (c == '%') {
                out += '%';
                ++i;
                continue;
            }
        }
        out += format[i];
    }
    return out;
}

int SafeAnswer(int kind) {
    switch (kind) {
    case KODBC_MESSAGE_YESNO: return KODBC_ANSWER_NO;
    case KODBC_MESSAGE_YESNOCANCEL: return KODBC_ANSWER_CANCEL;
    default: return KODBC_ANSWER_OK;
    }
}

} // namespace korvel
