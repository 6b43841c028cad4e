// Progress on a terminal: a bar on stderr, and Ctrl+C means "cancel" rather
// than "kill" while some work shows its progress.
#include <korvel/korvel32.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <mutex>
#include <new>
#include <string>
#include <unistd.h>

struct KorvelProgress {
    std::string caption;
    long start = 0;
    long maximum = 0;
    long value = 0;
    bool terminal = false;
    bool drawn = false;
    int lastPercent = -1;
    std::chrono::steady_clock::time_point lastDraw{};
    unsigned long interruptsAtStart = 0;
    bool cancelled = false;
};

namespace {

volatile std::sig_atomic_t g_interrupts = 0;

std::mutex g_signalMutex;
int g_activeProgresses = 0;
struct sigaction g_previousAction;

extern "C" void OnInterrupt(int) { g_interrupts = g_interrupts + 1; }

void CatchInterrupts() {
    std::lock_guard lock(g_signalMutex);
    if (g_activeProgresses++ > 0) return;
    struct sigaction action {};
    action.sa_handler = OnInterrupt;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, &g_previousAction);
}

void ReleaseInterrupts() {
    std::lock_guard lock(g_signalMutex);
    if (--g_activeProgresses > 0) return;
    sigaction(SIGINT, &g_previousAction, nullptr);
}

int Percent(const KorvelProgress &p) {
    long range = p.maximum - p.start;
    if (range <= 0) return 100;
    long done = std::clamp(p.value - p.start, 0L, range);
    return static_cast<int>(done * 100 / range);
}

void Draw(KorvelProgress &p, bool force) {
    if (!p.terminal) return;
    auto now = std::chrono::steady_clock::now();
    int percent = Percent(p);
    if (!force && (percent == p.lastPercent || now - p.lastDraw < std::chrono::milliseconds(100))) return;
    constexpr int kWidth = 30;
    int filled = percent * kWidth / 100;
    std::string bar(static_cast<std::size_t>(filled), '#');
    bar.append(static_cast<std::size_t>(kWidth - filled), ' ');
    std::fprintf(stderr, "\r%s [%s] %3d%%", p.caption.c_str(), bar.c_str(), percent);
    std::fflush(stderr);
    p.drawn = true;
    p.lastPercent = percent;
    p.lastDraw = now;
}

} // namespace

KorvelProgress *Korvel_Progress_Create(HWND, const char *caption, long start, long maximum) {
    auto *progress = new (std::nothrow) KorvelProgress;
    if (!progress) return nullptr;
    progress->caption = caption ? caption : "";
    progress->start = start;
    progress->maximum = maximum;
    progress->value = start;
    progress->terminal = isatty(STDERR_FILENO) == 1;
    CatchInterrupts();
    progress->interruptsAtStart = static_cast<unsigned long>(g_interrupts);
    Draw(*progress, true);
    return progress;
}

int Korvel_Progress_IsCancelled(const KorvelProgress *progress) {
    if (!progress) return 0;
    return progress->cancelled || static_cast<unsigned long>(g_interrupts) != progress->interruptsAtStart ? 1 : 0;
}

void Korvel_Progress_SetText(KorvelProgress *progress, const char *text) {
    if (progress) progress->caption = text ? text : "";
}

int Korvel_Progress_Set(KorvelProgress *progress, long value) {
    if (!progress) return 0;
    progress->value = value;
    Draw(*progress, false);
    if (Korvel_Progress_IsCancelled(progress)) progress->cancelled = true;
    return progress->cancelled ? 1 : 0;
}

void Korvel_Progress_Destroy(KorvelProgress *progress) {
    if (!progress) return;
    if (progress->drawn) {
        std::fputc('\n', stderr);
        std::fflush(stderr);
    }
    ReleaseInterrupts();
    delete progress;
}
