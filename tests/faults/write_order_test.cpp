// The order of the system calls of a document replacement, read from an strace of the tool: the
// temporary file is opened for synchronous writes, written and synced before it is renamed over
// the document, and a sync follows the rename. A power cut at any point then leaves the old
// document or the new one.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

struct Replacement {
    const char* label;
    const char* args;       // the tool's arguments after --root DIR ("@": a document to merge)
    const char* temporary;  // device path of the temporary file
    const char* target;     // device path of the document
    int renames;            // replacements the command makes
    bool synchronous;       // the temporary file is opened with O_SYNC
};

void PrintTo(const Replacement& r, std::ostream* out) { *out << r.label; }

struct Call {
    std::string name;  // openat, write, fsync, fdatasync, rename, renameat, renameat2, sync
    std::string arguments;
    std::string result;
};

// strace lines "PID name(arguments) = result"; lines of signals, exits and unfinished calls are
// left out (the traced calls of one process do not interleave).
std::vector<Call> readTrace(const fs::path& path) {
    static const std::regex line(R"(^\d+\s+(\w+)\((.*)\)\s+=\s+(-?\d+).*$)");
    std::vector<Call> calls;
    std::ifstream in(path);
    std::string text;
    std::smatch match;
    while (std::getline(in, text)) {
        if (std::regex_match(text, match, line)) calls.push_back({match[1], match[2], match[3]});
    }
    return calls;
}

bool startsWith(const std::string& text, const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

class WriteOrder : public ::testing::TestWithParam<Replacement> {};

TEST_P(WriteOrder, TemporaryWrittenSyncedRenamedThenSynced) {
    const Replacement& r = GetParam();
    const char* cli = std::getenv("ZT4_CLI");
    if (cli == nullptr) GTEST_SKIP() << "ZT4_CLI not set";
    const std::string tool = cli;
    if (tool.find(' ') != std::string::npos)
        GTEST_SKIP() << "the tool runs under an emulator: strace would trace the emulator";
    if (std::system("strace -V >/dev/null 2>&1") != 0) GTEST_SKIP() << "strace is not installed";

    const fs::path work = fs::temp_directory_path() / ("zt4order-" + std::to_string(getpid()) + "-" + r.label);
    fs::remove_all(work);
    fs::create_directories(work);
    const fs::path root = work / "root";
    fs::copy(ZT4_EXAMPLE_DEVICE, root, fs::copy_options::recursive);
    // The flat file that `update` rewrites.
    std::ofstream(root / "home/nvram/zt4.cfg") << "Static_AddressIP=\"192.168.10.42\"\nWeb_Language=\"en\"\n";
    // The document that `merge` takes in.
    std::ofstream(work / "input.json") << "{\"Web\": {\"Language\": \"fr\"}, \"Note\": {\"By\": 1}}";
    std::string args = r.args;
    const size_t at = args.find('@');
    if (at != std::string::npos) args.replace(at, 1, (work / "input.json").string());
    const fs::path trace = work / "trace";
    // LeakSanitizer cannot run under ptrace: in a sanitizer build the traced tool checks no leaks.
    const std::string command = "ASAN_OPTIONS=detect_leaks=0 strace -f -e trace=open,openat,write,fsync,fdatasync,rename,renameat,renameat2,sync -o '" +
                                trace.string() + "' " + tool + " --root '" + root.string() + "' " + args +
                                " >/dev/null 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0) << command;

    const std::string temporary = "\"" + (root.string() + r.temporary) + "\"";
    const std::string target = "\"" + (root.string() + r.target) + "\"";
    const std::vector<Call> calls = readTrace(trace);
    ASSERT_FALSE(calls.empty()) << "nothing traced";

    int renames = 0;
    std::string fd;            // the temporary file's descriptor, while it is open
    bool written = false;      // ... written since it was opened
    bool synced = false;       // ... flushed to storage after its last write
    bool pendingSync = false;  // a rename that no sync has followed yet
    for (const Call& call : calls) {
        const bool isOpen = call.name == "openat" || call.name == "open";
        if (isOpen && call.arguments.find(temporary) != std::string::npos && call.result != "-1") {
            EXPECT_NE(call.arguments.find("O_TRUNC"), std::string::npos) << call.arguments;
            EXPECT_EQ(call.arguments.find("O_SYNC") != std::string::npos, r.synchronous) << call.arguments;
            fd = call.result;
            written = synced = false;
        } else if (call.name == "write" && !fd.empty() && startsWith(call.arguments, fd + ",")) {
            written = true;
            synced = false;
        } else if ((call.name == "fsync" || call.name == "fdatasync") && !fd.empty() && call.arguments == fd) {
            synced = written;
        } else if (call.name == "sync") {
            // sync() flushes every file, the temporary's written blocks among them.
            if (written) synced = true;
            pendingSync = false;
        } else if (startsWith(call.name, "rename") && call.arguments.find(temporary) != std::string::npos) {
            ++renames;
            EXPECT_NE(call.arguments.find(target), std::string::npos) << call.arguments;
            EXPECT_FALSE(fd.empty()) << "rename " << renames << ": the temporary file was never opened";
            EXPECT_TRUE(written) << "rename " << renames << ": nothing written to the temporary file";
            EXPECT_TRUE(synced) << "rename " << renames << ": the temporary file is renamed before it is synced";
            EXPECT_EQ(call.result, "0");
            fd.clear();
            written = synced = false;
            pendingSync = true;
        }
    }
    EXPECT_EQ(renames, r.renames);
    EXPECT_FALSE(pendingSync) << "no sync after the last rename";
    fs::remove_all(work);
}

// Documents go through a temporary file opened for synchronous writes; the flat file's update
// writes "zt4.cfg.new" through a plain stream and syncs before the rename.
// A section writer merges twice (existing keys, then new keys) and so replaces the document twice.
INSTANTIATE_TEST_SUITE_P(
    Commands, WriteOrder,
    ::testing::Values(
        Replacement{"systemSection", "system set web '{\"Debug\": 0}'", "/home/nvram/zt4system-tmp.json",
                    "/home/nvram/zt4system.json", 2, true},
        Replacement{"userSection", "set web '{\"Language\": \"fr\"}'", "/home/nvram/zt4configuration-tmp.json",
                    "/home/nvram/zt4config.json", 2, true},
        Replacement{"userMerge", "merge user @",
                    "/home/nvram/zt4configuration-tmp.json", "/home/nvram/zt4config.json", 2, true},
        Replacement{"upgrade", "upgrade", "/home/nvram/zt4configuration-tmp.json", "/home/nvram/zt4config.json", 1, true},
        Replacement{"flatFileUpdate",
                    "update ethernet '{\"AddressIP\": \"10.0.0.9\", \"Netmask\": \"255.0.0.0\", \"GW\": "
                    "\"10.0.0.1\", \"Dns\": \"10.0.0.2\"}'",
                    "/home/nvram/zt4.cfg.new", "/home/nvram/zt4.cfg", 1, false}),
    [](const ::testing::TestParamInfo<Replacement>& row) { return std::string(row.param.label); });

}  // namespace
