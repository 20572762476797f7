// Syntax version 1 of the flat parameter file's writers: one "PREFIX_KEY=VALUE" line per scalar
// member of a section, and the whole file "/home/nvram/zt4.cfg" in the daemons' order.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstring>

#include "common/api.hpp"
#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "common/path.hpp"
#include "config/descriptions/flat_file.hpp"
#include "config/descriptions/system_descriptions.hpp"
#include "config/document/document.hpp"
#include "config/v1/by_key.hpp"
#include "zt4config/export.h"
#include "zt4config/json.h"
#include "zt4config/system.h"
#include "zt4config/user.h"

namespace {

using zt4::ConfigDocument;
using zt4::JsonRef;
using zt4::flat::SectionPrefix;

constexpr const char* kFlatFile = "/home/nvram/zt4.cfg";
// Prefixes hold 47 characters; longer ones are cut.
constexpr std::size_t kPrefixSize = 48;

// ---- Lines -------------------------------------------------------------------------------------
// `traced`: the section writers also log each line (without its line feed) at level 6.

// Integers go out as the meter's 32-bit unsigned numbers: -1 is 4294967295.
void integerLine(FILE* stream, const char* head, const char* key, json_int_t value, bool traced) {
    const auto number = static_cast<std::uint32_t>(value);
    std::fprintf(stream, "%s_%s=%" PRIu32 "\n", head, key, number);
    if (traced) zt4::logLine(LOG_INFO, "%s_%s=%" PRIu32, head, key, number);
}

// Reals are narrowed to single precision and printed with six decimals.
void realLine(FILE* stream, const char* head, const char* key, double value, bool traced) {
    const auto number = static_cast<double>(static_cast<float>(value));
    std::fprintf(stream, "%s_%s=%f\n", head, key, number);
    if (traced) zt4::logLine(LOG_INFO, "%s_%s=%f", head, key, number);
}

// Texts go between double quotes as they are, without escaping.
void textLine(FILE* stream, const char* head, const char* key, const char* text, bool traced) {
    if (text == nullptr) text = "";
    std::fprintf(stream, "%s_%s=\"%s\"\n", head, key, text);
    if (traced) zt4::logLine(LOG_INFO, "%s_%s=\"%s\"", head, key, text);
}

// One member by its JSON type: 0 (a line, or nothing for an object or array), or -1 after
// "value undefined" for true, false and null.
int memberLine(const char* function, FILE* stream, const char* head, const char* key, json_t* value,
               bool traced) {
    switch (json_typeof(value)) {
        case JSON_INTEGER: integerLine(stream, head, key, json_integer_value(value), traced); return 0;
        case JSON_REAL: realLine(stream, head, key, json_real_value(value), traced); return 0;
        case JSON_STRING: textLine(stream, head, key, json_string_value(value), traced); return 0;
        case JSON_OBJECT:
        case JSON_ARRAY: return 0;
        default: break;
    }
    zt4::logInfo(function, "value undefined");
    return -1;
}

// The user writer's departures from the usual line: renamed integers and a flattened object.
// True when `key` was one of them (and is then written).
bool specialLine(FILE* stream, const char* head, const SectionPrefix& row, const char* key,
                 json_t* value) {
    if (json_is_integer(value)) {
        for (std::size_t i = 0; i < row.renamedCount; ++i) {
            if (std::strcmp(key, row.renamed[i].key) != 0) continue;
            integerLine(stream, head, row.renamed[i].written, json_integer_value(value), true);
            return true;
        }
    }
    const zt4::flat::Flattened& flattened = row.flattened;
    if (flattened.key == nullptr || !json_is_object(value) || std::strcmp(key, flattened.key) != 0) {
        return false;
    }
    for (std::size_t i = 0; i < flattened.memberCount; ++i) {
        json_t* member = json_object_get(value, flattened.members[i].key);
        if (member != nullptr) {
            textLine(stream, head, flattened.members[i].written, json_string_value(member), true);
        }
    }
    return true;
}

// ---- Section writers ---------------------------------------------------------------------------

enum class Family { User, System, Factory };

struct FamilyForm {
    ConfigDocument document;
    const char* unreadable;      // the document cannot be read
    bool namesMissingSection;    // an absent section is "json section <name> NULL", else "json NULL"
};

constexpr FamilyForm kFamilyForms[] = {
    {ConfigDocument::User, "zt4 NULL", true},
    {ConfigDocument::System, "zt4system NULL", false},
    {ConfigDocument::FactorySystem, "zt4systemfactory NULL", false},
};

bool streamAndSectionGiven(const char* function, FILE* stream, const char* section) {
    if (stream == nullptr) {
        zt4::logError(function, "stream NULL");
        return false;
    }
    if (section == nullptr) {
        zt4::logError(function, "section NULL");
        return false;
    }
    return true;
}

// One section of `document` (borrowed; null when it could not be read).
int writeLoadedSection(const char* function, Family family, FILE* stream, json_t* document,
                       const char* section) noexcept {
    const FamilyForm& form = kFamilyForms[static_cast<int>(family)];
    if (document == nullptr) {
        zt4::logError(function, "%s", form.unreadable);
        return -1;
    }
    json_t* members = json_object_get(document, section);
    if (members == nullptr) {
        if (form.namesMissingSection) {
            zt4::logError(function, "json section %s NULL", section);
        } else {
            zt4::logError(function, "json NULL");
        }
        return 0;
    }

    // The user's lines carry the table's prefix, the system's the same behind "System_", the
    // factory's the section name itself behind "Factory_".
    const SectionPrefix* row = nullptr;
    char head[kPrefixSize];
    switch (family) {
        case Family::User:
            row = zt4::flat::userSectionPrefix(section);
            std::snprintf(head, sizeof head, "%.31s", row != nullptr ? row->prefix : section);
            break;
        case Family::System: {
            const SectionPrefix* system = zt4::flat::systemSectionPrefix(section);
            std::snprintf(head, sizeof head, "System_%.31s", system != nullptr ? system->prefix : section);
            break;
        }
        case Family::Factory:
            std::snprintf(head, sizeof head, "Factory_%.31s", section);
            break;
    }
    // The system radio is announced as enabled; its own "Enable" member is left out.
    const bool systemRadio = family == Family::System && std::strcmp(section, "RadioLoRa") == 0;
    if (systemRadio) integerLine(stream, head, "Enable", 1, true);

    int result = 0;
    const char* key = nullptr;
    json_t* value = nullptr;
    json_object_foreach(members, key, value) {
        if (zt4::debugLevel() > 3) zt4::logInfo(function, "key=%s", key);
        if (systemRadio && std::strcmp(key, "Enable") == 0) continue;
        if (row != nullptr && specialLine(stream, head, *row, key, value)) continue;
        if (memberLine(function, stream, head, key, value, true) != 0) result = -1;
    }
    std::fflush(stream);
    return result;
}

int writeSection(const char* function, Family family, FILE* stream, const char* section) noexcept {
    if (!streamAndSectionGiven(function, stream, section)) return -1;
    JsonRef document(zt4::readDocument(function, kFamilyForms[static_cast<int>(family)].document));
    return writeLoadedSection(function, family, stream, document.get(), section);
}

// ---- Generic writer ----------------------------------------------------------------------------

int writeObject(FILE* stream, const char* prefix, json_t* json) noexcept {
    const char* function = "setParameterJSON";
    if (stream == nullptr) {
        zt4::logError(function, "stream NULL");
        return -1;
    }
    if (prefix == nullptr) {
        zt4::logError(function, "section NULL");
        return -1;
    }
    int result = 0;
    const char* key = nullptr;
    json_t* value = nullptr;
    json_object_foreach(json, key, value) {
        if (json_is_integer(value) && std::strstr(key, "OffsetIndex") != nullptr) {
            // An offset index is only ever exported as "unset".
            if (json_integer_value(value) == -1) std::fprintf(stream, "%s_%s=%d\n", prefix, key, -1);
        } else if (json_is_string(value)) {
            if (json_string_length(value) != 0) textLine(stream, prefix, key, json_string_value(value), false);
        } else if (memberLine(function, stream, prefix, key, value, false) != 0) {
            result = -1;
        }
    }
    std::fflush(stream);
    return result;
}

int writeObjectBehind(const char* function, const char* family, FILE* stream, const char* section,
                      json_t* json) noexcept {
    if (section == nullptr) {
        zt4::logError(function, "section NULL");
        return -1;
    }
    // "<family>_<section>", cut to the buffer.
    char prefix[kPrefixSize];
    std::size_t used = 0;
    for (const char* part : {family, "_", section}) {
        for (; *part != '\0' && used + 1 < sizeof prefix; ++part) prefix[used++] = *part;
    }
    prefix[used] = '\0';
    return writeObject(stream, prefix, json);
}

// Connector `id` of `connectors`: a new reference, or null after "<label><id> NULL".
json_t* elementById(const char* function, json_t* (*byId)(json_t*, std::uint8_t), json_t* array,
                    unsigned id, const char* label) {
    json_t* element = byId(array, static_cast<std::uint8_t>(id));
    if (element == nullptr) zt4::logError(function, "%s%u NULL", label, id);
    return element;
}

// The number of elements a writer walks: the array's size, within what an id can name.
unsigned idCount(json_t* array) {
    const std::size_t size = json_array_size(array);
    return size > 255 ? 255u : static_cast<unsigned>(size);
}

int writeChannel(const char* function, FILE* stream, unsigned connectorId, unsigned channelId,
                 json_t* channel) {
    char prefix[kPrefixSize];
    std::snprintf(prefix, sizeof prefix, "Connector_%u_Channel_%u", connectorId, channelId);
    int result = writeObject(stream, prefix, channel);

    struct Member {
        const char* key;
        const char* suffix;
        const char* missing;  // "<missing><channel> NULL"
    };
    static constexpr Member kMembers[] = {
        {"CurrentTransformer", "CurrentTransformer", "jsonChannelCT"},
        {"CurrentTransformerPrimary", "CurrentTransformerPrimary", "jsonChannelCTPrimary"},
    };
    for (const Member& member : kMembers) {
        json_t* value = json_object_get(channel, member.key);
        if (value == nullptr) {
            zt4::logError(function, "%s%u NULL", member.missing, channelId);
            result = -1;
            continue;
        }
        std::snprintf(prefix, sizeof prefix, "Connector_%u_Channel_%u_%s", connectorId, channelId,
                      member.suffix);
        result |= writeObject(stream, prefix, value);  // an array yields no lines
    }
    return result;
}

// The system connectors of `electrical` (borrowed, may be null), each with its "Debug" value.
int writeSystemConnectors(const char* function, FILE* stream, json_t* electrical) noexcept {
    json_t* debug = json_object_get(electrical, "Debug");
    json_t* connectors = json_object_get(electrical, "Connectors");
    if (!json_is_array(connectors)) {
        zt4::logError(function, "jsonConnectors NULL");
        return -1;
    }
    const unsigned count = idCount(connectors);
    if (count == 0) {
        zt4::logError(function, "size System Connectors is ZERO");
        return -1;
    }
    int result = 0;
    for (unsigned id = 1; id <= count; ++id) {
        JsonRef connector(elementById(function, readJSONZT4ConnectorById, connectors, id, "jsonConnector"));
        if (!connector) {
            result = -1;
            continue;
        }
        if (debug != nullptr) json_object_set_new(connector.get(), "Debug", json_deep_copy(debug));
        char section[kPrefixSize];
        std::snprintf(section, sizeof section, "Connector_%u", id);
        result |= setParameterSystemJSON(stream, section, connector.get());
    }
    std::fflush(stream);
    return result;
}

// The sections of the whole file in the daemons' order (each service's user section followed by
// its system section; the connectors come last), with the writer each line is logged under.
struct WholeFileSection {
    const char* writer;
    Family family;
    const char* section;
};
constexpr WholeFileSection kWholeFileSections[] = {
    {"setParameterSystemDeviceSyntaxVersion1", Family::System, "Device"},
    {"setParameterUserConfigWebSyntaxVersion1", Family::User, "Web"},
    {"setParameterSystemWebSyntaxVersion1", Family::System, "Web"},
    {"setParameterUserConfigRadioLoRaSyntaxVersion1", Family::User, "RadioLoRa"},
    {"setParameterSystemRadioLoRaSyntaxVersion1", Family::System, "RadioLoRa"},
    {"setParameterUserConfigWiFiSyntaxVersion1", Family::User, "WiFi"},
    {"setParameterSystemWiFiSyntaxVersion1", Family::System, "WiFi"},
    {"setParameterUserConfigEthernetSyntaxVersion1", Family::User, "Ethernet"},
    {"setParameterSystemEthernetSyntaxVersion1", Family::System, "Ethernet"},
    {"setParameterUserConfigModbusSyntaxVersion1", Family::User, "Modbus"},
    {"setParameterSystemModbusSyntaxVersion1", Family::System, "Modbus"},
    {"setParameterUserConfigBACnetSyntaxVersion1", Family::User, "BACnet"},
    {"setParameterSystemBACnetSyntaxVersion1", Family::System, "BACnet"},
};

}  // namespace

