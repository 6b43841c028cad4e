// The system table on every data source: created on first use, values that
// survive quotes, tabs, line breaks, backslashes and umlauts, deleting by
// writing nothing, deleting one item or all of an object's items, and the
// 1000-byte statement that a value must fit into.
#include "test_support.h"

#include <kodbc/kodbc_systable.h>

#include <string>

namespace kodbc::test {
namespace {

class SysTable : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        if (HasFatalFailure()) return;
        DropSystemTable();
        ProvideBlobType();
        messages_.clear();
    }
    void TearDown() override {
        if (hdbc_) DropSystemTable();
        DataSourceTest::TearDown();
    }
    bool TableExists() { return Kodbc_DoesTableExist(hdbc_, KODBC_OBJECT_TABLE | KODBC_OBJECT_SYSTEM, "KorvelSysTable") == 1; }
    std::string Read(const char *object, const char *type, const char *item, const char *def = "default") {
        return Guarded(6000, [&](char *out, int n) { Kodbc_ReadSysTableString(hdbc_, object, type, item, def, out, n); });
    }
    long Rows() { return OdbcEh_CountRows(nullptr, hdbc_, "SELECT Object FROM KorvelSysTable"); }
};
KODBC_DATA_SOURCE_TEST_SUITE(SysTable);

TEST_P(SysTable, ReadsCreateTheTableYieldTheDefaultCutToTheBufferAndValuesComeBack) {
    // Blank names look at nothing, not even the table's existence.
    EXPECT_EQ(Kodbc_WriteSysTableString(hdbc_, "Form1", "FORM", " ", "x"), KODBC_SUCCESS);
    EXPECT_EQ(Kodbc_WriteSysTableString(hdbc_, nullptr, "FORM", "Left", "x"), KODBC_SUCCESS);
    GuardedBuffer small(8);
    EXPECT_EQ(Kodbc_ReadSysTableString(hdbc_, " ", "FORM", "Left", "a long default", small.data(), small.size()), 1);
    EXPECT_EQ(small.text(), "a long ");
    EXPECT_EQ(Kodbc_ReadSysTableString(hdbc_, "Form1", "FORM", "Left", "d", nullptr, 10), 0);
    EXPECT_EQ(Kodbc_ReadSysTableString(hdbc_, "Form1", "FORM", "Left", "d", small.data(), 0), 0);
    EXPECT_TRUE(small.guards_intact());
    EXPECT_FALSE(TableExists());

    EXPECT_EQ(Kodbc_ReadSysTableString(hdbc_, "Form1", "FORM", "Width", "640", small.data(), small.size()), 3);
    EXPECT_EQ(small.text(), "640");
    EXPECT_TRUE(TableExists());

    ASSERT_EQ(Kodbc_WriteSysTableString(hdbc_, "Form1", "FORM", "Caption", "Adressen\tund\tTelefon"), KODBC_SUCCESS);
    // The stored text ("Adressen\\tund…") is cut to the buffer before it is decoded.
    auto caption = [&](char *out, int n) { Kodbc_ReadSysTableString(hdbc_, "Form1", "FORM", "Caption", "", out, n); };
    EXPECT_EQ(Guarded(12, caption), "Adressen\tu");
    EXPECT_TRUE(messages_.entries().empty());
    // A second creation is an error the user sees.
    EXPECT_EQ(Kodbc_CreateSystemTable(hdbc_), KODBC_FAILURE);
    EXPECT_EQ(messages_.entries().size(), 1u);
    messages_.clear();

    // Values come back unchanged or cut to fit the statement.
    std::string longValue(3000, 'a');
    for (std::size_t i = 0; i < longValue.size(); i += 7) longValue[i] = '\t';
    const std::string values[] = {
        "it's \"quoted\" ''twice''",     "tab\there\nline\r\nbreak", "C:\\Programme\\Korvel\\x41 \\Q",
        "Grüße aus Köln, Straße, ÄÖÜ", "\x01\x1F control",         longValue,
    };
    int n = 0;
    for (const std::string &v : values) {
        std::string item = "Item" + std::to_string(n++);
        EXPECT_EQ(Kodbc_WriteSysTableString(hdbc_, "Query1", "VIEW", item.c_str(), v.c_str()), KODBC_SUCCESS);
        const std::string back = Read("Query1", "VIEW", item.c_str());
        // The long one is cut so that the statement stays closed, not split.
        EXPECT_EQ(back, v.substr(0, &v == &values[5] ? back.size() : std::string::npos)) << item;
    }
    const std::size_t cut = Read("Query1", "VIEW", "Item5").size();
    EXPECT_TRUE(cut > 700 && cut < 1000) << cut;
    // Writing again replaces rather than adds.
    EXPECT_EQ(Kodbc_WriteSysTableString(hdbc_, "Query1", "VIEW", "Item0", "neu"), KODBC_SUCCESS);
    EXPECT_EQ(Read("Query1", "VIEW", "Item0"), "neu");
    EXPECT_EQ(Rows(), 7);
    EXPECT_TRUE(messages_.entries().empty());
}

