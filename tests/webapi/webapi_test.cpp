// The web interface's documents on the example device: what each operation gives, stores and
// logs, on a version-1 device and on an older version-0 one.
#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/cli.hpp"
#include "support/harness.hpp"
#include "zt4config.h"

namespace {

std::string at(const char* devicePath) { return std::string(std::getenv("ZT4_ROOT")) + devicePath; }
std::string got(json_t* value) {  // compact text of a value the caller owns, released
    const std::string text = value ? zt4test::compact(value) : "null";
    json_decref(value);
    return text;
}
json_t* fileJson(const char* devicePath) { return json_load_file(at(devicePath).c_str(), 0, nullptr); }
std::string fileText(const char* devicePath) { return got(fileJson(devicePath)); }
json_t* stored(const char* section) {  // a member of the stored user document (new reference)
    json_t* document = fileJson("/home/nvram/zt4config.json");
    json_t* value = json_incref(json_object_get(document, section));
    json_decref(document);
    return value;
}
void store(const char* section, json_t* value) {  // replaces a member of the stored user document
    json_t* document = fileJson("/home/nvram/zt4config.json");
    json_object_set_new(document, section, value);
    json_dump_file(document, at("/home/nvram/zt4config.json").c_str(), JSON_INDENT(17) | JSON_PRESERVE_ORDER);
    json_decref(document);
}
json_t* parsed(const char* text) { return json_loads(text, JSON_DECODE_ANY, nullptr); }
// The writer's result and then the stored member `section` ("" the whole user document).
std::string put(int (*write)(json_t*), const char* document, const char* section) {
    json_t* value = parsed(document);
    const int result = write(value);
    json_decref(value);
    return std::to_string(result) + " " + (*section ? got(stored(section)) : fileText("/home/nvram/zt4config.json"));
}
std::string expertFirst() {  // the expert options with their first connector only
    json_t* expert = readJSONZT4WebAPIConfigExpert();
    json_t* connectors = json_object_get(expert, "Connect");
    while (json_array_size(connectors) > 1) json_array_remove(connectors, 1);
    return got(expert);
}
// The version-0 Ethernet documents with the addressing setting `setting` (null: none).
std::string ethernet0(const char* setting, const char* document) {
    std::filesystem::remove(at("/home/nvram/ethernetipv4addressing"));
    if (setting) writeUserConfigEthernetIPv4Addressing(setting);
    if (!document) return got(readJSONZT4WebAPIConfigEthernet());
    const std::string before = fileText("/home/nvram/zt4config.json");
    json_t* value = parsed(document);
    const int result = writeJSONZT4WebAPIConfigEthernet(value);
    const std::string argument = got(value);
    char buffer[16] = "";
    readUserConfigEthernetIPv4Addressing(buffer, sizeof buffer);
    return std::to_string(result) + " " + buffer + (argument == got(parsed(document)) ? "" : " argument changed") +
           (fileText("/home/nvram/zt4config.json") == before ? "" : " document changed");
}

// The example's connectors made one variation v: mode v / 4, three channels when v % 4 >= 2,
// the transformers' primary on when v is odd, the voltage transformer the other way.
void storeVariation(int v) {
    std::string connectors = "[";
    for (int n = 1; n <= 6; ++n) {
        const std::string primary = R"("CurrentTransformerPrimary": {"Enable": )" + std::to_string(v % 2) + R"(, "CurrentPrimary": )" + std::to_string(100 * n) + "}";
        connectors += (n > 1 ? ", " : "") + std::string(R"({"Mode": )") + std::to_string(v / 4) + R"(, "CurrentTransformerModel": )" + std::to_string(n) + R"(, "Channel": [)";
        if (v % 4 < 2) connectors += R"({"Enable": 1, "Name": "Line", "GeneralFactor": 1.5, "CurrentTransformer": [{"Direction": 0}, {"Direction": 1}, {"Direction": 0}], )" + primary + "}]}";
        for (int phase = 1; phase <= 3 && v % 4 >= 2; ++phase) {
            connectors += std::string(phase > 1 ? ", " : "") + R"({"Enable": )" + std::to_string(phase % 2) + R"(, "Name": "L)" + std::to_string(phase) + R"(", "GeneralFactor": 2.0, "CurrentTransformer": [{"Direction": )" +
                          std::to_string(phase == 2) + "}], " + primary + R"(, "Phase": )" + std::to_string(phase) + "}" + (phase == 3 ? "]}" : "");
        }
    }
    json_t* electrical = stored("ElectricalConfiguration");
    json_object_set_new(electrical, "Connectors", parsed((connectors + "]").c_str()));
    json_object_set_new(electrical, "VoltageTransformer", parsed(("{\"Enable\": " + std::to_string(1 - v % 2) + R"(, "VoltagePrimary": 20000.0, "VoltageSecondary": 100.0})").c_str()));
    json_object_set_new(json_object_get(json_object_get(electrical, "Expert"), "Sag"), "Enable", json_integer(1 - v % 2));
    store("ElectricalConfiguration", electrical);
}
// Sets the JSON `value` at `pointer` ("1/Cnl/0/Colour": indexes and member names) in `document`.
json_t* setAt(json_t* document, std::string pointer, const char* value) {
    json_t* parent = document;
    for (size_t slash; (slash = pointer.find('/')) != std::string::npos; pointer.erase(0, slash + 1)) {
        parent = json_is_array(parent) ? json_array_get(parent, std::stoul(pointer.substr(0, slash))) : json_object_get(parent, pointer.substr(0, slash).c_str());
    }
    json_is_array(parent) ? json_array_set_new(parent, std::stoul(pointer), parsed(value)) : json_object_set_new(parent, pointer.c_str(), parsed(value));
    return document;
}
// What a reader gave, changed at `pointer`, written back: the result, and whether the document changed.
std::string changed(json_t* (*read)(), int (*write)(json_t*), const char* pointer, const char* value) {
    const std::string before = fileText("/home/nvram/zt4config.json");
    json_t* document = setAt(read(), pointer, value);
    const int result = write(document);
    json_decref(document);
    return std::to_string(result) + (fileText("/home/nvram/zt4config.json") == before ? " unchanged" : " changed");
}
json_t* connector2() { return readJSONZT4WebAPIConfigConnectorById(2); }
int writeConnector2(json_t* connector) { return writeJSONZT4WebAPIConfigConnectorById(connector, 2); }

constexpr const char* kVersion0 = R"({"Syntax": {"Version": 0}, "RadioLoRa": {"Enable": 1, "Protocol": "LoRa", "TransmitMode": 1, "ADBitRate": 1},
 "WiFi": {"Enable": 1, "AddressIP": "10.42.0.1", "StartIP": "10.42.0.100"}, "Ethernet": {"AddressIP": "192.168.1.66"},
 "Modbus": {"Enable": 0, "Version": 2, "ID": 9}, "SetupConnectors": {"Setup": 2},
 "Connectors": [{"Cnl": [{"Mode": 4, "Plier": 1, "Name": "Old", "Dir": 0}]}], "Expert": {"Sag": {"Enable": 1}}})";

