// The selection files as import sources: their headers, SEL records and the
// contact-field conversion without a database; the settings from a private
// store. Their runs into a table are ImportRun's.
#include "test_support.h"

#include "transfer/import_run.h"

#include <korvel/korvel32.h>

#include <cstdio>
#include <fstream>

namespace kodbc::test {
namespace {

using namespace transfer;
using Values = std::vector<std::string>;

struct MemoryFile {
    explicit MemoryFile(const std::string &bytes) : file(std::tmpfile()), reader(file) {
        std::fwrite(bytes.data(), 1, bytes.size(), file);
        std::rewind(file);
    }
    ~MemoryFile() { std::fclose(file); }
    std::FILE *file;
    LineReader reader;
};

std::string Sdi(const std::string &fieldLines, int count) {
    return "SDI\r\nx\r\nx\r\nx\r\n" + std::to_string(count) + "\r\n" + fieldLines + "ignoriert\r\n";
}

// "name:type" per field.
Values Described(const ImportFieldList &fields) {
    Values described;
    for (const ImportField &field : fields)
        described.push_back(field.targetName + ":" + std::to_string(field.targetType) + (field.imported ? "" : "-"));
    return described;
}

// An SDI field takes its type from its last known FORMAT word and its name
// from after the last point; the line after the fields belongs to the header.
TEST(SelectionFiles, HeadersAndTheirFields) {
    const struct {
        const char *what;
        std::string bytes;
        bool sdi, valid;
        Values fields;
    } cases[] = {
        {"sdi", Sdi("ADRESSE.NAME X Y\r\nA FORMAT=NG10\r\nB format=N10\r\nC FORMAT=D1\r\nD FORMAT=D\r\n"
                    "E FORMAT=T10 FORMAT=NG2\r\nF FORMAT=NG2 FORMAT=X123\r\nK.NAME\r\nG  FORMAT=Tag\r\n", 9),
         true, true, {"NAME:10", "A:2", "B:3", "C:4", "D:10", "E:2", "F:10", "NAME_1:10", "G:4"}},
        {"lower-case sdi", "sdi\nx\nx\nx\n1\nA\n\n", true, true, {"A:10"}},
        {"not SDI", "SDX\r\nx\r\nx\r\nx\r\n1\r\nA\r\n\r\n", true, false},
        {"no fields", Sdi("", 0), true, false},
        {"field line missing", Sdi("A\r\n", 2), true, false},
        {"closing line missing", "SDI\r\nx\r\nx\r\nx\r\n1\r\nA\r\n", true, false},
        {"sel", "Kopf\r\n2,0\r\n1,C,a,C\r\n2,C,b,C\r\n", false, true, {"a:10", "b:10"}},
        {"sel without fields", "Kopf\r\n0,5\r\n", false, false},
        {"sel field line missing", "Kopf\r\n2,5\r\n1,C,a,C\r\n", false, false},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        MemoryFile file(c.bytes);
        ImportFieldList fields;
        long records = 0;
        ASSERT_EQ(c.sdi ? ReadSdiHeader(file.reader, fields) : ReadSelHeader(file.reader, fields, records), c.valid);
        if (!c.valid) continue;
        EXPECT_EQ(Described(fields), c.fields);
        std::string_view next;
        EXPECT_FALSE(file.reader.Next(next));
    }
}

TEST(SelectionFiles, SelFieldsNamesFormatsAndRecords) {
    ScopedLocale utf8;  // converted text comes out in UTF-8
    MemoryFile sel("Kopf\r\n4,7\r\n1,C,  Gr\x94\xE1" "e  ,CF10,x\r\n2,C,Preis,NN\r\n3,C,,C10\r\n4,C,Menge,CG\r\n"
                   "  a b  \r\n" + std::string(1200, 'y') + "\r\n\r\nM\x81nze\r\nnur eine\r\n");
    ImportFieldList fields;
    long records = 0;
    ASSERT_TRUE(ReadSelHeader(sel.reader, fields, records));
    EXPECT_EQ(records, 7);
    EXPECT_EQ(Described(fields), (Values{"Gr\xC3\xB6\xC3\x9F" "e:3", "Preis:10", "Unbenannt_2:10", "Menge:10"}));
    Values values;
    ASSERT_TRUE(ReadSelRecord(sel.reader, fields.size(), values));
    EXPECT_EQ(values, (Values{"a b", std::string(kSelValueLength, 'y'), "", "M\xC3\xBCnze"}));
    EXPECT_FALSE(ReadSelRecord(sel.reader, fields.size(), values)) << "the file ends inside the record";
}

// Pairs of prefixed fields (Ko_Name<n>, Ko_Nummer<n>) are read, not
// imported; a field per keyword takes the number of the pair whose name is
// that keyword (in any case); without a prefixed field nothing changes.
TEST(ContactConversion, KeywordFieldsTakeTheNumberOfTheirPair) {
    for (const auto &[name, digits] : {std::pair{"ko_name12", "12"}, {"Ko_Name100", ""}, {"Ko_Name", ""},
                                        {"Ko_Name1a", ""}, {"Ko_Nam1", ""}})
        EXPECT_EQ(PrefixedNumber(name, "Ko_Name"), digits) << name;

    ContactConversion conversion;
    conversion.on = true;
    conversion.keywords = SplitKeywords(",Handy,,Telefax,eMail");
    ImportFieldList fields;
    for (const char *name : {"Name", "Ko_Name100"}) AddImportField(fields, name);
    AddContactFields(fields, conversion);
    EXPECT_EQ(Described(fields), (Values{"Name:10", "Ko_Name100:10"}));
    EXPECT_FALSE(conversion.on);

    conversion.on = true;
    fields.clear();
    for (const char *name : {"Ko_Name1", "Ko_Nummer1", "Firma", "Ko_Name2", "Ko_Nummer2", "Ko_Name3", "Ko_Nummer3"})
        AddImportField(fields, name);
    AddContactFields(fields, conversion);  // the pairs' marks: ContactSettings
    ASSERT_EQ(fields.size(), 10u);
    const std::optional<std::string> values[] = {"handy", "0171 555", "x", "Pager", "0800", "eMail", std::nullopt};
    for (std::size_t i = 0; i < 7; ++i) fields[i].value = values[i];
    ConvertContacts(fields, conversion);
    EXPECT_EQ(fields[7].value, "0171 555");  // Handy, from pair 1 (any case)
    EXPECT_EQ(fields[8].value, std::nullopt);  // Telefax: no pair names it
    EXPECT_EQ(fields[9].value, std::nullopt);  // eMail: its number is empty
}

class ContactSettings : public PrivateRegistryTest {};

TEST_F(ContactSettings, ReadAtDiscoveryWithDefaults) {
    const std::string file = dir_ + "/kontakte.sdi";
    std::ofstream(file, std::ios::binary) << Sdi("NAME\r\nKo_Name1\r\nKo_Nummer1\r\nArt7\r\n", 4);
    const char *key = "Software\\Korvel Software\\Brano";
    ImportFieldList fields;
    ContactConversion conversion = ReadContactConversion();
    EXPECT_FALSE(conversion.on);
    ASSERT_TRUE(DiscoverSdiFields(file.c_str(), fields, conversion));
    EXPECT_EQ(fields.size(), 4u) << "off by default";

    Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, key, 0, "Settings", "TelFaxConverter", 1);
    conversion = ReadContactConversion();
    EXPECT_EQ(conversion.keywords, (Values{"Telefon", "Handy", "Telefax", "eMail", "Telefon_Privat"}));
    ASSERT_TRUE(DiscoverSdiFields(file.c_str(), fields, conversion));
    EXPECT_EQ(Described(fields), (Values{"NAME:10", "Ko_Name1:10-", "Ko_Nummer1:10-", "Art7:10", "Telefon:10",
                                         "Handy:10", "Telefax:10", "eMail:10", "Telefon_Privat:10"}));

