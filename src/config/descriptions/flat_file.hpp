// How the sections of the configuration appear in the flat parameter file "/home/nvram/zt4.cfg":
// the prefix each section's lines carry, the members written under another name, and the fields
// that the read-back looks for. Data only; the writers and the read-back walk these tables.
#pragma once

#include <cstddef>
#include <cstdint>

#include "zt4config/export.h"

namespace zt4::flat {

// An integer member written under another name ("FrameFormat" as "TransmitMode").
struct Renamed {
    const char* key;
    const char* written;
};

// An object member whose listed members become lines of the section (the WiFi "DHCP" object);
// its other members are not written.
struct Flattened {
    const char* key;              // null: the section has none
    const Renamed* members;       // string members, written between quotes
    std::size_t memberCount;
};

struct SectionPrefix {
    const char* section;          // "RadioLoRa"
    const char* prefix;           // "Radio"
    const Renamed* renamed;       // user writer only
    std::size_t renamedCount;
    Flattened flattened;          // user writer only
};

// The sections whose lines carry a prefix of their own; any other section is written under its
// name (cut to 31 characters).
extern const SectionPrefix kSectionPrefixes[5];

// The user writer matches a section on the length of the table's name (so "RadioLoRaX" is
// RadioLoRa); the system writer on the whole name. Null when no row matches.
const SectionPrefix* userSectionPrefix(const char* section) noexcept;
const SectionPrefix* systemSectionPrefix(const char* section) noexcept;

// The fields the read-back looks for in one user section.
struct ReadBackTable {
    const char* section;          // "WiFi": lines "WiFi_<field>=..."
    const zt4FlatField* fields;
    std::size_t count;
};
// "Web", "RadioLoRa", "WiFi", "Ethernet", "Modbus", "BACnet"; null for any other name.
const ReadBackTable* readBackTable(const char* section) noexcept;

// One kind of line of a connector in the flat file: "Connect_<n>_Cnl_<m>_<name>=<value>".
enum class ConnectorTarget : std::uint8_t {
    ConnectorMode,         // the connector's "Mode" (channel 1's line only)
    ConnectorModel,        // the connector's "CurrentTransformerModel" (channel 1's line only)
    ChannelMember,         // a member of the channel
    ChannelDirection,      // "Direction" of the channel's current transformers
    ChannelPrimary,        // "CurrentPrimary" of the channel's "CurrentTransformerPrimary"
};

struct ConnectorLine {
    const char* name;             // "Mode": also the name its accepted value is logged under
    std::uint8_t type;            // ZT4_FLAT_INTEGER, ZT4_FLAT_REAL or ZT4_FLAT_STRING
    ConnectorTarget target;
    const char* member;           // the member set, for ChannelMember
    // The validator that must accept the value (null: any); one of the two forms.
    int (*integerValid)(unsigned int);
    int (*signedValid)(int);
    int (*realValid)(float);
};
extern const ConnectorLine kConnectorLines[8];

}  // namespace zt4::flat
