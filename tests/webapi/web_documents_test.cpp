// The documents the web interface reads: version-1 sections under the older names.
#include <string>

#include "webapi/web_device.hpp"
#include "zt4config.h"

namespace {

json_t* connector2() { return readJSONZT4WebAPIConfigConnectorById(2); }
// The expert options with their first connector only.
json_t* expertFirstConnector() {
    json_t* expert = readJSONZT4WebAPIConfigExpert();
    json_t* connectors = json_object_get(expert, "Connect");
    while (json_array_size(connectors) > 1) json_array_remove(connectors, 1);
    return expert;
}

struct ShapeCase {
    const char* name;
    const char* section;  // stored first when not null
    const char* stored;
    json_t* (*read)(void);
    const char* expected;  // compact, keys sorted
};

class Shape : public zt4test::WebDevice, public ::testing::WithParamInterface<ShapeCase> {};

TEST_P(Shape, OfTheExampleDevice) {
    const ShapeCase& c = GetParam();
    if (c.section != nullptr) storeSection(c.section, c.stored);
    EXPECT_EQ(zt4test::compactOwned(c.read()), c.expected) << zt4test::logDump();
}

constexpr const char* kRadio =
    R"({"ADBitRate":1,"APPEUI":"70:B3:D5:7E:D0:00:4A:21","APPKEY":"2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C",)"
    R"("Band":"EU-868","DEVEUI":"70:B3:D5:7E:D0:01:23:45","Enable":1,"Period":15,"Protocol":"LoRa","TransmitMode":2})";

INSTANTIATE_TEST_SUITE_P(WebAPI, Shape, ::testing::Values(
    ShapeCase{"Web", nullptr, nullptr, readJSONZT4WebAPIConfigWeb, R"({"Language":"en"})"},
    ShapeCase{"Radio", nullptr, nullptr, readJSONZT4WebAPIConfigRadio, kRadio},
    ShapeCase{"RadioWithDevEUI", nullptr, nullptr, readJSONZT4WebAPIConfigRadioWithDevEUI, kRadio},
    ShapeCase{"WiFiFlat", nullptr, nullptr, readJSONZT4WebAPIConfigWiFi,
              R"({"AddressIP":"10.42.0.1","Enable":1,"EndIP":"10.42.0.120","Netmask":"255.255.255.0","StartIP":"10.42.0.100"})"},
    ShapeCase{"WiFiWithoutDhcpLosesOnlyItsSsid", "WiFi", R"({"Enable": 0, "SSID": "Site"})", readJSONZT4WebAPIConfigWiFi,
              R"({"Enable":0})"},
    ShapeCase{"EthernetUnchanged", nullptr, nullptr, readJSONZT4WebAPIConfigEthernet,
              R"({"AddressIP":"192.168.10.42","Dns":"192.168.10.1","GW":"192.168.10.1","IPv4Addressing":"Static","Netmask":"255.255.255.0"})"},
    ShapeCase{"ModbusNames", "Modbus", R"({"Enable": 1, "MappingVersion": 2, "SlaveID": 5})", readJSONZT4WebAPIConfigModbus,
              R"({"Enable":1,"ID":5,"Version":2})"},
    ShapeCase{"BACnetVersion", nullptr, nullptr, readJSONZT4WebAPIConfigBACnet,
              R"({"DeviceID":4101,"DeviceLocation":"Building A, level -1","DeviceName":"ZT4 main switchboard","Enable":0,"Port":47808,"Version":2})"},
    ShapeCase{"Setup", nullptr, nullptr, readJSONZT4WebAPIConfigSetupConnectors, R"({"Setup":3})"},
    // One channel with three transformer directions; the connector's members on channel 1.
    ShapeCase{"ThreePhaseConnector", nullptr, nullptr, connector2,
              R"({"Cnl":[{"CTPrimary":5,"CTPrimaryEnable":0,"Dir":[0,1,0],"Enable":1,"Mode":4,"Name":"HVAC",)"
              R"("Plier":3,"VTEnable":0,"VTPrimary":400.0,"VTSecondary":230.0,"xGeneral":1.0}]})"},
    ShapeCase{"Expert", nullptr, nullptr, expertFirstConnector,
              R"({"Connect":[{"Cnl":[{"OperatingTime":1,"OverCurrent":1,"PowerNoLoad":250.0,"StartupCycle":1}],)"
              R"("CurrentAverageMaxEnable":1,"CurrentAverageMaxPeriod":15,"CurrentImbalance":1,"OverCurrentThreshold":180.5,)"
              R"("PowerImbalance":1,"THD":1,"VoltageImbalance":1}],"Sag":{"Enable":1,"Phase":[1,1,1],"RateLevel":10.0},)"
              R"("Setup":3,"Swell":{"Enable":1,"Phase":[1,1,1],"RateLevel":10.0}})"}),
    zt4test::RowName());

// Web -> stored -> web: what a reader gives, written back, reads back the same.
struct ReadWriteCase {
    const char* name;
    json_t* (*read)(void);
    int (*write)(json_t*);
};

class ReadWriteRead : public zt4test::WebDevice, public ::testing::WithParamInterface<ReadWriteCase> {};

TEST_P(ReadWriteRead, IsTheIdentity) {
    json_t* document = GetParam().read();
    ASSERT_NE(document, nullptr) << zt4test::logDump();
    EXPECT_EQ(GetParam().write(document), 0) << zt4test::logDump();
    EXPECT_EQ(zt4test::compactOwned(GetParam().read()), zt4test::compact(document));
    json_decref(document);
}

INSTANTIATE_TEST_SUITE_P(WebAPI, ReadWriteRead, ::testing::Values(
    ReadWriteCase{"Web", readJSONZT4WebAPIConfigWeb, writeJSONZT4WebAPIConfigWeb},
    ReadWriteCase{"Radio", readJSONZT4WebAPIConfigRadio, writeJSONZT4WebAPIConfigRadio},
    ReadWriteCase{"WiFi", readJSONZT4WebAPIConfigWiFi, writeJSONZT4WebAPIConfigWiFi},
    ReadWriteCase{"Ethernet", readJSONZT4WebAPIConfigEthernet, writeJSONZT4WebAPIConfigEthernet},
    ReadWriteCase{"Modbus", readJSONZT4WebAPIConfigModbus, writeJSONZT4WebAPIConfigModbus},
    ReadWriteCase{"BACnet", readJSONZT4WebAPIConfigBACnet, writeJSONZT4WebAPIConfigBACnet},
    ReadWriteCase{"Setup", readJSONZT4WebAPIConfigSetupConnectors, writeJSONZT4WebAPIConfigSetupConnectors},
    ReadWriteCase{"File", readJSONZT4WebAPIConfigFile, writeJSONZT4WebAPIConfigFile},
    ReadWriteCase{"System", readJSONZT4WebAPISystemFile, writeJSONZT4WebAPISystemFile}),
    zt4test::RowName());

}  // namespace
