// The web interface's documents of the whole files and of the network sections: version-1
// sections reshaped to the names of the older documents, version-0 sections passed through.
#include <cstring>

#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "config/facade/dispatch.hpp"
#include "config/v0/user_sections_v0.hpp"
#include "config/v1/user_section_writer.hpp"
#include "config/v1/user_sections.hpp"
#include "zt4config/config.h"
#include "zt4config/device.h"
#include "zt4config/modbus.h"
#include "zt4config/radio.h"
#include "zt4config/webapi.h"

namespace {

using zt4::ConfigDocument;
using zt4::v1::renameKey;

// ---- Reshaping of version-1 sections ---------------------------------------------------------

json_t* radioV1() noexcept {
    zt4::JsonRef radio(readJSONZT4UserConfigRadioLoRaWithDevEUISyntaxVersion1());
    if (!radio) return nullptr;
    json_object_set_new(radio.get(), "Protocol", json_string("LoRa"));
    json_object_set_new(radio.get(), "ADBitRate", json_integer(1));
    renameKey(radio.get(), "FrameFormat", "TransmitMode");
    return radio.release();
}

json_t* wifiV1() noexcept {
    zt4::JsonRef wifi(readJSONZT4UserConfigWiFiSyntaxVersion1());
    if (!wifi) return nullptr;
    if (json_t* dhcp = json_object_get(wifi.get(), "DHCP"); json_is_object(dhcp)) {
        static constexpr const char* kStoredToFlat[][2] = {
            {"AddressIP", "AddressIP"}, {"Netmask", "Netmask"},
            {"DHCPRangeStartIP", "StartIP"}, {"DHCPRangeEndIP", "EndIP"}};
        for (const auto& names : kStoredToFlat) {
            if (json_t* value = json_object_get(dhcp, names[0])) json_object_set(wifi.get(), names[1], value);
        }
    }
    json_object_del(wifi.get(), "SSID");
    json_object_del(wifi.get(), "DHCP");
    return wifi.release();
}

json_t* modbusV1() noexcept {
    zt4::JsonRef modbus(readJSONZT4UserConfigModbusSyntaxVersion1());
    if (!modbus) return nullptr;
    renameKey(modbus.get(), "MappingVersion", "Version");
    renameKey(modbus.get(), "SlaveID", "ID");
    return modbus.release();
}

json_t* bacnetV1() noexcept {
    zt4::JsonRef bacnet(readJSONZT4UserConfigBACnetSyntaxVersion1());
    if (!bacnet) return nullptr;
    renameKey(bacnet.get(), "MappingVersion", "Version");
    return bacnet.release();
}

json_t* setupConnectorsV1() noexcept {
    zt4::JsonRef setup(readJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1());
    if (!setup) return nullptr;
    renameKey(setup.get(), "NumberConnectorThreephase", "Setup");
    return setup.release();
}

// The radio reader adds the device EUI, which belongs to the radio, not to the document.
int radioWriteV1(json_t* json) noexcept {
    if (json == nullptr) return writeJSONZT4UserConfigRadioLoRaSyntaxVersion1(json);
    zt4::JsonRef copy(json_copy(json));
    if (!copy) return writeJSONZT4UserConfigRadioLoRaSyntaxVersion1(json);
    json_object_del(copy.get(), "DEVEUI");
    return writeJSONZT4UserConfigRadioLoRaSyntaxVersion1(copy.get());
}

int wifiSsidWriteV0(json_t*) noexcept { return -1; }

// ---- Ethernet under version 0: the addressing mode lives in its own setting -------------------

bool isKnownAddressing(const char* text) {
    return std::strncmp(text, "Static", 6) == 0 || std::strncmp(text, "DHCP", 4) == 0;
}

json_t* ethernetV0() noexcept {
    zt4::JsonRef ethernet(readJSONZT4UserConfigEthernetSyntaxVersion0());
    if (!ethernet) return nullptr;
    char addressing[8] = {};
    const bool read = readUserConfigEthernetIPv4Addressing(addressing, sizeof addressing) == 0;
    addressing[std::strcspn(addressing, "\r\n")] = '\0';  // the setting's line end is no part of it
    const bool known = read && isKnownAddressing(addressing);
    json_object_set_new(ethernet.get(), "IPv4Addressing", json_string(known ? addressing : "Static"));
    return ethernet.release();
}

int ethernetWriteV0(json_t* json) noexcept {
    static constexpr const char* function = "writeJSONZT4WebAPIConfigEthernetSyntaxVersion0";
    if (json == nullptr) return writeJSONZT4UserConfigEthernetSyntaxVersion0(json);
    zt4::JsonRef rest(json_copy(json));
    if (!rest) {
        zt4::logError(function, "jsonCopy NULL");
        return -1;
    }
    char addressing[8] = "Static";
    if (json_t* given = json_object_get(rest.get(), "IPv4Addressing")) {
        char cut[8] = {};
        if (const char* text = json_string_value(given)) std::strncpy(cut, text, sizeof cut - 1);
        if (isKnownAddressing(cut)) std::memcpy(addressing, cut, sizeof addressing);
        json_object_del(rest.get(), "IPv4Addressing");
        if (writeUserConfigEthernetIPv4Addressing(addressing) != 0) return -1;
    }
    zt4::logInfo(function, "IPv4Addressing = %s", addressing);
    return writeJSONZT4UserConfigEthernetSyntaxVersion0(rest.get());
}

// Operations that are the same under both versions.
template <auto Operation, class... Args>
auto eitherVersion(const char* function, Args... args) noexcept {
    return zt4::dispatch<Operation, Operation>(function, ConfigDocument::User, args...);
}

}  // namespace

