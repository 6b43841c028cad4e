/*
** kodbc — operation descriptors: the text record in which a user's
** conditions (selection kind) or assignments (assignment kind) are kept,
** the dialog rows they are edited in, and the WHERE and SET clauses
** generated from them.
**
** Descriptor layout: groups separated by vertical tab (code 11), every
** group followed by one when written from a dialog; within a group, lines
** ended by line feed (code 10); a line holds four fields separated by tab:
** field name (readers keep 99 characters), operator keyword (case-
** sensitive), value (readers keep 299 characters) and the field's ODBC SQL
** type as signed decimal ("0" when unknown). A null or empty text is a
** valid, empty descriptor. Text after the last vertical tab counts as a
** group only when it is not empty.
**
** Selection keywords: "BW" begins with, "CT" contains, "IN" is empty,
** "NN" is not empty, "EQ" "NE" "GT" "GE" "LT" "LE" compare with a constant,
** "IL" in a ";"-separated list, "EQF" "NEF" "GTF" "GEF" "LTF" "LEF" compare
** with another field. Assignment keywords: "SNU" NULL, "SCO" a constant,
** "SFI" another field, "SFO" a formula taken as it is.
**
** Generated clauses carry no keyword: the caller writes "WHERE" or "SET"
** in front. None of these functions shows anything to the user.
*/
#ifndef KODBC_SELDESC_H
#define KODBC_SELDESC_H

#include "kodbc_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Descriptor kinds of the dialog functions. */
#define OPDESC_SELECTION   1
#define OPDESC_ASSIGNMENT  2

/* Operator flags. */
#define OPF_NOVALUE     1  /* needs no value: generated with an empty value too */
#define OPF_FIELDVALUE  2  /* the value names another field (prepared as identifier) */
#define OPF_TYPEDVALUE  4  /* the value is a constant, converted by the field's type */
#define OPF_LISTVALUE   8  /* ";"-separated constants, each converted by type */

/* Operator codes, the item data of the operator box entries. */
#define OPDESC_OP_BEGINS_WITH        101
#define OPDESC_OP_EQUAL              102
#define OPDESC_OP_NOT_EQUAL          103
#define OPDESC_OP_GREATER            104
#define OPDESC_OP_GREATER_EQUAL      105
#define OPDESC_OP_LESS               106
#define OPDESC_OP_LESS_EQUAL         107
#define OPDESC_OP_CONTAINS           108
#define OPDESC_OP_EMPTY              109
#define OPDESC_OP_NOT_EMPTY          110
#define OPDESC_OP_IN_LIST            111
#define OPDESC_OP_EQUAL_FIELD        201
#define OPDESC_OP_NOT_EQUAL_FIELD    202
#define OPDESC_OP_GREATER_FIELD      203
#define OPDESC_OP_GREATER_EQUAL_FIELD 204
#define OPDESC_OP_LESS_FIELD         205
#define OPDESC_OP_LESS_EQUAL_FIELD   206
#define OPDESC_OP_SET_NULL           300
#define OPDESC_OP_SET_CONSTANT       301
#define OPDESC_OP_SET_FIELD          302
#define OPDESC_OP_SET_FORMULA        303

/*
** One row of a dialog: the control IDs of its field box (list or combo box
** whose entries carry the field's ODBC SQL type as item data), operator box
** (list or combo box) and value control (edit or combo box). A triple whose
** FieldId is 1 (all three 1 by convention) ends a group; FieldId 0 or below
** ends the table. Every group, the last included, is followed by a
** separator triple.
*/
typedef struct OpDescDialogItem {
    int32_t FieldId;
    int32_t OperatorId;
    int32_t ValueId;
} OpDescDialogItem;

#define OPDESC_ITEM_GROUP_END  1
#define OPDESC_ITEM_TABLE_END  0

