#include "password_prompt.h"

#ifndef _WIN32
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <iterator>
#include <termios.h>
#include <unistd.h>
#endif

namespace kodbc_cli {

#ifndef _WIN32
namespace {

// The terminal as it was before the prompt turned echo off; a signal that
// ends the process during the prompt puts it back first.
termios g_savedTerminal;
volatile std::sig_atomic_t g_echoOff = 0;
const int kPromptSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

extern "C" void RestoreTerminalAndDie(int signal) {
    if (g_echoOff) tcsetattr(STDIN_FILENO, TCSANOW, &g_savedTerminal);
    g_echoOff = 0;
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

// Echo off for its lifetime, and the signals that end the process turn it
// back on before they do.
class EchoOff {
public:
    EchoOff() {
        if (tcgetattr(STDIN_FILENO, &g_savedTerminal) != 0) return;
        armed_ = true;
        struct sigaction action {};
        action.sa_handler = RestoreTerminalAndDie;
        sigemptyset(&action.sa_mask);
        // A signal the caller ignores stays ignored.
        for (std::size_t i = 0; i < std::size(kPromptSignals); ++i)
            if (sigaction(kPromptSignals[i], nullptr, &before_[i]) == 0 && before_[i].sa_handler != SIG_IGN)
                sigaction(kPromptSignals[i], &action, nullptr);
        termios quiet = g_savedTerminal;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        g_echoOff = 1;
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
    }
    ~EchoOff() {
        if (!armed_) return;
        tcsetattr(STDIN_FILENO, TCSANOW, &g_savedTerminal);
        g_echoOff = 0;
        for (std::size_t i = 0; i < std::size(kPromptSignals); ++i)
            if (before_[i].sa_handler != SIG_IGN) sigaction(kPromptSignals[i], &before_[i], nullptr);
    }
    EchoOff(const EchoOff &) = delete;
    EchoOff &operator=(const EchoOff &) = delete;

private:
    struct sigaction before_[std::size(kPromptSignals)] {};
    bool armed_ = false;
};

} // namespace

bool AskPassword(const std::string &dsn, std::string &password) {
    int tty = open("/dev/tty", O_WRONLY | O_CLOEXEC);
    int out = tty >= 0 ? tty : STDERR_FILENO;
    const std::string prompt = "Kennwort für " + dsn + ": ";
    (void)!write(out, prompt.data(), prompt.size());
    bool complete = false;
    password.clear();
    {
        EchoOff quiet;
        char c;
        for (;;) {
            ssize_t n = read(STDIN_FILENO, &c, 1);
            if (n < 0 && errno == EINTR) continue;
            if (n <= 0) break;
            if (c == '\n') {
                complete = true;
                break;
            }
            password += c;
        }
    }
    (void)!write(out, "\n", 1);
    if (tty >= 0) close(tty);
    if (!password.empty() && password.back() == '\r') password.pop_back();
    return complete || !password.empty();
}
#else
bool AskPassword(const std::string &, std::string &) { return false; }
#endif

} // namespace kodbc_cli
