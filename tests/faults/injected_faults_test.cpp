// Injected I/O faults: every writing command of the tool runs once cleanly, to learn how many
// calls it makes of each libc function, and then again once for each of those calls, that call
// failing with ENOSPC or EIO (libfiu's POSIX wrappers, steered by kth_call_fault.c). After each
// failing run: no crash or hang, exit status 1 with an error line, or 0 with the complete new
// files; every file of the device tree is byte for byte as before or as after the clean run
// (a file written in place may hold the first part of its new content, and the rows say which).
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <jansson.h>

#include "support/harness.hpp"

namespace fs = std::filesystem;

namespace {

using Tree = std::map<std::string, std::string>;  // device path -> content

// The libc calls that are made to fail, by their short names.
struct Point {
    const char* name;
    const char* fiu;
};
constexpr Point kPoints[] = {
    {"open", "posix/io/oc/open"},         {"fopen", "posix/stdio/oc/fopen"},
    {"fdopen", "posix/stdio/oc/fdopen"},  {"write", "posix/io/rw/write"},
    {"pwrite", "posix/io/rw/pwrite"},     {"fwrite", "posix/stdio/rw/fwrite"},
    {"fprintf", "posix/stdio/sp/fprintf"}, {"fputs", "posix/stdio/gp/fputs"},
    {"fflush", "posix/stdio/fflush"},     {"fsync", "posix/io/sync/fsync"},
    {"fdatasync", "posix/io/sync/fdatasync"}, {"rename", "posix/io/dir/rename"},
    {"fclose", "posix/stdio/oc/fclose"},  {"ftruncate", "posix/io/rw/ftruncate"},
};

// One writing operation of the tool. `@` in the arguments stands for the path of `input`.
struct Writer {
    const char* label;
    std::vector<std::string> prepare;  // a device file and its content, pairwise, set beforehand
    std::vector<std::string> args;
    std::string input;
    std::vector<std::string> changes;  // the device files a clean run rewrites, exactly
    std::vector<std::string> scratch;  // files a failed run may leave behind (not stored files)
    std::vector<std::string> inPlace;  // files written in place: old, or a prefix of the new
    std::vector<std::string> made;     // calls the clean run must make at least once
    std::string between;               // a file's state after a first of two commits
    std::string betweenContent;        // ... its complete content
    std::string loose;                 // lines of an in-place file that a failure may change
    std::string program;               // the program run instead of the tool
};

void PrintTo(const Writer& w, std::ostream* out) { *out << w.label; }

std::string readAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

void writeAll(const fs::path& path, const std::string& content) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
}

Tree snapshot(const fs::path& root) {
    Tree tree;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        if (!entry.is_regular_file()) continue;
        tree["/" + fs::relative(entry.path(), root).generic_string()] = readAll(entry.path());
    }
    return tree;
}

struct ToolRun {
    int status = -1;    // exit status, or -signal
    std::string errors; // stderr
    std::map<std::string, unsigned long> calls;
};

const char* pointList() {
    static std::string list;
    if (list.empty()) {
        for (const Point& p : kPoints) list += std::string(list.empty() ? "" : ",") + p.fiu;
    }
    return list.c_str();
}

