// The German string table as the library loads it: exact texts (prefixes,
// double blanks, line breaks, umlauts, the spellings the applications have
// always shown), missing numbers, and cutting to the caller's buffer.
#include "internal/library.h"
#include "internal/list_header.h"
#include "test_support.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

using kodbc::LibraryInstance;
using kodbc::LoadLibraryString;
using kodbc::test::GuardedBuffer;

// The loader hands out text in the locale's charset; these expectations are
// UTF-8, so the tests run under a UTF-8 locale.
class StringTableTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(utf8_.ok()); }

    kodbc::test::ScopedLocale utf8_;
};

struct Sample {
    int id;
    const char *text;
};

// Written out independently of the resource source, byte for byte.
constexpr Sample kSamples[] = {
    {kodbc::msg::TABLE_DROPPED, "Die Tabelle wurde gelöscht"},
    {kodbc::msg::SORT_ASCENDING, "aufsteigend"},
    {436, "Der SQL-Befehl wurde fehlerfrei ausgeführt"},
    {1600, "s Speichermangel"},
    {1606, "! Eventuell ist die Datenbank schreibgeschützt oder hat keinen Primärindex."},
    {1613, "s Fehler beim ODBC-Datenbankzugriff.\n\nFehlerschlüssel %s\n\n%s\n\n%s"},
    {1616, "s Es existiert bereits eine gleichnamige Tabelle oder Abfrage in dieser Datenquelle. "},
    {1618, "s Es wurde eine unerwartete schließende Klammer gefunden.\n\n%s"},
    {1630, "s Die Konvertierung des Datentyps des Feldes  '%s'  ergibt keinen Sinn."},
    {1637, "s Die Datei  %s  befindet sich bereits im Zugriff."},
    {1654, "s Alle Tabellen außer der ersten müssen Verknüfungen mit anderen Tabellen sein."},
    {1703, "?YNC Sie sind im Begriff, ein Feld aus einer Tabelle zu löschen. Dabei geht der dieses "
           "Feldes in allen Datensätzen der Tabelle unwiederbringlich verloren.\n\nWollen Sie das "
           "Feld  '%s'  wirklich löschen?"},
    {1704, "?YN Soll der Primärschlüssel der Tabelle wirklich gelöscht werden?"},
    {1706, "! Der SELECT-Befehl wurde erfolgreich getestet"},
    {1805, "Selektionsmasken (*.sms)|*.sms|"},
    {1904, "beginnt mit"},
    {1913, "ist leer"},
    {1923, "ist in Liste enthalten  (Trenner ist ;)"},
    {1909, "ist größer oder gleich dem Inhalt von Feld"},
    {1951, "absteigend"},
    {1963, "Kopie_von_%s"},
    {1973, "Spaltenname|130\tDatentyp|100\tLeer erlaubt|70|C\tVorbesetzung|130\tKommentar|300"},
    {2163, "Es werden insgesamt  %ld  Datensätze aus der Tabelle gelöscht.\n\nDrücken Sie auf "
           "'Fertigstellen' um die Datensätze endgültig zu löschen."},
    {2170, "Ergebnis der Formel"},
    {2811, "Delimiter: %s  (Dezimal %d   Hex %02x)"},
    {2900, "Datenbank"},
    {2903, "Fehler beim ODBC-Datenbankzugriff"},
    {2910, "Ändern von Datensätzen in einer Tabelle"},
    {3000, "Der Treiber meldet eine ungültige Parameterzahl.\r\n\r\nVermutlich wurden in einer "
           "Tabelle Felder angesprochen, die in dieser Tabelle nicht existieren."},
    {3501, "Tabelle|150\tAlias|120\tVerknüpfungtyp|140\tVerknüpfungsbedingung|300"},
    {3612, ">"},
};

TEST_F(StringTableTest, TextsAreExactAndLengthIsReturned) {
    for (const Sample &sample : kSamples) {
        char text[2000];
        std::memset(text, 'x', sizeof text);
        const int length = LoadLibraryString(LibraryInstance(), sample.id, text, sizeof text);
        EXPECT_EQ(length, static_cast<int>(std::strlen(sample.text))) << "string " << sample.id;
        EXPECT_STREQ(text, sample.text) << "string " << sample.id;
    }
}

// Numbers the table does not hold, and the join type without a label whose
// text is empty, read as "nothing there"; so does a call without room.
TEST_F(StringTableTest, MissingEmptyOrNoRoomGivesZeroAndWritesNothing) {
    for (int id : {0, -1, 1, 1601, 1615, 2901, 3600, 65535, 1000000}) {
        GuardedBuffer buffer(50);
        EXPECT_EQ(LoadLibraryString(LibraryInstance(), id, buffer.data(), buffer.size()), 0) << id;
        EXPECT_EQ(buffer.text(), "") << id;
        EXPECT_TRUE(buffer.guards_intact()) << id;
    }
    EXPECT_EQ(LoadLibraryString(LibraryInstance(), 2900, nullptr, 100), 0);
    for (int size : {0, -5}) {
        GuardedBuffer none(0);
        EXPECT_EQ(LoadLibraryString(LibraryInstance(), 2900, none.data(), size), 0) << size;
        EXPECT_TRUE(none.guards_intact()) << size;
    }
}

// Cut to size - 1, never past it. Where the cut falls inside a multi-byte
// character the loader may drop the partial character; elsewhere nothing
// more is lost.
TEST_F(StringTableTest, CutsToSizeLessOneAndStaysInsideTheBuffer) {
    const std::string full = "s Die Tabelle hat bereits einen Primärschlüssel";  // 1647
    for (int size = 1; size <= static_cast<int>(full.size()) + 2; ++size) {
        GuardedBuffer buffer(size);
        int n = LoadLibraryString(LibraryInstance(), 1647, buffer.data(), buffer.size());
        std::string text = buffer.text();
        EXPECT_TRUE(buffer.guards_intact()) << "size " << size;
        EXPECT_EQ(n, static_cast<int>(text.size())) << "size " << size;
        const std::string expected = full.substr(0, static_cast<std::size_t>(size - 1));
        const bool splits = expected.size() < full.size() && (full[expected.size()] & 0xC0) == 0x80;
        if (splits)
            EXPECT_EQ(full.compare(0, text.size(), text), 0) << "size " << size << ": " << text;
        else
            EXPECT_EQ(text, expected) << "size " << size;
        EXPECT_LE(text.size(), expected.size()) << "size " << size;
    }
}

} // namespace

// The list views' header texts: tab-separated columns (a "C" centres one)
// and the bar-only run read alike.
TEST(ListHeader, CaptionsWidthsAndCentredColumns) {
    using kodbc::ListHeaderColumn;
    const struct {
        const char *header;
        std::vector<ListHeaderColumn> columns;
    } cases[] = {
        {"Spalte|225\tAlias|120", {{"Spalte", 225}, {"Alias", 120}}},
        {"Datentyp|100\tLeer erlaubt|70|C\tKommentar|300",
         {{"Datentyp", 100}, {"Leer erlaubt", 70, true}, {"Kommentar", 300}}},
        {"Feld|90|Importieren als|90|AutoInc|50", {{"Feld", 90}, {"Importieren als", 90}, {"AutoInc", 50}}},
        {"Spalte\t\tAlias|\t", {{"Spalte", 100}, {"Alias", 0}}},
        {"", {}},
    };
    for (const auto &c : cases) EXPECT_EQ(kodbc::ParseListHeader(c.header), c.columns) << c.header;
}
