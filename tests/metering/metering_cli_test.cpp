// The fram, modbus and data commands of the tool on the example device and on image files: what
// they print, their exit status and the bytes they change (only the named register's; the FRAM
// never). The commands are written out in data/register_cli.txt.
#include <fstream>

#include "metering/fram_fixture.hpp"
#include "support/cli.hpp"

namespace {

using MeteringCli = zt4test::FramTest;
using zt4test::patterned;

std::string withoutBlanks(const std::string& text) {
    std::string compact;
    for (char ch : text) {
        if (ch != ' ' && ch != '\n') compact += ch;
    }
    return compact;
}

TEST_F(MeteringCli, OutputStatusAndBytes) {
    if (std::getenv("ZT4_CLI") == nullptr) GTEST_SKIP() << "ZT4_CLI not set";
    std::ifstream rows(zt4test::dataFile("register_cli.txt"));
    unsigned count = 0;
    for (std::string row; std::getline(rows, row); ++count) {
        SCOPED_TRACE(row);
        const std::vector<std::string> f = zt4test::fields(row, 6);
        copyExampleDevice();
        removeFile("/var/tmp/fram");
        if (f[1] == "nofram") removeFile(zt4test::kFramNode);
        else if (f[1] != "-") writeFile("/var/tmp/fram", f[1] + "\n");
        std::string image = patterned(6636);
        image.replace(1192, 4, std::string("\x70\x11\x01\x00", 4));  // START UP (0, 2): 70000
        writeFile("/var/zt4/image", image);
        writeFile("/var/zt4/short", patterned(100));
        const std::string fram = exists(zt4test::kFramNode) ? this->fram() : "";
        std::string args = f[4], output;
        for (std::size_t at; (at = args.find('@')) != std::string::npos;) args.replace(at, 1, root());
        EXPECT_EQ(zt4test::runCli(root(), args, output), std::stoi(f[0])) << output;
        EXPECT_NE(withoutBlanks(output).find(f[5]), std::string::npos) << output;
        for (std::size_t i = 0; i + 1 < f[3].size(); i += 2) {
            image[std::stoul(f[2]) + i / 2] = static_cast<char>(std::stoul(f[3].substr(i, 2), nullptr, 16));
        }
        EXPECT_EQ(readFile("/var/zt4/image"), image);
        EXPECT_EQ(readFile("/var/zt4/short"), patterned(100));
        EXPECT_EQ(exists(zt4test::kFramNode) ? this->fram() : "", fram);
    }
    EXPECT_EQ(count, 37u);
}

}  // namespace
