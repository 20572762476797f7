// The FRAM's layouts as data: which area holds which register block in each layout version, how
// many registers an energy block has there and how the counters are encoded. The transfer and
// upgrade code walks these tables; nothing else knows an offset.
#pragma once

#include <cstddef>
#include <cstdint>

#include "zt4config/fram.h"

namespace zt4::fram {

// The EEPROM node of the FRAM (I2C bus 0, address 0x50), resolved under the root at each use.
inline constexpr const char* kDevicePath = "/sys/bus/i2c/devices/0-0050/eeprom";

enum class CounterEncoding { Float, Unsigned };

// A register block of the image and the row of a layout table that stores it.
struct Placement {
    uint8_t block;
    uint8_t row;
};

template <class T>
struct Rows {
    const T* first;
    std::size_t count;
    const T* begin() const { return first; }
    const T* end() const { return first + count; }
};

struct Layout {
    uint8_t version;
    const FRAMRegisterBlock* rows;
    Rows<Placement> energies;     // the energy blocks the layout keeps, in writing order
    uint32_t energyRegisters;     // registers (32-bit values) of one energy block
    CounterEncoding counters;     // start-ups, sags, swells and over-currents
};

// Layout `version`, or nullptr for a version no software has defined.
const Layout* layoutOf(uint8_t version);
// The layout this software reads and writes.
const Layout& currentLayout();
// The row that holds `block` in `layout`, or nullptr when the layout does not keep it.
const FRAMRegisterBlock* rowOf(const Layout& layout, uint8_t block);

// The energy blocks that the version-0 layout kept, in the order the upgrade rewrites them.
Rows<uint8_t> upgradedEnergies();

// One counter: its register block, its row in the current layout, and whether its encoding
// follows the layout version (floats up to version 1, unsigned integers from version 2).
struct Counter {
    const char* name;  // the word after GetZT4FRAM / SetZT4FRAM
    uint8_t block;
    uint8_t row;
    bool encodedByLayout;
    int (*readToImage)(uint16_t* image);
    int (*write)(const uint16_t* image);
};
Rows<Counter> counters();
// The counter kept for register block `block` (16, 17, 18, 19 or 22).
const Counter& counterOf(uint8_t block);

}  // namespace zt4::fram
