// Without windows the diagnostics go, split into the dialog's fields, to the
// message handler the embedding program installed.
#include "internal/diagnostics.h"
#include "internal/library.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_messages.h>

#include <string_view>

namespace kodbc {

int ShowDiagnosticsDialog(const ErrorDisplayRequest &request) {
    DiagnosticFields fields;
    if (!ReadDiagnostic(request, fields)) return 1;

    char caption[100];
    LoadLibraryString(LibraryInstance(), msg::CAPTION_ODBC_ERROR, caption, sizeof caption);
    char hint[1000] = {};
    if (fields.hintMessageId) {
        LoadLibraryString(LibraryInstance(), fields.hintMessageId, hint, sizeof hint);
    }
    // The hint is a message of its own; its type prefix is not part of the text.
    std::string_view hintText(hint);
    if (hintText.starts_with("! ") || hintText.starts_with("s ")) hintText.remove_prefix(2);

    KodbcOdbcErrorFields odbcFields{
        request.statement ? request.statement : "",
        fields.sqlState.c_str(),
        fields.vendor.c_str(),
        fields.component.c_str(),
        fields.dataSource.c_str(),
        fields.description.c_str(),
        fields.hintMessageId ? hintText.data() : nullptr,
    };
    // The headline is the most specific piece the driver wrote: drivers that
    // stop bracketing early leave their text in "Komponente" or even "Hersteller".
    const std::string *headline = &fields.description;
    for (const std::string *piece : {&fields.dataSource, &fields.component, &fields.vendor})
        if (headline->empty()) headline = piece;
    KodbcMessage message{KODBC_MESSAGE_ODBC_ERROR, caption, headline->c_str(), &odbcFields};
    return Korvel_DeliverMessage(&message) == KODBC_ANSWER_CANCEL ? 2 : 1;
}

} // namespace kodbc

extern "C" KODBC_API int KODBC_CALL Kodbc_FormatMessage(const KodbcMessage *message, char *buffer, int size) {
    korvel::BoundedText out(buffer, size);
    if (!message || !out.valid()) return 0;
    try {
        out.append(Korvel_FormatMessage(*message));
    } catch (...) {
        // Out of memory while formatting: an empty text says nothing wrong.
    }
    return out.int_length();
}

extern "C" KODBC_API KodbcMessageHandler KODBC_CALL Kodbc_SetMessageHandler(KodbcMessageHandler handler,
                                                                             void *context) {
    return Korvel_SetMessageHandler(handler, context);
}
