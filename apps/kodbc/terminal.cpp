#include "terminal.h"
#include "password_prompt.h"

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <cstring>
#include <map>
#include <iostream>
#include <unistd.h>
#include <vector>
#ifndef _WIN32
#include <strings.h>
#endif

namespace kodbc_cli {
namespace {

bool g_assumeYes = false;
bool g_noPasswordGiven = false;

// While a connection is being made, its ODBC errors are held back here
// instead of printed: a refusal for want of a password is answered by the
// prompt, not shown.
struct HeldErrors {
    std::vector<std::string> texts;
    bool wantPassword = false;
};
HeldErrors *g_held = nullptr;

#ifndef _WIN32
// 28000 is the refused authorization itself; drivers that refuse before
// authorizing (08001, 08004) say in their text that the password is missing.
bool WantsPassword(const KodbcMessage &message) {
    const char *state = message.odbc && message.odbc->sqlState ? message.odbc->sqlState : "";
    if (std::strcmp(state, "28000") == 0) return true;
    if (std::strcmp(state, "08001") != 0 && std::strcmp(state, "08004") != 0) return false;
    const char *text = message.text ? message.text : "";
    return strcasestr(text, "password") != nullptr || strcasestr(text, "kennwort") != nullptr;
}

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
        // No exception goes back into the library: a message that cannot be
        // held is printed.
        try {
            if (g_held) {
                std::vector<char> text(16384);
                Kodbc_FormatMessage(message, text.data(), static_cast<int>(text.size()));
                g_held->texts.push_back(std::string("kodbc: ") + text.data());
                g_held->wantPassword = g_held->wantPassword || WantsPassword(*message);
                return KODBC_ANSWER_OK;
            }
            PrintOdbcError(*message);
        } catch (...) {
            std::fprintf(stderr, "kodbc: %s\n", message->text);
        }
        return KODBC_ANSWER_OK;
    case KODBC_MESSAGE_YESNO:
    case KODBC_MESSAGE_YESNOCANCEL:
        return Ask(*message);
    default:
        std::fprintf(stderr, "kodbc: %s\n", message->text);
        return KODBC_ANSWER_OK;
    }
}
#endif

} // namespace

bool Confirm(const std::string &question) {
#ifdef _WIN32
    if (g_assumeYes) return true;
    return MessageBoxA(nullptr, question.c_str(), "kodbc", MB_YESNO | MB_ICONQUESTION) == IDYES;
#else
    KodbcMessage message{KODBC_MESSAGE_YESNO, "kodbc", question.c_str(), nullptr};
    return Ask(message) == KODBC_ANSWER_YES;
#endif
}

void InstallMessageHandler(bool assumeYes) {
    g_assumeYes = assumeYes;
#ifndef _WIN32
    Kodbc_SetMessageHandler(&Handle, nullptr);
#endif
}

namespace {

bool Connect(const std::string &dsn, const std::string &user, const std::string &password, SQLHENV *henv,
             SQLHDBC *hdbc) {
    DataSourceRecord source{};
    std::strncpy(source.DataSourceName, dsn.c_str(), sizeof source.DataSourceName - 1);
    std::strncpy(source.UserId, user.c_str(), sizeof source.UserId - 1);
    std::strncpy(source.Password, password.c_str(), sizeof source.Password - 1);
    bool connected = Kodbc_ConnectDataSource(&source, henv, hdbc) == KODBC_CONNECTED;
    std::memset(source.Password, 0, sizeof source.Password);
    return connected;
}

} // namespace

void NoPasswordGiven() { g_noPasswordGiven = true; }

Connection::Connection(const std::string &dsn, const std::string &user, const std::string &password) {
    // A password typed once serves every further connection of this run to
    // the same data source and user (add-records opens two), so the user is
    // asked once.
    static std::map<std::pair<std::string, std::string>, std::string> typedBefore;
    const auto login = std::make_pair(dsn, user);
    const auto before = g_noPasswordGiven ? typedBefore.find(login) : typedBefore.end();
    HeldErrors held;
    g_held = g_noPasswordGiven ? &held : nullptr;
    bool connected = Connect(dsn, user, before != typedBefore.end() ? before->second : password, &henv_, &hdbc_);
    g_held = nullptr;  // Connect throws nothing: the handler catches
    if (connected) return;
    hdbc_ = nullptr;
    const bool terminal = isatty(STDIN_FILENO) != 0;
    std::string typed;
    if (held.wantPassword && terminal && AskPassword(dsn, typed)) {
        if (Connect(dsn, user, typed, &henv_, &hdbc_))
            typedBefore[login] = typed;
        else
            hdbc_ = nullptr;
        std::fill(typed.begin(), typed.end(), '\0');
        return;
    }
    for (const std::string &text : held.texts) std::fputs(text.c_str(), stderr);
    if (held.wantPassword && !terminal)
        Error("die Datenquelle " + dsn + " verlangt ein Kennwort; ohne Terminal wird nicht gefragt: "
              "-p, --password-file oder KODBC_PASSWORD angeben");
}

Connection::~Connection() { Kodbc_DisconnectDataSource(&henv_, &hdbc_); }

namespace {

// Columns a text takes on the terminal; bytes the charset cannot read count one each.
std::size_t DisplayWidth(const std::string &text) {
    std::mbstate_t state{};
    std::size_t width = 0;
    const char *p = text.c_str();
    const char *end = p + text.size();
    while (p < end) {
        wchar_t c;
        std::size_t n = std::mbrtowc(&c, p, static_cast<std::size_t>(end - p), &state);
        if (n == static_cast<std::size_t>(-1) || n == static_cast<std::size_t>(-2) || n == 0) {
            state = std::mbstate_t{};
            n = 1;
            ++width;
        } else {
#ifdef _WIN32
            int w = 1;  // the console's code page has no double-width letters
#else
            int w = wcwidth(c);
#endif
            width += w > 0 ? static_cast<std::size_t>(w) : 0;
        }
        p += n;
    }
    return width;
}

} // namespace

void PrintAligned(const std::vector<std::vector<std::string>> &rows, const char *indent) {
    std::vector<std::size_t> widths;
    for (const auto &row : rows)
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (widths.size() <= i) widths.resize(i + 1, 0);
            widths[i] = std::max(widths[i], DisplayWidth(row[i]));
        }
    for (const auto &row : rows) {
        std::string line = indent;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            if (i + 1 < row.size()) line.append(widths[i] - DisplayWidth(row[i]) + 2, ' ');
        }
        while (!line.empty() && line.back() == ' ') line.pop_back();
        std::printf("%s\n", line.c_str());
    }
}

std::vector<std::string> Split(const std::string &text, char separator) {
    std::vector<std::string> pieces;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find(separator, start);
        if (end == std::string::npos) end = text.size();
        pieces.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return pieces;
}

void Error(const std::string &text) { std::fprintf(stderr, "kodbc: %s\n", text.c_str()); }

void NoteCutValues(long count, const char *limit) {
    if (count > 0) std::fprintf(stderr, "kodbc: Hinweis: %ld Wert(e) auf %s gekürzt\n", count, limit);
}

void NoteChangedNumbers(long count, const std::string &where, const std::string &field, const std::string &from,
                        const std::string &to) {
    if (count <= 0) return;
    std::fprintf(stderr,
                 "kodbc: Hinweis: bei %ld Zahl(en) wurden Zeichen weggelassen, zuerst in %s, Feld '%s': "
                 "\"%s\" wurde %s\n",
                 count, where.c_str(), field.c_str(), from.c_str(), to.empty() ? "NULL" : to.c_str());
}

} // namespace kodbc_cli
