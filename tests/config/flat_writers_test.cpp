// The flat parameter file's writers: for each stored section, the exact lines that the daemons
// read, the result, and the line logged for a fault.
#include <syslog.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "support/harness.hpp"
#include "zt4config/export.h"

namespace {

using Writer = int (*)(FILE*);

// What `write` puts on a stream, and its result.
std::string linesOf(Writer write, int& result) {
    char* text = nullptr;
    size_t size = 0;
    FILE* stream = open_memstream(&text, &size);
    result = write(stream);
    std::fclose(stream);
    std::string lines(text, size);
    std::free(text);
    return lines;
}

enum Document { User, System, Factory };

struct WriterCase {
    const char* name;
    Document document;
    const char* members;  // the document's top-level members, after its syntax version
    Writer write;
    const char* lines;
    int result;
    const char* logged;  // a line that must have been logged, or null
    int priority;
};

class FlatWriter : public zt4test::DeviceTest, public ::testing::WithParamInterface<WriterCase> {};

TEST_P(FlatWriter, WritesTheLines) {
    const WriterCase& c = GetParam();
    static const char* const kPaths[] = {"/home/nvram/zt4config.json", "/home/nvram/zt4system.json",
                                         "/etc/zt4system_factory.json"};
    writeFile(kPaths[c.document], std::string(R"({"Syntax": {"Version": 1}, )") + c.members + "}");
    int result = 7;
    EXPECT_EQ(linesOf(c.write, result), c.lines);
    EXPECT_EQ(result, c.result);
    if (c.logged != nullptr) {
        EXPECT_TRUE(zt4test::logged(c.logged, c.priority)) << zt4test::logDump();
    }
}

std::string caseName(const ::testing::TestParamInfo<WriterCase>& info) { return info.param.name; }

#define UNDEFINED(function) "[" function "]: value undefined", LOG_INFO
#define NO_LOG nullptr, 0

INSTANTIATE_TEST_SUITE_P(User, FlatWriter, ::testing::Values(
    WriterCase{"WiFiAndItsDhcpAddresses", User,
               R"("WiFi": {"Enable": 1, "SSID": "Home net", "DHCP": {"AddressIP": "10.42.0.1",
                  "Netmask": "255.255.255.0", "Lease": 60, "DHCPRangeStartIP": "10.42.0.100",
                  "DHCPRangeEndIP": "10.42.0.120"}})",
               setParameterConfigWiFi,
               "DHCPD_Enable=1\nDHCPD_SSID=\"Home net\"\nDHCPD_AddressIP=\"10.42.0.1\"\n"
               "DHCPD_Netmask=\"255.255.255.0\"\nDHCPD_StartIP=\"10.42.0.100\"\nDHCPD_EndIP=\"10.42.0.120\"\n",
               0, "DHCPD_StartIP=\"10.42.0.100\"", LOG_INFO},
    WriterCase{"RadioFrameFormatIsTheTransmitMode", User,
               R"("RadioLoRa": {"Enable": 0, "FrameFormat": 1, "Band": "EU-868"})",
               setParameterConfigRadio, "Radio_Enable=0\nRadio_TransmitMode=1\nRadio_Band=\"EU-868\"\n", 0, NO_LOG},
    WriterCase{"ModbusVersionAndId", User, R"("Modbus": {"MappingVersion": 2, "SlaveID": 3, "Parity": 1})",
               setParameterConfigModbus, "Modbus_Version=2\nModbus_ID=3\nModbus_Parity=1\n", 0, NO_LOG},
    // BACnet renames its mapping version only.
    WriterCase{"BACnetVersion", User, R"("BACnet": {"MappingVersion": 1, "SlaveID": 3, "DeviceName": "ZT4 A"})",
               setParameterConfigBACnet, "BACnet_Version=1\nBACnet_SlaveID=3\nBACnet_DeviceName=\"ZT4 A\"\n", 0, NO_LOG},
    WriterCase{"EthernetIsStatic", User, R"("Ethernet": {"IPv4Addressing": "DHCP", "GW": ""})",
               setParameterConfigEthernet, "Static_IPv4Addressing=\"DHCP\"\nStatic_GW=\"\"\n", 0, NO_LOG},
    // Integers are the meter's 32-bit unsigned numbers; reals single precision, six decimals;
    // texts go out unescaped; objects and arrays give nothing.
    WriterCase{"NumberFormsAndRawTexts", User,
               R"("Web": {"Language": "e\"n", "Tenth": 0.1, "Big": 16777217.0, "Minus": -1,
                  "Wrapped": 4294967298, "Object": {"a": 1}, "Array": [1]})",
               setParameterConfigWeb,
               "Web_Language=\"e\"n\"\nWeb_Tenth=0.100000\nWeb_Big=16777216.000000\nWeb_Minus=4294967295\n"
               "Web_Wrapped=2\n", 0, NO_LOG},
    WriterCase{"BooleanIsUndefinedTheRestWritten", User, R"("Web": {"On": true, "Language": "fr", "Off": null})",
               setParameterConfigWeb, "Web_Language=\"fr\"\n", -1, UNDEFINED("setParameterUserConfigWebSyntaxVersion1")},
    WriterCase{"SectionNameMatchesOnItsBeginning", User, R"("RadioLoRaTest": {"FrameFormat": 3})",
               [](FILE* s) { return setParameterConfig(s, "RadioLoRaTest"); }, "Radio_TransmitMode=3\n", 0, NO_LOG},
    WriterCase{"OtherSectionUnderItsNameCutTo31", User,
               R"("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789": {"K": 5})",
               [](FILE* s) { return setParameterConfig(s, "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"); },
               "ABCDEFGHIJKLMNOPQRSTUVWXYZ01234_K=5\n", 0, NO_LOG},
    WriterCase{"MissingSectionWritesNothing", User, R"("Web": {})",
               [](FILE* s) { return setParameterConfig(s, "Modbus"); }, "", 0,
               "error.[setParameterUserConfigSyntaxVersion1]: json section Modbus NULL", LOG_ERR},
    WriterCase{"NullSection", User, R"("Web": {})", [](FILE* s) { return setParameterConfig(s, nullptr); }, "", -1,
               "error.[setParameterUserConfigSyntaxVersion1]: section NULL", LOG_ERR}
), caseName);

