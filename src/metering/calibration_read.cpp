// Reading the calibration files into the configuration record: the line parser, one reader per
// file under the file's read lock, and the selection by connector mode.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "common/api.hpp"
#include "common/log.hpp"
#include "common/path.hpp"
#include "metering/calibration_fields.hpp"
#include "zt4config/calibration.h"
#include "zt4config/lock.h"
#include "zt4config/model.h"

namespace zt4 {
namespace {

// fgets buffer: lines are at most 127 characters.
constexpr std::size_t kLineCapacity = 128;
// "Connect_<c>_" is 10 characters, "Cnl_<n>_" 6 more: the numbers are single digits.
constexpr std::size_t kChannelWordOffset = 10;
constexpr std::size_t kKeyOffset = 16;

// The first field, in key order, whose key begins `text` (compared by the key's own length).
const CalibrationField* fieldStarting(const char* text) {
    for (const CalibrationField& field : kCalibrationFields) {
        if (std::strncmp(text, field.key, std::strlen(field.key)) == 0) return &field;
    }
    return nullptr;
}

// The line again as a whole, as "Connect_%u_Cnl_%u_<key>=%x" (or "=%f"): true when the
// connector, the channel and the value all convert.
bool scanLine(const char* line, const CalibrationField& field, unsigned& connector,
              unsigned& channel, std::uint32_t& bits, float& real) {
    int consumed = 0;
    if (std::sscanf(line, "Connect_%u_Cnl_%u_%n", &connector, &channel, &consumed) != 2 ||
        consumed == 0) {
        return false;
    }
    const char* key = line + consumed;
    const std::size_t keyLength = std::strlen(field.key);
    if (std::strncmp(key, field.key, keyLength) != 0 || key[keyLength] != '=') return false;
    const char* value = key + keyLength + 1;
    if (field.form == CalibrationForm::Real) return std::sscanf(value, "%f", &real) == 1;
    unsigned int hex = 0;
    if (std::sscanf(value, "%x", &hex) != 1) return false;
    bits = static_cast<std::uint32_t>(hex);
    return true;
}

void traceValue(const CalibrationField& field, unsigned connector, unsigned channel,
                std::uint32_t bits, float real) {
    if (field.form == CalibrationForm::Real) {
        logLine(LOG_INFO, "[%s] : Connector[%u].Cnl[%u].%s: %.2f", "ReadZT4CalibrationFile",
                connector, channel, field.traceName, static_cast<double>(real));
    } else {
        logLine(LOG_INFO, "[%s] : Connector[%u].Cnl[%u].%s: %d", "ReadZT4CalibrationFile",
                connector, channel, field.traceName, static_cast<int>(bits));
    }
}

}  // namespace

int ReadZT4CalibrationFile(std::FILE* stream, ConnectorConfig* connectors) {
    char line[kLineCapacity];
    while (std::fgets(line, sizeof line, stream) != nullptr) {
        if (std::strncmp(line, "//", 2) == 0 || std::strncmp(line, "Connect", 7) != 0) continue;
        if (std::strlen(line) < kKeyOffset) continue;
        if (std::strncmp(line + kChannelWordOffset, "Cnl", 3) != 0) continue;
        const CalibrationField* field = fieldStarting(line + kKeyOffset);
        if (field == nullptr) continue;
        unsigned connector = 0, channel = 0;
        std::uint32_t bits = 0;
        float real = 0.0f;
        if (!scanLine(line, *field, connector, channel, bits, real)) continue;
        if (isConnectorValid(connector) == 0 && isChannelValid(channel) == 0) {
            ChannelConfig& record = connectors[connector - 1].channels[channel - 1];
            if (field->form == CalibrationForm::Real) {
                setCalibrationReal(record, *field, real);
            } else {
                setCalibrationBits(record, *field, bits);
            }
        }
        if (debugLevel() > 3) traceValue(*field, connector, channel, bits, real);
    }
    return 0;
}

namespace {

// Reads one file under its read lock: 0 when it was parsed and unlocked, else 1.
int readCalibrationFile(const char* function, const CalibrationFile& file,
                        ConnectorConfig* connectors) {
    if (connectors == nullptr) {
        logError(function, "Cnt is NULL");
        return 1;
    }
    return guarded(function, 1, [&] {
        const std::string path = resolvePath(file.path);
        const int fd = open(path.c_str(), O_RDWR | O_SYNC, 0666);
        if (fd < 0) {
            logError(function, "FAILED to open %s. %s", file.wording, std::strerror(errno));
            return 1;
        }
        if (LockReadFile(fd, path.c_str()) != 0) {
            logError(function, "FAILED to lock file %s", file.wording);
            close(fd);
            return 1;
        }
        std::FILE* stream = fdopen(fd, "r");
        if (stream == nullptr) {
            logError(function, "FAILED to fdopen %s", file.wording);
            UnLockReadFile(fd, path.c_str());
            close(fd);
            return 1;
        }
        logInfo(function, "Read configuration from internal flash %s", file.wording);
        ReadZT4CalibrationFile(stream, connectors);
        int result = 0;
        if (UnLockReadFile(fd, path.c_str()) != 0) {
            logError(function, "FAILED to unlock %s", file.wording);
            result = 1;
        }
        std::fclose(stream);
        return result;
    });
}

bool calibrationFileExists(const CalibrationFile& file) {
    const int fd = open(resolvePath(file.path).c_str(), O_RDWR | O_SYNC, 0666);
    if (fd < 0) return false;
    close(fd);
    return true;
}

// Modes whose channels take the single-phase coefficients: monophase and balanced three-phase.
bool takesMonophaseCalibration(unsigned mode) { return mode == 1 || mode == 3 || mode == 5; }

}  // namespace
}  // namespace zt4

