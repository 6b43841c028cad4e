// The library frame: identity, messages, file error mappings.
#include "test_support.h"

#include "internal/library.h"

#include <cerrno>

namespace kodbc::test {
namespace {

TEST(FrameIdentity, InstanceVersionAndModuleName) {
    EXPECT_NE(Kodbc_GetInstance(), nullptr);

    GuardedBuffer version(32);
    EXPECT_EQ(Kodbc_GetVersion(version.data(), version.size()), 7);
    EXPECT_EQ(version.text(), "5.2.0.0");

    GuardedBuffer name(5);
    Kodbc_GetPoloModuleName(name.data(), name.size());
    EXPECT_EQ(name.text(), "KODB");
    EXPECT_TRUE(name.guards_intact());

    GuardedBuffer none(0);
    EXPECT_EQ(Kodbc_GetPoloModuleName(none.data(), 0), 0);
    EXPECT_TRUE(none.guards_intact());
    EXPECT_EQ(Kodbc_GetPoloModuleName(nullptr, 10), 0);
}

TEST(FrameMessages, ErrorCodesFollowTheTable) {
    EXPECT_EQ(MessageErrorCode(1600), 0x8004A014u);
    EXPECT_EQ(MessageErrorCode(1601), MessageErrorCode(1602));
    EXPECT_EQ(MessageErrorCode(1607), 0x8004A02Eu);
    EXPECT_EQ(MessageErrorCode(1618), 0x8004A031u);
    EXPECT_EQ(MessageErrorCode(1614), 0x8004A034u);
    EXPECT_EQ(MessageErrorCode(1606), 0x8004A000u);  // not in the table
    EXPECT_EQ(MessageErrorCode(0), 0x8004A000u);     // the end row is no entry
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
}

TEST(FrameMessages, QuestionsReturnTheAnswer) {
    MessageRecorder recorder(KODBC_ANSWER_YES);
    // Whatever the person answered comes back unchanged.
    EXPECT_EQ(LibraryMessage(msg::OUT_OF_MEMORY), KODBC_ANSWER_YES);
    recorder.set_answer(KODBC_ANSWER_CANCEL);
    EXPECT_EQ(LibraryMessage(msg::OUT_OF_MEMORY), KODBC_ANSWER_CANCEL);
}

TEST(FrameFiles, ErrorClassAndOpenMessageFromErrno) {
    EXPECT_EQ(FileErrorClass(ENOENT), 3);
    EXPECT_EQ(FileErrorClass(EACCES), 2);
    EXPECT_EQ(FileErrorClass(EEXIST), 4);
    EXPECT_EQ(FileErrorClass(EMFILE), 5);
    EXPECT_EQ(FileErrorClass(ENOSPC), 6);
    EXPECT_EQ(FileOpenErrorMessage(EACCES), 1637);
    EXPECT_EQ(FileOpenErrorMessage(EEXIST), 1639);
    EXPECT_EQ(FileOpenErrorMessage(EMFILE), 1640);
    EXPECT_EQ(FileOpenErrorMessage(ENOENT), 1638);
    EXPECT_EQ(FileOpenErrorMessage(EIO), 1638);
}

TEST(FrameStrings, MissingStringGivesEmptyText) {
    GuardedBuffer text(16, 'x');
    EXPECT_EQ(LoadLibraryString(LibraryInstance(), 1, text.data(), text.size()), 0);
    EXPECT_EQ(text.text(), "");
    EXPECT_EQ(LoadLibraryString(LibraryInstance(), msg::OUT_OF_MEMORY, nullptr, 10), 0);
}

} // namespace
} // namespace kodbc::test
