// The device's small files (identity, versions, addresses, radio values, the access point's
// configuration) as found after a power cut or a hand edit: the first byte picks the file and the
// size of the caller's buffer, the rest is the file's content.
#include <cstdlib>
#include <cstring>
#include <vector>

#include "support.hpp"
#include "zt4config.h"

namespace {

using Reader = int (*)(char* buffer, size_t size);

struct DeviceFile {
    const char* path;
    Reader read;
};

const DeviceFile kFiles[] = {
    {"/home/nvram/hostapd.conf", getConfigWiFiSSID},
    {"/home/nvram/swmainversionproduction", readMainSoftwareVersionProduction},
    {"/home/nvram/swmainversion", [](char* b, size_t s) { return getSWInfoDevice("swmainversion", b, s); }},
    {"/home/nvram/swupdateversion", [](char* b, size_t s) { return getSWInfoDevice("swupdateversion", b, s); }},
    {"/var/tmp/hardware", [](char* b, size_t s) { return getInfoDevice("hardware", b, s); }},
    {"/home/nvram/radiodeveui", getRadioDEVEUI},
    {"/home/nvram/radiodeveui", [](char* b, size_t s) { return getSerialNumber(b, s, 1) < 0 ? -1 : 0; }},
    {"/home/nvram/radioappkey", getRadioAPPKEY},
    {"/home/nvram/radiojoined", getRadioJoined},
    {"/home/nvram/radiolocaltime", readRadioLocalTime},
    {"/home/nvram/radioversion", getRadioVersion},
    {"/home/nvram/currentradioregionband", getRadioRegionBand},
    {"/home/nvram/regionbandlora", readUserConfigRadioRegionBand},
    {"/home/nvram/linefrequency", readUserConfigLineFrequency},
    {"/home/nvram/ethernetipv4addressing", readUserConfigEthernetIPv4Addressing},
    {"/var/zt4/eth0/address", getMACAddressEthernet},
    {"/var/zt4/br0/AddressIP", getIPAddressEthernet},
    {"/var/zt4/br0/Broadcast", getBroadcastAddressEthernet},
    {"/var/zt4/br0/Netmask", getNetmaskAddressEthernet},
    {"/var/zt4/wlan0/address", getMACAddressWiFi},
    {"/var/tmp/radiodeveui", getConfigRadioDeveui},
    {"/var/tmp/radioappkey", getConfigRadioAppkey},
    {"/var/tmp/radioregionband", getConfigRadioBand},
    {"/var/run/timestamp_join",
     [](char* b, size_t) {
         int32_t timestamp = 0;
         b[0] = '\0';
         return getTimestampLastJoin(&timestamp);
     }},
    {"/var/tmp/fram",
     [](char* b, size_t) {
         b[0] = '\0';
         return system_fram_read_version() < 0 ? -1 : 0;
     }},
};
constexpr unsigned kFileCount = sizeof kFiles / sizeof kFiles[0];
constexpr size_t kBufferSizes[] = {1, 2, 9, 24, 48, 256};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zt4fuzz::root();
    const zt4fuzz::Split input = zt4fuzz::split(data, size);
    const DeviceFile& file = kFiles[input.selector % kFileCount];
    const size_t bufferSize = kBufferSizes[(input.selector / kFileCount) % 6];
    if (!zt4fuzz::writeDeviceFile(file.path, input.data, input.size)) return 0;

    // An exact-size buffer, so that a write past its end is caught.
    std::vector<char> buffer(bufferSize, 'x');
    const int result = file.read(buffer.data(), buffer.size());
    if (result != 0 && result != -1) std::abort();
    if (result == 0 && std::memchr(buffer.data(), '\0', buffer.size()) == nullptr) std::abort();

    // The readers that take the same files whole.
    uint8_t major = 0, minor = 0, patch = 0;
    readFormatMainSoftwareVersionProduction(&major, &minor, &patch);
    isHardwareBoardVersion3();
    isHardwareBoardVersion3_2();
    json_t* object = json_object();
    readSSID(object);
    readJSONZT4DeviceInfo(object);
    json_decref(object);
    zt4fuzz::restoreDeviceFile(file.path);
    return 0;
}
