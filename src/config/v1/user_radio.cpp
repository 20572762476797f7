// The "RadioLoRa" section of the user configuration, syntax version 1: check, readers, writer.
#include <cstring>

#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "config/descriptions/engine.hpp"
#include "config/descriptions/user_descriptions.hpp"
#include "config/v1/by_key.hpp"
#include "config/v1/user_checks.hpp"
#include "config/v1/user_section_writer.hpp"
#include "config/v1/user_sections.hpp"
#include "zt4config/config.h"
#include "zt4config/radio.h"

namespace {

constexpr const char* kBands[] = {"AS-923", "AU-915", "EU-868", "IN-865", "US-915"};

// An empty identifier is replaced by the one the radio holds, when the radio can tell it.
void fillFromRadio(json_t* radio, const char* key, int (*get)(char*, size_t), size_t capacity) {
    json_t* value = json_object_get(radio, key);
    if (!json_is_string(value) || json_string_length(value) != 0) return;
    char text[64] = {};
    if (get(text, capacity) == 0) json_object_set_new(radio, key, json_string(text));
}

json_t* radioCopy(const json_t* input, const char*) {
    json_t* copy = json_deep_copy(input);
    zt4::v1::renameKey(copy, "TransmitMode", "FrameFormat");
    json_object_del(copy, "ADBitRate");
    json_object_del(copy, "Protocol");
    return copy;
}

// The radio's band file takes only an exact band name.
void storeBand(const json_t* radio, const char*) {
    const char* band = json_string_value(json_object_get(radio, "Band"));
    if (band == nullptr) return;
    char compared[16] = {};
    std::strncpy(compared, band, sizeof compared - 1);
    for (const char* known : kBands) {
        if (std::strcmp(compared, known) == 0) {
            writeUserConfigRadioRegionBand(compared);
            return;
        }
    }
}

constexpr zt4::v1::SectionWriter kRadioWriter = {
    "RadioLoRa", "jsonRadio", "ConfigRadioLoRa", "RadioLoRa", "RadioLoRa config",
    checkJSONZT4UserConfigRadioLoRaSyntaxVersion1, readJSONZT4UserConfigRadioLoRaSyntaxVersion1,
    radioCopy, storeBand};

}  // namespace

json_t* checkJSONZT4UserConfigRadioLoRaSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return zt4::sections::check(zt4::sections::kRadioLoRa, section, status);
}

json_t* readJSONZT4UserConfigRadioLoRaSyntaxVersion1() noexcept {
    zt4::JsonRef radio(readJSONZT4UserConfigByKeyObject("RadioLoRa"));
    if (!radio) {
        zt4::logError(__func__, "FAILED to get key RadioLoRa config");
        return nullptr;
    }
    fillFromRadio(radio.get(), "APPKEY", getConfigRadioAppkey, 64);
    fillFromRadio(radio.get(), "APPEUI", getConfigRadioAppeui, 32);
    return radio.release();
}

json_t* readJSONZT4UserConfigRadioLoRaWithDevEUISyntaxVersion1() noexcept {
    zt4::JsonRef radio(readJSONZT4UserConfigRadioLoRaSyntaxVersion1());
    if (!radio) return nullptr;
    char devEui[32] = {};
    if (getConfigRadioDeveui(devEui, sizeof devEui) != 0) devEui[0] = '\0';
    json_object_set_new(radio.get(), "DEVEUI", json_string(devEui));
    return radio.release();
}

int writeJSONZT4UserConfigRadioLoRaSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::writeSection(kRadioWriter, section, __func__);
}
