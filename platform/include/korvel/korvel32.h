// The operations kodbc needs of the family's base library, as one interface.
//
// Two implementations stand behind it: win32/ (the real window system and
// registry) and posix/ (a file-backed registry, a message handler, a
// terminal progress bar). Portable pieces (bounded strings, dates, the dump
// gate's decisions) live in common/ and are shared by both.
//
// All texts are 8-bit in the platform's ANSI code page.
#pragma once

#include <kodbc/kodbc_types.h>
#include <kodbc/kodbc_messages.h>

#include <cstdint>
#include <string>

// ---------------------------------------------------------------------------
// Bounded strings

// Copies src into dst of total size `size`, cut to size-1 characters, and
// terminates. Null dst or size < 1: nothing written, 0. Null src: empty text.
// Returns the number of characters copied.
int KorvelCopyString(char *dst, const char *src, int size);

// Appends src to the text in dst; `size` is dst's total size. What does not
// fit is cut. Returns the resulting length (0 for null dst or size < 1).
int KorvelAppendString(char *dst, const char *src, int size);

// ---------------------------------------------------------------------------
// Messages and error requests

// Message request, 436 bytes on 32-bit Windows: zero-filled, then set.
struct KorvelMessageRequest {
    HINSTANCE instance;        // 0   module whose string table holds the texts
    int32_t captionId;         // 4   caption string ID
    int32_t messageId;         // 8   message string ID
    const char *module;        // 12  translation module
    const char *args[3];       // 16  fill the first three %s, in order
    int32_t reserved28;        // 28
    int32_t reserved32;        // 32
    int32_t loadFromResource;  // 36  1: messageId names a string resource
    int32_t reserved40;        // 40
    uint32_t errorCode;        // 44
    uint8_t reserved[388];     // 48..435
};
static_assert(sizeof(void *) != 4 || sizeof(KorvelMessageRequest) == 436, "message request is 436 bytes");

// Loads and translates the message, fills its %s placeholders (a null
// argument fills an empty text), interprets the type prefix ("s ", "! ",
// "?YN ", "?YNC ") and shows it. Returns the user's answer (IDOK 1,
// IDCANCEL 2, IDYES 6, IDNO 7).
int Korvel_Message_Box(const KorvelMessageRequest *request);

// File error request, 452 bytes on 32-bit Windows.
struct KorvelErrorRequest {
    HWND window;               // 0   the reporting function's window, or 0
    int32_t kind;              // 4   2 when a window is given, else 1
    HWND owner;                // 8   the active window at the time of the call
    int32_t errorClass;        // 12  2 access, 3 no such file, 4 exists, 5 too many, 6 other
    int32_t reserved16;        // 16
    const char *caption;       // 20
    int32_t reserved24;        // 24
    int32_t style;             // 28  16: stop icon
    const char *values[3];     // 32  values[0] is the file name where a file is concerned
    uint8_t reserved[408];     // 44..451
};
static_assert(sizeof(void *) != 4 || sizeof(KorvelErrorRequest) == 452, "error request is 452 bytes");

// Shows a file error. Returns the user's answer (IDOK).
int Korvel_ErrorHandler(const KorvelErrorRequest *request);

// One row of a translation table; tables end with a zero row.
struct KorvelTranslation {
    uint32_t key;
    uint32_t value;
};
// The value of `key` in a zero-ended table, or `fallback` when absent.
uint32_t Korvel_Translate(const KorvelTranslation *table, uint32_t key, uint32_t fallback);

// Shows a short notice (string `stringId` of `instance`) that closes itself;
// `timing` and `color` (COLORREF) shape the notice window.
void Korvel_DisplayTempWind(HINSTANCE instance, int stringId, int timing, COLORREF color);
// Closes the calling thread's open notices before their time (a notice
// that stands for work in progress ends with the work).
void Korvel_CloseTempWind();

// The calling thread's active window (0 on Linux): the owner of modal output.
HWND Korvel_ActiveWindow();

