/* libzt4config: the Modbus register image (its map `ModbusBase`, the lookups, the typed accessors
 * and the dumps) and the connector data document built from it.
 *
 * The image is the caller's array of ZT4_MODBUS_IMAGE_WORDS 16-bit words, indexed by register
 * address, in the processor's (little-endian) order; the library never allocates, maps or frees
 * it. 32-bit values sit in two words, low-order word first; 64-bit values in four. A block number
 * ("index") is a row of ModbusBase; connectors are 0 to 5, channels 0 to 2, and in the 4-slot
 * blocks the "channel" argument is the slot (0 the connector total, 1 to 3 the channels).
 * Accessors never allocate and format nothing unless debug_level is above 3 (trace lines).
 */
#ifndef ZT4CONFIG_MODBUS_H
#define ZT4CONFIG_MODBUS_H

#include "zt4config/common.h"
#include "zt4config/record.h"

ZT4_BEGIN_DECLS

#define ZT4_MODBUS_BLOCK_COUNT 75
#define ZT4_MODBUS_IMAGE_WORDS 3318
#define ZT4_MODBUS_IMAGE_BYTES (2 * ZT4_MODBUS_IMAGE_WORDS)
/* Addresses 0 to 843 form the public Modbus range. */
#define ZT4_MODBUS_PUBLIC_WORDS 844

/* One register block of the image. */
typedef struct ModbusRegisterBlock {
    const char* name; /* heading of the dump */
    uint32_t base;    /* address (16-bit word index) of the first register */
    uint32_t count;   /* number of registers */
    uint32_t words;   /* 16-bit words per register: 1, 2 or 4 */
    uint32_t bytes;   /* count x words x 2 */
    const char* unit; /* "" where none */
} ModbusRegisterBlock;

/* The register map, indexed by block number 0 to 74; row 74 describes the public range rather
 * than a block of data. Constant. */
ZT4_API extern const ModbusRegisterBlock ModbusBase[ZT4_MODBUS_BLOCK_COUNT];

/* Lookups: they log nothing. Those taking a uint8_t index see the block number modulo 256; a
 * number beyond the table (75 to 255) gives 0, or "" for the texts. */
/* 0 when addr < 844 (the public range), else -1. */
ZT4_API int isModbusAddrValid(uint32_t addr) ZT4_NOEXCEPT;
/* Borrowed, static text: the block's name. */
ZT4_API const char* getModbusNameRg(uint8_t index) ZT4_NOEXCEPT;
/* The block's base address. */
ZT4_API uint32_t getModbusAddrBaseRg(uint8_t index) ZT4_NOEXCEPT;
/* The register address of (connector, channel or slot) in the block; per-phase and per-connector
 * blocks take their selector as `channel`; block 37 has one register. A block number beyond the
 * table gives ZT4_MODBUS_IMAGE_WORDS, an address that every accessor refuses. */
ZT4_API uint32_t getModbusAddr(uint32_t index, uint8_t connector, uint8_t channel) ZT4_NOEXCEPT;
/* base + words x id: the block's id-th register counted from 0 (ZT4_MODBUS_IMAGE_WORDS beyond
 * the table). */
ZT4_API uint32_t getModbusAddrById(uint32_t index, uint8_t id) ZT4_NOEXCEPT;
/* The block's number of registers. */
ZT4_API uint32_t getModbusNbRg(uint8_t index) ZT4_NOEXCEPT;
/* 16-bit words per register. */
ZT4_API uint32_t getModbusSizeRg(uint8_t index) ZT4_NOEXCEPT;
/* Bytes of the whole block. */
ZT4_API uint32_t getModbusSize(uint8_t index) ZT4_NOEXCEPT;
/* Borrowed, static text: the block's unit, "" where none. */
ZT4_API const char* getModbusUnitRg(uint8_t index) ZT4_NOEXCEPT;

/* Accessors on the caller's image `zt4Rg` (borrowed). A null image is logged ("zt4Rg NULL", or
 * "zt4Rg64 NULL" for the 64-bit pair): getters then return 0, setters store nothing
 * (SetModbusDataInteger alone returns silently). A register that would reach past the image's
 * last word is logged and neither read (0) nor written. */
/* The word of block 0. */
ZT4_API uint16_t GetModbusSWVersion(const uint16_t* zt4Rg) ZT4_NOEXCEPT;
/* Stores the word of block 0. */
ZT4_API void SetModbusSWVersion(uint16_t* zt4Rg, uint16_t version) ZT4_NOEXCEPT;
/* The word of block 1. */
ZT4_API uint16_t GetModbusVersion(const uint16_t* zt4Rg) ZT4_NOEXCEPT;
/* Stores the word of block 1. */
ZT4_API void SetModbusVersion(uint16_t* zt4Rg, uint16_t version) ZT4_NOEXCEPT;
/* Stores the 3 words of block 2 from 12 hexadecimal digits without separators (borrowed text);
 * an empty text stores nothing silently, a null or shorter text is logged and stores nothing. */
