// The modbus and data commands on image files: what they print, their exit status, and the
// bytes they change (only the named register's).
#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/cli.hpp"
#include "support/harness.hpp"

namespace {

struct ModbusCliCase {
    const char* label;
    const char* args;  // "@" stands for the test's root directory
    int status;
    const char* output;   // fragment of stdout and stderr together
    long offset;          // first byte the command changes in the full image; -1: none
    std::string bytes;    // the bytes found there afterwards
};

// Bytes where each differs from its neighbours, so that a stray write shows.
std::string patterned(size_t size) {
    std::string bytes(size, '\0');
    for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>((i * 7 + 1) % 251);
    return bytes;
}

class ModbusCli : public zt4test::DeviceTest, public ::testing::WithParamInterface<ModbusCliCase> {
protected:
    std::string image;

    void SetUp() override {
        zt4test::DeviceTest::SetUp();
        std::filesystem::copy(ZT4_EXAMPLE_DEVICE, root(),
                              std::filesystem::copy_options::recursive |
                                  std::filesystem::copy_options::overwrite_existing);
        image = patterned(6636);
        image.replace(1192, 4, std::string("\x70\x11\x01\x00", 4));  // START UP (0, 2): 70000
        writeFile("/var/zt4/image", image);
        writeFile("/var/zt4/short", patterned(100));
    }
};

TEST_P(ModbusCli, OutputStatusAndBytes) {
    const ModbusCliCase& c = GetParam();
    if (std::getenv("ZT4_CLI") == nullptr) GTEST_SKIP() << "ZT4_CLI not set";
    std::string args = c.args;
    for (size_t at = args.find('@'); at != std::string::npos; at = args.find('@', at)) {
        args.replace(at, 1, root());
        at += root().size();
    }
    std::string output;
    EXPECT_EQ(zt4test::runCli(root(), args, output), c.status) << output;
    EXPECT_NE(output.find(c.output), std::string::npos) << output;
    std::string expected = image;
    if (c.offset >= 0) expected.replace(static_cast<size_t>(c.offset), c.bytes.size(), c.bytes);
    EXPECT_EQ(readFile("/var/zt4/image"), expected);
    EXPECT_EQ(readFile("/var/zt4/short"), patterned(100));
}

std::string cliName(const ::testing::TestParamInfo<ModbusCliCase>& info) {
    return info.param.label;
}

const std::string kNone;

INSTANTIATE_TEST_SUITE_P(Commands, ModbusCli, ::testing::Values(
    ModbusCliCase{"MapJson", "modbus map", 0, "\"Name\": \"INDEX ACTIVE EXPORT\",\n    \"Base\": 124", -1, kNone},
    ModbusCliCase{"MapMarkdown", "modbus map --markdown", 0,
                  "| 37 | NOMINAL VOLTAGE | 1372 | 1 | 2 | 4 | V |", -1, kNone},
    ModbusCliCase{"GetInteger", "modbus get 17 0 2 --image @/var/zt4/image", 0,
                  "\"Address\": 596,\n  \"Value\": 70000", -1, kNone},
    ModbusCliCase{"SetFloat", "modbus set 4 1 0 1.5 --image @/var/zt4/image", 0, "", 72,
                  std::string("\0\0\xc0\x3f", 4)},
    ModbusCliCase{"SetInteger", "modbus set 22 5 2 4294967295 --image @/var/zt4/image", 0, "",
                  1516, std::string("\xff\xff\xff\xff", 4)},
    ModbusCliCase{"SetDouble", "modbus set 62 0 1 -2 --image @/var/zt4/image", 0, "", 4340,
                  std::string("\0\0\0\0\0\0\0\xc0", 8)},
    ModbusCliCase{"SetMac", "modbus set 2 0 0 0a1b2c3d4e5f --image @/var/zt4/image", 0, "", 4,
                  std::string("\x1b\x0a\x3d\x2c\x5f\x4e", 6)},
    ModbusCliCase{"SetModeWord", "modbus set 3 1 2 6 --image @/var/zt4/image", 0, "", 26,
                  std::string("\x06\x00", 2)},
    ModbusCliCase{"SetNaNKeepsRegister", "modbus set 8 0 1 nan --image @/var/zt4/image", 0, "",
                  -1, kNone},
    ModbusCliCase{"DumpPhases", "modbus dump 18 --image @/var/zt4/image", 0,
                  "SAG ZT4\nzt4config: Phase Register Value", -1, kNone},
    ModbusCliCase{"DataConnectors", "data connectors --image @/var/zt4/image", 0,
                  "\"Name\": \"Main incomer\"", -1, kNone}), cliName);

INSTANTIATE_TEST_SUITE_P(Refusals, ModbusCli, ::testing::Values(
    ModbusCliCase{"ShortImageGet", "modbus get 4 1 0 --image @/var/zt4/short", 1,
                  "error.[GetModbusData]: zt4Rg NULL", -1, kNone},
    ModbusCliCase{"ShortImageSet", "modbus set 17 0 0 5 --image @/var/zt4/short", 1,
                  "holds 100 bytes", -1, kNone},
    ModbusCliCase{"ShortImageDump64", "modbus dump 62 --image @/var/zt4/short", 1,
                  "error.[DisplayZT4Data64]: zt4Rg64 NULL", -1, kNone},
    ModbusCliCase{"ShortImageData", "data connectors --image @/var/zt4/short", 1,
                  "error.[readJSONZT4DataConnector]: zt4Rg NULL", -1, kNone},
    ModbusCliCase{"PastTheImage", "modbus set 73 5 5 1 --image @/var/zt4/image", 1,
                  "outside the register image", -1, kNone},
    ModbusCliCase{"MissingImage", "modbus get 4 0 0 --image @/var/zt4/none", 1,
                  "cannot open image", -1, kNone},
    ModbusCliCase{"RangeDescriptor", "modbus get 74 0 0 --image @/var/zt4/image", 2,
                  "modbus get takes", -1, kNone},
    ModbusCliCase{"SeventhConnector", "modbus set 4 6 0 1 --image @/var/zt4/image", 2,
                  "modbus set takes", -1, kNone},
    ModbusCliCase{"NegativeCounter", "modbus set 17 0 0 -1 --image @/var/zt4/image", 2,
                  "is not a value for block 17", -1, kNone},
    ModbusCliCase{"MacWithColons", "modbus set 2 0 0 0a:1b:2c:3d:4e:5f --image @/var/zt4/image", 2,
                  "is not a value for block 2", -1, kNone},
    ModbusCliCase{"NoImageOption", "modbus get 4 0 0", 2, "needs --image FILE", -1, kNone}),
    cliName);

}  // namespace
