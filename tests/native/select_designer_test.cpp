// The query object: the designer's edits of a working copy (the other parts kept in
// step with the tables), its rules, descriptors and statement, its test on each data source.
#include "test_support.h"

#include "select/selfact.h"
#include "select/selfact_designer.h"

#include <kodbc/kodbc_selfact.h>

#include <map>
#include <ostream>
#include <string>
#include <tuple>

namespace kodbc::select {
void PrintTo(const DesignerField &field, std::ostream *out) { *out << field.name << " " << field.type; }
} // namespace kodbc::select

namespace kodbc::test {
namespace {

using namespace select;
using Table = SelFact::Table;

SelFact Query(const std::string &tables, const std::string &columns, const std::string &sort = {},
              const std::string &selection = {}) {
    SelFact query;
    SetSelFactDescriptor(query, SELFACT_TABLES, tables.c_str());
    SetSelFactDescriptor(query, SELFACT_COLUMNS, columns.c_str());
    SetSelFactDescriptor(query, SELFACT_SORT, sort.c_str());
    SetSelFactDescriptor(query, SELFACT_SELECTION, selection.c_str());
    return query;
}

std::string Part(const SelFact &query, int part) { return SelFactDescriptor(query, part); }

const std::string kTwoTables = "Kunden\tk\t\tEQ\t\t\nAuftraege\ta\tLJ\tEQ\tk.Nr\ta.KdNr";
const std::string kColumns = "k.Name\tKunde\na.*\t\nk.Ort\t";

TEST(SelFactDesigner, StoringATableChecksItAndAddsOrReplaces) {
    struct Case {
        const char *what;
        bool add;
        int selected;
        SelFact::Table table;
        int row, refused;
        std::string tables;
    } cases[] = {
        {"a table without a name", true, -1, {{}, "o", 1, 1, {}, {}}, -1, 1625, kTwoTables},
        {"joined, no second operand", true, -1, {"Orte", {}, 3, 1, "k.Ort", {}}, -1, 1652, kTwoTables},
        {"joined, no first operand", true, 1, {"Orte", {}, 2, 1, {}, "o.Ort"}, -1, 1652, kTwoTables},
        {"not joined, no operands", true, -1, {"Orte", {}, 1, 1, {}, {}}, 2, 0, kTwoTables + "\nOrte\t\t\tEQ\t\t"},
        {"added at the end, whatever is selected", true, 0, {"Orte", "o", 3, 1, "k.Ort", "o.Name"}, 2, 0,
         kTwoTables + "\nOrte\to\tIJ\tEQ\tk.Ort\to.Name"},
        {"replaced in place", false, 1, {"Orte", "a", 2, 1, "k.Ort", "a.Name"}, 1, 0,
         "Kunden\tk\t\tEQ\t\t\nOrte\ta\tLJ\tEQ\tk.Ort\ta.Name"},
        {"nothing selected to replace: no refusal either", false, -1, {}, -1, 0, kTwoTables},
    };
    for (const Case &c : cases) {
        SelFact query = Query(kTwoTables, kColumns);
        const StoredEntry stored = StoreTable(query, c.add, c.selected, c.table);
        EXPECT_EQ(stored.row, c.row) << c.what;
        EXPECT_EQ(stored.refused, c.refused) << c.what;
        EXPECT_EQ(Part(query, SELFACT_TABLES), c.tables) << c.what;
    }
}

TEST(SelFactDesigner, StoringAColumnOrSortEntryAddsOrReplaces) {
    const std::string kSorts = "k.Name\tDESC\na.Nr\t";
    struct Case {
        const char *what;
        bool add;
        int selected;
        std::string first, second;
        int columnRow, sortRow;
        std::string columns, sorts;
    } cases[] = {
        {"added at the end", true, 0, "k.Plz", "PLZ", 3, 2, kColumns + "\nk.Plz\tPLZ", kSorts + "\nk.Plz\tPLZ"},
        {"an empty second text is absent", false, 1, "k.Plz", "", 1, 1, "k.Name\tKunde\nk.Plz\t\nk.Ort\t",
         "k.Name\tDESC\nk.Plz\t"},
        {"nothing selected to replace", false, -1, "k.Plz", "PLZ", -1, -1, kColumns, kSorts},
        {"nothing to store", true, -1, "", "PLZ", -1, -1, kColumns, kSorts},
    };
    for (const Case &c : cases) {
        SelFact query = Query(kTwoTables, kColumns, kSorts);
        EXPECT_EQ(StoreColumn(query, c.add, c.selected, c.first, c.second).row, c.columnRow) << c.what;
        EXPECT_EQ(Part(query, SELFACT_COLUMNS), c.columns) << c.what;
        EXPECT_EQ(StoreSort(query, c.add, c.selected, c.first, c.second).row, c.sortRow) << c.what;
        EXPECT_EQ(Part(query, SELFACT_SORT), c.sorts) << c.what;
        if (c.sortRow < 0) continue;
        EXPECT_EQ(query.columns[static_cast<std::size_t>(c.columnRow)].alias.has_value(), !c.second.empty()) << c.what;
        EXPECT_EQ(query.sorts[static_cast<std::size_t>(c.sortRow)].direction.has_value(), !c.second.empty())
            << c.what;
    }
    // The lists grow in steps of 100 entries.
    SelFact query;
    EXPECT_EQ(StoreColumn(query, true, -1, "a", "").row, 0);
    EXPECT_EQ(query.columns.capacity(), 100u);
    for (int i = 0; i <= 100; ++i) StoreSort(query, true, -1, "a", "");
    EXPECT_EQ(query.sorts.capacity(), 200u);
}

TEST(SelFactDesigner, RenamingATableCarriesItsReferencesAlong) {
    // The alias "k" becomes "kd": columns, sort, the other table's operand and the selection's
    // fields (and a field-to-field value) follow; names that merely begin alike do not.
    SelFact query = Query(kTwoTables, "k.Name\tKunde\nkx.Name\t\nK.Ort\t", "k.Name\tDESC",
                          "k.Ort\tBW\tBer\t12\nk.Plz\tEQF\tk.Ort\t12\n\va.Nr\tEQ\tk.Nr\t4\n\v");
    ASSERT_EQ(StoreTable(query, false, 0, Table{"Kunden", "kd", 1, 1, {}, {}}).row, 0);
    EXPECT_EQ(Part(query, SELFACT_COLUMNS), "kd.Name\tKunde\nkx.Name\t\nkd.Ort\t");
    EXPECT_EQ(Part(query, SELFACT_SORT), "kd.Name\tDESC");
    EXPECT_EQ(Part(query, SELFACT_TABLES), "Kunden\tkd\t\tEQ\t\t\nAuftraege\ta\tLJ\tEQ\tkd.Nr\ta.KdNr");
    EXPECT_EQ(Part(query, SELFACT_SELECTION), "kd.Ort\tBW\tBer\t12\nkd.Plz\tEQF\tkd.Ort\t12\n\va.Nr\tEQ\tk.Nr\t4\n\v");

    // Without an alias the table's name qualifies its fields.
    SelFact plain = Query("Kunden\t\t\t\t\t", "Kunden.Name\t");
    ASSERT_EQ(StoreTable(plain, false, 0, Table{"Kunden", "k", 1, 1, {}, {}}).row, 0);
    EXPECT_EQ(Part(plain, SELFACT_COLUMNS), "k.Name\t");
}

TEST(SelFactDesigner, RemovingATableTakesWhatBelongsToIt) {
    SelFact query = Query(kTwoTables + "\nOrte\to\tIJ\tEQ\ta.Ort\to.Name", kColumns, "a.Datum\tDESC\nk.Name\t");
    ASSERT_TRUE(RemoveTable(query, 1));
    EXPECT_EQ(Part(query, SELFACT_TABLES), "Kunden\tk\t\tEQ\t\t\nOrte\to\tIJ\tEQ\t\to.Name");
    EXPECT_EQ(Part(query, SELFACT_COLUMNS), "k.Name\tKunde\nk.Ort\t");
    EXPECT_EQ(Part(query, SELFACT_SORT), "k.Name\t");
    EXPECT_FALSE(RemoveTable(query, 2));
}

// By one (the buttons) or dragged, where the entries between close up.
TEST(SelFactDesigner, EntriesMoveWithinTheListOnly) {
    struct Case {
        bool drag;
        std::size_t from;
        int by, moved;
        std::string columns;
    } cases[] = {
        {false, 1, -1, 0, "a.*\t\nk.Name\tKunde\nk.Ort\t"},
        {false, 0, -1, -1, kColumns},
        {false, 2, +1, -1, kColumns},
        {false, 3, -1, -1, kColumns},
        {true, 0, 2, 2, "a.*\t\nk.Ort\t\nk.Name\tKunde"},
        {true, 2, 0, 0, "k.Ort\t\nk.Name\tKunde\na.*\t"},
        {true, 1, 1, -1, kColumns},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << c.from << (c.drag ? " to " : " by ") << c.by);
        SelFact query = Query(kTwoTables, kColumns);
        EXPECT_EQ(c.drag ? MoveEntryTo(query.columns, c.from, static_cast<std::size_t>(c.by))
                         : MoveEntry(query.columns, c.from, c.by),
                  c.moved);
        EXPECT_EQ(Part(query, SELFACT_COLUMNS), c.columns);
    }
    SelFact query = Query(kTwoTables, kColumns);
    EXPECT_TRUE(RemoveEntry(query.columns, 0));
    EXPECT_FALSE(RemoveEntry(query.columns, 2));
    EXPECT_EQ(Part(query, SELFACT_COLUMNS), "a.*\t\nk.Ort\t");
}

TEST(SelFactDesigner, PagesOfferTheTablesFieldsAndTheColumnsAliases) {
    EXPECT_EQ(QualifyFieldList("Kunden", "Nr\tName", false), "Kunden.Nr\tKunden.Name");
    EXPECT_EQ(QualifyFieldList("k", "", true), "");
    EXPECT_EQ(JoinConditionText(Table{"A", "a", 2, 1, "k.Nr", "a.KdNr"}, ">"), "k.Nr > a.KdNr");
    EXPECT_EQ(JoinConditionText(Table{"A", "a", 1, 1, "k.Nr", "a.KdNr"}, ">"), "");
    std::map<std::string, std::string> asked;
    const FieldCatalogue catalogue = [&](const std::string &table) {
        const std::map<std::string, std::string> lists = {
            {"Kunden", "Nr\t4\tName\t12"}, {"Auftraege", "KdNr\t4"}, {"Orte", "Ort\t12\tPlz\t"}};
        const auto found = lists.find(table);
        return asked[table] = found == lists.end() ? std::string() : found->second;
    };
    SelFact query = Query(kTwoTables + "\n\tx\tIJ\tEQ\t\t", "k.Name\tKunde\na.*\t\nk.Ort\tWohnort");
    const Table orte{"Orte", {}, 3, 1, {}, {}};
    const std::vector<DesignerField> fields = DesignerFields(query, &orte, catalogue);
    EXPECT_EQ(fields, (std::vector<DesignerField>{
                          {"k.Nr", "4"}, {"k.Name", "12"}, {"a.KdNr", "4"}, {"Orte.Ort", "12"}, {"Orte.Plz", ""}}));
    EXPECT_EQ(asked.size(), 3u) << "a table without a name is not looked up";

    const std::vector<DesignerField> listed = DesignerFields(query, nullptr, catalogue);
    EXPECT_EQ(ColumnChoices(query, listed),
              (std::vector<std::string>{"k.*", "a.*", "x.*", "k.Nr", "k.Name", "a.KdNr"}));
    EXPECT_EQ(SortChoices(query, listed), (std::vector<std::string>{"k.Nr", "k.Name", "a.KdNr", "Kunde", "Wohnort"}));
    EXPECT_EQ(SelectionFieldList(listed), "k.Nr\t4\tk.Name\t12\ta.KdNr\t4\t");

    // A new table offers its operands under its own qualifier, an edited one is already listed.
    const Table edited{"Orte", "o", 3, 1, {}, {}};
    EXPECT_EQ(OperandChoices(query, edited, -1, catalogue),
              (std::vector<std::string>{"k.Nr", "k.Name", "a.KdNr", "o.Ort", "o.Plz"}));
    EXPECT_EQ(OperandChoices(query, edited, 0, catalogue), (std::vector<std::string>{"k.Nr", "k.Name", "a.KdNr"}));

    EXPECT_EQ(CatalogueTableName(query, "Kunden"), "Kunden");
    query.schema = "verkauf";
    EXPECT_EQ(CatalogueTableName(query, "Kunden"), "verkauf.Kunden");

    // A new table is joined once there is one to join it to; a refusal names its page.
    EXPECT_EQ(DefaultJoinType(SelFact()), 1);
    EXPECT_EQ(DefaultJoinType(Query("Kunden\t\t\t\t\t", "")), 3);
    EXPECT_EQ(PageOfRule(1655), DesignerPage::Columns);
    for (int rule : {1625, 1652, 1653, 1654}) EXPECT_EQ(PageOfRule(rule), DesignerPage::Tables) << rule;
}

struct ApiQuery {
    explicit ApiQuery(SQLHDBC hdbc, unsigned flags = 0) {
        EXPECT_EQ(Kodbc_SelFact_Create(&query, hdbc, "", flags), SELFACT_OK);
    }
    ~ApiQuery() { Kodbc_SelFact_Destroy(query); }
    ApiQuery &Set(int part, const std::string &text) {
        Kodbc_SelFact_SetDescriptor(query, part, text.c_str(), 0);
        return *this;
    }
    std::string Get(int part, int size = 2000) const {
        return Guarded(size, [&](char *out, int n) { Kodbc_SelFact_GetDescriptor(query, part, out, n, 0); });
    }
    std::string Sql(int size = 2000) const {
        return Guarded(size,
                       [&](char *out, int n) { EXPECT_EQ(Kodbc_SelFact_CreateSql(query, out, n, 0), SELFACT_OK); });
    }
    SelFact *query = nullptr;
};

TEST(SelFact, DescriptorsReadKeysAnyCaseAndWriteThemBack) {
    ApiQuery q(nullptr);
    q.Set(SELFACT_TABLES, "Kunden\tk\t\t\t\t\nAuftraege\ta\tlj\tgt\tk.Nr\ta.KdNr\nOrte\t\tXX\tzz\t\t");
    EXPECT_EQ(q.Get(SELFACT_TABLES), "Kunden\tk\t\tEQ\t\t\nAuftraege\ta\tLJ\tGT\tk.Nr\ta.KdNr\nOrte\t\t\tEQ\t\t");
    q.Set(SELFACT_COLUMNS, "k.Name\tKunde\n\nk.*\t");
    EXPECT_EQ(q.Get(SELFACT_COLUMNS), "k.Name\tKunde\nk.*\t") << "an empty line holds no entry";
    q.Set(SELFACT_COLUMNS, std::string(1200, 'x'));
    EXPECT_EQ(q.Get(SELFACT_COLUMNS, 5000), std::string(999, 'x') + "\t") << "fields are read up to 999 characters";
    EXPECT_EQ(q.Get(SELFACT_TABLES, 7), "Kunden") << "cut to the caller's size";
    EXPECT_EQ(q.Set(SELFACT_SORT, "a\tDESC").Set(SELFACT_SORT, "b\t").Get(SELFACT_SORT), "b\t") << "replaced";
    char untouched[4] = {'x', 'y', 'z', 0};
    Kodbc_SelFact_GetDescriptor(q.query, 7, untouched, sizeof untouched, 0);
    EXPECT_STREQ(untouched, "xyz") << "another part number writes nothing";
}

TEST(SelFact, StatementFromTheParts) {
    const struct {
        const char *tables, *columns, *sort, *expected;
    } cases[] = {
        {"Kunden\tk\t\t\t\t\nAuftraege\ta\tLJ\tEQ\tk.Nr\ta.KdNr\nOrte\t\t\t\t\t", "k.Name\tKunde\na.*\t", "",
         "SELECT k.Name AS Kunde, a.* FROM Kunden AS k LEFT JOIN Auftraege AS a ON k.Nr = a.KdNr, Orte"},
        // The ordering operators are written mirrored.
        {"a\t\t\t\t\t\nb\t\tIJ\tGT\ta.x\tb.y\nc\t\tRJ\tLE\tb.y\tc.z", "x\t", "x\tasc\ny\tDESC",
         "SELECT x FROM a INNER JOIN b ON a.x < b.y RIGHT JOIN c ON b.y >= c.z ORDER BY x, y DESC"},
        {"t\t\t\t\t\t", "", "", "SELECT FROM t"},
        {"", "", "", "SELECT"},
    };
    for (const auto &c : cases) {
        ApiQuery q(nullptr);
        q.Set(SELFACT_TABLES, c.tables).Set(SELFACT_COLUMNS, c.columns).Set(SELFACT_SORT, c.sort);
        EXPECT_EQ(q.Sql(), c.expected);
    }
    ApiQuery q(nullptr);
    q.Set(SELFACT_TABLES, "t\t\t\t\t\t").Set(SELFACT_COLUMNS, "a\t");
    EXPECT_EQ(q.Sql(12), "SELECT a FR");
    EXPECT_EQ(Kodbc_SelFact_CreateSql(nullptr, nullptr, 0, 0), SELFACT_NO_QUERY);
    EXPECT_EQ(Kodbc_SelFact_ParseSql(q.query, "SELECT * FROM anything_else", 0), SELFACT_OK);
    EXPECT_EQ(q.Sql(), "SELECT a FROM t") << "SQL is never read back";
    EXPECT_EQ(Kodbc_SelFact_ParseSql(nullptr, "", 0), SELFACT_NO_QUERY);
}

TEST(SelFactDesigner, RulesInTheirOrder) {
    const std::tuple<const char *, const char *, int> cases[] = {
        {"", "a\t", 1625},
        {"t\t\tLJ\tEQ\tx\ty", "a\t", 1653},
        {"t\t\t\t\t\nu\t\t\t\t\t", "a\t", 1654},
        {"t\t\t\t\t\nu\t\tIJ\tEQ\tt.a\tu.a", "", 1655},
        {"t\t\t\t\t\nu\t\tIJ\tEQ\tt.a\t", "a\t", 1652},
        {"t\t\t\t\t\nu\t\tIJ\tEQ\tt.a\tu.a", "a\t", 0},
    };
    for (const auto &[tables, columns, message] : cases)
        EXPECT_EQ(CheckSelFact(Query(tables, columns)), message) << tables;
}

class SelFactOn : public DataSourceTest {};

TEST_P(SelFactOn, WhereClauseAndTheTestWithAndWithoutView) {
    OwnTables({"kodbc_sf", "VIEW __KORVEL_TEST__"});
    Exec("CREATE TABLE kodbc_sf (nr INTEGER, ort VARCHAR(20))");
    for (unsigned flags : {0u, static_cast<unsigned>(SELFACT_VIEW)}) {
        SCOPED_TRACE(flags);
        ApiQuery q(hdbc_, flags);
        q.Set(SELFACT_TABLES, "kodbc_sf\t\t\t\t\t").Set(SELFACT_COLUMNS, "nr\t\nort\t");
        q.Set(SELFACT_SELECTION, "ort\tBW\tB\t12\n");
        EXPECT_EQ(q.Sql(), "SELECT nr, ort FROM kodbc_sf WHERE (ort LIKE 'B%')");
        messages_.clear();
        EXPECT_EQ(TestSelFact(*q.query), 1);
        EXPECT_EQ(OdbcErrors(), 0u);
        EXPECT_EQ(Kodbc_DoesTableExist(hdbc_, KODBC_OBJECT_ALL, "__KORVEL_TEST__"), 0) << "the test view is gone";
        // SQLite checks a view's columns only when the view is used.
        const bool refused = !(flags & SELFACT_VIEW) || DbmsName() != "SQLite";
        q.Set(SELFACT_COLUMNS, "nicht_da\t");
        EXPECT_EQ(TestSelFact(*q.query), refused ? 2 : 1);
        EXPECT_EQ(OdbcErrors(), refused ? 1u : 0u) << "the failure is shown";
        EXPECT_EQ(Kodbc_DoesTableExist(hdbc_, KODBC_OBJECT_ALL, "__KORVEL_TEST__"), 0);
    }
}

KODBC_DATA_SOURCE_TEST_SUITE(SelFactOn);

} // namespace
} // namespace kodbc::test
