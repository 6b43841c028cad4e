// WHERE generation for a full selection-editor descriptor (eight rows in
// four groups, every kind of value conversion), per call: the text rules
// alone, the export without a connection, and the export asking a SQLite
// driver for its quote text. Baseline: copying the descriptor's bytes.
#include "select/seldesc.h"

#include "bench_support.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

const std::string kDescriptor =
    "Ort\tBW\tBer\t12\n"
    "Umsatz\tGT\t1.000,5\t8\n"
    "Kunden Nr\tIL\t4;7;9;12;15\t4\n"
    "Liefer Datum\tGE\t15.3.2024\t9\n"
    "Name\tCT\tmann\t12\n"
    "\v"
    "Plz\tEQF\tLiefer Plz\t12\n"
    "\v"
    "Bemerkung\tIN\t\t-1\n"
    "\v"
    "Ort\tIL\tBerlin;Bonn;Bremen\t12\n"
    "\v";

void BM_Baseline_CopyDescriptor(benchmark::State &state) {
    char out[2000];
    for (auto _ : state) {
        std::memcpy(out, kDescriptor.c_str(), kDescriptor.size() + 1);
        benchmark::DoNotOptimize(out);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_Baseline_CopyDescriptor);

void BM_SelDesc_WhereTextRules(benchmark::State &state) {
    char out[2000];
    for (auto _ : state) {
        kodbc::sqltext::QuoteText quote = kodbc::sqltext::QuoteText::Fixed("\"");
        kodbc::seldesc::BuildWhereClause(quote, kDescriptor.c_str(), out, sizeof out,
                                         kodbc::seldesc::kDefaultPatternChars);
        benchmark::DoNotOptimize(out);
    }
    state.counters["length"] = static_cast<double>(std::strlen(out));
}
BENCHMARK(BM_SelDesc_WhereTextRules);

void BM_Kodbc_SelDesc_To_WhereClause_NoConnection(benchmark::State &state) {
    char out[2000];
    for (auto _ : state) {
        Kodbc_SelDesc_To_WhereClause(nullptr, kDescriptor.c_str(), out, sizeof out);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(BM_Kodbc_SelDesc_To_WhereClause_NoConnection);

void BM_Kodbc_SelDesc_To_WhereClause_Sqlite(benchmark::State &state) {
    kodbc::bench::Connection connection;
    char out[2000];
    for (auto _ : state) {
        Kodbc_SelDesc_To_WhereClause(connection.hdbc, kDescriptor.c_str(), out, sizeof out);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(BM_Kodbc_SelDesc_To_WhereClause_Sqlite);

} // namespace

int main(int argc, char **argv) {
    kodbc::bench::Quiet();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