struct Row {
    const char* name;
    const char* user;  // "" the example's user document; "Section=json" one member replaced; "{...}" another document
    std::string (*call)();
    const char* expected;
    const char* log;   // lines logged, "<priority>text|..."
};

class WebDevice : public zt4test::DeviceTest {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        std::filesystem::copy(ZT4_EXAMPLE_DEVICE, root(), std::filesystem::copy_options::recursive | std::filesystem::copy_options::overwrite_existing);
    }
};
class Operation : public WebDevice, public ::testing::WithParamInterface<Row> {};

TEST_P(Operation, GivesStoresAndLogs) {
    const std::string user = GetParam().user;
    if (user[0] == '{') writeFile("/home/nvram/zt4config.json", user);
    if (user.find('=') != std::string::npos && user[0] != '{') store(user.substr(0, user.find('=')).c_str(), parsed(user.c_str() + user.find('=') + 1));
    zt4test::clearLog();
    EXPECT_EQ(GetParam().call(), GetParam().expected);
    const std::string log = GetParam().log;
    for (size_t start = 0, bar; start < log.size(); start = bar + 1) {
        bar = std::min(log.find('|', start), log.size());
        const std::string line = log.substr(start, bar - start);
        EXPECT_TRUE(zt4test::logged(line.substr(3), line[1] - '0')) << line << "\n" << zt4test::logDump();
    }
}

#define READ(f) [] { return got(f()); }
#define R6(f, text) "<6>[" #f "]: " text " via Web API"
#define KEY "2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C"
#define RADIO R"({"ADBitRate":1,"APPEUI":"70:B3:D5:7E:D0:00:4A:21","APPKEY":")" KEY R"(","Band":"EU-868","DEVEUI":"70:B3:D5:7E:D0:01:23:45","Enable":1,"Period":15,"Protocol":"LoRa","TransmitMode":2})"

