// The device's small files, one call a row: the files before, the call, its result, the buffer
// it fills, the files after and the lines it logs.
#include <fcntl.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <csetjmp>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "common/json_ref.hpp"
#include "support/harness.hpp"
#include "zt4config.h"

namespace {

// The host path of a device path under the test's root (valid until the next call).
const char* at(const char* devicePath) {
    static std::string text;
    text = std::string(std::getenv("ZT4_ROOT")) + devicePath;
    return text.c_str();
}
// The compact text of what an operation put into a JSON object, into the row's buffer.
int dumped(char* out, json_t* object, int result) {
    std::snprintf(out, 1024, "%s", zt4test::compact(object).c_str());
    json_decref(object);
    return result;
}
int version(char* out) {
    uint8_t major = 99, minor = 99, patch = 99;
    const int result = readFormatMainSoftwareVersionProduction(&major, &minor, &patch);
    std::snprintf(out, 64, "%u.%u.%u", major, minor, patch);
    return result;
}
int joinTime(char* out) {
    int32_t timestamp = 77;
    const int result = getTimestampLastJoin(&timestamp);
    std::snprintf(out, 64, "%d", timestamp);
    return result;
}
int eui(char* out, const char* text, size_t length, int groups) {
    std::strcpy(out, text);
    return checkEUIformat(out, length, groups);
}
const std::string kLong(70, 't');  // a line longer than a written one

struct Row {
    const char* name;
    const char* before;       // "path=content|...": "<dir>" a directory, "->target" a link
    int (*call)(char* out);   // `out`: 1024 bytes of 'x'
    int result;
    const char* out;          // the first bytes of `out`, '\0' shown as '~' (null: not checked)
    const char* after;        // "path=content|...": "<none>" absent; '!' first: untouched, '*': rewritten
    const char* log;          // "<priority>line|..." each logged, '@' the root, '*' any number; "": nothing
};

std::string replaced(std::string text, const std::string& root) {
    for (size_t at = text.find('@'); at != std::string::npos; at = text.find('@', at + root.size())) {
        text.replace(at, 1, root);
    }
    return text;
}
bool matches(const char* pattern, const char* text) {
    if (*pattern == '*') return matches(pattern + 1, text) || (*text && matches(pattern, text + 1));
    return *pattern == *text && (*text == '\0' || matches(pattern + 1, text + 1));
}
template <class Each>
void split(const std::string& list, Each each) {
    for (size_t start = 0, bar; start <= list.size() && !list.empty(); start = bar + 1) {
        bar = list.find('|', start);
        if (bar == std::string::npos) bar = list.size();
        each(list.substr(start, bar - start));
    }
}

sigjmp_buf escape;
void onAlarm(int) { siglongjmp(escape, 1); }

class DeviceFiles : public zt4test::DeviceTest, public ::testing::WithParamInterface<Row> {};

TEST_P(DeviceFiles, Call) {
    const Row& r = GetParam();
    std::filesystem::create_directories(path("/var/run"));
    split(r.before, [&](const std::string& entry) {
        const size_t equals = entry.find('=');
        const std::string devicePath = entry.substr(0, equals), content = entry.substr(equals + 1);
        std::filesystem::create_directories(std::filesystem::path(path(devicePath)).parent_path());
        if (content == "<dir>") {
            std::filesystem::create_directories(path(devicePath));
        } else if (content.rfind("->", 0) == 0) {
            ASSERT_EQ(symlink(content.c_str() + 2, path(devicePath).c_str()), 0);
        } else {
            writeFile(devicePath, content == "<long>" ? kLong + "\n" : content);
            struct timespec old[2] = {{1000, 0}, {1000, 0}};
            ASSERT_EQ(utimensat(AT_FDCWD, path(devicePath).c_str(), old, 0), 0);
        }
    });
    char out[1024];
    std::memset(out, 'x', sizeof out);
    out[sizeof out - 1] = '\0';
    // A scan that never ends fails the row instead of hanging it.
    struct sigaction action = {}, previous = {};
    action.sa_handler = onAlarm;
    sigaction(SIGALRM, &action, &previous);
    volatile int result = 99;
    if (sigsetjmp(escape, 1) == 0) {
        alarm(2);
        result = r.call(out);
    }
    alarm(0);
    sigaction(SIGALRM, &previous, nullptr);
    EXPECT_EQ(result, r.result) << zt4test::logDump();
    if (r.out) {
        std::string shown(out, std::strlen(r.out));
        for (char& c : shown) c = c == '\0' ? '~' : c;
        EXPECT_EQ(shown, r.out);
    }
    split(r.after, [&](std::string entry) {
        const char mark = entry[0];
        if (mark == '!' || mark == '*') entry.erase(0, 1);
        const size_t equals = entry.find('=');
        const std::string devicePath = entry.substr(0, equals), content = entry.substr(equals + 1);
        if (content == "<none>") {
            EXPECT_FALSE(exists(devicePath)) << devicePath;
            return;
        }
        EXPECT_EQ(readFile(devicePath), content == "<long>" ? kLong + "\n" : content) << devicePath;
        struct stat info = {};
        stat(path(devicePath).c_str(), &info);
        if (mark == '!' || mark == '*') {
            EXPECT_EQ(info.st_mtime == 1000, mark == '!') << devicePath << " rewritten or not";
        }
    });
    if (r.log && !*r.log) {
        EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    }
    split(r.log ? r.log : "", [&](const std::string& line) {
        const std::string expected = replaced(line, root());
        bool found = false;
        for (const auto& entry : zt4test::capturedLog()) {
            found = found || matches(expected.c_str(), ("<" + std::to_string(entry.priority) + ">" + entry.text).c_str());
        }
        EXPECT_TRUE(found) << expected << "\n" << zt4test::logDump();
    });
}

#define EUI "70:B3:D5:7E:D0:01:23:45"
#define KEY "2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C"
#define NV "/home/nvram/"
#define TMP "/var/tmp/"
#define JOIN "/var/run/timestamp_join"
#define OPEN(f, p) "<3>error.[" f "] Failed to open file '@" p "'"

const Row kRows[] = {
    // Board generation: 10 x isHardwareBoardVersion3 + isHardwareBoardVersion3_2.
    Row{"hw321", TMP "hardware=3.2.1\n", [](char*) { return 10 * isHardwareBoardVersion3() + isHardwareBoardVersion3_2(); }, 11, nullptr, "", ""},
    Row{"hw31", TMP "hardware=3.1\n", [](char*) { return 10 * isHardwareBoardVersion3() + isHardwareBoardVersion3_2(); }, 10, nullptr, "", ""},
    Row{"hw20", TMP "hardware=2.0\n", [](char*) { return 10 * isHardwareBoardVersion3() + isHardwareBoardVersion3_2(); }, 0, nullptr, "", ""},
    Row{"hw14", TMP "hardware=1.4", [](char*) { return 10 * isHardwareBoardVersion3() + isHardwareBoardVersion3_2(); }, 0, nullptr, "", ""},
    Row{"hw101", TMP "hardware=10.1", [](char*) { return 10 * isHardwareBoardVersion3() + isHardwareBoardVersion3_2(); }, 10, nullptr, "", ""},
    Row{"hwNone", "", [](char*) { return 10 * isHardwareBoardVersion3() + isHardwareBoardVersion3_2(); }, 10, nullptr, "", "<4>No file for 'hardware'"},
    // Serial number from the device EUI.
    Row{"serial", NV "radiodeveui=" EUI "\n", [](char* o) { return getSerialNumber(o, 64, 0); }, 16, "70B3D57ED0012345~", "", nullptr},
    Row{"serialSpaced", NV "radiodeveui=" EUI "\n", [](char* o) { return getSerialNumber(o, 64, 1); }, 17, "70B3D57E D0012345~", "", nullptr},
    Row{"serialFits", NV "radiodeveui=" EUI, [](char* o) { return getSerialNumber(o, 17, 0); }, 16, "70B3D57ED0012345~x", "", nullptr},
    Row{"serialCut", NV "radiodeveui=" EUI, [](char* o) { return getSerialNumber(o, 17, 1); }, -1, "70B3D57E D001234~x", "", "<3>error.[getSerialNumber].* FAILED to write serial number"},
    Row{"serialCutShort", NV "radiodeveui=" EUI, [](char* o) { return getSerialNumber(o, 9, 0); }, -1, "70B3D57E~x", "", nullptr},
    Row{"serialBadEui", NV "radiodeveui=70:B3:D5:7E:D0:01:23", [](char* o) { return getSerialNumber(o, 64, 0); }, -1, "~", "", "<3>error.[getRadioDEVEUI] value format is wrong"},
    Row{"serialNoEui", "", [](char* o) { return getSerialNumber(o, 64, 0); }, -1, "~", "", nullptr},
    Row{"serialTrace", NV "radiodeveui=" EUI, [](char* o) { debug_level = 4; return getSerialNumber(o, 64, 0); }, 16, nullptr, "", "<6>[getSerialNumber] 70|<6>[getSerialNumber] 45"},
    // One-line readers of /var/tmp and of the flash.
    Row{"info", TMP "software=4.1.0\n", [](char* o) { return getInfoDevice("software", o, 16); }, 0, "4.1.0\n~", "", ""},
    Row{"infoCut", TMP "software=4.1.0\n", [](char* o) { return getInfoDevice("software", o, 3); }, 0, "4.~x", "", ""},
    Row{"infoMissing", "", [](char* o) { return getInfoDevice("slotflag1", o, 16); }, -1, "~", "", "<4>No file for 'slotflag1'"},
    Row{"infoEmpty", TMP "slotflag1=", [](char* o) { return getInfoDevice("slotflag1", o, 16); }, -1, "~", "", "<3>error.[getInfoDevice] value is empty"},
    Row{"infoNotDirectory", TMP "x=1", [](char* o) { return getInfoDevice("x/y", o, 16); }, -1, nullptr, "", "<3>error.[getInfoDevice] FAILED to open file '@" TMP "x/y'"},
    Row{"infoNull", "", [](char* o) { return getInfoDevice(nullptr, o, 16); }, -1, nullptr, "", "<3>error.[getInfoDevice] name is NULL"},
    Row{"infoNoBuffer", TMP "x=1", [](char*) { return getInfoDevice("x", nullptr, 16); }, -1, nullptr, "", "<3>error.[getInfoDevice] value is NULL"},
    Row{"infoSizeZero", TMP "x=1", [](char* o) { return getInfoDevice("x", o, 0); }, -1, nullptr, "", "<3>error.[getInfoDevice] value size is NULL"},
    Row{"infoLongName", "", [](char* o) { return getInfoDevice("nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn", o, 16); }, -1, nullptr, "", "<3>error.[getInfoDevice] name is too long 'nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn'"},
    Row{"infoLongestName", TMP "nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn=1", [](char* o) { return getInfoDevice("nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn", o, 16); }, 0, "1~", "", ""},
    Row{"swMain", NV "swmainversion=4.1.0", [](char* o) { return getSWInfoDevice("swmainversionproduction", o, 16); }, 0, "4.1.0~", "", ""},
    Row{"swUpdate", NV "swupdateversion=4.2.0", [](char* o) { return getSWInfoDevice("swupdateversion", o, 16); }, 0, "4.2.0~", "", ""},
    Row{"swUpdateMissing", "", [](char* o) { return getSWInfoDevice("swupdateversion", o, 16); }, -1, "~", "", "<3>error.[getSWInfoDevice] FAILED to open file '@" NV "swupdateversion'"},
    Row{"swOther", NV "swother=1", [](char* o) { return getSWInfoDevice("swother", o, 16); }, -1, nullptr, "", "<3>No file for 'swother' in flash memory"},
    Row{"swNull", "", [](char* o) { return getSWInfoDevice(nullptr, o, 16); }, -1, nullptr, "", "<3>error.[getSWInfoDevice] name is NULL"},
    // Addresses: the buffer is zeroed first.
    Row{"ethMac", "/var/zt4/eth0/address=00:1e:c0:aa:bb:cc", [](char* o) { return getMACAddressEthernet(o, 20); }, 0, "00:1e:c0:aa:bb:cc~~~x", "", ""},
    Row{"ethIp", "/var/zt4/br0/AddressIP=192.168.10.42", [](char* o) { return getIPAddressEthernet(o, 16); }, 0, "192.168.10.42~~~x", "", ""},
    Row{"broadcast", "/var/zt4/br0/Broadcast=192.168.10.255", [](char* o) { return getBroadcastAddressEthernet(o, 20); }, 0, "192.168.10.255~~~~~~x", "", ""},
    Row{"netmask", "/var/zt4/br0/Netmask=255.255.255.0", [](char* o) { return getNetmaskAddressEthernet(o, 16); }, 0, "255.255.255.0~~~x", "", ""},
    Row{"wifiMac", "/var/zt4/wlan0/address=00:1e:c0:dd:ee:ff", [](char* o) { return getMACAddressWiFi(o, 18); }, 0, "00:1e:c0:dd:ee:ff~x", "", ""},
    Row{"wifiMacMissing", "", [](char* o) { return getMACAddressWiFi(o, 8); }, -1, "~~~~~~~~x", "", "<3>error.[getMACAddressWiFi] FAILED to open file '@/var/zt4/wlan0/address'"},
    Row{"ipv4", "", [](char*) { return isAddressIPv4("192.168.1.1") * 10 + isAddressIPv4("256.1.1.1"); }, -1, nullptr, "", ""},
    Row{"ipv4Null", "", [](char*) { return isAddressIPv4(nullptr); }, -1, nullptr, "", "<3>error.[isAddressIPv4] value is NULL"},
    // The access point's SSID: the first "ssid=" line, up to a blank.
    Row{"ssidBlankEnds", NV "hostapd.conf=ssid=My Net\n", [](char* o) { return getConfigWiFiSSID(o, 32); }, 0, "My~", "", "<6>get SSID: My"},
    Row{"ssidFirstWins", NV "hostapd.conf=interface=wlan0\nssid=ZT4-0123\nssid=Other\n", [](char* o) { return getConfigWiFiSSID(o, 32); }, 0, "ZT4-0123~", "", nullptr},
    Row{"ssidCut", NV "hostapd.conf=ssid=ZT4-0123\n", [](char* o) { return getConfigWiFiSSID(o, 5); }, 0, "ZT4-~x", "", nullptr},
    Row{"ssidEmptyStops", NV "hostapd.conf=ssid=\nssid=Later\n", [](char* o) { debug_level = 2; return getConfigWiFiSSID(o, 32); }, -1, "~", "", "<3>error.[getConfigWiFiSSID] value is empty|<6>line: ssid=\n"},
    Row{"ssidCommented", NV "hostapd.conf=#ssid=Old\nignore_broadcast_ssid=0\n", [](char* o) { return getConfigWiFiSSID(o, 32); }, -1, "~", "", ""},
    Row{"ssidMember", NV "hostapd.conf=ssid=ZT4-0123\n", [](char* o) { json_t* j = json_object(); return dumped(o, j, readSSID(j)); }, 0, R"({"SSID":"ZT4-0123"}~)", "", nullptr},
    Row{"ssidNoFile", "", [](char* o) { json_t* j = json_object(); return dumped(o, j, readSSID(j)); }, -1, "{}~", "", "<3>error.[getConfigWiFiSSID]: FAILED open file '@" NV "hostapd.conf'. No such file or directory (2)|<3>error.[readSSID]: Failed to get SSID"},
    Row{"ssidDirectory", NV "hostapd.conf=<dir>", [](char* o) { return getConfigWiFiSSID(o, 32); }, -1, nullptr, "", "<3>error.[getConfigWiFiSSID]: FAILED open file '@" NV "hostapd.conf'. Is a directory (21)"},
    Row{"ssidNotText", NV "hostapd.conf=ssid=\xff\xfe\n", [](char* o) { json_t* j = json_object(); return dumped(o, j, readSSID(j)); }, -1, "{}~", "", "<3>error.[readSSID]: Failed to JSON string SSID"},
    Row{"ssidNull", "", [](char*) { return readSSID(nullptr); }, -1, nullptr, "", "<3>error.[readSSID]: json_ssid NULL"},
    // The production software version.
    Row{"version34", NV "swmainversionproduction=3.4", version, 0, "3.4.0~", "", nullptr},
    Row{"version3412", NV "swmainversionproduction=3.4.12\n", [](char* o) { debug_level = 3; return version(o); }, 0, "3.4.12~", "", "<6>[readFormatMainSoftwareVersionProduction]: token 3 = 12\n|<6>Software major number 3|<6>Software minor number 4|<6>Software patch number 12"},
    Row{"version3456", NV "swmainversionproduction=3.4.5.6", version, 0, "3.4.6~", "", nullptr},
    Row{"version300", NV "swmainversionproduction=300.4.1", version, 0, "44.4.1~", "", nullptr},
    Row{"version3", NV "swmainversionproduction=3", version, -1, nullptr, "", "<3>No format main software version production available"},
    Row{"versionEmpty", NV "swmainversionproduction=", version, -1, nullptr, "", "<3>No format main software version production available"},
    Row{"versionNone", "", version, -1, nullptr, "", "<4>No attributes of file Main SW version production|<3>No format main software version production available"},
    Row{"versionDir", NV "swmainversionproduction=<dir>", version, -1, nullptr, "", "<3>No file available for Main SW version production"},
    Row{"versionNull", "", [](char*) { return readMainSoftwareVersionProduction(nullptr, 16); }, -1, nullptr, "", "<3>error.[readMainSoftwareVersionProduction] str NULL"},
    Row{"versionSize0", "", [](char* o) { return readMainSoftwareVersionProduction(o, 0); }, -1, nullptr, "", "<3>error.[readMainSoftwareVersionProduction] Size str NULL"},
    Row{"versionNoOutput", NV "swmainversionproduction=3.4", [](char*) { uint8_t v; return readFormatMainSoftwareVersionProduction(&v, nullptr, &v); }, -1, nullptr, "", "<3>error.[readFormatMainSoftwareVersionProduction] value is NULL"},
    // The device-information document.
    Row{"deviceInfo", TMP "software=4.1.0-rc1-long-name|" NV "swmainversion=4.1.0|" TMP "slotflag2=1|" TMP "hardware=3.2.1|" TMP "bootedpartition=B2x|" NV "radiodeveui=" EUI "\n|/var/zt4/eth0/address=00:1e:c0:aa:bb:cc|/var/zt4/br0/Netmask=255.255.255.0",
        [](char* o) { json_t* j = json_object(); return dumped(o, j, readJSONZT4DeviceInfo(j)); }, 0, R"({"Ethernet":"00:1e:c0:aa:bb:cc","EthernetNetmask":"255.255.255.0","HW":"3.2.1","Partition":"B2x","SW":"4.1.0-rc1-long-","SW2":"4.1.0","SerialNumber":"70B3D57ED0012345","SlotFlag2":"1"}~)", "", "<6>Read device information"},
    Row{"deviceInfoOthers", TMP "swrelease=r7|" NV "swupdateversion=4.0.9|" TMP "slotflag1=0|/var/zt4/br0/AddressIP=10.0.0.5|/var/zt4/br0/Broadcast=10.0.0.255|/var/zt4/wlan0/address=00:1e:c0:dd:ee:ff",
        [](char* o) { json_t* j = json_object(); return dumped(o, j, readJSONZT4DeviceInfo(j)); }, 0, R"({"EthernetBroadcast":"10.0.0.255","EthernetIP":"10.0.0.5","SW1":"4.0.9","SWRelease":"r7","SlotFlag1":"0","WiFi":"00:1e:c0:dd:ee:ff"}~)", "", nullptr},
    Row{"deviceInfoNull", "", [](char*) { return readJSONZT4DeviceInfo(nullptr); }, -1, nullptr, "", "<6>Read device information|<3>error.[readJSONZT4DeviceInfo] json NULL"},
    // Identifier formats: length, then colons three apart; a last newline is dropped in place.
    Row{"euiNewline", "", [](char* o) { return eui(o, EUI "\n", 23, 8); }, 0, EUI "~", "", ""},
    Row{"euiKey", "", [](char* o) { return eui(o, KEY, 47, 16); }, 0, KEY "~", "", ""},
    Row{"euiTrace", "", [](char* o) { debug_level = 2; return eui(o, EUI, 23, 8); }, 0, nullptr, "", "<6>[checkEUIformat]: Key '" EUI "'"},
    Row{"euiShort", "", [](char* o) { return eui(o, "70:B3:D5:7E:D0:01:23:4", 23, 8); }, -1, nullptr, "", "<3>error.[checkEUIformat].* size wrong 22 '70:B3:D5:7E:D0:01:23:4' (exp. 23) bytes"},
    Row{"euiTwoNewlines", "", [](char* o) { return eui(o, EUI "\n\n", 23, 8); }, -1, nullptr, "", "<3>error.[checkEUIformat].* size wrong 24 '" EUI "\n' (exp. 23) bytes"},
    Row{"euiNoColons", "", [](char* o) { return eui(o, "70B3D57ED0012345ABCDEFG", 23, 8); }, -1, nullptr, "", "<3>error.[checkEUIformat].* format wrong '70B3D57ED0012345ABCDEFG' (exp. 8 groups)"},
    Row{"euiColonsApart", "", [](char* o) { return eui(o, "70:B3:D5:7ED0:01:23:4:5", 23, 8); }, -1, nullptr, "", "<3>error.[checkEUIformat].* format wrong '70:B3:D5:7ED0:01:23:4:5' (exp. 8 groups)"},
    Row{"euiColonsTogether", "", [](char* o) { return eui(o, "70::B3D5:7E:D0:01:23:45", 23, 8); }, -1, nullptr, "", nullptr},
    Row{"euiKeyAsEui", "", [](char* o) { return eui(o, KEY, 47, 8); }, -1, nullptr, "", "<3>error.[checkEUIformat].* format wrong '" KEY "' (exp. 8 groups)"},
    Row{"euiNull", "", [](char*) { return checkEUIformat(nullptr, 23, 8); }, -1, nullptr, "", "<3>error: [checkEUIformat] parameter is NULL"},
    // Persistent radio state: the setter writes the value and a newline, the getter reads it back.
    Row{"devEui", "", [](char* o) { return setRadioDEVEUI(EUI) | getRadioDEVEUI(o, 64); }, 0, EUI "~", NV "radiodeveui=" EUI "\n", "<3>error.[getRadioDEVEUI] FAILED to open file '@" NV "radiodeveui'"},
    Row{"appKey", "", [](char* o) { return setRadioAPPKEY(KEY) | getRadioAPPKEY(o, 64); }, 0, KEY "~", NV "radioappkey=" KEY "\n", OPEN("getRadioAPPKEY", NV "radioappkey")},
    Row{"joined", "", [](char* o) { return writeRadioJoined("1") | getRadioJoined(o, 64); }, 0, "1\n~", NV "radiojoined=1\n", OPEN("getRadioJoined", NV "radiojoined")},
    Row{"setJoined", NV "radiojoined=0\n", [](char*) { return setRadioJoined(); }, 0, nullptr, "*" NV "radiojoined=1\n", nullptr},
    Row{"clearJoined", NV "radiojoined=1\n", [](char*) { return clearRadioJoined(); }, 0, nullptr, "*" NV "radiojoined=0\n", nullptr},
    Row{"localTime", "", [](char* o) { return writeRadioLocalTime("1:2") | readRadioLocalTime(o, 64); }, 0, "1:2\n~", NV "radiolocaltime=1:2\n", OPEN("readRadioLocalTime", NV "radiolocaltime")},
    Row{"radioVersion", "", [](char* o) { return setRadioVersion("1.0.3") | getRadioVersion(o, 64); }, 0, "1.0.3\n~", NV "radioversion=1.0.3\n", ""},
    Row{"regionBand", "", [](char* o) { return setRadioRegionBand("EU-868") | getRadioRegionBand(o, 64); }, 0, "EU-868\n~", NV "currentradioregionband=EU-868\n", ""},
    Row{"userBand", "", [](char* o) { return writeUserConfigRadioRegionBand("US-915") | readUserConfigRadioRegionBand(o, 64); }, 0, "US-915\n~", NV "regionbandlora=US-915\n", ""},
    Row{"lineFrequency", "", [](char* o) { return writeUserConfigLineFrequency("50") | readUserConfigLineFrequency(o, 64); }, 0, "50\n~", NV "linefrequency=50\n", ""},
    Row{"addressing", "", [](char* o) { return writeUserConfigEthernetIPv4Addressing("DHCP") | readUserConfigEthernetIPv4Addressing(o, 64); }, 0, "DHCP\n~", NV "ethernetipv4addressing=DHCP\n", ""},
    Row{"setNull", "", [](char*) { return setRadioVersion(nullptr); }, -1, nullptr, NV "radioversion=<none>", "<3>error.[setRadioVersion] value is NULL"},
    Row{"setEmpty", "", [](char*) { return writeUserConfigLineFrequency(""); }, -1, nullptr, NV "linefrequency=<none>", "<3>error.[writeUserConfigLineFrequency] value length is NULL"},
    Row{"getNull", NV "radioversion=1", [](char*) { return getRadioVersion(nullptr, 8); }, -1, nullptr, "", "<3>error.[getRadioVersion] value is NULL"},
    Row{"getSize0", NV "radioversion=1", [](char* o) { return getRadioVersion(o, 0); }, -1, nullptr, "", "<3>error.[getRadioVersion] value size is NULL"},
    Row{"getEmpty", NV "radiojoined=", [](char* o) { return getRadioJoined(o, 64); }, -1, nullptr, "", "<3>error.[getRadioJoined] value is empty"},
    Row{"getCut", NV "radioversion=1.22.333\n", [](char* o) { return getRadioVersion(o, 5); }, 0, "1.22~x", "", ""},
    Row{"getOnlyTerminator", NV "radioversion=1.22.333\n", [](char* o) { return getRadioVersion(o, 1); }, -1, "~x", "", nullptr},
    Row{"setLongCut", "", [](char*) { return setRadioVersion("vvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvv"); }, 0, nullptr, NV "radioversion=vvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvv\n", nullptr},
    Row{"setWriteFails", NV "radioversion=->/dev/full", [](char*) { return setRadioVersion("1.0"); }, -1, nullptr, "", "<3>error.[setRadioVersion] FAILED to fputs '1.0' in file '@" NV "radioversion'"},
    Row{"setOpenFails", NV "radioversion=<dir>", [](char*) { return setRadioVersion("1.0"); }, -1, nullptr, "", "<3>error.[setRadioVersion] FAILED to open file '@" NV "radioversion'"},
    Row{"devEuiOpenFails", NV "radiodeveui=<dir>", [](char*) { return setRadioDEVEUI(EUI); }, -1, nullptr, "", "<3>error.[setRadioDEVEUI] FAILED to open file '@" NV "radiodeveui'"},
    Row{"devEuiBad", NV "radiodeveui=" EUI "\n", [](char*) { return setRadioDEVEUI("70:B3:D5:7E:D0:01:23"); }, -1, nullptr, "!" NV "radiodeveui=" EUI "\n", "<3>error.[setRadioDEVEUI] value format is wrong"},
    Row{"appKeyBad", "", [](char*) { return setRadioAPPKEY(EUI); }, -1, nullptr, NV "radioappkey=<none>", "<3>error.[setRadioAPPKEY] value format is wrong"},
    Row{"appKeyReadBad", NV "radioappkey=" EUI, [](char* o) { return getRadioAPPKEY(o, 64); }, -1, nullptr, "", "<3>error.[getRadioAPPKEY] value format is wrong"},
    Row{"devEuiReadCut", NV "radiodeveui=" EUI, [](char* o) { return getRadioDEVEUI(o, 20); }, -1, "70:B3:D5:7E:D0:01:2~", "", "<3>error.[getRadioDEVEUI] value format is wrong"},
    // Readers of a missing file, each with its own words.
    Row{"noDevEui", "", [](char* o) { return getRadioDEVEUI(o, 16); }, -1, "~", "", "<3>error.[getRadioDEVEUI] FAILED to open file '@" NV "radiodeveui'"},
    Row{"noAppKey", "", [](char* o) { return getRadioAPPKEY(o, 16); }, -1, nullptr, "", OPEN("getRadioAPPKEY", NV "radioappkey")},
    Row{"noJoined", "", [](char* o) { return getRadioJoined(o, 16); }, -1, nullptr, "", OPEN("getRadioJoined", NV "radiojoined")},
    Row{"noLocalTime", "", [](char* o) { return readRadioLocalTime(o, 16); }, -1, nullptr, "", OPEN("readRadioLocalTime", NV "radiolocaltime")},
    Row{"noVersion", "", [](char* o) { return getRadioVersion(o, 16); }, -1, nullptr, "", OPEN("getRadioVersion", NV "radioversion")},
    Row{"noBand", "", [](char* o) { return getRadioRegionBand(o, 16); }, -1, nullptr, "", OPEN("getRadioRegionBand", NV "currentradioregionband")},
    Row{"noUserBand", "", [](char* o) { return readUserConfigRadioRegionBand(o, 16); }, -1, nullptr, "", OPEN("readUserConfigRadioRegionBand", NV "regionbandlora")},
    Row{"noLineFrequency", "", [](char* o) { return readUserConfigLineFrequency(o, 16); }, -1, nullptr, "", "<3>error.[readUserConfigLineFrequency] No file '@" NV "linefrequency'"},
    Row{"noAddressing", "", [](char* o) { return readUserConfigEthernetIPv4Addressing(o, 16); }, -1, nullptr, "", "<3>error.[readUserConfigEthernetIPv4Addressing] No file '@" NV "ethernetipv4addressing'"},
    // Skip when unchanged: the current value is compared as read.
    Row{"euiSame", NV "radiodeveui=" EUI "\n", [](char*) { debug_level = 4; return setRadioDEVEUI(EUI "\n"); }, 0, nullptr, "!" NV "radiodeveui=" EUI "\n", "<6>[setRadioDEVEUI] DEVEUI=" EUI},
    Row{"euiChanged", NV "radiodeveui=70:B3:D5:7E:D0:01:23:46\n", [](char*) { return setRadioDEVEUI(EUI); }, 0, nullptr, "*" NV "radiodeveui=" EUI "\n", nullptr},
    Row{"keySame", NV "radioappkey=" KEY, [](char*) { debug_level = 4; return setRadioAPPKEY(KEY); }, 0, nullptr, "!" NV "radioappkey=" KEY, "<6>[setRadioAPPKEY] APPKEY=" KEY},
    Row{"joinedNewlineRewritten", NV "radiojoined=1\n", [](char*) { debug_level = 4; return setRadioJoined(); }, 0, nullptr, "*" NV "radiojoined=1\n", "<6>[writeRadioJoined] Joined=1\n"},
    Row{"joinedSame", NV "radiojoined=1", [](char*) { return writeRadioJoined("1"); }, 0, nullptr, "!" NV "radiojoined=1", nullptr},
    Row{"localTimeSame", NV "radiolocaltime=1:2\n", [](char*) { debug_level = 4; return writeRadioLocalTime("1:2\n"); }, 0, nullptr, "!" NV "radiolocaltime=1:2\n", "<6>[writeRadioLocalTime] LocalTime=1:2\n"},
    Row{"localTimeRewritten", NV "radiolocaltime=1:2\n", [](char*) { return writeRadioLocalTime("1:2"); }, 0, nullptr, "*" NV "radiolocaltime=1:2\n", nullptr},
    Row{"localTimeLongSame", NV "radiolocaltime=<long>", [](char*) { return writeRadioLocalTime((kLong + "\n").c_str()); }, 0, nullptr, "!" NV "radiolocaltime=<long>", nullptr},
    Row{"versionAlwaysWritten", NV "radioversion=1.0\n", [](char*) { return setRadioVersion("1.0"); }, 0, nullptr, "*" NV "radioversion=1.0\n", nullptr},
    Row{"bandAlwaysWritten", NV "currentradioregionband=EU-868\n", [](char*) { return setRadioRegionBand("EU-868"); }, 0, nullptr, "*" NV "currentradioregionband=EU-868\n", nullptr},
    // The radio daemon's parameters: written without a newline, identifiers checked.
    Row{"pAppeui", "", [](char* o) { return setConfigRadioAppeui(EUI "\n") | getConfigRadioAppeui(o, 64); }, 0, EUI "~", TMP "radioappeui=" EUI, ""},
    Row{"pDeveui", "", [](char* o) { return setConfigRadioDeveui(EUI) | getConfigRadioDeveui(o, 64); }, 0, EUI "~", TMP "radiodeveui=" EUI, ""},
    Row{"pAppkey", "", [](char* o) { return setConfigRadioAppkey(KEY) | getConfigRadioAppkey(o, 64); }, 0, KEY "~", TMP "radioappkey=" KEY, ""},
    Row{"pDr", "", [](char* o) { return setConfigRadioDR("5\n") | getConfigRadioDR(o, 64); }, 0, "5\n~", TMP "radiodr=5\n", ""},
    Row{"pJoined", "", [](char* o) { return setConfigRadioJoined("1") | getConfigRadioJoined(o, 64); }, 0, "1~", TMP "radiojoined=1", ""},
    Row{"pStatus", "", [](char* o) { return setConfigRadioNetworkStatus("2") | getConfigRadioNetworkStatus(o, 64); }, 0, "2~", TMP "radionetworkstatus=2", ""},
    Row{"pVersion", "", [](char* o) { return setConfigRadioVersion("2.1") | getConfigRadioVersion(o, 64); }, 0, "2.1~", TMP "radioversion=2.1", ""},
    Row{"pBand", "", [](char* o) { return setConfigRadioRegionBand("EU-868") | getConfigRadioBand(o, 64); }, 0, "EU-868~", TMP "radioregionband=EU-868", ""},
    Row{"pLocalTime", "", [](char*) { return setConfigRadioLocalTime("12:00:00\n"); }, 0, nullptr, TMP "radiolocaltime=12:00:00\n", ""},
    Row{"pEpoch", "", [](char*) { return setConfigRadioEpochTime("1795000000"); }, 0, nullptr, TMP "radioepochtime=1795000000", ""},
    Row{"pNwkKey", TMP "radionwkkey=" KEY "\n", [](char* o) { return getConfigRadioNetworkKey(o, 64); }, 0, KEY "~", "", ""},
    Row{"pAddress", TMP "radioaddress=" EUI, [](char* o) { return getConfigRadioAddress(o, 64); }, 0, EUI "~", "", ""},
    Row{"pNetworkId", TMP "radionetworkid=" EUI, [](char* o) { return getConfigRadioNetworkID(o, 64); }, 0, EUI "~", "", ""},
    Row{"pNwkSKey", TMP "radionwkskey=" EUI, [](char* o) { return getConfigRadioNetworkSKey(o, 64); }, 0, EUI "~", "", ""},
    Row{"pAppSKey", TMP "radioappskey=" EUI, [](char* o) { return getConfigRadioAppSKey(o, 64); }, 0, EUI "~", "", ""},
    Row{"pAdr", TMP "radioadr=1\n", [](char* o) { return getConfigRadioADR(o, 64); }, 0, "1\n~", "", ""},
    Row{"pDrDone", TMP "radiodrdone=1", [](char* o) { return getConfigRadioDRMaxReached(o, 64); }, 0, "1~", "", ""},
    Row{"pNwkKeyShort", TMP "radionwkkey=" EUI, [](char* o) { return getConfigRadioNetworkKey(o, 64); }, -1, nullptr, "", "<3>error.[checkEUIformat].* size wrong 23 '" EUI "' (exp. 47) bytes|<3>error.[getConfigRadioKey32] value format is wrong"},
    Row{"pSessionKeyLong", TMP "radionwkskey=" KEY, [](char* o) { return getConfigRadioNetworkSKey(o, 64); }, -1, nullptr, "", "<3>error.[getConfigRadioKey16] value format is wrong"},
    Row{"pAppeuiBad", "", [](char*) { return setConfigRadioAppeui("70:B3"); }, -1, nullptr, TMP "radioappeui=<none>", "<3>error.[setConfigRadioKey16] value format is wrong"},
    Row{"pAppkeyBad", "", [](char*) { return setConfigRadioAppkey(EUI); }, -1, nullptr, TMP "radioappkey=<none>", "<3>error.[setConfigRadioKey32] value format is wrong"},
    Row{"pMissing", "", [](char* o) { return getConfigRadioDR(o, 32); }, -1, nullptr, "", OPEN("getConfigRadio", TMP "radiodr")},
    Row{"pEmpty", TMP "radiodr=", [](char* o) { debug_level = 2; return getConfigRadioDR(o, 32); }, -1, nullptr, "", "<3>error.[getConfigRadio] value dr is empty"},
    Row{"pEmptyQuiet", TMP "radiodr=", [](char* o) { return getConfigRadioDR(o, 32); }, -1, nullptr, "", ""},
    Row{"pSetEmpty", "", [](char*) { return setConfigRadioDR(""); }, -1, nullptr, TMP "radiodr=<none>", "<3>error.[setConfigRadio] value length is NULL"},
    Row{"pSetNull", "", [](char*) { return setConfigRadioKey32("appkey", nullptr); }, -1, nullptr, "", "<3>error.[setConfigRadioKey32] value is NULL"},
    Row{"pGetNameNull", "", [](char* o) { return getConfigRadioKey16(nullptr, o, 32); }, -1, nullptr, "", "<3>error.[getConfigRadioKey16] name is NULL"},
    Row{"pSetNameNull", "", [](char*) { return setConfigRadio(nullptr, "1"); }, -1, nullptr, "", "<3>error.[setConfigRadio] name is NULL"},
    Row{"pSize0", "", [](char* o) { return getConfigRadioKey32("appkey", o, 0); }, -1, nullptr, "", "<3>error.[getConfigRadioKey32] value size is NULL"},
    Row{"pNoBuffer", "", [](char*) { return getConfigRadio("dr", nullptr, 32); }, -1, nullptr, "", "<3>error.[getConfigRadio] value is NULL"},
    Row{"pLongName", "", [](char*) { return setConfigRadio("nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn", "1"); }, -1, nullptr, "", "<3>error.[setConfigRadio] name is too long 'nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn'"},
    Row{"pLongGet", "", [](char* o) { return getConfigRadio("nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn", o, 32); }, -1, nullptr, "", "<3>error.[getConfigRadio] name is too long 'nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn'"},
    Row{"pLongestName", "", [](char*) { return setConfigRadio("nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn", "1"); }, 0, nullptr, TMP "radionnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn=1", ""},
    Row{"pOpenFails", TMP "radiodr=<dir>", [](char*) { return setConfigRadioDR("1"); }, -1, nullptr, "", "<3>error.[setConfigRadio] FAILED to open file '@" TMP "radiodr'"},
    Row{"pWriteFails", TMP "radiodr=->/dev/full", [](char*) { return setConfigRadioDR("1"); }, -1, nullptr, "", "<3>error.[setConfigRadio] FAILED to fputs '1' in file '@" TMP "radiodr'"},
    // The join timestamp: written over the start of the file, never truncated.
    Row{"joinNew", "", [](char* o) { return setTimestampLastJoin(1795431600) | joinTime(o); }, 0, "1795431600~", JOIN "=1795431600", ""},
    Row{"joinShorter", JOIN "=1234567", [](char* o) { return setTimestampLastJoin(89) | joinTime(o); }, 0, "8934567~", JOIN "=8934567", ""},
    Row{"joinZero", JOIN "=7\n", [](char* o) { return setTimestampLastJoin(0) | joinTime(o); }, 0, "0~", JOIN "=0\n", ""},
    Row{"joinMissing", "", joinTime, -1, "0~", "", ""},
    Row{"joinMissingTraced", "", [](char* o) { debug_level = 2; return joinTime(o); }, -1, "0~", "", "<3>error.[getTimestampLastJoin]: fd INVALID"},
    Row{"joinEmpty", JOIN "=", joinTime, -1, "0~", "", nullptr},
    Row{"joinNull", "", [](char*) { return getTimestampLastJoin(nullptr); }, -1, nullptr, "", "<3>error.[getTimestampLastJoin] value is NULL"},
    Row{"joinNoDirectory", "", [](char*) { rmdir(at("/var/run")); return setTimestampLastJoin(5); }, -1, nullptr, "", "<3>error.[setTimestampLastJoin]: fd INVALID"},
    Row{"joinWriteFails", JOIN "=->/dev/full", [](char*) { return setTimestampLastJoin(5); }, -1, nullptr, "", "<3>[setTimestampLastJoin] FAILED to write file '@" JOIN "'"},
    // LED attributes other than the maximum brightness.
    Row{"ledOff", "/sys/class/leds/status/brightness=255|/sys/class/leds/status/trigger=none", [](char*) { return leds_off("status"); }, 0, nullptr, "/sys/class/leds/status/brightness=0|!/sys/class/leds/status/trigger=none", ""},
    Row{"ledBlink", "/sys/class/leds/status/brightness=255|/sys/class/leds/status/trigger=none", [](char*) { return leds_blink("status"); }, 0, nullptr, "/sys/class/leds/status/trigger=timer|!/sys/class/leds/status/brightness=255", ""},
    Row{"ledHeartbeat", "/sys/class/leds/status/trigger=none", [](char*) { return leds_heartbeat("status"); }, 0, nullptr, "/sys/class/leds/status/trigger=heartbeat", ""},
    Row{"ledAbsent", "", [](char*) { return leds_blink("absent"); }, -1, nullptr, "", "<3>error.[leds_file] Failed to open file '@/sys/class/leds/absent/trigger'"},
    Row{"ledOffAbsent", "", [](char*) { return leds_off("absent"); }, -1, nullptr, "", "<3>error.[leds_file] Failed to open file '@/sys/class/leds/absent/brightness'"},
    Row{"ledWriteFails", "/sys/class/leds/full/trigger=->/dev/full", [](char*) { return leds_blink("full"); }, -1, nullptr, "", "<3>error.[leds_file] Failed to write 'timer' in file '@/sys/class/leds/full/trigger'"},
    Row{"ledLongestName", "/sys/class/leds/aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa/brightness=1", [](char*) { return leds_off("aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"); }, 0, nullptr, "/sys/class/leds/aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa/brightness=0", ""},
    Row{"ledNameTooLong", "", [](char*) { return leds_off("aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaab"); }, -1, nullptr, "", "<3>error.[leds_file] LED name too long: 'aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaab'"},
    Row{"ledNames", "", [](char*) { return leds_heartbeat("") + leds_heartbeat(".") + leds_heartbeat("..") + leds_heartbeat("../x") + leds_heartbeat(nullptr); }, -5, nullptr, "", "<3>error.[leds_file] Invalid LED name ''|<3>error.[leds_file] Invalid LED name '.'|<3>error.[leds_file] Invalid LED name '..'|<3>error.[leds_file] Invalid LED name '../x'"},
    Row{"ledNulls", "", [](char*) { return leds_on(nullptr) + leds_off(nullptr) + leds_blink(nullptr) + CreateFile(nullptr) + DeleteFile(nullptr); }, -5, nullptr, "", nullptr},
    // Marker files.
    Row{"create", TMP "marker=old content", [](char*) { return CreateFile(at(TMP "marker")); }, 0, nullptr, "*" TMP "marker=", ""},
    Row{"createNew", "", [](char*) { return CreateFile(at(TMP "marker")); }, 0, nullptr, TMP "marker=", ""},
    Row{"createNowhere", "", [](char*) { return CreateFile(at("/no/such/marker")); }, -1, nullptr, "", "<3>error.[CreateFile]: Failed to create file '@/no/such/marker'. (No such file or directory)"},
    Row{"delete", TMP "marker=x", [](char*) { return DeleteFile(at(TMP "marker")) + DeleteFile(at(TMP "marker")); }, 0, nullptr, TMP "marker=<none>", ""},
    Row{"deleteDirectory", TMP "d/f=x", [](char*) { return DeleteFile(at(TMP "d")); }, -1, nullptr, TMP "d/f=x", "<3>error.[DeleteFile]: Failed to delete file @" TMP "d (Is a directory)"}};
INSTANTIATE_TEST_SUITE_P(Device, DeviceFiles, ::testing::ValuesIn(kRows),
                         [](const ::testing::TestParamInfo<Row>& row) { return std::string(row.param.name); });

// ---- The maximum brightness, cached once for every LED of the process ----------------------

class Leds : public zt4test::DeviceTest {
protected:
    // An LED without files shortens a filled cache at each leds_on, and only an empty cache
    // makes it open max_brightness: calling it until it tries that file empties the cache.
    void SetUp() override {
        DeviceTest::SetUp();
        for (int attempt = 0; attempt < 9 && zt4test::loggedCount("/drain/max_brightness") == 0; ++attempt) leds_on("drain");
        ASSERT_EQ(zt4test::loggedCount("/drain/max_brightness"), 1);
        zt4test::clearLog();
    }
    void led(const char* name, const char* maximum) const {
        writeFile(std::string("/sys/class/leds/") + name + "/max_brightness", maximum);
        writeFile(std::string("/sys/class/leds/") + name + "/brightness", "old");
        writeFile(std::string("/sys/class/leds/") + name + "/trigger", "none");
    }
    std::string attribute(const char* name, const char* file) const { return readFile(std::string("/sys/class/leds/") + name + "/" + file); }
};

TEST_F(Leds, OnShortensTheSharedCacheAtEachCall) {
    led("status", "255\n");
    led("alarm", "7\n");
    const struct { const char* name; int result; const char* brightness; const char* trigger; } calls[] = {
        {"status", 0, "255", "default-on"}, {"alarm", 0, "25", "default-on"}, {"status", 0, "2", "default-on"},
        {"alarm", -1, "25", "default-on"}, {"alarm", 0, "7", "default-on"}};
    for (const auto& call : calls) {
        EXPECT_EQ(leds_on(call.name), call.result) << call.name << call.brightness;
        EXPECT_EQ(attribute(call.name, "brightness"), call.brightness);
        EXPECT_EQ(attribute(call.name, "trigger"), call.trigger);
        writeFile("/sys/class/leds/alarm/trigger", "none");
    }
    EXPECT_TRUE(zt4test::logged("error.[leds_file] Empty value for 'brightness' of LED 'alarm'", LOG_ERR)) << zt4test::logDump();
}

TEST_F(Leds, OnNeedsAMaximumAndReadsAtMostSevenCharactersOfIt) {
    EXPECT_EQ(leds_on("mmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmm"), -1);  // no room for "/max_brightness"
    EXPECT_TRUE(zt4test::logged("error.[leds_on] LED name too long: 'mmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmm'", LOG_ERR));
    EXPECT_EQ(leds_on("status"), -1);
    EXPECT_TRUE(zt4test::logged("error.[leds_on] Failed to open file '" + path("/sys/class/leds/status/max_brightness") + "'", LOG_ERR));
    led("status", "");
    EXPECT_EQ(leds_on("status"), -1);
    EXPECT_TRUE(zt4test::logged("error.[leds_on] Max brightness NULL", LOG_ERR));
    EXPECT_EQ(attribute("status", "brightness"), "old");
    led("status", "123456789\n");
    ASSERT_EQ(leds_on("status"), 0);
    EXPECT_EQ(attribute("status", "brightness"), "123456");
}

// ---- The join timestamp waits for another holder of the write lock -------------------------

void interrupt(int) {}
using JoinTimestamp = zt4test::DeviceTest;

TEST_F(JoinTimestamp, WaitsForTheWriteLock) {
    writeFile(JOIN, "1795431600");
    const int holder = open(path(JOIN).c_str(), O_RDWR);  // an open-file-description lock
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    ASSERT_EQ(fcntl(holder, F_OFD_SETLK, &lock), 0);
    struct sigaction action = {}, previous = {};
    action.sa_handler = interrupt;  // no SA_RESTART: the waiting lock call is interrupted
    sigaction(SIGALRM, &action, &previous);
    int32_t timestamp = 0;
    ualarm(200000, 0);
    EXPECT_EQ(getTimestampLastJoin(&timestamp), -1);
    ualarm(200000, 0);
    EXPECT_EQ(setTimestampLastJoin(1), -1);
    sigaction(SIGALRM, &previous, nullptr);
    close(holder);
    EXPECT_TRUE(zt4test::logged("error.[getTimestampLastJoin]: FAILED to lock file '" + path(JOIN) + "'", LOG_ERR));
    EXPECT_TRUE(zt4test::logged("error.[setTimestampLastJoin]: FAILED to lock file '" + path(JOIN) + "'", LOG_ERR));
    EXPECT_EQ(readFile(JOIN), "1795431600");
}

}  // namespace
