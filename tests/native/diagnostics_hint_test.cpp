// The error display's read-only hint belongs to SQLSTATE 01S02 (an error's state: frame_test.cpp).
#include "test_support.h"

#include "internal/diagnostics.h"
#include "internal/library.h"
#include "internal/odbc_handles.h"

namespace kodbc::test {
namespace {

using DiagnosticHint = DataSourceTest;

// No driver of the run keeps a dynamic cursor: each says that it changed the value.
TEST_P(DiagnosticHint, AChangedOptionValueCarriesTheReadOnlyHint) {
    const odbc::Statement stmt(hdbc_);
    ASSERT_EQ(SQLSetStmtAttr(stmt, SQL_ATTR_CURSOR_TYPE, reinterpret_cast<SQLPOINTER>(SQL_CURSOR_DYNAMIC), 0),
              SQL_SUCCESS_WITH_INFO);
    DiagnosticFields fields;
    ASSERT_TRUE(ReadDiagnostic({SQL_HANDLE_STMT, stmt, nullptr, 1, 0}, fields));
    EXPECT_EQ(fields.sqlState, "01S02");
    EXPECT_EQ(fields.hintMessageId, msg::HINT_READ_ONLY);
}

KODBC_DATA_SOURCE_TEST_SUITE(DiagnosticHint);

} // namespace
} // namespace kodbc::test
