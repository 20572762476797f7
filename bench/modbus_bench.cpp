// Cost of the register accessors on a running meter (debug level 0) against a baseline in the
// same program: the address computed from ModbusBase and one memcpy load or store. Every
// benchmark also counts the heap allocations made inside its timed loop (malloc, and operator
// new, which allocates through it, are counted below), reported as the "allocations" counter: it must stay 0.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "zt4config.h"

int debug_level = 0;

namespace {
std::atomic<unsigned long> gAllocations{0};
}  // namespace

extern "C" void* __libc_malloc(size_t size);
extern "C" void* malloc(size_t size) {
    gAllocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_malloc(size);
}

namespace {

// Registers visited in turn: every connector and slot, so that no address is constant.
struct Cursor {
    uint8_t connector = 0, channel = 0;
    void next(uint8_t channels) {
        if (++channel == channels) {
            channel = 0;
            connector = static_cast<uint8_t>(connector == 5 ? 0 : connector + 1);
        }
    }
};

// The baseline address: what any caller of the map computes by hand for a 4-slot block.
inline uint32_t fourSlotAddress(uint8_t index, uint8_t connector, uint8_t slot) {
    const ModbusRegisterBlock& b = ModbusBase[index];
    return b.base + b.words * (4u * connector + slot);
}

template <class Value>
inline Value baselineLoad(const uint16_t* image, uint32_t address) {
    Value value;
    std::memcpy(&value, image + address, sizeof value);
    return value;
}

template <class Value>
inline void baselineStore(uint16_t* image, uint32_t address, Value value) {
    std::memcpy(image + address, &value, sizeof value);
}

// The same load and store behind a call, as a caller of any library function pays it: the
// accessors' own work is their cost above these.
[[gnu::noinline]] float calledLoadFloat(const uint16_t* image, uint8_t index, uint8_t c, uint8_t s) {
    return baselineLoad<float>(image, fourSlotAddress(index, c, s));
}
[[gnu::noinline]] void calledStoreFloat(uint16_t* image, uint8_t index, uint8_t c, uint8_t s, float v) {
    baselineStore<float>(image, fourSlotAddress(index, c, s), v);
}
[[gnu::noinline]] uint32_t calledLoadInteger(const uint16_t* image, uint8_t index, uint8_t c, uint8_t s) {
    return baselineLoad<uint32_t>(image, fourSlotAddress(index, c, s));
}
[[gnu::noinline]] double calledLoadDouble(const uint16_t* image, uint8_t index, uint8_t c, uint8_t s) {
    return baselineLoad<double>(image, fourSlotAddress(index, c, s));
}
[[gnu::noinline]] void calledStoreDouble(uint16_t* image, uint8_t index, uint8_t c, uint8_t s, double v) {
    baselineStore<double>(image, fourSlotAddress(index, c, s), v);
}
[[gnu::noinline]] uint16_t calledLoadModeWord(const uint16_t* image, uint8_t c, uint8_t ch) {
    return baselineLoad<uint16_t>(image, ModbusBase[3].base + 3u * c + ch);
}

class Image {
public:
    Image() : words_(ZT4_MODBUS_IMAGE_WORDS, 0) {}
    uint16_t* get() { return words_.data(); }

private:
    std::vector<uint16_t> words_;
};

void countAllocations(benchmark::State& state, unsigned long before) {
    state.counters["allocations"] = static_cast<double>(gAllocations.load() - before);
}

#define ACCESSOR_BENCH(Name, channels, body)                 \
    void Name(benchmark::State& state) {                    \
        debug_level = 0;                                    \
        Image image;                                        \
        uint16_t* rg = image.get();                         \
        benchmark::DoNotOptimize(rg);                       \
        Cursor at;                                          \
        const unsigned long before = gAllocations.load();   \
        for (auto _ : state) {                              \
            body;                                           \
            at.next(channels);                              \
        }                                                   \
        countAllocations(state, before);                    \
    }                                                       \
    BENCHMARK(Name)

ACCESSOR_BENCH(BM_GetModbusData, 4,
               benchmark::DoNotOptimize(GetModbusData(rg, 8, at.connector, at.channel)));
ACCESSOR_BENCH(BM_Baseline_LoadFloat, 4,
               benchmark::DoNotOptimize(
                   baselineLoad<float>(rg, fourSlotAddress(8, at.connector, at.channel))));

ACCESSOR_BENCH(BM_SetModbusData, 4, {
    SetModbusData(rg, 8, at.connector, at.channel, 230.5f);
    benchmark::ClobberMemory();
});
ACCESSOR_BENCH(BM_Baseline_StoreFloat, 4, {
    baselineStore<float>(rg, fourSlotAddress(8, at.connector, at.channel), 230.5f);
    benchmark::ClobberMemory();
});

ACCESSOR_BENCH(BM_GetModbusDataInteger, 4,
               benchmark::DoNotOptimize(GetModbusDataInteger(rg, 17, at.connector, at.channel)));
ACCESSOR_BENCH(BM_Baseline_LoadInteger, 4,
               benchmark::DoNotOptimize(
                   baselineLoad<uint32_t>(rg, fourSlotAddress(17, at.connector, at.channel))));

ACCESSOR_BENCH(BM_GetModbusData64, 4,
               benchmark::DoNotOptimize(GetModbusData64(rg, 64, at.connector, at.channel)));
ACCESSOR_BENCH(BM_Baseline_LoadDouble, 4,
               benchmark::DoNotOptimize(
                   baselineLoad<double>(rg, fourSlotAddress(64, at.connector, at.channel))));

ACCESSOR_BENCH(BM_SetModbusData64, 4, {
    SetModbusData64(rg, 64, at.connector, at.channel, 12345.678);
    benchmark::ClobberMemory();
});
ACCESSOR_BENCH(BM_Baseline_StoreDouble, 4, {
    baselineStore<double>(rg, fourSlotAddress(64, at.connector, at.channel), 12345.678);
    benchmark::ClobberMemory();
});

ACCESSOR_BENCH(BM_GetModbusInfoConnector, 3,
               benchmark::DoNotOptimize(GetModbusInfoConnector(rg, at.connector, at.channel)));
ACCESSOR_BENCH(BM_Baseline_LoadModeWord, 3,
               benchmark::DoNotOptimize(baselineLoad<uint16_t>(
                   rg, ModbusBase[3].base + 3u * at.connector + at.channel)));


ACCESSOR_BENCH(BM_BaselineCall_LoadFloat, 4,
               benchmark::DoNotOptimize(calledLoadFloat(rg, 8, at.connector, at.channel)));
ACCESSOR_BENCH(BM_BaselineCall_StoreFloat, 4, {
    calledStoreFloat(rg, 8, at.connector, at.channel, 230.5f);
    benchmark::ClobberMemory();
});
ACCESSOR_BENCH(BM_BaselineCall_LoadInteger, 4,
               benchmark::DoNotOptimize(calledLoadInteger(rg, 17, at.connector, at.channel)));
ACCESSOR_BENCH(BM_BaselineCall_LoadDouble, 4,
               benchmark::DoNotOptimize(calledLoadDouble(rg, 64, at.connector, at.channel)));
ACCESSOR_BENCH(BM_BaselineCall_StoreDouble, 4, {
    calledStoreDouble(rg, 64, at.connector, at.channel, 12345.678);
    benchmark::ClobberMemory();
});
ACCESSOR_BENCH(BM_BaselineCall_LoadModeWord, 3,
               benchmark::DoNotOptimize(calledLoadModeWord(rg, at.connector, at.channel)));

}  // namespace
