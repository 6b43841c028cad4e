#include "select/selfact.h"

#include "internal/db_capabilities.h"
#include "internal/library.h"

#include <kodbc/kodbc_connect.h>
#include <kodbc/kodbc_exec.h>
#include <kodbc/kodbc_seldesc.h>
#include <kodbc/kodbc_sqltext.h>

#include <memory>
#include <strings.h>

namespace kodbc::select {
namespace {

constexpr std::size_t kFieldLimit = 999;  // a line and a field of a descriptor, when read
constexpr std::size_t kPartSize = 10000;  // each part of the statement
constexpr int kStatementSize = 10000;
constexpr int kNameSize = 300;
constexpr char kTestView[] = "__KORVEL_TEST__";

struct Key {
    int code;
    const char *key;
    const char *sql;
};
constexpr Key kJoins[] = {{1, "", ""}, {2, "LJ", "LEFT JOIN"}, {3, "IJ", "INNER JOIN"}, {4, "RJ", "RIGHT JOIN"}};
// The ordering operators stand mirrored on purpose: queries stored by the
// applications depend on it.
constexpr Key kOperators[] = {{1, "EQ", "="}, {2, "NE", "<>"}, {3, "GT", "<"},
                              {4, "GE", "<="}, {5, "LT", ">"}, {6, "LE", ">="}};

template <std::size_t N>
const Key &ByCode(const Key (&keys)[N], int code) {
    for (const Key &key : keys)
        if (key.code == code) return key;
    return keys[0];
}
template <std::size_t N>
int CodeOf(const Key (&keys)[N], const SelFact::Text &text) {
    if (text)
        for (const Key &key : keys)
            if (*key.key && strcasecmp(key.key, text->c_str()) == 0) return key.code;
    return 1;
}

std::vector<std::string> Split(std::string_view text, char separator, std::size_t limit) {
    std::vector<std::string> pieces;
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find(separator, start);
        if (end == std::string_view::npos) end = text.size();
        pieces.emplace_back(text.substr(start, std::min(end - start, limit)));
        start = end + 1;
    }
    return pieces;
}

// The fields of every line that holds any; an empty field is absent.
std::vector<std::vector<SelFact::Text>> ReadLines(const char *text, std::size_t fields) {
    std::vector<std::vector<SelFact::Text>> lines;
    if (!text || !*text) return lines;
    for (const std::string &line : Split(text, '\n', kFieldLimit)) {
        if (line.empty()) continue;
        std::vector<SelFact::Text> values(fields);
        const std::vector<std::string> pieces = Split(line, '\t', kFieldLimit);
        for (std::size_t i = 0; i < fields && i < pieces.size(); ++i)
            if (!pieces[i].empty()) values[i] = pieces[i];
        lines.push_back(std::move(values));
    }
    return lines;
}

std::string Or(const SelFact::Text &text) { return text ? *text : std::string(); }

void AppendLine(std::string &out, std::initializer_list<std::string> fields) {
    if (!out.empty()) out += '\n';
    bool first = true;
    for (const std::string &field : fields) {
        if (!first) out += '\t';
        out += field;
        first = false;
    }
}

std::string Bounded(std::string text) {
    if (text.size() > kPartSize - 1) text.resize(kPartSize - 1);
    return text;
}

std::string ColumnText(const SelFact &query) {
    std::string text;
    for (const SelFact::Column &column : query.columns) {
        if (!text.empty()) text += ", ";
        text += Or(column.expression);
        if (column.alias && !column.alias->empty()) text += " AS " + *column.alias;
    }
    return Bounded(text);
}

std::string TableText(const SelFact &query) {
    std::string text;
    bool first = true;
    for (const SelFact::Table &table : query.tables) {
        const bool joined = table.joinType >= 2 && table.joinType <= 4;
        if (!first) text += joined ? " " : ", ";
        first = false;
        if (joined) text += std::string(ByCode(kJoins, table.joinType).sql) + " ";
        text += Or(table.name);
        if (table.alias && !table.alias->empty()) text += " AS " + *table.alias;
        if (joined)
            text += " ON " + Or(table.first) + " " + ByCode(kOperators, table.joinOperator).sql + " " + Or(table.second);
    }
    return Bounded(text);
}

std::string WhereText(const SelFact &query) {
    // Access views take the wildcard of its own query language.
    const bool star = (query.flags & SELFACT_VIEW) && Kodbc_GetDatabaseType(query.hdbc) == KODBC_DBTYPE_ACCESS;
    auto where = std::make_unique<char[]>(kPartSize);
    if (Kodbc_SelDesc_To_WhereClause_Expanded(query.hdbc, query.selection.c_str(), where.get(),
                                              static_cast<int>(kPartSize), star ? "*_''" : "%_''") != 0)
        return {};
    return where.get();
}

std::string SortText(const SelFact &query) {
    std::string text;
    for (const SelFact::Sort &sort : query.sorts) {
        if (!text.empty()) text += ", ";
        text += Or(sort.column);
        if (sort.direction && strcasecmp(sort.direction->c_str(), "ASC") != 0) text += " " + *sort.direction;
    }
    return Bounded(text);
}

std::string Format(SQLHDBC hdbc, const char *sqlTemplate, const char *a, const char *b, const char *c) {
    char text[kNameSize] = {};
    Kodbc_SprintfSqlStatement(hdbc, text, sizeof text, sqlTemplate, a, b, c, nullptr, nullptr, nullptr, nullptr,
                              nullptr);
    return text;
}

} // namespace

