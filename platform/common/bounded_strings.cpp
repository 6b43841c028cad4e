// Bounded copy and append, and the small lookup table helper.
#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

int KorvelCopyString(char *dst, const char *src, int size) {
    korvel::BoundedText out(dst, size);
    out.append(src);
    return out.int_length();
}

int KorvelAppendString(char *dst, const char *src, int size) {
    korvel::BoundedText out = korvel::BoundedText::continuing(dst, size);
    out.append(src);
    return out.int_length();
}

uint32_t Korvel_Translate(const KorvelTranslation *table, uint32_t key, uint32_t fallback) {
    if (!table) return fallback;
    for (const KorvelTranslation *row = table; row->key != 0 || row->value != 0; ++row) {
        if (row->key == key) return row->value;
    }
    return fallback;
}
