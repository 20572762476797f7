// The tool's contract: results on stdout, diagnostics on stderr, exit status 0, 1 (library failure) or 2 (usage).
#include <cstdlib>
#include <string>

#include "support/cli.hpp"
#include "support/harness.hpp"

namespace {

class Tool : public zt4test::DeviceTest {};

TEST_F(Tool, ResultsOnStdoutDiagnosticsOnStderrAndTheExitStatus) {
    if (std::getenv("ZT4_CLI") == nullptr) GTEST_SKIP() << "ZT4_CLI not set";
    std::string out;
    writeFile("/home/nvram/radiodeveui", "70:B3:D5:7E:D0:01:23:45\n");
    writeFile("/home/nvram/update.json", R"({"Web":{"Port":81},"Modbus":{"Port":502}})");
    writeFile("/home/nvram/zt4system.json", R"({"Device":{"Model":"ZT4"}})");
    const struct { std::string arguments; int status; const char* out; std::string err; } rows[] = {
        // out: stdout as compact JSON, or its exact text; err: a fragment of stderr, "" when it must be empty.
        {"model --json", 2, "", "model takes no argument"},
        {"show system", 0, R"({"Device":{"Model":"ZT4"}})", ""},
        {"syntax system", 0, "0", "zt4config: Configuration file Syntax 0 by default\n"},
        {"merge system " + path("/home/nvram/update.json"), 0, R"({"Device":{"Model":"ZT4"},"Modbus":{"Port":502},"Web":{"Port":81}})",
         "[writeJSONZT4SystemFile]: File '" + path("/home/nvram/zt4system-tmp.json") + "' renamed successfully"},
        {"radio get deveui", 0, R"({"deveui":"70:B3:D5:7E:D0:01:23:45"})", ""},
        {"radio set deveui 70:B3", 1, "", "error.[setRadioDEVEUI] value format is wrong"},
        {"merge user " + path("/home/nvram/absent.json"), 1, "", "zt4config: cannot read "},
        {"show users", 2, "", "zt4config: show takes user, system, factory or factory-system\nusage: zt4config"},
        {"radio get lorawan.epochtime", 2, "", "cannot be read"},
    };
    for (const auto& row : rows) {
        // stderr to a file; the shell then exits with the tool's status.
        EXPECT_EQ(zt4test::runCli(root(), row.arguments + " 2>" + path("/stderr.txt") + "; exit $?", out, false), row.status)
            << row.arguments;
        json_t* printed = json_loads(out.c_str(), JSON_DECODE_ANY, nullptr);
        EXPECT_EQ(printed ? zt4test::compact(printed) : out, row.out) << row.arguments;
        json_decref(printed);
        const std::string err = readFile("/stderr.txt");
        EXPECT_TRUE(!row.err.empty() ? err.find(row.err) != std::string::npos : err.empty()) << row.arguments << ": " << err;
    }
    EXPECT_FALSE(exists("/home/nvram/radiodeveui.tmp"));
    EXPECT_EQ(readFile("/home/nvram/radiodeveui"), "70:B3:D5:7E:D0:01:23:45\n");
    EXPECT_EQ(readFile("/home/nvram/zt4system.json").substr(0, 21), "{\n" + std::string(17, ' ') + "\"D");  // the library's writer
}

}  // namespace