/*
** Kodbc_SelDesc_To_WhereClause_Expanded: the WHERE condition of selDesc
** into where: each group's non-empty conditions joined by " AND " in
** parentheses, the groups joined by " OR " ("(A AND B) OR (C)"); a group
** without conditions gives nothing. A line gives no condition when its
** field is empty, its keyword unknown, or its value empty for an operator
** that needs one. Field names, and the values of the field operators, are
** prepared as by Kodbc_PrepareNameForSql92 with hdbc (only its identifier
** quote text is asked, at most once per call; hdbc 0 quotes nothing).
** Constants by type: numeric types (-6, -5, 2 to 8) keep only digits, "+"
** and "-", with "," turned into "."; dates (9, 11) become "{d 'y-m-d'}"
** from the German input (an unreadable date gives "{d '0000-00-00'}");
** anything else is enclosed in single quotes, quotes inside not doubled.
** The LIKE operators take the value raw, between patternChars[2] and [3],
** with the wildcard patternChars[0] behind it ("BW") or on both sides
** ("CT"). patternChars: four characters (wildcard, single-character
** wildcard, opening and closing quote of a pattern); null means "%_''";
** a shorter text leaves the missing characters out.
** Room: a condition is cut to 299 characters; a group is built in 30000
** bytes. " AND " / " OR " are written only while at least 6 bytes remain,
** a condition or group only when all of it fits; what does not fit is
** dropped (a separator already written stays). Nothing is written past
** whereSize.
** Returns 0 (also for a null or empty selDesc: where is then empty); -1
** when where is null or whereSize below 1.
*/
KODBC_API int KODBC_CALL Kodbc_SelDesc_To_WhereClause_Expanded(SQLHDBC hdbc, const char *selDesc, char *where,
                                                               int whereSize, const char *patternChars);
/* Kodbc_SelDesc_To_WhereClause: the same with the pattern characters "%_''". */
KODBC_API int KODBC_CALL Kodbc_SelDesc_To_WhereClause(SQLHDBC hdbc, const char *selDesc, char *where,
                                                      int whereSize);

/*
** Kodbc_OpDesc_To_SetClause: the assignment list of an UPDATE from the
** first group of setDesc ("Ort='Bonn',Plz=NULL,Umsatz=Umsatz*2"): field
** "=" right-hand side, joined by ",". "SNU" gives NULL, "SCO" the value
** converted by type as for the WHERE clause, "SFI" the value prepared as
** an identifier, "SFO" the value as it is. Lines with an empty field, an
** unknown keyword or an empty value (except "SNU") are skipped. Every
** append is cut to setSize-1. Nothing happens when set is null or setSize
** below 1; otherwise set is emptied first. No result.
*/
KODBC_API void KODBC_CALL Kodbc_OpDesc_To_SetClause(SQLHDBC hdbc, const char *setDesc, char *set, int setSize);

#ifdef _WIN32
/*
** Kodbc_DialogItems_To_OpDesc: writes the rows of dialog described by
** items into descriptor. Nothing happens when dialog, items or descriptor
** is null or descriptorSize below 1; otherwise descriptor is emptied first
** and stays empty for a kind other than OPDESC_SELECTION/ASSIGNMENT.
** A separator triple writes a vertical tab and lowers the room for all
** later text by one more byte (each group costs two bytes of room). A row
** writes "field\tkeyword\tvalue\ttype\n" unless its operator box has no
** selection, or the blank entry, or both field (at most 99 characters) and
** value (at most 199) are empty. The type is the item data of the field
** box entry equal to the field text, 0 when there is none. Every append is
** cut to the room left.
*/
KODBC_API void KODBC_CALL Kodbc_DialogItems_To_OpDesc(int kind, HWND dialog, const OpDescDialogItem *items,
                                                      char *descriptor, int descriptorSize);

/*
** Kodbc_OpDesc_To_DialogItems: prepares every row and shows descriptor in
** them. Nothing happens for an unknown kind, a null dialog or null items.
** Every row's operator box is refilled with the kind's operator labels
** (item data: the operator code) and a last entry " " (item data 0). With
** fieldList (the tab-separated "name\ttype" list of Kodbc_GetFields with
** KODBC_FIELDS_WITH_TYPE; names without a type get item data 0), the field
** boxes and boxes used as value controls are refilled from it; null
** leaves them as they are. The descriptor's n-th group goes to the rows of
** the n-th group of items, line by line: surplus lines are ignored, rows
** without a line keep what they show. A row shows its line's field (the
** equal box entry selected, the text set in any case), the operator of its
** keyword (the blank entry for an unknown one) and its value. reserved is
** not used.
*/
KODBC_API void KODBC_CALL Kodbc_OpDesc_To_DialogItems(int kind, const char *descriptor, const char *fieldList,
                                                      HWND dialog, const OpDescDialogItem *items, int reserved);

