// Syntax version 1 of the way back: user sections rebuilt from the lines of the flat parameter
// file, each field from its line "SECTION_FIELD=VALUE" or its default, then merged into the user
// document.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "common/api.hpp"
#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "common/path.hpp"
#include "config/descriptions/flat_file.hpp"
#include "config/v1/user_checks.hpp"
#include "zt4config/config.h"
#include "zt4config/device.h"
#include "zt4config/export.h"
#include "zt4config/json.h"

namespace {

using zt4::JsonRef;

constexpr const char* kFlatFile = "/home/nvram/zt4.cfg";
// Lines are read 255 characters at a time.
constexpr int kLineSize = 256;

// Opens the flat file for reading (it is never created here): the stream, or null after the
// messages. `quoted`: the path is quoted in the messages.
FILE* openFlatFile(const char* function, bool quoted) {
    const std::string path = zt4::resolvePath(kFlatFile);
    const int descriptor = open(path.c_str(), O_RDWR | O_SYNC);
    if (descriptor < 0) {
        zt4::logError(function, quoted ? "FAILED open file '%s'. (%s)" : "FAILED open file %s. (%s)",
                      path.c_str(), std::strerror(errno));
        return nullptr;
    }
    FILE* stream = fdopen(descriptor, "r");
    if (stream == nullptr) {
        const int error = errno;
        std::perror("fopen /home/nvram/zt4.cfg");
        zt4::logError(function, quoted ? "FAILED fopen file '%s'. (%s)" : "FAILED fopen file %s. (%s)",
                      path.c_str(), std::strerror(error));
        close(descriptor);
    }
    return stream;
}

// Lines that the read-back considers: not a "//" comment, and naming `text`.
bool considered(const char* line, const char* text) {
    return std::strstr(line, "//") == nullptr && std::strstr(line, text) != nullptr;
}

// A caller's field whose texts may fill their arrays: a copy whose texts end within them.
zt4FlatField terminated(const zt4FlatField& given) {
    zt4FlatField field = given;
    field.name[sizeof field.name - 1] = '\0';
    field.defaultString[sizeof field.defaultString - 1] = '\0';
    return field;
}

json_t* fieldDefault(const zt4FlatField& field) {
    switch (field.type) {
        case ZT4_FLAT_INTEGER:
            zt4::logLine(LOG_INFO, "Default %s=%d", field.name, static_cast<int>(field.defaultInteger));
            return json_integer(field.defaultInteger);
        case ZT4_FLAT_REAL:
            zt4::logLine(LOG_INFO, "Default %s=%f", field.name, static_cast<double>(field.defaultReal));
            return json_real(field.defaultReal);
        default:
            zt4::logLine(LOG_INFO, "Default %s='%s'", field.name, field.defaultString);
            return json_string(field.defaultString);
    }
}

// The value text of `line` when it reads "<key>=<value>", else null.
const char* valueAfter(const char* line, const char* key) {
    const std::size_t length = std::strlen(key);
    return std::strncmp(line, key, length) == 0 && line[length] == '=' ? line + length + 1 : nullptr;
}

// Scans `line` as "<key>=<value>" for `field`; sets the member when a value is converted.
void scanField(json_t* object, const zt4FlatField& field, const char* key, const char* line) {
    const char* text = valueAfter(line, key);
    if (text == nullptr) return;
    switch (field.type) {
        case ZT4_FLAT_INTEGER: {
            unsigned int value = 0;
            if (std::sscanf(text, "%u", &value) != 1) return;
            // Written as 32-bit unsigned numbers: the same bits give back a negative value.
            const auto number = static_cast<std::int32_t>(value);
            json_object_set_new(object, field.name, json_integer(number));
            zt4::logLine(LOG_INFO, "%s=%d", field.name, static_cast<int>(number));
            return;
        }
        case ZT4_FLAT_REAL: {
            float value = 0.0f;
            if (std::sscanf(text, "%f", &value) != 1) return;
            json_object_set_new(object, field.name, json_real(value));
            zt4::logLine(LOG_INFO, "%s=%f", field.name, static_cast<double>(value));
            return;
        }
        default: {
            // Up to the first blank, quotes included.
            char value[48] = "";
            if (std::sscanf(text, "%47s", value) != 1) return;
            json_object_set_new(object, field.name, json_string(value));
            zt4::logLine(LOG_INFO, "%s='%s'", field.name, value);
            return;
        }
    }
}

json_t* readObject(const char* name, const zt4FlatField* keyword, std::size_t size) {
    const char* function = "readZT4JSONUserConfigObject";
    // The access point's name defaults to the device's own.
    char ssid[256] = "";
    const bool wifi = std::strcmp(name, "WiFi") == 0;
    if (wifi && getConfigWiFiSSID(ssid, sizeof ssid) < 0) {
        zt4::logError(function, "Failed to get SSID");
        ssid[0] = '\0';
    }

    JsonRef object(json_object());
    if (!object) return nullptr;
    for (std::size_t i = 0; i < size; ++i) {
        zt4FlatField field = terminated(keyword[i]);
        if (wifi && std::strcmp(field.name, "SSID") == 0) {
            std::snprintf(field.defaultString, sizeof field.defaultString, "%.47s", ssid);
        }
        json_object_set_new(object.get(), field.name, fieldDefault(field));
    }
    FILE* stream = openFlatFile(function, true);
    if (stream == nullptr) return object.release();

    char line[kLineSize];
    char key[80];
    std::size_t matches = 0;
    while (matches != size && std::fgets(line, sizeof line, stream) != nullptr) {
        if (!considered(line, name)) continue;
        for (std::size_t i = 0; i < size; ++i) {
            const zt4FlatField field = terminated(keyword[i]);
            std::snprintf(key, sizeof key, "%s_%s", name, field.name);
            if (std::strstr(line, key) == nullptr) continue;
            ++matches;
            scanField(object.get(), field, key, line);
        }
    }
    std::fclose(stream);
    return object.release();
}

json_t* readSection(const char* function, const char* section) noexcept {
    const zt4::flat::ReadBackTable* table = zt4::flat::readBackTable(section);
    return zt4::guarded(function, static_cast<json_t*>(nullptr),
                        [&] { return readObject(table->section, table->fields, table->count); });
}

// ---- Connectors --------------------------------------------------------------------------------

// The value of a connector line once its validator accepts it: new reference, or null.
json_t* acceptedValue(const zt4::flat::ConnectorLine& form, const char* text) {
    switch (form.type) {
        case ZT4_FLAT_INTEGER: {
            unsigned int value = 0;
            if (std::sscanf(text, "%u", &value) != 1) return nullptr;
            // Validators give 0 for a valid value.
            const bool valid = form.integerValid != nullptr ? form.integerValid(value) == 0
                                                            : form.signedValid(static_cast<int>(value)) == 0;
            if (!valid) return nullptr;
            zt4::logLine(LOG_INFO, "%s=%d", form.name, static_cast<int>(value));
            return json_integer(static_cast<std::int32_t>(value));
        }
        case ZT4_FLAT_REAL: {
            float value = 0.0f;
            if (std::sscanf(text, "%f", &value) != 1 || form.realValid(value) != 0) return nullptr;
            zt4::logLine(LOG_INFO, "%s=%f", form.name, static_cast<double>(value));
            return json_real(value);
        }
        default: {
            char value[48] = "";
            if (std::sscanf(text, "%47s", value) != 1) return nullptr;
            zt4::logLine(LOG_INFO, "%s='%s'", form.name, value);
            return json_string(value);
        }
    }
}

// Puts `value` (owned) where `form` says, in connector `connector` and its channel `channelId`.
void place(const char* function, json_t* connector, unsigned channelId, const zt4::flat::ConnectorLine& form,
           json_t* value) {
    using zt4::flat::ConnectorTarget;
    if (form.target == ConnectorTarget::ConnectorMode) {
        json_object_set_new(connector, "Mode", value);
        return;
    }
    if (form.target == ConnectorTarget::ConnectorModel) {
        json_object_set_new(connector, "CurrentTransformerModel", value);
        return;
    }
    json_t* channels = json_object_get(connector, "Channel");
    if (channels == nullptr) {
        zt4::logError(function, "json_Channels NULL");
        json_decref(value);
        return;
    }
    json_t* channel = channelId >= 1 ? json_array_get(channels, channelId - 1) : nullptr;
    if (!json_is_object(channel)) {
        zt4::logError(function, "json_Channel%u NULL", channelId);
        json_decref(value);
        return;
    }
    switch (form.target) {
        case ConnectorTarget::ChannelMember: json_object_set_new(channel, form.member, value); return;
        case ConnectorTarget::ChannelPrimary: {
            json_t* primary = json_object_get(channel, "CurrentTransformerPrimary");
            if (!json_is_object(primary)) {
                primary = json_object();
                json_object_set_new(channel, "CurrentTransformerPrimary", primary);
            }
            json_object_set_new(primary, "CurrentPrimary", value);
            return;
        }
        default: {
            // The direction of every current transformer of the channel.
            json_t* transformers = json_object_get(channel, "CurrentTransformer");
            if (!json_is_array(transformers)) {
                transformers = json_array();
                json_array_append_new(transformers, json_object());
                json_object_set_new(channel, "CurrentTransformer", transformers);
            }
            std::size_t index = 0;
            json_t* transformer = nullptr;
            json_array_foreach(transformers, index, transformer) {
                json_object_set(transformer, "Direction", value);
            }
            json_decref(value);
            return;
        }
    }
}

// One line "Connect_<n>_Cnl_<m>_<name>=<value>" applied to the connectors.
void readConnectorLine(const char* function, json_t* connectors, const char* line) {
    unsigned connectorId = 0;
    unsigned channelId = 0;
    int consumed = 0;
    if (std::sscanf(line, "Connect_%u_Cnl_%u_%n", &connectorId, &channelId, &consumed) != 2 || consumed == 0) return;
    if (connectorId < 1 || connectorId > 6) return;
    const char* rest = line + consumed;
    for (const zt4::flat::ConnectorLine& form : zt4::flat::kConnectorLines) {
        const std::size_t length = std::strlen(form.name);
        if (std::strncmp(rest, form.name, length) != 0 || rest[length] != '=') continue;
        const bool connectorLevel = form.target == zt4::flat::ConnectorTarget::ConnectorMode ||
                                    form.target == zt4::flat::ConnectorTarget::ConnectorModel;
        if (connectorLevel && channelId != 1) return;
        json_t* connector = json_array_get(connectors, connectorId - 1);
        if (connector == nullptr) {
            zt4::logError(function, "json_Connector%u NULL", connectorId);
            return;
        }
        json_t* value = acceptedValue(form, rest + length + 1);
        if (value != nullptr) place(function, connector, channelId, form, value);
        return;
    }
}

json_t* readConnectors(const char* function) {
    FILE* stream = openFlatFile(function, false);
    if (stream == nullptr) return nullptr;
    JsonRef connectors(json_array());
    for (int i = 0; connectors && i < 6; ++i) {
        std::int8_t status = 0;
        json_array_append_new(connectors.get(), checkJSONZT4UserConfigConnectorSyntaxVersion1(nullptr, &status));
    }
    char line[kLineSize];
    while (std::fgets(line, sizeof line, stream) != nullptr) {
        if (considered(line, "Connect_")) readConnectorLine(function, connectors.get(), line);
    }
    std::fclose(stream);
    return connectors.release();
}

// Sets `key` to `value` (owned) unless the builder gave nothing.
void setBuilt(json_t* object, const char* key, json_t* value) {
    if (value != nullptr) json_object_set_new(object, key, value);
}

}  // namespace

