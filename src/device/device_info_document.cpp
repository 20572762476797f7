// The read-only device-information document that the web interface shows.
#include <cstddef>

#include "common/log.hpp"
#include "zt4config/device.h"

namespace {

constexpr std::size_t kValueCapacity = 64;

enum class Source { TmpFile, FlashFile, SerialNumber, EthernetMac, EthernetIp, Broadcast, Netmask,
                    WiFiMac };

struct Member {
    const char* key;
    Source source;
    const char* name;     // file name for the TmpFile and FlashFile sources
    std::size_t capacity;  // bytes read
};

// The members in the order the document lists them.
constexpr Member kMembers[] = {
    {"SW", Source::TmpFile, "software", 16},
    {"SWRelease", Source::TmpFile, "swrelease", kValueCapacity},
    {"SW1", Source::FlashFile, "swupdateversion", kValueCapacity},
    {"SlotFlag1", Source::TmpFile, "slotflag1", kValueCapacity},
    {"SW2", Source::FlashFile, "swmainversion", kValueCapacity},
    {"SlotFlag2", Source::TmpFile, "slotflag2", kValueCapacity},
    {"HW", Source::TmpFile, "hardware", kValueCapacity},
    {"Partition", Source::TmpFile, "bootedpartition", 4},
    {"SerialNumber", Source::SerialNumber, nullptr, kValueCapacity},
    {"Ethernet", Source::EthernetMac, nullptr, kValueCapacity},
    {"EthernetIP", Source::EthernetIp, nullptr, kValueCapacity},
    {"EthernetBroadcast", Source::Broadcast, nullptr, kValueCapacity},
    {"EthernetNetmask", Source::Netmask, nullptr, kValueCapacity},
    {"WiFi", Source::WiFiMac, nullptr, kValueCapacity},
};

bool readMember(const Member& member, char* value) {
    switch (member.source) {
        case Source::TmpFile: return getInfoDevice(member.name, value, member.capacity) == 0;
        case Source::FlashFile: return getSWInfoDevice(member.name, value, member.capacity) == 0;
        case Source::SerialNumber: return getSerialNumber(value, member.capacity, 0) >= 0;
        case Source::EthernetMac: return getMACAddressEthernet(value, member.capacity) == 0;
        case Source::EthernetIp: return getIPAddressEthernet(value, member.capacity) == 0;
        case Source::Broadcast: return getBroadcastAddressEthernet(value, member.capacity) == 0;
        case Source::Netmask: return getNetmaskAddressEthernet(value, member.capacity) == 0;
        case Source::WiFiMac: return getMACAddressWiFi(value, member.capacity) == 0;
    }
    return false;
}

}  // namespace

extern "C" int readJSONZT4DeviceInfo(json_t* object) noexcept {
    zt4::logLine(LOG_INFO, "Read device information");
    if (object == nullptr) {
        zt4::logLine(LOG_ERR, "error.[%s] json NULL", __func__);
        return -1;
    }
    if (!json_is_object(object)) {
        zt4::logLine(LOG_ERR, "error.[%s] json is not an object", __func__);
        return -1;
    }
    for (const Member& member : kMembers) {
        char value[kValueCapacity];
        if (!readMember(member, value)) continue;
        // A value that is not valid UTF-8 cannot become a JSON string: left out like the others.
        if (json_object_set_new(object, member.key, json_string(value)) != 0) {
            zt4::logLine(LOG_ERR, "error.[%s] Failed to set JSON Object %s", __func__,
                         member.key);
        }
    }
    return 0;
}
