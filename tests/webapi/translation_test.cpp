// The connector and expert documents both ways: what is stored comes back as it was, what the
// readers give comes back as they gave it, and a member without a place refuses the whole call.
#include <syslog.h>

#include <string>

#include "webapi/web_device.hpp"
#include "zt4config.h"

namespace {

using zt4test::compactOwned;
using zt4test::kUserFile;

// ---- Stored -> web -> stored and web -> stored -> web over a table of variations --------------

struct Variation {
    int mode;
    int channels;        // 1 or 3
    int primaryEnable;   // the current transformers' primary, on or off
    int voltageEnable;   // the voltage transformer, on or off
    bool example = false;  // the example device as it is
};

// A stored connector of the variation, written out in the stored shape.
std::string storedConnector(const Variation& v, int number) {
    const std::string primary = R"("CurrentTransformerPrimary": {"Enable": )" + std::to_string(v.primaryEnable) +
                                R"(, "CurrentPrimary": )" + std::to_string(100 * number) + "}";
    std::string channels;
    if (v.channels == 1) {
        channels = R"({"Enable": 1, "Name": "Line )" + std::to_string(number) +
                   R"(", "GeneralFactor": 1.5, "CurrentTransformer": [{"Direction": 0}, {"Direction": 1}, {"Direction": 0}], )" +
                   primary + "}";
    } else {
        for (int phase = 1; phase <= 3; ++phase) {
            if (phase > 1) channels += ", ";
            channels += R"({"Enable": )" + std::to_string(phase % 2) + R"(, "Name": "L)" + std::to_string(phase) +
                        R"(", "GeneralFactor": 2.0, "CurrentTransformer": [{"Direction": )" + std::to_string(phase == 2) +
                        "}], " + primary + R"(, "Phase": )" + std::to_string(phase) + "}";
        }
    }
    return R"({"Mode": )" + std::to_string(v.mode) + R"(, "CurrentTransformerModel": )" + std::to_string(number) +
           R"(, "Channel": [)" + channels + "]}";
}

class RoundTrip : public zt4test::WebDevice, public ::testing::WithParamInterface<Variation> {
protected:
    void storeVariation(const Variation& v) {
        if (v.example) return;
        json_t* electrical = storedSection("ElectricalConfiguration");
        std::string connectors = "[";
        for (int number = 1; number <= 6; ++number) {
            if (number > 1) connectors += ", ";
            connectors += storedConnector(v, number);
        }
        json_object_set_new(electrical, "Connectors", zt4test::parse((connectors + "]").c_str()));
        json_object_set_new(electrical, "VoltageTransformer",
                            zt4test::parse((R"({"Enable": )" + std::to_string(v.voltageEnable) +
                                            R"(, "VoltagePrimary": 20000.0, "VoltageSecondary": 100.0})").c_str()));
        json_t* sag = json_object_get(json_object_get(electrical, "Expert"), "Sag");
        json_object_set_new(sag, "Enable", json_integer(v.voltageEnable));
        storeSection("ElectricalConfiguration", zt4test::compact(electrical).c_str());
        json_decref(electrical);
        zt4test::clearLog();
    }
};

TEST_P(RoundTrip, StoredWebStoredIsTheIdentity) {
    storeVariation(GetParam());
    json_t* before = storedSection("ElectricalConfiguration");
    json_t* connectors = readJSONZT4WebAPIConfigConnectors();
    json_t* expert = readJSONZT4WebAPIConfigExpert();
    ASSERT_NE(connectors, nullptr) << zt4test::logDump();
    ASSERT_NE(expert, nullptr) << zt4test::logDump();
    EXPECT_EQ(writeJSONZT4WebAPIConfigConnectors(connectors), 0) << zt4test::logDump();
    EXPECT_EQ(writeJSONZT4WebAPIConfigExpert(expert), 0) << zt4test::logDump();
    EXPECT_EQ(compactOwned(storedSection("ElectricalConfiguration")), zt4test::compact(before));
    // Web -> stored -> web: the readers give again what they gave.
    EXPECT_EQ(compactOwned(readJSONZT4WebAPIConfigConnectors()), zt4test::compact(connectors));
    EXPECT_EQ(compactOwned(readJSONZT4WebAPIConfigExpert()), zt4test::compact(expert));
    json_decref(connectors);
    json_decref(expert);
    json_decref(before);
}

TEST_P(RoundTrip, OneConnectorComesBackAsItWas) {
    storeVariation(GetParam());
    json_t* before = storedSection("ElectricalConfiguration");
    json_t* connector = readJSONZT4WebAPIConfigConnectorById(4);
    ASSERT_NE(connector, nullptr) << zt4test::logDump();
    EXPECT_EQ(writeJSONZT4WebAPIConfigConnectorById(connector, 4), 0) << zt4test::logDump();
    EXPECT_EQ(compactOwned(storedSection("ElectricalConfiguration")), zt4test::compact(before));
    EXPECT_EQ(compactOwned(readJSONZT4WebAPIConfigConnectorById(4)), zt4test::compact(connector));
    json_decref(connector);
    json_decref(before);
}