// ---- Exported ----------------------------------------------------------------------------------

int setParameterUserConfigSyntaxVersion1(FILE* stream, const char* section) noexcept {
    return writeSection(__func__, Family::User, stream, section);
}
int setParameterUserConfigWebSyntaxVersion1(FILE* stream) noexcept {
    return writeSection(__func__, Family::User, stream, "Web");
}
int setParameterUserConfigRadioLoRaSyntaxVersion1(FILE* stream) noexcept {
    return writeSection(__func__, Family::User, stream, "RadioLoRa");
}
int setParameterUserConfigWiFiSyntaxVersion1(FILE* stream) noexcept {
    return writeSection(__func__, Family::User, stream, "WiFi");
}
int setParameterUserConfigEthernetSyntaxVersion1(FILE* stream) noexcept {
    return writeSection(__func__, Family::User, stream, "Ethernet");
}
int setParameterUserConfigModbusSyntaxVersion1(FILE* stream) noexcept {
    return writeSection(__func__, Family::User, stream, "Modbus");
}
int setParameterUserConfigBACnetSyntaxVersion1(FILE* stream) noexcept {
    return writeSection(__func__, Family::User, stream, "BACnet");
}

int setParameterSystemSyntaxVersion1(FILE* stream, const char* section) noexcept {
    return writeSection(__func__, Family::System, stream, section);
}
int setParameterSystemDeviceSyntaxVersion1(FILE* stream) noexcept {
    return writeSection(__func__, Family::System, stream, "Device");
}
int setParameterSystemWebSyntaxVersion1(FILE* stream) noexcept {
    return writeSection(__func__, Family::System, stream, "Web");
}
int setParameterSystemRadioLoRaSyntaxVersion1(FILE* stream) noexcept {
    return writeSection(__func__, Family::System, stream, "RadioLoRa");
}
int setParameterSystemWiFiSyntaxVersion1(FILE* stream) noexcept {
    return writeSection(__func__, Family::System, stream, "WiFi");
}
int setParameterSystemEthernetSyntaxVersion1(FILE* stream) noexcept {
    return writeSection(__func__, Family::System, stream, "Ethernet");
}
int setParameterSystemModbusSyntaxVersion1(FILE* stream) noexcept {
    return writeSection(__func__, Family::System, stream, "Modbus");
}
int setParameterSystemBACnetSyntaxVersion1(FILE* stream) noexcept {
    return writeSection(__func__, Family::System, stream, "BACnet");
}

