// The system table on every data source: created on first use, values that
// survive quotes, tabs, line breaks, backslashes and umlauts, deleting by
// writing nothing, deleting one item or all of an object's items, and the
// 1000-byte statement that a value must fit into.
#include "test_support.h"

#include <kodbc/kodbc_systable.h>

#include <cstring>
#include <string>

namespace kodbc::test {
namespace {

class SysTable : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        ExecQuietly("DROP TABLE KorvelSysTable");
        if (DbmsName() == "PostgreSQL") {
            // PostgreSQL has no BLOB type; the table's creation fails there
            // unless the database supplies one.
            ExecQuietly("DROP DOMAIN blob");
            if (!PlainPostgreSQL()) Exec("CREATE DOMAIN blob AS text");
        }
        messages_.clear();
    }
    void TearDown() override {
        if (hdbc_) {
            ExecQuietly("DROP TABLE KorvelSysTable");
            if (DbmsName() == "PostgreSQL") ExecQuietly("DROP DOMAIN blob");
        }
        DataSourceTest::TearDown();
    }
    virtual bool PlainPostgreSQL() const { return false; }

    bool TableExists() { return Kodbc_DoesTableExist(hdbc_, KODBC_OBJECT_TABLE | KODBC_OBJECT_SYSTEM, "KorvelSysTable") == 1; }
    std::string Read(const char *object, const char *type, const char *item, const char *def = "default") {
        char out[6000];
        std::memset(out, 'x', sizeof out);
        Kodbc_ReadSysTableString(hdbc_, object, type, item, def, out, sizeof out);
        return out;
    }
    long Rows() {
        return OdbcEh_CountRows(nullptr, hdbc_, "SELECT Object FROM KorvelSysTable");
    }
};
KODBC_DATA_SOURCE_TEST_SUITE(SysTable);

TEST_P(SysTable, FirstReadCreatesTheTableAndYieldsTheDefault) {
    GuardedBuffer out(30);
    EXPECT_EQ(Kodbc_ReadSysTableString(hdbc_, "Form1", "FORM", "Width", "640", out.data(), out.size()), 3);
    EXPECT_EQ(out.text(), "640");
    EXPECT_TRUE(out.guards_intact());
    EXPECT_TRUE(TableExists());
    EXPECT_TRUE(messages_.entries().empty());
    // A second creation is an error the user sees.
    EXPECT_EQ(Kodbc_CreateSystemTable(hdbc_), KODBC_FAILURE);
    EXPECT_EQ(messages_.entries().size(), 1u);
}

TEST_P(SysTable, ValuesComeBackUnchanged) {
    const std::string values[] = {
        "it's \"quoted\" ''twice''",
        "tab\there\nline\r\nbreak",
        "C:\\Programme\\Korvel\\x41 \\Q",
        "Grüße aus Köln, Straße, ÄÖÜ",
        "\x01\x1F control",
    };
    int n = 0;
    for (const std::string &v : values) {
        std::string item = "Item" + std::to_string(n++);
        EXPECT_EQ(Kodbc_WriteSysTableString(hdbc_, "Query1", "VIEW", item.c_str(), v.c_str()), KODBC_SUCCESS);
        EXPECT_EQ(Read("Query1", "VIEW", item.c_str()), v) << item;
    }
    // Writing again replaces rather than adds.
    EXPECT_EQ(Kodbc_WriteSysTableString(hdbc_, "Query1", "VIEW", "Item0", "neu"), KODBC_SUCCESS);
    EXPECT_EQ(Read("Query1", "VIEW", "Item0"), "neu");
    EXPECT_EQ(Rows(), 5);
    EXPECT_TRUE(messages_.entries().empty());
}

TEST_P(SysTable, AnEmptyValueDeletesTheItem) {
    ASSERT_EQ(Kodbc_WriteSysTableString(hdbc_, "Form1", "FORM", "Left", "10"), KODBC_SUCCESS);
    ASSERT_EQ(Rows(), 1);
    EXPECT_EQ(Kodbc_WriteSysTableString(hdbc_, "Form1", "FORM", "Left", " "), KODBC_SUCCESS);
    EXPECT_EQ(Rows(), 0);
    EXPECT_EQ(Read("Form1", "FORM", "Left"), "default");
}