// Where messages go on Linux (ignored on Windows, where they are windows).
KodbcMessageHandler Korvel_SetMessageHandler(KodbcMessageHandler handler, void *context);
// Hands a message to the installed handler (Linux) and returns its answer.
// On Windows this is a plain message box for the text kinds.
int Korvel_DeliverMessage(const KodbcMessage *message);
#ifndef _WIN32
// A message as lines of text for a terminal or a log, in the locale's
// charset: "caption: text", then for an ODBC error one aligned line per
// field of the diagnostics dialog. What stderr shows without a handler.
std::string Korvel_FormatMessage(const KodbcMessage &message);
#endif

// ---------------------------------------------------------------------------
// String resources, translation, identity

// Loads string `id` of the module into buffer (cut to size-1). Returns the
// length, 0 when missing or for a null buffer or size < 1 (then nothing or
// an empty text is written).
int Korvel_LoadString(HINSTANCE instance, int id, char *buffer, int size);

// Resources of a module that has no window-system resources (Linux): its
// string table in UTF-8 and its version text. Registered once at attach.
struct KorvelStringResource {
    int id;
    const char *utf8;
};
struct KorvelModuleResources {
    const KorvelStringResource *strings;
    int count;                 // sorted by id
    const char *fileVersion;   // "5.2.0.0"
    const char *profileName;   // base name of the module's profile
};
void Korvel_RegisterModuleResources(HINSTANCE instance, const KorvelModuleResources *resources);

// Translates text in place for module/section. Identity while no catalogue
// for the module is installed. Returns the text's length.
int Polo_TranslateString(const char *module, const char *section, char *buffer, int size);
// Translates the captions of a dialog and its controls (Windows).
void Polo_TranslateDialog(HWND dialog, const char *module, const char *section);
// A catalogue: returns the translation of `text` or null to keep it.
using PoloCatalogue = const char *(*)(const char *module, const char *section, const char *text);
void Polo_InstallCatalogue(PoloCatalogue catalogue);

// Version resource of the module as text ("5.2.0.0"). `which` 1 = file
// version. Returns the length written, 0 on failure.
int Korvel_GetResourceFileVersion(HINSTANCE instance, int which, char *buffer, int size, int flags);
// The module's profile name (up to size-1 characters). Returns the length.
int Korvel_GetProfileName(HINSTANCE instance, char *buffer, int size);

// ---------------------------------------------------------------------------
// Registry (Windows registry; on Linux a locked, atomically replaced text
// store per root below $KODBC_REGISTRY_DIR or $XDG_CONFIG_HOME/kodbc).
// The location is root, key path, a reserved 0 and a section (subkey; null
// or empty for the key itself).

// Reads a string value; a missing value yields `defaultValue` (null: empty).
// Returns the length written.
int Korvel_ReadRegistryString(HKEY root, const char *keyPath, int reserved, const char *section,
                              const char *valueName, const char *defaultValue, char *buffer, int size);
// Returns 1 when written, 0 on failure.
int Korvel_WriteRegistryString(HKEY root, const char *keyPath, int reserved, const char *section,
                               const char *valueName, const char *value);
long Korvel_ReadRegistryNumber(HKEY root, const char *keyPath, int reserved, const char *section,
                               const char *valueName, long defaultValue);
int Korvel_WriteRegistryNumber(HKEY root, const char *keyPath, int reserved, const char *section,
                               const char *valueName, long value);
// Removes a value; 1 when it existed and is gone.
int Korvel_DeleteRegistryValue(HKEY root, const char *keyPath, int reserved, const char *section,
                               const char *valueName);
// Removes the key keyPath\section with all its values and subkeys. An empty
// location (the root itself) is refused. 1 when the key existed and is
// gone, 0 when there was none or it could not be removed.
int Korvel_DeleteRegistryKey(HKEY root, const char *keyPath, int reserved, const char *section);
// As Korvel_ReadRegistryString under HKEY_CURRENT_USER, then HKEY_LOCAL_MACHINE.
// Returns the length written.
int Korvel_ReadStringFromHKCUorHKLM(const char *keyPath, const char *section, const char *valueName,
                                    const char *defaultValue, char *buffer, int size);