json_t* readZT4JSONUserConfigObject(const char* name, const zt4FlatField* keyword, size_t size) noexcept {
    const char* function = __func__;
    if (name == nullptr) {
        zt4::logError(function, "name NULL");
        return nullptr;
    }
    if (keyword == nullptr) {
        zt4::logError(function, "keyword NULL");
        return nullptr;
    }
    if (size == 0) {
        zt4::logError(function, "size NULL");
        return nullptr;
    }
    return zt4::guarded(function, static_cast<json_t*>(nullptr),
                        [&] { return readObject(name, keyword, size); });
}

json_t* readZT4JSONUserConfigWebSyntaxVersion1(void) noexcept { return readSection(__func__, "Web"); }
json_t* readZT4JSONUserConfigRadioLoRaSyntaxVersion1(void) noexcept { return readSection(__func__, "RadioLoRa"); }
json_t* readZT4JSONUserConfigWiFiSyntaxVersion1(void) noexcept { return readSection(__func__, "WiFi"); }
json_t* readZT4JSONUserConfigEthernetSyntaxVersion1(void) noexcept { return readSection(__func__, "Ethernet"); }
json_t* readZT4JSONUserConfigModbusSyntaxVersion1(void) noexcept { return readSection(__func__, "Modbus"); }
json_t* readZT4JSONUserConfigBACnetSyntaxVersion1(void) noexcept { return readSection(__func__, "BACnet"); }

