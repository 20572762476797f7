// The "WiFi" section of the user configuration, syntax version 1: check, reader, writer.
#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "config/descriptions/device_defaults.hpp"
#include "config/descriptions/engine.hpp"
#include "config/descriptions/user_descriptions.hpp"
#include "config/v1/by_key.hpp"
#include "config/v1/user_checks.hpp"
#include "config/v1/user_section_writer.hpp"
#include "config/v1/user_sections.hpp"
#include "zt4config/config.h"

namespace {

// The web interface sends the access point flat; the document keeps the DHCP server apart.
json_t* wifiFromFlat(const json_t* input, const char* function) {
    zt4::JsonRef wifi(json_object());
    zt4::JsonRef dhcp(json_object());
    if (!wifi || !dhcp) {
        zt4::logError(function, "json_dhcp NULL");
        return nullptr;
    }
    if (json_t* enable = json_object_get(input, "Enable")) json_object_set(wifi.get(), "Enable", enable);
    json_t* ssid = json_object_get(input, "SSID");
    json_object_set_new(wifi.get(), "SSID",
                        ssid ? json_incref(ssid) : zt4::sections::wifiSsidDefault(function));
    static constexpr const char* kFlatToStored[][2] = {
        {"AddressIP", "AddressIP"}, {"Netmask", "Netmask"},
        {"StartIP", "DHCPRangeStartIP"}, {"EndIP", "DHCPRangeEndIP"}};
    for (const auto& names : kFlatToStored) {
        if (json_t* value = json_object_get(input, names[0])) json_object_set(dhcp.get(), names[1], value);
    }
    json_object_set(wifi.get(), "DHCP", dhcp.get());
    return wifi.release();
}

constexpr zt4::v1::SectionWriter kWiFiWriter = {
    "WiFi", "jsonWifi", "ConfigWifi", "Wifi", "WiFi config",
    checkJSONZT4UserConfigWiFiSyntaxVersion1, readJSONZT4UserConfigWiFiSyntaxVersion1,
    wifiFromFlat, nullptr};

}  // namespace

json_t* checkJSONZT4UserConfigWiFiSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return zt4::sections::check(zt4::sections::kWiFi, section, status);
}

json_t* readJSONZT4UserConfigWiFiSyntaxVersion1() noexcept {
    return readJSONZT4UserConfigByKeyObject("WiFi");
}

int writeJSONZT4UserConfigWiFiSyntaxVersion1(json_t* section) noexcept {
    return zt4::v1::writeSection(kWiFiWriter, section, __func__);
}