extern "C" {

int ReadZT4ConfigCalibrationStandard(ConnectorConfig* connectors) noexcept {
    return zt4::readCalibrationFile(__func__, zt4::kStandardCalibration, connectors);
}

int ReadZT4ConfigCalibrationThreephase(ConnectorConfig* connectors) noexcept {
    return zt4::readCalibrationFile(__func__, zt4::kThreephaseCalibration, connectors);
}

int ReadZT4ConfigCalibrationMonophase(ConnectorConfig* connectors) noexcept {
    return zt4::readCalibrationFile(__func__, zt4::kMonophaseCalibration, connectors);
}

int ReadZT4ConfigCalibration(ConnectorConfig* connectors) noexcept {
    const char* function = __func__;
    if (connectors == nullptr) {
        zt4::logError(function, "Cnt is NULL");
        return 1;
    }
    return zt4::guarded(function, 1, [&] {
        const bool monophase = zt4::calibrationFileExists(zt4::kMonophaseCalibration);
        const bool threephase = zt4::calibrationFileExists(zt4::kThreephaseCalibration);
        const bool standard = zt4::calibrationFileExists(zt4::kStandardCalibration);
        if (!monophase && !threephase) {
            return standard ? ReadZT4ConfigCalibrationStandard(connectors) : 1;
        }
        ConnectorConfig monophaseCopy[ZT4_CONNECTOR_COUNT] = {};
        ConnectorConfig threephaseCopy[ZT4_CONNECTOR_COUNT] = {};
        if (ReadZT4ConfigCalibrationMonophase(monophaseCopy) != 0) return 1;
        if (ReadZT4ConfigCalibrationThreephase(threephaseCopy) != 0) return 1;
        for (unsigned connector = 0; connector < ZT4_CONNECTOR_COUNT; ++connector) {
            const unsigned mode = connectors[connector].channels[0].mode;
            const ConnectorConfig& source = zt4::takesMonophaseCalibration(mode)
                                                ? monophaseCopy[connector]
                                                : threephaseCopy[connector];
            for (unsigned channel = 0; channel < ZT4_CHANNEL_COUNT; ++channel) {
                zt4::copyCalibration(connectors[connector].channels[channel],
                                     source.channels[channel]);
            }
        }
        return 0;
    });
}

}  // extern "C"
