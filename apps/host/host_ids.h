// The host program's window class and menu commands; the Windows tests
// drive the host through them.
#pragma once

#define KODBC_HOST_CLASS         "KodbcHostWindow"

#define IDC_HOST_TABLES          10   /* the tables; the selected one is current */
#define IDC_HOST_FIELDS          11   /* the current table's fields */
#define IDC_HOST_STATUS          12   /* data source, schema, table */

#define IDM_HOST_CONNECT         100  /* picker, then connect */
#define IDM_HOST_CONNECT_SCHEMA  101  /* data source and schema together */
#define IDM_HOST_DISCONNECT      102
#define IDM_HOST_EXIT            103
#define IDM_HOST_CREATE_TABLE    104  /* the new table becomes the current one */
#define IDM_HOST_TABLE_ADMIN     105  /* columns and keys of the current table */
#define IDM_HOST_ADD_RECORDS     200
#define IDM_HOST_DELETE_RECORDS  201
#define IDM_HOST_UPDATE_RECORDS  202
#define IDM_HOST_EXPORT          203
#define IDM_HOST_IMPORT          204  /* the new table becomes the current one */
#define IDM_HOST_SQL_DATASOURCE  300  /* the performer that connects by itself */
#define IDM_HOST_SQL_CONNECTION  301  /* the performer on the host's connection */
#define IDM_HOST_SCHEMA          302
#define IDM_HOST_DRIVER_INFO     303
#define IDM_HOST_ALIAS           304  /* alias of the selected field */
#define IDM_HOST_ERROR_DISPLAY   305  /* a statement that must fail */
#define IDM_HOST_QUERY_DESIGNER  306  /* a SELECT on the current table, designed */
#define IDM_HOST_SELECTION_EDITOR 307 /* conditions on the current table's fields */
#define IDM_HOST_NEW_VIEW        308  /* the new view becomes the current table */
#define IDM_HOST_EDIT_VIEW       309  /* the current table, taken as a stored view */
