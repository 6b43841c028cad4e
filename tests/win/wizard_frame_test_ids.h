// Resources of the test program's own four-page wizard. The numbers are
// outside every range the library uses, so a mix-up cannot go unnoticed.
#pragma once

#define IDD_TEST_WIZARD_PAGE_1 29001
#define IDD_TEST_WIZARD_PAGE_2 29002
#define IDD_TEST_WIZARD_PAGE_3 29003
#define IDD_TEST_WIZARD_PAGE_4 29004
#define IDD_TEST_WIZARD_MISSING 29099
#define IDC_TEST_WIZARD_EDIT 29101
#define IDC_TEST_WIZARD_CHECK 29102
#define IDS_TEST_WIZARD_TITLE 29201
// A copy of the library's add-records picture, so the frame is seen with it.
#define IDB_TEST_WIZARD 10014
