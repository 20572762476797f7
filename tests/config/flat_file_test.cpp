// The whole flat file of the example device, line by line, and what the shells that source it
// see: the file is the contract with the daemons and their start scripts.
#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/harness.hpp"
#include "zt4config/config.h"
#include "zt4config/export.h"

namespace {

struct Variable {
    const char* name;
    const char* written;  // the text after "=" in the file
    const char* value;    // what a shell that sources the file holds
};

// A text is written between double quotes, which the shell removes; a number as it is.
#define T(name, text) Variable{name, "\"" text "\"", text}
#define N(name, number) Variable{name, number, number}

// The example device's documents: every line, in the file's order (each service's user section,
// then its system section; the connectors last).
const Variable kExampleFile[] = {
    T("System_Device_Manufacturer", "Kelvane"),
    T("System_Device_Model", "ZT4"),
    T("System_Device_ProductCode", "ZT4-6C"),
    T("Web_Language", "en"),
    N("System_Web_Debug", "1"),
    N("Radio_Enable", "1"),
    N("Radio_Period", "15"),
    N("Radio_TransmitMode", "2"),
    T("Radio_Band", "EU-868"),
    T("Radio_APPKEY", "2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C"),
    T("Radio_APPEUI", "70:B3:D5:7E:D0:00:4A:21"),
    N("System_Radio_Enable", "1"),
    N("System_Radio_Debug", "2"),
    N("System_Radio_Baudrate", "9600"),
    N("System_Radio_PayloadLength", "50"),
    T("System_Radio_Daemon", "radiod"),
    T("System_Radio_Script", "/etc/scripts/radiod"),
    N("DHCPD_Enable", "1"),
    T("DHCPD_SSID", "ZT4-D0012345"),
    T("DHCPD_AddressIP", "10.42.0.1"),
    T("DHCPD_Netmask", "255.255.255.0"),
    T("DHCPD_StartIP", "10.42.0.100"),
    T("DHCPD_EndIP", "10.42.0.120"),
    N("System_DHCPD_Debug", "0"),
    N("System_DHCPD_Lease", "86400"),
    T("System_DHCPD_Interface", "wlan0"),
    T("System_DHCPD_Daemon", "wifi"),
    T("System_DHCPD_Script", "/etc/scripts/wifi"),
    T("Static_IPv4Addressing", "Static"),
    T("Static_AddressIP", "192.168.10.42"),
    T("Static_Netmask", "255.255.255.0"),
    T("Static_GW", "192.168.10.1"),
    T("Static_Dns", "192.168.10.1"),
    N("System_Static_Enable", "1"),
    N("System_Static_DHCP", "0"),
    T("System_Static_Interface", "br0"),
    T("System_Static_Daemon", "ethernet"),
    T("System_Static_Script", "/etc/scripts/ethernet"),
    N("Modbus_Enable", "1"),
    N("Modbus_Version", "3"),
    T("Modbus_Interface", "TCP"),
    N("Modbus_RTUBaudrate", "115200"),
    N("Modbus_Parity", "1"),
    N("Modbus_ID", "17"),
    N("System_Modbus_Debug", "1"),
    N("System_Modbus_Port", "502"),
    T("System_Modbus_Daemon", "modbustcpd"),
    T("System_Modbus_Script", "/etc/scripts/modbustcpd"),
    N("BACnet_Enable", "0"),
    N("BACnet_Version", "2"),
    N("BACnet_DeviceID", "4101"),
    N("BACnet_Port", "47808"),
    T("BACnet_DeviceName", "ZT4 main switchboard"),
    T("BACnet_DeviceLocation", "Building A, level -1"),
    N("System_BACnet_Debug", "1"),
    T("System_BACnet_Daemon", "bacnetd"),
    T("System_BACnet_Script", "/etc/scripts/bacnetd"),
    N("Connector_1_Mode", "4"),
    N("Connector_1_CurrentTransformerModel", "4"),
    N("Connector_1_Channel_1_Enable", "1"),
    T("Connector_1_Channel_1_Name", "Main incomer"),
    N("Connector_1_Channel_1_GeneralFactor", "1.000000"),
    N("Connector_1_Channel_1_CurrentTransformerPrimary_Enable", "0"),
    N("Connector_1_Channel_1_CurrentTransformerPrimary_CurrentPrimary", "5"),
    N("Connector_2_Mode", "4"),
    N("Connector_2_CurrentTransformerModel", "3"),
    N("Connector_2_Channel_1_Enable", "1"),
    T("Connector_2_Channel_1_Name", "HVAC"),
    N("Connector_2_Channel_1_GeneralFactor", "1.000000"),
    N("Connector_2_Channel_1_CurrentTransformerPrimary_Enable", "0"),
    N("Connector_2_Channel_1_CurrentTransformerPrimary_CurrentPrimary", "5"),
    N("Connector_3_Mode", "4"),
    N("Connector_3_CurrentTransformerModel", "1"),
    N("Connector_3_Channel_1_Enable", "1"),
    T("Connector_3_Channel_1_Name", "Elevators"),
    N("Connector_3_Channel_1_GeneralFactor", "1.000000"),
    N("Connector_3_Channel_1_CurrentTransformerPrimary_Enable", "1"),
    N("Connector_3_Channel_1_CurrentTransformerPrimary_CurrentPrimary", "400"),
    N("Connector_4_Mode", "1"),
    N("Connector_4_CurrentTransformerModel", "2"),
    N("Connector_4_Channel_1_Enable", "1"),
    T("Connector_4_Channel_1_Name", "Lighting L1"),
    N("Connector_4_Channel_1_GeneralFactor", "1.000000"),
    N("Connector_4_Channel_1_Phase", "1"),
    N("Connector_4_Channel_1_CurrentTransformerPrimary_Enable", "0"),
    N("Connector_4_Channel_1_CurrentTransformerPrimary_CurrentPrimary", "5"),
    N("Connector_4_Channel_2_Enable", "1"),
    T("Connector_4_Channel_2_Name", "Lighting L2"),
    N("Connector_4_Channel_2_GeneralFactor", "1.000000"),
    N("Connector_4_Channel_2_Phase", "2"),
    N("Connector_4_Channel_2_CurrentTransformerPrimary_Enable", "0"),
    N("Connector_4_Channel_2_CurrentTransformerPrimary_CurrentPrimary", "5"),
    N("Connector_4_Channel_3_Enable", "1"),
    T("Connector_4_Channel_3_Name", "Lighting L3"),
    N("Connector_4_Channel_3_GeneralFactor", "1.000000"),
    N("Connector_4_Channel_3_Phase", "3"),
    N("Connector_4_Channel_3_CurrentTransformerPrimary_Enable", "0"),
    N("Connector_4_Channel_3_CurrentTransformerPrimary_CurrentPrimary", "5"),
    N("Connector_5_Mode", "1"),
    N("Connector_5_CurrentTransformerModel", "8"),
    N("Connector_5_Channel_1_Enable", "1"),
    T("Connector_5_Channel_1_Name", "Sockets office"),
    N("Connector_5_Channel_1_GeneralFactor", "1.000000"),
    N("Connector_5_Channel_1_Phase", "1"),
    N("Connector_5_Channel_1_CurrentTransformerPrimary_Enable", "0"),
    N("Connector_5_Channel_1_CurrentTransformerPrimary_CurrentPrimary", "5"),
    N("Connector_5_Channel_2_Enable", "1"),
    T("Connector_5_Channel_2_Name", "Server room"),
    N("Connector_5_Channel_2_GeneralFactor", "2.000000"),
    N("Connector_5_Channel_2_Phase", "2"),
    N("Connector_5_Channel_2_CurrentTransformerPrimary_Enable", "0"),
    N("Connector_5_Channel_2_CurrentTransformerPrimary_CurrentPrimary", "5"),
    N("Connector_5_Channel_3_Enable", "0"),
    N("Connector_5_Channel_3_GeneralFactor", "1.000000"),
    N("Connector_5_Channel_3_Phase", "3"),
    N("Connector_5_Channel_3_CurrentTransformerPrimary_Enable", "0"),
    N("Connector_5_Channel_3_CurrentTransformerPrimary_CurrentPrimary", "5"),
    N("Connector_6_Mode", "0"),
    N("Connector_6_CurrentTransformerModel", "0"),
    N("Connector_6_Channel_1_Enable", "0"),
    N("Connector_6_Channel_1_GeneralFactor", "1.000000"),
    N("Connector_6_Channel_1_CurrentTransformerPrimary_Enable", "0"),
    N("Connector_6_Channel_1_CurrentTransformerPrimary_CurrentPrimary", "5"),
    N("System_Connector_1_Enable", "1"),
    N("System_Connector_2_Enable", "1"),
    N("System_Connector_3_Enable", "1"),
    N("System_Connector_4_Enable", "1"),
    N("System_Connector_5_Enable", "1"),
    N("System_Connector_6_Enable", "1"),
};

std::string exampleFile(const std::string& devicePath) {
    std::ifstream in(std::string(ZT4_EXAMPLE_DEVICE) + devicePath);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

class FlatFile : public zt4test::DeviceTest {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        for (const char* file : {"/home/nvram/zt4config.json", "/home/nvram/zt4system.json",
                                 "/home/nvram/hostapd.conf", "/etc/zt4config_factory.json"}) {
            writeFile(file, exampleFile(file));
        }
    }

    // Sources the flat file with `shell` and prints each variable of `names` on a line.
    std::vector<std::string> sourced(const char* shell, const std::vector<std::string>& names) {
        std::string script = ". ./zt4.cfg\n";
        for (const std::string& name : names) script += "printf '%s\\n' \"$" + name + "\"\n";
        writeFile("/home/nvram/print.sh", script);
        const std::string command = "cd '" + path("/home/nvram") + "' && env -i HOME=/nowhere PATH=/usr/bin:/bin " +
                                    shell + " ./print.sh 2>&1";
        FILE* pipe = popen(command.c_str(), "r");
        std::vector<std::string> lines;
        if (pipe == nullptr) return lines;
        char line[512];
        while (std::fgets(line, sizeof line, pipe) != nullptr) {
            std::string text(line);
            if (!text.empty() && text.back() == '\n') text.pop_back();
            lines.push_back(text);
        }
        const int status = pclose(pipe);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << command;
        return lines;
    }
};

TEST_F(FlatFile, ExampleDeviceLineByLine) {
    ASSERT_EQ(printZT4ConfigFile(), 0) << zt4test::logDump();
    std::string expected;
    for (const Variable& variable : kExampleFile) expected += std::string(variable.name) + "=" + variable.written + "\n";
    EXPECT_EQ(readFile("/home/nvram/zt4.cfg"), expected);
    // The file is replaced, not appended to, and anyone may read it.
    ASSERT_EQ(printZT4ConfigFile(), 0);
    EXPECT_EQ(readFile("/home/nvram/zt4.cfg"), expected);
    struct stat status {};
    ASSERT_EQ(stat(path("/home/nvram/zt4.cfg").c_str(), &status), 0);
    EXPECT_NE(status.st_mode & S_IROTH, 0u);
}

class SourcedFlatFile : public FlatFile, public ::testing::WithParamInterface<const char*> {};

TEST_P(SourcedFlatFile, EveryVariableHoldsItsValue) {
    ASSERT_EQ(printZT4ConfigFile(), 0);
    std::vector<std::string> names, values;
    for (const Variable& variable : kExampleFile) {
        names.emplace_back(variable.name);
        values.emplace_back(variable.value);
    }
    EXPECT_EQ(sourced(GetParam(), names), values);
}

// Texts are written without escaping: a quote ends the quoted text, "$" and "`" are expanded by
// the shell that sources the file. What each shell then holds is pinned here.
TEST_P(SourcedFlatFile, TextsThatDoNotSurviveTheShell) {
    json_t* document = readJSONZT4ConfigFile();
    json_t* bacnet = json_object_get(document, "BACnet");
    json_object_set_new(bacnet, "DeviceName", json_string("Say \"hi\" to $HOME"));
    json_object_set_new(bacnet, "DeviceLocation", json_string("Room `echo 12`"));
    json_object_set_new(json_object_get(document, "Web"), "Language", json_string("it's"));
    ASSERT_EQ(writeJSONZT4ConfigFile(document), 0);
    json_decref(document);
    ASSERT_EQ(printZT4ConfigFile(), 0);

    const std::string file = readFile("/home/nvram/zt4.cfg");
    EXPECT_NE(file.find("\nBACnet_DeviceName=\"Say \"hi\" to $HOME\"\n"), std::string::npos);
    EXPECT_NE(file.find("\nBACnet_DeviceLocation=\"Room `echo 12`\"\n"), std::string::npos);
    EXPECT_EQ(sourced(GetParam(), {"BACnet_DeviceName", "BACnet_DeviceLocation", "Web_Language"}),
              (std::vector<std::string>{"Say hi to /nowhere", "Room 12", "it's"}));
}

std::string shellName(const ::testing::TestParamInfo<const char*>& shell) {
    return std::string(shell.param) == "dash" ? "Dash" : "BusyboxSh";
}

INSTANTIATE_TEST_SUITE_P(Shells, SourcedFlatFile, ::testing::Values("dash", "busybox sh"), shellName);

// ---- Failures -----------------------------------------------------------------------------------

TEST_F(FlatFile, UnopenableFileIsRefused) {
    ASSERT_EQ(mkdir(path("/home/nvram/zt4.cfg").c_str(), 0755), 0);
    EXPECT_EQ(printZT4ConfigFile(), -1);
    EXPECT_TRUE(zt4test::logged("error.[printZT4UserConfigFileSyntaxVersion1]: FAILED open file " +
                                path("/home/nvram/zt4.cfg") + ". (Is a directory)"))
        << zt4test::logDump();
}

// A member that cannot be written fails the whole file, yet every other line is there.
TEST_F(FlatFile, FaultyMemberLeavesTheOtherLines) {
    json_t* document = readJSONZT4SystemFile();
    json_object_set_new(json_object_get(document, "Web"), "Debug", json_true());
    ASSERT_EQ(writeJSONZT4SystemFile(document), 0);
    json_decref(document);
    EXPECT_EQ(printZT4ConfigFile(), -1);
    std::string expected;
    for (const Variable& variable : kExampleFile) {
        if (std::string(variable.name) != "System_Web_Debug") {
            expected += std::string(variable.name) + "=" + variable.written + "\n";
        }
    }
    EXPECT_EQ(readFile("/home/nvram/zt4.cfg"), expected);
}

// Each section's fault is reported under its own writer's name, in the file's order.
TEST_F(FlatFile, FaultsNamedAfterTheirWriters) {
    for (json_t* (*read)(void) : {readJSONZT4ConfigFile, readJSONZT4SystemFile}) {
        json_t* document = read();
        for (const char* section : {"Device", "Web", "RadioLoRa", "WiFi", "Ethernet", "Modbus", "BACnet"}) {
            json_object_set_new(json_object_get(document, section), "Bad", json_null());
        }
        ASSERT_EQ(read == readJSONZT4ConfigFile ? writeJSONZT4ConfigFile(document) : writeJSONZT4SystemFile(document), 0);
        json_decref(document);
    }
    zt4test::clearLog();
    EXPECT_EQ(printZT4ConfigFile(), -1);
    std::vector<std::string> undefined;
    for (const zt4test::LogEntry& entry : zt4test::capturedLog()) {
        if (entry.text.find("value undefined") != std::string::npos) undefined.push_back(entry.text);
    }
    const std::vector<std::string> expected = {
        "[setParameterSystemDeviceSyntaxVersion1]: value undefined",
        "[setParameterUserConfigWebSyntaxVersion1]: value undefined",
        "[setParameterSystemWebSyntaxVersion1]: value undefined",
        "[setParameterUserConfigRadioLoRaSyntaxVersion1]: value undefined",
        "[setParameterSystemRadioLoRaSyntaxVersion1]: value undefined",
        "[setParameterUserConfigWiFiSyntaxVersion1]: value undefined",
        "[setParameterSystemWiFiSyntaxVersion1]: value undefined",
        "[setParameterUserConfigEthernetSyntaxVersion1]: value undefined",
        "[setParameterSystemEthernetSyntaxVersion1]: value undefined",
        "[setParameterUserConfigModbusSyntaxVersion1]: value undefined",
        "[setParameterSystemModbusSyntaxVersion1]: value undefined",
        "[setParameterUserConfigBACnetSyntaxVersion1]: value undefined",
        "[setParameterSystemBACnetSyntaxVersion1]: value undefined",
    };
    EXPECT_EQ(undefined, expected);
}

// The facade follows the user file's version; version 0 is not exported.
TEST_F(FlatFile, VersionZeroUserFileIsRefused) {
    writeFile("/home/nvram/zt4config.json", R"({"Web": {"Language": "fr"}})");
    EXPECT_EQ(printZT4ConfigFile(), -1);
    EXPECT_TRUE(zt4test::logged("error.[printZT4UserConfigFileSyntaxVersion0]: syntax version 0 is not supported"));
    EXPECT_FALSE(exists("/home/nvram/zt4.cfg"));
    EXPECT_EQ(setParameterConfigWeb(stdout), -1);
    EXPECT_TRUE(zt4test::logged("error.[setParameterUserConfigWebSyntaxVersion0]: syntax version 0 is not supported"));
}

}  // namespace
