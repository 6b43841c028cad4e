// Pages of the add-records wizard, its field properties dialog and the
// mapping list's pop-up menu: template and control numbers. Also read by the
// resource compiler, so plain defines only.
#pragma once

/* Pages in the order the wizard shows them. */
#define IDD_ADDREC_DEST_TABLE       10034
#define IDD_ADDREC_SOURCE_DSN       10028
#define IDD_ADDREC_SOURCE_TABLE     10026
#define IDD_ADDREC_MAPPING          10033
#define IDD_ADDREC_ID_FIELDS        10029
#define IDD_ADDREC_SUMMARY          10030
/* "Eigenschaften Importiertes Feld" */
#define IDD_ADDREC_FIELD            10035
/* Pop-up menu of the mapping list. */
#define IDM_ADDREC_FIELD_MENU       114

#define IDB_ADDREC_WIZARD           10014
#define IDS_ADDREC_WIZARD_TITLE     2907

/* Radio buttons: their numbers are the modes they choose. */
#define IDC_ADDREC_MODE_ADD         2100  /* record mode "auf jeden &Fall hinzufügen" */
#define IDC_ADDREC_MODE_REPLACE     2101  /* "&ersetzen, wenn das Kennfeld übereinstimmt, ..." */
#define IDC_ADDREC_FILL_EMPTY       2100  /* fill mode "Feld leer lassen" */
#define IDC_ADDREC_FILL_FIXED       2101  /* "Fester Wert" */
#define IDC_ADDREC_FILL_SOURCE      2102  /* "Inhalt des Felds" */

/* Page texts. */
#define IDC_ADDREC_INTRO            1001
#define IDC_ADDREC_PROMPT           1002
#define IDC_ADDREC_FINISH_TEXT      1003  /* "Finish Text": the summary */
#define IDC_ADDREC_GROUP            1004

/* 10034 */
#define IDC_ADDREC_DEST_LIST        1010
/* 10028 */
#define IDC_ADDREC_DSN_LABEL        1020
#define IDC_ADDREC_DSN_LIST         1021
#define IDC_ADDREC_USER_LABEL       1022
#define IDC_ADDREC_USER             1023
#define IDC_ADDREC_PASSWORD_LABEL   1024
#define IDC_ADDREC_PASSWORD         1025
/* 10026 */
#define IDC_ADDREC_SOURCE_LIST      1030
#define IDC_ADDREC_FILTER_TABLES    1031  /* "&Tabellen" */
#define IDC_ADDREC_FILTER_QUERIES   1032  /* "Ab&fragen" */
#define IDC_ADDREC_FILTER_ALL       1033  /* "A&lle" */
/* 10033 */
#define IDC_ADDREC_MAPPING_LIST     1040
#define IDC_ADDREC_PROPERTIES       1041  /* "Eigenschaften..." */
/* 10029 */
#define IDC_ADDREC_DEST_ID_LABEL    1050
#define IDC_ADDREC_DEST_ID          1051
#define IDC_ADDREC_SOURCE_ID_LABEL  1052
#define IDC_ADDREC_SOURCE_ID        1053

/* 10035 */
#define IDC_ADDREC_FIELD_NAME_LABEL   1060
#define IDC_ADDREC_FIELD_NAME         1061
#define IDC_ADDREC_FIELD_TYPE_LABEL   1062
#define IDC_ADDREC_FIELD_TYPE         1063
#define IDC_ADDREC_FIELD_LENGTH_LABEL 1064
#define IDC_ADDREC_FIELD_LENGTH       1065
#define IDC_ADDREC_FIELD_FIXED        1066  /* the fixed value */
#define IDC_ADDREC_FIELD_SOURCE_LABEL 1067  /* "der Quelltabelle" */
#define IDC_ADDREC_FIELD_SOURCE       1068  /* the source fields */
#define IDC_ADDREC_FIELD_READ_ONLY    1069  /* "Das Zielfeld ist schreibgeschützt ..." */
#define IDC_ADDREC_FIELD_TARGET_GROUP 1070
#define IDC_ADDREC_FIELD_FILL_GROUP   1071

/* Menu 114 */
#define IDM_ADDREC_LEAVE_EMPTY      1080  /* "Feld leer lassen" */
#define IDM_ADDREC_PROPERTIES       1081  /* "Eigenschaften" */
