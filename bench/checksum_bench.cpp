// Throughput of the checksums and hashes on a small and a large buffer, beside the distribution's own
// MD5 (libcrypto) and CRC-32 (zlib) doing the same work in the same run. After the usual table the
// program prints each ratio as the library's speed over the reference's, by processor time, so above 1 is
// faster.
#define OPENSSL_SUPPRESS_DEPRECATED // the one-call MD5 is the cheapest way into libcrypto's transform
#include <mox/mox.h>

#include <benchmark/benchmark.h>
#include <openssl/md5.h>
#include <zlib.h>

#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

constexpr int64_t kSmall = 64;
constexpr int64_t kLarge = 1 << 20;

const std::vector<uint8_t>& buffer() {
    static const std::vector<uint8_t> data = [] {
        std::vector<uint8_t> bytes(kLarge);
        uint32_t x = 0x12345678;
        for (auto& byte : bytes) {
            x = x * 1664525u + 1013904223u;
            byte = static_cast<uint8_t>(x >> 24);
        }
        return bytes;
    }();
    return data;
}

void count_bytes(benchmark::State& state) { state.SetBytesProcessed(state.iterations() * state.range(0)); }

void Md5_Mox(benchmark::State& state) {
    const uint8_t* data = buffer().data();
    uint8_t digest[16];
    for (auto _ : state) {
        mox_md5_call(data, static_cast<uint32_t>(state.range(0)), digest);
        benchmark::DoNotOptimize(digest);
    }
    count_bytes(state);
}

void Md5_Libcrypto(benchmark::State& state) {
    const uint8_t* data = buffer().data();
    uint8_t digest[16];
    for (auto _ : state) {
        MD5(data, static_cast<size_t>(state.range(0)), digest);
        benchmark::DoNotOptimize(digest);
    }
    count_bytes(state);
}

void run_crc(benchmark::State& state, int32_t preset) {
    mox_crc crc;
    mox_crc_construct(&crc, nullptr);
    mox_crc_preset(&crc, preset);
    mox_crc_make(&crc);
    const uint8_t* data = buffer().data();
    for (auto _ : state)
        benchmark::DoNotOptimize(mox_crc_calc(&crc, data, static_cast<int32_t>(state.range(0))));
    count_bytes(state);
    mox_crc_destruct(&crc);
}

void Crc8_Mox(benchmark::State& state) { run_crc(state, 100); }
void Crc16Direct_Mox(benchmark::State& state) { run_crc(state, 201); }
void Crc16Reflected_Mox(benchmark::State& state) { run_crc(state, 202); }
void Crc32_Mox(benchmark::State& state) { run_crc(state, 300); }

void Crc32_Zlib(benchmark::State& state) {
    const uint8_t* data = buffer().data();
    for (auto _ : state)
        benchmark::DoNotOptimize(crc32(0, data, static_cast<uInt>(state.range(0))));
    count_bytes(state);
}

// The one-lookup-per-byte design written out inline, as the ceiling the library's table CRC can reach.
void Crc32_OneLookupLoop(benchmark::State& state) {
    static const std::vector<uint32_t> table = [] {
        std::vector<uint32_t> entries(256);
        for (uint32_t i = 0; i < 256; ++i) {
            uint32_t x = i;
            for (int bit = 0; bit < 8; ++bit)
                x = (x & 1) != 0 ? (x >> 1) ^ 0xEDB88320u : x >> 1;
            entries[i] = x;
        }
        return entries;
    }();
    const uint8_t* data = buffer().data();
    const uint32_t* entries = table.data();
    for (auto _ : state) {
        uint32_t crc = 0xFFFFFFFFu;
        for (int64_t i = 0; i < state.range(0); ++i)
            crc = (crc >> 8) ^ entries[(crc ^ data[i]) & 0xFF];
        benchmark::DoNotOptimize(crc ^ 0xFFFFFFFFu);
    }
    count_bytes(state);
}

void FastHash_Mox(benchmark::State& state) {
    const uint8_t* data = buffer().data();
    for (auto _ : state)
        benchmark::DoNotOptimize(mox_super_fast_hash(data, static_cast<uint32_t>(state.range(0))));
    count_bytes(state);
}

BENCHMARK(Md5_Mox)->Arg(kSmall)->Arg(kLarge);
BENCHMARK(Md5_Libcrypto)->Arg(kSmall)->Arg(kLarge);
BENCHMARK(Crc32_Mox)->Arg(kSmall)->Arg(kLarge);
BENCHMARK(Crc32_Zlib)->Arg(kSmall)->Arg(kLarge);
BENCHMARK(Crc32_OneLookupLoop)->Arg(kSmall)->Arg(kLarge);
BENCHMARK(Crc16Reflected_Mox)->Arg(kSmall)->Arg(kLarge);
BENCHMARK(Crc16Direct_Mox)->Arg(kSmall)->Arg(kLarge);
BENCHMARK(Crc8_Mox)->Arg(kSmall)->Arg(kLarge);
BENCHMARK(FastHash_Mox)->Arg(kSmall)->Arg(kLarge);

// Keeps the processor time per iteration of every run, by name, so that the ratios can be printed at the
// end. Processor time rather than wall time, as the ratios should hold on a machine that others share.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    RatioReporter() : ConsoleReporter(isatty(STDOUT_FILENO) != 0 ? OO_ColorTabular : OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration && !run.error_occurred && run.iterations > 0)
                seconds_[run.benchmark_name()] =
                    run.cpu_accumulated_time / static_cast<double>(run.iterations);
        ConsoleReporter::ReportRuns(runs);
    }

    void print_ratio(const std::string& ours, const std::string& reference) const {
        for (int64_t size : {kSmall, kLarge}) {
            auto mine = seconds_.find(run_name(ours, size));
            auto theirs = seconds_.find(run_name(reference, size));
            if (mine == seconds_.end() || theirs == seconds_.end())
                continue;
            std::printf("  %-20s / %-22s %8lld bytes: %.2f\n", ours.c_str(), reference.c_str(),
                        static_cast<long long>(size), theirs->second / mine->second);
        }
    }

private:
    static std::string run_name(const std::string& function, int64_t size) {
        char name[96];
        std::snprintf(name, sizeof name, "%s/%lld", function.c_str(), static_cast<long long>(size));
        return name;
    }

    std::map<std::string, double> seconds_;
};

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\nSpeed ratios by processor time (library / reference; above 1 is faster):\n");
    reporter.print_ratio("Md5_Mox", "Md5_Libcrypto");
    reporter.print_ratio("Crc32_Mox", "Crc32_Zlib");
    reporter.print_ratio("Crc32_Mox", "Crc32_OneLookupLoop");
    benchmark::Shutdown();
    return 0;
}
