// Pages of the create-table wizard: template and control numbers. Also
// read by the resource compiler, so plain defines only.
#pragma once

#define IDD_CREATETABLE_STRUCTURE   10036
#define IDD_CREATETABLE_SOURCE      10038  /* only for a copied structure */
#define IDD_CREATETABLE_NAME        10039
#define IDD_CREATETABLE_SUMMARY     10040

#define IDB_CREATETABLE_WIZARD      10019

/* The structure buttons carry the kinds' numbers. */
#define IDC_CREATETABLE_AUTOINC     2100
#define IDC_CREATETABLE_COPY        2101
#define IDC_CREATETABLE_ADDRESS     2102
#define IDC_CREATETABLE_PROMPT      1002
#define IDC_CREATETABLE_GROUP       1003
#define IDC_CREATETABLE_NAME        1004  /* the new table's name */
#define IDC_CREATETABLE_TEXT1       1005
#define IDC_CREATETABLE_TEXT2       1006
/* The source page's list has the record wizards' number, so that a
   refusal puts the focus on it the same way. */
#define IDC_CREATETABLE_SOURCE_LIST 1001
