// The one call that fills the whole record, in the order the readers depend on each other:
// system first (the user's options are ANDed with it), then the setup, the connectors, the
// expert options, the calibration (which follows the connectors' modes), and a last pass.
#include "common/log.hpp"
#include "model/record_fields.hpp"
#include "zt4config/calibration.h"
#include "zt4config/record_readers.h"
#include "zt4config/upgrade.h"

namespace {

using zt4::record::isThreephaseUnbalanced;

// meterRunning, and per connector currentImbalanceOff; a three-phase connector's first channel
// decides the over-current option of all three, and mode 6 measures neither THD nor power
// imbalance.
void finish(zt4Data& data) noexcept {
    data.meterRunning = 0;
    for (unsigned i = 0; i < ZT4_CONNECTOR_COUNT; ++i) {
        ConnectorConfig& connector = data.connectors[i];
        ConnectorExpert& options = data.expert.connectors[i];
        const unsigned mode = connector.channels[0].mode;
        connector.currentImbalanceOff = 1;
        if (mode == 6) {
            options.thd = 0;
            options.powerImbalance = 0;
        }
        if (isThreephaseUnbalanced(mode)) {
            if (connector.channels[0].enable == 1 && options.currentImbalance == 1) {
                connector.currentImbalanceOff = 0;
            }
            options.channels[1].overCurrent = options.channels[0].overCurrent;
            options.channels[2].overCurrent = options.channels[0].overCurrent;
        }
        for (unsigned c = 0; c < ZT4_CHANNEL_COUNT; ++c) {
            if (connector.channels[c].enable == 1) data.meterRunning = 1;
        }
    }
}

}  // namespace

int readZT4AllConfig(zt4Data* data) noexcept {
    const char* function = __func__;
    if (data == nullptr) {
        zt4::logError(function, "zt4Data NULL");
        return -1;
    }
    zt4::logLine(LOG_INFO, "Read Connector system configuration");
    if (readZT4SystemConnector(data->connectors) != 0) {
        zt4::logError(function, "FAILED to read Connector system configuration");
        return -1;
    }
    zt4::logLine(LOG_INFO, "Read Expert system configuration");
    if (readZT4SystemExpert(data) != 0) {
        zt4::logError(function, "FAILED to read Expert system configuration");
        return -1;
    }
    zt4::logLine(LOG_INFO, "Read Setup Connector configuration");
    if (readZT4ConfigSetupConnectors(data) != 0) {
        // The leading blank is part of the message the daemons' log filters know.
        zt4::logLine(LOG_ERR, " error.[%s]: FAILED to read Setup Connector configuration. Use default configuration",
                     function);
    }
    zt4::logLine(LOG_INFO, "Read Connector configuration");
    if (readZT4ConfigConnector(data) != 0) {
        zt4::logError(function, "FAILED to read Connector configuration");
        return -1;
    }
    zt4::logLine(LOG_INFO, "Read Expert Connector configuration");
    if (readZT4ConfigExpert(data) != 0) {
        zt4::logError(function, "FAILED to read Expert Connector configuration");
        return -1;
    }
    zt4::logLine(LOG_INFO, "Read Connector calibration");
    if (ReadZT4ConfigCalibration(data->connectors) != 0) {
        zt4::logError(function, "FAILED to read Connector calibration");
        return -1;
    }
    finish(*data);
    return 0;
}
