// Upgrade of the stored user document from the factory one, the radio frame-format and
// three-phase-count updates, and the rewrite of the flat file's static network lines.
#include <syslog.h>

#include <filesystem>
#include <string>
#include <vector>

#include "common/json_ref.hpp"
#include "support/harness.hpp"
#include "zt4config.h"

namespace {

const std::string kDevice = ZT4_EXAMPLE_DEVICE;

class UpgradeTest : public zt4test::DeviceTest {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        std::filesystem::copy(kDevice, root(), std::filesystem::copy_options::recursive |
                                                   std::filesystem::copy_options::overwrite_existing);
    }
    json_t* userDocument() const { return zt4test::parse(readFile("/home/nvram/zt4config.json").c_str()); }
    // Stores the example user document after `edit`, compactly, so that any rewrite shows.
    template <class Edit>
    void storeUser(Edit edit) const {
        zt4::JsonRef document(userDocument());
        edit(document.get());
        char* text = json_dumps(document.get(), JSON_PRESERVE_ORDER | JSON_COMPACT);
        writeFile("/home/nvram/zt4config.json", text);
        free(text);
    }
};

TEST_F(UpgradeTest, AMissingSectionComesWholeFromTheFactoryAMissingKeyInAKeptSectionStaysMissing) {
    storeUser([](json_t* document) {
        json_object_del(document, "BACnet");
        json_object_del(json_object_get(document, "Modbus"), "SlaveID");
        json_object_set_new(json_object_get(document, "Web"), "Language", json_string("fr"));
    });
    ASSERT_EQ(upgradeJSONZT4ConfigFile(), 0) << zt4test::logDump();
    zt4::JsonRef upgraded(userDocument());
    zt4::JsonRef factory(zt4test::parse(readFile("/etc/zt4config_factory_v1.json").c_str()));
    EXPECT_EQ(zt4test::compact(json_object_get(upgraded.get(), "BACnet")),
              zt4test::compact(json_object_get(factory.get(), "BACnet")));
    EXPECT_EQ(json_object_get(json_object_get(upgraded.get(), "Modbus"), "SlaveID"), nullptr);
    EXPECT_STREQ(json_string_value(json_object_get(json_object_get(upgraded.get(), "Web"), "Language")), "fr");
    // Written the way the library writes documents, even where nothing was missing.
    EXPECT_NE(readFile("/home/nvram/zt4config.json").find("\n                 \"Web\""), std::string::npos);
}

TEST_F(UpgradeTest, FailuresNameTheFileAndWriteNothing) {
    const std::string user = readFile("/home/nvram/zt4config.json");
    removeFile("/etc/zt4config_factory_v1.json");
    EXPECT_EQ(upgradeJSONZT4ConfigFile(), -1);
    EXPECT_TRUE(zt4test::logged("error.[upgradeJSONZT4UserConfigFileSyntaxVersion1]: FAILED reading file '" +
                                path("/etc/zt4config_factory_v1.json") + "'", LOG_ERR));
    EXPECT_EQ(readFile("/home/nvram/zt4config.json"), user);

    // The factory user document decides the version, not the user document.
    writeFile("/etc/zt4config_factory.json", R"({"Syntax": {"Version": 0}})");
    EXPECT_EQ(upgradeJSONZT4ConfigFile(), -1);
    EXPECT_TRUE(zt4test::logged("error.[upgradeJSONZT4UserConfigFileSyntaxVersion0]: syntax version 0 is not supported"));

    removeFile("/home/nvram/zt4config.json");
    EXPECT_EQ(upgradeJSONZT4UserConfigFileSyntaxVersion1(), -1);
    EXPECT_TRUE(zt4test::logged("error.[upgradeJSONZT4UserConfigFileSyntaxVersion1]: FAILED reading file '" +
                                path("/home/nvram/zt4config.json") + "'"));
}

struct FrameFormatCase {
    int stored;
    int mode;
    int expected;
    bool written;
};