int setParameterFactorySystemSyntaxVersion1(FILE* stream, const char* section) noexcept {
    return writeSection(__func__, Family::Factory, stream, section);
}
int setParameterFactorySystemDeviceSyntaxVersion1(FILE* stream) noexcept {
    return writeSection(__func__, Family::Factory, stream, "Device");
}

int setParameterConfigJSON(FILE* stream, const char* prefix, json_t* json) noexcept {
    return writeObject(stream, prefix, json);
}
int setParameterSystemJSON(FILE* stream, const char* section, json_t* json) noexcept {
    return writeObjectBehind(__func__, "System", stream, section, json);
}
int setParameterFactoryJSON(FILE* stream, const char* section, json_t* json) noexcept {
    return writeObjectBehind(__func__, "Factory", stream, section, json);
}

int setParameterUserConfigConnectorsSyntaxVersion1(FILE* stream) noexcept {
    const char* function = __func__;
    if (stream == nullptr) {
        zt4::logError(function, "stream NULL");
        return -1;
    }
    JsonRef connectors(readJSONZT4UserConfigConnectorsSyntaxVersion1());
    if (!connectors) {
        zt4::logError(function, "jsonConnectors NULL");
        return -1;
    }
    const unsigned count = idCount(connectors.get());
    if (count == 0) {
        zt4::logError(function, "size User Config Connectors is ZERO");
        return -1;
    }
    int result = 0;
    for (unsigned id = 1; id <= count; ++id) {
        JsonRef connector(elementById(function, readJSONZT4ConnectorById, connectors.get(), id, "jsonConnector"));
        if (!connector) {
            result = -1;
            continue;
        }
        char prefix[kPrefixSize];
        std::snprintf(prefix, sizeof prefix, "Connector_%u", id);
        result |= writeObject(stream, prefix, connector.get());
        JsonRef channels(readJSONZT4ChannelsSyntaxVersion1(connector.get()));
        if (!channels) {
            zt4::logError(function, "jsonChannels NULL");
            result = -1;
            continue;
        }
        const unsigned channelCount = idCount(channels.get());
        for (unsigned channelId = 1; channelId <= channelCount; ++channelId) {
            JsonRef channel(elementById(function, readJSONZT4ChannelById, channels.get(), channelId, "jsonChannel"));
            if (!channel) {
                result = -1;
                continue;
            }
            result |= writeChannel(function, stream, id, channelId, channel.get());
        }
    }
    std::fflush(stream);
    return result;
}