#define W1(f, text) "<3>error.[writeJSONZT4WebAPIConfig" #f "SyntaxVersion1]: " text
#define R1(f, text) "<3>error.[readJSONZT4WebAPIConfig" #f "SyntaxVersion1]: " text
const Row kRows[] = {
    // Version 1: readers reshape the stored sections to the older names.
    {"File", "", [] { return std::to_string(got(readJSONZT4WebAPIConfigFile()) == fileText("/home/nvram/zt4config.json")); }, "1", R6(readJSONZT4WebAPIConfigFile, "Read User configuration file")},
    {"System", "", [] { return std::to_string(got(readJSONZT4WebAPISystemFile()) == fileText("/home/nvram/zt4system.json")); }, "1", R6(readJSONZT4WebAPISystemFile, "Read System configuration file")},
    {"DeviceInfo", "", [] { json_t* info = json_object(); const int result = readJSONZT4WebAPIDeviceInfo(info); return std::to_string(result) + got(info); }, R"(0{"Ethernet":"00:1e:c0:4a:7b:12","EthernetBroadcast":"192.168.1.255","EthernetIP":"192.168.1.50","EthernetNetmask":"255.255.255.0","HW":"3.2.1","Partition":"B","SW":"4.1.0","SW1":"4.0.9","SW2":"4.1.0","SWRelease":"2026-10-14","SerialNumber":"70B3D57ED0012345","SlotFlag1":"0","SlotFlag2":"1","WiFi":"00:1e:c0:4a:7b:13"})", R6(readJSONZT4WebAPIDeviceInfo, "Read Device information")},
    {"Web", "", READ(readJSONZT4WebAPIConfigWeb), R"({"Language":"en"})", R6(readJSONZT4WebAPIConfigWeb, "Read User configuration web")},
    {"Radio", "", READ(readJSONZT4WebAPIConfigRadio), RADIO, R6(readJSONZT4WebAPIConfigRadio, "Read User configuration RadioLoRa")},
    {"RadioWithDevEUI", "", READ(readJSONZT4WebAPIConfigRadioWithDevEUI), RADIO, R6(readJSONZT4WebAPIConfigRadioWithDevEUI, "Read User configuration RadioLoRa")},
    {"WiFiFlat", "", READ(readJSONZT4WebAPIConfigWiFi), R"({"AddressIP":"10.42.0.1","Enable":1,"EndIP":"10.42.0.120","Netmask":"255.255.255.0","StartIP":"10.42.0.100"})", R6(readJSONZT4WebAPIConfigWiFi, "Read User configuration WiFi")},
    {"WiFiWithoutDhcp", R"(WiFi={"Enable": 0, "SSID": "Site"})", READ(readJSONZT4WebAPIConfigWiFi), R"({"Enable":0})", ""},
    {"Ethernet", "", READ(readJSONZT4WebAPIConfigEthernet), R"({"AddressIP":"192.168.10.42","Dns":"192.168.10.1","GW":"192.168.10.1","IPv4Addressing":"Static","Netmask":"255.255.255.0"})", R6(readJSONZT4WebAPIConfigEthernet, "Read User configuration Ethernet")},
    {"Modbus", "", READ(readJSONZT4WebAPIConfigModbus), R"({"Enable":1,"ID":17,"Interface":"TCP","Parity":1,"RTUBaudrate":115200,"Version":3})", R6(readJSONZT4WebAPIConfigModbus, "Read User configuration Modbus")},
    {"ModbusNames", R"(Modbus={"Enable": 1, "MappingVersion": 2, "SlaveID": 5})", READ(readJSONZT4WebAPIConfigModbus), R"({"Enable":1,"ID":5,"Version":2})", ""},
    {"BACnet", "", READ(readJSONZT4WebAPIConfigBACnet), R"({"DeviceID":4101,"DeviceLocation":"Building A, level -1","DeviceName":"ZT4 main switchboard","Enable":0,"Port":47808,"Version":2})", R6(readJSONZT4WebAPIConfigBACnet, "Read User configuration BACnet")},
    {"Setup", "", READ(readJSONZT4WebAPIConfigSetupConnectors), R"({"Setup":3})", R6(readJSONZT4WebAPIConfigSetupConnectors, "Read User configuration setup connectors")},
    {"Connectors", "", [] { json_t* all = readJSONZT4WebAPIConfigConnectors(); const size_t count = json_array_size(all); json_decref(all); return std::to_string(count); }, "6", R6(readJSONZT4WebAPIConfigConnectors, "Read User configuration connectors")},
    {"Connector2", "", [] { return got(readJSONZT4WebAPIConfigConnectorById(2)); }, R"({"Cnl":[{"CTPrimary":5,"CTPrimaryEnable":0,"Dir":[0,1,0],"Enable":1,"Mode":4,"Name":"HVAC","Plier":3,"VTEnable":0,"VTPrimary":400.0,"VTSecondary":230.0,"xGeneral":1.0}]})", R6(readJSONZT4WebAPIConfigConnectorById, "Read User configuration connector 2")},
    {"Connector7", "", [] { return got(readJSONZT4WebAPIConfigConnectorById(7)); }, "null", R6(readJSONZT4WebAPIConfigConnectorById, "Read User configuration connector 7")},
    {"Expert", "", expertFirst, R"({"Connect":[{"Cnl":[{"OperatingTime":1,"OverCurrent":1,"PowerNoLoad":250.0,"StartupCycle":1}],"CurrentAverageMaxEnable":1,"CurrentAverageMaxPeriod":15,"CurrentImbalance":1,"OverCurrentThreshold":180.5,)" R"("PowerImbalance":1,"THD":1,"VoltageImbalance":1}],"Sag":{"Enable":1,"Phase":[1,1,1],"RateLevel":10.0},"Setup":3,"Swell":{"Enable":1,"Phase":[1,1,1],"RateLevel":10.0}})", R6(readJSONZT4WebAPIConfigExpert, "Read User configuration Expert")},
    {"DataConnectors", "", [] { static uint16_t image[ZT4_MODBUS_IMAGE_WORDS]; zt4Data data{}; data.connectors[1].enabled = 1; return std::to_string(got(readJSONZT4WebAPIDataConnectors(image, &data)) == got(readJSONZT4DataConnector(image, &data))); }, "1", R6(readJSONZT4WebAPIDataConnectors, "Read Data connectors")},
    // Version 1: writers store through the section writers.
    {"WriteFile", "", [] { return put(writeJSONZT4WebAPIConfigFile, R"({"Syntax": {"Version": 1}, "Web": {"Language": "de"}})", "Web"); }, R"(0 {"Language":"de"})", R6(writeJSONZT4WebAPIConfigFile, "Write User configuration file")},
    {"WriteSystem", "", [] { json_t* system = fileJson("/home/nvram/zt4system.json"); json_object_set_new(system, "Marker", json_integer(7)); const int result = writeJSONZT4WebAPISystemFile(system); return std::to_string(result) + (got(system) == fileText("/home/nvram/zt4system.json") ? " same" : " changed"); }, "0 same", R6(writeJSONZT4WebAPISystemFile, "Write System configuration file")},
    {"WriteWeb", "", [] { return put(writeJSONZT4WebAPIConfigWeb, R"({"Language": "fr"})", "Web"); }, R"(0 {"Language":"fr"})", R6(writeJSONZT4WebAPIConfigWeb, "Write User configuration web")},
    {"WriteRadio", "", [] { return put(writeJSONZT4WebAPIConfigRadio, R"({"Enable": 0, "Period": 30, "FrameFormat": 1, "Band": "US-915", "APPKEY": ")" KEY R"(", "APPEUI": "70:B3:D5:7E:D0:00:4A:21", "DEVEUI": "70:B3:D5:7E:D0:01:23:45"})", "RadioLoRa"); }, R"(0 {"APPEUI":"70:B3:D5:7E:D0:00:4A:21","APPKEY":")" KEY R"(","Band":"US-915","Enable":0,"FrameFormat":1,"Period":30})", R6(writeJSONZT4WebAPIConfigRadio, "Write User configuration RadioLoRa")},
    {"WriteWiFi", "", [] { return put(writeJSONZT4WebAPIConfigWiFi, R"({"Enable": 0, "SSID": "ZT4-D0012345", "DHCP": {"AddressIP": "10.42.0.1", "Netmask": "255.255.255.0", "DHCPRangeStartIP": "10.42.0.100", "DHCPRangeEndIP": "10.42.0.120"}})", "WiFi"); }, R"(0 {"DHCP":{"AddressIP":"10.42.0.1","DHCPRangeEndIP":"10.42.0.120","DHCPRangeStartIP":"10.42.0.100","Netmask":"255.255.255.0"},"Enable":0,"SSID":"ZT4-D0012345"})", R6(writeJSONZT4WebAPIConfigWiFi, "Write User configuration WiFi")},
    {"WriteSsid", "", [] { return put(writeJSONZT4WebAPIConfigWiFiSSID, R"({"Enable": 1, "SSID": "Site", "DHCP": {"AddressIP": "10.42.0.1", "Netmask": "255.255.255.0", "DHCPRangeStartIP": "10.42.0.100", "DHCPRangeEndIP": "10.42.0.120"}})", "WiFi"); }, R"(0 {"DHCP":{"AddressIP":"10.42.0.1","DHCPRangeEndIP":"10.42.0.120","DHCPRangeStartIP":"10.42.0.100","Netmask":"255.255.255.0"},"Enable":1,"SSID":"Site"})", R6(writeJSONZT4WebAPIConfigWiFiSSID, "Write User configuration WiFi SSID")},
    {"WriteEthernet", "", [] { return put(writeJSONZT4WebAPIConfigEthernet, R"({"IPv4Addressing": "Static", "AddressIP": "192.168.10.43", "Netmask": "255.255.255.0", "GW": "192.168.10.1", "Dns": "192.168.10.1"})", "Ethernet"); }, R"(0 {"AddressIP":"192.168.10.43","Dns":"192.168.10.1","GW":"192.168.10.1","IPv4Addressing":"Static","Netmask":"255.255.255.0"})", R6(writeJSONZT4WebAPIConfigEthernet, "Write User configuration Ethernet")},
    {"WriteModbus", "", [] { return put(writeJSONZT4WebAPIConfigModbus, R"({"Enable": 1, "MappingVersion": 3, "Interface": "TCP", "RTUBaudrate": 115200, "Parity": 1, "SlaveID": 5})", "Modbus"); }, R"(0 {"Enable":1,"Interface":"TCP","MappingVersion":3,"Parity":1,"RTUBaudrate":115200,"SlaveID":5})", R6(writeJSONZT4WebAPIConfigModbus, "Write User configuration Modbus")},
    {"WriteModbusRefused", "", [] { return put(writeJSONZT4WebAPIConfigModbus, R"({"Enable": 1, "MappingVersion": 3, "Interface": "TCP", "RTUBaudrate": 115200, "Parity": 1, "SlaveID": 0})", "Modbus"); }, R"(-1 {"Enable":1,"Interface":"TCP","MappingVersion":3,"Parity":1,"RTUBaudrate":115200,"SlaveID":17})", ""},
    {"WriteBACnet", "", [] { return put(writeJSONZT4WebAPIConfigBACnet, R"({"Enable": 1, "MappingVersion": 2, "DeviceID": 4101, "Port": 47808, "DeviceName": "ZT4 main switchboard", "DeviceLocation": "Building A, level -1"})", "BACnet"); }, R"(0 {"DeviceID":4101,"DeviceLocation":"Building A, level -1","DeviceName":"ZT4 main switchboard","Enable":1,"MappingVersion":2,"Port":47808})", R6(writeJSONZT4WebAPIConfigBACnet, "Write User configuration BACnet")},
    {"WriteSetup", "", [] { const std::string result = put(writeJSONZT4WebAPIConfigSetupConnectors, R"({"Setup": 2})", "").substr(0, 2); return result + got(readJSONZT4WebAPIConfigSetupConnectors()); }, R"(0 {"Setup":2})", R6(writeJSONZT4WebAPIConfigSetupConnectors, "Write User configuration Setup connectors")},
    {"WriteConnectors", "", [] { return put(writeJSONZT4WebAPIConfigConnectors, "{}", "").substr(0, 2); }, "-1", R6(writeJSONZT4WebAPIConfigConnectors, "Write User configuration Connectors") "|<3>error.[writeJSONZT4WebAPIConfigConnectorsSyntaxVersion1]: member (document) cannot be mapped: it is not an array"},
    {"WriteConnector", "", [] { json_t* connector = readJSONZT4WebAPIConfigConnectorById(3); json_object_set_new(json_array_get(json_object_get(connector, "Cnl"), 0), "Name", json_string("Lifts")); const int result = writeJSONZT4WebAPIConfigConnectorById(connector, 3); json_decref(connector); return std::to_string(result) + " " + got(readJSONZT4WebAPIConfigConnectorById(3)); }, R"(0 {"Cnl":[{"CTPrimary":400,"CTPrimaryEnable":1,"Dir":[0,0,0],"Enable":1,"Mode":4,"Name":"Lifts","Plier":1,"VTEnable":0,"VTPrimary":400.0,"VTSecondary":230.0,"xGeneral":1.0}]})", R6(writeJSONZT4WebAPIConfigConnectorById, "Write User configuration Connector 3")},
    {"WriteExpert", "", [] { json_t* expert = readJSONZT4WebAPIConfigExpert(); json_object_set_new(expert, "Setup", json_integer(2)); const int result = writeJSONZT4WebAPIConfigExpert(expert); json_decref(expert); return std::to_string(result) + " " + got(readJSONZT4WebAPIConfigSetupConnectors()); }, R"(0 {"Setup":2})", R6(writeJSONZT4WebAPIConfigExpert, "Write User configuration Expert")},
    {"WriteNull", "", [] { return std::to_string(writeJSONZT4WebAPIConfigExpert(nullptr) + writeJSONZT4WebAPIConfigConnectors(nullptr) + writeJSONZT4WebAPIConfigConnectorById(nullptr, 1)); }, "-3", "<3>error.[writeJSONZT4WebAPIConfigExpertSyntaxVersion1]: json NULL|<3>error.[writeJSONZT4WebAPIConfigConnectorsSyntaxVersion1]: json NULL|<3>error.[writeJSONZT4WebAPIConfigConnectorByIdSyntaxVersion1]: json NULL"},
    // The connectors and expert options, translated member by member; a member without a place refuses the whole document.
    {"MonophaseShape", "", [] { storeVariation(23); return got(connector2()); }, R"({"Cnl":[{"CTPrimary":200,"CTPrimaryEnable":1,"Dir":[0],"Enable":1,"Mode":5,"Name":"L1","Phase":1,"Plier":2,"VTEnable":0,"VTPrimary":20000.0,"VTSecondary":100.0,"xGeneral":2.0},{"CTPrimary":200,"CTPrimaryEnable":1,"Dir":[1],"Enable":0,"Name":"L2","Phase":2,"xGeneral":2.0},{"CTPrimary":200,"CTPrimaryEnable":1,"Dir":[0],"Enable":1,"Name":"L3","Phase":3,"xGeneral":2.0}]})", ""},
    {"StoredShape", "", [] { json_t* c = parsed(R"({"Cnl":[{"Mode":2,"Plier":7,"VTEnable":1,"VTPrimary":11000.0,"VTSecondary":110.0,"Enable":1,"Name":"Pump","xGeneral":0.5,"Dir":[1,1,0],"CTPrimaryEnable":1,"CTPrimary":250}]})"); const int result = writeJSONZT4WebAPIConfigConnectorById(c, 6); json_decref(c); json_t* e = stored("ElectricalConfiguration"); const std::string text = std::to_string(result) + zt4test::compact(json_array_get(json_object_get(e, "Connectors"), 5)) + zt4test::compact(json_object_get(e, "VoltageTransformer")); json_decref(e); return text; }, R"(0{"Channel":[{"CurrentTransformer":[{"Direction":1},{"Direction":1},{"Direction":0}],"CurrentTransformerPrimary":{"CurrentPrimary":250,"Enable":1},"Enable":1,"GeneralFactor":0.5,"Name":"Pump"}],"CurrentTransformerModel":7,"Mode":2}{"Enable":1,"VoltagePrimary":11000.0,"VoltageSecondary":110.0})", ""},
    {"UnknownMember", "", [] { return changed(readJSONZT4WebAPIConfigConnectors, writeJSONZT4WebAPIConfigConnectors, "1/Cnl/0/Colour", R"("red")"); }, "-1 unchanged", W1(Connectors, "member [1].Cnl[0].Colour cannot be mapped: it does not survive the way back") "|" W1(Connectors, "Failed to prepare Connectors JSON response to Syntax Version 1")},
    {"ModeOnChannel2", "", [] { return changed(readJSONZT4WebAPIConfigConnectors, writeJSONZT4WebAPIConfigConnectors, "3/Cnl/1/Mode", "1"); }, "-1 unchanged", W1(Connectors, "member [3].Cnl[1].Mode cannot be mapped: it does not survive the way back")},
    {"TransformersDisagree", "", [] { return changed(readJSONZT4WebAPIConfigConnectors, writeJSONZT4WebAPIConfigConnectors, "4/Cnl/0/VTSecondary", "110.0"); }, "-1 unchanged", W1(Connectors, "member [4].Cnl[0].VTSecondary cannot be mapped: it does not survive the way back")},
    {"NameNotText", "", [] { return changed(readJSONZT4WebAPIConfigConnectors, writeJSONZT4WebAPIConfigConnectors, "0/Cnl/0/Name", "5"); }, "-1 unchanged", W1(Connectors, "member [0].Cnl[0].Name cannot be mapped: it has the wrong type")},
    {"ModeNotInteger", "", [] { return changed(readJSONZT4WebAPIConfigConnectors, writeJSONZT4WebAPIConfigConnectors, "0/Cnl/0/Mode", "4.0"); }, "-1 unchanged", W1(Connectors, "member [0].Cnl[0].Mode cannot be mapped: it has the wrong type")},
    {"DirectionNotInteger", "", [] { return changed(readJSONZT4WebAPIConfigConnectors, writeJSONZT4WebAPIConfigConnectors, "1/Cnl/0/Dir/2", R"("in")"); }, "-1 unchanged", W1(Connectors, "member [1].Cnl[0].Dir[2] cannot be mapped: it has the wrong type")},
    {"ChannelNotObject", "", [] { return changed(readJSONZT4WebAPIConfigConnectors, writeJSONZT4WebAPIConfigConnectors, "3/Cnl/2", "7"); }, "-1 unchanged", W1(Connectors, "member [3].Cnl[2] cannot be mapped: it is not an object")},
    {"OneConnector", "", [] { return changed(connector2, writeConnector2, "Cnl/0/Plier", R"("CT-100")"); }, "-1 unchanged", W1(ConnectorById, "member Cnl[0].Plier cannot be mapped: it has the wrong type")},
    {"VoltageTransformerRefused", "", [] { return changed(connector2, writeConnector2, "Cnl/0/VTPrimary", "-5.0"); }, "-1 unchanged", W1(ConnectorById, "Failed to write Voltage Transformer parameters")},
    {"ExpertStoredName", "", [] { return changed(readJSONZT4WebAPIConfigExpert, writeJSONZT4WebAPIConfigExpert, "Connect/0/THDEnable", "1"); }, "-1 unchanged", W1(Expert, "member Connect[0].THDEnable cannot be mapped: it does not survive the way back") "|" W1(Expert, "Failed to prepare Expert JSON response to Syntax Version 1")},
    {"ExpertPhaseObject", "", [] { return changed(readJSONZT4WebAPIConfigExpert, writeJSONZT4WebAPIConfigExpert, "Sag/Phase/1", R"({"Enable": 1})"); }, "-1 unchanged", W1(Expert, "member Sag.Phase[1] cannot be mapped: it has the wrong type")},
    {"ExpertOverCurrent", "", [] { return changed(readJSONZT4WebAPIConfigExpert, writeJSONZT4WebAPIConfigExpert, "Connect/5/Cnl/0/OverCurrent", "0.5"); }, "-1 unchanged", W1(Expert, "Failed to prepare Expert JSON response to Syntax Version 1")},
    {"StoredUnknown", "", [] { store("ElectricalConfiguration", setAt(stored("ElectricalConfiguration"), "Connectors/2/Channel/0/Colour", R"("red")")); return got(readJSONZT4WebAPIConfigConnectors()); }, "null", R1(Connectors, "member [2].Channel[0].Colour cannot be mapped: it does not survive the way back") "|" R1(Connectors, "Failed to prepare Connectors JSON response from Syntax Version 1")},
    {"StoredWithoutDirection", "", [] { store("ElectricalConfiguration", setAt(stored("ElectricalConfiguration"), "Connectors/0/Channel/0/CurrentTransformer/1", "{}")); return got(readJSONZT4WebAPIConfigConnectors()); }, "null", R1(Connectors, "member [0].Channel[0].CurrentTransformer[1] cannot be mapped: it lacks its value")},
    {"StoredExpertUnknown", "", [] { store("ElectricalConfiguration", setAt(stored("ElectricalConfiguration"), "Expert/Colour", "1")); return got(readJSONZT4WebAPIConfigExpert()); }, "null", R1(Expert, "Failed to prepare Expert JSON response from Syntax Version 1")},
    // Version 0: the sections pass through as they are stored.
    {"Radio0", kVersion0, READ(readJSONZT4WebAPIConfigRadio), R"({"ADBitRate":1,"Enable":1,"Protocol":"LoRa","TransmitMode":1})", ""},
    {"WiFi0", kVersion0, READ(readJSONZT4WebAPIConfigWiFi), R"({"AddressIP":"10.42.0.1","Enable":1,"StartIP":"10.42.0.100"})", ""},
    {"Modbus0", kVersion0, READ(readJSONZT4WebAPIConfigModbus), R"({"Enable":0,"ID":9,"Version":2})", ""},
    {"Setup0", kVersion0, READ(readJSONZT4WebAPIConfigSetupConnectors), R"({"Setup":2})", ""},
    {"Connectors0", kVersion0, READ(readJSONZT4WebAPIConfigConnectors), R"([{"Cnl":[{"Dir":0,"Mode":4,"Name":"Old","Plier":1}]}])", ""},
    {"Expert0", kVersion0, READ(readJSONZT4WebAPIConfigExpert), R"({"Sag":{"Enable":1}})", ""},
    {"SsidWriter0", kVersion0, [] { return put(writeJSONZT4WebAPIConfigWiFiSSID, R"({"SSID": "Elsewhere"})", "WiFi") + std::to_string(zt4test::loggedCount("error.")); }, R"(-1 {"AddressIP":"10.42.0.1","Enable":1,"StartIP":"10.42.0.100"}0)", R6(writeJSONZT4WebAPIConfigWiFiSSID, "Write User configuration WiFi SSID")},
    // Version 0: the Ethernet addressing lives in its own setting.
    {"ReadDhcp", kVersion0, [] { return ethernet0("DHCP\n", nullptr); }, R"({"AddressIP":"192.168.1.66","IPv4Addressing":"DHCP"})", ""},
    {"ReadStatic4", kVersion0, [] { return ethernet0("Static4", nullptr); }, R"({"AddressIP":"192.168.1.66","IPv4Addressing":"Static4"})", ""},
    {"ReadCutAtSeven", kVersion0, [] { return ethernet0("DHCPLONGERTEXT", nullptr); }, R"({"AddressIP":"192.168.1.66","IPv4Addressing":"DHCPLON"})", ""},
    {"ReadManual", kVersion0, [] { return ethernet0("Manual\n", nullptr); }, R"({"AddressIP":"192.168.1.66","IPv4Addressing":"Static"})", ""},
    {"ReadLowerCase", kVersion0, [] { return ethernet0("dhcp\n", nullptr); }, R"({"AddressIP":"192.168.1.66","IPv4Addressing":"Static"})", ""},
    {"ReadNoSetting", kVersion0, [] { return ethernet0(nullptr, nullptr); }, R"({"AddressIP":"192.168.1.66","IPv4Addressing":"Static"})", ""},
    {"WriteManual", kVersion0, [] { return ethernet0("old", R"({"IPv4Addressing":"Manual","AddressIP":"10.0.0.2"})"); }, "-1 Static\n", "<6>[writeJSONZT4WebAPIConfigEthernetSyntaxVersion0]: IPv4Addressing = Static"},
    {"WriteDhcp", kVersion0, [] { return ethernet0("old", R"({"IPv4Addressing":"DHCP"})"); }, "-1 DHCP\n", "<6>[writeJSONZT4WebAPIConfigEthernetSyntaxVersion0]: IPv4Addressing = DHCP"},
    {"WriteCutToSeven", kVersion0, [] { return ethernet0("old", R"({"IPv4Addressing":"DHCPserver"})"); }, "-1 DHCPser\n", "<6>[writeJSONZT4WebAPIConfigEthernetSyntaxVersion0]: IPv4Addressing = DHCPser"},
    {"WriteNotText", kVersion0, [] { return ethernet0("old", R"({"IPv4Addressing":1})"); }, "-1 Static\n", "<6>[writeJSONZT4WebAPIConfigEthernetSyntaxVersion0]: IPv4Addressing = Static"},
    {"WriteAbsent", kVersion0, [] { return ethernet0("old", R"({"AddressIP":"10.0.0.2"})"); }, "-1 old\n", "<6>[writeJSONZT4WebAPIConfigEthernetSyntaxVersion0]: IPv4Addressing = Static"},
};
INSTANTIATE_TEST_SUITE_P(WebAPI, Operation, ::testing::ValuesIn(kRows), [](const auto& row) { return std::string(row.param.name); });

