// The record the metering daemon starts from: every field of the example device, the quirks the
// device relies on, the failures that leave a partial record, and the dump to the log.
#include <syslog.h>

#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "common/json_ref.hpp"
#include "support/harness.hpp"
#include "zt4config.h"

namespace {

const std::string kDevice = ZT4_EXAMPLE_DEVICE;

class RecordTest : public zt4test::DeviceTest {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        restore();
    }
    // A fresh copy of the example device and a zeroed record.
    void restore() {
        std::filesystem::copy(kDevice, root(), std::filesystem::copy_options::recursive |
                                                   std::filesystem::copy_options::overwrite_existing);
        std::memset(&data, 0, sizeof data);
        zt4test::clearLog();
    }
    // Rewrites a stored document after `edit`.
    void edit(const char* devicePath, const std::function<void(json_t*)>& change) const {
        zt4::JsonRef document(zt4test::parse(readFile(devicePath).c_str()));
        change(document.get());
        char* text = json_dumps(document.get(), JSON_PRESERVE_ORDER);
        writeFile(devicePath, text);
        free(text);
    }
    void editUser(const std::function<void(json_t* electrical)>& change) const {
        edit("/home/nvram/zt4config.json",
             [&](json_t* document) { change(json_object_get(document, "ElectricalConfiguration")); });
    }
    void editSystem(const std::function<void(json_t* electrical)>& change) const {
        edit("/home/nvram/zt4system.json",
             [&](json_t* document) { change(json_object_get(document, "ElectricalConfiguration")); });
    }
    // The readers in the order readZT4AllConfig runs them, without the calibration.
    void readDocuments() {
        ASSERT_EQ(readZT4SystemConnector(data.connectors), 0) << zt4test::logDump();
        ASSERT_EQ(readZT4SystemExpert(&data), 0);
        ASSERT_EQ(readZT4ConfigSetupConnectors(&data), 0);
        ASSERT_EQ(readZT4ConfigConnector(&data), 0);
        ASSERT_EQ(readZT4ConfigExpert(&data), 0);
    }
    zt4Data data;
};

json_t* at(json_t* array, size_t index) { return json_array_get(array, index); }

struct FieldRow {
    const char* field;
    double (*get)(const zt4Data&);
    double expected;
};

#define F(expr, value) {#expr, [](const zt4Data& d) { return static_cast<double>(d.expr); }, value}
#define CH(i, c) connectors[i].channels[c]
#define EX(i) expert.connectors[i]

