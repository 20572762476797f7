#include <cstdlib>
#include <string>

#include "support/cli.hpp"
#include "support/harness.hpp"

namespace {

class DocumentsCli : public zt4test::DeviceTest {};

TEST_F(DocumentsCli, ShowSyntaxAndMerge) {
    if (std::getenv("ZT4_CLI") == nullptr) GTEST_SKIP() << "ZT4_CLI not set";
    writeFile("/home/nvram/zt4config.json", "{\"Syntax\":{\"Version\":1},\"Web\":{\"Port\":80}}");
    writeFile("/etc/zt4system_factory.json", "{\"Device\":{\"Model\":\"ZT4\"}}");
    writeFile("/home/nvram/update.json", "{\"Web\":{\"Port\":81},\"Modbus\":{\"Port\":502}}");
    writeFile("/home/nvram/list.json", "[1]");
    const std::string update = path("/home/nvram/update.json");
    struct Case {
        std::string arguments;
        int status;
        const char* output;  // compact JSON printed on stdout, or nullptr for nothing
    } cases[] = {
        {"show user", 0, "{\"Syntax\":{\"Version\":1},\"Web\":{\"Port\":80}}"},
        {"show factory-system", 0, "{\"Device\":{\"Model\":\"ZT4\"}}"},
        {"show system", 1, nullptr},
        {"syntax user", 0, "1"},
        {"syntax factory-system", 0, "0"},
        {"syntax system", 0, "0"},  // unreadable: version 0
        {"merge user " + update, 0,
         "{\"Modbus\":{\"Port\":502},\"Syntax\":{\"Version\":1},\"Web\":{\"Port\":81}}"},
        {"merge system " + update, 1, nullptr},  // no stored system document to merge into
        {"merge user " + path("/home/nvram/list.json"), 1, nullptr},
        {"merge user " + path("/home/nvram/absent.json"), 1, nullptr},
        {"show", 2, nullptr},
        {"show users", 2, nullptr},
        {"syntax user system", 2, nullptr},
        {"merge factory " + update, 2, nullptr},
        {"merge user", 2, nullptr},
    };
    for (const Case& c : cases) {
        std::string out;
        EXPECT_EQ(zt4test::runCli(root(), c.arguments, out, false), c.status) << c.arguments;
        if (c.output) {
            json_t* printed = json_loads(out.c_str(), JSON_DECODE_ANY, nullptr);
            EXPECT_EQ(zt4test::compact(printed), c.output) << c.arguments;
            json_decref(printed);
        } else {
            EXPECT_EQ(out, "") << c.arguments;
        }
    }
    // The merge went through the library's writer: 17-space indent on disk.
    EXPECT_EQ(readFile("/home/nvram/zt4config.json").substr(0, 21), "{\n" + std::string(17, ' ') + "\"S");
}

}  // namespace
