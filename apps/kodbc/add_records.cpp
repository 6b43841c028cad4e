// kodbc add-records: the add-records wizard's work from the command line.
#include "commands.h"
#include "terminal.h"

#include <cstdio>

namespace kodbc_cli {
namespace {

// "left<sep>right" with both sides non-empty.
bool Split(const std::string &text, char separator, std::string &left, std::string &right) {
    std::size_t at = text.find(separator);
    if (at == std::string::npos || at == 0 || at + 1 == text.size()) return false;
    left = text.substr(0, at);
    right = text.substr(at + 1);
    return true;
}

// A choice whose texts live as long as the request.
struct Choice {
    std::string field, value;
    int mode;
};

} // namespace

int AddRecords(const Login &login, const AddRecordsRequest &request) {
    std::string sourceDsn, sourceTable;
    if (!Split(request.from, ':', sourceDsn, sourceTable)) {
        Error("--from erwartet DATENQUELLE:TABELLE");
        return kExitUsage;
    }
    std::vector<Choice> choices;
    for (const std::string &map : request.maps) {
        Choice c{"", "", KODBC_FILL_SOURCE_FIELD};
        if (!Split(map, '=', c.field, c.value)) {
            Error("--map erwartet ZIELFELD=QUELLFELD: " + map);
            return kExitUsage;
        }
        choices.push_back(c);
    }
    for (const std::string &value : request.values) {
        std::size_t at = value.find('=');
        if (at == std::string::npos || at == 0) {
            Error("--value erwartet ZIELFELD=TEXT: " + value);
            return kExitUsage;
        }
        choices.push_back({value.substr(0, at), value.substr(at + 1), KODBC_FILL_FIXED_VALUE});
    }
    for (const std::string &field : request.empties) choices.push_back({field, "", KODBC_FILL_LEAVE_EMPTY});
    std::string destId, sourceId;
    if (!request.replaceOn.empty() && !Split(request.replaceOn, '=', destId, sourceId)) {
        Error("--replace-on erwartet ZIELFELD=QUELLFELD");
        return kExitUsage;
    }

    Connection destination(request.dsn, login.user, login.password);
    if (!destination.ok()) return kExitFailed;
    // All or nothing, on the tool's own connection.
    const bool batch = !request.perRecord && destination.AutoCommitOff();
    // The source has a connection of its own; the library reads it on the
    // destination's where that one can serve both sides.
    Connection other(sourceDsn, login.user, login.password);
    if (!other.ok()) return kExitFailed;
    SQLHDBC source = other.hdbc();

    std::vector<KodbcAddRecordsField> fields;
    for (const Choice &c : choices) fields.push_back({c.field.c_str(), c.mode, c.value.c_str()});
    KodbcAddRecordsOptions options{};
    options.RecordMode = (request.replaceOn.empty() ? KODBC_ADDREC_ADD : KODBC_ADDREC_REPLACE) |
                         (batch ? KODBC_ADDREC_BATCH : 0);
    options.SourceIdField = sourceId.c_str();
    options.DestIdField = destId.c_str();
    options.Fields = fields.data();
    options.FieldCount = static_cast<int32_t>(fields.size());
    KodbcAddRecordsResult result{};
    int rc = Kodbc_AddRecords(destination.hdbc(), request.table.c_str(), source, sourceTable.c_str(), &options,
                              &result);
    if (rc == KODBC_ADDREC_REFUSED_CHOICE) {
        Error("das Zielfeld '" + choices[static_cast<std::size_t>(result.RefusedField)].field +
              "' kann so nicht gefüllt werden (unbekannt, schreibgeschützt oder Quellfeld unbekannt)");
        return kExitFailed;
    }
    if (rc != KODBC_SUCCESS) return kExitFailed;
    std::printf("%ld Datensätze gelesen, %ld geschrieben\n", result.RecordsRead, result.RecordsWritten);
    std::fflush(stdout);
    NoteCutValues(result.ValuesCut, "29999 Bytes");
    NoteChangedNumbers(result.NumbersChanged, "Datensatz " + std::to_string(result.FirstNumberRecord),
                       result.FirstNumberField, result.FirstNumber, result.FirstNumberAs);
    // A batch run that ended early has said that it took everything back.
    const char *kept = batch ? "alles wurde zurückgenommen, kein Datensatz bleibt erhalten"
                             : "die geschriebenen Datensätze bleiben erhalten";
    if (result.Ended == KODBC_ADDREC_CANCELLED) {
        Error(std::string("abgebrochen; ") + kept);
        return kExitFailed;
    }
    if (result.Ended == KODBC_ADDREC_STOPPED) {
        Error(std::string("nach einem Fehler beendet; ") + kept);
        return kExitFailed;
    }
    return kExitOk;
}

} // namespace kodbc_cli
