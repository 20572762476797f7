// Cost of rewriting the daemons' flat parameter file from the example device's documents: the
// whole-file writer (documents loaded, lines formatted, synchronous writes), and the same lines
// written to a memory stream without the file.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "zt4config/export.h"

int debug_level = 0;

namespace {

// A copy of the example device under a temporary root, for the duration of a benchmark.
class ExampleRoot {
public:
    ExampleRoot() {
        char pattern[] = "/tmp/zt4bench.XXXXXX";
        root_ = mkdtemp(pattern);
        // The example device of the repository, next to this file's folder.
        const auto example = std::filesystem::path(__FILE__).parent_path().parent_path() / "examples" / "device";
        std::filesystem::copy(example, root_, std::filesystem::copy_options::recursive);
        setenv("ZT4_ROOT", root_.c_str(), 1);
    }
    ~ExampleRoot() {
        unsetenv("ZT4_ROOT");
        std::filesystem::remove_all(root_);
    }

private:
    std::string root_;
};

void BM_PrintConfigFile(benchmark::State& state) {
    ExampleRoot root;
    for (auto _ : state) {
        if (printZT4ConfigFile() != 0) state.SkipWithError("printZT4ConfigFile failed");
    }
}
BENCHMARK(BM_PrintConfigFile)->Unit(benchmark::kMicrosecond);

void BM_UserConnectorsToMemory(benchmark::State& state) {
    ExampleRoot root;
    char* text = nullptr;
    size_t size = 0;
    FILE* stream = open_memstream(&text, &size);
    for (auto _ : state) {
        std::rewind(stream);
        if (setParameterConfigConnector(stream) != 0) state.SkipWithError("writer failed");
    }
    std::fclose(stream);
    free(text);
}
BENCHMARK(BM_UserConnectorsToMemory)->Unit(benchmark::kMicrosecond);

}  // namespace
