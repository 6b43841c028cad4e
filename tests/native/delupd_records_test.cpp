// The delete-records and update-records wizards' cores on real tables:
// what the pages decide, the texts they show, and the statements that run.
#include "test_support.h"

#include "wizards/delete_records.h"
#include "wizards/update_records.h"

#include <kodbc/kodbc_wizards.h>
#include <korvel/korvel32.h>

#include <string>
#include <vector>

namespace kodbc::test {
namespace {

using namespace kodbc::wizards;

constexpr unsigned kForwards = 1;
constexpr auto Line = &DescriptorLine;

class RecordWizards : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        if (HasFatalFailure()) return;
        OwnTables({"kc_delupd", "kc_delupd_b"});
        Exec("CREATE TABLE kc_delupd (nr INTEGER, ort VARCHAR(40), umsatz NUMERIC(12,2), zahl INTEGER)");
        Exec("INSERT INTO kc_delupd VALUES (1, 'Berlin', 100, 1), (2, 'Bonn', 200, 2), (3, 'Bremen', 300, 3)");
        Exec("CREATE TABLE kc_delupd_b (kennung INTEGER)");
        messages_.clear();
    }

    std::vector<std::string> Rows(const std::string &expression) {
        return Column("SELECT " + expression + " FROM kc_delupd ORDER BY nr");
    }
    static std::pair<bool, int> Left(const PageDecision &decision) { return {decision.goOn, decision.messageId}; }
};
KODBC_DATA_SOURCE_TEST_SUITE(RecordWizards);

