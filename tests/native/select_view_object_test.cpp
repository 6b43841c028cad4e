// Stored views on each data source: created with their design beside them, loaded,
// renamed by drop and create, refused; the test view leaves nothing behind.
#include "test_support.h"

#include "internal/library.h"
#include "select/view_object.h"

#include <kodbc/kodbc_systable.h>
#include <kodbc/kodbc_views.h>

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
        ProvideBlobType();
    }
    void TearDown() override {
        if (hdbc_) DropSystemTable();
        DataSourceTest::TearDown();
    }
    bool Exists(const char *name) { return Kodbc_DoesTableExist(hdbc_, KODBC_OBJECT_ALL, name) == 1; }
    std::string Stored(const char *name, const char *item) {
        char text[500] = {};
        Kodbc_ReadSysTableString(hdbc_, name, "VIEW", item, "(none)", text, sizeof text);
        return text;
    }
};

TEST_P(StoredView, CreateLoadAndDrop) {
    ViewObject fresh = NewViewObject(hdbc_, "", "", kViewModeNew | kViewModeCallers);
    EXPECT_EQ(fresh.name, "Neue_Abfrage");
    EXPECT_EQ(fresh.columns, "*");
    EXPECT_EQ(CreateStoredView(fresh, "kodbc_sv"), 2) << "no SQL text, quietly";
    const char *sql = "SELECT nr, ort FROM kodbc_sv_base";
    fresh.sql = sql;
    fresh.tables = "kodbc_sv_base\t\t\t\t\t";
    fresh.columns = "nr\t\nort\t";
    EXPECT_EQ(CreateStoredView(fresh, "kodbc_sv"), 1);
    EXPECT_EQ(Stored("kodbc_sv", "Selection"), "(none)") << "an empty item is not stored";
    ViewObject loaded = NewViewObject(hdbc_, "", "kodbc_sv", kViewModeExisting);
    EXPECT_EQ(loaded.sql, sql);
    EXPECT_EQ(loaded.columns, "nr\t\nort\t");
    EXPECT_TRUE(HasStoredDefinition(loaded));
    EXPECT_EQ(CopyName(hdbc_, "", "kodbc_sv"), "Kopie_von_kodbc_sv");
    EXPECT_EQ(OdbcErrors(), 0u);

    EXPECT_EQ(Kodbc_View_Drop(hdbc_, "", "kodbc_sv", 0), KODBC_VIEW_OK);
    EXPECT_EQ(Stored("kodbc_sv", "Sql"), "(none)");
    EXPECT_EQ(Kodbc_View_Drop(hdbc_, "", "kodbc_sv", 0), KODBC_VIEW_FAILED);
    messages_.clear();
    EXPECT_EQ(Kodbc_View_Drop(hdbc_, "", "kodbc_sv", KODBC_VIEW_TOLERATE_ALL), KODBC_VIEW_OK);
    EXPECT_TRUE(messages_.entries().empty());

    EXPECT_EQ(Kodbc_View_Create(hdbc_, "", "kodbc_sv", sql, "kodbc_sv_base\t\t\t\t\t", nullptr, nullptr),
              KODBC_VIEW_OK);
    EXPECT_EQ(Stored("kodbc_sv", "Columns"), "*") << "null columns are all columns";

    GuardedBuffer sqlOut(12), tables(200), columns(3), selection(200);
    EXPECT_EQ(Kodbc_View_Load(hdbc_, "", "kodbc_sv", sqlOut.data(), sqlOut.size(), tables.data(), tables.size(),
                              columns.data(), columns.size(), selection.data(), selection.size(), 0),
              KODBC_VIEW_OK);
    EXPECT_EQ(sqlOut.text(), std::string(sql).substr(0, 11));
    EXPECT_EQ(tables.text(), "kodbc_sv_base\t\t\t\t\t");
    EXPECT_EQ(columns.text(), "*");
    EXPECT_EQ(selection.text(), "");
    for (auto *buffer : {&sqlOut, &tables, &columns, &selection}) EXPECT_TRUE(buffer->guards_intact());

    // Copy proposals, bounded; an empty name proposes a new one.
    EXPECT_EQ(Guarded(6, [&](char *out, int size) { Kodbc_View_CopyName(hdbc_, nullptr, "kodbc_sv", out, size); }),
              "Kopie");
    EXPECT_EQ(Guarded(100, [&](char *out, int size) { Kodbc_View_CopyName(hdbc_, "", nullptr, out, size); }),
              "Neue_Abfrage");

    // A view made elsewhere cannot be edited: quiet for callers without a window, 1612 otherwise.
    Exec("CREATE VIEW kodbc_sv2 AS SELECT nr FROM kodbc_sv_base");
    EXPECT_FALSE(HasStoredDefinition(NewViewObject(hdbc_, "", "kodbc_sv2", kViewModeExisting)));
    ASSERT_EQ(messages_.entries().size(), 1u);
    EXPECT_NE(messages_.entries()[0].text.find("'kodbc_sv2'"), std::string::npos);
    messages_.clear();
    char columnsOnly[10] = {};
    EXPECT_EQ(Kodbc_View_Load(hdbc_, "", "kodbc_sv2", nullptr, 0, nullptr, 0, columnsOnly, sizeof columnsOnly,
                              nullptr, 0, KODBC_VIEW_LOAD_QUIET),
              KODBC_VIEW_NOT_DEFINED);
    EXPECT_STREQ(columnsOnly, "*");
    EXPECT_TRUE(messages_.entries().empty());
    EXPECT_EQ(Kodbc_View_Load(hdbc_, "", "kodbc_sv2", nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0, 0),
              KODBC_VIEW_NOT_DEFINED);
    EXPECT_EQ(messages_.entries().size(), 1u);

    const std::pair<const char *, int> refusals[] = {
        {"create without a name", Kodbc_View_Create(hdbc_, "", "", sql, nullptr, nullptr, nullptr)},
        {"create without SQL", Kodbc_View_Create(hdbc_, "", "kodbc_sv3", nullptr, nullptr, nullptr, nullptr)},
        {"create without a connection", Kodbc_View_Create(nullptr, "", "kodbc_sv3", sql, nullptr, nullptr, nullptr)},
        {"drop without a name", Kodbc_View_Drop(hdbc_, "", nullptr, KODBC_VIEW_TOLERATE_ALL)},
        {"test without SQL", Kodbc_View_Test(hdbc_, "", "")},
        {"load without a name", Kodbc_View_Load(hdbc_, "", "", nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0, 0)},
        {"copy name without a buffer", Kodbc_View_CopyName(hdbc_, "", "kodbc_sv", nullptr, 10)},
    };
    for (const auto &[what, got] : refusals) EXPECT_EQ(got, KODBC_VIEW_FAILED) << what;
}

