// Layout upgrades: version 0 kept the two import energies with 3 values per connector at the start
// of the memory; version 1 moved them to 4 values per connector (the connector total first);
// version 2 stores the event counters as unsigned integers instead of floats. The version byte is
// written only after every step of an upgrade succeeded, so a failed upgrade runs again at the
// next start.
#include "metering/fram_upgrade.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "common/log.hpp"
#include "common/path.hpp"
#include "metering/fram_layout.hpp"
#include "metering/fram_transfer.hpp"
#include "zt4config/fram.h"
#include "zt4config/modbus.h"
#include "zt4config/record_readers.h"

namespace zt4::fram {
namespace {

constexpr std::size_t kConnectors = ZT4_CONNECTOR_COUNT;
constexpr std::size_t kOldSlots = 3;  // per connector in layout 0: the channels' values
constexpr std::size_t kNewSlots = 4;  // from layout 1: the connector total, then the channels
constexpr unsigned kFloatBytes = 4;

bool isThreePhaseUnbalanced(unsigned mode) { return mode == 2 || mode == 4 || mode == 6; }

// Re-lays one connector's values; traces at debug level 4 and above.
void relayConnector(const char* function, unsigned connector, unsigned mode, const float* from,
                    float* to) {
    const bool trace = debugLevel() > 3;
    if (trace) logInfo(function, "@addr [%u][0].Mode %u", connector, mode);
    if (isThreePhaseUnbalanced(mode)) {
        to[0] = from[0];
        if (trace) logInfo(function, "@addr [%u][0] -> @addr [%u][%u] | size %u bytes", connector, connector, 0u, kFloatBytes);
        to[1] = from[0] - (from[1] + from[2]);
        if (trace) logInfo(function, "-> @addr [%u][1] | size %u bytes", connector, kFloatBytes);
    } else {
        to[1] = from[0];
        if (trace) logInfo(function, "@addr [%u][0] -> @addr [%u][%u] | size %u bytes", connector, connector, 1u, kFloatBytes);
        to[0] = 0.0f;
    }
    to[2] = from[1];
    if (trace) logInfo(function, "@addr [%u][1] -> @addr [%u][2] | size %u bytes", connector, connector, kFloatBytes);
    to[3] = from[2];
    if (trace) logInfo(function, "@addr [%u][2] -> @addr [%u][3] | size %u bytes", connector, connector, kFloatBytes);
}

// Where the float counters sit in their blocks: connectors x selectors registers from the first.
struct CounterGrid {
    uint8_t block;
    uint8_t connectors;
    uint8_t selectors;
};

constexpr CounterGrid kConvertedCounters[] = {
    {17, 6, 4},  // start-ups: 4 slots per connector
    {18, 1, 3},  // sags: one per phase
    {19, 1, 3},  // swells: one per phase
    {22, 6, 3},  // over-currents: one per channel
};

bool readConfigurationRecord(zt4Data& data) { return readZT4AllConfig(&data) == 0; }

}  // namespace

int upgradeEnergyBlock(uint8_t from, uint8_t to, uint8_t index, ConfigurationReader readConfiguration) {
    const char* function = "upgrade_register_energy";
    const Layout* source = layoutOf(from);
    const FRAMRegisterBlock* destination = rowOf(currentLayout(), index);
    bool upgraded = false;
    for (uint8_t energy : upgradedEnergies()) upgraded |= energy == index;
    if (from != 0 || source == nullptr || destination == nullptr || !upgraded) return -1;

    float old[kConnectors * kOldSlots] = {};
    uint16_t oldWords[sizeof old / 2] = {};
    if (fram_get_register(oldWords, sizeof oldWords, index, from) != 0) return -1;
    std::memcpy(old, oldWords, sizeof old);

    zt4Data configuration;
    std::memset(&configuration, 0, sizeof configuration);
    if (!readConfiguration(configuration)) {
        logInfo(function, "FAILED to read configuration from zt4config.json");
        return -1;
    }
    const Layout* target = layoutOf(to);
    if (target == nullptr || target->energyRegisters != kConnectors * kNewSlots) return 0;

    float relaid[kConnectors * kNewSlots] = {};
    for (unsigned c = 0; c < kConnectors; ++c) {
        relayConnector(function, c, configuration.connectors[c].channels[0].mode, &old[c * kOldSlots],
                       &relaid[c * kNewSlots]);
    }

    Device device(function, Device::Access::Update);
    if (!device.isOpen()) return -1;
    const uint32_t offset = destination->offset;
    const std::size_t size = sizeof relaid;
    const std::size_t written = device.writeAt(offset, relaid, size);
    if (written == size) {
        logInfo(function, "Write %zu bytes @%u (%x) in FRAM memory", size, offset, offset);
        return 0;
    }
    // The recovery the meters in the field have always made: the block again, its first half
    // zeroed, from where the short write stopped.
    logError(function, "FAILED to write %u bytes @%u (%x) in FRAM memory", static_cast<unsigned>(size), offset, offset);
    std::memset(relaid, 0, size / 2);
    device.writeAt(offset + static_cast<uint32_t>(written), relaid, size);
    return -1;
}

}  // namespace zt4::fram

