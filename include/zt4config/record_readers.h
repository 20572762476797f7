/* libzt4config: the readers that fill the metering daemon's record zt4Data (zt4config/record.h).
 *
 * The record is caller-owned; the library allocates nothing in it and keeps no copy. Readers
 * return 0, or -1 at the first failure, leaving in the record what they had read until then.
 * The system readers run first, then the connectors, then the expert reader: the user readers
 * AND the user's flags with the system's. readZT4AllConfig keeps that order. The facade readers
 * follow the syntax version of their document; version 0 refuses ("syntax version 0 is not
 * supported", -1).
 */
#ifndef ZT4CONFIG_RECORD_READERS_H
#define ZT4CONFIG_RECORD_READERS_H

#include "zt4config/common.h"
#include "zt4config/record.h"

ZT4_BEGIN_DECLS

/* `enabled` of the six connectors (array of ZT4_CONNECTOR_COUNT, caller-owned) from the system
 * document, 1 where it does not mention a connector: 0 or -1. */
ZT4_API int readZT4SystemConnector(ConnectorConfig* connectors) ZT4_NOEXCEPT;
/* Version 1 of readZT4SystemConnector: 0 or -1. */
ZT4_API int readZT4SystemConnectorsSyntaxVersion1(ConnectorConfig* connectors) ZT4_NOEXCEPT;
/* Version 0 of readZT4SystemConnector: -1. */
ZT4_API int readZT4SystemConnectorsSyntaxVersion0(ConnectorConfig* connectors) ZT4_NOEXCEPT;

/* The system flags, lineFrequency (50), sagCycle and ctThreshold from the system "Expert": 0 or -1. */
ZT4_API int readZT4SystemExpert(zt4Data* data) ZT4_NOEXCEPT;
/* Version 1 of readZT4SystemExpert: 0 or -1. */
ZT4_API int readZT4SystemExpertSyntaxVersion1(zt4Data* data) ZT4_NOEXCEPT;
/* Version 0 of readZT4SystemExpert: -1. */
ZT4_API int readZT4SystemExpertSyntaxVersion0(zt4Data* data) ZT4_NOEXCEPT;

/* Nominal voltage, line frequency and every connector field but `enabled` from the user
 * document, then normalised: 0 or -1. */
ZT4_API int readZT4ConfigConnector(zt4Data* data) ZT4_NOEXCEPT;
/* Version 1 of readZT4ConfigConnector: 0 or -1. */
ZT4_API int readZT4ConfigConnectorsSyntaxVersion1(zt4Data* data) ZT4_NOEXCEPT;
/* Version 0 of readZT4ConfigConnector: -1. */
ZT4_API int readZT4ConfigConnectorsSyntaxVersion0(zt4Data* data) ZT4_NOEXCEPT;

/* The expert block but the system flags from the user document (sagCycle ends at 1 and
 * ctThreshold at 2 whatever the system says), then normalised: 0 or -1. */
ZT4_API int readZT4ConfigExpert(zt4Data* data) ZT4_NOEXCEPT;
/* Version 1 of readZT4ConfigExpert: 0 or -1. */
ZT4_API int readZT4ConfigExpertSyntaxVersion1(zt4Data* data) ZT4_NOEXCEPT;
/* Version 0 of readZT4ConfigExpert: -1. */
ZT4_API int readZT4ConfigExpertSyntaxVersion0(zt4Data* data) ZT4_NOEXCEPT;

/* Makes the six connectors (caller-owned array) consistent: voltage transformer of connector 1
 * everywhere; a three-phase channel's settings on all three channels. Returns nothing. */
ZT4_API void StandardizeZT4ConfigConnector(ConnectorConfig* connectors) ZT4_NOEXCEPT;
/* Copies the power without load of a three-phase connector's channel to its other two. Returns nothing. */
ZT4_API void StandardizeZT4ConfigExpert(zt4Data* data) ZT4_NOEXCEPT;

/* Fills the whole record: system readers, setup connectors, connectors, expert, calibration,
 * then meterRunning and currentImbalanceOff: 0 or -1. */
ZT4_API int readZT4AllConfig(zt4Data* data) ZT4_NOEXCEPT;
/* Writes the record (borrowed) to the system log at level 6. Returns nothing. */
ZT4_API void DisplayZT4Param(zt4Data* data) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_RECORD_READERS_H */