/*
** Kodbc_OpDesc_Clone_Boxes: copies the entries (with item data) of the
** first row's field box into every other row's field box and into every
** row's value control that is a list or combo box. Nothing happens when
** dialog or items is null. reserved is not used.
*/
KODBC_API void KODBC_CALL Kodbc_OpDesc_Clone_Boxes(HWND dialog, const OpDescDialogItem *items, int reserved);

/*
** Kodbc_Edit_SelDesc: the selection editor, dialog 10065 "Bedingungen
** eingeben", modal over the active window. Returns 2 at once (nothing
** shown) for a null selDesc or a selDescSize below 10. Otherwise the
** dialog shows selDesc (may be empty) in four groups of rows (five, one,
** one, one; the groups joined by "oder"), their boxes filled from
** fieldList as Kodbc_OpDesc_To_DialogItems does (kind OPDESC_SELECTION,
** reserved2 handed on as its last argument), and focuses the first control
** without text, row by row and field, operator, value within a row.
** "&Ok" writes the rows into selDesc (Kodbc_DialogItems_To_OpDesc, bounded
** by selDescSize) and returns 1; "&Abbruch" returns 2 and leaves selDesc
** as it was. "Hilfe..." opens the help at context 10019. "Selektion
** laden..." asks for a mask file (title 2913, filter 1805; the file name
** is remembered as "SelectMaskFile" under HKEY_CURRENT_USER
** "Software\Korvel Software\Kodbc", section "Settings") and shows its
** conditions over the rows: rows the file has no line for keep what they
** show; a file that is no mask is refused with 1649, no memory with 1600.
** "Selektion speichern..." takes the rows, asks for a file (title 2914,
** same filter and remembered name) and writes them as a mask as
** Kodbc_SaveSelectionMask does. Cancelling a file dialog changes nothing.
** reserved1 is not used.
*/
KODBC_API int KODBC_CALL Kodbc_Edit_SelDesc(char *selDesc, int selDescSize, const char *fieldList, int reserved1,
                                            int reserved2);

/*
** EditSelDesc_Dialog_Callback: the dialog procedure of dialog 10065.
** WM_INITDIALOG's lParam is Kodbc_Edit_SelDesc's own record of its
** arguments; with a null lParam the rows stay empty, the file buttons do
** nothing and OK ends the dialog like "&Abbruch". The dialog ends with 1
** (OK) or 2. Returns TRUE for the messages it handled, else FALSE (also
** from WM_INITDIALOG when it set the focus itself).
*/
KODBC_API INT_PTR KODBC_CALL EditSelDesc_Dialog_Callback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
#endif

/*
** Selection masks: the selection editor's files (".sms"), the magic
** "KORVEL-SMS" followed by a selection descriptor without a terminator.
** Kodbc_LoadSelectionMask: the descriptor of fileName into selDesc, cut to
** size-1 (a last byte 26, an editor's end-of-file mark, is dropped).
** Returns 1; 2 for a null selDesc or size below 1 (nothing shown), or a
** file that cannot be read, is shorter than the magic or does not begin
** with it exactly (1649 shown with the file name).
** Kodbc_SaveSelectionMask: writes the magic and selDesc (null: empty; cut
** to 4990 bytes), replacing fileName. Returns 1; 2 when the file cannot be
** opened (the message for the system's error, with the name) or not all
** was written (1650).
*/
KODBC_API int KODBC_CALL Kodbc_LoadSelectionMask(const char *fileName, char *selDesc, int size);
KODBC_API int KODBC_CALL Kodbc_SaveSelectionMask(const char *fileName, const char *selDesc);

#ifdef __cplusplus
}
#endif

#endif /* KODBC_SELDESC_H */