int setParameterSystemConnectorsSyntaxVersion1(FILE* stream) noexcept {
    if (stream == nullptr) {
        zt4::logError(__func__, "stream NULL");
        return -1;
    }
    // The debug level and the connectors both sit in "ElectricalConfiguration": one read.
    JsonRef electrical(readJSONZT4SystemByKeyObject("ElectricalConfiguration"));
    return writeSystemConnectors(__func__, stream, electrical.get());
}

int setParameterSystemExpertSyntaxVersion1(FILE* stream) noexcept {
    const char* function = __func__;
    if (stream == nullptr) {
        zt4::logError(function, "stream NULL");
        return -1;
    }
    JsonRef expert(readJSONZT4SystemExpertSyntaxVersion1());
    if (!expert) {
        zt4::logError(function, "json System Expert NULL");
        return -1;
    }
    // The members in the order the system's description lists them.
    const zt4::sections::Section& description = zt4::sections::kSystemExpert;
    int result = 0;
    for (std::size_t i = 0; i < description.fieldCount; ++i) {
        const char* key = description.fields[i].key;
        json_t* member = json_object_get(expert.get(), key);
        if (member == nullptr) continue;
        char section[kPrefixSize];
        std::snprintf(section, sizeof section, "Expert_%s", key);
        result |= setParameterSystemJSON(stream, section, member);
    }
    std::fflush(stream);
    return result;
}