// SQLite refuses a view over a missing column only when it is read: the test reads the test view.
TEST_P(StoredView, EditedViewIsTestedThenSavedReplacedOrRenamed) {
    for (const auto &[sql, result] : {std::pair{"SELECT nosuch FROM kodbc_sv_base", KODBC_VIEW_FAILED},
                                      {"SELECT nr, ort FROM kodbc_sv_base", KODBC_VIEW_OK}}) {
        SCOPED_TRACE(sql);
        messages_.clear();
        ViewObject view = NewViewObject(hdbc_, "", "kodbc_sv", kViewModeNew);
        view.sql = sql;
        EXPECT_EQ(TestStoredView(view), result);
        EXPECT_EQ(Kodbc_View_Test(hdbc_, "", sql), result);
        ViewField focus = ViewField::None;
        EXPECT_EQ(SaveEditedView(view, focus), result) << "OK tests first";
        EXPECT_EQ(focus, result == KODBC_VIEW_OK ? ViewField::None : ViewField::Sql);
        EXPECT_EQ(Exists("kodbc_sv"), result == KODBC_VIEW_OK);
        EXPECT_EQ(OdbcErrors(), result == KODBC_VIEW_OK ? 0u : 3u);
        EXPECT_FALSE(Exists("__KORVEL_TEST__"));
        EXPECT_EQ(Stored("__KORVEL_TEST__", "Sql"), "(none)");
    }
    ViewField focus = ViewField::None;
    ViewObject opened = NewViewObject(hdbc_, "", "kodbc_sv", kViewModeExisting);
    opened.sql = "SELECT ort FROM kodbc_sv_base";
    EXPECT_EQ(SaveEditedView(opened, focus), 1);
    EXPECT_EQ(Stored("kodbc_sv", "Sql"), opened.sql);
    opened.name = "kodbc_sv2";
    EXPECT_EQ(SaveEditedView(opened, focus), 1);
    EXPECT_FALSE(Exists("kodbc_sv"));
    EXPECT_EQ(Stored("kodbc_sv", "Sql"), "(none)");
    EXPECT_EQ(Stored("kodbc_sv2", "Sql"), opened.sql);
    // A new view whose opening name is taken by another view leaves that one alone.
    ViewObject fresh = NewViewObject(hdbc_, "", "", kViewModeNew);
    fresh.openingName = "kodbc_sv2";
    fresh.name = "kodbc_sv";
    fresh.sql = "SELECT nr FROM kodbc_sv_base";
    EXPECT_EQ(SaveEditedView(fresh, focus), 1);
    EXPECT_TRUE(Exists("kodbc_sv2"));
}

TEST(StoredViewEntries, NameAndSqlAreCheckedFirst) {
    const struct {
        const char *name, *sql;
        int message;
        ViewField focus;
    } entries[] = {
        {"", "SELECT 1", msg::ENTER_VIEW_NAME, ViewField::Name},
        {"kodbc_sv0", "SELECT 1", msg::VIEW_NAME_INVALID_CHARS, ViewField::Name},
        {"kodbc_sv", "", msg::ENTER_SQL_STATEMENT, ViewField::Sql},
        {"kodbc_sv", "SELECT 1", 0, ViewField::None},
    };
    for (const auto &entry : entries) {
        ViewObject view;
        view.name = entry.name;
        view.sql = entry.sql;
        ViewField focus = ViewField::None;
        EXPECT_EQ(CheckViewEntries(view, focus), entry.message) << entry.name << "/" << entry.sql;
        EXPECT_EQ(focus, entry.focus) << entry.name << "/" << entry.sql;
    }
    EXPECT_EQ(ViewNameOnly("a 0Bz-9_.\xE4Z"), "aBz9_Z");
}

KODBC_DATA_SOURCE_TEST_SUITE(StoredView);

} // namespace
} // namespace kodbc::test
