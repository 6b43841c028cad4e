#include "terminal.h"

#include <cstdio>
#include <cstring>
#include <iostream>
#include <unistd.h>
#include <vector>

namespace kodbc_cli {
namespace {

bool g_assumeYes = false;

int Ask(const KodbcMessage &message) {
    bool withCancel = message.kind == KODBC_MESSAGE_YESNOCANCEL;
    std::fprintf(stderr, "%s\n", message.text);
    if (g_assumeYes) {
        std::fprintf(stderr, "(--yes: Ja)\n");
        return KODBC_ANSWER_YES;
    }
    if (!isatty(STDIN_FILENO)) {
        std::fprintf(stderr, "(keine Eingabe möglich: %s)\n", withCancel ? "Abbrechen" : "Nein");
        return withCancel ? KODBC_ANSWER_CANCEL : KODBC_ANSWER_NO;
    }
    for (;;) {
        std::fprintf(stderr, withCancel ? "[j]a / [n]ein / [a]bbrechen? " : "[j]a / [n]ein? ");
        std::string line;
        if (!std::getline(std::cin, line)) return withCancel ? KODBC_ANSWER_CANCEL : KODBC_ANSWER_NO;
        if (line == "j" || line == "J" || line == "y") return KODBC_ANSWER_YES;
        if (line == "n" || line == "N") return KODBC_ANSWER_NO;
        if (withCancel && (line == "a" || line == "A")) return KODBC_ANSWER_CANCEL;
    }
}

// The library's own layout, the one stderr shows without a handler.
void PrintOdbcError(const KodbcMessage &message) {
    std::vector<char> text(16384);
    Kodbc_FormatMessage(&message, text.data(), static_cast<int>(text.size()));
    std::fprintf(stderr, "kodbc: %s", text.data());
}

int Handle(const KodbcMessage *message, void *) {
    switch (message->kind) {
    case KODBC_MESSAGE_ODBC_ERROR:
        PrintOdbcError(*message);
        return KODBC_ANSWER_OK;
    case KODBC_MESSAGE_YESNO:
    case KODBC_MESSAGE_YESNOCANCEL:
        return Ask(*message);
    default:
        std::fprintf(stderr, "kodbc: %s\n", message->text);
        return KODBC_ANSWER_OK;
    }
}

} // namespace

void InstallMessageHandler(bool assumeYes) {
    g_assumeYes = assumeYes;
    Kodbc_SetMessageHandler(&Handle, nullptr);
}

Connection::Connection(const std::string &dsn, const std::string &user, const std::string &password) {
    DataSourceRecord source{};
    std::strncpy(source.DataSourceName, dsn.c_str(), sizeof source.DataSourceName - 1);
    std::strncpy(source.UserId, user.c_str(), sizeof source.UserId - 1);
    std::strncpy(source.Password, password.c_str(), sizeof source.Password - 1);
    if (Kodbc_ConnectDataSource(&source, &henv_, &hdbc_) != KODBC_CONNECTED) hdbc_ = nullptr;
}

Connection::~Connection() { Kodbc_DisconnectDataSource(&henv_, &hdbc_); }

void Error(const std::string &text) { std::fprintf(stderr, "kodbc: %s\n", text.c_str()); }

} // namespace kodbc_cli