INSTANTIATE_TEST_SUITE_P(SystemAndFactory, FlatWriter, ::testing::Values(
    // The system radio is announced as enabled, whatever its own Enable says.
    WriterCase{"SystemRadioEnabledFirst", System, R"("RadioLoRa": {"Debug": 2, "Enable": 0, "FrameFormat": 1})",
               setParameterSystemRadio, "System_Radio_Enable=1\nSystem_Radio_Debug=2\nSystem_Radio_FrameFormat=1\n",
               0, "System_Radio_Enable=1", LOG_INFO},
    WriterCase{"SystemWiFiPrefixNoSpecialKeys", System, R"("WiFi": {"Debug": 0, "DHCP": {"AddressIP": "1.2.3.4"}})",
               setParameterSystemWiFi, "System_DHCPD_Debug=0\n", 0, NO_LOG},
    WriterCase{"SystemModbusKeepsItsKeys", System, R"("Modbus": {"MappingVersion": 3, "SlaveID": 2})",
               setParameterSystemModbus, "System_Modbus_MappingVersion=3\nSystem_Modbus_SlaveID=2\n", 0, NO_LOG},
    WriterCase{"SystemComparesWholeNames", System, R"("RadioLoRaX": {"Enable": 0})",
               [](FILE* s) { return setParameterSystem(s, "RadioLoRaX"); }, "System_RadioLoRaX_Enable=0\n", 0, NO_LOG},
    WriterCase{"SystemDevice", System, R"("Device": {"Model": "ZT4", "Rate": 0.5})",
               setParameterSystemDevice, "System_Device_Model=\"ZT4\"\nSystem_Device_Rate=0.500000\n", 0, NO_LOG},
    WriterCase{"SystemMissingSection", System, R"("Web": {})", setParameterSystemBACnet, "", 0,
               "error.[setParameterSystemBACnetSyntaxVersion1]: json NULL", LOG_ERR},
    WriterCase{"SystemBooleanUndefined", System, R"("Web": {"Debug": false, "Port": 80})", setParameterSystemWeb,
               "System_Web_Port=80\n", -1, UNDEFINED("setParameterSystemWebSyntaxVersion1")},
    // The factory lines carry the section name itself, not the daemons' prefix.
    WriterCase{"FactoryRadioUnderItsName", Factory, R"("RadioLoRa": {"Enable": 0, "Debug": 2})",
               [](FILE* s) { return setParameterFactorySystem(s, "RadioLoRa"); },
               "Factory_RadioLoRa_Enable=0\nFactory_RadioLoRa_Debug=2\n", 0, NO_LOG},
    WriterCase{"FactoryDevice", Factory, R"("Device": {"ProductCode": "ZT4-6C"})", setParameterFactorySystemDevice,
               "Factory_Device_ProductCode=\"ZT4-6C\"\n", 0, NO_LOG}
), caseName);

INSTANTIATE_TEST_SUITE_P(ConnectorsAndExpert, FlatWriter, ::testing::Values(
    // Every connector with the electrical debug level; missing entries are reported.
    WriterCase{"SystemConnectorsWithDebug", System,
               R"("ElectricalConfiguration": {"Debug": 3, "Connectors": [{"Enable": 1}, {"Enable": 0}, 5]})",
               setParameterSystemConnector,
               "System_Connector_1_Enable=1\nSystem_Connector_1_Debug=3\n"
               "System_Connector_2_Enable=0\nSystem_Connector_2_Debug=3\n", -1,
               "error.[setParameterSystemConnectorsSyntaxVersion1]: jsonConnector3 NULL", LOG_ERR},
    WriterCase{"SystemConnectorsEmpty", System, R"("ElectricalConfiguration": {"Connectors": []})",
               setParameterSystemConnector, "", -1,
               "error.[setParameterSystemConnectorsSyntaxVersion1]: size System Connectors is ZERO", LOG_ERR},
    // The members in the writer's own order, whatever the document's.
    WriterCase{"ExpertInItsOrder", System,
               R"("ElectricalConfiguration": {"Expert": {"THD": {"Enable": 0}, "Other": {"Enable": 1},
                  "CircuitBreakerTrip": {"CurrentTransformerThreshold": 2}, "Sag": {"Enable": 1, "Cycle": 4}}})",
               setParameterSystemExpert,
               "System_Expert_CircuitBreakerTrip_CurrentTransformerThreshold=2\n"
               "System_Expert_Sag_Enable=1\nSystem_Expert_Sag_Cycle=4\nSystem_Expert_THD_Enable=0\n", 0, NO_LOG},
    WriterCase{"ExpertMissing", System, R"("ElectricalConfiguration": {})", setParameterSystemExpert, "", -1,
               "error.[setParameterSystemExpertSyntaxVersion1]: json System Expert NULL", LOG_ERR}
), caseName);

