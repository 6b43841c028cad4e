// Dialog 10070, the new alias of a column line: template and control
// numbers. Also read by the resource compiler, so plain defines only.
#pragma once

#define IDD_FIELD_ALIAS             10070

#define IDC_FIELD_ALIAS_OK          1     /* "&OK": IDOK */
#define IDC_FIELD_ALIAS_CANCEL      2     /* "&Abbrechen": IDCANCEL */
#define IDC_FIELD_ALIAS_EDIT        1001  /* the alias */
#define IDC_FIELD_ALIAS_PROMPT      1002  /* "Bitte geben Sie den &Namen ein, ..." */
