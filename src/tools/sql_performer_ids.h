// Dialogs 101 and 10058, the SQL performer, and dialog 10037, its examples:
// template and control numbers. Also read by the resource compiler, so
// plain defines only. Both performers share their control numbers, so the
// help dialog fills the edit field of either.
#pragma once

#define IDD_SQL_PERFORMER_DS            101    /* on a data source chosen in the dialog */
#define IDD_SQL_PERFORMER_HDBC          10058  /* on the caller's connection */
#define IDD_SQL_HELP                    10037

#define IDC_SQL_PERFORMER_EDIT_LABEL    1201   /* "S&QL-Befehl" */
#define IDC_SQL_PERFORMER_EDIT          1202   /* multi-line */
#define IDC_SQL_PERFORMER_RECENT_LABEL  1203   /* "Zuletzt ausgeführte Befehle" */
#define IDC_SQL_PERFORMER_RECENT        1204   /* drop-down list, encoded entries */
#define IDC_SQL_PERFORMER_DSN_LABEL     1205   /* "Name der ODBC-Daten&quelle" (101 only) */
#define IDC_SQL_PERFORMER_DSN           1206   /* read-only (101 only) */
#define IDC_SQL_PERFORMER_CHOOSE_DSN    1207   /* "&Datenquelle wählen..." (101 only) */
#define IDC_SQL_PERFORMER_EXECUTE       1208   /* "&Ausführen", the default button */
#define IDC_SQL_PERFORMER_USE_LAST      1209   /* "Letzten Befehl verwenden" */
#define IDC_SQL_PERFORMER_CLEAR_RECENT  1210   /* "Letzte Befehle löschen" */
#define IDC_SQL_PERFORMER_HELP          1211   /* "Mögliche Befehle..." */

#define IDC_SQL_HELP_TAKE               1      /* "Übernehmen": IDOK */
#define IDC_SQL_HELP_CANCEL             2      /* "Abbrechen": IDCANCEL */
#define IDC_SQL_HELP_LIST_LABEL         1221   /* "Befehle des SQL92-Standards" */
#define IDC_SQL_HELP_LIST               1222
