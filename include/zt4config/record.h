/* libzt4config: the metering daemon's configuration record.
 *
 * One flat, packed record of fixed layout without pointers, owned by the caller and filled by the
 * library's readers. Connectors are indexed 0 to 5 (numbered 1 to 6 in documents), channels 0 to 2
 * (a fourth channel record exists for the neutral input's calibration only). Flags are bytes
 * holding 0 or 1; floats are IEEE single precision. The layout is the same on every target: the
 * static assertions at the end pin it.
 */
#ifndef ZT4CONFIG_RECORD_H
#define ZT4CONFIG_RECORD_H

#include "zt4config/common.h"

ZT4_BEGIN_DECLS

#define ZT4_CONNECTOR_COUNT 6
#define ZT4_CHANNEL_COUNT 3
#define ZT4_CHANNEL_RECORDS 4
#define ZT4_PHASE_COUNT 3
#define ZT4_CHANNEL_NAME_SIZE 48

/* Size of the record's leading area: reserved for the metering daemon, never read or written by
 * the library. 32 bytes, so that the setup modes start at offset 32. */
#define ZT4_DATA_LEADING_AREA_SIZE 32

/* One measuring channel: configuration, then the calibration coefficients (opaque 32-bit values
 * of the measuring chip, CalVnom and CalInom are floats). */
typedef struct ZT4_PACKED ChannelConfig {
    char name[ZT4_CHANNEL_NAME_SIZE]; /* NUL-terminated, at most 47 characters */
    uint8_t enable;                   /* connector enabled AND channel Enable */
    uint8_t mode;                     /* index into Mode[] */
    uint8_t phase;                    /* 1 to 3 */
    uint8_t ctModel;                  /* index into Plier[] */
    uint8_t direction;                /* 0 normal, 1 inverted */
    float generalFactor;
    uint32_t ctPrimary; /* amperes */
    float CalVnom;
    float CalInom;
    uint32_t CalPref;
    uint32_t CalCurrent;
    uint32_t CalIOffset;
    uint32_t CalVoltage;
    uint32_t CalVOffset;
    uint32_t CalActivePower;
    uint32_t CalWOffset;
    uint32_t CalVAGain;
    uint32_t CalVARGain;
    uint32_t CalVAROffset;
    uint32_t CalPhaseA;
    uint32_t CalPhaseB;
    uint32_t CalPhaseC;
} ChannelConfig;

typedef struct ZT4_PACKED ConnectorConfig {
    uint8_t enabled; /* the system configuration allows the connector */
    float xPlier;    /* output of the current transformer model, in mV at rated current */
    uint8_t vtEnable;
    float vtPrimary;   /* volts */
    float vtSecondary; /* volts */
    ChannelConfig channels[ZT4_CHANNEL_RECORDS];
    uint8_t currentImbalanceOff;
} ConnectorConfig;

typedef struct ZT4_PACKED ChannelExpert {
    float powerNoLoad; /* watts */
    uint8_t operatingTime;
    uint8_t startupCycle;
    uint8_t overCurrent;
} ChannelExpert;

typedef struct ZT4_PACKED ConnectorExpert {
    uint8_t currentImbalance;
    uint8_t powerImbalance;
    uint8_t voltageImbalance;
    uint8_t currentAverageMax;
    uint32_t period; /* minutes */
    uint8_t thd;
    float overCurrentThreshold; /* peak amperes on the transformer's secondary scale */
    ChannelExpert channels[ZT4_CHANNEL_COUNT];
} ConnectorExpert;

