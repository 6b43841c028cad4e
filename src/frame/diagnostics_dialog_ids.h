// Dialog 10025, the ODBC error display: template and control numbers. Also
// read by the resource compiler, so plain defines only.
#pragma once

#define IDD_ODBC_ERROR              10025

#define IDC_ODBC_ERROR_CLOSE        1     /* "&Schließen": IDOK */
#define IDC_ODBC_ERROR_STATEMENT    1001  /* "SQL-Befehl" */
#define IDC_ODBC_ERROR_DESCRIPTION  1002  /* "Fehlerbeschreibung" */
#define IDC_ODBC_ERROR_STATE        1003  /* "Fehlercode" */
#define IDC_ODBC_ERROR_VENDOR       1004  /* "Hersteller" */
#define IDC_ODBC_ERROR_COMPONENT    1005  /* "Komponente" */
#define IDC_ODBC_ERROR_DATASOURCE   1006  /* "Datenquelle" */
#define IDC_ODBC_ERROR_HINT         1007  /* "Mögliche Fehlerursache" */