// Stored -> web -> stored is the identity, and web -> stored -> web too, on the example (-1) and
// on each variation.
class RoundTrip : public WebDevice, public ::testing::WithParamInterface<int> {};

TEST_P(RoundTrip, BothWaysAreTheIdentity) {
    if (GetParam() >= 0) storeVariation(GetParam());
    const std::string before = got(stored("ElectricalConfiguration"));
    EXPECT_EQ(before.find("\"CurrentPrimary\":600") != std::string::npos, GetParam() >= 0);  // the variation is stored
    json_t* connectors = readJSONZT4WebAPIConfigConnectors();
    json_t* expert = readJSONZT4WebAPIConfigExpert();
    json_t* fourth = readJSONZT4WebAPIConfigConnectorById(4);
    EXPECT_EQ(writeJSONZT4WebAPIConfigConnectors(connectors) + writeJSONZT4WebAPIConfigExpert(expert) + writeJSONZT4WebAPIConfigConnectorById(fourth, 4), 0) << zt4test::logDump();
    EXPECT_EQ(got(stored("ElectricalConfiguration")), before);
    EXPECT_EQ(got(readJSONZT4WebAPIConfigConnectors()), got(connectors));
    EXPECT_EQ(got(readJSONZT4WebAPIConfigExpert()), got(expert));
    EXPECT_EQ(got(readJSONZT4WebAPIConfigConnectorById(4)), got(fourth));
}
INSTANTIATE_TEST_SUITE_P(WebAPI, RoundTrip, ::testing::Range(-1, 28));

