/* libzt4config: energy indices and event counters kept in the board's I2C FRAM, and the layout
 * versions of that memory.
 *
 * The FRAM is the EEPROM device file /sys/bus/i2c/devices/0-0050/eeprom (under ZT4_ROOT), addressed
 * by byte offset. Each operation opens it, moves whole blocks (one read or write of exactly the
 * block's bytes) and closes it; writes open it for update, never truncate it, and create it when
 * missing. A block is stored as its bytes stand in the register image (modbus.h): little-endian
 * 32-bit values, low word first. The layout version is the byte at offset 4096.
 *
 * Results: the energy and counter readers return 0 or 1 (failure); the counter writers, the
 * version and the upgrade operations return 0 or -1, unless the line above says otherwise. A failed
 * read leaves the caller's image or buffer untouched.
 */
#ifndef ZT4CONFIG_FRAM_H
#define ZT4CONFIG_FRAM_H

#include "zt4config/common.h"

ZT4_BEGIN_DECLS

#define ZT4_FRAM_V0_ROW_COUNT 2
#define ZT4_FRAM_ROW_COUNT 13
/* Byte offset of the layout version in the FRAM. */
#define ZT4_FRAM_VERSION_OFFSET 4096
/* The newest layout version. */
#define ZT4_FRAM_LAYOUT_VERSION 2

/* One area of the FRAM. */
typedef struct FRAMRegisterBlock {
    const char* name; /* printed in the transfer messages */
    uint32_t offset;  /* byte offset in the device file */
    uint32_t size;    /* bytes */
} FRAMRegisterBlock;

/* Layout version 0: the two import energies, 18 floats each (3 per connector). Constant. */
ZT4_API extern const FRAMRegisterBlock FRAM_Base_v0[ZT4_FRAM_V0_ROW_COUNT];
/* Layout versions 1 and 2: energies, operating time and counters, back to back from offset 192.
 * Constant. */
ZT4_API extern const FRAMRegisterBlock FRAM_Base[ZT4_FRAM_ROW_COUNT];

/* Energy indices: register blocks 4, 5, 7, 56, 57 and 59 only. */
/* 0 and the block's bytes in `buffer` (caller's, getModbusSize(index) bytes), or 1. */
ZT4_API int GetZT4EnergyIndexToRegister(uint16_t* buffer, uint8_t index) ZT4_NOEXCEPT;
/* 0 and the block copied to its place in the image `zt4Rg` (borrowed), or 1. */
ZT4_API int GetZT4EnergyIndex(uint16_t* zt4Rg, uint8_t index) ZT4_NOEXCEPT;
/* Writes blocks 4, 5, 7, 56, 57 and 59 of `zt4Rg` (borrowed) through one open: 0, or 1 when any
 * block, the open or the image fails. */
ZT4_API int SetZT4AllEnergyIndex(const uint16_t* zt4Rg) ZT4_NOEXCEPT;

/* Counters. The ...ToRegister readers fill the caller's block-sized buffer; the plain readers copy
 * the block into the image `zt4Rg` (borrowed); both return 0 or 1. The writers store the block from
 * the image and return 0 or -1. */
/* Operating time (block 16, hours as floats). The image reader also fills blocks 26 (seconds)
 * and 27 (nanoseconds). */
ZT4_API int GetZT4FRAMOperatingTimeToRegister(uint16_t* buffer) ZT4_NOEXCEPT;
ZT4_API int GetZT4FRAMOperatingTime(uint16_t* zt4Rg) ZT4_NOEXCEPT;
ZT4_API int SetZT4FRAMOperatingTime(const uint16_t* zt4Rg) ZT4_NOEXCEPT;
/* Start-ups (block 17). */
ZT4_API int GetZT4FRAMStartupToRegister(uint16_t* buffer) ZT4_NOEXCEPT;
ZT4_API int GetZT4FRAMStartup(uint16_t* zt4Rg) ZT4_NOEXCEPT;
ZT4_API int SetZT4FRAMStartup(const uint16_t* zt4Rg) ZT4_NOEXCEPT;
/* Sags (block 18). */
ZT4_API int GetZT4FRAMSagToRegister(uint16_t* buffer) ZT4_NOEXCEPT;
ZT4_API int GetZT4FRAMSag(uint16_t* zt4Rg) ZT4_NOEXCEPT;
ZT4_API int SetZT4FRAMSag(const uint16_t* zt4Rg) ZT4_NOEXCEPT;
/* Swells (block 19). */
ZT4_API int GetZT4FRAMSwellToRegister(uint16_t* buffer) ZT4_NOEXCEPT;
ZT4_API int GetZT4FRAMSwell(uint16_t* zt4Rg) ZT4_NOEXCEPT;
ZT4_API int SetZT4FRAMSwell(const uint16_t* zt4Rg) ZT4_NOEXCEPT;
/* Over-currents (block 22). */
ZT4_API int GetZT4FRAMOverCurrentToRegister(uint16_t* buffer) ZT4_NOEXCEPT;
ZT4_API int GetZT4FRAMOverCurrent(uint16_t* zt4Rg) ZT4_NOEXCEPT;
ZT4_API int SetZT4FRAMOverCurrent(const uint16_t* zt4Rg) ZT4_NOEXCEPT;

/* Layout versions. */
/* The version byte as a signed byte: 0 to 127, or -1 when unreadable or blank (0xFF); other
 * negative values are failures too. */
ZT4_API int8_t fram_read_version(void) ZT4_NOEXCEPT;
/* Writes the version byte; versions above 2 are refused. */
ZT4_API int fram_write_version(uint8_t version) ZT4_NOEXCEPT;
/* The version the software expects (/var/tmp/fram), or -1 when missing or empty. */
ZT4_API int system_fram_read_version(void) ZT4_NOEXCEPT;
/* Reads energy block 4 or 5 in `version`'s layout into `buffer` (caller's, `size` bytes: 72 for
 * version 0, 96 for 1 and 2); other blocks read from offset 0; version above 2: -1 silently. */
ZT4_API int fram_get_register(uint16_t* buffer, size_t size, uint8_t index,
                              uint8_t version) ZT4_NOEXCEPT;
/* Re-lays energy block 4 or 5 from layout `from` (0 only) into layout `to` (1 or 2; another
 * target writes nothing and returns 0), using the connectors' modes of the configuration. */
ZT4_API int upgrade_register_energy(uint8_t from, uint8_t to, uint8_t index) ZT4_NOEXCEPT;
/* Converts counter block 17, 18, 19 or 22 of `zt4Rg` (borrowed) from floats to unsigned integers
 * in place; any other block is left alone. */
ZT4_API void convert_float_to_integer(uint16_t* zt4Rg, uint8_t index) ZT4_NOEXCEPT;
/* Converts the four counters in FRAM from floats to integers: the OR of the writes (0 or -1). */
ZT4_API int fram_convert_data_type(void) ZT4_NOEXCEPT;
/* Re-lays energies 5 then 4 from layout 0 for target `version`: the OR of both (0 or -1). */
ZT4_API int fram_upgrade_from_version_0(uint8_t version) ZT4_NOEXCEPT;
/* Upgrades layout 1 to 2: fram_convert_data_type(). */
ZT4_API int fram_upgrade_from_version_1(void) ZT4_NOEXCEPT;
/* Brings the FRAM to the version the software expects (`defaultVersion` when /var/tmp/fram is
 * missing): 0, or non-zero with the version byte unchanged. */
ZT4_API int fram_upgrade_version(uint8_t defaultVersion) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_FRAM_H */
