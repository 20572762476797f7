// The web interface's documents: reshaped readers, level-6 lines, the version dispatch, the
// version-0 Ethernet setting, the WiFi SSID writer.
#include <syslog.h>

#include <string>

#include "webapi/web_device.hpp"
#include "zt4config.h"

namespace {

using zt4test::compactOwned;
using zt4test::kUserFile;

using Reader = json_t* (*)(void);

// Names parameterised cases by their rows' `name`.
struct RowName {
    template <class Row>
    std::string operator()(const ::testing::TestParamInfo<Row>& row) const { return row.param.name; }
};
using Writer = int (*)(json_t*);

// ---- Readers on the example device ------------------------------------------------------------

struct ReaderCase {
    const char* name;
    Reader read;
    const char* expected;  // compact, keys sorted
};

class ExampleReader : public zt4test::WebDevice, public ::testing::WithParamInterface<ReaderCase> {};

TEST_P(ExampleReader, GivesTheWebShape) {
    EXPECT_EQ(compactOwned(GetParam().read()), GetParam().expected) << zt4test::logDump();
}

json_t* readConnector2() { return readJSONZT4WebAPIConfigConnectorById(2); }
json_t* readConnector5() { return readJSONZT4WebAPIConfigConnectorById(5); }

INSTANTIATE_TEST_SUITE_P(WebAPI, ExampleReader, ::testing::Values(
    ReaderCase{"Web", readJSONZT4WebAPIConfigWeb, R"({"Language":"en"})"},
    ReaderCase{"Radio", readJSONZT4WebAPIConfigRadio,
               R"({"ADBitRate":1,"APPEUI":"70:B3:D5:7E:D0:00:4A:21",)"
               R"("APPKEY":"2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C","Band":"EU-868",)"
               R"("DEVEUI":"70:B3:D5:7E:D0:01:23:45","Enable":1,"Period":15,"Protocol":"LoRa","TransmitMode":2})"},
    ReaderCase{"RadioWithDevEUI", readJSONZT4WebAPIConfigRadioWithDevEUI,
               R"({"ADBitRate":1,"APPEUI":"70:B3:D5:7E:D0:00:4A:21",)"
               R"("APPKEY":"2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C","Band":"EU-868",)"
               R"("DEVEUI":"70:B3:D5:7E:D0:01:23:45","Enable":1,"Period":15,"Protocol":"LoRa","TransmitMode":2})"},
    ReaderCase{"WiFi", readJSONZT4WebAPIConfigWiFi,
               R"({"AddressIP":"10.42.0.1","Enable":1,"EndIP":"10.42.0.120","Netmask":"255.255.255.0",)"
               R"("StartIP":"10.42.0.100"})"},
    ReaderCase{"Ethernet", readJSONZT4WebAPIConfigEthernet,
               R"({"AddressIP":"192.168.10.42","Dns":"192.168.10.1","GW":"192.168.10.1",)"
               R"("IPv4Addressing":"Static","Netmask":"255.255.255.0"})"},
    ReaderCase{"Modbus", readJSONZT4WebAPIConfigModbus,
               R"({"Enable":1,"ID":17,"Interface":"TCP","Parity":1,"RTUBaudrate":115200,"Version":3})"},
    ReaderCase{"BACnet", readJSONZT4WebAPIConfigBACnet,
               R"({"DeviceID":4101,"DeviceLocation":"Building A, level -1","DeviceName":"ZT4 main switchboard",)"
               R"("Enable":0,"Port":47808,"Version":2})"},
    ReaderCase{"SetupConnectors", readJSONZT4WebAPIConfigSetupConnectors, R"({"Setup":3})"},
    // A three-phase connector: one channel with three transformer directions, the connector's
    // members and the voltage transformer on it.
    ReaderCase{"ThreePhaseConnector", readConnector2,
               R"({"Cnl":[{"CTPrimary":5,"CTPrimaryEnable":0,"Dir":[0,1,0],"Enable":1,"Mode":4,"Name":"HVAC",)"
               R"("Plier":3,"VTEnable":0,"VTPrimary":400.0,"VTSecondary":230.0,"xGeneral":1.0}]})"},
    // Monophase channels: the connector's members on channel 1 only.
    ReaderCase{"MonophaseConnector", readConnector5,
               R"({"Cnl":[{"CTPrimary":5,"CTPrimaryEnable":0,"Dir":[0],"Enable":1,"Mode":1,"Name":"Sockets office",)"
               R"("Phase":1,"Plier":8,"VTEnable":0,"VTPrimary":400.0,"VTSecondary":230.0,"xGeneral":1.0},)"
               R"({"CTPrimary":5,"CTPrimaryEnable":0,"Dir":[1],"Enable":1,"Name":"Server room","Phase":2,"xGeneral":2.0},)"
               R"({"CTPrimary":5,"CTPrimaryEnable":0,"Dir":[0],"Enable":0,"Name":"","Phase":3,"xGeneral":1.0}]})"}),
    RowName());

using WebExample = zt4test::WebDevice;

TEST_F(WebExample, ExpertOptionsUseTheOlderNames) {
    json_t* expert = readJSONZT4WebAPIConfigExpert();
    ASSERT_NE(expert, nullptr) << zt4test::logDump();
    EXPECT_EQ(zt4test::compact(json_object_get(expert, "Setup")), "3");
    EXPECT_EQ(zt4test::compact(json_object_get(expert, "Sag")), R"({"Enable":1,"Phase":[1,1,1],"RateLevel":10.0})");
    json_t* connectors = json_object_get(expert, "Connect");
    EXPECT_EQ(json_array_size(connectors), 6u);
    EXPECT_EQ(zt4test::compact(json_array_get(connectors, 4)),
              R"({"Cnl":[{"OperatingTime":1,"OverCurrent":0,"PowerNoLoad":50.0,"StartupCycle":1},)"
              R"({"OperatingTime":1,"OverCurrent":1,"PowerNoLoad":100.0,"StartupCycle":1},)"
              R"({"OperatingTime":0,"OverCurrent":0,"PowerNoLoad":100.0,"StartupCycle":0}],)"
              R"("CurrentAverageMaxEnable":1,"CurrentAverageMaxPeriod":30,"CurrentImbalance":1,)"
              R"("OverCurrentThreshold":16,"PowerImbalance":1,"THD":1,"VoltageImbalance":1})");
    json_decref(expert);
}

// ---- Reshaping of stored sections -------------------------------------------------------------

struct ReshapeCase {
    const char* name;
    const char* section;
    const char* stored;
    Reader read;
    const char* expected;
};

class Reshape : public zt4test::WebDevice, public ::testing::WithParamInterface<ReshapeCase> {};

TEST_P(Reshape, RenamesAndFlattens) {
    const ReshapeCase& c = GetParam();
    storeSection(c.section, c.stored);
    EXPECT_EQ(compactOwned(c.read()), c.expected) << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(WebAPI, Reshape, ::testing::Values(
    ReshapeCase{"ModbusNames", "Modbus",
                R"({"Enable": 1, "MappingVersion": 2, "SlaveID": 5, "Interface": "RTU", "RTUBaudrate": 9600, "Parity": 0})",
                readJSONZT4WebAPIConfigModbus,
                R"({"Enable":1,"ID":5,"Interface":"RTU","Parity":0,"RTUBaudrate":9600,"Version":2})"},
    ReshapeCase{"BACnetVersion", "BACnet",
                R"({"Enable": 1, "MappingVersion": 1, "DeviceID": 7, "Port": 1024, "DeviceName": "n", "DeviceLocation": "l"})",
                readJSONZT4WebAPIConfigBACnet,
                R"({"DeviceID":7,"DeviceLocation":"l","DeviceName":"n","Enable":1,"Port":1024,"Version":1})"},
    ReshapeCase{"WiFiFlattened", "WiFi",
                R"({"Enable": 0, "SSID": "Site", "DHCP": {"AddressIP": "10.1.0.1", "Netmask": "255.255.0.0",)"
                R"( "DHCPRangeStartIP": "10.1.0.10", "DHCPRangeEndIP": "10.1.0.20"}})",
                readJSONZT4WebAPIConfigWiFi,
                R"({"AddressIP":"10.1.0.1","Enable":0,"EndIP":"10.1.0.20","Netmask":"255.255.0.0","StartIP":"10.1.0.10"})"},
    ReshapeCase{"RadioFrameFormat", "RadioLoRa",
                R"({"Enable": 0, "Period": 60, "FrameFormat": 3, "Band": "US-915", "APPKEY": "", "APPEUI": ""})",
                readJSONZT4WebAPIConfigRadio,
                R"({"ADBitRate":1,"APPEUI":"70:B3:D5:7E:D0:00:00:01",)"
                R"("APPKEY":"2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C","Band":"US-915",)"
                R"("DEVEUI":"70:B3:D5:7E:D0:01:23:45","Enable":0,"Period":60,"Protocol":"LoRa","TransmitMode":3})"},
    ReshapeCase{"WebUnchanged", "Web", R"({"Language": "fr"})", readJSONZT4WebAPIConfigWeb, R"({"Language":"fr"})"},
    ReshapeCase{"EthernetUnchanged", "Ethernet",
                R"({"IPv4Addressing": "DHCP", "AddressIP": "10.0.0.2", "Netmask": "255.0.0.0", "GW": "10.0.0.1", "Dns": "10.0.0.1"})",
                readJSONZT4WebAPIConfigEthernet,
                R"({"AddressIP":"10.0.0.2","Dns":"10.0.0.1","GW":"10.0.0.1","IPv4Addressing":"DHCP","Netmask":"255.0.0.0"})"}),
    RowName());

}  // namespace
