/*
** kodbc — how the library's messages reach the user outside Windows.
**
** On Windows every message is a message box and every ODBC failure a modal
** dialog. On Linux they go to one handler that the embedding program
** installs. Without a handler the text goes to stderr and the safe answer
** is given (No for yes/no questions, Cancel for yes/no/cancel).
*/
#ifndef KODBC_MESSAGES_H
#define KODBC_MESSAGES_H

#include "kodbc_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What a message is, from the type prefix of its text. */
#define KODBC_MESSAGE_PLAIN        0  /* no prefix: OK only */
#define KODBC_MESSAGE_STOP         1  /* "s " */
#define KODBC_MESSAGE_NOTICE       2  /* "! " */
#define KODBC_MESSAGE_YESNO        3  /* "?YN " */
#define KODBC_MESSAGE_YESNOCANCEL  4  /* "?YNC " */
#define KODBC_MESSAGE_ODBC_ERROR   5  /* the diagnostics dialog's fields */
#define KODBC_MESSAGE_TEMPORARY    6  /* a short notice that needs no answer */

/* The fields of the diagnostics dialog, split from the driver's message. */
typedef struct KodbcOdbcErrorFields {
    const char *statement;    /* "SQL-Befehl"; never null, may be empty */
    const char *sqlState;     /* "Fehlercode" */
    const char *vendor;       /* "Hersteller" */
    const char *component;    /* "Komponente" */
    const char *dataSource;   /* "Datenquelle" */
    const char *description;  /* "Fehlerbeschreibung" */
    const char *hint;         /* "Mögliche Fehlerursache": text, or null when there is none */
} KodbcOdbcErrorFields;

typedef struct KodbcMessage {
    int kind;                         /* KODBC_MESSAGE_* */
    const char *caption;              /* window title */
    const char *text;                 /* the text, type prefix removed */
    const KodbcOdbcErrorFields *odbc; /* set for KODBC_MESSAGE_ODBC_ERROR, else null */
} KodbcMessage;

/*
** A message handler returns the user's answer: KODBC_ANSWER_OK, _CANCEL,
** _YES or _NO. For KODBC_MESSAGE_ODBC_ERROR, OK stands for "Schließen" and
** CANCEL for Escape. The strings are valid only during the call.
*/
typedef int (*KodbcMessageHandler)(const KodbcMessage *message, void *context);

#ifndef _WIN32
/*
** Kodbc_SetMessageHandler: installs the handler for every later message of
** the library on any thread (null restores the default). Returns the handler
** that was installed before. Linux only.
*/
KODBC_API KodbcMessageHandler KODBC_CALL Kodbc_SetMessageHandler(KodbcMessageHandler handler, void *context);

/*
** Kodbc_FormatMessage: the message as the default path writes it to stderr,
** for handlers that log or print: "caption: text" and a line feed, then for
** KODBC_MESSAGE_ODBC_ERROR one aligned line per field of the diagnostics
** dialog (Fehlercode, Hersteller, Komponente, Datenquelle,
** Fehlerbeschreibung, SQL-Befehl, and Mögliche Fehlerursache where there is
** a hint), each ending with a line feed, in the locale's charset. Cut to
** size-1 and terminated. Returns the length written; 0 for a null message,
** a null buffer or a size below 1. Linux only.
*/
KODBC_API int KODBC_CALL Kodbc_FormatMessage(const KodbcMessage *message, char *buffer, int size);
#endif

#ifdef __cplusplus
}
#endif

#endif /* KODBC_MESSAGES_H */
