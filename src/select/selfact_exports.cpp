#include "select/selfact.h"

#include "internal/library.h"

#include <korvel/bounded_text.h>

#include <new>

using namespace kodbc;

extern "C" {

KODBC_API int KODBC_CALL Kodbc_SelFact_Create(SelFact **query, SQLHDBC hdbc, const char *schema, unsigned flags) {
    if (!query) return SELFACT_NO_MEMORY;
    try {
        auto *created = new SelFact;
        created->hdbc = hdbc;
        created->schema = std::string(schema ? schema : "").substr(0, 99);
        created->flags = flags;
        *query = created;
        return SELFACT_OK;
    } catch (...) {
        return SELFACT_NO_MEMORY;
    }
}

KODBC_API void KODBC_CALL Kodbc_SelFact_Destroy(SelFact *query) { delete query; }

KODBC_API void KODBC_CALL Kodbc_SelFact_SetDescriptor(SelFact *query, int part, const char *text, int) {
    if (!query) return;
    try {
        select::SetSelFactDescriptor(*query, part, text);
    } catch (...) {
        // What could be stored stays; the caller hears of it from the designer's checks.
    }
}

KODBC_API void KODBC_CALL Kodbc_SelFact_GetDescriptor(SelFact *query, int part, char *out, int outSize, int) {
    if (!query || part < SELFACT_TABLES || part > SELFACT_SELECTION) return;
    korvel::BoundedText text(out, outSize);
    try {
        text.append(select::SelFactDescriptor(*query, part));
    } catch (...) {
        text.clear();
    }
}

KODBC_API int KODBC_CALL Kodbc_SelFact_CreateSql(SelFact *query, char *sql, int sqlSize, int) {
    if (!query) return SELFACT_NO_QUERY;
    korvel::BoundedText text(sql, sqlSize);
    try {
        text.append(select::SelFactSql(*query));
    } catch (...) {
        text.clear();
    }
    return SELFACT_OK;
}

KODBC_API int KODBC_CALL Kodbc_SelFact_ParseSql(SelFact *query, const char *, int) {
    return query ? SELFACT_OK : SELFACT_NO_QUERY;
}

KODBC_API int KODBC_CALL Kodbc_SelFact_DisplayError(int code) {
    if (code == SELFACT_NO_MEMORY) LibraryMessage(msg::OUT_OF_MEMORY);
    return 1;
}

} // extern "C"