// ---------------------------------------------------------------------------
// SQL dump gate. The dump state is the number "SqlDumpState" below
// HKEY_CURRENT_USER "Software\Korvel Software\Kodbc": bit 1 logs every
// statement to the file named by "SqlDumpFile" (default kodbc-sql.log in the
// temporary folder), bit 2 shows warnings, bit 4 asks before each statement.
// A change written by this process counts at once, one written by another
// program within 200 ms.

#define KORVEL_DUMP_LOG       1
#define KORVEL_DUMP_WARNINGS  2
#define KORVEL_DUMP_ASK       4

int Korvel_GetDumpState(int reserved);
// Offers a statement before it runs: 1 lets it run; 0 refuses (the user
// answered No or Cancel to the question of bit 4, or nobody could be asked).
// `flags` is not used.
int Korvel_DumpSqlStatement(const char *statement, int flags);

// ---------------------------------------------------------------------------
// Progress indicator (a window with a bar and "Abbrechen"; on Linux a bar
// on stderr when it is a terminal, cancelled by SIGINT).

struct KorvelProgress;
KorvelProgress *Korvel_Progress_Create(HWND owner, const char *caption, long start, long maximum);
// Moves the bar. Returns 1 when the user has cancelled, else 0.
int Korvel_Progress_Set(KorvelProgress *progress, long value);
int Korvel_Progress_IsCancelled(const KorvelProgress *progress);
// Replaces the indicator's text (a null text shows nothing).
void Korvel_Progress_SetText(KorvelProgress *progress, const char *text);
void Korvel_Progress_Destroy(KorvelProgress *progress);

// ---------------------------------------------------------------------------
// Dates

struct KorvelDate {
    int year, month, day;
    int hour, minute, second;
    int hasTime;   // 1 when a time was given
};

// German input: "day.month.year" with a two- or four-digit year (two digits:
// below 50 is 20xx, else 19xx), optionally followed by a blank and
// "hh:mm[:ss]"; also the ODBC forms "yyyy-mm-dd[ hh:mm:ss[.f]]" and the
// escapes {d '…'} / {ts '…'}. Returns 1 for a valid date, 0 otherwise
// (then *date is left as it was, so callers can preset a start value).
int Korvel_StringToDate(const char *text, KorvelDate *date);
// Formats with %D1 (day, two digits), %M1 (month, two digits), %Y1 (year,
// two digits), %Y2 (year, four digits), %h1, %m1, %s1 (time, two digits);
// other characters are copied; a null format is "%D1.%M1.%Y2". Returns the
// length written (0 for a null date).
int Korvel_FormatDate(const KorvelDate *date, const char *format, char *buffer, int size);
// "{d 'yyyy-mm-dd'}" and "{ts 'yyyy-mm-dd hh:mm:ss'}". Return the length.
int Korvel_DateToOdbcDate(const KorvelDate *date, char *buffer, int size);
int Korvel_DateToOdbcTimestamp(const KorvelDate *date, char *buffer, int size);
// "yyyy-mm-dd hh:mm:ss" (ODBC timestamp text). Returns the length.
int Korvel_DateToTimestampText(const KorvelDate *date, char *buffer, int size);

// ---------------------------------------------------------------------------
// Code pages: ANSI (GetACP / the locale's charset) and OEM (CP850 on Linux).
// Converts text into buffer (cut to size-1; '?' for what the other page
// lacks). Text and buffer may be the same on Windows only. Returns the
// length written; a null buffer or size < 1 writes nothing and gives 0.
int Korvel_AnsiToOem(const char *text, char *buffer, int size);
int Korvel_OemToAnsi(const char *text, char *buffer, int size);

// ---------------------------------------------------------------------------
// String encoding: the reversible escaping of text that travels inside SQL
// literals, the registry or tab-separated lists. Tab, line feed, carriage
// return, double and single quote become \t \n \r \q \Q, a backslash two
// backslashes, other bytes 1..31 \xHH (upper-case hex); everything else is
// copied.

