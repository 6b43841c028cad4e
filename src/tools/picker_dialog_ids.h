// Dialogs 103, 10056 and 10060, the data-source and schema pickers:
// template and control numbers. Also read by the resource compiler, so
// plain defines only. Every input control follows its label.
#pragma once

// Dialog 103: a data source, with user and password.
#define IDD_DATASOURCE_PICKER              103
#define IDC_DATASOURCE_PICKER_OK           1     /* "&OK": IDOK */
#define IDC_DATASOURCE_PICKER_CANCEL       2     /* "&Abbrechen": IDCANCEL */
#define IDC_DATASOURCE_PICKER_PROMPT       1030  /* "Bitte wählen Sie eine ODBC-Daten&quelle aus" */
#define IDC_DATASOURCE_PICKER_LIST         1031
#define IDC_DATASOURCE_PICKER_USER_LABEL   1032  /* "&Benutzerkennung" */
#define IDC_DATASOURCE_PICKER_USER         1033
#define IDC_DATASOURCE_PICKER_PASSWORD_LABEL 1034 /* "&Passwort" */
#define IDC_DATASOURCE_PICKER_PASSWORD     1035

// Dialog 10056: a schema of an open connection, picked or typed.
#define IDD_SCHEMA_PICKER                  10056
#define IDC_SCHEMA_PICKER_OK               1     /* "OK": IDOK */
#define IDC_SCHEMA_PICKER_CANCEL           2     /* "Abbrechen": IDCANCEL */
#define IDC_SCHEMA_PICKER_PROMPT           1040  /* "Bitte geben Sie das Datenbankschema ein" */
#define IDC_SCHEMA_PICKER_BOX              1041  /* editable combo box */

// Dialog 10060: data source, user and schema together.
#define IDD_SOURCE_SCHEMA                  10060
#define IDC_SOURCE_SCHEMA_OK               1     /* "OK": IDOK */
#define IDC_SOURCE_SCHEMA_CANCEL           2     /* "Abbrechen": IDCANCEL */
#define IDC_SOURCE_SCHEMA_DSN_LABEL        1050  /* "Datenquelle" */
#define IDC_SOURCE_SCHEMA_DSN              1051
#define IDC_SOURCE_SCHEMA_USER_LABEL       1052  /* "Benutzername" */
#define IDC_SOURCE_SCHEMA_USER             1053
#define IDC_SOURCE_SCHEMA_PASSWORD         1054  /* hidden */
#define IDC_SOURCE_SCHEMA_SCHEMA_LABEL     1055  /* "Datenbankschema" */
#define IDC_SOURCE_SCHEMA_SCHEMA           1056
#define IDC_SOURCE_SCHEMA_CHOOSE_DSN       1057  /* "Datenquelle wählen..." */
#define IDC_SOURCE_SCHEMA_CHOOSE_SCHEMA    1058  /* "Schema wählen..." */
