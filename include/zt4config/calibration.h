/* libzt4config: the calibration store.
 *
 * Factory calibration coefficients of every channel, kept in three text files under /home/nvram:
 * the standard file, and a three-phase and a single-phase file from which each connector takes
 * its coefficients according to its wiring mode. `connectors` always points to
 * ZT4_CONNECTOR_COUNT records of the configuration record (zt4Data.connectors); only the
 * calibration fields (Cal...) of their channel records are read or written.
 *
 * A `kind` names the file: ZT4_CALIBRATION_THREEPHASE (1), ZT4_CALIBRATION_MONOPHASE (2), any
 * other value the standard file. Readers take the file's read lock, writers the write lock.
 */
#ifndef ZT4CONFIG_CALIBRATION_H
#define ZT4CONFIG_CALIBRATION_H

#include "zt4config/common.h"
#include "zt4config/record.h"

ZT4_BEGIN_DECLS

#define ZT4_CALIBRATION_STANDARD 0
#define ZT4_CALIBRATION_THREEPHASE 1
#define ZT4_CALIBRATION_MONOPHASE 2

/* Reads /home/nvram/zt4calibration.cfg into the connectors (fields absent from the file keep
 * their content). 0, or 1 on failure (logged). */
ZT4_API int ReadZT4ConfigCalibrationStandard(ConnectorConfig* connectors) ZT4_NOEXCEPT;
/* The same for /home/nvram/zt4calibration_threephase.cfg. 0, or 1. */
ZT4_API int ReadZT4ConfigCalibrationThreephase(ConnectorConfig* connectors) ZT4_NOEXCEPT;
/* The same for /home/nvram/zt4calibration_monophase.cfg. 0, or 1. */
ZT4_API int ReadZT4ConfigCalibrationMonophase(ConnectorConfig* connectors) ZT4_NOEXCEPT;
/* Fills the channels' calibration from the files, the connectors' modes already set: the
 * standard file alone when neither split file exists, else channels 1 to 3 of each connector
 * from the single-phase file (first channel in mode 1, 3 or 5) or the three-phase file (other
 * modes); both split files must then be readable. 0, or 1 (the connectors unchanged). */
ZT4_API int ReadZT4ConfigCalibration(ConnectorConfig* connectors) ZT4_NOEXCEPT;

/* Writes the kind's file from the connectors (282 lines), staged as "<file>.new" (left in place)
 * and copied over the file. 0, 1 on failure (logged), or the copy's non-zero wait status. */
ZT4_API int writeConfigInitCalibration(const ConnectorConfig* connectors, int kind) ZT4_NOEXCEPT;
/* Writes the kind's file from a borrowed object {"Connector": [{"Cnl": [{key: value}...]}...]}:
 * one line per integer or real member, keys as given. 0, 1 on failure (logged), or the copy's
 * non-zero wait status. */
ZT4_API int writeConfigCalibration(json_t* object, int kind) ZT4_NOEXCEPT;
/* Reads the kind's file and sets its JSON form (6 connectors of 3 channels of 15 keys) into the
 * borrowed object under "Connector". 0, or 1 on failure (logged; the object unchanged). */
ZT4_API int readConfigCalibration(json_t* object, int kind) ZT4_NOEXCEPT;
/* Logs every coefficient of the connectors (level 6). No result. */
ZT4_API void DisplayZT4Calibration(const ConnectorConfig* connectors) ZT4_NOEXCEPT;

ZT4_END_DECLS

#endif /* ZT4CONFIG_CALIBRATION_H */