TEST_F(UpgradeTest, TransmitModeSetsTheFrameFormatAndWritesOnlyAChange) {
    const FrameFormatCase cases[] = {
        {2, 1, 3, true}, {3, 1, 3, false}, {2, 0, 2, false}, {3, 0, 1, true},
        {1, 1, 3, true}, {0, 1, 3, true},  {3, 2, 3, false}, {1, 0, 1, false},
    };
    for (const FrameFormatCase& c : cases) {
        storeUser([&](json_t* document) {
            json_object_set_new(json_object_get(document, "RadioLoRa"), "FrameFormat", json_integer(c.stored));
        });
        const std::string before = readFile("/home/nvram/zt4config.json");
        EXPECT_EQ(updateJSONZT4ConfigRadioTransmitMode(static_cast<uint8_t>(c.mode)), 0) << zt4test::logDump();
        zt4::JsonRef after(userDocument());
        EXPECT_EQ(json_integer_value(json_object_get(json_object_get(after.get(), "RadioLoRa"), "FrameFormat")),
                  c.expected) << c.stored << " mode " << c.mode;
        EXPECT_EQ(readFile("/home/nvram/zt4config.json") != before, c.written) << c.stored << " mode " << c.mode;
    }
    storeUser([](json_t* document) { json_object_del(json_object_get(document, "RadioLoRa"), "FrameFormat"); });
    EXPECT_EQ(updateJSONZT4ConfigRadioTransmitMode(1), -1);
    EXPECT_TRUE(zt4test::logged("error.[updateJSONZT4UserConfigRadioLoRaFrameFormatSyntaxVersion1]: FrameFormat NULL"));
}

struct ThreephaseCase {
    const char* stored;  // JSON value of "NumberConnectorThreephase", "" for none
    int count;
    int result;
    long long expected;  // stored afterwards, -1 when not an integer
    const char* line;    // the line logged, "" for none
    bool written;
};

TEST_F(UpgradeTest, ThreephaseCountIsWrittenOnlyWhenItDiffers) {
    const ThreephaseCase cases[] = {
        {"3", 3, 0, 3, "", false},
        {"3", 5, 0, 5, "Read Number Connector Threephase 3.Expect Number Connector Threephase 5", true},
        {"6", 0, 0, 0, "Read Number Connector Threephase 6.Expect Number Connector Threephase 0", true},
        {"", 2, -1, -1, "error.[updateJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1]: read NumberConnectorThreephase NULL", false},
        {"\"3\"", 2, -1, -1, "error.[updateJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1]: NumberConnectorThreephase NOT INTEGER", false},
    };
    for (const ThreephaseCase& c : cases) {
        storeUser([&](json_t* document) {
            json_t* expert = json_object_get(json_object_get(document, "ElectricalConfiguration"), "Expert");
            json_object_del(expert, "NumberConnectorThreephase");
            if (*c.stored) json_object_set_new(expert, "NumberConnectorThreephase", json_loads(c.stored, JSON_DECODE_ANY, nullptr));
        });
        const std::string before = readFile("/home/nvram/zt4config.json");
        zt4test::clearLog();
        EXPECT_EQ(updateJSONZT4ConfigSetupConnectors(static_cast<uint8_t>(c.count)), c.result) << c.stored;
        zt4::JsonRef after(userDocument());
        json_t* stored = json_object_get(json_object_get(json_object_get(after.get(), "ElectricalConfiguration"), "Expert"),
                                         "NumberConnectorThreephase");
        EXPECT_EQ(json_is_integer(stored) ? json_integer_value(stored) : -1, c.expected) << c.stored;
        if (*c.line) {
            EXPECT_EQ(zt4test::loggedCount(c.line), 1) << zt4test::logDump();
        }
        EXPECT_EQ(readFile("/home/nvram/zt4config.json") != before, c.written) << c.stored;
        if (!*c.line) {
            EXPECT_EQ(zt4test::loggedCount("Read Number Connector"), 0);
        }
    }
}

// ---- Static network lines of the flat file ---------------------------------------------------

struct FlatFileCase {
    const char* name;
    int (*update)(json_t*);
    const char* document;
    const char* before;  // the flat file, null for none
    int result;
    const char* after;   // the flat file afterwards
    const char* line;    // a line logged, "" for none
};

const char kFlat[] =
    "// written by the export\nStatic_AddressIP=10.0.0.2\nStatic_GW=10.0.0.1  # gw\nStatic_Dns=10.0.0.1\n"
    "Static_Netmask=255.0.0.0\nModbus_Port=502 // tcp\nDHCPD_Enable=0\nDHCPD_AddressIP=192.168.4.1\n"
    "DHCPD_Netmask=255.255.255.0\nDHCPD_StartIP=192.168.4.10\nDHCPD_EndIP=192.168.4.20\n";