TEST_P(SysTable, DeleteByAnEmptyValueOneItemOrAllItemsOfObjectAndType) {
    EXPECT_EQ(Kodbc_DeleteSysTableItem(hdbc_, "Form1", "FORM", "Left"), 0);  // no table yet
    for (const char *item : {"Left", "Top", "Width", "Height"})
        Kodbc_WriteSysTableString(hdbc_, "Form1", "FORM", item, "1");
    Kodbc_WriteSysTableString(hdbc_, "Form1", "REPORT", "Left", "2");
    Kodbc_WriteSysTableString(hdbc_, "Form2", "FORM", "Left", "3");
    ASSERT_EQ(Rows(), 6);

    EXPECT_EQ(Kodbc_WriteSysTableString(hdbc_, "Form1", "FORM", "Height", " "), KODBC_SUCCESS);
    EXPECT_EQ(Kodbc_DeleteSysTableItem(hdbc_, "Form1", "FORM", "Top"), KODBC_SUCCESS);
    EXPECT_EQ(Read("Form1", "FORM", "Height") + Read("Form1", "FORM", "Top") + Read("Form1", "FORM", "Left"),
              "defaultdefault1");
    EXPECT_EQ(Rows(), 4);  // the blank value is no row
    EXPECT_EQ(Kodbc_DeleteSysTableItem(hdbc_, "Form1", "FORM", "NoSuchItem"), KODBC_SUCCESS);
    EXPECT_EQ(Kodbc_DeleteSysTableItem(hdbc_, "Form1", "FORM", ""), KODBC_SUCCESS);
    EXPECT_EQ(Read("Form1", "REPORT", "Left") + Read("Form2", "FORM", "Left"), "23");
    // Blank object or type: nothing happens, and that counts as done.
    EXPECT_EQ(Kodbc_DeleteSysTableItem(hdbc_, "", "FORM", nullptr), KODBC_SUCCESS);
    EXPECT_EQ(Kodbc_DeleteSysTableItem(hdbc_, "Form2", "\t", nullptr), KODBC_SUCCESS);
    EXPECT_EQ(Rows(), 2);
    EXPECT_TRUE(messages_.entries().empty());
}

// PostgreSQL without a BLOB type: the creation fails and is shown once;
// reads keep the default, writes change nothing.
TEST_P(SysTable, FailedCreationIsShownAndTheDefaultStays) {
    if (DbmsName() != "PostgreSQL") GTEST_SKIP() << "BLOB exists here";
    Exec("DROP DOMAIN blob");
    EXPECT_EQ(Guarded(30, [&](char *out, int n) {
                  EXPECT_EQ(Kodbc_ReadSysTableString(hdbc_, "Form1", "FORM", "Width", "640", out, n), KODBC_FAILURE);
              }),
              "640");
    ASSERT_EQ(messages_.entries().size(), 1u);
    EXPECT_EQ(messages_.entries()[0].kind, KODBC_MESSAGE_ODBC_ERROR);
    EXPECT_NE(messages_.entries()[0].statement.find("ItemValue BLOB)"), std::string::npos);
    EXPECT_EQ(Kodbc_WriteSysTableString(hdbc_, "Form1", "FORM", "Width", "800"), KODBC_FAILURE);
    EXPECT_FALSE(TableExists());
}

} // namespace
} // namespace kodbc::test
