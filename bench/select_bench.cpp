// Cost per call of the SELECT scanner on a statement of 2,000 characters:
// the three scans, clause extraction and the four replacements. Baseline:
// one pass over the same text that only skips quotes and counts commas at
// depth 0, the least any scanner has to do; the ratio is what the clause
// rules add. The scan with a connection adds the one driver query.
#include "bench_support.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

// SELECT with 60 columns (some aliased), 6 tables, a WHERE with a subquery
// and quoted constants, and an ORDER BY of 20 keys; padded to 2,000.
std::string Statement() {
    std::string s = "SELECT ";
    for (int i = 0; i < 60; ++i) {
        if (i) s += ", ";
        s += "t" + std::to_string(i % 6) + ".spalte_" + std::to_string(i);
        if (i % 3 == 0) s += " AS alias_" + std::to_string(i);
    }
    s += " FROM kunden t0, auftraege t1, OUTER positionen t2, artikel t3, lager t4, orte t5";
    s += " WHERE t0.nr = t1.kunde AND t1.nr IN (SELECT auftrag FROM positionen WHERE menge > 10)";
    s += " AND t5.name <> 'FROM (ORDER, BY)' ORDER BY ";
    for (int i = 0; i < 20; ++i) {
        if (i) s += ", ";
        s += "spalte_" + std::to_string(i) + (i % 2 ? " DESC" : "");
    }
    while (s.size() < 2000) s += " ";
    s.resize(2000);
    return s;
}

const std::string &Text() {
    static const std::string text = Statement();
    return text;
}

void Baseline_OnePass(benchmark::State &state) {
    const std::string &text = Text();
    for (auto _ : state) {
        int commas = 0, depth = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            char c = text[i];
            if (c == '\'') {
                std::size_t e = text.find('\'', i + 1);
                i = e == std::string::npos ? text.size() : e;
            } else if (c == '(') {
                ++depth;
            } else if (c == ')') {
                --depth;
            } else if (c == ',' && depth == 0) {
                ++commas;
            }
        }
        benchmark::DoNotOptimize(commas);
    }
}
BENCHMARK(Baseline_OnePass);

void Scan_Fields(benchmark::State &state) {
    char out[4000];
    for (auto _ : state) benchmark::DoNotOptimize(Kodbc_Select_Scan_FieldsClause(Text().c_str(), ",", 0, out, sizeof out));
}
BENCHMARK(Scan_Fields);

void Scan_Tables(benchmark::State &state) {
    char out[4000];
    for (auto _ : state) benchmark::DoNotOptimize(Kodbc_Select_Scan_TablesClause(Text().c_str(), ",", 0, out, sizeof out));
}
BENCHMARK(Scan_Tables);

void Scan_OrderBy(benchmark::State &state) {
    char out[4000];
    for (auto _ : state)
        benchmark::DoNotOptimize(Kodbc_SelectScanOrderByClause(nullptr, Text().c_str(), ",", 6, out, sizeof out));
}
BENCHMARK(Scan_OrderBy);

void Get_WhereClause(benchmark::State &state) {
    char out[4000];
    for (auto _ : state) benchmark::DoNotOptimize(Kodbc_Select_Get_Clause(Text().c_str(), "WHERE", nullptr, out, sizeof out));
}
BENCHMARK(Get_WhereClause);

template <typename Replace>
void RunReplace(benchmark::State &state, Replace replace, const char *clause) {
    char statement[8000];
    for (auto _ : state) {
        std::memcpy(statement, Text().c_str(), Text().size() + 1);
        benchmark::DoNotOptimize(replace(statement, static_cast<int>(sizeof statement), clause));
    }
}

void Replace_Fields(benchmark::State &state) {
    RunReplace(state, [](char *s, int n, const char *c) { return Kodbc_Select_Replace_FieldsClause(s, n, c, 0); },
               "a, b AS x, c");
}
BENCHMARK(Replace_Fields);

void Replace_Tables(benchmark::State &state) {
    RunReplace(state, [](char *s, int n, const char *c) { return Kodbc_Select_Replace_TablesClause(s, n, c, 0); },
               "kunden k, orte o");
}
BENCHMARK(Replace_Tables);

void Replace_OrderBy(benchmark::State &state) {
    RunReplace(state, [](char *s, int n, const char *c) { return Kodbc_Select_Replace_OrderByClause(s, n, c, 0); },
               "a DESC, b");
}
BENCHMARK(Replace_OrderBy);

void Replace_Where(benchmark::State &state) {
    RunReplace(state, [](char *s, int n, const char *c) { return Kodbc_Select_Replace_WhereClause(s, n, c); },
               "x = 1 AND y IN (1, 2)");
}
BENCHMARK(Replace_Where);

// With a connection: the same field scan plus the quote character query.
using kodbc::bench::Connection;

void Scan_FieldsConnected(benchmark::State &state) {
    static Connection connection;
    char out[4000];
    for (auto _ : state)
        benchmark::DoNotOptimize(Kodbc_SelectScanFieldsClause(connection.hdbc, Text().c_str(), ",", 0, out, sizeof out));
}
BENCHMARK(Scan_FieldsConnected);

} // namespace

BENCHMARK_MAIN();
