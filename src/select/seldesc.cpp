// Operator tables and the WHERE / SET generators over descriptor text.
#include "select/seldesc.h"

#include <kodbc/kodbc_seldesc.h>
#include <kodbc_internal/message_ids.h>
#include <korvel/korvel32.h>

#include <cstring>
#include <memory>
#include <new>

namespace kodbc::seldesc {
namespace {

// Box order is table order: the operator boxes list the entries as they
// stand here.
constexpr OpDescOperator kSelectionOperators[] = {
    {OPDESC_OP_BEGINS_WITH, "BW", 0, msg::OP_BEGINS_WITH},
    {OPDESC_OP_CONTAINS, "CT", 0, msg::OP_CONTAINS},
    {OPDESC_OP_EMPTY, "IN", OPF_NOVALUE, msg::OP_EMPTY},
    {OPDESC_OP_NOT_EMPTY, "NN", OPF_NOVALUE, msg::OP_NOT_EMPTY},
    {OPDESC_OP_EQUAL, "EQ", OPF_TYPEDVALUE, msg::OP_EQUAL},
    {OPDESC_OP_NOT_EQUAL, "NE", OPF_TYPEDVALUE, msg::OP_NOT_EQUAL},
    {OPDESC_OP_GREATER, "GT", OPF_TYPEDVALUE, msg::OP_GREATER},
    {OPDESC_OP_GREATER_EQUAL, "GE", OPF_TYPEDVALUE, msg::OP_GREATER_EQUAL},
    {OPDESC_OP_LESS, "LT", OPF_TYPEDVALUE, msg::OP_LESS},
    {OPDESC_OP_LESS_EQUAL, "LE", OPF_TYPEDVALUE, msg::OP_LESS_EQUAL},
    {OPDESC_OP_IN_LIST, "IL", OPF_LISTVALUE, msg::OP_IN_LIST},
    {OPDESC_OP_EQUAL_FIELD, "EQF", OPF_FIELDVALUE, msg::OP_EQUAL_FIELD},
    {OPDESC_OP_NOT_EQUAL_FIELD, "NEF", OPF_FIELDVALUE, msg::OP_NOT_EQUAL_FIELD},
    {OPDESC_OP_GREATER_FIELD, "GTF", OPF_FIELDVALUE, msg::OP_GREATER_FIELD},
    {OPDESC_OP_GREATER_EQUAL_FIELD, "GEF", OPF_FIELDVALUE, msg::OP_GREATER_EQUAL_FIELD},
    {OPDESC_OP_LESS_FIELD, "LTF", OPF_FIELDVALUE, msg::OP_LESS_FIELD},
    {OPDESC_OP_LESS_EQUAL_FIELD, "LEF", OPF_FIELDVALUE, msg::OP_LESS_EQUAL_FIELD},
    {0, nullptr, 0, 0},
};

constexpr OpDescOperator kAssignmentOperators[] = {
    {OPDESC_OP_SET_NULL, "SNU", OPF_NOVALUE, msg::ASSIGN_CLEAR},
    {OPDESC_OP_SET_CONSTANT, "SCO", OPF_TYPEDVALUE, msg::ASSIGN_FIXED_VALUE},
    {OPDESC_OP_SET_FIELD, "SFI", OPF_FIELDVALUE, msg::ASSIGN_FIELD_CONTENT},
    {OPDESC_OP_SET_FORMULA, "SFO", 0, msg::ASSIGN_FORMULA},
    {0, nullptr, 0, 0},
};

std::string_view Keep(std::string_view text, std::size_t chars) { return text.substr(0, chars); }

enum class Treatment { Numeric, Date, Text };

Treatment TreatmentOf(int sqlType) {
    switch (sqlType) {
    case SQL_TINYINT: case SQL_BIGINT: case SQL_NUMERIC: case SQL_DECIMAL: case SQL_INTEGER:
    case SQL_SMALLINT: case SQL_FLOAT: case SQL_REAL: case SQL_DOUBLE:
        return Treatment::Numeric;
    case SQL_DATE: case SQL_TIMESTAMP:  // the ODBC 2 codes 9 and 11 only
        return Treatment::Date;
    default:
        return Treatment::Text;
    }
}

// A name prepared for the driver; an empty text when it could not be.
void AppendIdentifier(sqltext::QuoteText &quote, std::string_view name, korvel::BoundedText &out) {
    char source[kValueChars + 1];
    std::size_t n = name.copy(source, kValueChars);
    source[n] = '\0';
    char prepared[kConditionSize];
    if (!sqltext::PrepareSql92Name(quote, source, prepared, sizeof prepared)) prepared[0] = '\0';
    out.append(prepared);
}

// The value side of a line as its operator's flags ask for it.
void AppendPreparedValue(sqltext::QuoteText &quote, const OpDescOperator &op, const Line &line,
                         korvel::BoundedText &out) {
    if (op.flags & OPF_FIELDVALUE) AppendIdentifier(quote, line.value, out);
    else if (op.flags & OPF_TYPEDVALUE) AppendTypedValue(line.value, line.dataType, out);
    else if (op.flags & OPF_LISTVALUE) AppendListValue(line.value, line.dataType, out);
    else out.append(line.value);
}

bool Contributes(const OpDescOperator *op, const Line &line) {
    return op && !line.field.empty() && (!line.value.empty() || (op->flags & OPF_NOVALUE));
}

} // namespace

int ParseDataType(std::string_view text) noexcept {
    std::size_t i = 0;
    bool negative = false;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
    long value = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        if (value < 100000000) value = value * 10 + (text[i] - '0');
    }
    return static_cast<int>(negative ? -value : value);
}