TEST_P(RecordWizards, DeleteCountsShowsAndDeletes) {
    const struct {
        const char *what;
        std::string selDesc;
        long count;
        const char *summary;
        std::vector<std::string> left;
    } cases[] = {
        {"a condition", Line("ort", "BW", "Br", 12), 1, "insgesamt  1  Datens", {"1", "2"}},
        {"a condition matching nothing still runs", Line("nr", "GT", "99", 4), 0, "Es befinden sich keine", {"1", "2"}},
        {"two groups", Line("nr", "EQ", "1", 4) + "\v" + Line("ort", "EQ", "Bonn", 12) + "\v", 2,
         "insgesamt  2  Datens", {}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        char text[kPageTextSize];
        EXPECT_EQ(Kodbc_DeleteRecordsSummary(hdbc_, "kc_delupd", c.selDesc.c_str(), text, sizeof text), c.count);
        EXPECT_NE(std::string(text).find(c.summary), std::string::npos) << text;
        EXPECT_EQ(Kodbc_DeleteRecords(hdbc_, "kc_delupd", c.selDesc.c_str()), KODBC_SUCCESS);
        EXPECT_EQ(Rows("nr"), c.left);
    }
    EXPECT_EQ(Kodbc_DeleteRecords(hdbc_, "", nullptr), KODBC_FAILURE);
    EXPECT_TRUE(messages_.entries().empty()) << messages_.last_text();

    // Every statement is offered to the dump, the summary's count twice; the refusal itself is silent.
    Exec("INSERT INTO kc_delupd VALUES (4, 'Essen', 1, 1), (5, 'Ulm', 1, 1)");
    const std::string condition = Line("nr", "LE", "4", 4);
    SetDumpState(KORVEL_DUMP_ASK);
    messages_.set_answer(KODBC_ANSWER_YES);
    char text[kPageTextSize];
    EXPECT_EQ(Kodbc_DeleteRecordsSummary(hdbc_, "kc_delupd", condition.c_str(), text, sizeof text), 1);
    messages_.set_answer(KODBC_ANSWER_NO);
    EXPECT_EQ(Kodbc_DeleteRecords(hdbc_, "kc_delupd", condition.c_str()), KODBC_FAILURE);
    SetDumpState(0);
    EXPECT_EQ(Rows("nr"), (std::vector<std::string>{"4", "5"}));
    std::vector<std::string> offered;
    for (const auto &e : messages_.entries()) offered.push_back(std::to_string(e.kind) + " " + e.text.substr(0, 12));
    const std::string question = std::to_string(KODBC_MESSAGE_YESNOCANCEL) + " ";
    EXPECT_EQ(offered, (std::vector<std::string>{question + "SELECT Count", question + "SELECT Count",
                                                 question + "DELETE from "}));
    EXPECT_EQ(Kodbc_DeleteRecords(hdbc_, "kc_delupd", nullptr), KODBC_SUCCESS) << "no condition deletes all";
    EXPECT_TRUE(Rows("nr").empty());
}

// Counted with the whole condition, a statement that would hold less of it (or of the assignments) must not run.
TEST_P(RecordWizards, StatementsThatWouldNotHoldWhatWasCountedAndCheckedAreRefused) {
    // Three conditions of about 190 characters: more than the statement's 500 bytes.
    std::string longGroup;
    for (int i = 0; i < 3; ++i) longGroup += Line("ort", "CT", std::string(180, 'x'), 12);
    // Two of 225 characters: the condition fits its 500 bytes, the statement not.
    const std::string nearlyFits = Line("ort", "CT", std::string(225, 'x'), 12) +
                                   Line("ort", "CT", std::string(225, 'y'), 12);
    const std::string second = Line("nr", "EQ", "2", 4);
    // A formula whose SET clause "zahl=..." has 299 characters, and one with two more.
    std::string fitting = "zahl+1";
    while (fitting.size() < 294) fitting += "+0";
    const std::string shortSet = Line("zahl", "SFO", "zahl+1", 4);
    const std::string fittingSet = Line("zahl", "SFO", fitting, 4), longSet = Line("zahl", "SFO", fitting + "+0", 4);

    const struct {
        const char *what;
        std::string selDesc;
        const std::string *setDesc;  // null: delete
        int refusal;
    } cases[] = {
        {"delete, a group that would vanish", longGroup, nullptr, 2171},
        {"delete, a group after one that fits", Line("nr", "EQ", "3", 4) + "\v" + longGroup + "\v", nullptr, 2171},
        {"delete, a statement cut at its end", nearlyFits, nullptr, 2171},
        {"update, a group that would vanish", longGroup, &shortSet, 2171},
        {"update, assignments cut inside a value", second, &longSet, 2172},
        {"update, assignments that just fit", second, &fittingSet, 0},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        messages_.clear();
        const char *set = c.setDesc ? c.setDesc->c_str() : nullptr;
        EXPECT_EQ(Kodbc_CheckRecordStatement(hdbc_, "kc_delupd", c.selDesc.c_str(), set),
                  c.refusal ? KODBC_FAILURE : KODBC_SUCCESS);
        ASSERT_EQ(messages_.entries().size(), c.refusal ? 1u : 0u);
        const char *said = c.refusal == 2172 ? "Zuweisungen sind zu lang" : "Bedingungen sind zu lang";
        EXPECT_EQ(messages_.last_text().find(said) != std::string::npos, c.refusal != 0) << messages_.last_text();
    }
    // The delete and the pages refuse alike; the update that fits runs.
    auto del = CreateDeleteRecordsContext(hdbc_, nullptr, 0);
    StoreTableName(del->table, "kc_delupd");
    KorvelCopyString(del->selDesc.get(), longGroup.c_str(), del->selDesc.capacity);
    EXPECT_EQ(LeaveSummaryPage(*del, kForwards).messageId, 2171);
    EXPECT_EQ(Kodbc_DeleteRecords(hdbc_, "kc_delupd", longGroup.c_str()), KODBC_FAILURE);
    auto upd = CreateUpdateRecordsContext(hdbc_, nullptr, 0);
    StoreTableName(upd->table, "kc_delupd");
    KorvelCopyString(upd->selDesc.get(), second.c_str(), upd->selDesc.capacity);
    for (const auto &[set, refusal] : {std::pair{&longSet, 2172}, {&fittingSet, 0}}) {
        KorvelCopyString(upd->setDesc.get(), set->c_str(), upd->setDesc.capacity);
        ASSERT_TRUE(LeaveAssignmentPage(*upd, kForwards).goOn) << "the assignment page checks as it always has";
        EXPECT_EQ(Left(LeaveConfirmationPage(*upd, kForwards)), std::pair(refusal == 0, refusal));
    }
    EXPECT_EQ(Rows("zahl"), (std::vector<std::string>{"1", "3", "3"}));
    EXPECT_EQ(OdbcErrors(), 0u);
}

TEST_P(RecordWizards, AnotherTableEmptiesTheConditionsTheSameNameInAnotherCaseKeepsThem) {
    TableRecord record{};
    record.Object.DbObjectType = KODBC_OBJECT_TABLE;
    auto del = CreateDeleteRecordsContext(hdbc_, &record, 7);
    EXPECT_EQ(LeaveTablePage(*del, kForwards, nullptr).focus, PageFocus::TableList);
    EXPECT_EQ(Left(LeaveTablePage(*del, kForwards, nullptr)), std::pair(false, 1625));
    EXPECT_TRUE(LeaveTablePage(*del, kLeaveBackwards, nullptr).goOn);

    const std::string condition = Line("nr", "EQ", "2", 4);
    const struct {
        const char *table;
        bool keeps;
        const char *field;
    } steps[] = {{"kc_delupd", false, "umsatz"}, {"KC_DELUPD", true, "umsatz"}, {"kc_delupd_b", false, "kennung"}};
    for (const auto &s : steps) {
        SCOPED_TRACE(s.table);
        KorvelCopyString(del->selDesc.get(), condition.c_str(), del->selDesc.capacity);
        SelectTable(*del, s.table);
        ASSERT_TRUE(LeaveTablePage(*del, kForwards, s.table).goOn);
        ActivateConditionPage(*del);
        EXPECT_EQ(del->selDesc.get(), s.keeps ? condition : std::string());
        EXPECT_NE(std::string(del->fieldList.get()).find(s.field), std::string::npos) << del->fieldList.get();
    }

    auto upd = CreateUpdateRecordsContext(hdbc_, &record, 7);
    ASSERT_TRUE(LeaveTablePage(*upd, kForwards, "kc_delupd").goOn);
    EXPECT_NE(std::string(upd->fieldList.get()).find("zahl"), std::string::npos);
    KorvelCopyString(upd->selDesc.get(), condition.c_str(), upd->selDesc.capacity);
    KorvelCopyString(upd->setDesc.get(), Line("ort", "SNU", "", 12).c_str(), upd->setDesc.capacity);
    ASSERT_TRUE(LeaveTablePage(*upd, kForwards, "kc_delupd").goOn);
    EXPECT_STREQ(upd->selDesc.get(), condition.c_str()) << "leaving with the same table keeps the conditions";
    SelectTable(*upd, "kc_delupd");
    EXPECT_STREQ(upd->selDesc.get(), "");
    EXPECT_STREQ(upd->setDesc.get(), "");
}

TEST_P(RecordWizards, UpdatePagesAndTheExportedUpdateRefuseNothingToDoAndRunTheStatement) {
    auto upd = CreateUpdateRecordsContext(hdbc_, nullptr, 0);
    ASSERT_TRUE(LeaveTablePage(*upd, kForwards, "kc_delupd").goOn);

    KorvelCopyString(upd->selDesc.get(), Line("nr", "GT", "99", 4).c_str(), upd->selDesc.capacity);
    EXPECT_EQ(Left(LeaveConditionPage(*upd, kForwards)), std::pair(false, 1626));
    EXPECT_TRUE(LeaveConditionPage(*upd, kLeaveBackwards).goOn);

    KorvelCopyString(upd->selDesc.get(), Line("nr", "GE", "2", 4).c_str(), upd->selDesc.capacity);
    ASSERT_TRUE(LeaveConditionPage(*upd, kForwards).goOn);
    EXPECT_EQ(upd->recordCount, 2);

    // A line with an empty value gives no assignment.
    KorvelCopyString(upd->setDesc.get(), Line("ort", "SCO", "", 12).c_str(), upd->setDesc.capacity);
    EXPECT_EQ(Left(LeaveAssignmentPage(*upd, kForwards)), std::pair(false, 1635));

    KorvelCopyString(upd->setDesc.get(), Line("zahl", "SFO", "zahl+10", 4).c_str(), upd->setDesc.capacity);
    ASSERT_TRUE(LeaveAssignmentPage(*upd, kForwards).goOn);
    char text[kPageTextSize];
    ConfirmationText(*upd, text, sizeof text);
    EXPECT_EQ(std::string(text).rfind("Es werden  2  Datens", 0), 0u) << text;

    messages_.clear();
    ASSERT_TRUE(LeaveConfirmationPage(*upd, kForwards).goOn);
    EXPECT_TRUE(LeaveConfirmationPage(*upd, kLeaveBackwards).goOn) << "going back runs nothing";
    ASSERT_TRUE(LeaveConfirmationPage(*upd, kForwards).goOn);
    EXPECT_EQ(Rows("zahl"), (std::vector<std::string>{"1", "22", "23"}));
    ResultText(*upd, text, sizeof text);
    EXPECT_NE(std::string(text).find("allen  2  Datens"), std::string::npos) << text;

    KorvelCopyString(upd->setDesc.get(), Line("zahl", "SFO", "nosuchfield+1", 4).c_str(), upd->setDesc.capacity);
    EXPECT_FALSE(LeaveConfirmationPage(*upd, kForwards).goOn);
    EXPECT_EQ(OdbcErrors(), 1u);

    // The exported update; each kind of assignment is the clause tests' rule.
    messages_.clear();
    const std::string second = Line("nr", "EQ", "2", 4);
    long count = -1;
    EXPECT_EQ(Kodbc_UpdateRecords(hdbc_, "kc_delupd", second.c_str(), Line("zahl", "SFO", "nr*100+zahl", 4).c_str(),
                                  &count),
              KODBC_SUCCESS);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(Rows("zahl"), (std::vector<std::string>{"1", "222", "23"}));
    EXPECT_TRUE(messages_.entries().empty()) << messages_.last_text();

    EXPECT_EQ(Kodbc_UpdateRecords(hdbc_, "kc_delupd", Line("nr", "EQ", "9", 4).c_str(),
                                  Line("ort", "SNU", "", 12).c_str(), &count),
              KODBC_FAILURE);
    EXPECT_EQ(count, 0);
    EXPECT_NE(messages_.last_text().find("keine Datens"), std::string::npos) << messages_.last_text();
    EXPECT_EQ(Kodbc_UpdateRecords(hdbc_, "kc_delupd", nullptr, "", &count), KODBC_FAILURE);
    EXPECT_EQ(count, 3);
    EXPECT_NE(messages_.last_text().find("mindestens ein Feld"), std::string::npos) << messages_.last_text();
}

} // namespace
} // namespace kodbc::test
