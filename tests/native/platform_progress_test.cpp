// Ctrl+C cancels the work in progress instead of ending the program, and
// only while a progress exists.
#include "test_support.h"

#include <korvel/korvel32.h>

#include <csignal>

namespace {
volatile std::sig_atomic_t g_outerInterrupts = 0;
extern "C" void OuterHandler(int) { g_outerInterrupts = g_outerInterrupts + 1; }
} // namespace

TEST(PlatformProgress, InterruptCancelsAndHandlerIsRestored) {
    struct sigaction outer {}, saved {};
    outer.sa_handler = OuterHandler;
    sigemptyset(&outer.sa_mask);
    ASSERT_EQ(sigaction(SIGINT, &outer, &saved), 0);

    KorvelProgress *progress = Korvel_Progress_Create(nullptr, "Import", 0, 200);
    ASSERT_NE(progress, nullptr);
    EXPECT_EQ(Korvel_Progress_Set(progress, 50), 0);
    EXPECT_EQ(Korvel_Progress_IsCancelled(progress), 0);
    std::raise(SIGINT);
    EXPECT_EQ(g_outerInterrupts, 0) << "the program's own handler must not see it";
    EXPECT_EQ(Korvel_Progress_Set(progress, 60), 1);
    EXPECT_EQ(Korvel_Progress_IsCancelled(progress), 1);
    EXPECT_EQ(Korvel_Progress_Set(progress, 70), 1) << "a cancel stays";
    Korvel_Progress_Destroy(progress);

    std::raise(SIGINT);
    EXPECT_EQ(g_outerInterrupts, 1) << "previous handler back after destroy";

    // A later progress starts uncancelled.
    progress = Korvel_Progress_Create(nullptr, "Export", 10, 10);
    ASSERT_NE(progress, nullptr);
    EXPECT_EQ(Korvel_Progress_Set(progress, 10), 0);
    Korvel_Progress_Destroy(progress);
    Korvel_Progress_IsCancelled(nullptr);
    Korvel_Progress_Destroy(nullptr);

    sigaction(SIGINT, &saved, nullptr);
}