extern "C" int fram_get_register(uint16_t* buffer, size_t size, uint8_t index, uint8_t version) noexcept {
    using namespace zt4::fram;
    const Layout* layout = layoutOf(version);
    if (layout == nullptr) return -1;
    if (buffer == nullptr) {
        zt4::logError(__func__, "zt4Rg NULL");
        return -1;
    }
    const uint32_t words = 2;
    if (!sizeChecked(__func__, size, layout->energyRegisters, words)) return -1;
    Device device(__func__, Device::Access::Read);
    if (!device.isOpen()) return -1;
    // Blocks the old layout did not keep are read from the start of the memory.
    bool kept = false;
    for (uint8_t energy : upgradedEnergies()) kept |= energy == index;
    const FRAMRegisterBlock& row = kept ? *rowOf(*layout, index) : FRAM_Base_v0[0];
    const uint32_t offset = kept ? row.offset : 0;
    BlockBuffer block;
    if (!device.read({row.name, offset, layout->energyRegisters, words, Quote::Double}, block.words)) {
        return -1;
    }
    std::memcpy(buffer, block.words, size);
    return 0;
}

extern "C" int upgrade_register_energy(uint8_t from, uint8_t to, uint8_t index) noexcept {
    return zt4::fram::upgradeEnergyBlock(from, to, index, zt4::fram::readConfigurationRecord);
}

extern "C" void convert_float_to_integer(uint16_t* zt4Rg, uint8_t index) noexcept {
    if (zt4Rg == nullptr) {
        zt4::logError(__func__, "zt4Rg NULL");
        return;
    }
    for (const zt4::fram::CounterGrid& grid : zt4::fram::kConvertedCounters) {
        if (grid.block != index) continue;
        for (uint8_t connector = 0; connector < grid.connectors; ++connector) {
            for (uint8_t selector = 0; selector < grid.selectors; ++selector) {
                const float value = GetModbusData(zt4Rg, index, connector, selector);
                const uint64_t whole = zt4::fram::truncateToUnsigned64(value);
                SetModbusDataInteger(zt4Rg, index, connector, selector, static_cast<uint32_t>(whole));
            }
        }
    }
}

