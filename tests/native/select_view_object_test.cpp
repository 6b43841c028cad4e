// Stored views on each data source: creation with the design beside it,
// loading, renaming by drop and create, the test view leaving nothing
// behind, and the refusals.
#include "test_support.h"

#include "select/view_object.h"

#include <kodbc/kodbc_systable.h>

namespace kodbc::test {
namespace {

using namespace select;

class StoredView : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        if (HasFatalFailure()) return;
        OwnTables({"kodbc_sv_base", "VIEW kodbc_sv", "VIEW kodbc_sv2", "VIEW __KORVEL_TEST__", "KorvelSysTable"});
        Exec("CREATE TABLE kodbc_sv_base (nr INTEGER, ort VARCHAR(20))");
        // PostgreSQL has no BLOB for the system table; its users give it one.
        if (DbmsName() == "PostgreSQL") {
            ExecQuietly("DROP DOMAIN blob");
            Exec("CREATE DOMAIN blob AS text");
        }
    }
    void TearDown() override {
        if (DbmsName() == "PostgreSQL") {
            ExecQuietly("DROP TABLE KorvelSysTable");
            ExecQuietly("DROP DOMAIN blob");
        }
        DataSourceTest::TearDown();
    }
    bool Exists(const char *name) { return Kodbc_DoesTableExist(hdbc_, KODBC_OBJECT_ALL, name) == 1; }
    std::string Stored(const char *name, const char *item) {
        char text[500] = {};
        Kodbc_ReadSysTableString(hdbc_, name, "VIEW", item, "(none)", text, sizeof text);
        return text;
    }
};

TEST_P(StoredView, CreateLoadRenameAndTest) {
    ViewObject fresh = NewViewObject(hdbc_, "", "", kViewModeNew | kViewModeCallers);
    EXPECT_EQ(fresh.name, "Neue_Abfrage");
    EXPECT_EQ(fresh.columns, "*");

    fresh.sql = "SELECT nr, ort FROM kodbc_sv_base";
    fresh.tables = "kodbc_sv_base\t\t\t\t\t";
    fresh.columns = "nr\t\nort\t";
    EXPECT_EQ(CreateStoredView(fresh, "kodbc_sv"), 1);
    EXPECT_TRUE(Exists("kodbc_sv"));
    EXPECT_EQ(Stored("kodbc_sv", "Sql"), fresh.sql);
    EXPECT_EQ(Stored("kodbc_sv", "Selection"), "(none)") << "an empty item is not stored";

    ViewObject loaded = NewViewObject(hdbc_, "", "kodbc_sv", kViewModeExisting);
    EXPECT_EQ(loaded.sql, fresh.sql);
    EXPECT_EQ(loaded.columns, "nr\t\nort\t");
    EXPECT_TRUE(HasStoredDefinition(loaded));
    EXPECT_EQ(CopyName(hdbc_, "", "kodbc_sv"), "Kopie_von_kodbc_sv");

    // The test view and its items do not survive a successful test.
    EXPECT_EQ(TestStoredView(loaded), 1);
    EXPECT_FALSE(Exists("__KORVEL_TEST__"));
    EXPECT_EQ(Stored("__KORVEL_TEST__", "Sql"), "(none)");

    // Renaming: the old view and its items go, the new one comes.
    EXPECT_EQ(DropStoredView(loaded, "kodbc_sv", 0), 1);
    EXPECT_EQ(CreateStoredView(loaded, "kodbc_sv2"), 1);
    EXPECT_FALSE(Exists("kodbc_sv"));
    EXPECT_TRUE(Exists("kodbc_sv2"));
    EXPECT_EQ(Stored("kodbc_sv", "Sql"), "(none)");
    EXPECT_EQ(OdbcErrors(), 0u);
}

TEST_P(StoredView, RefusalsAndTolerances) {
    ViewObject view = NewViewObject(hdbc_, "", "", kViewModeNew);
    EXPECT_EQ(CreateStoredView(view, "kodbc_sv"), 2) << "no SQL text";
    view.sql = "SELEKT nr FROM kodbc_sv_base";
    EXPECT_EQ(CreateStoredView(view, "kodbc_sv"), 2);
    EXPECT_EQ(OdbcErrors(), 1u);
    EXPECT_EQ(Stored("kodbc_sv", "Sql"), "(none)") << "nothing stored after a failed creation";

    messages_.clear();
    EXPECT_EQ(DropStoredView(view, "kodbc_sv", kViewDropTolerateAll), 1);
    EXPECT_EQ(DropStoredView(view, "", kViewDropTolerateAll), 2);
    EXPECT_EQ(DropStoredView(view, "kodbc_sv", 0), 2);
    EXPECT_EQ(OdbcErrors(), 1u) << "only the untolerated drop is shown";

    // A view the system table does not know cannot be edited.
    Exec("CREATE VIEW kodbc_sv2 AS SELECT nr FROM kodbc_sv_base");
    messages_.clear();
    EXPECT_FALSE(HasStoredDefinition(NewViewObject(hdbc_, "", "kodbc_sv2", kViewModeExisting)));
    ASSERT_EQ(messages_.entries().size(), 1u);
    EXPECT_NE(messages_.entries()[0].text.find("'kodbc_sv2'"), std::string::npos);

    for (char c : std::string("az_9AZ")) EXPECT_TRUE(IsViewNameCharacter(c)) << c;
    for (char c : std::string("0 .-\xE4")) EXPECT_FALSE(IsViewNameCharacter(c)) << c;
}

KODBC_DATA_SOURCE_TEST_SUITE(StoredView);

} // namespace
} // namespace kodbc::test
