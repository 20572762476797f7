// Syntax version 1 of the upgrade of the stored user document and of its two targeted updates
// (radio frame format, number of three-phase connectors).
#include <string>

#include "common/api.hpp"
#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "common/path.hpp"
#include "zt4config/config.h"
#include "zt4config/json.h"
#include "zt4config/upgrade.h"
#include "zt4config/user.h"

namespace {

constexpr const char* kUserPath = "/home/nvram/zt4config.json";
constexpr const char* kFactoryPath = "/etc/zt4config_factory_v1.json";

// The frame format that transmit mode `mode` asks for, or `stored` when it asks for no change.
json_int_t frameFormatFor(json_int_t stored, std::uint8_t mode) noexcept {
    if (stored == 3 && mode == 0) return 1;
    if (stored != 3 && mode == 1) return 3;
    return stored;
}

}  // namespace

int upgradeJSONZT4UserConfigFileSyntaxVersion1(void) noexcept {
    const char* function = __func__;
    return zt4::guarded(function, -1, [&] {
        const std::string userPath = zt4::resolvePath(kUserPath);
        zt4::JsonRef stored(readJSONFile(userPath.c_str()));
        if (!stored) {
            zt4::logError(function, "FAILED reading file '%s'", userPath.c_str());
            return -1;
        }
        const std::string factoryPath = zt4::resolvePath(kFactoryPath);
        zt4::JsonRef factory(readJSONFile(factoryPath.c_str()));
        if (!factory) {
            zt4::logError(function, "FAILED reading file '%s'", factoryPath.c_str());
            return -1;
        }
        // Members both documents have keep the stored value whole: a new key inside an
        // existing section is not added.
        if (json_object_update_missing(stored.get(), factory.get()) != 0) {
            zt4::logError(function, "FAILED to merge files '%s' '%s'", factoryPath.c_str(),
                          userPath.c_str());
            return -1;
        }
        return writeJSONZT4UserConfigFile(stored.get());
    });
}

int updateJSONZT4UserConfigRadioLoRaFrameFormatSyntaxVersion1(std::uint8_t mode) noexcept {
    const char* function = __func__;
    zt4::JsonRef radio(readJSONZT4UserConfigRadioLoRaSyntaxVersion1());
    if (!radio) {
        zt4::logError(function, "FAILED to read RadioLoRa config");
        return -1;
    }
    json_t* frameFormat = json_object_get(radio.get(), "FrameFormat");
    if (frameFormat == nullptr) {
        zt4::logError(function, "FrameFormat NULL");
        return -1;
    }
    const json_int_t stored = json_integer_value(frameFormat);
    const json_int_t wanted = frameFormatFor(stored, mode);
    if (wanted == stored) return 0;
    if (json_object_set_new(radio.get(), "FrameFormat", json_integer(wanted)) != 0 ||
        writeJSONZT4UserConfigRadioLoRaSyntaxVersion1(radio.get()) != 0) {
        zt4::logError(function, "FAILED to update RadioLoRa config");
        return -1;
    }
    return 0;
}

int updateJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1(std::uint8_t count) noexcept {
    const char* function = __func__;
    zt4::JsonRef expert(readJSONZT4UserConfigExpertSyntaxVersion1());
    if (!expert) {
        zt4::logError(function, "FAILED to read Expert config");
        return -1;
    }
    json_t* stored = json_object_get(expert.get(), "NumberConnectorThreephase");
    if (stored == nullptr) {
        zt4::logError(function, "read NumberConnectorThreephase NULL");
        return -1;
    }
    if (!json_is_integer(stored)) {
        zt4::logError(function, "NumberConnectorThreephase NOT INTEGER");
        return -1;
    }
    // Compared as a signed byte, as the device has always stored it.
    const int storedCount = static_cast<std::int8_t>(json_integer_value(stored));
    if (storedCount == count) return 0;
    zt4::logLine(LOG_INFO, "Read Number Connector Threephase %u.Expect Number Connector Threephase %u",
                 static_cast<unsigned>(storedCount), static_cast<unsigned>(count));
    if (json_object_set_new(expert.get(), "NumberConnectorThreephase", json_integer(count)) != 0 ||
        writeJSONZT4UserConfigExpertSyntaxVersion1(expert.get()) != 0) {
        zt4::logError(function, "FAILED to update number Connector Threephase config");
        return -1;
    }
    return 0;
}
