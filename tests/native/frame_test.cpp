// The library frame: identity, messages, file error mappings.
#include "test_support.h"

#include "internal/library.h"

#include <cerrno>

namespace kodbc::test {
namespace {

TEST(FrameIdentity, InstanceVersionAndModuleName) {
    EXPECT_NE(Kodbc_GetInstance(), nullptr);

    EXPECT_EQ(Guarded(32, [](char *out, int n) { EXPECT_EQ(Kodbc_GetVersion(out, n), 7); }), "5.2.0.0");
    EXPECT_EQ(Guarded(5, [](char *out, int n) { Kodbc_GetPoloModuleName(out, n); }), "KODB");

    GuardedBuffer none(0);
    EXPECT_EQ(Kodbc_GetPoloModuleName(none.data(), 0), 0);
    EXPECT_TRUE(none.guards_intact());
    EXPECT_EQ(Kodbc_GetPoloModuleName(nullptr, 10), 0);
}

TEST(FrameMessages, ErrorCodesFollowTheTable) {
    // 1601 shares 1602's row; 1606 and the end row are no entries.
    const std::pair<int, unsigned> cases[] = {{1600, 0x8004A014u}, {1601, 0x8004A015u}, {1602, 0x8004A015u},
                                              {1607, 0x8004A02Eu}, {1618, 0x8004A031u}, {1614, 0x8004A034u},
                                              {1606, 0x8004A000u}, {0, 0x8004A000u}};
    for (const auto &[message, code] : cases) EXPECT_EQ(MessageErrorCode(message), code) << message;
}

TEST(FrameMessages, MessageReachesTheHandlerWithPrefixAndArguments) {
    MessageRecorder recorder(KODBC_ANSWER_OK);
    LibraryMessage(msg::NO_DATA_SOURCE);
    ASSERT_EQ(recorder.entries().size(), 1u);
    EXPECT_EQ(recorder.entries()[0].kind, KODBC_MESSAGE_STOP);
    EXPECT_EQ(recorder.entries()[0].caption, "Datenbank");
    EXPECT_EQ(recorder.entries()[0].text, "Es ist keine Datenquelle angegeben");

    recorder.clear();
    LibraryMessage(msg::FILE_NOT_FOUND, "/tmp/x.txt");
    ASSERT_EQ(recorder.entries().size(), 1u);
    EXPECT_EQ(recorder.entries()[0].text, "Die Datei  /tmp/x.txt  existiert nicht.");

    // Without arguments the placeholders are the base library's business:
    // nothing of the message around them may be lost.
    recorder.clear();
    LibraryMessage(msg::FILE_NOT_FOUND);
    ASSERT_EQ(recorder.entries().size(), 1u);
    EXPECT_EQ(recorder.entries()[0].text.rfind("Die Datei ", 0), 0u);
    EXPECT_NE(recorder.entries()[0].text.find("existiert nicht."), std::string::npos);

    // Whatever the person answered comes back unchanged.
    for (int answer : {KODBC_ANSWER_YES, KODBC_ANSWER_CANCEL}) {
        recorder.set_answer(answer);
        EXPECT_EQ(LibraryMessage(msg::OUT_OF_MEMORY), answer);
    }
}

TEST(FrameFiles, ErrorClassAndOpenMessageFromErrno) {
    const struct {
        int error, errorClass, openMessage;
    } cases[] = {{ENOENT, 3, 1638}, {EACCES, 2, 1637}, {EEXIST, 4, 1639}, {EMFILE, 5, 1640}, {ENOSPC, 6, 1638},
                 {EIO, -1, 1638}};
    for (const auto &c : cases) {
        if (c.errorClass >= 0) {
            EXPECT_EQ(FileErrorClass(c.error), c.errorClass) << c.error;
        }
        EXPECT_EQ(FileOpenErrorMessage(c.error), c.openMessage) << c.error;
    }
}

} // namespace
} // namespace kodbc::test
