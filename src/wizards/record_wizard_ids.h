// Pages of the delete-records and update-records wizards: template and
// control numbers. Also read by the resource compiler, so plain defines only.
#pragma once

/* Delete records: table, conditions, summary. */
#define IDD_DELREC_TABLE            10043
#define IDD_DELREC_CONDITIONS       10041
#define IDD_DELREC_SUMMARY          10044
/* Update records: table, conditions, assignments, confirmation, result. */
#define IDD_UPDREC_TABLE            10046
#define IDD_UPDREC_CONDITIONS       10045
#define IDD_UPDREC_ASSIGNMENTS      10048
#define IDD_UPDREC_CONFIRMATION     10049
#define IDD_UPDREC_RESULT           10047

#define IDB_DELREC_WIZARD           10020
#define IDB_UPDREC_WIZARD           10021

#define IDC_RECWIZ_TABLE_LIST       1001  /* the table page's list */
#define IDC_RECWIZ_TABLE_PROMPT     1002  /* "Bitte wählen Sie die Tabelle, ..." */
#define IDC_RECWIZ_INTRO            1003  /* the first page's introduction */
#define IDC_RECWIZ_PAGE_TEXT        1004  /* "Finish Text" / "Perform Text" */
#define IDC_RECWIZ_GRID_PROMPT      1005  /* what the grid is for */
#define IDC_RECWIZ_HEAD_FIELD       1006  /* column headings of a grid */
#define IDC_RECWIZ_HEAD_OPERATION   1007
#define IDC_RECWIZ_HEAD_VALUE       1008

/* Grid rows: field, operation, field or value. The condition grid uses all
   five rows, the assignment grid the first three. */
#define IDC_RECWIZ_ROW1_FIELD       1011
#define IDC_RECWIZ_ROW1_OPERATION   1012
#define IDC_RECWIZ_ROW1_VALUE       1013
#define IDC_RECWIZ_ROW2_FIELD       1015
#define IDC_RECWIZ_ROW2_OPERATION   1016
#define IDC_RECWIZ_ROW2_VALUE       1017
#define IDC_RECWIZ_ROW3_FIELD       1018
#define IDC_RECWIZ_ROW3_OPERATION   1019
#define IDC_RECWIZ_ROW3_VALUE       1020
#define IDC_RECWIZ_ROW4_FIELD       1021
#define IDC_RECWIZ_ROW4_OPERATION   1022
#define IDC_RECWIZ_ROW4_VALUE       1023
#define IDC_RECWIZ_ROW5_FIELD       1024
#define IDC_RECWIZ_ROW5_OPERATION   1025
#define IDC_RECWIZ_ROW5_VALUE       1026
