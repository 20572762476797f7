/* libzt4config: configuration and persistent metering state of the ZT4 energy meter.
 *
 * Plain C interface, grouped by family in the order of the subsystems. Link with -lzt4config and
 * define `int debug_level` in the host program. See zt4config/common.h for the conventions every
 * declaration follows (results, references, logging).
 */
#ifndef ZT4CONFIG_H
#define ZT4CONFIG_H

#include "zt4config/common.h"
#include "zt4config/json.h"
#include "zt4config/json_checks.h"
#include "zt4config/lock.h"
#include "zt4config/model.h"
#include "zt4config/record.h"
#include "zt4config/config.h"
#include "zt4config/user.h"
#include "zt4config/system.h"
#include "zt4config/compliance.h"
#include "zt4config/upgrade.h"
#include "zt4config/record_readers.h"
#include "zt4config/calibration.h"
#include "zt4config/export.h"
#include "zt4config/device.h"
#include "zt4config/radio.h"
#include "zt4config/leds.h"
#include "zt4config/modbus.h"
#include "zt4config/fram.h"
#include "zt4config/webapi.h"

#endif /* ZT4CONFIG_H */
