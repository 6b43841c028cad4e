// Table administration's dialogs: 10009 (the columns of a table and its
// keys), 10010 (a new column), 10057 (a new auto-incrementing column) and
// 10059 (the columns of a new primary key). Template and control numbers;
// also read by the resource compiler, so plain defines only.
#pragma once

#define IDD_TABLE_ADMIN                 10009
#define IDD_ADD_COLUMN                  10010
#define IDD_ADD_AUTOINC                 10057
#define IDD_ADD_PRIMARY_KEY             10059

/* 10009: OK and Cancel close it as "&Schließen" does. */
#define IDC_TABLE_ADMIN_LIST            1001   /* report list view of the columns */
#define IDC_TABLE_ADMIN_KEY_LABEL       1002   /* "Spalten des Primärschlüssels" */
#define IDC_TABLE_ADMIN_KEY             1003   /* read-only */
#define IDC_TABLE_ADMIN_AUTOINC_LABEL   1004   /* "Selbsthochzählende Spalte" */
#define IDC_TABLE_ADMIN_AUTOINC         1005   /* read-only */
#define IDC_TABLE_ADMIN_ADD_COLUMN      1010   /* "Spalte hinzufügen..." */
#define IDC_TABLE_ADMIN_DROP_COLUMNS    1011   /* "Spalte entfernen" */
#define IDC_TABLE_ADMIN_ADD_KEY         1012   /* "Primärschlüssel anlegen..." */
#define IDC_TABLE_ADMIN_DROP_KEY        1013   /* "Primärschlüssel löschen..." */
#define IDC_TABLE_ADMIN_ADD_AUTOINC     1014   /* "Selbsthochzählende Spalte hinzufügen..." */
#define IDC_TABLE_ADMIN_CLOSE           1015   /* "&Schließen" */

/* 10010 and 10057 share the name field's numbers. */
#define IDC_ADD_COLUMN_OK               1      /* IDOK */
#define IDC_ADD_COLUMN_CANCEL           2      /* IDCANCEL */
#define IDC_ADD_COLUMN_NAME_LABEL       1101   /* "Name der Spalte" */
#define IDC_ADD_COLUMN_NAME             1102
#define IDC_ADD_COLUMN_TYPE_LABEL       1103   /* "Daten&typ" */
#define IDC_ADD_COLUMN_TYPE             1104   /* drop-down list; item data: the type's code */
#define IDC_ADD_COLUMN_LENGTH_LABEL     1105   /* "Länge" */
#define IDC_ADD_COLUMN_LENGTH           1106   /* digits only */
#define IDC_ADD_COLUMN_NOT_EMPTY        1107   /* "Darf nicht leer sein" */

/* 10059 */
#define IDC_ADD_KEY_OK                  1      /* IDOK */
#define IDC_ADD_KEY_CANCEL              2      /* IDCANCEL */
#define IDC_ADD_KEY_CANDIDATES_LABEL    1301   /* "Spalten der Tabelle mit dem Atrtibut 'nicht leer'" */
#define IDC_ADD_KEY_CANDIDATES          1302
#define IDC_ADD_KEY_ADD                 1303   /* "Spalte dem Schlüssel hinzufügen" */
#define IDC_ADD_KEY_COLUMNS_LABEL       1304   /* "Spalten, die den Schlüssel bilden" */
#define IDC_ADD_KEY_COLUMNS             1305   /* in the key's order */
#define IDC_ADD_KEY_REMOVE              1306   /* "Spalte aus dem Schlüssel entfernen" */
#define IDC_ADD_KEY_UP                  1307   /* "nach oben" */
#define IDC_ADD_KEY_DOWN                1308   /* "nach unten" */
#define IDC_ADD_KEY_NOTE1               1309
#define IDC_ADD_KEY_NOTE2               1310
