// Pages and dialogs of the export wizard: template and control numbers.
// Also read by the resource compiler, so plain defines only. The table and
// condition pages use the record wizards' control numbers, so that their
// page code serves here too.
#pragma once

#include "wizards/record_wizard_ids.h"

#define IDD_EXPORT_TABLE            10050
#define IDD_EXPORT_CONDITIONS       10051
#define IDD_EXPORT_FIELDS           10052
#define IDD_EXPORT_FILE             10053
#define IDD_EXPORT_FINISH           10054
#define IDD_EXPORT_FIELD            10062  /* "Eigenschaften exportiertes Feld" */
#define IDB_EXPORT_WIZARD           10022
#define IDM_EXPORT_FIELD_MENU       115

/* Page 10052: the fields */
#define IDC_EXPORT_FIELDS_PROMPT    1101
#define IDC_EXPORT_FIELD_LIST       1102
#define IDC_EXPORT_PROPERTIES       1103
#define IDM_EXPORT_FIELD_ON         1104  /* context menu: "Feld exportieren" */
#define IDM_EXPORT_FIELD_OFF        1105  /* "Feld nicht exportieren" */
#define IDM_EXPORT_FIELD_PROPERTIES 1106  /* "Eigenschaften" */

/* Page 10053: the file and its format */
#define IDC_EXPORT_FILE_LABEL       1110
#define IDC_EXPORT_FILE             1111
#define IDC_EXPORT_BROWSE           1112
#define IDC_EXPORT_ENCODING_GROUP   1113
#define IDC_EXPORT_ANSI             1114
#define IDC_EXPORT_ASCII            1115
#define IDC_EXPORT_DELIMITER_GROUP  1116
#define IDC_EXPORT_TAB              1117
#define IDC_EXPORT_BLANK            1118
#define IDC_EXPORT_OTHER_DELIMITER  1119
#define IDC_EXPORT_DELIMITER_TEXT   1120
#define IDC_EXPORT_DECIMAL_GROUP    1121
#define IDC_EXPORT_COMMA            1122
#define IDC_EXPORT_POINT            1123
#define IDC_EXPORT_OTHER_DECIMAL    1124
#define IDC_EXPORT_DECIMAL_TEXT     1125
#define IDC_EXPORT_BRACKET_GROUP    1126
#define IDC_EXPORT_LEFT_LABEL       1127
#define IDC_EXPORT_LEFT             1128
#define IDC_EXPORT_RIGHT_LABEL      1129
#define IDC_EXPORT_RIGHT            1130
#define IDC_EXPORT_HEADER           1131

/* Dialog 10062 */
#define IDC_EXPORT_FIELD_NAME_LABEL 1140
#define IDC_EXPORT_FIELD_NAME       1141
#define IDC_EXPORT_FIELD_TYPE       1142
#define IDC_EXPORT_FIELD_EXPORT_LABEL 1143
#define IDC_EXPORT_FIELD_EXPORT_NAME 1144
#define IDC_EXPORT_FIELD_EXPORTED   1145
