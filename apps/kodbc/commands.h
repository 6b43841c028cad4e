// The tool's commands. Each returns an exit code (kExitOk, kExitFailed).
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kodbc_cli {

struct Login {
    std::string user;
    std::string password;
};

struct SelectOptions {
    std::string statement;
    std::string file;
    std::string fieldSeparator = "\t";
    std::string recordSeparator = "\n";
    unsigned flags = 0;       // KODBC_ROWSET_*
    long expectedRows = 0;    // for the progress bar; 0: counted first on a terminal
    bool csv = false;         // KODBC_ROWSET_CSV, each record ended by the record separator
    std::optional<std::string> nullText;  // --null
};

int ListDataSources();
int ShowInfo(const std::string &dsn, const Login &login);
int ListTables(const std::string &dsn, const Login &login);
int ListColumns(const std::string &dsn, const Login &login, const std::string &table);
int ListKeys(const std::string &dsn, const Login &login, const std::string &table);
// format: "" (a table with tabs), "csv" or "json".
int RunSql(const std::string &dsn, const Login &login, const std::string &statement, const std::string &format = "");
int SelectToFile(const std::string &dsn, const Login &login, const SelectOptions &options);
int QuoteNames(const std::string &dsn, const Login &login, const std::vector<std::string> &names);
int FormatStatement(const std::string &dsn, const Login &login, const std::string &sqlTemplate,
                    const std::vector<std::string> &args);
struct SystemTableRequest {
    std::string action;  // get, set, delete
    std::string object, type, item, value;
};

int CountRecords(const std::string &dsn, const Login &login, const std::string &table, const std::string &whereFile);
int PrintWhere(const std::string &dsn, const Login &login, const std::string &descriptorFile);
// kodbc selmask read FILE | kodbc selmask write FILE --descriptor-file F
int PrintSelectionMask(const std::string &file);
int WriteSelectionMask(const std::string &file, const std::string &descriptorFile);
int SystemTable(const std::string &dsn, const Login &login, const SystemTableRequest &request);
int DeleteRecords(const std::string &dsn, const Login &login, const std::string &table,
                  const std::string &whereFile, bool assumeYes);
int UpdateRecords(const std::string &dsn, const Login &login, const std::string &table, const std::string &setFile,
                  const std::string &whereFile);
int DropTable(const std::string &dsn, const Login &login, const std::string &table, bool assumeYes);
int RenameTable(const std::string &dsn, const Login &login, const std::string &oldName, const std::string &newName);
// kodbc add-records DSN TABLE --from SOURCE_DSN:SOURCE_TABLE …
struct AddRecordsRequest {
    std::string dsn, table, from;
    std::vector<std::string> maps;     // DEST=SOURCE
    std::vector<std::string> values;   // DEST=TEXT
    std::vector<std::string> empties;  // DEST
    std::string replaceOn;             // DEST_FIELD=SOURCE_FIELD
    bool perRecord = false;            // one statement per record in auto-commit, as the wizard
};
int AddRecords(const Login &login, const AddRecordsRequest &request);
// kodbc create-table DSN [NAME] --kind autoinc|copy|address [--from TABLE]
int CreateTable(const std::string &dsn, const Login &login, const std::string &name, const std::string &kind,
                const std::string &from);
// kodbc alter DSN TABLE add-column NAME TYPE [LENGTH] | drop-column NAME... |
// add-autoinc NAME | add-pk COLUMN... | drop-pk
struct AlterRequest {
    std::string dsn, table, action, column, type;
    int length = 0;
    std::vector<std::string> columns;
};
int AlterTable(const Login &login, const AlterRequest &request);
// kodbc export DSN TABLE -f FILE …
struct ExportRequest {
    std::string dsn, table, file, whereFile;
    std::vector<std::string> fields;  // NAME or NAME=HEADING
    std::vector<std::string> skip;
    std::string delimiter = "tab";    // tab, blank or the text itself
    std::string decimalMark = "comma";  // comma, point or the character
    std::string brackets;             // "LR"
    bool ascii = false, noHeader = false;
    bool csv = false, germanDates = false;
    std::optional<std::string> nullText;  // --null
};
int ExportTable(const Login &login, const ExportRequest &request);
// kodbc import DSN FILE … | kodbc import DSN --from SOURCE_DSN:TABLE --table NAME
struct ImportRequest {
    std::string dsn, file, from, table;
    std::string kind = "text";          // text, sdi, sel
    std::string delimiter = "tab";      // tab, blank or the text itself
    std::string decimalMark = "comma";  // comma, point or the character
    std::string brackets;               // "LR"
    bool numberedNames = false, ascii = false, dryRun = false;
    bool perRecord = false;             // one INSERT per record in auto-commit, as the wizard
    std::vector<std::string> as;        // FIELD=NAME
    std::vector<std::string> types;     // FIELD=TYPE[:LENGTH]
    std::vector<std::string> skip;      // FIELD
    std::string autoinc;                // FIELD
    bool csv = false;
    std::optional<std::string> nullText;  // --null
};
int ImportData(const Login &login, const ImportRequest &request);
// kodbc query [DSN] --tables-file F [--columns-file F] [--where-file F] [--sort-file F] [--view] [--test]
struct QueryRequest {
    std::string schema;
    std::string tablesFile, columnsFile, whereFile, sortFile;  // descriptor files
    bool view = false, test = false;
};
int Query(const std::string &dsn, const Login &login, const QueryRequest &request);
// kodbc view create|drop|test|show DSN NAME [--sql TEXT | --sql-file F]
struct ViewRequest {
    std::string action, name, sql, sqlFile;
    QueryRequest design;  // schema and the design's descriptor files
    bool ifExists = false;
};
int View(const std::string &dsn, const Login &login, const ViewRequest &request);
// The data types by the names the dialogs show, the usual SQL names
// (VARCHAR, INTEGER, DOUBLE, TIMESTAMP, BLOB, ...) or their numbers; 0 for none.
int TypeCode(const std::string &name);
int RunDemo();

} // namespace kodbc_cli
