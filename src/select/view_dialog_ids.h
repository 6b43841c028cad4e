// Dialog 10063, a stored view's name and SQL text: template and control
// numbers. Also read by the resource compiler, so plain defines only.
#pragma once

#define IDD_VIEW_EDIT                   10063

#define IDC_VIEW_OK                     1      /* "&OK": IDOK */
#define IDC_VIEW_CANCEL                 2      /* "&Abbrechen": IDCANCEL */
#define IDC_VIEW_NAME_LABEL             1300   /* "&Name der Abfrage" */
#define IDC_VIEW_NAME                   1301
#define IDC_VIEW_SQL_GROUP              1302   /* "SQL-Befehl" */
#define IDC_VIEW_SQL                    1303   /* multi-line */
#define IDC_VIEW_DESIGNER               1304   /* "Assistent..." */
#define IDC_VIEW_TEST                   1305   /* "Testen..." */
#define IDC_VIEW_LOAD                   1306   /* "Laden aus Datei..." */
#define IDC_VIEW_SAVE                   1307   /* "Speichern in Datei..." */