extern "C" {

json_t* readJSONZT4WebAPIConfigFile(void) noexcept {
    zt4::logInfo(__func__, "Read User configuration file via Web API");
    return eitherVersion<readJSONZT4ConfigFile>(__func__);
}

json_t* readJSONZT4WebAPISystemFile(void) noexcept {
    zt4::logInfo(__func__, "Read System configuration file via Web API");
    return eitherVersion<readJSONZT4SystemFile>(__func__);
}

int readJSONZT4WebAPIDeviceInfo(json_t* object) noexcept {
    zt4::logInfo(__func__, "Read Device information via Web API");
    return eitherVersion<readJSONZT4DeviceInfo>(__func__, object);
}

json_t* readJSONZT4WebAPIDataConnectors(const uint16_t* zt4Rg, const zt4Data* data) noexcept {
    zt4::logInfo(__func__, "Read Data connectors via Web API");
    return eitherVersion<readJSONZT4DataConnector>(__func__, zt4Rg, data);
}

json_t* readJSONZT4WebAPIConfigWeb(void) noexcept {
    zt4::logInfo(__func__, "Read User configuration web via Web API");
    return zt4::dispatch<readJSONZT4UserConfigWebSyntaxVersion0, readJSONZT4UserConfigWebSyntaxVersion1>(
        __func__, ConfigDocument::User);
}

json_t* readJSONZT4WebAPIConfigRadio(void) noexcept {
    zt4::logInfo(__func__, "Read User configuration RadioLoRa via Web API");
    return zt4::dispatch<readJSONZT4UserConfigRadioLoRaSyntaxVersion0, radioV1>(__func__, ConfigDocument::User);
}

json_t* readJSONZT4WebAPIConfigRadioWithDevEUI(void) noexcept {
    zt4::logInfo(__func__, "Read User configuration RadioLoRa via Web API");
    return zt4::dispatch<readJSONZT4UserConfigRadioLoRaSyntaxVersion0, radioV1>(__func__, ConfigDocument::User);
}

json_t* readJSONZT4WebAPIConfigWiFi(void) noexcept {
    zt4::logInfo(__func__, "Read User configuration WiFi via Web API");
    return zt4::dispatch<readJSONZT4UserConfigWiFiSyntaxVersion0, wifiV1>(__func__, ConfigDocument::User);
}

json_t* readJSONZT4WebAPIConfigEthernet(void) noexcept {
    zt4::logInfo(__func__, "Read User configuration Ethernet via Web API");
    return zt4::dispatch<ethernetV0, readJSONZT4UserConfigEthernetSyntaxVersion1>(__func__, ConfigDocument::User);
}

json_t* readJSONZT4WebAPIConfigModbus(void) noexcept {
    zt4::logInfo(__func__, "Read User configuration Modbus via Web API");
    return zt4::dispatch<readJSONZT4UserConfigModbusSyntaxVersion0, modbusV1>(__func__, ConfigDocument::User);
}

json_t* readJSONZT4WebAPIConfigBACnet(void) noexcept {
    zt4::logInfo(__func__, "Read User configuration BACnet via Web API");
    return zt4::dispatch<readJSONZT4UserConfigBACnetSyntaxVersion0, bacnetV1>(__func__, ConfigDocument::User);
}

json_t* readJSONZT4WebAPIConfigSetupConnectors(void) noexcept {
    zt4::logInfo(__func__, "Read User configuration setup connectors via Web API");
    return zt4::dispatch<readJSONZT4UserConfigSetupConnectorsSyntaxVersion0, setupConnectorsV1>(
        __func__, ConfigDocument::User);
}

int writeJSONZT4WebAPIConfigFile(json_t* json) noexcept {
    zt4::logInfo(__func__, "Write User configuration file via Web API");
    return eitherVersion<writeJSONZT4ConfigFile>(__func__, json);
}

int writeJSONZT4WebAPISystemFile(json_t* json) noexcept {
    zt4::logInfo(__func__, "Write System configuration file via Web API");
    return eitherVersion<writeJSONZT4SystemFile>(__func__, json);
}

int writeJSONZT4WebAPIConfigWeb(json_t* json) noexcept {
    zt4::logInfo(__func__, "Write User configuration web via Web API");
    return zt4::dispatch<writeJSONZT4UserConfigWebSyntaxVersion0, writeJSONZT4UserConfigWebSyntaxVersion1>(
        __func__, ConfigDocument::User, json);
}

int writeJSONZT4WebAPIConfigRadio(json_t* json) noexcept {
    zt4::logInfo(__func__, "Write User configuration RadioLoRa via Web API");
    return zt4::dispatch<writeJSONZT4UserConfigRadioLoRaSyntaxVersion0, radioWriteV1>(
        __func__, ConfigDocument::User, json);
}

int writeJSONZT4WebAPIConfigWiFi(json_t* json) noexcept {
    zt4::logInfo(__func__, "Write User configuration WiFi via Web API");
    return zt4::dispatch<writeJSONZT4UserConfigWiFiSyntaxVersion0, writeJSONZT4UserConfigWiFiSyntaxVersion1>(
        __func__, ConfigDocument::User, json);
}

int writeJSONZT4WebAPIConfigWiFiSSID(json_t* json) noexcept {
    zt4::logInfo(__func__, "Write User configuration WiFi SSID via Web API");
    return zt4::dispatch<wifiSsidWriteV0, writeJSONZT4UserConfigWiFiSyntaxVersion1>(
        __func__, ConfigDocument::User, json);
}

int writeJSONZT4WebAPIConfigEthernet(json_t* json) noexcept {
    zt4::logInfo(__func__, "Write User configuration Ethernet via Web API");
    return zt4::dispatch<ethernetWriteV0, writeJSONZT4UserConfigEthernetSyntaxVersion1>(
        __func__, ConfigDocument::User, json);
}

int writeJSONZT4WebAPIConfigModbus(json_t* json) noexcept {
    zt4::logInfo(__func__, "Write User configuration Modbus via Web API");
    return zt4::dispatch<writeJSONZT4UserConfigModbusSyntaxVersion0, writeJSONZT4UserConfigModbusSyntaxVersion1>(
        __func__, ConfigDocument::User, json);
}

int writeJSONZT4WebAPIConfigBACnet(json_t* json) noexcept {
    zt4::logInfo(__func__, "Write User configuration BACnet via Web API");
    return zt4::dispatch<writeJSONZT4UserConfigBACnetSyntaxVersion0, writeJSONZT4UserConfigBACnetSyntaxVersion1>(
        __func__, ConfigDocument::User, json);
}

int writeJSONZT4WebAPIConfigSetupConnectors(json_t* json) noexcept {
    zt4::logInfo(__func__, "Write User configuration Setup connectors via Web API");
    return zt4::dispatch<writeJSONZT4UserConfigSetupConnectorsSyntaxVersion0,
                         writeJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1>(
        __func__, ConfigDocument::User, json);
}

}  // extern "C"
