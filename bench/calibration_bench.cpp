// Cost of the calibration store on a meter's start and on a factory write: the selection that
// reads both split files, one file read, the JSON form, and a write from the model (with its
// syncs and its cp, which dominate).
#include <benchmark/benchmark.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "zt4config/calibration.h"

int debug_level = 0;

namespace {

// A temporary device root holding the three files, written from a model with varied values.
class CalibrationRoot {
public:
    CalibrationRoot() {
        char pattern[] = "/tmp/zt4bench.XXXXXX";
        root_ = mkdtemp(pattern) ? pattern : "/tmp";
        mkdir((root_ + "/home").c_str(), 0755);
        mkdir((root_ + "/home/nvram").c_str(), 0755);
        setenv("ZT4_ROOT", root_.c_str(), 1);
        std::memset(connectors, 0, sizeof connectors);
        for (unsigned c = 0; c < ZT4_CONNECTOR_COUNT; ++c) {
            for (unsigned n = 0; n < ZT4_CHANNEL_RECORDS; ++n) {
                connectors[c].channels[n].CalCurrent = 0x00400000u + c * 16 + n;
                connectors[c].channels[n].CalVnom = 230.0f;
            }
            connectors[c].channels[0].mode = static_cast<uint8_t>(c + 1);
        }
        for (int kind = 0; kind <= 2; ++kind) writeConfigInitCalibration(connectors, kind);
    }
    ~CalibrationRoot() {
        const std::string nvram = root_ + "/home/nvram/";
        for (const char* name : {"zt4calibration.cfg", "zt4calibration_threephase.cfg",
                                 "zt4calibration_monophase.cfg", "zt4calibration.cfg.new",
                                 "zt4calibration_threephase.cfg.new", "zt4calibration_monophase.cfg.new"}) {
            unlink((nvram + name).c_str());
        }
        rmdir(nvram.c_str());
        rmdir((root_ + "/home").c_str());
        rmdir(root_.c_str());
        unsetenv("ZT4_ROOT");
    }
    ConnectorConfig connectors[ZT4_CONNECTOR_COUNT];

private:
    std::string root_;
};

void BM_ReadZT4ConfigCalibration(benchmark::State& state) {
    CalibrationRoot root;
    for (auto _ : state) benchmark::DoNotOptimize(ReadZT4ConfigCalibration(root.connectors));
}
BENCHMARK(BM_ReadZT4ConfigCalibration);

void BM_ReadZT4ConfigCalibrationStandard(benchmark::State& state) {
    CalibrationRoot root;
    for (auto _ : state) benchmark::DoNotOptimize(ReadZT4ConfigCalibrationStandard(root.connectors));
}
BENCHMARK(BM_ReadZT4ConfigCalibrationStandard);

void BM_ReadConfigCalibration(benchmark::State& state) {
    CalibrationRoot root;
    for (auto _ : state) {
        json_t* object = json_object();
        benchmark::DoNotOptimize(readConfigCalibration(object, 0));
        json_decref(object);
    }
}
BENCHMARK(BM_ReadConfigCalibration);

void BM_WriteConfigInitCalibration(benchmark::State& state) {
    CalibrationRoot root;
    for (auto _ : state) benchmark::DoNotOptimize(writeConfigInitCalibration(root.connectors, 0));
}
BENCHMARK(BM_WriteConfigInitCalibration)->Iterations(20)->Unit(benchmark::kMillisecond);

}  // namespace