// Encodes text into buffer. A character is encoded only while at least 11
// bytes of room are left; the rest of the input is dropped. The result is
// terminated when room remains. `flags` is accepted for the callers' sake
// and does not change the scheme. Text and buffer may not overlap.
// Returns the length written; a null buffer or size < 1 gives 0.
int Korvel_EncodeString(const char *text, char *buffer, int size, int flags);
// Decodes in place; the result is never longer than the input. Hex digits
// are read upper-case only ("A".."F" count 10..15, any other character its
// distance from "0"); an "x" with fewer than two characters after it gives
// a backslash; a backslash at the very end is dropped. Returns the length.
int Korvel_DecodeString(char *text);

// ---------------------------------------------------------------------------
// Files

// A new, unique file name in the temporary folder starting with prefix; the
// file is created empty so the name stays taken. Returns 1, 0 on failure.
int CreateTemporaryFileName(const char *prefix, char *buffer, int size);

#ifdef _WIN32
// ---------------------------------------------------------------------------
// List and combo boxes (Windows). A box is either; the helpers ask which.

bool Korvel_IsListBox(HWND box);
bool Korvel_IsComboBox(HWND box);
// Empties the box, then adds the entries of `list` separated by `separator`
// (null list: only empties). Returns the number of entries.
int Korvel_FillBox(HWND box, int separator, const char *list);
// As Korvel_FillBox; option 1 also stores each entry's position as item data.
int Korvel_FillBoxExtended(HWND box, int separator, const char *list, int option);
void Korvel_ResetBox(HWND box);
// Adds text with item data at position (-1: at the end). Returns the new
// entry's index, below 0 on failure.
int Korvel_AddBoxEntry(HWND box, const char *text, LPARAM itemData, int position, int flags);
// Text of entry `index` (cut to size-1). Returns the length, -1 for no entry.
int Korvel_GetBoxEntry(HWND box, int index, char *buffer, int size);
int Korvel_DeleteBoxEntry(HWND box, int index);
int Korvel_GetBoxCount(HWND box);
int Korvel_GetBoxIndex(HWND box);           // selected index, -1 for none
int Korvel_SetBoxIndex(HWND box, int index);
LPARAM Korvel_GetItemData(HWND box, int index);
int Korvel_GetBoxIndexByItemData(HWND box, LPARAM itemData);
// Copies all entries with their item data from one box into another.
int Korvel_CopyBox(HWND from, HWND to);

// List views.
void Korvel_ListView_Reset(HWND listView);
int Korvel_ListView_AddColumn(HWND listView, int column, const char *title, int width);
int Korvel_ListView_AddItem(HWND listView, int row, const char *text);
int Korvel_ListView_SetItemText(HWND listView, int row, int column, const char *text);
int Korvel_ListView_GetItemCount(HWND listView);
// ---------------------------------------------------------------------------
// Wizard frame (Windows). A modal window over the active window: the
// wizard's bitmap on the left, the pages (child dialogs, DS_CONTROL |
// WS_CHILD templates) on the right, "< &Zurück", "&Weiter >" (on the last
// enabled page "&Fertigstellen") and "Abbrechen" below.

// One record of a wizard's page table; the table ends with templateId 0.
struct KorvelWizardPage {
    int32_t templateId;    // dialog template of the page, from the wizard's module
    int32_t frameWords[2]; // the frame's; 0 in the table, never written
};
static_assert(sizeof(KorvelWizardPage) == 12, "a page record is three 32-bit words");

// Receives every message of every page window as (wizard, page template ID,
// page window, message, wParam, lParam), plus the page-activate and
// page-leave messages of the run. Returns non-zero when it handled the
// message; 0 gives the page the default dialog processing.
using KorvelWizardCallback = int(WINAPI *)(LONG_PTR wizard, int page, HWND window, UINT message, WPARAM wParam,
                                           LPARAM lParam);

// Control IDs of the frame's buttons ("Abbrechen" is IDCANCEL). Each page
// window carries its template ID as its control ID, so
// GetDlgItem(frame, templateId) finds it.
#define KORVEL_WIZARD_BACK 0x3023
#define KORVEL_WIZARD_NEXT 0x3024

// Page-leave directions (wParam of the leave message).
#define KORVEL_WIZARD_FORWARD 1
#define KORVEL_WIZARD_BACKWARD 2

