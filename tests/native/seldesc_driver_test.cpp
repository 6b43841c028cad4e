// Descriptors built the way the dialogs build them: field types from the
// catalogue's field list, the clause generated with the connection's
// quoting, and the statement run on the data source.
#include "test_support.h"

#include "select/seldesc_rows.h"

#include <kodbc/kodbc_seldesc.h>

#include <map>
#include <string>

namespace kodbc::test {
namespace {

class SelDescDriver : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        if (HasFatalFailure()) return;
        OwnTables({"kc_h10_sel"});
        Exec("CREATE TABLE kc_h10_sel (nr INTEGER, ort VARCHAR(40), umsatz NUMERIC(12,2), datum DATE, "
             "zeit TIMESTAMP NULL, " + IdentifierQuote() + "kunden ort" + IdentifierQuote() + " VARCHAR(40))");
        Exec("INSERT INTO kc_h10_sel VALUES (1, 'Berlin', 1500.50, {d '2024-03-15'}, {ts '2024-03-15 10:00:00'}, "
             "'Berlin')");
        Exec("INSERT INTO kc_h10_sel VALUES (2, 'Bonn', 800.00, {d '2023-12-01'}, {ts '2023-12-01 08:00:00'}, "
             "'Koeln')");
        Exec("INSERT INTO kc_h10_sel VALUES (3, 'Bremen', 2000.00, NULL, NULL, 'Bremen')");
        ReadFieldTypes();
    }

    // The field list the dialogs fill their field boxes from, read as they
    // read it.
    void ReadFieldTypes() {
        char list[2000];
        ASSERT_EQ(Kodbc_GetFields(hdbc_, "kc_h10_sel", KODBC_FIELDS_WITH_TYPE, "\t", list, sizeof list),
                  KODBC_SUCCESS);
        for (const seldesc::BoxEntry &entry : seldesc::FieldBoxEntries(list)) types_[entry.text] = entry.data;
        ASSERT_EQ(types_.size(), 6u) << list;
    }

    std::string Line(const std::string &field, const char *keyword, const std::string &value) {
        return field + "\t" + keyword + "\t" + value + "\t" + std::to_string(types_.at(field)) + "\n";
    }

    std::string Where(const std::string &descriptor) {
        return Guarded(2000, [&](char *where, int n) {
            EXPECT_EQ(Kodbc_SelDesc_To_WhereClause(hdbc_, descriptor.c_str(), where, n), 0) << descriptor;
        });
    }

    long Count(const std::string &descriptor) {
        const std::vector<std::string> count = Column("SELECT COUNT(*) FROM kc_h10_sel WHERE " + Where(descriptor));
        return count.size() == 1 ? std::stol(count[0]) : -1;
    }

    std::map<std::string, long> types_;
};
KODBC_DATA_SOURCE_TEST_SUITE(SelDescDriver);

// Each operator's text is the clause tests' rule; here each kind of value
// conversion (text, number, date, timestamp, lists, fields, groups) meets
// the driver.
TEST_P(SelDescDriver, GeneratedConditionsSelectTheRightRows) {
    // The library speaks ODBC 2: dates come as 9 and 11, the codes the value
    // conversion treats as dates.
    EXPECT_EQ(types_.at("datum"), SQL_DATE);
    EXPECT_EQ(types_.at("zeit"), SQL_TIMESTAMP);
    const std::pair<std::string, long> cases[] = {
        {Line("ort", "BW", "B"), 3},
        {Line("ort", "NE", "Bonn"), 2},
        {Line("umsatz", "GT", "1.000,5"), 2},
        {Line("datum", "EQ", "15.03.2024"), 1},
        {Line("datum", "IN", ""), 1},
        {Line("zeit", "GE", "15.3.2024"), 1},
        {Line("nr", "IL", "1;3"), 2},
        {Line("datum", "IL", "1.12.2023;15.3.2024"), 2},
        {Line("kunden ort", "NEF", "ort"), 1},  // the name with a blank quoted for this data source
        {Line("ort", "BW", "Ber") + Line("umsatz", "GT", "1.000") + "\v\v\v" + Line("nr", "EQ", "3") + "\v", 2},
    };
    for (const auto &[descriptor, count] : cases) EXPECT_EQ(Count(descriptor), count) << descriptor;
}

TEST_P(SelDescDriver, SetClauseUpdatesTheRows) {
    // The field copy comes first: some databases assign left to right.
    std::string set = Line("kunden ort", "SFI", "ort") + Line("ort", "SCO", "Hamburg") + Line("datum", "SNU", "") +
                      Line("umsatz", "SFO", "umsatz*2") + Line("nr", "SCO", "1.000");
    const std::string clause =
        Guarded(500, [&](char *out, int n) { Kodbc_OpDesc_To_SetClause(hdbc_, set.c_str(), out, n); });
    Exec("UPDATE kc_h10_sel SET " + clause + " WHERE " + Where(Line("nr", "EQ", "2")));
    EXPECT_EQ(Count(Line("ort", "EQ", "Hamburg") + Line("datum", "IN", "") + Line("umsatz", "EQ", "1600") +
                    Line("kunden ort", "EQ", "Bonn") + Line("nr", "EQ", "1000")),
              1);
    EXPECT_EQ(Count(Line("nr", "EQ", "2")), 0);
}

} // namespace
} // namespace kodbc::test
