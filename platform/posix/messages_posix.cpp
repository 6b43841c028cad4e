// Messages without a window system: every message goes to the handler the
// embedding program installed; with none, to stderr with the safe answer.
#include "charset_posix.h"

#include "../common/message_text.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <algorithm>
#include <cstdio>
#include <mutex>
#include <string>

namespace {

std::mutex g_handlerMutex;
KodbcMessageHandler g_handler = nullptr;
void *g_handlerContext = nullptr;

constexpr int kMessageSize = 4096;
constexpr int kCaptionSize = 256;

std::string LoadTranslated(HINSTANCE instance, int id, const char *module, int size) {
    std::string text(static_cast<std::size_t>(size), '\0');
    if (Korvel_LoadString(instance, id, text.data(), size) <= 0) return {};
    int length = Polo_TranslateString(module, nullptr, text.data(), size);
    text.resize(static_cast<std::size_t>(length));
    return text;
}

// What a file error says, by the error class of the request.
const char *FileErrorText(int errorClass) {
    switch (errorClass) {
    case 2: return "Auf die Datei  %s  kann nicht zugegriffen werden: Zugriff verweigert.";
    case 3: return "Die Datei  %s  existiert nicht.";
    case 4: return "Die Datei  %s  existiert bereits.";
    case 5: return "Die Datei  %s  kann nicht geöffnet werden: zu viele offene Dateien.";
    default: return "Beim Zugriff auf die Datei  %s  ist ein Fehler aufgetreten.";
    }
}

// Characters of a UTF-8 text (what a terminal gives a column each here).
std::size_t Utf8Length(std::string_view text) {
    std::size_t n = 0;
    for (char c : text) n += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    return n;
}

} // namespace

std::string Korvel_FormatMessage(const KodbcMessage &message) {
    std::string out;
    const char *caption = message.caption ? message.caption : "";
    if (*caption) out.append(caption).append(": ");
    out.append(message.text ? message.text : "").append("\n");
    const KodbcOdbcErrorFields *f = message.odbc;
    if (!f) return out;
    // The dialog's fields, empty ones too: a reader sees what the driver left out.
    const char *const labels[] = {"Fehlercode:", "Hersteller:", "Komponente:", "Datenquelle:",
                                  "Fehlerbeschreibung:", "SQL-Befehl:", "Mögliche Fehlerursache:"};  // UTF-8
    const char *const values[] = {f->sqlState, f->vendor, f->component, f->dataSource,
                                  f->description, f->statement, f->hint};
    std::size_t width = 0;
    for (const char *label : labels) width = std::max(width, Utf8Length(label));
    // The hint line only where the state has a hint.
    for (std::size_t i = 0; i < std::size(labels) - (f->hint ? 0 : 1); ++i) {
        out.append("  ").append(korvel::posix::Utf8ToLocale(labels[i]));
        if (values[i] && *values[i]) out.append(width + 1 - Utf8Length(labels[i]), ' ').append(values[i]);
        out.append("\n");
    }
    return out;
}

KodbcMessageHandler Korvel_SetMessageHandler(KodbcMessageHandler handler, void *context) {
    std::lock_guard lock(g_handlerMutex);
    KodbcMessageHandler previous = g_handler;
    g_handler = handler;
    g_handlerContext = handler ? context : nullptr;
    return previous;
}

int Korvel_DeliverMessage(const KodbcMessage *message) {
    if (!message) return KODBC_ANSWER_CANCEL;
    KodbcMessageHandler handler;
    void *context;
    {
        std::lock_guard lock(g_handlerMutex);
        handler = g_handler;
        context = g_handlerContext;
    }
    // Called outside the lock: a handler may itself install another handler.
    if (handler) return handler(message, context);

    std::fputs(Korvel_FormatMessage(*message).c_str(), stderr);
    std::fflush(stderr);
    return message->kind == KODBC_MESSAGE_ODBC_ERROR ? KODBC_ANSWER_OK : korvel::SafeAnswer(message->kind);
}

int Korvel_Message_Box(const KorvelMessageRequest *request) {
    if (!request) return KODBC_ANSWER_CANCEL;
    std::string caption = LoadTranslated(request->instance, request->captionId, request->module, kCaptionSize);
    std::string text = LoadTranslated(request->instance, request->messageId, request->module, kMessageSize);
    if (text.empty()) text = "Meldung " + std::to_string(request->messageId);

    // The prefix belongs to the message, not to what an argument brings in.
    korvel::MessageText parsed = korvel::ParseMessagePrefix(text);
    std::string shown = korvel::FillMessageArguments(parsed.text, request->args);
    KodbcMessage message{parsed.kind, caption.c_str(), shown.c_str(), nullptr};
    return Korvel_DeliverMessage(&message);
}

int Korvel_ErrorHandler(const KorvelErrorRequest *request) {
    if (!request) return KODBC_ANSWER_OK;
    std::string format = korvel::posix::Utf8ToLocale(FileErrorText(request->errorClass));
    const char *args[3] = {request->values[0], request->values[1], request->values[2]};
    std::string text = korvel::FillMessageArguments(format, args);
    KodbcMessage message{KODBC_MESSAGE_STOP, request->caption ? request->caption : "", text.c_str(), nullptr};
    Korvel_DeliverMessage(&message);
    return KODBC_ANSWER_OK;
}

// A notice on Linux is one line of text: there is nothing left to close.
void Korvel_CloseTempWind() {}

void Korvel_DisplayTempWind(HINSTANCE instance, int stringId, int, COLORREF) {
    char text[kMessageSize];
    if (Korvel_LoadString(instance, stringId, text, sizeof text) <= 0) return;
    KodbcMessage message{KODBC_MESSAGE_TEMPORARY, "", text, nullptr};
    Korvel_DeliverMessage(&message);
}

HWND Korvel_ActiveWindow() { return nullptr; }

// Dialogs exist only with a window system.
void Polo_TranslateDialog(HWND, const char *, const char *) {}
