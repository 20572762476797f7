// Cost of turning a fixed device path into the path under the root directory, which every file
// access of the library pays at each use.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "common/path.hpp"

int debug_level = 0;

namespace {

// Argument 0: ZT4_ROOT unset (a device); 1: a root directory (tests, the tool, image builders).
void BM_ResolvePath(benchmark::State& state) {
    if (state.range(0) == 0) {
        unsetenv("ZT4_ROOT");
    } else {
        setenv("ZT4_ROOT", "/tmp/zt4bench/device-root/", 1);
    }
    for (auto _ : state) {
        std::string path = zt4::resolvePath("/home/nvram/zt4config.json");
        benchmark::DoNotOptimize(path.data());
    }
    unsetenv("ZT4_ROOT");
    state.SetLabel(state.range(0) == 0 ? "no root" : "root set");
}
BENCHMARK(BM_ResolvePath)->Arg(0)->Arg(1);

}  // namespace