// The example documents: connectors 1 to 3 three-phase (mode 4, clamps 4, 3 and 1; connector 2's
// second transformer inverted; connector 3 with a 400 A primary), connector 4 monophase on three
// phases, connector 5 monophase with two channels on (the second factor 2.0, inverted) and its
// third off, connector 6 disabled. System: everything allowed. Setup: 3 three-phase connectors.
const FieldRow kExampleRows[] = {
    F(setupModes[0], 4), F(setupModes[2], 4), F(setupModes[3], 1), F(setupModes[4], 1), F(setupModes[5], 0),
    F(meterRunning, 1),
    F(connectors[0].enabled, 1), F(connectors[5].enabled, 1),
    F(connectors[0].xPlier, 333.0), F(connectors[5].xPlier, 1.0),
    F(connectors[4].vtEnable, 0), F(connectors[4].vtPrimary, 400.0), F(connectors[4].vtSecondary, 230.0),
    // A three-phase connector: channel 1's settings and phases 1, 2, 3 on all three channels.
    F(CH(0, 0).enable, 1), F(CH(0, 1).enable, 1), F(CH(0, 2).enable, 1),
    F(CH(0, 0).mode, 4), F(CH(0, 1).mode, 4), F(CH(0, 2).mode, 4),
    F(CH(0, 0).phase, 1), F(CH(0, 1).phase, 2), F(CH(0, 2).phase, 3),
    F(CH(0, 1).ctModel, 4), F(CH(0, 2).generalFactor, 1.0),
    F(CH(1, 0).direction, 0), F(CH(1, 1).direction, 1), F(CH(1, 2).direction, 0), F(CH(1, 2).ctModel, 3),
    F(CH(2, 0).ctPrimary, 400), F(CH(2, 1).ctPrimary, 400), F(CH(2, 2).ctPrimary, 400), F(CH(1, 0).ctPrimary, 0),
    // The neutral record of a three-phase connector gets phase 3, of another connector 0.
    F(CH(0, 3).phase, 3), F(CH(3, 3).phase, 0), F(CH(5, 1).phase, 0),
    // Monophase connectors keep each channel's own values.
    F(CH(3, 0).phase, 1), F(CH(3, 1).phase, 2), F(CH(3, 2).phase, 3), F(CH(3, 2).mode, 1),
    F(CH(4, 1).generalFactor, 2.0), F(CH(4, 1).direction, 1), F(CH(4, 1).enable, 1), F(CH(4, 2).enable, 0),
    F(CH(4, 0).ctModel, 8), F(CH(4, 2).phase, 3), F(CH(5, 0).enable, 0), F(CH(5, 2).mode, 0),
    F(connectors[0].currentImbalanceOff, 0), F(connectors[2].currentImbalanceOff, 0),
    F(connectors[3].currentImbalanceOff, 1), F(connectors[5].currentImbalanceOff, 1),
    // Calibration by mode: three-phase file for connectors 1 and 6, single-phase for connector 4.
    F(CH(0, 0).CalCurrent, 0x00405ec9), F(CH(3, 1).CalCurrent, 0x0040d300), F(CH(5, 2).CalPhaseA, 0x6b),
    F(CH(0, 0).CalVnom, 230.0), F(CH(0, 3).CalCurrent, 0),
    // Expert.
    F(expert.nominalVoltage, 230.0), F(expert.lineFrequency, 50.0),
    F(expert.sysSag, 1), F(expert.sagEnable, 1), F(expert.sagCycle, 1), F(expert.sagRateLevel, 10.0),
    F(expert.sagLevel, 292.7422), F(expert.sagPhase[2], 1),
    F(expert.sysSwell, 1), F(expert.swellEnable, 1), F(expert.swellRateLevel, 10.0),
    F(expert.swellLevel, 357.7960), F(expert.swellPhase[0], 1),
    F(expert.ctThreshold, 2), F(expert.sysOverCurrent, 1), F(expert.sysTHD, 1),
    F(EX(0).currentImbalance, 1), F(EX(0).period, 15), F(EX(1).period, 10), F(EX(4).period, 30),
    F(EX(5).thd, 0), F(EX(0).thd, 1), F(EX(5).currentAverageMax, 1),
    F(EX(0).overCurrentThreshold, 255.2655), F(EX(4).overCurrentThreshold, 22.6274),
    F(EX(1).overCurrentThreshold, 0.0),
    // Power without load of a three-phase connector's first channel on all three.
    F(EX(0).channels[0].powerNoLoad, 250.0), F(EX(0).channels[2].powerNoLoad, 250.0),
    F(EX(4).channels[0].powerNoLoad, 50.0), F(EX(4).channels[1].powerNoLoad, 100.0),
    F(EX(5).channels[1].powerNoLoad, 100.0),
    // Over current: a three-phase connector's channels follow its first channel.
    F(EX(0).channels[1].overCurrent, 1), F(EX(1).channels[2].overCurrent, 0),
    F(EX(4).channels[1].overCurrent, 1), F(EX(4).channels[2].overCurrent, 0),
    F(EX(4).channels[2].operatingTime, 0), F(EX(4).channels[2].startupCycle, 0),
    F(EX(5).channels[2].overCurrent, 1),
};

TEST_F(RecordTest, TheExampleDeviceFillsEveryFieldFromItsDocuments) {
    std::memset(data.leadingArea, 0xA5, sizeof data.leadingArea);
    ASSERT_EQ(readZT4AllConfig(&data), 0) << zt4test::logDump();
    for (const FieldRow& row : kExampleRows) {
        EXPECT_NEAR(row.get(data), row.expected, 1e-3) << row.field;
    }
    const char* names[][3] = {{"Main incomer", "", ""}, {"HVAC", "", ""}, {"Elevators", "", ""},
                              {"Lighting L1", "Lighting L2", "Lighting L3"},
                              {"Sockets office", "Server room", ""}, {"", "", ""}};
    for (unsigned i = 0; i < ZT4_CONNECTOR_COUNT; ++i) {
        for (unsigned c = 0; c < ZT4_CHANNEL_COUNT; ++c) {
            EXPECT_STREQ(data.connectors[i].channels[c].name, names[i][c]) << i << " " << c;
        }
    }
    const std::vector<std::string> order = {
        "Read Connector system configuration", "Read Expert system configuration",
        "Read Setup Connector configuration", "Read Connector configuration",
        "Read Expert Connector configuration", "Read Connector calibration"};
    std::vector<std::string> steps;
    for (const auto& entry : zt4test::capturedLog()) {
        for (const std::string& step : order) {
            if (entry.text == step) steps.push_back(step);
        }
    }
    EXPECT_EQ(steps, order);
    // The daemon's leading area is never touched.
    for (uint8_t byte : data.leadingArea) EXPECT_EQ(byte, 0xA5);
}

