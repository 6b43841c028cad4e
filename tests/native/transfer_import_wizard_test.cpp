// The import wizard's decisions without its windows: moved fields keep
// reading their own source column, the file page discovers fields again
// only when the format or the kind changed, and what it remembers.
#include "test_support.h"

#include "internal/library.h"
#include "transfer/import_wizard_state.h"

#include <kodbc_internal/message_ids.h>
#include <korvel/korvel32.h>

#include <fstream>

namespace kodbc::test {
namespace {

using namespace transfer;
using Names = std::vector<std::string>;

Names TargetNames(const ImportFieldList &fields) {
    Names names;
    for (const ImportField &field : fields) names.push_back(field.targetName);
    return names;
}

TEST(ImportWizardFields, MovedFieldsKeepTheirSourceColumn) {
    const struct {
        int from, to, moved;
        Names order;
    } cases[] = {
        {2, 0, 0, {"c", "a", "b"}}, {0, 2, 2, {"b", "c", "a"}}, {1, 1, -1, {"a", "b", "c"}},
        {0, 3, -1, {"a", "b", "c"}}, {-1, 0, -1, {"a", "b", "c"}},
    };
    for (const auto &c : cases) {
        ImportFieldList fields;
        for (const char *name : {"a", "b", "c"}) AddImportField(fields, name);
        EXPECT_EQ(MoveImportField(fields, c.from, c.to), c.moved) << c.from << "->" << c.to;
        EXPECT_EQ(TargetNames(fields), c.order);
        ASSERT_TRUE(SetRecordValues(fields, {"A", "B", "C"}, 3, ',', "", true));
        for (const ImportField &field : fields)
            EXPECT_EQ(field.value.value_or("-"), std::string(1, static_cast<char>(field.sourceName[0] - 'a' + 'A')));
    }
}

TEST(ImportWizardFields, FieldDialogTakesAKnownTypeAndAPositiveLength) {
    ImportField field;
    ImportFieldChoice choice{"Neu", KODBC_TYPE_FLOAT, "x12", false, true, false, true};
    EXPECT_TRUE(TakeImportFieldChoice(field, choice));
    EXPECT_EQ(field.targetName, "Neu");
    EXPECT_EQ(field.targetType, KODBC_TYPE_FLOAT);
    EXPECT_EQ(field.targetLength, kDefaultImportLength) << "not a number";
    EXPECT_FALSE(field.imported);
    EXPECT_TRUE(field.fileContent && field.autoIncrement && !field.noFileMessage);
    choice.length = "40";
    choice.type = 99;
    EXPECT_FALSE(TakeImportFieldChoice(field, choice)) << "a type outside the table";
    EXPECT_EQ(field.targetLength, kDefaultImportLength);
    choice.type = KODBC_TYPE_FIXED_TEXT;
    EXPECT_TRUE(TakeImportFieldChoice(field, choice));
    EXPECT_EQ(field.targetLength, 40);
}

class ImportWizardFilePage : public PrivateRegistryTest {
protected:
    std::string Setting(const char *name) {
        char text[300] = {};
        Korvel_ReadRegistryString(HKEY_CURRENT_USER, kKey, 0, kImportSection, name, "", text, sizeof text);
        return text;
    }
    MessageRecorder messages_;
};

TEST(ImportWizardFilters, EachKindOfFileIsChosenWithItsOwnFilter) {
    auto state = CreateImportWizardState(nullptr);
    ASSERT_TRUE(state);
    for (const auto &[kind, filter] :
         {std::pair{ImportSource::Text, "Alle Dateien (*.*)|*.*|Textdateien (*.txt)|*.txt|"},
          {ImportSource::Sdi, "Merrit-Windows Selektionsdateien (*.sdi)|*.sdi|"},
          {ImportSource::Sel, "Merrit 4.xx Selektionsdateien (*.sel)|*.sel|"}}) {
        state->kind = kind;
        char text[200] = {};
        LoadLibraryString(LibraryInstance(), ImportFileFilter(*state), text, sizeof text);
        EXPECT_STREQ(text, filter);
    }
}

TEST_F(ImportWizardFilePage, DiscoversAgainOnlyWhenFormatOrKindChanged) {
    const std::string text = dir_ + "/Kunden.liste.txt", sel = dir_ + "/k.sel";
    std::ofstream(text, std::ios::binary) << "a;b\r\n1;2\r\n";
    std::ofstream(sel, std::ios::binary) << "Kopf\r\n1,0\r\n1,C,s,C\r\n";
    auto state = CreateImportWizardState(nullptr);
    ASSERT_TRUE(state);
    state->kind = ImportSource::Text;
    state->format.delimiter = DelimiterChoice::Other;
    state->format.otherDelimiter = ";";

    EXPECT_TRUE(LeaveImportFilePage(*state, 2, "").goOn) << "backwards is never checked";
    EXPECT_EQ(LeaveImportFilePage(*state, 1, "").messageId, msg::SELECT_FILE);
    ASSERT_TRUE(LeaveImportFilePage(*state, 1, text).goOn);
    EXPECT_EQ(TargetNames(state->fields), (Names{"a", "b"}));
    EXPECT_EQ(state->tableName, "Kunden.liste");
    EXPECT_EQ(Setting("TextFile"), text);

    const struct {
        const char *what;
        ImportSource kind;
        DelimiterChoice delimiter;
        std::string file;
        Names names;
    } steps[] = {
        {"same format: the edit stays", ImportSource::Text, DelimiterChoice::Other, text, {"x", "b"}},
        {"other delimiter", ImportSource::Text, DelimiterChoice::Tab, text, {"a;b"}},
        {"other kind", ImportSource::Sel, DelimiterChoice::Tab, sel, {"s"}},
        {"back to the text file", ImportSource::Text, DelimiterChoice::Tab, text, {"a;b"}},
    };
    for (const auto &step : steps) {
        state->fields[0].targetName = "x";
        state->kind = step.kind;
        state->format.delimiter = step.delimiter;
        EXPECT_TRUE(LeaveImportFilePage(*state, 1, step.file).goOn) << step.what;
        EXPECT_EQ(TargetNames(state->fields), step.names) << step.what;
    }
    EXPECT_EQ(Setting("SelFile"), sel);
    EXPECT_EQ(state->tableName, "Kunden.liste") << "a name given is kept";

    // A file that cannot be read keeps the page and the fields.
    EXPECT_FALSE(LeaveImportFilePage(*state, 1, dir_ + "/fehlt.txt").goOn);
    EXPECT_EQ(TargetNames(state->fields), (Names{"a;b"}));
    EXPECT_FALSE(messages_.entries().empty());
}

} // namespace
} // namespace kodbc::test
