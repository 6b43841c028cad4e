// Pages and dialogs of the import-table wizard: template and control
// numbers. Also read by the resource compiler, so plain defines only. The
// table page uses the record wizards' table list, so its filling code
// serves here too.
#pragma once

/* Pages in the order the wizard shows them; the kind of source decides
   which of the second to fifth are switched on. */
#define IDD_IMPORT_KIND             10080
#define IDD_IMPORT_DSN              10081
#define IDD_IMPORT_TABLE            10082
#define IDD_IMPORT_TEXT             10083
#define IDD_IMPORT_SELECTION        10084
#define IDD_IMPORT_FIELDS           10085
#define IDD_IMPORT_NAME             10086
#define IDD_IMPORT_FINISH           10087
#define IDD_IMPORT_FIELD            10088  /* "Eigenschaften Importiertes Feld" */
#define IDB_IMPORT_WIZARD           10013
#define IDM_IMPORT_FIELD_MENU       116

/* Page texts */
#define IDC_IMPORT_PROMPT           1200
#define IDC_IMPORT_PROMPT2          1201

/* 10080: the kind of source; the radio buttons in the order of the kinds */
#define IDC_IMPORT_KIND_GROUP       1210
#define IDC_IMPORT_KIND_TABLE       1211
#define IDC_IMPORT_KIND_TEXT        1212
#define IDC_IMPORT_KIND_SDI         1213
#define IDC_IMPORT_KIND_SEL         1214

/* 10081: the data source */
#define IDC_IMPORT_DSN_LABEL        1220
#define IDC_IMPORT_DSN_LIST         1221
#define IDC_IMPORT_USER_LABEL       1222
#define IDC_IMPORT_USER             1223
#define IDC_IMPORT_PASSWORD_LABEL   1224
#define IDC_IMPORT_PASSWORD         1225

/* 10082: the table */
#define IDC_IMPORT_TABLE_LIST       1230
#define IDC_IMPORT_FILTER_TABLES    1231  /* "&Tabellen" */
#define IDC_IMPORT_FILTER_QUERIES   1232  /* "Ab&fragen" */
#define IDC_IMPORT_FILTER_ALL       1233  /* "A&lle" */

/* 10083: the text file and its format */
#define IDC_IMPORT_FILE_LABEL       1240
#define IDC_IMPORT_FILE             1241
#define IDC_IMPORT_BROWSE           1242
#define IDC_IMPORT_ENCODING_GROUP   1243
#define IDC_IMPORT_ANSI             1244
#define IDC_IMPORT_ASCII            1245
#define IDC_IMPORT_NAMES_GROUP      1246
#define IDC_IMPORT_NAMES_FIRST_LINE 1247
#define IDC_IMPORT_NAMES_NUMBERED   1248
#define IDC_IMPORT_DELIMITER_GROUP  1249
#define IDC_IMPORT_TAB              1250
#define IDC_IMPORT_BLANK            1251
#define IDC_IMPORT_OTHER_DELIMITER  1252
#define IDC_IMPORT_DELIMITER_TEXT   1253
#define IDC_IMPORT_DECIMAL_GROUP    1254
#define IDC_IMPORT_COMMA            1255
#define IDC_IMPORT_POINT            1256
#define IDC_IMPORT_OTHER_DECIMAL    1257
#define IDC_IMPORT_DECIMAL_TEXT     1258
#define IDC_IMPORT_BRACKET_GROUP    1259
#define IDC_IMPORT_LEFT_LABEL       1260
#define IDC_IMPORT_LEFT             1261
#define IDC_IMPORT_RIGHT_LABEL      1262
#define IDC_IMPORT_RIGHT            1263

/* 10084: the selection file (the file controls of 10083 serve here too) */

/* 10085: the fields */
#define IDC_IMPORT_FIELD_LIST       1270
#define IDC_IMPORT_UP               1271  /* "a&uf" */
#define IDC_IMPORT_DOWN             1272  /* "a&b" */
#define IDC_IMPORT_PROPERTIES       1273  /* "&Eigenschaften..." */
#define IDM_IMPORT_FIELD_ON         1274  /* context menu: "Importieren" */
#define IDM_IMPORT_FIELD_OFF        1275  /* "Nicht importieren" */
#define IDM_IMPORT_FIELD_PROPERTIES 1276  /* "Eigenschaften" */

/* 10086: the name of the new table */
#define IDC_IMPORT_NAME             1280

/* 10088: the field dialog */
#define IDC_IMPORT_SOURCE_GROUP     1290
#define IDC_IMPORT_SOURCE_NAME_LABEL 1291
#define IDC_IMPORT_SOURCE_NAME      1292
#define IDC_IMPORT_SOURCE_TYPE_LABEL 1293
#define IDC_IMPORT_SOURCE_TYPE      1294
#define IDC_IMPORT_SOURCE_LENGTH_LABEL 1295
#define IDC_IMPORT_SOURCE_LENGTH    1296
#define IDC_IMPORT_TARGET_GROUP     1297
#define IDC_IMPORT_TARGET_NAME_LABEL 1298
#define IDC_IMPORT_TARGET_NAME      1299
#define IDC_IMPORT_TARGET_TYPE_LABEL 1300
#define IDC_IMPORT_TARGET_TYPE      1301
#define IDC_IMPORT_TARGET_LENGTH_LABEL 1302
#define IDC_IMPORT_TARGET_LENGTH    1303
#define IDC_IMPORT_FIELD_IMPORTED   1304
#define IDC_IMPORT_FIELD_CONTENT    1305
#define IDC_IMPORT_FIELD_NO_MESSAGE 1306
#define IDC_IMPORT_FIELD_AUTOINC    1307
