/*
** kodbc — library identity.
*/
#ifndef KODBC_FRAME_H
#define KODBC_FRAME_H

#include "kodbc_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The library's file and product version, as its version resource holds it. */
#define KODBC_VERSION_TEXT   "5.2.0.0"
/* The translation module of the library's texts. */
#define KODBC_MODULE_NAME    "KODBCDLL"

/*
** Kodbc_GetInstance: the module instance handle the library was attached
** with; 0 before attach.
*/
KODBC_API HINSTANCE KODBC_CALL Kodbc_GetInstance(void);

/*
** Kodbc_GetVersion: writes the file version of the library's own version
** resource ("5.2.0.0") into buffer, cut to size-1 characters. A null buffer
** or a size below 1 writes nothing.
** Returns the base library's result: the length written, 0 on failure.
*/
KODBC_API int KODBC_CALL Kodbc_GetVersion(char *buffer, int size);

/*
** Kodbc_GetPoloModuleName: copies "KODBCDLL", the translation module of the
** library's texts, into buffer, cut to size-1 characters (a size of 5 gives
** "KODB"). A null buffer or a size below 1 writes nothing.
** Returns the number of characters copied.
*/
KODBC_API int KODBC_CALL Kodbc_GetPoloModuleName(char *buffer, int size);

#ifdef __cplusplus
}
#endif

#endif /* KODBC_FRAME_H */
