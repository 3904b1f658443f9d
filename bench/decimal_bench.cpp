#include "model/decimal.h"
#include "model/instant.h"
#include "model/money.h"

#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

// The money-file reader parses every amount and two dates per transaction from
// text; reports add up to a million amounts. These measure exactly those steps.

namespace {

// Amounts as a money file holds them: cents, whole dollars, an occasional third place.
std::vector<std::string> amountTexts(std::size_t n)
{
    std::mt19937_64 rng(42);
    std::vector<std::string> texts;
    texts.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
        const long long cents = static_cast<long long>(rng() % 2000000) - 500000;
        std::string text = std::to_string(cents / 100) + "." + std::to_string(std::abs(cents % 100) + 100).substr(1);
        if (cents < 0 && cents > -100)
            text = "-" + text;
        if (i % 7 == 0)
            text = std::to_string(cents / 100);
        if (i % 13 == 0)
            text += "5";
        texts.push_back(std::move(text));
    }
    return texts;
}

void BM_ParseAmounts(benchmark::State &state)
{
    const std::vector<std::string> texts = amountTexts(1000);
    for (auto _ : state)
        for (const std::string &text : texts)
            benchmark::DoNotOptimize(Decimal::fromString(std::string_view(text)));
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(texts.size()));
}
BENCHMARK(BM_ParseAmounts);

void BM_ParseAmountsQString(benchmark::State &state)
{
    std::vector<QString> texts;
    for (const std::string &text : amountTexts(1000))
        texts.push_back(QString::fromStdString(text));
    for (auto _ : state)
        for (const QString &text : texts)
            benchmark::DoNotOptimize(Decimal::fromString(text));
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(texts.size()));
}
BENCHMARK(BM_ParseAmountsQString);

void BM_SumMillionAmounts(benchmark::State &state)
{
    std::vector<Decimal> amounts;
    for (const std::string &text : amountTexts(1000000))
        amounts.push_back(*Decimal::fromString(std::string_view(text)));
    for (auto _ : state) {
        Decimal sum;
        for (const Decimal &amount : amounts)
            sum += amount;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(amounts.size()));
}
BENCHMARK(BM_SumMillionAmounts)->Unit(benchmark::kMillisecond);

void BM_WriteAmounts(benchmark::State &state)
{
    std::vector<Decimal> amounts;
    for (const std::string &text : amountTexts(1000))
        amounts.push_back(*Decimal::fromString(std::string_view(text)));
    for (auto _ : state)
        for (const Decimal &amount : amounts)
            benchmark::DoNotOptimize(amount.toStdString());
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(amounts.size()));
}
BENCHMARK(BM_WriteAmounts);

void BM_DivideAmounts(benchmark::State &state)
{
    const Decimal months(12);
    std::vector<Decimal> amounts;
    for (const std::string &text : amountTexts(1000))
        amounts.push_back(*Decimal::fromString(std::string_view(text)));
    for (auto _ : state)
        for (const Decimal &amount : amounts)
            benchmark::DoNotOptimize((amount / months).rounded2());
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(amounts.size()));
}
BENCHMARK(BM_DivideAmounts);

void BM_ParseIsoDates(benchmark::State &state)
{
    std::mt19937_64 rng(7);
    std::vector<std::string> texts;
    for (int i = 0; i < 1000; ++i)
        texts.push_back(Instant::fromSecs(1600000000 + std::int64_t(rng() % 300000000)).isoText());
    for (auto _ : state)
        for (const std::string &text : texts)
            benchmark::DoNotOptimize(Instant::fromIso(text));
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(texts.size()));
}
BENCHMARK(BM_ParseIsoDates);

void BM_WriteIsoDates(benchmark::State &state)
{
    std::vector<Instant> instants;
    for (int i = 0; i < 1000; ++i)
        instants.push_back(Instant::fromSecs(1600000000 + i * 86399LL));
    for (auto _ : state)
        for (const Instant &when : instants)
            benchmark::DoNotOptimize(when.isoText());
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(instants.size()));
}
BENCHMARK(BM_WriteIsoDates);

void BM_CurrencyText(benchmark::State &state)
{
    std::vector<Decimal> amounts;
    for (const std::string &text : amountTexts(100))
        amounts.push_back(*Decimal::fromString(std::string_view(text)));
    for (auto _ : state)
        for (const Decimal &amount : amounts)
            benchmark::DoNotOptimize(Money::s(amount));
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(amounts.size()));
}
BENCHMARK(BM_CurrencyText);

} // namespace

BENCHMARK_MAIN();