// ---- The setup table and its reader ----------------------------------------------------------

TEST(SetupConnectorsTable, RowsAreKeptAsListed) {
    const uint8_t rows[ZT4_SETUP_ROWS][ZT4_CONNECTOR_COUNT] = {
        {1, 1, 1, 1, 0, 0}, {4, 1, 1, 1, 0, 0}, {4, 4, 1, 1, 0, 0}, {4, 4, 4, 1, 1, 0},
        {4, 4, 4, 4, 1, 0}, {4, 4, 4, 4, 4, 0}, {4, 4, 4, 4, 4, 4}};
    EXPECT_EQ(std::memcmp(setupConnectors, rows, sizeof rows), 0);
}

struct SetupRow {
    const char* setup;  // "NumberConnectorThreephase", JSON
    uint8_t modes[ZT4_CONNECTOR_COUNT];
    const char* line;
};

TEST_F(RecordTest, SetupModesComeFromTheRowTheDocumentNames) {
    const SetupRow rows[] = {
        {"0", {1, 1, 1, 1, 0, 0}, "Read Setup Connectors: Monophase Monophase Monophase Monophase Disabled Disabled"},
        {"2", {4, 4, 1, 1, 0, 0}, "Read Setup Connectors: Triphase Triphase Monophase Monophase Disabled Disabled"},
        {"4", {4, 4, 4, 4, 1, 0}, "Read Setup Connectors 4"},
        {"6", {4, 4, 4, 4, 4, 4}, "Read Setup Connectors: Triphase Triphase Triphase Triphase Triphase Triphase"},
        {"7", {4, 4, 4, 1, 1, 0}, "Read Setup Connectors 7"},
        {"-1", {4, 4, 4, 1, 1, 0}, "Read Setup Connectors: Triphase Triphase Triphase Monophase Monophase Disabled"},
    };
    for (const SetupRow& row : rows) {
        editUser([&](json_t* electrical) {
            json_object_set_new(json_object_get(electrical, "Expert"), "NumberConnectorThreephase",
                                json_loads(row.setup, JSON_DECODE_ANY, nullptr));
        });
        std::memset(data.setupModes, 9, sizeof data.setupModes);
        zt4test::clearLog();
        EXPECT_EQ(readZT4ConfigSetupConnectors(&data), 0) << row.setup;
        EXPECT_EQ(std::memcmp(data.setupModes, row.modes, sizeof row.modes), 0) << row.setup;
        EXPECT_TRUE(zt4test::logged(row.line, LOG_INFO)) << row.setup << zt4test::logDump();
    }
    // A failing read keeps the preset and readZT4AllConfig goes on.
    editUser([](json_t* electrical) { json_object_del(json_object_get(electrical, "Expert"), "NumberConnectorThreephase"); });
    EXPECT_EQ(readZT4AllConfig(&data), 0);
    const uint8_t preset[] = {4, 4, 4, 1, 1, 0};
    EXPECT_EQ(std::memcmp(data.setupModes, preset, sizeof preset), 0);
    EXPECT_TRUE(zt4test::logged(" error.[readZT4AllConfig]: FAILED to read Setup Connector configuration. Use default configuration"));
}

// ---- Quirks the device relies on -------------------------------------------------------------

