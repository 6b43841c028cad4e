// The library frame: its German string table as the loader hands it out,
// the list views' header texts, identity, messages and file error mappings.
#include "test_support.h"

#include "internal/library.h"
#include "internal/list_header.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

namespace kodbc::test {
namespace {

// The loader hands out text in the locale's charset; these expectations are
// UTF-8, so the tests run under a UTF-8 locale.
class StringTableTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(utf8_.ok()); }
    ScopedLocale utf8_;
};

// Exact texts (prefixes, double blanks, line breaks, umlauts, the spellings
// the applications have always shown), written out independently of the
// resource source, byte for byte. Texts other tests show whole are left out.
TEST_F(StringTableTest, TextsAreExactAndLengthIsReturned) {
    const struct {
        int id;
        const char *text;
    } samples[] = {
        {msg::TABLE_DROPPED, "Die Tabelle wurde gelöscht"},
        {436, "Der SQL-Befehl wurde fehlerfrei ausgeführt"},
        {1600, "s Speichermangel"},
        {1606, "! Eventuell ist die Datenbank schreibgeschützt oder hat keinen Primärindex."},
        {1613, "s Fehler beim ODBC-Datenbankzugriff.\n\nFehlerschlüssel %s\n\n%s\n\n%s"},
        {1616, "s Es existiert bereits eine gleichnamige Tabelle oder Abfrage in dieser Datenquelle. "},
        {1618, "s Es wurde eine unerwartete schließende Klammer gefunden.\n\n%s"},
        {1637, "s Die Datei  %s  befindet sich bereits im Zugriff."},
        {1654, "s Alle Tabellen außer der ersten müssen Verknüfungen mit anderen Tabellen sein."},
        {1703, "?YNC Sie sind im Begriff, ein Feld aus einer Tabelle zu löschen. Dabei geht der dieses "
               "Feldes in allen Datensätzen der Tabelle unwiederbringlich verloren.\n\nWollen Sie das "
               "Feld  '%s'  wirklich löschen?"},
        {1704, "?YN Soll der Primärschlüssel der Tabelle wirklich gelöscht werden?"},
        {1706, "! Der SELECT-Befehl wurde erfolgreich getestet"},
        {1805, "Selektionsmasken (*.sms)|*.sms|"},
        {1923, "ist in Liste enthalten  (Trenner ist ;)"},
        {1909, "ist größer oder gleich dem Inhalt von Feld"},
        {1973, "Spaltenname|130\tDatentyp|100\tLeer erlaubt|70|C\tVorbesetzung|130\tKommentar|300"},
        {2163, "Es werden insgesamt  %ld  Datensätze aus der Tabelle gelöscht.\n\nDrücken Sie auf "
               "'Fertigstellen' um die Datensätze endgültig zu löschen."},
        {2910, "Ändern von Datensätzen in einer Tabelle"},
        {3000, "Der Treiber meldet eine ungültige Parameterzahl.\r\n\r\nVermutlich wurden in einer "
               "Tabelle Felder angesprochen, die in dieser Tabelle nicht existieren."},
        {3501, "Tabelle|150\tAlias|120\tVerknüpfungtyp|140\tVerknüpfungsbedingung|300"},
        {3612, ">"},
    };
    for (const auto &sample : samples) {
        char text[2000];
        std::memset(text, 'x', sizeof text);
        EXPECT_EQ(LoadLibraryString(LibraryInstance(), sample.id, text, sizeof text),
                  static_cast<int>(std::strlen(sample.text)))
            << "string " << sample.id;
        EXPECT_STREQ(text, sample.text) << "string " << sample.id;
    }
}