void SetSelFactDescriptor(SelFact &query, int part, const char *text) {
    switch (part) {
    case SELFACT_TABLES:
        query.tables.clear();
        for (auto &line : ReadLines(text, 6))
            AppendEntry(query.tables,
                        {line[0], line[1], CodeOf(kJoins, line[2]), CodeOf(kOperators, line[3]), line[4], line[5]});
        break;
    case SELFACT_COLUMNS:
        query.columns.clear();
        for (auto &line : ReadLines(text, 2)) AppendEntry(query.columns, {line[0], line[1]});
        break;
    case SELFACT_SORT:
        query.sorts.clear();
        for (auto &line : ReadLines(text, 2)) AppendEntry(query.sorts, {line[0], line[1]});
        break;
    case SELFACT_SELECTION: query.selection = text ? text : ""; break;
    default: break;
    }
}

std::string SelFactDescriptor(const SelFact &query, int part) {
    std::string out;
    switch (part) {
    case SELFACT_TABLES:
        for (const SelFact::Table &table : query.tables)
            AppendLine(out, {Or(table.name), Or(table.alias), ByCode(kJoins, table.joinType).key,
                             ByCode(kOperators, table.joinOperator).key, Or(table.first), Or(table.second)});
        break;
    case SELFACT_COLUMNS:
        for (const SelFact::Column &column : query.columns) AppendLine(out, {Or(column.expression), Or(column.alias)});
        break;
    case SELFACT_SORT:
        for (const SelFact::Sort &sort : query.sorts) AppendLine(out, {Or(sort.column), Or(sort.direction)});
        break;
    case SELFACT_SELECTION: out = query.selection; break;
    default: break;
    }
    return out;
}

std::string SelFactSql(const SelFact &query) {
    std::string sql = "SELECT";
    if (const std::string columns = ColumnText(query); !columns.empty()) sql += " " + columns;
    if (const std::string tables = TableText(query); !tables.empty()) sql += " FROM " + tables;
    if (const std::string where = WhereText(query); !where.empty()) sql += " WHERE " + where;
    if (const std::string sort = SortText(query); !sort.empty()) sql += " ORDER BY " + sort;
    return sql;
}

int TestSelFact(const SelFact &query) {
    std::string sql = SelFactSql(query);
    if (sql.size() > kStatementSize - 1) sql.resize(kStatementSize - 1);
    if (!(query.flags & SELFACT_VIEW)) return OdbcEh_PerformSqlStatement(nullptr, query.hdbc, sql.c_str(), nullptr);
    const std::string view = Format(query.hdbc, "%t%.%t", query.schema.c_str(), kTestView, nullptr);
    const std::string create = "CREATE VIEW " + view + " AS " + sql;
    if (OdbcEh_PerformSqlStatement(nullptr, query.hdbc, create.c_str(), nullptr) != KODBC_SUCCESS) return KODBC_FAILURE;
    const char *drop = tabledesign::DropViewStatement(tabledesign::CapabilitiesOf(query.hdbc));
    const std::string dropSql = Format(query.hdbc, "%s %t%.%t", drop, query.schema.c_str(), kTestView);
    OdbcEh_PerformSqlStatement(nullptr, query.hdbc, dropSql.c_str(), "*");
    return KODBC_SUCCESS;
}

int CheckSelFact(const SelFact &query) {
    if (query.tables.empty()) return msg::SELECT_TABLE;
    if (query.tables.front().joinType != 1) return msg::FIRST_TABLE_JOINED;
    for (std::size_t i = 1; i < query.tables.size(); ++i)
        if (query.tables[i].joinType == 1) return msg::OTHER_TABLES_NOT_JOINED;
    if (query.columns.empty()) return msg::SELECT_COLUMN;
    for (const SelFact::Table &table : query.tables)
        if (table.joinType != 1 && (!table.first || !table.second)) return msg::JOIN_OPERANDS_REQUIRED;
    return 0;
}

} // namespace kodbc::select