TEST_F(RecordTest, SystemSagCycleAndThresholdAreOverwrittenByTheExpertReader) {
    editSystem([](json_t* electrical) {
        json_t* expert = json_object_get(electrical, "Expert");
        json_object_set_new(json_object_get(expert, "Sag"), "Cycle", json_integer(4));
        json_object_set_new(json_object_get(expert, "Sag"), "Enable", json_integer(0));
        json_object_set_new(json_object_get(expert, "CircuitBreakerTrip"), "CurrentTransformerThreshold", json_integer(5));
        json_object_set_new(json_object_get(expert, "StartupCycle"), "Enable", json_integer(0));
    });
    editUser([](json_t* electrical) {
        json_t* expert = json_object_get(electrical, "Expert");
        json_object_set_new(at(json_object_get(json_object_get(expert, "Sag"), "Phase"), 2), "Enable", json_integer(0));
        json_object_set_new(at(json_object_get(json_object_get(expert, "Swell"), "Phase"), 0), "Enable", json_integer(0));
    });
    ASSERT_EQ(readZT4SystemExpert(&data), 0);
    EXPECT_EQ(data.expert.sagCycle, 4);
    EXPECT_EQ(data.expert.ctThreshold, 5);
    EXPECT_EQ(data.expert.sysSag, 0);
    ASSERT_EQ(readZT4ConfigConnector(&data), 0);
    ASSERT_EQ(readZT4ConfigExpert(&data), 0);
    EXPECT_EQ(data.expert.sagCycle, 1);
    EXPECT_EQ(data.expert.ctThreshold, 2);
    EXPECT_EQ(data.expert.sagEnable, 0);  // the user's Enable 1 under the system's 0
    EXPECT_EQ(data.expert.swellEnable, 1);
    EXPECT_EQ(data.expert.sagPhase[2], 0);
    EXPECT_EQ(data.expert.swellPhase[0], 0);
    EXPECT_EQ(data.expert.swellPhase[1], 1);
    EXPECT_EQ(data.expert.connectors[3].channels[1].startupCycle, 0);  // the system's 0 wins
    EXPECT_EQ(data.expert.connectors[3].channels[1].operatingTime, 1);
}

struct OverCurrentRow {
    int threshold;
    int primary;  // CurrentPrimary of connector 1's channel, enabled; 0: disabled
    int model;
    double expected;
};

TEST_F(RecordTest, OverCurrentThresholdIsAPeakOnTheSecondaryScale) {
    const OverCurrentRow rows[] = {
        {100, 200, 1, 3.5355},     // 100 x 1.4142135 / (200 / 5)
        {100, 0, 1, 141.42135},    // no primary: the peak alone
        {100, 400, 5, 141.42135},  // 400 A primary on a 400 A clamp
        {10, 100, 8, 0.141421},    // 1 A clamp
    };
    for (const OverCurrentRow& row : rows) {
        editUser([&](json_t* electrical) {
            json_t* connector = at(json_object_get(electrical, "Connectors"), 0);
            json_object_set_new(connector, "CurrentTransformerModel", json_integer(row.model));
            json_t* primary = json_object_get(at(json_object_get(connector, "Channel"), 0), "CurrentTransformerPrimary");
            json_object_set_new(primary, "Enable", json_integer(row.primary != 0));
            json_object_set_new(primary, "CurrentPrimary", json_integer(row.primary));
            json_t* expert = at(json_object_get(json_object_get(electrical, "Expert"), "Connectors"), 0);
            json_object_set_new(json_object_get(expert, "OverCurrent"), "Threshold", json_integer(row.threshold));
        });
        readDocuments();
        EXPECT_NEAR(data.expert.connectors[0].overCurrentThreshold, row.expected, 1e-4) << row.primary;
    }
}

TEST_F(RecordTest, ModeSixLosesThdAndPowerImbalanceAndAMissingSystemConnectorStaysEnabled) {
    editUser([](json_t* electrical) {
        json_object_set_new(at(json_object_get(electrical, "Connectors"), 1), "Mode", json_integer(6));
    });
    editSystem([](json_t* electrical) {
        json_t* connectors = json_object_get(electrical, "Connectors");
        json_object_set_new(at(connectors, 0), "Enable", json_integer(0));
        json_array_remove(connectors, 5);
        json_array_remove(connectors, 4);
    });
    ASSERT_EQ(readZT4AllConfig(&data), 0) << zt4test::logDump();
    EXPECT_EQ(data.expert.connectors[1].thd, 0);
    EXPECT_EQ(data.expert.connectors[1].powerImbalance, 0);
    EXPECT_EQ(data.expert.connectors[1].voltageImbalance, 1);
    EXPECT_EQ(data.expert.connectors[2].thd, 1);
    EXPECT_EQ(data.connectors[0].enabled, 0);
    EXPECT_EQ(data.connectors[0].channels[0].enable, 0);  // the system's 0 ANDed with the user's 1
    EXPECT_EQ(data.connectors[0].currentImbalanceOff, 1);
    EXPECT_EQ(data.connectors[4].enabled, 1);
    EXPECT_EQ(data.connectors[5].enabled, 1);
    EXPECT_TRUE(zt4test::logged("readZT4SystemConnectorsSyntaxVersion1: System Connector 4 Enable = 1", LOG_INFO));
}