int printZT4UserConfigFileSyntaxVersion1(void) noexcept {
    const char* function = __func__;
    return zt4::guarded(function, -1, [&] {
        const std::string path = zt4::resolvePath(kFlatFile);
        const int descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_SYNC, 0666);
        if (descriptor < 0) {
            zt4::logError(function, "FAILED open file %s. (%s)", path.c_str(), std::strerror(errno));
            return -1;
        }
        FILE* stream = fdopen(descriptor, "w");
        if (stream == nullptr) {
            const int error = errno;
            std::perror("fopen /home/nvram/zt4.cfg");
            zt4::logError(function, "FAILED fopen file %s. (%s)", path.c_str(), std::strerror(error));
            close(descriptor);
            return -1;
        }
        // Each document is read once for the whole file: one consistent state of each.
        JsonRef user(zt4::readDocument(function, ConfigDocument::User));
        JsonRef system(zt4::readDocument(function, ConfigDocument::System));
        int result = 0;
        for (const WholeFileSection& step : kWholeFileSections) {
            json_t* document = step.family == Family::User ? user.get() : system.get();
            result |= writeLoadedSection(step.writer, step.family, stream, document, step.section);
        }
        result |= setParameterUserConfigConnectorsSyntaxVersion1(stream);
        result |= writeSystemConnectors("setParameterSystemConnectorsSyntaxVersion1", stream,
                                        json_object_get(system.get(), "ElectricalConfiguration"));
        // A line that could not be written leaves the stream's error flag: the file is partial.
        if (std::ferror(stream) != 0) {
            zt4::logError(function, "FAILED to write file %s", path.c_str());
            result = -1;
        }
        // Only a complete file is forced to storage.
        if (result == 0 && (std::fflush(stream) != 0 || fsync(descriptor) != 0)) {
            zt4::logError(function, "FAILED to write file %s. (%s)", path.c_str(), std::strerror(errno));
            result = -1;
        }
        if (std::fclose(stream) != 0 && result == 0) {
            zt4::logError(function, "FAILED to write file %s. (%s)", path.c_str(), std::strerror(errno));
            result = -1;
        }
        return result;
    });
}
