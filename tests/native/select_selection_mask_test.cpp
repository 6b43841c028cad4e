// Selection-mask files: what is accepted, what is refused and what the
// writer leaves on disk.
#include "test_support.h"

#include "select/selection_mask.h"

#include <cstdio>
#include <fstream>

namespace kodbc::test {
namespace {

class SelectionMask : public ::testing::Test {
protected:
    void TearDown() override { std::remove(file_.c_str()); }
    std::string file_ = ::testing::TempDir() + "kodbc_mask_test.sms";
    MessageRecorder messages_;
};

TEST_F(SelectionMask, ReadAcceptsTheExactMagicOnly) {
    const std::string condition = "Ort\tEQ\tBonn\t12\n\v";
    const struct {
        std::string bytes;
        bool accepted;
        std::string descriptor;
    } cases[] = {
        {"KORVEL-SMS", true, ""},
        {"KORVEL-SMS" + condition, true, condition},
        {"KORVEL-SMS" + condition + "\x1a", true, condition},  // an editor's end-of-file mark
        {"korvel-sms" + condition, false, ""},
        {"KORVEL-SM", false, ""},
    };
    for (const auto &c : cases) {
        std::ofstream(file_, std::ios::binary) << c.bytes;
        messages_.clear();
        char out[200] = "unchanged";
        EXPECT_EQ(Kodbc_LoadSelectionMask(file_.c_str(), out, sizeof out), c.accepted ? 1 : 2) << c.bytes;
        EXPECT_EQ(out, c.accepted ? c.descriptor : "") << c.bytes;
        EXPECT_EQ(messages_.entries().size(), c.accepted ? 0u : 1u) << c.bytes;
    }
    EXPECT_EQ(Kodbc_LoadSelectionMask("/nonexistent/mask.sms", nullptr, 0), 2);
    messages_.clear();
    char out[20];
    EXPECT_EQ(Kodbc_LoadSelectionMask("/nonexistent/mask.sms", out, sizeof out), 2);
    ASSERT_EQ(messages_.entries().size(), 1u);
    EXPECT_NE(messages_.entries()[0].text.find("/nonexistent/mask.sms"), std::string::npos);
}

TEST_F(SelectionMask, WriteKeepsTheBufferLimitAndSaysWhatFailed) {
    EXPECT_EQ(Kodbc_SaveSelectionMask(file_.c_str(), "Ort\tEQ\tBonn\t12\n\v\v\v\v"), 1);
    EXPECT_EQ(ReadFile(file_), "KORVEL-SMSOrt\tEQ\tBonn\t12\n\v\v\v\v");
    EXPECT_EQ(Kodbc_SaveSelectionMask(file_.c_str(), std::string(6000, 'x').c_str()), 1);
    EXPECT_EQ(ReadFile(file_), "KORVEL-SMS" + std::string(4990, 'x'));
    for (const char *bad : {"/dev/full", "/nonexistent/mask.sms"}) {
        messages_.clear();
        EXPECT_EQ(Kodbc_SaveSelectionMask(bad, "x"), 2) << bad;
        EXPECT_EQ(messages_.entries().size(), 1u) << bad;
    }
}

} // namespace
} // namespace kodbc::test