// ---- Failures leave what was read ------------------------------------------------------------

struct FailureRow {
    const char* name;
    const char* document;  // "/home/nvram/zt4config.json" or the system document
    std::function<void(json_t*)> change;  // on ElectricalConfiguration
    const char* line;
    double (*kept)(const zt4Data&);  // a field read before the failure
    double expected;
};

TEST_F(RecordTest, AFailingReaderKeepsWhatItHadRead) {
    const FailureRow rows[] = {
        {"system connector 3 not an object", "/home/nvram/zt4system.json",
         [](json_t* e) {
             json_t* connectors = json_object_get(e, "Connectors");
             json_object_set_new(at(connectors, 1), "Enable", json_integer(0));
             json_array_set_new(connectors, 2, json_integer(1));
         },
         "error.[readZT4SystemConnectorsSyntaxVersion1]: FAILED to read Object JSON Connector3",
         [](const zt4Data& d) { return static_cast<double>(d.connectors[1].enabled); }, 0},
        {"system without Expert", "/home/nvram/zt4system.json", [](json_t* e) { json_object_del(e, "Expert"); },
         "error.[readZT4AllConfig]: FAILED to read Expert system configuration",
         [](const zt4Data& d) { return static_cast<double>(d.expert.lineFrequency); }, 50.0},
        {"system expert without Swell", "/home/nvram/zt4system.json",
         [](json_t* e) {
             json_t* expert = json_object_get(e, "Expert");
             json_object_del(expert, "Swell");
             json_object_set_new(json_object_get(expert, "Sag"), "Enable", json_integer(0));
         },
         "error.[readZT4SystemExpertSyntaxVersion1]: FAILED to read System Object Swell",
         [](const zt4Data& d) { return static_cast<double>(d.expert.sysSag); }, 0},
        {"user connector 2 without channels", "/home/nvram/zt4config.json",
         [](json_t* e) { json_object_del(at(json_object_get(e, "Connectors"), 1), "Channel"); },
         "error.[readZT4ConfigConnectorsSyntaxVersion1]: FAILED to read Object JSON Cnl of Connector2",
         [](const zt4Data& d) { return static_cast<double>(d.connectors[0].channels[0].mode); }, 4},
        {"expert sag phase 2 not an object", "/home/nvram/zt4config.json",
         [](json_t* e) {
             json_array_set_new(json_object_get(json_object_get(json_object_get(e, "Expert"), "Sag"), "Phase"), 1,
                                json_integer(1));
         },
         "error.[readZT4ConfigExpertSyntaxVersion1]: Sag phase 2 NULL",
         [](const zt4Data& d) { return static_cast<double>(d.expert.sagLevel); }, 292.7422},
    };
    for (const FailureRow& row : rows) {
        restore();
        edit(row.document, [&](json_t* document) { row.change(json_object_get(document, "ElectricalConfiguration")); });
        EXPECT_EQ(readZT4AllConfig(&data), -1) << row.name;
        EXPECT_TRUE(zt4test::logged(row.line, LOG_ERR)) << row.name << zt4test::logDump();
        EXPECT_NEAR(row.kept(data), row.expected, 1e-3) << row.name;
    }
}

TEST_F(RecordTest, NullRecordsAndVersionZeroAreRefused) {
    for (int (*reader)(zt4Data*) : {readZT4AllConfig, readZT4ConfigSetupConnectors, readZT4SystemExpert,
                                    readZT4ConfigConnector, readZT4ConfigExpert}) {
        EXPECT_EQ(reader(nullptr), -1);
    }
    EXPECT_EQ(readZT4SystemConnector(nullptr), -1);
    EXPECT_TRUE(zt4test::logged("error.[readZT4SystemConnectorsSyntaxVersion1]: Connect NULL"));
    EXPECT_EQ(zt4test::loggedCount("]: zt4Data NULL"), 5);
    writeFile("/home/nvram/zt4config.json", R"({"Syntax": {"Version": 0}})");
    EXPECT_EQ(readZT4ConfigConnector(&data), -1);
    EXPECT_TRUE(zt4test::logged("error.[readZT4ConfigConnectorsSyntaxVersion0]: syntax version 0 is not supported"));
}

}  // namespace