    Korvel_WriteRegistryString(HKEY_CURRENT_USER, key, 0, "Settings", "FieldnamePrefix", "Art");
    Korvel_WriteRegistryString(HKEY_CURRENT_USER, key, 0, "Settings", "ContentsPrefix", "Nr");
    Korvel_WriteRegistryString(HKEY_CURRENT_USER, key, 0, "Settings", "FieldnameKeywords", "Mobil");
    conversion = ReadContactConversion();
    ASSERT_TRUE(DiscoverSdiFields(file.c_str(), fields, conversion));
    EXPECT_EQ(Described(fields), (Values{"NAME:10", "Ko_Name1:10", "Ko_Nummer1:10", "Art7:10-", "Mobil:10"}));
}

TEST_F(ContactSettings, HeaderErrorsAreShownWithTheFile) {
    MessageRecorder messages;
    const std::string sdi = dir_ + "/falsch.sdi", sel = dir_ + "/falsch.sel";
    std::ofstream(sdi, std::ios::binary) << "SEL\r\n";
    std::ofstream(sel, std::ios::binary) << "Kopf\r\n0,0\r\n";
    ImportFieldList fields;
    ContactConversion conversion;
    EXPECT_FALSE(DiscoverSdiFields(sdi.c_str(), fields, conversion));
    EXPECT_FALSE(DiscoverSelFields(sel.c_str(), fields));
    EXPECT_FALSE(DiscoverSelFields((dir_ + "/fehlt.sel").c_str(), fields));
    ASSERT_EQ(messages.entries().size(), 3u);
    EXPECT_EQ(messages.entries()[0].text,
              "Die Datei entspricht nicht den Konventionen einer Merrit for Windows Selektionsdatei (SDI-Datei).\n\n" +
                  sdi);
    EXPECT_EQ(messages.entries()[1].text,
              "Die Datei entspricht nicht den Konventionen f\xC3\xBCr eine Merrit Window Selektionsdatei "
              "(SEL-Datei).\n\n" + sel);
    EXPECT_EQ(messages.entries()[2].text, "Fehler beim \xC3\x96" "ffnen der Datei\n\n" + dir_ + "/fehlt.sel");
}

} // namespace
} // namespace kodbc::test
