// How the command-line tool talks to its user: the library's messages and
// ODBC errors on stderr, questions asked on the terminal (or answered by
// --yes), and the connection the commands work on.
#pragma once

#include <kodbc/kodbc.h>

#include <string>
#include <vector>

namespace kodbc_cli {

// Exit codes of the tool.
inline constexpr int kExitOk = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;

// Installs the library's message handler for this process. With assumeYes
// every question is answered Yes; without a terminal on stdin, questions
// get the safe answer. Windows keeps the library's own message boxes; only
// the tool's own questions (Confirm) take assumeYes there.
void InstallMessageHandler(bool assumeYes);

// Asks a yes/no question the way the library's questions are asked (on the
// terminal, Yes under --yes, No without a terminal). True for Yes.
bool Confirm(const std::string &question);

// Tells the connections that no password was given (option, file or
// environment): a data source that refuses them for want of one is then
// answered by a prompt on the terminal, without echo, and tried once more.
// Without a terminal on stdin there is no prompt, only the refusal and a
// line that says how to give the password.
void NoPasswordGiven();

// A connection that disconnects when it goes out of scope.
class Connection {
public:
    Connection(const std::string &dsn, const std::string &user, const std::string &password);
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;
    bool ok() const { return hdbc_ != nullptr; }
    SQLHDBC hdbc() const { return hdbc_; }
    // Leaves auto-commit, so that a batch run of the library is one
    // transaction that the library ends itself; false where the driver
    // refuses (the run then goes record by record).
    bool AutoCommitOff() const {
        return SQL_SUCCEEDED(SQLSetConnectAttr(hdbc_, SQL_ATTR_AUTOCOMMIT,
                                               reinterpret_cast<SQLPOINTER>(SQL_AUTOCOMMIT_OFF), 0));
    }

private:
    SQLHENV henv_ = nullptr;
    SQLHDBC hdbc_ = nullptr;
};

// Prints rows as columns padded to their widest entry, measured in
// characters of the terminal's charset (a "ß" is one column, not two
// bytes); the last column is not padded.
void PrintAligned(const std::vector<std::vector<std::string>> &rows, const char *indent = "");

// Splits text at every separator (an empty text gives no piece).
std::vector<std::string> Split(const std::string &text, char separator);

// Prints "kodbc: text" on stderr.
void Error(const std::string &text);

// What a transfer's rules changed on the way, said on stderr after the run
// ("kodbc: Hinweis: ..."): values cut to a limit ("99 Zeichen"), and numbers that
// lost characters with the first of them (where: "Zeile 3", "Datensatz 2").
void NoteCutValues(long count, const char *limit);
void NoteChangedNumbers(long count, const std::string &where, const std::string &field, const std::string &from,
                        const std::string &to);

} // namespace kodbc_cli