// Runs the tool on `root`, with the `nth` call through `point` failing (none when nth is 0).
ToolRun runTool(const std::string& tool, const fs::path& work, const fs::path& root,
            const std::vector<std::string>& args, const std::string& point, unsigned long nth,
            int error) {
    const fs::path report = work / "calls";
    const fs::path errors = work / "stderr";
    fs::remove(report);
    std::vector<std::string> words = {tool, "--root", root.string()};
    words.insert(words.end(), args.begin(), args.end());
    std::vector<std::string> environment;
    for (char** e = environ; *e != nullptr; ++e) environment.emplace_back(*e);
    environment.push_back(std::string("LD_PRELOAD=") + ZT4_FAULT_PRELOAD);
    environment.push_back(std::string("ZT4_FAULT_POINTS=") + pointList());
    environment.push_back("ZT4_FAULT_REPORT=" + report.string());
    if (nth > 0) {
        environment.push_back("ZT4_FAULT_POINT=" + point);
        environment.push_back("ZT4_FAULT_NTH=" + std::to_string(nth));
        environment.push_back("ZT4_FAULT_ERRNO=" + std::to_string(error));
    }
    std::vector<char*> argv, envp;
    for (std::string& w : words) argv.push_back(w.data());
    argv.push_back(nullptr);
    for (std::string& e : environment) envp.push_back(e.data());
    envp.push_back(nullptr);

    ToolRun run;
    const pid_t child = fork();
    if (child == 0) {
        const int out = open("/dev/null", O_WRONLY);
        const int err = open(errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (out >= 0) dup2(out, 1);
        if (err >= 0) dup2(err, 2);
        alarm(20);  // a hang ends as SIGALRM
        execve(argv[0], argv.data(), envp.data());
        _exit(127);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) return run;
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    run.errors = readAll(errors);
    std::ifstream in(report);
    std::string name;
    unsigned long count = 0;
    while (in >> name >> count) run.calls[name] = count;
    return run;
}

// Which calls of a point are made to fail: all of them, or for the hundreds of small writes
// that dumping a document makes, the first and last 16 and 16 spread in between.
std::vector<unsigned long> callsToFail(unsigned long count) {
    std::vector<unsigned long> chosen;
    if (count <= 48) {
        for (unsigned long k = 1; k <= count; ++k) chosen.push_back(k);
        return chosen;
    }
    for (unsigned long k = 1; k <= 16; ++k) chosen.push_back(k);
    for (unsigned long i = 1; i <= 16; ++i) chosen.push_back(16 + i * (count - 32) / 17);
    for (unsigned long k = count - 15; k <= count; ++k) chosen.push_back(k);
    return chosen;
}

bool startsWith(const std::string& text, const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

// What a file written in place holds after a failure: lines of its new content, in order, some
// possibly missing (a section that could not be read), the last one possibly cut.
bool partialOf(const std::string& complete, const std::string& partial, const std::string& loose) {
    std::istringstream lines(partial), all(complete);
    std::string line, candidate;
    while (std::getline(lines, line)) {
        if (!loose.empty() && startsWith(line, loose)) continue;
        const bool last = lines.eof();
        bool found = false;
        while (std::getline(all, candidate)) {
            if (candidate == line || (last && startsWith(candidate, line))) {
                found = true;
                break;
            }
        }
        if (!found) return false;
    }
    return true;
}

// Two documents with the same members (a document may be rewritten with its keys in another
// order when a section had to be rebuilt).
bool sameDocument(const std::string& a, const std::string& b) {
    json_error_t error;
    json_t* left = json_loads(a.c_str(), 0, &error);
    json_t* right = json_loads(b.c_str(), 0, &error);
    const bool same = left != nullptr && right != nullptr && json_equal(left, right);
    json_decref(left);
    json_decref(right);
    return same;
}

// A line that says why: the library's "error.[...]" and "... FAILED ..." lines, the tool's own.
bool saysWhy(const std::string& errors) {
    for (const char* word : {"error", "FAILED", "cannot", "unable to"})
        if (errors.find(word) != std::string::npos) return true;
    return false;
}

bool contains(const std::vector<std::string>& list, const std::string& item) {
    for (const std::string& x : list)
        if (x == item) return true;
    return false;
}

const std::string kNvram = "/home/nvram/";
const std::string kUser = kNvram + "zt4config.json";
const std::string kUserTmp = kNvram + "zt4configuration-tmp.json";
const std::string kSystem = kNvram + "zt4system.json";
const std::string kSystemTmp = kNvram + "zt4system-tmp.json";
const std::string kFlat = kNvram + "zt4.cfg";
const std::string kEeprom = "/sys/bus/i2c/devices/0-0050/eeprom";

std::string exampleFile(const std::string& devicePath) {
    return readAll(fs::path(ZT4_EXAMPLE_DEVICE) / devicePath.substr(1));
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const size_t at = text.find(from);
    if (at != std::string::npos) text.replace(at, from.size(), to);
    return text;
}

// The FRAM image of the example at layout 1: its version byte (offset 4096) set to 1.
std::string eepromAtLayout1() {
    std::string image = exampleFile(kEeprom);
    if (image.size() > 4096) image[4096] = 1;
    return image;
}

// The user document of the example after a merge's first step (its "Web" replaced).
std::string userWithFrench() {
    return replaced(exampleFile(kUser), "\"Language\": \"en\"", "\"Language\": \"fr\"");
}

// The user document of the example without one section, written as the library writes.
std::string userWithout(const char* section) {
    json_error_t error;
    json_t* document = json_loads(exampleFile(kUser).c_str(), 0, &error);
    json_object_del(document, section);
    char* text = json_dumps(document, JSON_PRESERVE_ORDER | JSON_ENSURE_ASCII | JSON_INDENT(17));
    std::string result = text != nullptr ? text : "";
    free(text);
    json_decref(document);
    return result;
}

const char kEthernet[] =
    R"({"AddressIP": "10.0.0.9", "Netmask": "255.0.0.0", "GW": "10.0.0.1", "Dns": "10.0.0.2"})";
const char kOldFlatFile[] =
    "Static_AddressIP=\"192.168.10.42\"\nStatic_Netmask=\"255.255.255.0\"\n"
    "Static_GW=\"192.168.10.1\"\nStatic_Dns=\"192.168.10.1\"\nWeb_Language=\"en\"\n";

std::vector<Writer> writers() {
    const std::string calibration = kNvram + "zt4calibration.cfg";
    return {
        {"userSection", {}, {"set", "web", R"({"Language": "fr"})"}, "", {kUser}, {kUserTmp}, {},
         {"open", "fdopen", "fwrite", "fflush", "rename"}, "", "", "", ""},
        {"systemSection", {}, {"system", "set", "web", R"({"Debug": 0})"}, "", {kSystem},
         {kSystemTmp}, {}, {"open", "fdopen", "fwrite", "fflush", "rename"}, "", "", "", ""},
        {"webSection", {}, {"web", "set", "modbus",
                            R"({"Enable": 1, "Version": 2, "Interface": "TCP", "RTUBaudrate": 9600, "Parity": 1, "ID": 17})"},
         "", {kUser}, {kUserTmp}, {}, {"fdopen", "fwrite", "rename"}, "", "", "", ""},
        // Replaces "Web" (a first complete write), then adds "Note" (the second).
        {"userMerge", {}, {"merge", "user", "@"}, R"({"Web": {"Language": "fr"}, "Note": {"By": 1}})",
         {kUser}, {kUserTmp}, {}, {"fdopen", "fwrite", "fflush", "rename"}, kUser,
         userWithFrench(), "", ""},
        {"systemMerge", {}, {"merge", "system", "@"}, R"({"Web": {"Debug": 0}})", {kSystem},
         {kSystemTmp}, {}, {"fdopen", "fwrite", "rename"}, "", "", "", ""},
        // The take-up writes the user document directly, in place, without a temporary file.
        {"complianceTakeUp", {}, {"apply", "@"}, userWithFrench(), {kUser}, {}, {kUser},
         {"open", "fdopen", "fwrite", "fflush"}, "", "", "", ""},
        // The factory's "BACnet" comes back into a user document that lost it.
        {"upgrade", {kUser, userWithout("BACnet")}, {"upgrade"}, "", {kUser}, {kUserTmp}, {},
         {"fdopen", "rename"}, "", "", "", ""},
        // The whole flat file is written in place.
        // The whole flat file is written in place; with the user document unreadable, the
        // connector lines are written from the defaults ("Connector_1_Mode=0").
        {"flatFileExport", {kFlat, kOldFlatFile}, {"export"}, "", {kFlat}, {}, {kFlat},
         {"open", "fdopen", "fprintf"}, "", "", "Connector_", ""},
        {"flatFileUpdate", {kFlat, kOldFlatFile}, {"update", "ethernet", kEthernet}, "", {kFlat},
         {kFlat + ".new"}, {}, {"open", "fdopen", "rename"}, "", "", "", ""},
        // The scratch file "zt4calibration.new" is renamed to "<file>.new", which stays, then
        // copied over the file by cp (a program of its own, run without faults).
        {"calibrationWrite", {}, {"calibration", "write", "standard", "@"}, "", {calibration,
         calibration + ".new"}, {kNvram + "zt4calibration.new"}, {}, {"open", "fdopen", "rename"},
         "", "", "", ""},
        {"framUpgrade", {kEeprom, eepromAtLayout1()}, {"fram", "upgrade"}, "", {kEeprom}, {}, {},
         {"open", "pwrite"}, "", "", "", ""},
        {"radioIdentity", {}, {"radio", "set", "deveui", "70:B3:D5:7E:D0:01:23:46"}, "",
         {kNvram + "radiodeveui"}, {}, {kNvram + "radiodeveui"}, {"fopen", "fputs"}, "", "", "", ""},
        {"radioDaemonKey", {}, {"radio", "set", "lorawan.appkey",
                                "2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3D"},
         "", {"/var/tmp/radioappkey"}, {}, {"/var/tmp/radioappkey"}, {"fopen"}, "", "", "", ""},
        {"joinTime", {}, {"radio", "join-time", "set", "1795431999"}, "", {"/var/run/timestamp_join"},
         {}, {"/var/run/timestamp_join"}, {"open", "fdopen", "fsync"}, "", "", "", ""},
        {"ledOn", {"/sys/class/leds/zt4:green:power/brightness", "0\n"},
         {"led", "on", "zt4:green:power"}, "",
         {"/sys/class/leds/zt4:green:power/brightness", "/sys/class/leds/zt4:green:power/trigger"},
         {}, {"/sys/class/leds/zt4:green:power/brightness", "/sys/class/leds/zt4:green:power/trigger"},
         {"fopen"}, "", "", "", ""},
        // CreateFile empties a marker file in place ("w+").
        {"createFile", {"/var/tmp/marker", "old\n"}, {"/var/tmp/marker"}, "", {"/var/tmp/marker"}, {},
         {"/var/tmp/marker"}, {"fopen", "fflush"}, "", "", "", ZT4_CREATE_FILE_DRIVER},
    };
}

class InjectedFaults : public ::testing::TestWithParam<Writer> {};

TEST_P(InjectedFaults, EveryFailingCallIsRefusedAndLosesNothing) {
    const Writer& w = GetParam();
    const char* cli = std::getenv("ZT4_CLI");
    if (cli == nullptr) GTEST_SKIP() << "ZT4_CLI not set";
    const std::string tool = w.program.empty() ? std::string(cli) : w.program;
    if (std::string(cli).find(' ') != std::string::npos)
        GTEST_SKIP() << "the tool runs under an emulator: the preloaded wrappers are host code";
    if (std::string(ZT4_FAULT_SKIP) != "") GTEST_SKIP() << ZT4_FAULT_SKIP;

    // Thousands of runs with synchronous writes: in memory (tmpfs) where there is one.
    const fs::path base = fs::is_directory("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path();
    const fs::path work = base /
                          ("zt4faults-" + std::to_string(getpid()) + "-" + w.label);
    fs::remove_all(work);
    fs::create_directories(work);
    const fs::path pristine = work / "pristine";
    const fs::path root = work / "root";
    fs::copy(ZT4_EXAMPLE_DEVICE, pristine, fs::copy_options::recursive);
    for (size_t i = 0; i + 1 < w.prepare.size(); i += 2) writeAll(pristine / w.prepare[i].substr(1), w.prepare[i + 1]);
    std::string input = w.input;
    if (std::string(w.label) == "calibrationWrite") {
        // The example's standard file as JSON, one coefficient changed.
        fs::copy(pristine, root, fs::copy_options::recursive);
        std::string shown;
        std::string command = tool + " --root '" + root.string() + "' calibration show standard 2>/dev/null";
        FILE* pipe = popen(command.c_str(), "r");
        ASSERT_NE(pipe, nullptr);
        char buffer[4096];
        size_t got;
        while ((got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) shown.append(buffer, got);
        pclose(pipe);
        input = replaced(shown, "\"CalVnom\": 230.0", "\"CalVnom\": 231.5");
        ASSERT_NE(input, shown);
        fs::remove_all(root);
    }
    std::vector<std::string> args = w.args;
    for (std::string& a : args)
        if (a == "@") a = (work / "input.json").string();
    writeAll(work / "input.json", input);

    const Tree before = snapshot(pristine);
    fs::copy(pristine, root, fs::copy_options::recursive);
    const ToolRun clean = runTool(tool, work, root, args, "", 0, 0);
    ASSERT_EQ(clean.status, 0) << clean.errors;
    const Tree after = snapshot(root);
    // The clean run rewrites exactly the files of the row.
    std::set<std::string> changed;
    for (const auto& [path, content] : after) {
        const auto old = before.find(path);
        if (old == before.end() || old->second != content) changed.insert(path);
    }
    for (const auto& [path, content] : before)
        if (after.count(path) == 0) changed.insert(path + " (removed)");
    EXPECT_EQ(changed, std::set<std::string>(w.changes.begin(), w.changes.end()));
    for (const std::string& name : w.made) {
        std::string fiu;
        for (const Point& p : kPoints)
            if (name == p.name) fiu = p.fiu;
        EXPECT_GT(clean.calls.at(fiu), 0UL) << name << " is never called: the preload is not active";
    }

    unsigned long injected = 0;
    std::string table;
    for (const Point& point : kPoints) {
        const unsigned long count = clean.calls.count(point.fiu) ? clean.calls.at(point.fiu) : 0;
        unsigned long kept = 0, committed = 0, partial = 0, succeeded = 0;
        for (const unsigned long k : callsToFail(count)) {
            for (const int error : {ENOSPC, EIO}) {
                fs::remove_all(root);
                fs::copy(pristine, root, fs::copy_options::recursive);
                const ToolRun run = runTool(tool, work, root, args, point.fiu, k, error);
                const Tree now = snapshot(root);
                ++injected;
                const std::string where = std::string(point.name) + " call " + std::to_string(k) +
                                          " of " + std::to_string(count) + " (" +
                                          std::strerror(error) + ")";
                ASSERT_TRUE(run.status == 0 || run.status == 1)
                    << where << ": status " << run.status << "\n" << run.errors;
                bool asBefore = true, cut = false;
                std::set<std::string> paths;
                for (const auto& e : before) paths.insert(e.first);
                for (const auto& e : after) paths.insert(e.first);
                for (const auto& e : now) paths.insert(e.first);
                for (const std::string& path : paths) {
                    if (contains(w.scratch, path)) continue;
                    const auto b = before.find(path), a = after.find(path), n = now.find(path);
                    const bool isBefore = (b == before.end()) == (n == now.end()) &&
                                          (n == now.end() || n->second == b->second);
                    const bool isAfter = (a == after.end()) == (n == now.end()) &&
                                         (n == now.end() || n->second == a->second ||
                                          (path.size() > 5 && path.compare(path.size() - 5, 5, ".json") == 0 &&
                                           sameDocument(n->second, a->second)));
                    if (!isBefore) asBefore = false;
                    if (run.status == 0) {
                        EXPECT_TRUE(isAfter) << where << ": reported success, " << path
                                             << " is not the new version";
                        continue;
                    }
                    const bool isBetween = path == w.between && n != now.end() &&
                                           n->second == w.betweenContent;
                    const bool isPrefix = contains(w.inPlace, path) && n != now.end() &&
                                          a != after.end() && partialOf(a->second, n->second, w.loose);
                    if (!isBefore && !isAfter && !isBetween && isPrefix) cut = true;
                    EXPECT_TRUE(isBefore || isAfter || isBetween || isPrefix)
                        << where << ": " << path << " damaged:\n"
                        << (n == now.end() ? std::string("(missing)") : n->second.substr(0, 400));
                }
                if (run.status == 1) {
                    EXPECT_TRUE(saysWhy(run.errors)) << where << ": refused without an error line";
                    (asBefore ? kept : cut ? partial : committed) += 1;
                } else {
                    ++succeeded;
                }
            }
        }
        if (count > 0) {
            table += std::string(w.label) + " " + point.name + " " + std::to_string(count) +
                     " calls: refused/unchanged " + std::to_string(kept) + ", refused/committed " +
                     std::to_string(committed) + ", refused/partial " + std::to_string(partial) +
                     ", succeeded " + std::to_string(succeeded) + "\n";
        }
    }
    EXPECT_GT(injected, 0UL);
    std::printf("%s", table.c_str());
    fs::remove_all(work);
}

INSTANTIATE_TEST_SUITE_P(Writers, InjectedFaults, ::testing::ValuesIn(writers()),
                         [](const ::testing::TestParamInfo<Writer>& row) {
                             return std::string(row.param.label);
                         });

}  // namespace

namespace {

// The calibration writers' last step copies "<file>.new" over the file with cp, in place. A cp
// that fails after emptying the file (what a full partition does to it) leaves the file empty,
// the complete new version in "<file>.new", and the writer reports cp's status.
TEST(CalibrationCopy, FailingCpLeavesTheNewVersionBeside) {
    const char* cli = std::getenv("ZT4_CLI");
    if (cli == nullptr) GTEST_SKIP() << "ZT4_CLI not set";
    const std::string tool = cli;
    if (tool.find(' ') != std::string::npos) GTEST_SKIP() << "the tool runs under an emulator";
    if (std::string(ZT4_FAULT_SKIP) != "") GTEST_SKIP() << ZT4_FAULT_SKIP;
    const fs::path work = fs::temp_directory_path() / ("zt4cp-" + std::to_string(getpid()));
    fs::remove_all(work);
    fs::create_directories(work / "bin");
    const fs::path root = work / "root";
    fs::copy(ZT4_EXAMPLE_DEVICE, root, fs::copy_options::recursive);
    const std::string file = "home/nvram/zt4calibration_threephase.cfg";
    const std::string old = readAll(root / file);
    // A document of one channel's coefficients: the file is rewritten with its lines.
    writeAll(work / "input.json",
             R"({"Connector": [{"Cnl": [{"CalVnom": 231.5, "CalInom": 5.0, "CalPref": 3600}]}]})");
    writeAll(work / "bin/cp", "#!/bin/sh\n: > \"$2\"\nexit 1\n");
    fs::permissions(work / "bin/cp", fs::perms::owner_all);
    const std::string path = std::getenv("PATH") != nullptr ? std::getenv("PATH") : "/bin:/usr/bin";
    setenv("PATH", ((work / "bin").string() + ":" + path).c_str(), 1);
    const ToolRun run = runTool(tool, work, root,
                                {"calibration", "write", "threephase", (work / "input.json").string()}, "", 0, 0);
    setenv("PATH", path.c_str(), 1);
    EXPECT_EQ(run.status, 1) << run.errors;
    EXPECT_NE(run.errors.find("return 256"), std::string::npos) << run.errors;
    EXPECT_EQ(readAll(root / file), "");
    const std::string kept = readAll(root / (file + ".new"));
    EXPECT_NE(kept, old);
    EXPECT_NE(kept.find("Connect_1_Cnl_1_CalVnom=231.50\n"), std::string::npos) << kept;
    fs::remove_all(work);
}

}  // namespace