// ---- The tool's web command: its output and exit status --------------------------------------

struct CliCase {
    const char* name;
    const char* arguments;
    int status;
    const char* output;  // a text the output holds
};
class WebCli : public WebDevice, public ::testing::WithParamInterface<CliCase> {};

TEST_P(WebCli, AnswersWithItsExitStatus) {
    const std::string before = readFile("/home/nvram/zt4config.json");
    std::string output;
    EXPECT_EQ(zt4test::runCli(root(), GetParam().arguments, output), GetParam().status) << output;
    EXPECT_NE(output.find(GetParam().output), std::string::npos) << output;
    if (GetParam().status != 0) {
        EXPECT_EQ(readFile("/home/nvram/zt4config.json"), before);
    }
}

const CliCase kCli[] = {
    {"GetConnector", "web get connector 3", 0, "\"Name\": \"Elevators\""},
    {"SetConnector", "web set connector 6 '{\"Cnl\": [{\"Mode\": 3}]}'", 0, "Write User configuration Connector 6 via Web API"},
    {"SetRefused", "web set modbus '{\"ID\": 0}'", 1, "INVALID Configuration Modbus"},
    {"ConnectorOutOfRange", "web get connector 7", 2, "N must be 1 to 6"},
};
INSTANTIATE_TEST_SUITE_P(WebAPI, WebCli, ::testing::ValuesIn(kCli), [](const auto& row) { return std::string(row.param.name); });

}  // namespace