ZT4_API void SetModbusMAC(uint16_t* zt4Rg, const char* str) ZT4_NOEXCEPT;
/* The mode word (block 3) of (connector, channel). */
ZT4_API uint16_t GetModbusInfoConnector(const uint16_t* zt4Rg, uint8_t connector,
                                        uint8_t channel) ZT4_NOEXCEPT;
/* Stores the mode word of (connector, channel). */
ZT4_API void SetModbusInfoConnector(uint16_t* zt4Rg, uint8_t connector, uint8_t channel,
                                    uint16_t mode) ZT4_NOEXCEPT;
/* Rewrites the 18 mode words from the ZT4_CONNECTOR_COUNT connector records at `connectors`
 * (borrowed): a disabled connector or channel writes 0, a three-phase unbalanced mode (2, 4, 6)
 * is written to the connector's three words, an invalid mode leaves its word untouched. */
ZT4_API void StandardizeModbusInfoConnector(uint16_t* zt4Rg,
                                            const ConnectorConfig* connectors) ZT4_NOEXCEPT;
/* The float register at getModbusAddr(index, connector, channel). */
ZT4_API float GetModbusData(const uint16_t* zt4Rg, uint8_t index, uint8_t connector,
                            uint8_t channel) ZT4_NOEXCEPT;
/* Stores a finite float there; NaN and infinities are dropped and the register kept. */
ZT4_API void SetModbusData(uint16_t* zt4Rg, uint8_t index, uint8_t connector, uint8_t channel,
                           float value) ZT4_NOEXCEPT;
/* The unsigned 32-bit register there. */
ZT4_API uint32_t GetModbusDataInteger(const uint16_t* zt4Rg, uint8_t index, uint8_t connector,
                                      uint8_t channel) ZT4_NOEXCEPT;
/* Stores the unsigned 32-bit value there. */
ZT4_API void SetModbusDataInteger(uint16_t* zt4Rg, uint8_t index, uint8_t connector,
                                  uint8_t channel, uint32_t value) ZT4_NOEXCEPT;
/* The double register there. */
ZT4_API double GetModbusData64(const uint16_t* zt4Rg64, uint8_t index, uint8_t connector,
                               uint8_t channel) ZT4_NOEXCEPT;
/* Stores a finite double there; NaN and infinities are dropped and the register kept. */
ZT4_API void SetModbusData64(uint16_t* zt4Rg64, uint8_t index, uint8_t connector,
                             uint8_t channel, double value) ZT4_NOEXCEPT;
/* Zeroes getModbusSize(index) bytes starting at byte offset 2 x index of the image (not at the
 * block's base: this arithmetic is intended). A block number beyond the table is logged. */
ZT4_API void ClearModbusData(uint16_t* zt4Rg, uint8_t index) ZT4_NOEXCEPT;
/* Logs (level 6) a dump of a 16-bit or 32-bit block: its name, its registers, a closing rule. */
ZT4_API void DisplayZT4Data(const uint16_t* zt4Rg, uint8_t index) ZT4_NOEXCEPT;
/* Logs (level 6) a dump of a 64-bit block; blocks 66 and 68, and any block that is not 64-bit,
 * print only their name. */
ZT4_API void DisplayZT4Data64(const uint16_t* zt4Rg64, uint8_t index) ZT4_NOEXCEPT;

/* The connector data document: an array of 6 connector objects with their channels' and
 * phases' measurements read from the image and their configuration from `data` (both borrowed).
 * New reference; NULL on failure. A value that JSON cannot carry (NaN, infinity) is null. */
ZT4_API json_t* readJSONZT4DataConnector(const uint16_t* zt4Rg, const zt4Data* data) ZT4_NOEXCEPT;
/* Counter presets of connector `connectorId` (1 to 6) from `json` (borrowed), a connector object
 * whose "Channel" (or, for sags and swells, "Phase") elements carry the member: every value is
 * checked before any is stored in the image; negative values are skipped. 0, or -1. */
/* "OperatingTime" hours into blocks 16, 26 (seconds) and 27 (nanoseconds). */
ZT4_API int writeZT4OperatingTimeById(uint16_t* zt4Rg, json_t* json,
                                      unsigned int connectorId) ZT4_NOEXCEPT;
/* "Startup" into block 17. */
ZT4_API int writeZT4StartupById(uint16_t* zt4Rg, json_t* json, unsigned int connectorId) ZT4_NOEXCEPT;
/* "Sag" of each phase into block 18. */
ZT4_API int writeZT4SagById(uint16_t* zt4Rg, json_t* json, unsigned int connectorId) ZT4_NOEXCEPT;
/* "Swell" of each phase into block 19. */
ZT4_API int writeZT4SwellById(uint16_t* zt4Rg, json_t* json, unsigned int connectorId) ZT4_NOEXCEPT;
/* "OverCurrent" into block 22. */
ZT4_API int writeZT4OverCurrentById(uint16_t* zt4Rg, json_t* json,
                                    unsigned int connectorId) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_MODBUS_H */
