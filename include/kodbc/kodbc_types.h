/*
** kodbc — common database routines of the application family.
**
** Basic types shared by every family header: calling convention, export
** marker, the fixed records exchanged with callers, and the window-system
** types that appear in signatures.
**
** Every text is a zero-terminated 8-bit string in the platform's ANSI code
** page. Every buffer comes with its total size in bytes; nothing is written
** beyond it, the terminator included, and what does not fit is cut.
*/
#ifndef KODBC_TYPES_H
#define KODBC_TYPES_H

#include <stddef.h>
#include <stdint.h>

#ifdef _WIN32
#  ifndef WIN32_LEAN_AND_MEAN
#    define WIN32_LEAN_AND_MEAN
#  endif
#  include <windows.h>
#  define KODBC_CALL WINAPI
   /* Exports are named once, in kodbc.def; nothing to mark here. */
#  define KODBC_API
#else
#  define KODBC_CALL
#  if defined(KODBC_BUILDING)
#    define KODBC_API __attribute__((visibility("default")))
#  else
#    define KODBC_API
#  endif
#endif

#include <sql.h>
#include <sqlext.h>

#ifndef _WIN32
/*
** On Linux the driver manager's headers already name HWND, HINSTANCE, WORD
** and DWORD. The registry root is an opaque handle; the predefined roots
** carry the numbers they have on Windows.
*/
typedef struct KodbcRegistryRoot_ *HKEY;
#  define HKEY_CLASSES_ROOT   ((HKEY)(uintptr_t)0x80000000u)
#  define HKEY_CURRENT_USER   ((HKEY)(uintptr_t)0x80000001u)
#  define HKEY_LOCAL_MACHINE  ((HKEY)(uintptr_t)0x80000002u)
#  define HKEY_USERS          ((HKEY)(uintptr_t)0x80000003u)
typedef uint32_t COLORREF;
#endif

#ifdef __cplusplus
extern "C" {
#endif

/*
** Data-source record, 220 bytes. Names a data source in calls and in the
** registry. The last 20 bytes belong to the calling applications: this
** library never reads or writes them.
*/
typedef struct DataSourceRecord {
    char DataSourceName[100]; /* ODBC data source name */
    char UserId[50];          /* user; empty means none */
    char Password[50];        /* password; empty means none */
    unsigned char Reserved[20];
} DataSourceRecord;

#pragma pack(push, 1)
/* Database-object record, 54 bytes, packed. */
typedef struct DbObjectRecord {
    char DbObjectName[50];
    int32_t DbObjectType;     /* KODBC_OBJECT_* bits */
} DbObjectRecord;

/*
** Table record, 94 bytes: an object record followed by 40 bytes that the
** wizards keep unchanged. The record wizards write the chosen table back.
*/
typedef struct TableRecord {
    DbObjectRecord Object;
    unsigned char Reserved[40];
} TableRecord;
#pragma pack(pop)

#ifdef __cplusplus
static_assert(sizeof(DataSourceRecord) == 220, "DataSourceRecord is 220 bytes");
static_assert(offsetof(DataSourceRecord, UserId) == 100, "UserId at 100");
static_assert(offsetof(DataSourceRecord, Password) == 150, "Password at 150");
static_assert(offsetof(DataSourceRecord, Reserved) == 200, "reserved tail at 200");
static_assert(sizeof(DbObjectRecord) == 54, "DbObjectRecord is 54 bytes");
static_assert(offsetof(DbObjectRecord, DbObjectType) == 50, "DbObjectType at 50");
static_assert(sizeof(TableRecord) == 94, "TableRecord is 94 bytes");
static_assert(offsetof(TableRecord, Reserved) == 54, "table tail at 54");
#else
_Static_assert(sizeof(DataSourceRecord) == 220, "DataSourceRecord is 220 bytes");
_Static_assert(sizeof(DbObjectRecord) == 54, "DbObjectRecord is 54 bytes");
_Static_assert(sizeof(TableRecord) == 94, "TableRecord is 94 bytes");
#endif

/* Results shared by most functions. */
#define KODBC_SUCCESS           1   /* done */
#define KODBC_FAILURE           2   /* failed; the user has been told */

/* Modal dialogs. */
#define KODBC_DIALOG_OK         1
#define KODBC_DIALOG_CANCEL     2

/* Connection results. */
#define KODBC_CONNECTED         0
#define KODBC_NOT_CONNECTED   (-1)

/* Answers of question messages (the window system's button IDs). */
#define KODBC_ANSWER_OK         1
#define KODBC_ANSWER_CANCEL     2
#define KODBC_ANSWER_YES        6
#define KODBC_ANSWER_NO         7

/* Database types, from the DBMS name the driver reports. */
#define KODBC_DBTYPE_OTHER      0
#define KODBC_DBTYPE_PROGRESS   1
#define KODBC_DBTYPE_MYSQL      2
#define KODBC_DBTYPE_ACCESS     3
#define KODBC_DBTYPE_SQLSERVER  4
#define KODBC_DBTYPE_EXCEL      5
#define KODBC_DBTYPE_ORACLE     6

/*
** Object-type bits. 0x4 and 0x8 mean alias and system table in table
** listings, form and report in object records.
*/
#define KODBC_OBJECT_TABLE      0x001
#define KODBC_OBJECT_VIEW       0x002
#define KODBC_OBJECT_ALIAS      0x004
#define KODBC_OBJECT_FORM       0x004
#define KODBC_OBJECT_SYSTEM     0x008
#define KODBC_OBJECT_REPORT     0x008
#define KODBC_OBJECT_ALL        0x010
#define KODBC_OBJECT_SYNONYM    0x100

/* ODBC handle types as the diagnostics functions take them. */
#define KODBC_HANDLE_ENV        1
#define KODBC_HANDLE_DBC        2
#define KODBC_HANDLE_STMT       3

/* Library data-type codes. */
#define KODBC_TYPE_FIXED_TEXT   1
#define KODBC_TYPE_INTEGER      2
#define KODBC_TYPE_FLOAT        3
#define KODBC_TYPE_DATETIME     4
#define KODBC_TYPE_BINARY       7
#define KODBC_TYPE_LONG_TEXT    9
#define KODBC_TYPE_VAR_TEXT     10

#ifdef __cplusplus
}
#endif

#endif /* KODBC_TYPES_H */