namespace {

// The upgrade's conversion of the counters, followed by the version byte's write. A conversion
// cannot be repeated on converted counters, and the version byte says whether it has run: every
// block is read before any is written (a block that cannot be read fails the upgrade instead of
// staying a float under the new version), and when a block or the version cannot be written
// the blocks already converted are put back, so that the next start converts all of them again.
// fram_convert_data_type, called on its own, keeps its skip-and-continue behaviour.
int convertCountersAndRecord(uint8_t version) {
    uint16_t original[ZT4_MODBUS_IMAGE_WORDS] = {};
    uint16_t scratch[ZT4_MODBUS_IMAGE_WORDS] = {};
    const auto all = zt4::fram::counters();
    for (const zt4::fram::Counter& counter : all) {
        if (counter.encodedByLayout && counter.readToImage(original) != 0) return -1;
    }
    std::memcpy(scratch, original, sizeof scratch);
    const zt4::fram::Counter* converted = all.end();  // the blocks before it were written
    for (const zt4::fram::Counter* counter = all.begin(); counter != all.end(); ++counter) {
        if (!counter->encodedByLayout) continue;
        convert_float_to_integer(scratch, counter->block);
        if (counter->write(scratch) != 0) {
            converted = counter;
            break;
        }
    }
    if (converted == all.end() && fram_write_version(version) == 0) return 0;
    for (const zt4::fram::Counter* done = all.begin(); done != converted; ++done) {
        if (done->encodedByLayout) done->write(original);
    }
    return -1;
}

}  // namespace

extern "C" int fram_convert_data_type(void) noexcept {
    uint16_t scratch[ZT4_MODBUS_IMAGE_WORDS] = {};
    int result = 0;
    for (const zt4::fram::Counter& counter : zt4::fram::counters()) {
        if (!counter.encodedByLayout || counter.readToImage(scratch) != 0) continue;
        convert_float_to_integer(scratch, counter.block);
        result |= counter.write(scratch);
    }
    return result;
}

extern "C" int fram_upgrade_from_version_0(uint8_t version) noexcept {
    int result = 0;
    for (uint8_t energy : zt4::fram::upgradedEnergies()) result |= upgrade_register_energy(0, version, energy);
    return result;
}

extern "C" int fram_upgrade_from_version_1(void) noexcept { return fram_convert_data_type(); }

extern "C" int fram_upgrade_version(uint8_t defaultVersion) noexcept {
    const int8_t memory = fram_read_version();
    if (memory < 0) {
        std::perror("Failed to read FRAM version in FRAM memory");
        const std::string path = zt4::resolvePath(zt4::fram::kDevicePath);
        zt4::logError(__func__, "FAILED to read FRAM version '%s'.", path.c_str());
        return -1;
    }
    zt4::logLine(LOG_INFO, "FRAM memory version %u", static_cast<unsigned>(memory));
    int system = system_fram_read_version();
    if (system < 0) {
        std::perror("Failed to read FRAM version in file system");
        zt4::logError(__func__, "FAILED to read FRAM version in file system.");
        if (defaultVersion > ZT4_FRAM_LAYOUT_VERSION) return -1;
        system = defaultVersion;
    }
    zt4::logLine(LOG_INFO, "FRAM memory version in system %u", static_cast<unsigned>(system));
    if (memory == system) return 0;
    // A layout this software does not know: converting the counters for it and then failing to
    // record the version would convert them again at the next start.
    if (system > ZT4_FRAM_LAYOUT_VERSION) {
        zt4::logError(__func__, "FRAM version %u in file system is not supported", static_cast<unsigned>(system));
        return -1;
    }
    const uint8_t target = static_cast<uint8_t>(system);
    int result = -1;
    if (memory == 0) {
        result = target >= 1 ? fram_upgrade_from_version_0(target) : 0;
        // The counters are converted only after the energies: a conversion is not repeatable
        // (integers read as floats are lost), and a failed upgrade runs again from the start.
        if (result == 0) result = target > 1 ? convertCountersAndRecord(target) : fram_write_version(target);
    } else if (memory == 1) {
        result = 0;
        if (target >= 2) {
            // fram_upgrade_from_version_1, the version byte written within the conversion.
            result = convertCountersAndRecord(target);
        }
    }
    return result;
}