TEST_P(SysTable, DeleteOneItemOrAllItemsOfObjectAndType) {
    EXPECT_EQ(Kodbc_DeleteSysTableItem(hdbc_, "Form1", "FORM", "Left"), 0);  // no table yet
    for (const char *item : {"Left", "Top", "Width"}) Kodbc_WriteSysTableString(hdbc_, "Form1", "FORM", item, "1");
    Kodbc_WriteSysTableString(hdbc_, "Form1", "REPORT", "Left", "2");
    Kodbc_WriteSysTableString(hdbc_, "Form2", "FORM", "Left", "3");
    ASSERT_EQ(Rows(), 5);

    EXPECT_EQ(Kodbc_DeleteSysTableItem(hdbc_, "Form1", "FORM", "Top"), KODBC_SUCCESS);
    EXPECT_EQ(Read("Form1", "FORM", "Top"), "default");
    EXPECT_EQ(Read("Form1", "FORM", "Left"), "1");
    EXPECT_EQ(Kodbc_DeleteSysTableItem(hdbc_, "Form1", "FORM", "NoSuchItem"), KODBC_SUCCESS);
    EXPECT_EQ(Kodbc_DeleteSysTableItem(hdbc_, "Form1", "FORM", ""), KODBC_SUCCESS);
    EXPECT_EQ(Rows(), 2);
    EXPECT_EQ(Read("Form1", "REPORT", "Left"), "2");
    EXPECT_EQ(Read("Form2", "FORM", "Left"), "3");
    // Blank object or type: nothing happens, and that counts as done.
    EXPECT_EQ(Kodbc_DeleteSysTableItem(hdbc_, "", "FORM", nullptr), KODBC_SUCCESS);
    EXPECT_EQ(Kodbc_DeleteSysTableItem(hdbc_, "Form2", "\t", nullptr), KODBC_SUCCESS);
    EXPECT_EQ(Rows(), 2);
    EXPECT_TRUE(messages_.entries().empty());
}

TEST_P(SysTable, BlankNamesAndSmallBuffers) {
    EXPECT_EQ(Kodbc_WriteSysTableString(hdbc_, "Form1", "FORM", " ", "x"), KODBC_SUCCESS);
    EXPECT_EQ(Kodbc_WriteSysTableString(hdbc_, nullptr, "FORM", "Left", "x"), KODBC_SUCCESS);
    EXPECT_FALSE(TableExists());  // nothing was even looked at

    GuardedBuffer out(8);
    EXPECT_EQ(Kodbc_ReadSysTableString(hdbc_, " ", "FORM", "Left", "a long default", out.data(), out.size()), 1);
    EXPECT_EQ(out.text(), "a long ");
    EXPECT_TRUE(out.guards_intact());
    EXPECT_EQ(Kodbc_ReadSysTableString(hdbc_, "Form1", "FORM", "Left", "d", nullptr, 10), 0);
    EXPECT_EQ(Kodbc_ReadSysTableString(hdbc_, "Form1", "FORM", "Left", "d", out.data(), 0), 0);
    EXPECT_TRUE(out.guards_intact());

    ASSERT_EQ(Kodbc_WriteSysTableString(hdbc_, "Form1", "FORM", "Caption", "Adressen\tund\tTelefon"), KODBC_SUCCESS);
    GuardedBuffer small(12);
    Kodbc_ReadSysTableString(hdbc_, "Form1", "FORM", "Caption", "", small.data(), small.size());
    // The stored text ("Adressen\\tund…") is cut to the buffer before it is decoded.
    EXPECT_EQ(small.text(), "Adressen\tu");
    EXPECT_TRUE(small.guards_intact());
    EXPECT_TRUE(messages_.entries().empty());
}

TEST_P(SysTable, AValueIsCutToFitTheStatementNotSplit) {
    std::string value(3000, 'a');
    for (std::size_t i = 0; i < value.size(); i += 7) value[i] = '\t';
    ASSERT_EQ(Kodbc_WriteSysTableString(hdbc_, "Form1", "FORM", "Long", value.c_str()), KODBC_SUCCESS);
    EXPECT_EQ(Rows(), 1);
    std::string back = Read("Form1", "FORM", "Long");
    EXPECT_GT(back.size(), 700u);
    EXPECT_LT(back.size(), 1000u);
    EXPECT_EQ(back, value.substr(0, back.size()));
    EXPECT_TRUE(messages_.entries().empty());
}

// PostgreSQL without a BLOB type: the creation fails and is shown once;
// reads keep the default, writes change nothing.
class SysTableNoBlob : public SysTable {
protected:
    bool PlainPostgreSQL() const override { return true; }
};
KODBC_DATA_SOURCE_TEST_SUITE(SysTableNoBlob);

TEST_P(SysTableNoBlob, FailedCreationIsShownAndTheDefaultStays) {
    if (DbmsName() != "PostgreSQL") GTEST_SKIP() << "BLOB exists here";
    GuardedBuffer out(30);
    EXPECT_EQ(Kodbc_ReadSysTableString(hdbc_, "Form1", "FORM", "Width", "640", out.data(), out.size()),
              KODBC_FAILURE);
    EXPECT_EQ(out.text(), "640");
    ASSERT_EQ(messages_.entries().size(), 1u);
    EXPECT_EQ(messages_.entries()[0].kind, KODBC_MESSAGE_ODBC_ERROR);
    EXPECT_NE(messages_.entries()[0].statement.find("ItemValue BLOB)"), std::string::npos);
    EXPECT_EQ(Kodbc_WriteSysTableString(hdbc_, "Form1", "FORM", "Width", "800"), KODBC_FAILURE);
    EXPECT_FALSE(TableExists());
}

} // namespace
} // namespace kodbc::test
