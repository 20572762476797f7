// Cost of the library's logging: an error line formatted and handed to syslog(3), and a trace
// line that the debug level turns off (the case of every hot path on a running meter).
#include <benchmark/benchmark.h>
#include <syslog.h>

#include "common/log.hpp"

int debug_level = 0;

namespace {

// Opens the log once, as a daemon does, so that each iteration measures formatting and the send
// (or, without a syslog daemon, the failed send) rather than the connection.
class SystemLog {
public:
    SystemLog() { openlog("zt4_log_bench", LOG_NDELAY, LOG_USER); }
    ~SystemLog() { closelog(); }
};

void BM_LogError(benchmark::State& state) {
    SystemLog log;
    for (auto _ : state) {
        zt4::logError("readJSONFile", "FAILED to open file '%s'", "/home/nvram/zt4config.json");
    }
}
BENCHMARK(BM_LogError);

void BM_LogInfo(benchmark::State& state) {
    SystemLog log;
    unsigned connector = 0;
    for (auto _ : state) {
        zt4::logInfo("readZT4AllConfig", "Connector %u mode %u", connector % 6, 4u);
        ++connector;
    }
}
BENCHMARK(BM_LogInfo);

// A trace guarded by the debug level, at the level a running meter has: no formatting, no call.
void BM_TraceBelowDebugLevel(benchmark::State& state) {
    debug_level = 0;
    unsigned value = 0;
    for (auto _ : state) {
        if (zt4::debugLevel() > 3) zt4::logInfo("GetModbusData", "value %u", value);
        benchmark::DoNotOptimize(++value);
    }
}
BENCHMARK(BM_TraceBelowDebugLevel);

}  // namespace
