// The device's small files, one call a row: its files before and after, result, buffer and log.
#include <fcntl.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <csetjmp>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>

#include "support/harness.hpp"
#include "zt4config.h"

namespace {

std::string at(const char* devicePath) { return std::string(std::getenv("ZT4_ROOT")) + devicePath; }
int dumped(char* out, json_t* object, int result) {  // the object's compact text into `out`
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
int eui(char* out, const char* text, size_t length, int groups) { return checkEUIformat(std::strcpy(out, text), length, groups); }
int board(char*) { return 10 * isHardwareBoardVersion3() + isHardwareBoardVersion3_2(); }
// The getter on a missing file, the setter, the getter again: 100 x first + 10 x second + third.
int trip(int (*get)(char*, size_t), int (*set)(const char*), const char* value, char* out) {
    const int missing = get(out, 64), stored = set(value);
    return 100 * missing + 10 * stored + get(out, 64);
}
// The maximum brightness is cached for the whole process. An LED without files shortens a filled
// cache at each leds_on, and only an empty cache makes leds_on open max_brightness: calling it
// until it tries that file leaves the cache empty.
int drain() {
    for (int i = 0; i < 9 && zt4test::loggedCount("/drain/max_brightness") == 0; ++i) leds_on("drain");
    zt4test::clearLog();
    return 0;
}
int ledsOn(int times) {
    int result = drain();
    for (int i = 0; i < times; ++i) result = leds_on("status");
    return result;
}
const std::string kLong(70, 't');  // a line longer than a written one

// A row: its name; the files before ("path=content|...": "<dir>" a directory, "->target" a link);
// the call, given 1024 bytes of 'x'; its result; the first bytes of the buffer after ('\0' shown as
// '~'; null: not checked); the files after ("<none>" absent; '!' first: untouched, '*': rewritten);
// the lines logged ("<priority>line|...", '@' the root, '*' any number, '!' first: not logged;
// "": nothing; null: any).
struct Row {
    const char *name, *before;
    int (*call)(char* out);
    int result;
    const char *out, *after, *log;
};

bool matches(const char* pattern, const char* text) {
    if (*pattern == '*') return matches(pattern + 1, text) || (*text && matches(pattern, text + 1));
    return *pattern == *text && (*text == '\0' || matches(pattern + 1, text + 1));
}
template <class Each>
void split(const std::string& list, Each each) {  // each entry of "a|b|c": path, content, mark
    for (size_t start = 0, bar = 0; start < list.size(); start = bar + 1) {
        bar = std::min(list.find('|', start), list.size());
        std::string entry = list.substr(start, bar - start), mark = entry.substr(0, entry[0] == '!' || entry[0] == '*');
        const size_t equals = std::min(entry.find('='), entry.size());
        const std::string content = equals < entry.size() ? entry.substr(equals + 1) : "";
        each(entry.substr(mark.size(), equals - mark.size()), content == "<long>" ? kLong + "\n" : content, mark, entry);
    }
}
sigjmp_buf escape;

class DeviceFiles : public zt4test::DeviceTest, public ::testing::WithParamInterface<Row> {};

TEST_P(DeviceFiles, Call) {
    const Row& r = GetParam();
    std::filesystem::create_directories(path("/var/run"));
    split(r.before, [&](const std::string& file, const std::string& content, const std::string&, const std::string&) {
        std::filesystem::create_directories(std::filesystem::path(path(file)).parent_path());
        struct timespec old[2] = {{1000, 0}, {1000, 0}};
        if (content == "<dir>") {
            std::filesystem::create_directories(path(file));
        } else if (content.rfind("->", 0) == 0) {
            ASSERT_EQ(symlink(content.c_str() + 2, path(file).c_str()), 0);
        } else {
            writeFile(file, content);
            utimensat(AT_FDCWD, path(file).c_str(), old, 0);
        }
    });
    char out[1024];
    std::memset(out, 'x', sizeof out - 1);
    out[sizeof out - 1] = '\0';
    struct sigaction action = {}, previous = {};  // a scan that never ends fails the row
    action.sa_handler = [](int) { siglongjmp(escape, 1); };
    sigaction(SIGALRM, &action, &previous);
    volatile int result = 99;
    if (sigsetjmp(escape, 1) == 0) result = (alarm(2), r.call(out));
    alarm(0);
    sigaction(SIGALRM, &previous, nullptr);
    EXPECT_EQ(result, r.result) << zt4test::logDump();
    std::string shown(out, r.out ? std::strlen(r.out) : 0);
    for (char& c : shown) c = c == '\0' ? '~' : c;
    EXPECT_EQ(shown, r.out ? r.out : "");
    split(r.after, [&](const std::string& file, const std::string& content, const std::string& mark, const std::string&) {
        struct stat info = {};
        EXPECT_EQ(stat(path(file).c_str(), &info) == 0, content != "<none>") << file;
        EXPECT_EQ(content == "<none>" ? content : readFile(file), content) << file;
        EXPECT_TRUE(mark.empty() || (info.st_mtime == 1000) == (mark == "!")) << file << " rewritten or not";
    });
    EXPECT_TRUE(!r.log || *r.log || zt4test::capturedLog().empty()) << zt4test::logDump();
    split(r.log ? r.log : "", [&](const std::string&, const std::string&, const std::string& mark, std::string line) {
        for (size_t at = line.find('@'); at != std::string::npos; at = line.find('@')) line.replace(at, 1, root());
        bool found = false;
        for (const auto& entry : zt4test::capturedLog()) found = found || matches(line.c_str() + mark.size(), ("<" + std::to_string(entry.priority) + ">" + entry.text).c_str());
        EXPECT_EQ(found, mark.empty()) << line << "\n" << zt4test::logDump();
    });
}

#define EUI "70:B3:D5:7E:D0:01:23:45"
#define KEY "2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C"
#define NV "/home/nvram/"
#define TMP "/var/tmp/"
#define JOIN "/var/run/timestamp_join"
#define LED "/sys/class/leds/status/"
#define OPEN(f, p) "<3>error.[" f "] Failed to open file '@" p "'"

const Row kRows[] = {
    // Board generation: 10 x isHardwareBoardVersion3 + isHardwareBoardVersion3_2.
    {"hw321", TMP "hardware=3.2.1\n", board, 11, nullptr, "", ""},
    {"hw31", TMP "hardware=3.1\n", board, 10, nullptr, "", ""},
    {"hw20", TMP "hardware=2.0\n", board, 0, nullptr, "", ""},
    {"hw14", TMP "hardware=1.4", board, 0, nullptr, "", ""},
    {"hw101", TMP "hardware=10.1", board, 10, nullptr, "", ""},
    {"hwNone", "", board, 10, nullptr, "", "<4>No file for 'hardware'"},
    // The serial number: the device EUI's groups, a blank after the fourth on demand.
    {"serial", NV "radiodeveui=" EUI "\n", [](char* o) { debug_level = 3; return getSerialNumber(o, 64, 2); }, 16, "70B3D57ED0012345~", "", "!<6>[getSerialNumber] 70"},
    {"serialSpaced", NV "radiodeveui=" EUI "\n", [](char* o) { return getSerialNumber(o, 64, 1); }, 17, "70B3D57E D0012345~", "", nullptr},
    {"serialFits", NV "radiodeveui=" EUI, [](char* o) { return getSerialNumber(o, 17, 0); }, 16, "70B3D57ED0012345~x", "", nullptr},
    {"serialCut", NV "radiodeveui=" EUI, [](char* o) { return getSerialNumber(o, 17, 1); }, -1, "70B3D57E D001234~x", "", "<3>error.[getSerialNumber].* FAILED to write serial number"},
    {"serialBadEui", NV "radiodeveui=70:B3:D5:7E:D0:01:23", [](char* o) { return getSerialNumber(o, 64, 0); }, -1, "~", "", "<3>error.[getRadioDEVEUI] value format is wrong"},
    {"serialNoEui", "", [](char* o) { return getSerialNumber(o, 64, 0); }, -1, "~", "", nullptr},
    {"serialTrace", NV "radiodeveui=" EUI, [](char* o) { debug_level = 4; return getSerialNumber(o, 64, 0); }, 16, nullptr, "", "<6>[getSerialNumber] 70|<6>[getSerialNumber] 45"},
    // One-line readers of /var/tmp and of the flash.
    {"info", TMP "software=4.1.0\n", [](char* o) { return getInfoDevice("software", o, 16); }, 0, "4.1.0\n~", "", ""},
    {"infoCut", TMP "software=4.1.0\n", [](char* o) { return getInfoDevice("software", o, 3); }, 0, "4.~x", "", ""},
    {"infoMissing", "", [](char* o) { return getInfoDevice("slotflag1", o, 16); }, -1, "~", "", "<4>No file for 'slotflag1'"},
    {"infoEmpty", TMP "slotflag1=", [](char* o) { return getInfoDevice("slotflag1", o, 16); }, -1, "~", "", "<3>error.[getInfoDevice] value is empty"},
    {"infoNotDirectory", TMP "x=1", [](char* o) { return getInfoDevice("x/y", o, 16); }, -1, nullptr, "", "<3>error.[getInfoDevice] FAILED to open file '@" TMP "x/y'"},
    {"infoArguments", TMP "x=1", [](char* o) { return getInfoDevice(nullptr, o, 16) + getInfoDevice("x", nullptr, 16) + getInfoDevice("x", o, 0); }, -3, nullptr, "", "<3>error.[getInfoDevice] name is NULL|<3>error.[getInfoDevice] value is NULL|<3>error.[getInfoDevice] value size is NULL"},
    {"infoLongName", "", [](char* o) { return getInfoDevice("nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn", o, 16); }, -1, nullptr, "", "<3>error.[getInfoDevice] name is too long 'nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn'"},
    {"infoLongestName", TMP "nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn=1", [](char* o) { return getInfoDevice("nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn", o, 16); }, 0, "1~", "", ""},
    {"swMain", NV "swmainversion=4.1.0", [](char* o) { return getSWInfoDevice("swmainversionproduction", o, 16); }, 0, "4.1.0~", "", ""},
    {"swUpdate", NV "swupdateversion=4.2.0", [](char* o) { return getSWInfoDevice("swupdateversion", o, 16); }, 0, "4.2.0~", "", ""},
    {"swUpdateMissing", "", [](char* o) { return getSWInfoDevice("swupdateversion", o, 16); }, -1, "~", "", "<3>error.[getSWInfoDevice] FAILED to open file '@" NV "swupdateversion'"},
    {"swOthers", NV "swother=1", [](char* o) { return getSWInfoDevice("swother", o, 16) + getSWInfoDevice(nullptr, o, 16); }, -2, nullptr, "", "<3>No file for 'swother' in flash memory|<3>error.[getSWInfoDevice] name is NULL"},
    // Addresses: the buffer is zeroed first.
    {"ethMac", "/var/zt4/eth0/address=00:1e:c0:aa:bb:cc", [](char* o) { return getMACAddressEthernet(o, 20); }, 0, "00:1e:c0:aa:bb:cc~~~x", "", ""},
    {"ethIp", "/var/zt4/br0/AddressIP=192.168.10.42", [](char* o) { return getIPAddressEthernet(o, 16); }, 0, "192.168.10.42~~~x", "", ""},
    {"broadcast", "/var/zt4/br0/Broadcast=192.168.10.255", [](char* o) { return getBroadcastAddressEthernet(o, 20); }, 0, "192.168.10.255~~~~~~x", "", ""},
    {"netmask", "/var/zt4/br0/Netmask=255.255.255.0", [](char* o) { return getNetmaskAddressEthernet(o, 16); }, 0, "255.255.255.0~~~x", "", ""},
    {"wifiMac", "/var/zt4/wlan0/address=00:1e:c0:dd:ee:ff", [](char* o) { return getMACAddressWiFi(o, 18); }, 0, "00:1e:c0:dd:ee:ff~x", "", ""},
    {"wifiMacMissing", "", [](char* o) { return getMACAddressWiFi(o, 8); }, -1, "~~~~~~~~x", "", "<3>error.[getMACAddressWiFi] FAILED to open file '@/var/zt4/wlan0/address'"},
    {"ipv4", "", [](char*) { return isAddressIPv4("192.168.1.1") * 10 + isAddressIPv4("256.1.1.1") + 100 * isAddressIPv4(nullptr); }, -101, nullptr, "", "<3>error.[isAddressIPv4] value is NULL"},
    // The access point's SSID: the first "ssid=" line, up to a blank.
    {"ssidBlankEnds", NV "hostapd.conf=ssid=My Net\n", [](char* o) { return getConfigWiFiSSID(o, 32); }, 0, "My~", "", "<6>get SSID: My"},
    {"ssidFirstWins", NV "hostapd.conf=interface=wlan0\nssid=ZT4-0123\nssid=Other\n", [](char* o) { return getConfigWiFiSSID(o, 32); }, 0, "ZT4-0123~", "", nullptr},
    {"ssidCut", NV "hostapd.conf=ssid=ZT4-0123\n", [](char* o) { return getConfigWiFiSSID(o, 5); }, 0, "ZT4-~x", "", nullptr},
    {"ssidEmptyStops", NV "hostapd.conf=ssid=\nssid=Later\n", [](char* o) { debug_level = 2; return getConfigWiFiSSID(o, 32); }, -1, "~", "", "<3>error.[getConfigWiFiSSID] value is empty|<6>line: ssid=\n"},
    {"ssidCommented", NV "hostapd.conf=#ssid=Old\nignore_broadcast_ssid=0\n", [](char* o) { debug_level = 1; return getConfigWiFiSSID(o, 32); }, -1, "~", "", ""},
    {"ssidMember", NV "hostapd.conf=ssid=ZT4-0123\n", [](char* o) { json_t* j = json_object(); return dumped(o, j, readSSID(j)); }, 0, R"({"SSID":"ZT4-0123"}~)", "", nullptr},
    {"ssidNoFile", "", [](char* o) { json_t* j = json_object(); return dumped(o, j, readSSID(j) + readSSID(nullptr)); }, -2, "{}~", "", "<3>error.[getConfigWiFiSSID]: FAILED open file '@" NV "hostapd.conf'. No such file or directory (2)|<3>error.[readSSID]: Failed to get SSID|<3>error.[readSSID]: json_ssid NULL"},
    {"ssidDirectory", NV "hostapd.conf=<dir>", [](char* o) { return getConfigWiFiSSID(o, 32); }, -1, nullptr, "", "<3>error.[getConfigWiFiSSID]: FAILED open file '@" NV "hostapd.conf'. Is a directory (21)"},
    {"ssidNotObject", NV "hostapd.conf=ssid=ZT4-0123\n", [](char* o) { json_t* j = json_array(); return dumped(o, j, readSSID(j)); }, -1, "[]~", "", "<3>error.[readSSID]: Failed to set JSON Object SSID"},
    {"ssidNotText", NV "hostapd.conf=ssid=\xff\xfe\n", [](char* o) { json_t* j = json_object(); return dumped(o, j, readSSID(j)); }, -1, "{}~", "", "<3>error.[readSSID]: Failed to JSON string SSID"},
    // The production software version.
    {"version34", NV "swmainversionproduction=3.4", [](char* o) { debug_level = 1; return version(o); }, 0, "3.4.0~", "", ""},
    {"version3412", NV "swmainversionproduction=3.4.12\n", [](char* o) { debug_level = 3; return version(o); }, 0, "3.4.12~", "", "<6>[readFormatMainSoftwareVersionProduction]: token 3 = 12\n|<6>Software major number 3|<6>Software minor number 4|<6>Software patch number 12"},
    {"version3456", NV "swmainversionproduction=3.4.5.6", version, 0, "3.4.6~", "", nullptr},
    {"version3", NV "swmainversionproduction=3", version, -1, nullptr, "", "<3>No format main software version production available"},
    {"versionEmpty", NV "swmainversionproduction=", version, -1, nullptr, "", "<3>No format main software version production available"},
    {"versionNone", "", version, -1, nullptr, "", "<4>No attributes of file Main SW version production|<3>No format main software version production available"},
    {"mainVersionNone", "", [](char* o) { return readMainSoftwareVersionProduction(o, 16); }, -1, "~", "", "<4>No attributes of file Main SW version production"},
    {"versionDir", NV "swmainversionproduction=<dir>", version, -1, nullptr, "", "<3>No file available for Main SW version production"},
    {"versionArguments", NV "swmainversionproduction=3.4", [](char* o) { uint8_t v; return readMainSoftwareVersionProduction(nullptr, 16) + readMainSoftwareVersionProduction(o, 0) + readFormatMainSoftwareVersionProduction(&v, nullptr, &v); }, -3, nullptr, "", "<3>error.[readMainSoftwareVersionProduction] str NULL|<3>error.[readMainSoftwareVersionProduction] Size str NULL|<3>error.[readFormatMainSoftwareVersionProduction] value is NULL"},
    // The device-information document.
    {"deviceInfo", TMP "software=4.1.0-rc1-long-name|" NV "swmainversion=4.1.0|" TMP "slotflag2=1|" TMP "hardware=3.2.1|" TMP "bootedpartition=B2x|" NV "radiodeveui=" EUI "\n|/var/zt4/eth0/address=00:1e:c0:aa:bb:cc|/var/zt4/br0/Netmask=255.255.255.0", [](char* o) { json_t* j = json_object(); return dumped(o, j, readJSONZT4DeviceInfo(j)); }, 0, R"({"Ethernet":"00:1e:c0:aa:bb:cc","EthernetNetmask":"255.255.255.0","HW":"3.2.1","Partition":"B2x","SW":"4.1.0-rc1-long-","SW2":"4.1.0","SerialNumber":"70B3D57ED0012345","SlotFlag2":"1"}~)", "", "<6>Read device information"},
    {"deviceInfoOthers", TMP "software=\xff|" TMP "swrelease=r7|" NV "swupdateversion=4.0.9|" TMP "slotflag1=0|/var/zt4/br0/AddressIP=10.0.0.5|/var/zt4/br0/Broadcast=10.0.0.255|/var/zt4/wlan0/address=00:1e:c0:dd:ee:ff", [](char* o) { json_t* j = json_object(); return dumped(o, j, readJSONZT4DeviceInfo(j)); }, 0, R"({"EthernetBroadcast":"10.0.0.255","EthernetIP":"10.0.0.5","SW1":"4.0.9","SWRelease":"r7","SlotFlag1":"0","WiFi":"00:1e:c0:dd:ee:ff"}~)", "", "<3>error.[readJSONZT4DeviceInfo] Failed to set JSON Object SW"},
    {"deviceInfoNotObject", "", [](char*) { json_t* a = json_array(); const int result = readJSONZT4DeviceInfo(nullptr) + readJSONZT4DeviceInfo(a); json_decref(a); return result; }, -2, nullptr, "", "<6>Read device information|<3>error.[readJSONZT4DeviceInfo] json NULL|<3>error.[readJSONZT4DeviceInfo] json is not an object"},
    // Identifier formats: length, then colons three apart; a last newline is dropped in place.
    {"euiNewline", "", [](char* o) { debug_level = 1; return eui(o, EUI "\n", 23, 8); }, 0, EUI "~", "", ""},
    {"euiKey", "", [](char* o) { return eui(o, KEY, 47, 16); }, 0, KEY "~", "", ""},
    {"euiTrace", "", [](char* o) { debug_level = 2; return eui(o, EUI, 23, 8); }, 0, nullptr, "", "<6>[checkEUIformat]: Key '" EUI "'"},
    {"euiShort", "", [](char* o) { return eui(o, "70:B3:D5:7E:D0:01:23:4", 23, 8); }, -1, nullptr, "", "<3>error.[checkEUIformat].* size wrong 22 '70:B3:D5:7E:D0:01:23:4' (exp. 23) bytes"},
    {"euiTwoNewlines", "", [](char* o) { return eui(o, EUI "\n\n", 23, 8); }, -1, nullptr, "", "<3>error.[checkEUIformat].* size wrong 24 '" EUI "\n' (exp. 23) bytes"},
    {"euiNoColons", "", [](char* o) { return eui(o, "70B3D57ED0012345ABCDEFG", 23, 8); }, -1, nullptr, "", "<3>error.[checkEUIformat].* format wrong '70B3D57ED0012345ABCDEFG' (exp. 8 groups)"},
    {"euiColonsApart", "", [](char* o) { return eui(o, "70:B3:D5:7ED0:01:23:4:5", 23, 8); }, -1, nullptr, "", "<3>error.[checkEUIformat].* format wrong '70:B3:D5:7ED0:01:23:4:5' (exp. 8 groups)"},
    {"euiColonsTogether", "", [](char* o) { return eui(o, "70::B3D5:7E:D0:01:23:45", 23, 8); }, -1, nullptr, "", nullptr},
    {"euiKeyAsEui", "", [](char* o) { return eui(o, KEY, 47, 8); }, -1, nullptr, "", "<3>error.[checkEUIformat].* format wrong '" KEY "' (exp. 8 groups)"},
    {"euiNull", "", [](char*) { return checkEUIformat(nullptr, 23, 8); }, -1, nullptr, "", "<3>error: [checkEUIformat] parameter is NULL"},
    // Persistent radio state: missing, then written as the value and a newline, then read back.
    {"devEui", "", [](char* o) { return trip(getRadioDEVEUI, setRadioDEVEUI, EUI, o); }, -100, EUI "~", NV "radiodeveui=" EUI "\n", "<3>error.[getRadioDEVEUI] FAILED to open file '@" NV "radiodeveui'"},
    {"appKey", "", [](char* o) { return trip(getRadioAPPKEY, setRadioAPPKEY, KEY, o); }, -100, KEY "~", NV "radioappkey=" KEY "\n", OPEN("getRadioAPPKEY", NV "radioappkey")},
    {"joined", "", [](char* o) { return trip(getRadioJoined, writeRadioJoined, "1", o); }, -100, "1\n~", NV "radiojoined=1\n", OPEN("getRadioJoined", NV "radiojoined")},
    {"localTime", "", [](char* o) { return trip(readRadioLocalTime, writeRadioLocalTime, "1:2", o); }, -100, "1:2\n~", NV "radiolocaltime=1:2\n", OPEN("readRadioLocalTime", NV "radiolocaltime")},
    {"radioVersion", "", [](char* o) { return trip(getRadioVersion, setRadioVersion, "1.0.3", o); }, -100, "1.0.3\n~", NV "radioversion=1.0.3\n", OPEN("getRadioVersion", NV "radioversion")},
    {"regionBand", "", [](char* o) { return trip(getRadioRegionBand, setRadioRegionBand, "EU-868", o); }, -100, "EU-868\n~", NV "currentradioregionband=EU-868\n", OPEN("getRadioRegionBand", NV "currentradioregionband")},
    {"userBand", "", [](char* o) { return trip(readUserConfigRadioRegionBand, writeUserConfigRadioRegionBand, "US-915", o); }, -100, "US-915\n~", NV "regionbandlora=US-915\n", OPEN("readUserConfigRadioRegionBand", NV "regionbandlora")},
    {"lineFrequency", "", [](char* o) { return trip(readUserConfigLineFrequency, writeUserConfigLineFrequency, "50", o); }, -100, "50\n~", NV "linefrequency=50\n", "<3>error.[readUserConfigLineFrequency] No file '@" NV "linefrequency'"},
    {"addressing", "", [](char* o) { return trip(readUserConfigEthernetIPv4Addressing, writeUserConfigEthernetIPv4Addressing, "DHCP", o); }, -100, "DHCP\n~", NV "ethernetipv4addressing=DHCP\n", "<3>error.[readUserConfigEthernetIPv4Addressing] No file '@" NV "ethernetipv4addressing'"},
    {"setJoined", NV "radiojoined=0\n", [](char*) { return setRadioJoined(); }, 0, nullptr, "*" NV "radiojoined=1\n", nullptr},
    {"clearJoined", NV "radiojoined=1\n", [](char*) { return clearRadioJoined(); }, 0, nullptr, "*" NV "radiojoined=0\n", nullptr},
    {"arguments", NV "radioversion=1|" NV "radiojoined=", [](char* o) { return setRadioVersion(nullptr) + writeUserConfigLineFrequency("") + getRadioVersion(nullptr, 8) + getRadioVersion(o, 0) + getRadioJoined(o, 64); }, -5, nullptr, NV "linefrequency=<none>", "<3>error.[setRadioVersion] value is NULL|<3>error.[writeUserConfigLineFrequency] value length is NULL|<3>error.[getRadioVersion] value is NULL|<3>error.[getRadioVersion] value size is NULL|<3>error.[getRadioJoined] value is empty"},
    {"getCut", NV "radioversion=1.22.333\n", [](char* o) { return getRadioVersion(o, 5); }, 0, "1.22~x", "", ""},
    {"getOnlyTerminator", NV "radioversion=1.22.333\n", [](char* o) { return getRadioVersion(o, 1); }, -1, "~x", "", nullptr},
    {"setLongCut", "", [](char*) { return setRadioVersion("vvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvv"); }, 0, nullptr, NV "radioversion=vvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvv\n", nullptr},
    {"setWriteFails", NV "radioversion=->/dev/full", [](char*) { return setRadioVersion("1.0"); }, -1, nullptr, "", "<3>error.[setRadioVersion] FAILED to fputs '1.0' in file '@" NV "radioversion'"},
    {"setOpenFails", NV "radioversion=<dir>|" NV "radiodeveui=<dir>", [](char*) { return setRadioVersion("1.0") + setRadioDEVEUI(EUI); }, -2, nullptr, "", "<3>error.[setRadioVersion] FAILED to open file '@" NV "radioversion'|<3>error.[setRadioDEVEUI] FAILED to open file '@" NV "radiodeveui'"},
    {"identifiersChecked", NV "radiodeveui=" EUI "\n|" NV "radioappkey=" EUI, [](char* o) { return setRadioDEVEUI("70:B3:D5:7E:D0:01:23") + setRadioAPPKEY(EUI) + getRadioAPPKEY(o, 64); }, -3, nullptr, "!" NV "radiodeveui=" EUI "\n|!" NV "radioappkey=" EUI, "<3>error.[setRadioDEVEUI] value format is wrong|<3>error.[setRadioAPPKEY] value format is wrong|<3>error.[getRadioAPPKEY] value format is wrong"},
    {"devEuiReadCut", NV "radiodeveui=" EUI, [](char* o) { return getRadioDEVEUI(o, 20); }, -1, "70:B3:D5:7E:D0:01:2~", "", "<3>error.[getRadioDEVEUI] value format is wrong"},
    // Skip when unchanged: the current value is compared as read.
    {"euiSame", NV "radiodeveui=" EUI "\n", [](char*) { debug_level = 4; return setRadioDEVEUI(EUI "\n"); }, 0, nullptr, "!" NV "radiodeveui=" EUI "\n", "<6>[setRadioDEVEUI] DEVEUI=" EUI},
    {"euiChanged", NV "radiodeveui=70:B3:D5:7E:D0:01:23:46\n", [](char*) { debug_level = 3; return setRadioDEVEUI(EUI); }, 0, nullptr, "*" NV "radiodeveui=" EUI "\n", "!<6>[setRadioDEVEUI] DEVEUI=*"},
    {"keySame", NV "radioappkey=" KEY, [](char*) { debug_level = 4; return setRadioAPPKEY(KEY); }, 0, nullptr, "!" NV "radioappkey=" KEY, "<6>[setRadioAPPKEY] APPKEY=" KEY},
    {"joinedNewlineRewritten", NV "radiojoined=1\n", [](char*) { debug_level = 4; return setRadioJoined(); }, 0, nullptr, "*" NV "radiojoined=1\n", "<6>[writeRadioJoined] Joined=1\n"},
    {"joinedSame", NV "radiojoined=1", [](char*) { return writeRadioJoined("1"); }, 0, nullptr, "!" NV "radiojoined=1", nullptr},
    {"localTimeSame", NV "radiolocaltime=1:2\n", [](char*) { debug_level = 4; return writeRadioLocalTime("1:2\n"); }, 0, nullptr, "!" NV "radiolocaltime=1:2\n", "<6>[writeRadioLocalTime] LocalTime=1:2\n"},
    {"localTimeRewritten", NV "radiolocaltime=1:2\n", [](char*) { return writeRadioLocalTime("1:2"); }, 0, nullptr, "*" NV "radiolocaltime=1:2\n", nullptr},
    {"localTimeLongSame", NV "radiolocaltime=<long>", [](char*) { return writeRadioLocalTime((kLong + "\n").c_str()); }, 0, nullptr, "!" NV "radiolocaltime=<long>", nullptr},
    {"alwaysWritten", NV "radioversion=1.0\n|" NV "currentradioregionband=EU-868\n", [](char*) { return setRadioVersion("1.0") + setRadioRegionBand("EU-868"); }, 0, nullptr, "*" NV "radioversion=1.0\n|*" NV "currentradioregionband=EU-868\n", nullptr},
    // The radio daemon's parameters: written without a newline, identifiers checked.
    {"pAppeui", "", [](char* o) { return trip(getConfigRadioAppeui, setConfigRadioAppeui, EUI "\n", o); }, -100, EUI "~", TMP "radioappeui=" EUI, OPEN("getConfigRadio", TMP "radioappeui")},
    {"pDeveui", "", [](char* o) { return trip(getConfigRadioDeveui, setConfigRadioDeveui, EUI, o); }, -100, EUI "~", TMP "radiodeveui=" EUI, OPEN("getConfigRadio", TMP "radiodeveui")},
    {"pAppkey", "", [](char* o) { return trip(getConfigRadioAppkey, setConfigRadioAppkey, KEY, o); }, -100, KEY "~", TMP "radioappkey=" KEY, OPEN("getConfigRadio", TMP "radioappkey")},
    {"pDr", "", [](char* o) { return trip(getConfigRadioDR, setConfigRadioDR, "5\n", o); }, -100, "5\n~", TMP "radiodr=5\n", OPEN("getConfigRadio", TMP "radiodr")},
    {"pJoined", "", [](char* o) { return trip(getConfigRadioJoined, setConfigRadioJoined, "1", o); }, -100, "1~", TMP "radiojoined=1", OPEN("getConfigRadio", TMP "radiojoined")},
    {"pStatus", "", [](char* o) { return trip(getConfigRadioNetworkStatus, setConfigRadioNetworkStatus, "2", o); }, -100, "2~", TMP "radionetworkstatus=2", OPEN("getConfigRadio", TMP "radionetworkstatus")},
    {"pVersion", "", [](char* o) { return trip(getConfigRadioVersion, setConfigRadioVersion, "2.1", o); }, -100, "2.1~", TMP "radioversion=2.1", OPEN("getConfigRadio", TMP "radioversion")},
    {"pBand", "", [](char* o) { return trip(getConfigRadioBand, setConfigRadioRegionBand, "EU-868", o); }, -100, "EU-868~", TMP "radioregionband=EU-868", OPEN("getConfigRadio", TMP "radioregionband")},
    {"pTimes", "", [](char*) { return setConfigRadioLocalTime("12:00:00\n") + setConfigRadioEpochTime("1795000000"); }, 0, nullptr, TMP "radiolocaltime=12:00:00\n|" TMP "radioepochtime=1795000000", ""},
    {"pNwkKey", TMP "radionwkkey=" KEY "\n", [](char* o) { return getConfigRadioNetworkKey(o, 64); }, 0, KEY "~", "", ""},
    {"pAddress", TMP "radioaddress=" EUI, [](char* o) { return getConfigRadioAddress(o, 64); }, 0, EUI "~", "", ""},
    {"pNetworkId", TMP "radionetworkid=" EUI, [](char* o) { return getConfigRadioNetworkID(o, 64); }, 0, EUI "~", "", ""},
    {"pNwkSKey", TMP "radionwkskey=" EUI, [](char* o) { return getConfigRadioNetworkSKey(o, 64); }, 0, EUI "~", "", ""},
    {"pAppSKey", TMP "radioappskey=" EUI, [](char* o) { return getConfigRadioAppSKey(o, 64); }, 0, EUI "~", "", ""},
    {"pAdr", TMP "radioadr=1\n", [](char* o) { return getConfigRadioADR(o, 64); }, 0, "1\n~", "", ""},
    {"pDrDone", TMP "radiodrdone=1", [](char* o) { return getConfigRadioDRMaxReached(o, 64); }, 0, "1~", "", ""},
    {"pNwkKeyShort", TMP "radionwkkey=" EUI, [](char* o) { return getConfigRadioNetworkKey(o, 64); }, -1, nullptr, "", "<3>error.[checkEUIformat].* size wrong 23 '" EUI "' (exp. 47) bytes|<3>error.[getConfigRadioKey32] value format is wrong"},
    {"pSessionKeyLong", TMP "radionwkskey=" KEY, [](char* o) { return getConfigRadioNetworkSKey(o, 64); }, -1, nullptr, "", "<3>error.[getConfigRadioKey16] value format is wrong"},
    {"pSetChecked", "", [](char*) { return setConfigRadioAppeui("70:B3") + setConfigRadioAppkey(EUI); }, -2, nullptr, TMP "radioappeui=<none>|" TMP "radioappkey=<none>", "<3>error.[setConfigRadioKey16] value format is wrong|<3>error.[setConfigRadioKey32] value format is wrong"},
    {"pEmpty", TMP "radiodr=", [](char* o) { debug_level = 2; return getConfigRadioDR(o, 32); }, -1, nullptr, "", "<3>error.[getConfigRadio] value dr is empty"},
    {"pEmptyQuiet", TMP "radiodr=", [](char* o) { debug_level = 1; return getConfigRadioDR(o, 32); }, -1, nullptr, "", ""},
    {"pArguments", "", [](char* o) { return setConfigRadioDR("") + setConfigRadioKey32("appkey", nullptr) + getConfigRadioKey16(nullptr, o, 32) + setConfigRadio(nullptr, "1") + getConfigRadioKey32("appkey", o, 0) + getConfigRadio("dr", nullptr, 32); }, -6, nullptr, TMP "radiodr=<none>", "<3>error.[setConfigRadio] value length is NULL|<3>error.[setConfigRadioKey32] value is NULL|<3>error.[getConfigRadioKey16] name is NULL|<3>error.[setConfigRadio] name is NULL|<3>error.[getConfigRadioKey32] value size is NULL|<3>error.[getConfigRadio] value is NULL"},
    {"pLongName", "", [](char* o) { return setConfigRadio("nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn", "1") + getConfigRadio("nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn", o, 32); }, -2, nullptr, "", "<3>error.[setConfigRadio] name is too long 'nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn'|<3>error.[getConfigRadio] name is too long 'nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn'"},
    {"pLongestName", "", [](char*) { return setConfigRadio("nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn", "1"); }, 0, nullptr, TMP "radionnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn=1", ""},
    {"pOpenFails", TMP "radiodr=<dir>", [](char*) { return setConfigRadioDR("1"); }, -1, nullptr, "", "<3>error.[setConfigRadio] FAILED to open file '@" TMP "radiodr'"},
    {"pWriteFails", TMP "radiodr=->/dev/full", [](char*) { return setConfigRadioDR("1"); }, -1, nullptr, "", "<3>error.[setConfigRadio] FAILED to fputs '1' in file '@" TMP "radiodr'"},
    // The join timestamp: written over the start of the file, never truncated.
    {"joinNew", "", [](char* o) { return setTimestampLastJoin(1795431600) | joinTime(o); }, 0, "1795431600~", JOIN "=1795431600", ""},
    {"joinShorter", JOIN "=1234567", [](char* o) { return setTimestampLastJoin(89) | joinTime(o); }, 0, "8934567~", JOIN "=8934567", ""},
    {"joinZero", JOIN "=7\n", [](char* o) { return setTimestampLastJoin(0) | joinTime(o); }, 0, "0~", JOIN "=0\n", ""},
    {"joinMissing", "", [](char* o) { debug_level = 1; return joinTime(o); }, -1, "0~", "", ""},
    {"joinMissingTraced", "", [](char* o) { debug_level = 2; return joinTime(o); }, -1, "0~", "", "<3>error.[getTimestampLastJoin]: fd INVALID"},
    {"joinEmpty", JOIN "=", joinTime, -1, "0~", "", "<3>error.[getTimestampLastJoin] value is empty"},
    {"joinFifteenDigits", JOIN "=000000000000000123", joinTime, 0, "0~", "", ""},
    {"joinNull", "", [](char*) { return getTimestampLastJoin(nullptr); }, -1, nullptr, "", "<3>error.[getTimestampLastJoin] value is NULL"},
    {"joinNoDirectory", "", [](char*) { rmdir(at("/var/run").c_str()); return setTimestampLastJoin(5); }, -1, nullptr, "", "<3>error.[setTimestampLastJoin]: fd INVALID"},
    {"joinWriteFails", JOIN "=->/dev/full", [](char*) { return setTimestampLastJoin(5); }, -1, nullptr, "", "<3>[setTimestampLastJoin] FAILED to write file '@" JOIN "'"},
    // LEDs. leds_on writes the shared maximum, one character shorter at each call.
    {"ledOn", LED "max_brightness=255\n|" LED "brightness=0|" LED "trigger=none", [](char*) { return ledsOn(1); }, 0, nullptr, LED "brightness=255|" LED "trigger=default-on", ""},
    {"ledOnShared", LED "max_brightness=255\n|/sys/class/leds/alarm/max_brightness=7\n|/sys/class/leds/alarm/brightness=0", [](char*) { return ledsOn(1) + leds_on("alarm"); }, 0, nullptr, "/sys/class/leds/alarm/brightness=25", nullptr},
    {"ledOnEmptied", LED "max_brightness=255\n|" LED "brightness=0|" LED "trigger=none", [](char*) { return ledsOn(4); }, -1, nullptr, LED "brightness=2|" LED "trigger=default-on", "<3>error.[leds_file] Empty value for 'brightness' of LED 'status'"},
    {"ledOnRefilled", LED "max_brightness=255\n|" LED "brightness=0|" LED "trigger=none", [](char*) { return ledsOn(5); }, 0, nullptr, LED "brightness=255", nullptr},
    {"ledOnSeven", LED "max_brightness=123456789\n|" LED "brightness=0|" LED "trigger=none", [](char*) { return ledsOn(1); }, 0, nullptr, LED "brightness=123456", nullptr},
    {"ledOnNoMaximum", "", [](char*) { return ledsOn(1); }, -1, nullptr, "", OPEN("leds_on", LED "max_brightness")},
    {"ledOnEmptyMaximum", LED "max_brightness=|" LED "brightness=old", [](char*) { return ledsOn(1); }, -1, nullptr, "!" LED "brightness=old", "<3>error.[leds_on] Max brightness NULL"},
    {"ledOnLongName", "", [](char*) { drain(); return leds_on("mmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmm"); }, -1, nullptr, "", "<3>error.[leds_on] LED name too long: 'mmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmm'"},
    {"ledOff", LED "brightness=255|" LED "trigger=none", [](char*) { return leds_off("status"); }, 0, nullptr, LED "brightness=0|!" LED "trigger=none", ""},
    {"ledBlink", LED "brightness=255|" LED "trigger=none", [](char*) { return leds_blink("status"); }, 0, nullptr, LED "trigger=timer|!" LED "brightness=255", ""},
    {"ledHeartbeat", LED "trigger=none", [](char*) { return leds_heartbeat("status"); }, 0, nullptr, LED "trigger=heartbeat", ""},
    {"ledAbsent", "", [](char*) { return leds_blink("absent") + leds_off("absent"); }, -2, nullptr, "", OPEN("leds_file", "/sys/class/leds/absent/trigger") "|" OPEN("leds_file", "/sys/class/leds/absent/brightness")},
    {"ledWriteFails", "/sys/class/leds/full/trigger=->/dev/full", [](char*) { return leds_blink("full"); }, -1, nullptr, "", "<3>error.[leds_file] Failed to write 'timer' in file '@/sys/class/leds/full/trigger'"},
    {"ledLongestName", "/sys/class/leds/aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa/brightness=1", [](char*) { return leds_off("aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"); }, 0, nullptr, "/sys/class/leds/aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa/brightness=0", ""},
    {"ledNameTooLong", "", [](char*) { return leds_off("aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaab"); }, -1, nullptr, "", "<3>error.[leds_file] LED name too long: 'aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaab'"},
    {"ledNames", "", [](char*) { return leds_heartbeat("") + leds_heartbeat(".") + leds_heartbeat("..") + leds_heartbeat("../x") + leds_heartbeat(nullptr) + leds_on(".."); }, -6, nullptr, "", "<3>error.[leds_heartbeat] name NULL|<3>error.[leds_on] Invalid LED name '..'|<3>error.[leds_file] Invalid LED name ''|<3>error.[leds_file] Invalid LED name '.'|<3>error.[leds_file] Invalid LED name '..'|<3>error.[leds_file] Invalid LED name '../x'"},
    {"nulls", "", [](char*) { return leds_on(nullptr) + leds_off(nullptr) + leds_blink(nullptr) + CreateFile(nullptr) + DeleteFile(nullptr); }, -5, nullptr, "", "<3>error.[leds_on] name NULL|<3>error.[leds_off] name NULL|<3>error.[leds_blink] name NULL|<3>error.[CreateFile]: path NULL|<3>error.[DeleteFile]: path NULL"},
    // Marker files.
    {"create", TMP "marker=old content", [](char*) { return CreateFile(at(TMP "marker").c_str()); }, 0, nullptr, "*" TMP "marker=", ""},
    {"createNew", "", [](char*) { return CreateFile(at(TMP "marker").c_str()); }, 0, nullptr, TMP "marker=", ""},
    {"createNowhere", "", [](char*) { return CreateFile(at("/no/such/marker").c_str()); }, -1, nullptr, "", "<3>error.[CreateFile]: Failed to create file '@/no/such/marker'. (No such file or directory)"},
    {"delete", TMP "marker=x", [](char*) { return DeleteFile(at(TMP "marker").c_str()) + DeleteFile(at(TMP "marker").c_str()); }, 0, nullptr, TMP "marker=<none>", ""},
    {"deleteDirectory", TMP "d/f=x", [](char*) { return DeleteFile(at(TMP "d").c_str()); }, -1, nullptr, TMP "d/f=x", "<3>error.[DeleteFile]: Failed to delete file @" TMP "d (Is a directory)"},
};
INSTANTIATE_TEST_SUITE_P(Device, DeviceFiles, ::testing::ValuesIn(kRows), [](const auto& row) { return std::string(row.param.name); });

// Another holder of the join timestamp's write lock (an open-file-description lock, which
// conflicts with the library's record lock even within this process) makes both operations
// wait; an alarm interrupts the wait, and they report the lock without touching the file.
using JoinTimestamp = zt4test::DeviceTest;

TEST_F(JoinTimestamp, WaitsForTheWriteLock) {
    writeFile(JOIN, "1795431600");
    const int holder = open(path(JOIN).c_str(), O_RDWR);
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    ASSERT_EQ(fcntl(holder, F_OFD_SETLK, &lock), 0);
    struct sigaction action = {}, previous = {};
    action.sa_handler = [](int) {};  // no SA_RESTART: the waiting lock call is interrupted
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

// A radio daemon parameter that cannot be read is also reported on stderr, where the start
// scripts' logs collect it.
TEST_F(JoinTimestamp, UnreadableRadioParameterIsReportedOnStderr) {
    char value[32];
    testing::internal::CaptureStderr();
    EXPECT_EQ(getConfigRadio("Band", value, sizeof value), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "fopen /var/tmp/radio***: No such file or directory\n");
    EXPECT_TRUE(zt4test::logged("error.[getConfigRadio] Failed to open file '" + path(TMP "radioBand") + "'", LOG_ERR));
}

}  // namespace
