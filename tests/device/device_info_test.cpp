#include <sys/stat.h>
#include <syslog.h>

#include <cstring>
#include <string>
#include <vector>

#include "common/json_ref.hpp"
#include "support/harness.hpp"
#include "zt4config.h"

namespace {

using zt4test::logged;

class DeviceInfo : public zt4test::DeviceTest {};

struct BoardCase {
    const char* hardware;  // nullptr: no file
    int version3;
    int version3_2;
};

class BoardGeneration : public zt4test::DeviceTest,
                        public ::testing::WithParamInterface<BoardCase> {};

TEST_P(BoardGeneration, FollowsTheHardwareVersion) {
    if (GetParam().hardware) writeFile("/var/tmp/hardware", GetParam().hardware);
    EXPECT_EQ(isHardwareBoardVersion3(), GetParam().version3);
    EXPECT_EQ(isHardwareBoardVersion3_2(), GetParam().version3_2);
}

INSTANTIATE_TEST_SUITE_P(Versions, BoardGeneration, ::testing::Values(
    BoardCase{"3.2.1\n", 1, 1}, BoardCase{"3.1\n", 1, 0}, BoardCase{"2.0\n", 0, 0},
    BoardCase{"1.4", 0, 0}, BoardCase{"10.1", 1, 0}, BoardCase{nullptr, 1, 0}));

struct SerialCase {
    const char* eui;  // device EUI file content; nullptr: no file
    size_t size;
    int spacing;
    int result;
    const char* serial;
};

class SerialNumber : public zt4test::DeviceTest,
                     public ::testing::WithParamInterface<SerialCase> {};

TEST_P(SerialNumber, JoinsTheEuiGroupsWithinTheBuffer) {
    const SerialCase& c = GetParam();
    if (c.eui) writeFile("/home/nvram/radiodeveui", c.eui);
    std::vector<char> buffer(c.size + 4, 'x');
    EXPECT_EQ(getSerialNumber(buffer.data(), c.size, c.spacing), c.result) << zt4test::logDump();
    EXPECT_STREQ(buffer.data(), c.serial);
    for (size_t i = c.size; i < buffer.size(); ++i) EXPECT_EQ(buffer[i], 'x') << "at " << i;
    if (c.result < 0 && c.serial[0] != '\0') {
        EXPECT_EQ(zt4test::loggedCount(" FAILED to write serial number"), 1);
    }
}

INSTANTIATE_TEST_SUITE_P(Euis, SerialNumber, ::testing::Values(
    SerialCase{"70:B3:D5:7E:D0:01:23:45\n", 64, 0, 16, "70B3D57ED0012345"},
    SerialCase{"70:B3:D5:7E:D0:01:23:45\n", 64, 1, 17, "70B3D57E D0012345"},
    SerialCase{"70:B3:D5:7E:D0:01:23:45", 17, 0, 16, "70B3D57ED0012345"},
    SerialCase{"70:B3:D5:7E:D0:01:23:45", 17, 1, -1, "70B3D57E D001234"},
    SerialCase{"70:B3:D5:7E:D0:01:23:45", 9, 0, -1, "70B3D57E"},
    SerialCase{"70:B3:D5:7E:D0:01:23", 64, 0, -1, ""},
    SerialCase{nullptr, 64, 0, -1, ""}));

TEST_F(DeviceInfo, OneLineReaders) {
    writeFile("/var/tmp/software", "4.1.0\n");
    char buffer[16];
    ASSERT_EQ(getInfoDevice("software", buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "4.1.0\n");  // the newline is kept when it fits
    char tight[4] = {'x', 'x', 'x', 'x'};
    ASSERT_EQ(getInfoDevice("software", tight, 3), 0);
    EXPECT_STREQ(tight, "4.");
    EXPECT_EQ(tight[3], 'x');

    EXPECT_EQ(getInfoDevice("slotflag1", buffer, sizeof buffer), -1);
    EXPECT_TRUE(logged("No file for 'slotflag1'", LOG_WARNING));
    writeFile("/var/tmp/slotflag1", "");
    EXPECT_EQ(getInfoDevice("slotflag1", buffer, sizeof buffer), -1);
    EXPECT_TRUE(logged("error.[getInfoDevice] value is empty", LOG_ERR));
    EXPECT_EQ(getInfoDevice(nullptr, buffer, sizeof buffer), -1);
    EXPECT_TRUE(logged("error.[getInfoDevice] name is NULL", LOG_ERR));
    EXPECT_EQ(getInfoDevice(std::string(60, 'n').c_str(), buffer, sizeof buffer), -1);
    EXPECT_EQ(zt4test::loggedCount("error.[getInfoDevice] name is too long"), 1);

    // Flash versions are chosen on the known names' length only.
    writeFile("/home/nvram/swmainversion", "4.1.0");
    ASSERT_EQ(getSWInfoDevice("swmainversionproduction", buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "4.1.0");
    EXPECT_EQ(getSWInfoDevice("swupdateversion", buffer, sizeof buffer), -1);
    EXPECT_EQ(getSWInfoDevice("swother", buffer, sizeof buffer), -1);
    EXPECT_TRUE(logged("No file for 'swother' in flash memory", LOG_ERR));
}

TEST_F(DeviceInfo, AddressReadersZeroTheWholeBuffer) {
    const struct {
        int (*read)(char*, size_t);
        const char* devicePath;
    } readers[] = {{getMACAddressEthernet, "/var/zt4/eth0/address"},
                   {getIPAddressEthernet, "/var/zt4/br0/AddressIP"},
                   {getBroadcastAddressEthernet, "/var/zt4/br0/Broadcast"},
                   {getNetmaskAddressEthernet, "/var/zt4/br0/Netmask"},
                   {getMACAddressWiFi, "/var/zt4/wlan0/address"}};
    for (const auto& reader : readers) {
        char buffer[64];
        writeFile(reader.devicePath, reader.devicePath);
        std::memset(buffer, 'x', sizeof buffer);
        ASSERT_EQ(reader.read(buffer, sizeof buffer), 0) << reader.devicePath;
        EXPECT_STREQ(buffer, reader.devicePath);
        for (size_t i = std::strlen(reader.devicePath); i < sizeof buffer; ++i) {
            ASSERT_EQ(buffer[i], '\0') << reader.devicePath << " at " << i;
        }
    }
}

struct SsidCase {
    const char* label;
    const char* config;  // nullptr: no file
    size_t size;
    int result;
    const char* ssid;
};

class WiFiSsid : public zt4test::DeviceTest, public ::testing::WithParamInterface<SsidCase> {};

TEST_P(WiFiSsid, TakesTheFirstSsidLineUpToABlank) {
    const SsidCase& c = GetParam();
    if (c.config) writeFile("/home/nvram/hostapd.conf", c.config);
    std::vector<char> buffer(c.size + 2, 'x');
    EXPECT_EQ(getConfigWiFiSSID(buffer.data(), c.size), c.result) << zt4test::logDump();
    EXPECT_STREQ(buffer.data(), c.ssid);
    EXPECT_EQ(buffer[c.size], 'x');
}

INSTANTIATE_TEST_SUITE_P(Configs, WiFiSsid, ::testing::Values(
    SsidCase{"blankEnds", "ssid=My Net\n", 32, 0, "My"},
    SsidCase{"firstWins", "interface=wlan0\nssid=ZT4-0123\nssid=Other\n", 32, 0, "ZT4-0123"},
    SsidCase{"cut", "ssid=ZT4-0123\n", 5, 0, "ZT4-"},
    SsidCase{"emptySsidStops", "ssid=\nssid=Later\n", 32, -1, ""},
    SsidCase{"commented", "#ssid=Old\nignore_broadcast_ssid=0\n", 32, -1, ""},
    SsidCase{"noFile", nullptr, 32, -1, ""}),
    [](const ::testing::TestParamInfo<SsidCase>& row) { return std::string(row.param.label); });

TEST_F(DeviceInfo, SsidMessagesAndJsonMember) {
    zt4::JsonRef object(json_object());
    EXPECT_EQ(readSSID(object.get()), -1);
    EXPECT_TRUE(logged("error.[getConfigWiFiSSID]: FAILED open file '" + path("/home/nvram/hostapd.conf") +
                       "'. No such file or directory (2)", LOG_ERR));
    EXPECT_TRUE(logged("error.[readSSID]: Failed to get SSID", LOG_ERR));
    writeFile("/home/nvram/hostapd.conf", "ssid=ZT4-0123\n");
    ASSERT_EQ(readSSID(object.get()), 0);
    EXPECT_EQ(zt4test::compact(object.get()), R"({"SSID":"ZT4-0123"})");
    EXPECT_TRUE(logged("get SSID: ZT4-0123", LOG_INFO));
    writeFile("/home/nvram/hostapd.conf", "ssid=\xff\xfe\n");
    EXPECT_EQ(readSSID(object.get()), -1);
    EXPECT_TRUE(logged("error.[readSSID]: Failed to JSON string SSID", LOG_ERR));
}

struct VersionCase {
    const char* content;  // nullptr: no file
    int result;
    int major, minor, patch;
};

class ProductionVersion : public zt4test::DeviceTest,
                          public ::testing::WithParamInterface<VersionCase> {};

TEST_P(ProductionVersion, SplitsAtDots) {
    const VersionCase& c = GetParam();
    if (c.content) writeFile("/home/nvram/swmainversionproduction", c.content);
    uint8_t major = 99, minor = 99, patch = 99;
    EXPECT_EQ(readFormatMainSoftwareVersionProduction(&major, &minor, &patch), c.result);
    if (c.result == 0) {
        EXPECT_EQ(major, c.major);
        EXPECT_EQ(minor, c.minor);
        EXPECT_EQ(patch, c.patch);
    } else {
        EXPECT_TRUE(logged("No format main software version production available", LOG_ERR));
    }
}

INSTANTIATE_TEST_SUITE_P(Versions, ProductionVersion, ::testing::Values(
    VersionCase{"3.4", 0, 3, 4, 0}, VersionCase{"3.4.12\n", 0, 3, 4, 12}, VersionCase{"3.4.5.6", 0, 3, 4, 6},
    VersionCase{"300.4.1", 0, 44, 4, 1}, VersionCase{"3", -1, 0, 0, 0}, VersionCase{"", -1, 0, 0, 0},
    VersionCase{nullptr, -1, 0, 0, 0}));

TEST_F(DeviceInfo, ProductionVersionNeedsARegularFile) {
    char buffer[16];
    EXPECT_EQ(readMainSoftwareVersionProduction(buffer, sizeof buffer), -1);
    EXPECT_TRUE(logged("No attributes of file Main SW version production", LOG_WARNING));
    ASSERT_EQ(mkdir(path("/home/nvram/swmainversionproduction").c_str(), 0755), 0);
    EXPECT_EQ(readMainSoftwareVersionProduction(buffer, sizeof buffer), -1);
    EXPECT_TRUE(logged("No file available for Main SW version production", LOG_ERR));
}

TEST_F(DeviceInfo, DocumentListsReadableValuesInOrder) {
    writeFile("/var/tmp/software", "4.1.0-rc1-long-name");
    writeFile("/home/nvram/swmainversion", "4.1.0");
    writeFile("/var/tmp/slotflag2", "1");
    writeFile("/var/tmp/hardware", "3.2.1");
    writeFile("/var/tmp/bootedpartition", "B2x");
    writeFile("/home/nvram/radiodeveui", "70:B3:D5:7E:D0:01:23:45\n");
    writeFile("/var/zt4/eth0/address", "00:1e:c0:aa:bb:cc");
    writeFile("/var/zt4/br0/Netmask", "255.255.255.0");
    zt4::JsonRef document(json_object());
    ASSERT_EQ(readJSONZT4DeviceInfo(document.get()), 0);
    EXPECT_TRUE(logged("Read device information", LOG_INFO));
    std::string members;
    for (void* it = json_object_iter(document.get()); it;
         it = json_object_iter_next(document.get(), it)) {
        members += std::string(json_object_iter_key(it)) + "=" +
                   json_string_value(json_object_iter_value(it)) + ";";
    }
    EXPECT_EQ(members,
              "SW=4.1.0-rc1-long-;SW2=4.1.0;SlotFlag2=1;HW=3.2.1;Partition=B2x;"
              "SerialNumber=70B3D57ED0012345;Ethernet=00:1e:c0:aa:bb:cc;"
              "EthernetNetmask=255.255.255.0;");
    EXPECT_EQ(readJSONZT4DeviceInfo(nullptr), -1);
    EXPECT_TRUE(logged("error.[readJSONZT4DeviceInfo] json NULL", LOG_ERR));
}

}  // namespace