const OpDescOperator *OperatorTable(int kind) noexcept {
    if (kind == OPDESC_SELECTION) return kSelectionOperators;
    if (kind == OPDESC_ASSIGNMENT) return kAssignmentOperators;
    return nullptr;
}

const OpDescOperator *FindByKeyword(const OpDescOperator *table, std::string_view keyword) noexcept {
    for (; table && table->code != 0; ++table)
        if (keyword == table->keyword) return table;
    return nullptr;
}

const OpDescOperator *FindByCode(const OpDescOperator *table, std::uint32_t code) noexcept {
    for (; table && table->code != 0; ++table)
        if (table->code == code) return table;
    return nullptr;
}

Line SplitLine(std::string_view line) noexcept {
    std::string_view parts[4];
    for (int i = 0; i < 4; ++i) {
        std::size_t cut = line.find(kFieldSeparator);
        parts[i] = line.substr(0, cut);
        if (cut == std::string_view::npos) break;
        line.remove_prefix(cut + 1);
    }
    return Line{Keep(parts[0], kFieldChars), parts[1], Keep(parts[2], kValueChars), ParseDataType(parts[3])};
}

void AppendTypedValue(std::string_view value, int sqlType, korvel::BoundedText &out) noexcept {
    switch (TreatmentOf(sqlType)) {
    case Treatment::Numeric:
        // German input: "," is the decimal mark, "." only groups thousands.
        for (char c : value) {
            if ((c >= '0' && c <= '9') || c == '+' || c == '-') out.append(c);
            else if (c == ',') out.append('.');
        }
        break;
    case Treatment::Date: {
        char text[kListItemChars + 1];
        std::size_t n = value.copy(text, kListItemChars);
        text[n] = '\0';
        // An unreadable date keeps the zero record, so the statement fails
        // visibly at the database instead of matching some other day.
        KorvelDate date{};
        Korvel_StringToDate(text, &date);
        char constant[64];
        Korvel_DateToOdbcDate(&date, constant, sizeof constant);
        out.append(constant);
        break;
    }
    case Treatment::Text:
        out.append('\'');
        out.append(value);
        out.append('\'');
        break;
    }
}

void AppendListValue(std::string_view value, int sqlType, korvel::BoundedText &out) noexcept {
    bool first = true;
    while (!value.empty()) {
        std::size_t cut = value.find(';');
        if (!first) out.append(',');
        first = false;
        AppendTypedValue(Keep(value.substr(0, cut), kListItemChars), sqlType, out);
        if (cut == std::string_view::npos) break;
        value.remove_prefix(cut + 1);  // a ";" at the very end opens no item
    }
}