json_t* readZT4JSONUserConfigConnectorsSyntaxVersion1(void) noexcept {
    const char* function = __func__;
    return zt4::guarded(function, static_cast<json_t*>(nullptr), [&] { return readConnectors(function); });
}

json_t* readZT4JSONUserConfigElectricalConfigurationSyntaxVersion1(void) noexcept {
    const char* function = __func__;
    JsonRef electrical(json_object());
    if (!electrical) {
        zt4::logError(function, "Failed to create JSON object");
        return nullptr;
    }
    // No frequency and no voltage: the user document's own checks and the merge decide them.
    json_object_set_new(electrical.get(), "LineFrequency", json_real(0.0));
    json_object_set_new(electrical.get(), "NominalVoltage", json_real(0.0));
    std::int8_t status = 0;
    setBuilt(electrical.get(), "VoltageTransformer",
             checkJSONZT4UserConfigVoltageTransformerSyntaxVersion1(nullptr, &status));
    setBuilt(electrical.get(), "Connectors", readZT4JSONUserConfigConnectorsSyntaxVersion1());
    setBuilt(electrical.get(), "Expert", checkJSONZT4UserConfigExpertSyntaxVersion1(nullptr, &status));
    return electrical.release();
}

int printZT4JSONUserConfigFileSyntaxVersion1(void) noexcept {
    const char* function = __func__;
    FILE* stream = openFlatFile(function, false);
    if (stream == nullptr) return -1;
    std::fclose(stream);

    JsonRef document(json_object());
    if (!document) return -1;
    struct Member {
        const char* key;
        json_t* (*read)(void);
    };
    static constexpr Member kMembers[] = {
        {"Web", readZT4JSONUserConfigWebSyntaxVersion1},
        {"RadioLoRa", readZT4JSONUserConfigRadioLoRaSyntaxVersion1},
        {"WiFi", readZT4JSONUserConfigWiFiSyntaxVersion1},
        {"Ethernet", readZT4JSONUserConfigEthernetSyntaxVersion1},
        {"Modbus", readZT4JSONUserConfigModbusSyntaxVersion1},
        {"BACnet", readZT4JSONUserConfigBACnetSyntaxVersion1},
        {"ElectricalConfiguration", readZT4JSONUserConfigElectricalConfigurationSyntaxVersion1},
    };
    for (const Member& member : kMembers) setBuilt(document.get(), member.key, member.read());
    return updateJSONZT4UserConfigFile(document.get()) == 0 ? 0 : -1;
}
