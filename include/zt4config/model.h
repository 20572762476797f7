/* libzt4config: the electrical enumerations (wiring modes, current clamps), their accessors, the
 * range validators, and queries on the connectors of the configuration record.
 */
#ifndef ZT4CONFIG_MODEL_H
#define ZT4CONFIG_MODEL_H

#include "zt4config/common.h"
#include "zt4config/record.h"

ZT4_BEGIN_DECLS

#define ZT4_MODE_COUNT 7
#define ZT4_PLIER_COUNT 9

/* One current clamp ("plier") of the catalogue. */
typedef struct PlierModel {
    const char* name; /* "" for clamp 0 (no clamp) */
    const char* rate; /* text shown to the user, e.g. "30A : 333mV" */
    float x;          /* output in millivolts at rated current */
    uint32_t amps;    /* rated primary current in amperes */
} PlierModel;

/* Names of the wiring modes, indexed by mode number (0 "Disabled" to 6). Constant. */
ZT4_API extern const char* const Mode[ZT4_MODE_COUNT];
/* The clamp catalogue, indexed by clamp number (0 is "no clamp": x 1.0, amps 1). Constant. */
ZT4_API extern const PlierModel Plier[ZT4_PLIER_COUNT];

/* Borrowed, static text: the mode's name, "" above 6. */
ZT4_API const char* getNameMode(unsigned int mode) ZT4_NOEXCEPT;
/* Borrowed, static text: the clamp's name, "" above 8. */
ZT4_API const char* getNamePlier(unsigned int plier) ZT4_NOEXCEPT;
/* Borrowed, static text: the clamp's rate, "" above 8. */
ZT4_API const char* getRatePlier(unsigned int plier) ZT4_NOEXCEPT;
/* The clamp's output in mV at rated current; 1.0 above 8. */
ZT4_API float getxPlier(unsigned int plier) ZT4_NOEXCEPT;
/* The clamp's rated current in amperes; 0 above 8. */
ZT4_API uint32_t getAmpsPlier(unsigned int plier) ZT4_NOEXCEPT;

/* Validators: 0 valid, -1 invalid; they log nothing. */
/* Connector number 1 to 6. */
ZT4_API int isConnectorValid(unsigned int connector) ZT4_NOEXCEPT;
/* Channel number 1 to 4 (4 is the neutral input). */
ZT4_API int isChannelValid(unsigned int channel) ZT4_NOEXCEPT;
/* 0 or 1. */
ZT4_API int isEnableValid(int enable) ZT4_NOEXCEPT;
/* Mode number 0 to 6. */
ZT4_API int isModeValid(unsigned int mode) ZT4_NOEXCEPT;
/* Any mode but 0 (Disabled). */
ZT4_API int isModeEnabled(int mode) ZT4_NOEXCEPT;
/* Phase number 1 to 3. */
ZT4_API int isPhaseValid(unsigned int phase) ZT4_NOEXCEPT;
/* Clamp number 0 to 8. */
ZT4_API int isPlierValid(unsigned int plier) ZT4_NOEXCEPT;
/* 0 (normal) or 1 (inverted). */
ZT4_API int isDirectionValid(int direction) ZT4_NOEXCEPT;
/* 1 or more. */
ZT4_API int isXValid(int x) ZT4_NOEXCEPT;
/* Greater than 0.0. */
ZT4_API int isXPlierValid(float x) ZT4_NOEXCEPT;
/* 0.0 or more. */
ZT4_API int isXFactorValid(float x) ZT4_NOEXCEPT;
/* Greater than 0.0. */
ZT4_API int isXGeneralValid(float x) ZT4_NOEXCEPT;

/* Queries on the connectors of the record: `connectors` is borrowed and points to
 * ZT4_CONNECTOR_COUNT records; a channel is enabled when its enable is 1 and its mode is not 0.
 * A global channel index g designates connector g / 3, channel g % 3. */
/* 1 when any of the 18 channels is enabled, else 0 (also for NULL, logged). */
ZT4_API int isChannelsEnabled(const ConnectorConfig* connectors) ZT4_NOEXCEPT;
/* 1 when channel g is enabled, else 0 (also for NULL or g above 17, logged). */
ZT4_API int isChannelEnabled(const ConnectorConfig* connectors, unsigned int channel) ZT4_NOEXCEPT;
/* 1 when channel g exists and its mode is 2, 4 or 6 (three-phase, not balanced), else 0. */
ZT4_API int isModeThreephaseNonBalanced(const ConnectorConfig* connectors,
                                        unsigned int channel) ZT4_NOEXCEPT;
/* 0 when any channel of connector `connector` (0 to 5) has enable 1, whatever its mode; else -1
 * (an invalid index or NULL is logged). */
ZT4_API int isConnectorEnabled(const ConnectorConfig* connectors, uint8_t connector) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_MODEL_H */