// Numbers the table does not hold, and the join type without a label whose
// text is empty, read as "nothing there"; so does a call without room.
TEST_F(StringTableTest, MissingEmptyOrNoRoomGivesZeroAndWritesNothing) {
    for (int id : {0, -1, 1, 1601, 1615, 2901, 3600, 65535, 1000000})
        EXPECT_EQ(Guarded(50, [&](char *out, int n) { EXPECT_EQ(LoadLibraryString(LibraryInstance(), id, out, n), 0); }),
                  "")
            << id;
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
        int n = -1;
        const std::string text =
            Guarded(size, [&](char *out, int s) { n = LoadLibraryString(LibraryInstance(), 1647, out, s); });
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

// Tab-separated columns (a "C" centres one) and the bar-only run read alike.
TEST(ListHeader, CaptionsWidthsAndCentredColumns) {
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
    for (const auto &c : cases) EXPECT_EQ(ParseListHeader(c.header), c.columns) << c.header;
}

TEST(FrameIdentity, InstanceVersionAndModuleName) {
    EXPECT_NE(Kodbc_GetInstance(), nullptr);
    EXPECT_EQ(Guarded(32, [](char *out, int n) { EXPECT_EQ(Kodbc_GetVersion(out, n), 7); }), "5.2.0.0");
    EXPECT_EQ(Guarded(5, [](char *out, int n) { Kodbc_GetPoloModuleName(out, n); }), "KODB");
    GuardedBuffer none(0);
    EXPECT_EQ(Kodbc_GetPoloModuleName(none.data(), 0), 0);
    EXPECT_TRUE(none.guards_intact());
    EXPECT_EQ(Kodbc_GetPoloModuleName(nullptr, 10), 0);
}

TEST(FrameMessages, ErrorCodesFollowTheTable) {
    // 1601 shares 1602's row; 1606 and the end row are no entries.
    const std::pair<int, unsigned> cases[] = {{1600, 0x8004A014u}, {1601, 0x8004A015u}, {1602, 0x8004A015u},
                                              {1607, 0x8004A02Eu}, {1618, 0x8004A031u}, {1614, 0x8004A034u},
                                              {1606, 0x8004A000u}, {0, 0x8004A000u}};
    for (const auto &[message, code] : cases) EXPECT_EQ(MessageErrorCode(message), code) << message;
}

TEST(FrameMessages, MessageReachesTheHandlerWithPrefixAndArguments) {
    MessageRecorder recorder(KODBC_ANSWER_OK);
    LibraryMessage(msg::NO_DATA_SOURCE);
    LibraryMessage(msg::FILE_NOT_FOUND, "/tmp/x.txt");
    // Without arguments the placeholders are the base library's business:
    // nothing of the message around them may be lost.
    LibraryMessage(msg::FILE_NOT_FOUND);
    ASSERT_EQ(recorder.entries().size(), 3u);
    EXPECT_EQ(recorder.entries()[0].kind, KODBC_MESSAGE_STOP);
    EXPECT_EQ(recorder.entries()[0].caption, "Datenbank");
    EXPECT_EQ(recorder.entries()[0].text, "Es ist keine Datenquelle angegeben");
    EXPECT_EQ(recorder.entries()[1].text, "Die Datei  /tmp/x.txt  existiert nicht.");
    EXPECT_EQ(recorder.entries()[2].text.rfind("Die Datei ", 0), 0u);
    EXPECT_NE(recorder.entries()[2].text.find("existiert nicht."), std::string::npos);

    // Whatever the person answered comes back unchanged.
    for (int answer : {KODBC_ANSWER_YES, KODBC_ANSWER_CANCEL}) {
        recorder.set_answer(answer);
        EXPECT_EQ(LibraryMessage(msg::OUT_OF_MEMORY), answer);
    }
}

TEST(FrameFiles, ErrorClassAndOpenMessageFromErrno) {
    const struct {
        int error, errorClass, openMessage;
    } cases[] = {{ENOENT, 3, 1638}, {EACCES, 2, 1637}, {EEXIST, 4, 1639}, {EMFILE, 5, 1640}, {ENOSPC, 6, 1638},
                 {EIO, -1, 1638}};
    for (const auto &c : cases) {
        if (c.errorClass >= 0) {
            EXPECT_EQ(FileErrorClass(c.error), c.errorClass) << c.error;
        }
        EXPECT_EQ(FileOpenErrorMessage(c.error), c.openMessage) << c.error;
    }
}

} // namespace
} // namespace kodbc::test
