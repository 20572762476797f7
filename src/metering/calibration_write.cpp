// Writing a calibration file, from the configuration record or from a JSON document: the lines
// go to a scratch file under its write lock, the scratch file is renamed to "<target>.new" (left
// in place), and cp copies that over the target. A failure before the copy leaves the target as
// it was.
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "common/api.hpp"
#include "common/log.hpp"
#include "common/path.hpp"
#include "metering/calibration_fields.hpp"
#include "metering/calibration_staging.hpp"
#include "zt4config/calibration.h"
#include "zt4config/lock.h"

namespace zt4 {
namespace {

constexpr const char* kModelScratchPath = "/home/nvram/zt4calibration.tmp";
constexpr const char* kJsonScratchPath = "/home/nvram/zt4calibration.new";
constexpr int kLinesFromModel = 282;

// Numbers that tell in the model writer's messages where it failed.
enum ModelWriterPlace {
    kPlaceNullModel = 1,
    kPlaceOpen = 2,
    kPlaceWrite = 3,
    kPlaceCopy = 4,
};

// --- From the model ----------------------------------------------------------------------------

int writeLine(std::FILE* stream, const char* line) { return std::fputs(line, stream) >= 0 ? 1 : 0; }

int writeField(std::FILE* stream, unsigned connector, unsigned channel, const ChannelConfig& record,
               const CalibrationField& field) {
    char line[128];
    if (field.form == CalibrationForm::Real) {
        std::snprintf(line, sizeof line, "Connect_%u_Cnl_%u_%s=%.2f\n", connector, channel, field.key,
                      static_cast<double>(calibrationReal(record, field)));
    } else {
        std::snprintf(line, sizeof line, "Connect_%u_Cnl_%u_%s=0x%08x\n", connector, channel, field.key,
                      static_cast<unsigned>(calibrationBits(record, field)));
    }
    return writeLine(stream, line);
}

// The 282 lines of a file; the number written successfully.
int writeModelLines(std::FILE* stream, const ConnectorConfig* connectors) {
    int written = 0;
    for (unsigned connector = 0; connector < ZT4_CONNECTOR_COUNT; ++connector) {
        for (unsigned channel = 0; channel < ZT4_CHANNEL_COUNT; ++channel) {
            for (const CalibrationField* field : kCalibrationFileOrder) {
                written += writeField(stream, connector + 1, channel + 1,
                                      connectors[connector].channels[channel], *field);
            }
        }
        for (const CalibrationField* field : kNeutralFields) {
            written += writeField(stream, connector + 1, kNeutralChannel + 1,
                                  connectors[connector].channels[kNeutralChannel], *field);
        }
    }
    return written;
}

void releaseModelScratch(const char* function, const std::string& path, std::FILE* stream, int fd,
                         const char* unlockFailure) {
    if (UnLockWriteFile(fd, path.c_str()) != 0) logError(function, "%s", unlockFailure);
    if (stream != nullptr) {
        std::fclose(stream);
    } else {
        close(fd);
    }
}

int writeFromModel(const char* function, const ConnectorConfig* connectors, int kind) {
    const std::string scratch = resolvePath(kModelScratchPath);
    ScratchFailure failure = ScratchFailure::None;
    const int fd = openScratchFile(scratch, failure);
    if (failure == ScratchFailure::Open) {
        const int error = errno;
        std::perror(("open " + scratch).c_str());
        logLine(LOG_ERR, "error.[%s].%d: FAILED to open tmp calibration configuration file. %s",
                function, kPlaceOpen, std::strerror(error));
        return 1;
    }
    if (failure == ScratchFailure::Lock) {
        logError(function, "FAILED to lock file tmp calibration configuration file");
        return 1;
    }
    std::FILE* stream = fdopen(fd, "w");
    if (stream == nullptr) {
        const int error = errno;
        std::perror(("fopen " + scratch).c_str());
        logError(function, "FAILED to fdopen tmp calibration configuration file. %s", std::strerror(error));
        releaseModelScratch(function, scratch, nullptr, fd,
                            "FAILED to unlock file tmp calibration configuration file");
        return 1;
    }
    const int written = writeModelLines(stream, connectors);
    // Lines still buffered count only once they reach the file.
    if (written != kLinesFromModel || std::fflush(stream) != 0) {
        logLine(LOG_ERR, "error.[%s].%d: FAILED to write calibration configuration file", function,
                kPlaceWrite);
        releaseModelScratch(function, scratch, stream, fd,
                            "FAILED to unlock file tmp calibration configuration file");
        return 1;
    }
    sync();
    const std::string target = resolvePath(calibrationFileOfKind(kind).path);
    const std::string staged = target + ".new";
    if (std::rename(scratch.c_str(), staged.c_str()) != 0) {
        logErrorAt(LOG_INFO, function, "FAILED to rename the tmp calibration configuration file");
        releaseModelScratch(function, scratch, stream, fd,
                            "FAILED to unlock file tmp calibration configuration file");
        return 1;
    }
    logInfo(function, "tmp calibration configuration file renamed successfully");
    sync();
    logInfo(function, "Update configuration file");
    const std::string command = "cp " + staged + " " + target;
    const int status = copyStagedFile(staged, target);
    int result = status;
    if (status == -1) {
        logLine(LOG_ERR, "error. [%s].%d: could not call %s: %s", function, kPlaceCopy,
                command.c_str(), std::strerror(errno));
        result = 1;
    } else {
        logLine(LOG_INFO, "[%s].%d: system %s returns %d", function, kPlaceCopy, command.c_str(), status);
    }
    sync();
    if (UnLockWriteFile(fd, scratch.c_str()) != 0) {
        logError(function, "FAILED to unlock tmp calibration configuration file");
        if (result == 0) result = 1;
    }
    std::fclose(stream);
    return result;
}

// --- From JSON ---------------------------------------------------------------------------------

// Writes one line per integer or real member of a channel object, keys as they come.
void writeChannelMembers(const char* function, std::FILE* stream, unsigned connector,
                         unsigned channel, json_t* object) {
    const char* key = nullptr;
    json_t* value = nullptr;
    json_object_foreach(object, key, value) {
        char name[128];
        std::snprintf(name, sizeof name, "Connect_%d_Cnl_%d_%s", static_cast<int>(connector),
                      static_cast<int>(channel), key);
        if (debugLevel() > 0) {
            logLine(LOG_INFO, "[%s] buf '%s' | value %f", function, name, json_number_value(value));
        }
        if (json_is_integer(value)) {
            std::fprintf(stream, "%s=0x%08x\n", name,
                         static_cast<unsigned>(static_cast<std::uint32_t>(json_integer_value(value))));
        } else if (json_is_real(value)) {
            std::fprintf(stream, "%s=%.2f\n", name,
                         static_cast<double>(static_cast<float>(json_real_value(value))));
        }
    }
}

// Writes every channel of every connector; false (logged) at the first element of a wrong shape.
bool writeJsonLines(const char* function, std::FILE* stream, json_t* connectors) {
    for (std::size_t i = 0; i < json_array_size(connectors); ++i) {
        json_t* connector = json_array_get(connectors, i);
        const unsigned index = static_cast<unsigned>(i);
        if (connector == nullptr) {
            logLine(LOG_ERR, "[%s] elmt Connector %u is NULL", function, index);
            return false;
        }
        if (!json_is_object(connector)) {
            logLine(LOG_ERR, "[%s] Connector %u is not an object", function, index);
            return false;
        }
        json_t* channels = json_object_get(connector, "Cnl");
        if (channels == nullptr) {
            logLine(LOG_ERR, "[%s] elmt Cnl is NULL", function);
            return false;
        }
        if (!json_is_array(channels)) {
            logLine(LOG_ERR, "[%s] Cnl is not an array", function);
            return false;
        }
        for (std::size_t j = 0; j < json_array_size(channels); ++j) {
            json_t* channel = json_array_get(channels, j);
            const unsigned channelIndex = static_cast<unsigned>(j);
            if (channel == nullptr) {
                logLine(LOG_ERR, "[%s] elmtCnl Cnl %u is NULL", function, channelIndex);
                return false;
            }
            if (!json_is_object(channel)) {
                logLine(LOG_ERR, "[%s] Cnl %u is not an object", function, channelIndex);
                return false;
            }
            writeChannelMembers(function, stream, index + 1, channelIndex + 1, channel);
        }
    }
    return true;
}

void releaseJsonScratch(const char* function, const std::string& path, std::FILE* stream, int fd) {
    if (UnLockWriteFile(fd, path.c_str()) != 0) {
        logError(function, "FAILED to unlock file new calibration configuration file");
    }
    if (stream != nullptr) {
        std::fclose(stream);
    } else {
        close(fd);
    }
}

int writeFromJson(const char* function, json_t* connectors, int kind) {
    const std::string scratch = resolvePath(kJsonScratchPath);
    ScratchFailure failure = ScratchFailure::None;
    const int fd = openScratchFile(scratch, failure);
    if (failure == ScratchFailure::Open) {
        logError(function, "FAILED to open new calibration configuration file. %s", std::strerror(errno));
        return 1;
    }
    if (failure == ScratchFailure::Lock) {
        logError(function, "FAILED to lock new calibration configuration file");
        return 1;
    }
    std::FILE* stream = fdopen(fd, "w");
    if (stream == nullptr) {
        logError(function, "FAILED to fdopen new calibration configuration file. %s", std::strerror(errno));
        releaseJsonScratch(function, scratch, nullptr, fd);
        return 1;
    }
    if (!writeJsonLines(function, stream, connectors)) {
        releaseJsonScratch(function, scratch, stream, fd);
        return 1;
    }
    if (std::fflush(stream) != 0 || std::ferror(stream)) {
        logError(function, "FAILED to write new calibration configuration file. %s", std::strerror(errno));
        releaseJsonScratch(function, scratch, stream, fd);
        return 1;
    }
    sync();
    const std::string target = resolvePath(calibrationFileOfKind(kind).path);
    const std::string staged = target + ".new";
    if (std::rename(scratch.c_str(), staged.c_str()) != 0) {
        logErrorAt(LOG_INFO, function, "FAILED to rename the new calibration configuration file");
        releaseJsonScratch(function, scratch, stream, fd);
        return 1;
    }
    logInfo(function, "New calibration configuration file renamed successfully");
    logLine(LOG_INFO, "[%s] Update configuration file", function);
    const std::string command = "cp '" + staged + "' '" + target + "'";
    const int status = copyStagedFile(staged, target);
    int result = status;
    if (status == -1) {
        logLine(LOG_ERR, "%s: could not call '%s': %s", function, command.c_str(), std::strerror(errno));
        result = 1;
    } else {
        logInfo(function, "system '%s' return %d", command.c_str(), status);
    }
    sync();
    releaseJsonScratch(function, scratch, stream, fd);
    return result;
}

}  // namespace
}  // namespace zt4

extern "C" {

int writeConfigInitCalibration(const ConnectorConfig* connectors, int kind) noexcept {
    const char* function = __func__;
    if (connectors == nullptr) {
        zt4::logLine(LOG_ERR, "error. [%s].%d: Cnt is NULL", function, zt4::kPlaceNullModel);
        return 1;
    }
    return zt4::guarded(function, 1, [&] { return zt4::writeFromModel(function, connectors, kind); });
}

int writeConfigCalibration(json_t* object, int kind) noexcept {
    const char* function = __func__;
    if (object == nullptr) {
        zt4::logLine(LOG_ERR, "error: [%s] root JSON object is NULL", function);
        return 1;
    }
    json_t* connectors = json_object_get(object, "Connector");
    if (connectors == nullptr) {
        zt4::logLine(LOG_ERR, "[%s] Connector is NULL", function);
        return 1;
    }
    if (!json_is_array(connectors)) {
        zt4::logLine(LOG_ERR, "[%s] Connector is not an array", function);
        return 1;
    }
    return zt4::guarded(function, 1, [&] { return zt4::writeFromJson(function, connectors, kind); });
}

}  // extern "C"