std::vector<Variation> variations() {
    std::vector<Variation> rows{{0, 0, 0, 0, true}};
    for (int mode = 0; mode <= 6; ++mode) {
        for (int channels : {1, 3}) {
            for (int enable : {0, 1}) rows.push_back({mode, channels, enable, 1 - enable});
        }
    }
    return rows;
}

INSTANTIATE_TEST_SUITE_P(WebAPI, RoundTrip, ::testing::ValuesIn(variations()),
                         [](const ::testing::TestParamInfo<Variation>& row) {
                             const Variation& v = row.param;
                             if (v.example) return std::string("ExampleDevice");
                             return "Mode" + std::to_string(v.mode) + "Channels" + std::to_string(v.channels) +
                                    (v.primaryEnable ? "PrimaryOn" : "PrimaryOff");
                         });

// One variation in the web shape, written out member by member: a monophase connector of mode 5.
TEST_F(RoundTrip, WebShapeOfMonophaseChannels) {
    storeVariation({5, 3, 1, 0});
    EXPECT_EQ(compactOwned(readJSONZT4WebAPIConfigConnectorById(2)),
              R"({"Cnl":[{"CTPrimary":200,"CTPrimaryEnable":1,"Dir":[0],"Enable":1,"Mode":5,"Name":"L1","Phase":1,)"
              R"("Plier":2,"VTEnable":0,"VTPrimary":20000.0,"VTSecondary":100.0,"xGeneral":2.0},)"
              R"({"CTPrimary":200,"CTPrimaryEnable":1,"Dir":[1],"Enable":0,"Name":"L2","Phase":2,"xGeneral":2.0},)"
              R"({"CTPrimary":200,"CTPrimaryEnable":1,"Dir":[0],"Enable":1,"Name":"L3","Phase":3,"xGeneral":2.0}]})")
        << zt4test::logDump();
}

// And the stored shape that a web document becomes.
TEST_F(RoundTrip, StoredShapeOfAWebConnector) {
    storeVariation({0, 1, 0, 0});
    json_t* connector = zt4test::parse(
        R"({"Cnl":[{"Mode":2,"Plier":7,"VTEnable":1,"VTPrimary":11000.0,"VTSecondary":110.0,"Enable":1,"Name":"Pump",)"
        R"("xGeneral":0.5,"Dir":[1,1,0],"CTPrimaryEnable":1,"CTPrimary":250}]})");
    EXPECT_EQ(writeJSONZT4WebAPIConfigConnectorById(connector, 6), 0) << zt4test::logDump();
    json_decref(connector);
    json_t* electrical = storedSection("ElectricalConfiguration");
    EXPECT_EQ(zt4test::compact(json_array_get(json_object_get(electrical, "Connectors"), 5)),
              R"({"Channel":[{"CurrentTransformer":[{"Direction":1},{"Direction":1},{"Direction":0}],)"
              R"("CurrentTransformerPrimary":{"CurrentPrimary":250,"Enable":1},"Enable":1,"GeneralFactor":0.5,)"
              R"("Name":"Pump"}],"CurrentTransformerModel":7,"Mode":2})");
    EXPECT_EQ(zt4test::compact(json_object_get(electrical, "VoltageTransformer")),
              R"({"Enable":1,"VoltagePrimary":11000.0,"VoltageSecondary":110.0})");
    json_decref(electrical);
}

// ---- Members without a place ------------------------------------------------------------------

struct UnmappableCase {
    const char* name;
    const char* document;  // "connectors", "connector" (number 2) or "expert"
    const char* pointer;   // where the change goes in the document the reader gave
    const char* value;     // the JSON text set there
    const char* reason;    // the logged line, after "error.[<writer>SyntaxVersion1]: "
};

class Unmappable : public zt4test::WebDevice, public ::testing::WithParamInterface<UnmappableCase> {};

// Sets `value` at the member named by `pointer` ("1/Cnl/0/Foo": array indexes and member names).
void setAt(json_t* document, const std::string& pointer, json_t* value) {
    json_t* parent = document;
    std::string rest = pointer;
    for (std::size_t slash; (slash = rest.find('/')) != std::string::npos; rest.erase(0, slash + 1)) {
        const std::string step = rest.substr(0, slash);
        parent = json_is_array(parent) ? json_array_get(parent, std::stoul(step)) : json_object_get(parent, step.c_str());
    }
    json_is_array(parent) ? json_array_set_new(parent, std::stoul(rest), value)
                          : json_object_set_new(parent, rest.c_str(), value);
}