// ---- The generic writer ----------------------------------------------------------------------

struct ObjectCase {
    const char* name;
    const char* object;
    const char* lines;
    int result;
};

class ObjectWriter : public zt4test::DeviceTest, public ::testing::WithParamInterface<ObjectCase> {};

TEST_P(ObjectWriter, WritesScalarMembers) {
    const ObjectCase& c = GetParam();
    json_t* object = zt4test::parse(c.object);
    static json_t* current = nullptr;
    current = object;
    int result = 7;
    EXPECT_EQ(linesOf([](FILE* s) { return setParameterConfigJSON(s, "Connector_1", current); }, result), c.lines);
    EXPECT_EQ(result, c.result);
    EXPECT_EQ(zt4test::logged("[setParameterJSON]: value undefined", LOG_INFO), c.result != 0);
    json_decref(object);
}

std::string objectName(const ::testing::TestParamInfo<ObjectCase>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Members, ObjectWriter, ::testing::Values(
    ObjectCase{"OffsetIndexOnlyWhenUnset", R"({"OffsetIndex": 5, "Mode": 4, "PhaseOffsetIndex": -1})",
               "Connector_1_Mode=4\nConnector_1_PhaseOffsetIndex=-1\n", 0},
    ObjectCase{"EmptyTextLeftOut", R"({"Name": "", "Site": "A b"})", "Connector_1_Site=\"A b\"\n", 0},
    ObjectCase{"NumbersAsTheSectionsWrite", R"({"Factor": 0.1, "Minus": -2})",
               "Connector_1_Factor=0.100000\nConnector_1_Minus=4294967294\n", 0},
    ObjectCase{"ObjectsAndArraysPassedOver", R"({"Primary": {"A": 1}, "Transformers": [{"Direction": 0}]})", "", 0},
    ObjectCase{"NullUndefinedTheRestWritten", R"({"X": null, "Mode": 1})", "Connector_1_Mode=1\n", -1}
), objectName);

class FamilyObject : public zt4test::DeviceTest {};

TEST_F(FamilyObject, SystemAndFactoryCarryTheirFamily) {
    json_t* object = zt4test::parse(R"({"Enable": 1})");
    static json_t* current = nullptr;
    current = object;
    int result = 7;
    EXPECT_EQ(linesOf([](FILE* s) { return setParameterSystemJSON(s, "Expert_Sag", current); }, result),
              "System_Expert_Sag_Enable=1\n");
    EXPECT_EQ(linesOf([](FILE* s) { return setParameterFactoryJSON(s, "Connector_2", current); }, result),
              "Factory_Connector_2_Enable=1\n");
    // Prefixes hold 47 characters.
    EXPECT_EQ(linesOf([](FILE* s) {
                  return setParameterSystemJSON(s, "Expert_ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789", current);
              }, result),
              "System_Expert_ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456_Enable=1\n");
    EXPECT_EQ(linesOf([](FILE* s) { return setParameterSystemJSON(s, nullptr, current); }, result), "");
    EXPECT_EQ(result, -1);
    EXPECT_TRUE(zt4test::logged("error.[setParameterSystemJSON]: section NULL"));
    json_decref(object);
}

// Every writer refuses a missing stream.
class NullStream : public zt4test::DeviceTest, public ::testing::WithParamInterface<Writer> {};

TEST_P(NullStream, IsRefused) {
    writeFile("/home/nvram/zt4config.json", R"({"Syntax": {"Version": 1}})");
    writeFile("/home/nvram/zt4system.json", R"({"Syntax": {"Version": 1}})");
    writeFile("/etc/zt4system_factory.json", R"({"Syntax": {"Version": 1}})");
    EXPECT_EQ(GetParam()(nullptr), -1);
    EXPECT_EQ(zt4test::loggedCount("stream NULL"), 1) << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(Writers, NullStream, ::testing::Values(
    setParameterConfigWeb, setParameterConfigConnector, setParameterSystemDevice, setParameterSystemConnector,
    setParameterSystemExpert, setParameterFactorySystemDevice,
    [](FILE* s) { return setParameterConfigJSON(s, "P", nullptr); }));

}  // namespace