// Runs a wizard modally on the calling thread.
//   pages: the page table, not written. Its pages are created as children at
//     the start (WM_INITDIALOG reaches the callback once per page, before
//     any activation) and shown one at a time.
//   callback: gets the pages' messages (see KorvelWizardCallback).
//   activateMessage: sent (wParam 0, lParam 0) to a page each time it is
//     about to be shown, also when reached by going back.
//   leaveMessage: sent before the page is left, wParam KORVEL_WIZARD_FORWARD
//     ("Weiter", "Fertigstellen") or KORVEL_WIZARD_BACKWARD ("Zurück"),
//     lParam pointing to an int preset to 1; any other answer (2 by
//     convention) keeps the page. "Abbrechen", Escape and the close box
//     cancel without a leave message.
//   userParam: handed back by Wizzard_GetParam.
//   bitmapId, titleId: bitmap and title string of `instance`; the title is
//     translated for `module`. A missing bitmap leaves the left side out.
//   instance: module of the page templates, bitmap and title.
//   reserved15: accepted and not used (callers pass 15).
//   enableFlag: accepted; Wizzard_EnableSubDialog is honoured either way.
// Pages switched off with Wizzard_EnableSubDialog are skipped both ways.
// When a leave is answered 1 and no enabled page follows, "Fertigstellen"
// ends the run; "Weiter" then stays on the page, relabelled.
// Returns 1 when "Fertigstellen" was pressed and the last page let it go,
// 2 when cancelled, 0 when the frame could not be run (null or empty page
// table, null callback, a page template or window that cannot be created,
// no page enabled at the start).
int Wizzard_Perform(const KorvelWizardPage *pages, KorvelWizardCallback callback, UINT activateMessage,
                    UINT leaveMessage, void *userParam, int bitmapId, int titleId, HINSTANCE instance,
                    const char *module, int reserved15, int enableFlag);

// The user parameter of the running wizard `wizard` (the first argument
// the callback got); null for a null handle or one that names no running
// wizard of the calling thread.
void *Wizzard_GetParam(LONG_PTR wizard);

// Switches the pages with template ID `page` on (enable non-zero) or off.
// Takes effect at the next move; the buttons are relabelled at once. A
// handle that names no running wizard, or an unknown page, changes nothing.
void Wizzard_EnableSubDialog(LONG_PTR wizard, int page, int enable);

// ---------------------------------------------------------------------------
// File-name dialog and help (Windows)

enum { KORVEL_FILE_DIALOG_RECORD_SIZE = 64, KORVEL_FILE_OPEN = 1, KORVEL_FILE_SAVE = 2 };
enum { KORVEL_FILE_NAME_SIZE = 256 };

// What the file-name dialog shows and where it remembers the last file.
// recordSize must be KORVEL_FILE_DIALOG_RECORD_SIZE (the family's callers
// have always passed 64, whatever the platform's layout).
struct KorvelFileDialogRecord {
    int recordSize;
    HINSTANCE instance;     // module of the two strings
    int titleId;            // the dialog's title
    int filterId;           // "Name|pattern|Name|pattern|"
    HKEY root;              // the remembered file: root, key path,
    const char *keyPath;    //   section (subkey, may be null)
    const char *section;    //   and value name; a null key path or value
    const char *valueName;  //   name remembers nothing
    int mode;               // KORVEL_FILE_OPEN or KORVEL_FILE_SAVE
};

// Asks for a file over the active window. fileName (KORVEL_FILE_NAME_SIZE
// characters) starts as the remembered file when there is one, else as it
// came in; on success it holds the chosen file, which is then remembered.
// An open dialog wants an existing file, a save dialog asks before
// replacing one and adds the filter's first extension to a bare name.
// Returns 1, 0 when cancelled or for a bad record or a null buffer.
int Korvel_ExtendedFileNameDialog(const KorvelFileDialogRecord *record, char *fileName);

// Opens the module's help file (its own name with ".hlp") at context.
// Returns 1 when the help could be started.
int Korvel_PerformHelp(HWND owner, HINSTANCE instance, int context);
#endif