TEST_P(Unmappable, RefusesTheWholeDocumentAndWritesNothing) {
    const UnmappableCase& c = GetParam();
    const std::string kind = c.document;
    json_t* document = kind == "expert"       ? readJSONZT4WebAPIConfigExpert()
                       : kind == "connectors" ? readJSONZT4WebAPIConfigConnectors()
                                              : readJSONZT4WebAPIConfigConnectorById(2);
    ASSERT_NE(document, nullptr);
    setAt(document, c.pointer, zt4test::parseValue(c.value));
    const std::string before = readFile(kUserFile);
    zt4test::clearLog();
    const int result = kind == "expert"       ? writeJSONZT4WebAPIConfigExpert(document)
                       : kind == "connectors" ? writeJSONZT4WebAPIConfigConnectors(document)
                                              : writeJSONZT4WebAPIConfigConnectorById(document, 2);
    EXPECT_EQ(result, -1);
    json_decref(document);
    EXPECT_EQ(readFile(kUserFile), before);
    const std::string writer = kind == "expert"       ? "writeJSONZT4WebAPIConfigExpert"
                               : kind == "connectors" ? "writeJSONZT4WebAPIConfigConnectors"
                                                      : "writeJSONZT4WebAPIConfigConnectorById";
    EXPECT_TRUE(zt4test::logged("error.[" + writer + "SyntaxVersion1]: " + c.reason, LOG_ERR)) << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(WebAPI, Unmappable, ::testing::Values(
    UnmappableCase{"UnknownMember", "connectors", "1/Cnl/0/Colour", R"("red")",
                   "member [1].Cnl[0].Colour cannot be mapped: it does not survive the way back"},
    UnmappableCase{"ModeOnChannel2", "connectors", "3/Cnl/1/Mode", "1",
                   "member [3].Cnl[1].Mode cannot be mapped: it does not survive the way back"},
    UnmappableCase{"TransformersDisagree", "connectors", "4/Cnl/0/VTSecondary", "110.0",
                   "member [4].Cnl[0].VTSecondary cannot be mapped: it does not survive the way back"},
    UnmappableCase{"NameNotText", "connectors", "0/Cnl/0/Name", "5", "member [0].Cnl[0].Name cannot be mapped: it has the wrong type"},
    UnmappableCase{"ModeNotInteger", "connectors", "0/Cnl/0/Mode", "4.0", "member [0].Cnl[0].Mode cannot be mapped: it has the wrong type"},
    UnmappableCase{"DirectionNotInteger", "connectors", "1/Cnl/0/Dir/2", R"("in")",
                   "member [1].Cnl[0].Dir[2] cannot be mapped: it has the wrong type"},
    UnmappableCase{"ChannelNotObject", "connectors", "3/Cnl/2", "7", "member [3].Cnl[2] cannot be mapped: it is not an object"},
    UnmappableCase{"ConnectorsRefusal", "connectors", "0/Cnl/0/Colour", "1",
                   "Failed to prepare Connectors JSON response to Syntax Version 1"},
    UnmappableCase{"OneConnector", "connector", "Cnl/0/Plier", R"("CT-100")", "member Cnl[0].Plier cannot be mapped: it has the wrong type"},
    UnmappableCase{"ExpertStoredName", "expert", "Connect/0/THDEnable", "1",
                   "member Connect[0].THDEnable cannot be mapped: it does not survive the way back"},
    UnmappableCase{"ExpertPhaseObject", "expert", "Sag/Phase/1", R"({"Enable": 1})", "member Sag.Phase[1] cannot be mapped: it has the wrong type"},
    UnmappableCase{"ExpertRefusal", "expert", "Connect/5/Cnl/0/OverCurrent", "0.5",
                   "Failed to prepare Expert JSON response to Syntax Version 1"}),
    zt4test::RowName());

// A stored member without a place makes the reader refuse too.
struct StoredFaultCase {
    const char* name;
    const char* pointer;  // in the stored "ElectricalConfiguration"
    const char* value;
    const char* reason;   // after "error.[readJSONZT4WebAPIConfigConnectorsSyntaxVersion1]: "
};

class StoredFault : public zt4test::WebDevice, public ::testing::WithParamInterface<StoredFaultCase> {};

TEST_P(StoredFault, RefusesTheRead) {
    json_t* electrical = storedSection("ElectricalConfiguration");
    setAt(electrical, GetParam().pointer, zt4test::parseValue(GetParam().value));
    storeSection("ElectricalConfiguration", zt4test::compact(electrical).c_str());
    json_decref(electrical);
    zt4test::clearLog();
    EXPECT_EQ(readJSONZT4WebAPIConfigConnectors(), nullptr);
    const std::string function = "error.[readJSONZT4WebAPIConfigConnectorsSyntaxVersion1]: ";
    EXPECT_TRUE(zt4test::logged(function + GetParam().reason, LOG_ERR)) << zt4test::logDump();
    EXPECT_TRUE(zt4test::logged(function + "Failed to prepare Connectors JSON response from Syntax Version 1", LOG_ERR));
}

INSTANTIATE_TEST_SUITE_P(WebAPI, StoredFault, ::testing::Values(
    StoredFaultCase{"UnknownMember", "Connectors/2/Channel/0/Colour", R"("red")",
                    "member [2].Channel[0].Colour cannot be mapped: it does not survive the way back"},
    StoredFaultCase{"TransformerWithoutDirection", "Connectors/0/Channel/0/CurrentTransformer/1", "{}",
                    "member [0].Channel[0].CurrentTransformer[1] cannot be mapped: it lacks its value"}),
    zt4test::RowName());

}  // namespace