void BuildCondition(sqltext::QuoteText &quote, std::string_view text, const char pattern[4], char *out,
                    int size) noexcept {
    korvel::BoundedText condition(out, size);
    Line line = SplitLine(text);
    const OpDescOperator *op = FindByKeyword(kSelectionOperators, line.keyword);
    if (!Contributes(op, line)) return;

    char field[kConditionSize];
    korvel::BoundedText f(field, sizeof field);
    AppendIdentifier(quote, line.field, f);
    // Room for a full list of quoted items; the condition is cut anyway.
    char value[4 * kConditionSize];
    korvel::BoundedText v(value, sizeof value);
    AppendPreparedValue(quote, *op, line, v);

    const char open = pattern[2], close = pattern[3], many = pattern[0];
    auto appendChar = [&](char c) {
        if (c) condition.append(c);
    };
    // The texts, with their irregular spacing, are what existing
    // applications compare and log; they stay exactly as they are.
    const char *format = nullptr;
    switch (op->code) {
    case OPDESC_OP_BEGINS_WITH:
    case OPDESC_OP_CONTAINS:
        // LIKE takes the value raw: a "%" or "_" the user typed is a wildcard.
        condition.append(field);
        condition.append(" LIKE ");
        appendChar(open);
        if (op->code == OPDESC_OP_CONTAINS) appendChar(many);
        condition.append(value);
        appendChar(many);
        appendChar(close);
        return;
    case OPDESC_OP_EMPTY: format = "%s IS NULL"; break;
    case OPDESC_OP_NOT_EMPTY: format = "%s IS NOT NULL"; break;
    case OPDESC_OP_EQUAL: case OPDESC_OP_EQUAL_FIELD: format = "%s=%s"; break;
    case OPDESC_OP_NOT_EQUAL: case OPDESC_OP_NOT_EQUAL_FIELD: format = "NOT %s = %s"; break;
    case OPDESC_OP_GREATER: case OPDESC_OP_GREATER_FIELD: format = "%s > %s"; break;
    case OPDESC_OP_GREATER_EQUAL: case OPDESC_OP_GREATER_EQUAL_FIELD: format = "%s >= %s"; break;
    case OPDESC_OP_LESS: case OPDESC_OP_LESS_FIELD: format = "%s < %s"; break;
    case OPDESC_OP_LESS_EQUAL: case OPDESC_OP_LESS_EQUAL_FIELD: format = "%s <= %s"; break;
    case OPDESC_OP_IN_LIST: format = "%s IN (%s)"; break;
    default: return;
    }
    // Every format has the field first and, where it has one, the value
    // second; each "%s" is filled in order.
    std::string_view rest(format);
    const char *args[2] = {field, value};
    int next = 0;
    for (std::size_t at; (at = rest.find("%s")) != std::string_view::npos;) {
        condition.append(rest.substr(0, at));
        condition.append(args[next++ & 1]);
        rest.remove_prefix(at + 2);
    }
    condition.append(rest);
}

void BuildWhereClause(sqltext::QuoteText &quote, const char *selDesc, char *where, int whereSize,
                      const char pattern[4]) noexcept {
    korvel::BoundedText out(where, whereSize);
    if (!selDesc) return;
    // Without the working buffer no group can be built: the clause stays empty.
    std::unique_ptr<char[]> groupBuffer(new (std::nothrow) char[kGroupSize]);
    if (!groupBuffer) return;
    char condition[kConditionSize];
    bool anyGroup = false;
    ForEachGroup(selDesc, [&](std::string_view groupText) {
        korvel::BoundedText group(groupBuffer.get(), kGroupSize);
        group.append('(');
        bool anyCondition = false;
        ForEachLine(groupText, [&](std::string_view line) {
            BuildCondition(quote, line, pattern, condition, sizeof condition);
            std::string_view text(condition);
            if (text.empty()) return true;
            // " AND " needs six bytes with its terminator; a condition that
            // does not fit is dropped even when its separator was written.
            if (anyCondition && group.room() >= 5) group.append(" AND ");
            if (group.append_if_fits(text)) anyCondition = true;
            return true;
        });
        if (!anyCondition) return true;
        if (group.room() >= 1) group.append(')');
        if (anyGroup && out.room() >= 5) out.append(" OR ");
        if (out.append_if_fits(group.view())) anyGroup = true;
        return true;
    });
}

void BuildSetClause(sqltext::QuoteText &quote, const char *setDesc, char *set, int setSize) noexcept {
    korvel::BoundedText out(set, setSize);
    if (!setDesc) return;
    std::string_view descriptor(setDesc);
    std::string_view first = descriptor.substr(0, descriptor.find(kGroupSeparator));
    ForEachLine(first, [&](std::string_view text) {
        Line line = SplitLine(text);
        const OpDescOperator *op = FindByKeyword(kAssignmentOperators, line.keyword);
        if (!Contributes(op, line)) return true;
        if (out.length() != 0) out.append(',');
        AppendIdentifier(quote, line.field, out);
        out.append('=');
        if (op->code == OPDESC_OP_SET_NULL) {
            out.append("NULL");
        } else {
            char buffer[4 * kConditionSize];
            korvel::BoundedText value(buffer, sizeof buffer);
            AppendPreparedValue(quote, *op, line, value);
            out.append(value.view());
        }
        return true;
    });
}

void ReadPatternChars(const char *given, char pattern[4]) noexcept {
    if (!given) {
        std::memcpy(pattern, kDefaultPatternChars, 4);
        return;
    }
    std::size_t n = strnlen(given, 4);
    for (std::size_t i = 0; i < 4; ++i) pattern[i] = i < n ? given[i] : '\0';
}

} // namespace kodbc::seldesc
