// Text translation: a catalogue the embedding program installs decides; with
// none every text stays as it is.
#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <atomic>
#include <string>

namespace {
std::atomic<PoloCatalogue> g_catalogue{nullptr};
}

void Polo_InstallCatalogue(PoloCatalogue catalogue) { g_catalogue.store(catalogue); }

int Polo_TranslateString(const char *module, const char *section, char *buffer, int size) {
    // Also makes sure the text is terminated inside the buffer.
    korvel::BoundedText text = korvel::BoundedText::continuing(buffer, size);
    if (!text.valid()) return 0;
    PoloCatalogue catalogue = g_catalogue.load();
    if (!catalogue) return text.int_length();
    const char *translated = catalogue(module, section, text.c_str());
    if (!translated || translated == buffer) return text.int_length();
    // The translation may point into the buffer: take a copy before rewriting it.
    std::string copy(translated);
    text.clear();
    text.append(copy);
    return text.int_length();
}