typedef struct ZT4_PACKED ExpertConfig {
    float nominalVoltage; /* volts */
    float lineFrequency;  /* hertz */
    uint8_t sysSag;
    uint8_t sagEnable;
    uint8_t sagCycle;
    float sagRateLevel; /* percent */
    float sagLevel;     /* peak volts */
    uint8_t sagPhase[ZT4_PHASE_COUNT];
    uint8_t sysSwell;
    uint8_t swellEnable;
    float swellRateLevel; /* percent */
    float swellLevel;     /* peak volts */
    uint8_t swellPhase[ZT4_PHASE_COUNT];
    uint8_t ctThreshold;
    uint8_t sysOperatingTime;
    uint8_t sysStartupCycle;
    uint8_t sysCurrentImbalance;
    uint8_t sysPowerImbalance;
    uint8_t sysVoltageImbalance;
    uint8_t sysCurrentAverageMax;
    uint8_t sysTHD;
    uint8_t sysOverCurrent;
    ConnectorExpert connectors[ZT4_CONNECTOR_COUNT];
} ExpertConfig;

typedef struct ZT4_PACKED zt4Data {
    uint8_t leadingArea[ZT4_DATA_LEADING_AREA_SIZE]; /* the daemon's; untouched by the library */
    uint8_t setupModes[ZT4_CONNECTOR_COUNT];         /* mode the hardware setup provides */
    ConnectorConfig connectors[ZT4_CONNECTOR_COUNT];
    uint8_t meterRunning; /* 1 when any channel of any connector is enabled */
    ExpertConfig expert;
} zt4Data;

ZT4_STATIC_ASSERT(sizeof(ChannelConfig) == 121, "ChannelConfig layout");
ZT4_STATIC_ASSERT(offsetof(ChannelConfig, enable) == 48, "ChannelConfig.enable");
ZT4_STATIC_ASSERT(offsetof(ChannelConfig, generalFactor) == 53, "ChannelConfig.generalFactor");
ZT4_STATIC_ASSERT(offsetof(ChannelConfig, ctPrimary) == 57, "ChannelConfig.ctPrimary");
ZT4_STATIC_ASSERT(offsetof(ChannelConfig, CalVnom) == 61, "ChannelConfig.CalVnom");
ZT4_STATIC_ASSERT(offsetof(ChannelConfig, CalPhaseC) == 117, "ChannelConfig.CalPhaseC");
ZT4_STATIC_ASSERT(sizeof(ConnectorConfig) == 499, "ConnectorConfig layout");
ZT4_STATIC_ASSERT(offsetof(ConnectorConfig, channels) == 14, "ConnectorConfig.channels");
ZT4_STATIC_ASSERT(offsetof(ConnectorConfig, currentImbalanceOff) == 498,
                  "ConnectorConfig.currentImbalanceOff");
ZT4_STATIC_ASSERT(sizeof(ChannelExpert) == 7, "ChannelExpert layout");
ZT4_STATIC_ASSERT(sizeof(ConnectorExpert) == 34, "ConnectorExpert layout");
ZT4_STATIC_ASSERT(offsetof(ConnectorExpert, overCurrentThreshold) == 9,
                  "ConnectorExpert.overCurrentThreshold");
ZT4_STATIC_ASSERT(sizeof(ExpertConfig) == 248, "ExpertConfig layout");
ZT4_STATIC_ASSERT(offsetof(ExpertConfig, ctThreshold) == 35, "ExpertConfig.ctThreshold");
ZT4_STATIC_ASSERT(offsetof(ExpertConfig, connectors) == 44, "ExpertConfig.connectors");
ZT4_STATIC_ASSERT(offsetof(zt4Data, setupModes) == 32, "zt4Data.setupModes");
ZT4_STATIC_ASSERT(offsetof(zt4Data, connectors) == 38, "zt4Data.connectors");
ZT4_STATIC_ASSERT(offsetof(zt4Data, meterRunning) == 3032, "zt4Data.meterRunning");
ZT4_STATIC_ASSERT(offsetof(zt4Data, expert) == 3033, "zt4Data.expert");
ZT4_STATIC_ASSERT(sizeof(zt4Data) == 3281, "zt4Data layout");

ZT4_END_DECLS

#endif /* ZT4CONFIG_RECORD_H */