const char kEthernet[] = R"({"AddressIP": "192.168.1.9", "Netmask": "255.255.255.0", "GW": "192.168.1.1", "Dns": "8.8.8.8"})";
const char kWiFi[] = R"({"Enable": 1, "AddressIP": "10.42.0.1", "Netmask": "255.255.0.0", "StartIP": "10.42.0.100", "EndIP": "10.42.0.200"})";

const FlatFileCase kFlatFileCases[] = {
    {"Ethernet", updateZT4ConfigEthernet, kEthernet, kFlat, 0,
     "Static_AddressIP=192.168.1.9\nStatic_GW=192.168.1.1\nStatic_Dns=8.8.8.8\nStatic_Netmask=255.255.255.0\n"
     "DHCPD_Enable=0\nDHCPD_AddressIP=192.168.4.1\nDHCPD_Netmask=255.255.255.0\nDHCPD_StartIP=192.168.4.10\n"
     "DHCPD_EndIP=192.168.4.20\n", ""},
    {"WiFi", updateZT4ConfigWiFi, kWiFi, kFlat, 0,
     "Static_AddressIP=10.0.0.2\nStatic_GW=10.0.0.1  # gw\nStatic_Dns=10.0.0.1\nStatic_Netmask=255.0.0.0\n"
     "DHCPD_Enable=1\nDHCPD_AddressIP=10.42.0.1\nDHCPD_Netmask=255.255.0.0\nDHCPD_StartIP=10.42.0.100\n"
     "DHCPD_EndIP=10.42.0.200\n", ""},
    {"LinesTheFileLacksAreNotAdded", updateZT4ConfigEthernet, kEthernet, "Web_Debug=1\nStatic_GW=1.2.3.4", 0,
     "Web_Debug=1\nStatic_GW=192.168.1.1\n", ""},
    {"EthernetWithoutGateway", updateZT4ConfigEthernet, R"({"AddressIP": "1.1.1.1", "Netmask": "255.0.0.0", "Dns": "1.1.1.1"})",
     kFlat, -1, kFlat, "error.[updateZT4UserConfigEthernetSyntaxVersion1]: gw NULL"},
    {"WiFiWithoutEnd", updateZT4ConfigWiFi, R"({"Enable": 1, "AddressIP": "1.1.1.1", "Netmask": "255.0.0.0", "StartIP": "1.1.1.2"})",
     kFlat, -1, kFlat, "error.[updateZT4UserConfigWiFiSyntaxVersion1]: endip NULL"},
    {"WiFiWithoutEnable", updateZT4ConfigWiFi, R"({"AddressIP": "1.1.1.1"})", kFlat, -1, kFlat,
     "error.[updateZT4UserConfigWiFiSyntaxVersion1]: enable NULL"},
    {"NoFlatFile", updateZT4ConfigEthernet, kEthernet, nullptr, -1, "", ""},
};

class FlatFileTest : public UpgradeTest, public ::testing::WithParamInterface<FlatFileCase> {};

TEST_P(FlatFileTest, RewritesOnlyTheSettingsLines) {
    const FlatFileCase& c = GetParam();
    if (c.before != nullptr) writeFile("/home/nvram/zt4.cfg", c.before);
    zt4::JsonRef document(zt4test::parse(c.document));
    EXPECT_EQ(c.update(document.get()), c.result) << zt4test::logDump();
    EXPECT_EQ(readFile("/home/nvram/zt4.cfg"), c.after);
    if (*c.line) {
        EXPECT_TRUE(zt4test::logged(c.line, LOG_ERR)) << zt4test::logDump();
    }
    if (c.result == 0) {
        EXPECT_FALSE(exists("/home/nvram/zt4.cfg.new"));
        EXPECT_EQ(zt4test::loggedCount("renamed successfully"), 1);
    }
    if (c.before == nullptr) {
        EXPECT_EQ(zt4test::loggedCount("error.[updateZT4UserConfigEthernetSyntaxVersion1]: FAILED open file '" +
                                       path("/home/nvram/zt4.cfg") + "'. ("), 1);
    }
}

std::string caseName(const ::testing::TestParamInfo<FlatFileCase>& row) { return row.param.name; }

INSTANTIATE_TEST_SUITE_P(Lines, FlatFileTest, ::testing::ValuesIn(kFlatFileCases), caseName);

}  // namespace
