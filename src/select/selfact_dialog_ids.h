// Dialog 10064, the query designer, and its four pages: template and control
// numbers. Also read by the resource compiler, so plain defines only.
#pragma once

#define IDD_SELFACT_DESIGNER            10064
#define IDD_SELFACT_PAGE_TABLES         10641
#define IDD_SELFACT_PAGE_COLUMNS        10642
#define IDD_SELFACT_PAGE_SELECTION      10643
#define IDD_SELFACT_PAGE_SORT           10644

/* 10064. The pages are child windows of the dialog with the numbers
   IDC_SELFACT_PAGE_*; a page's caption is its tab's label. */
#define IDC_SELFACT_OK                  1      /* "OK": IDOK */
#define IDC_SELFACT_CANCEL              2      /* "Abbrechen": IDCANCEL */
#define IDC_SELFACT_TABS                1100
#define IDC_SELFACT_SQL_LABEL           1101   /* "SQL-Befehl" */
#define IDC_SELFACT_SQL                 1102   /* read-only, multi-line preview */
#define IDC_SELFACT_DSN_LABEL           1103   /* "Datenquelle" */
#define IDC_SELFACT_DSN                 1104   /* read-only */
#define IDC_SELFACT_SCHEMA_LABEL        1105   /* "Schema" */
#define IDC_SELFACT_SCHEMA              1106   /* read-only */
#define IDC_SELFACT_CHOOSE_SCHEMA       1107   /* "Schema wählen..." */
#define IDC_SELFACT_TEST                1108   /* "Testen" */
#define IDC_SELFACT_PAGE_TABLES         1110
#define IDC_SELFACT_PAGE_COLUMNS        1111
#define IDC_SELFACT_PAGE_SELECTION      1112
#define IDC_SELFACT_PAGE_SORT           1113

/* Tables page. */
#define IDC_SFT_TABLE_LABEL             1200   /* "&Tabelle" */
#define IDC_SFT_TABLE                   1201   /* drop-down list of the catalogue's tables */
#define IDC_SFT_ALIAS_LABEL             1202   /* "A&lias" */
#define IDC_SFT_ALIAS                   1203
#define IDC_SFT_JOIN_LABEL              1204   /* "&Verknüpfung" */
#define IDC_SFT_JOIN                    1205   /* item data: join type 1-4 */
#define IDC_SFT_FIRST_LABEL             1206   /* "&Erster Operand" */
#define IDC_SFT_FIRST                   1207   /* fields of the tables, or typed */
#define IDC_SFT_OPERATOR_LABEL          1208   /* "&Operator" */
#define IDC_SFT_OPERATOR                1209   /* item data: operator 1-6 */
#define IDC_SFT_SECOND_LABEL            1210   /* "&Zweiter Operand" */
#define IDC_SFT_SECOND                  1211
#define IDC_SFT_ADD                     1212   /* "&Hinzufügen" */
#define IDC_SFT_APPLY                   1213   /* "Ü&bernehmen": the selected table's properties */
#define IDC_SFT_LIST_LABEL              1214   /* "Ausgewählte Tabellen" */
#define IDC_SFT_LIST                    1215   /* report list view */
#define IDC_SFT_UP                      1216   /* "Nach &oben" */
#define IDC_SFT_DOWN                    1217   /* "Nach &unten" */
#define IDC_SFT_REMOVE                  1218   /* "E&ntfernen" */

/* Columns page and sort page: an entry, its second field, the list. */
#define IDC_SFC_COLUMN_LABEL            1300   /* "&Spalte oder Ausdruck" */
#define IDC_SFC_COLUMN                  1301   /* "t.*" and the tables' fields, or typed */
#define IDC_SFC_ALIAS_LABEL             1302   /* "A&lias" */
#define IDC_SFC_ALIAS                   1303
#define IDC_SFC_ADD                     1304
#define IDC_SFC_APPLY                   1305
#define IDC_SFC_LIST_LABEL              1306   /* "Ausgewählte Spalten" */
#define IDC_SFC_LIST                    1307
#define IDC_SFC_UP                      1308
#define IDC_SFC_DOWN                    1309
#define IDC_SFC_REMOVE                  1310

#define IDC_SFS_COLUMN_LABEL            1400   /* "&Spalte" */
#define IDC_SFS_COLUMN                  1401   /* the tables' fields and the column aliases, or typed */
#define IDC_SFS_DIRECTION_LABEL         1402   /* "&Richtung" */
#define IDC_SFS_DIRECTION               1403   /* "ASC", "DESC" */
#define IDC_SFS_ADD                     1404
#define IDC_SFS_APPLY                   1405
#define IDC_SFS_LIST_LABEL              1406   /* "Sortierfolge" */
#define IDC_SFS_LIST                    1407
#define IDC_SFS_UP                      1408
#define IDC_SFS_DOWN                    1409
#define IDC_SFS_REMOVE                  1410

/* Selection page: the rows of the selection editor, four groups of 5, 1,
   1 and 1 rows joined by "oder". */
#define IDC_SFW_HEAD_FIELD              1040   /* "Feld" */
#define IDC_SFW_HEAD_OPERATION          1041   /* "Vergleichsoperation" */
#define IDC_SFW_HEAD_VALUE              1042   /* "Feld oder Wert" */
#define IDC_SFW_OR1                     1043   /* "oder" */
#define IDC_SFW_OR2                     1044
#define IDC_SFW_OR3                     1045
#define IDC_SFW_G1R1_FIELD              1011
#define IDC_SFW_G1R1_OPERATION          1012
#define IDC_SFW_G1R1_VALUE              1013
#define IDC_SFW_G1R2_FIELD              1015
#define IDC_SFW_G1R2_OPERATION          1016
#define IDC_SFW_G1R2_VALUE              1017
#define IDC_SFW_G1R3_FIELD              1018
#define IDC_SFW_G1R3_OPERATION          1019
#define IDC_SFW_G1R3_VALUE              1020
#define IDC_SFW_G1R4_FIELD              1021
#define IDC_SFW_G1R4_OPERATION          1022
#define IDC_SFW_G1R4_VALUE              1023
#define IDC_SFW_G1R5_FIELD              1024
#define IDC_SFW_G1R5_OPERATION          1025
#define IDC_SFW_G1R5_VALUE              1026
#define IDC_SFW_G2_FIELD                114
#define IDC_SFW_G2_OPERATION            115
#define IDC_SFW_G2_VALUE                1035
#define IDC_SFW_G3_FIELD                1027
#define IDC_SFW_G3_OPERATION            1028
#define IDC_SFW_G3_VALUE                1029
#define IDC_SFW_G4_FIELD                1030
#define IDC_SFW_G4_OPERATION            1031
#define IDC_SFW_G4_VALUE                1032
