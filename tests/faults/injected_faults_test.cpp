// Writing commands under injected I/O faults, and the order of their system calls.
// InjectedFaults: a row runs once cleanly, counting its calls of each libc function, then once per
// call with that call failing (ENOSPC, EIO; libfiu's wrappers steered by kth_call_fault.c). Each
// failing run exits 1 with an error line, or 0 with the complete new files; every file is byte for
// byte as before or as after the clean run (or, where the row says, a prefix of the new content).
// WriteOrder (strace): a replaced document's temporary file is opened, written and synced before
// it is renamed over the document, and a sync follows the last rename.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <jansson.h>

#include "common/json_ref.hpp"
#include "support/harness.hpp"

namespace fs = std::filesystem;

namespace {

using Tree = std::map<std::string, std::string>;  // device path -> content
using Strings = std::vector<std::string>;

// The libfiu points of the libc calls that are made to fail; the last word names the call.
const char* const kPoints[] = {"posix/io/oc/open", "posix/stdio/oc/fopen", "posix/stdio/oc/fdopen", "posix/io/rw/write",
    "posix/io/rw/pwrite", "posix/stdio/rw/fwrite", "posix/stdio/sp/fprintf", "posix/stdio/gp/fputs", "posix/stdio/fflush",
    "posix/io/sync/fsync", "posix/io/sync/fdatasync", "posix/io/dir/rename", "posix/stdio/oc/fclose", "posix/io/rw/ftruncate"};
std::string callOf(const std::string& point) { return point.substr(point.rfind('/') + 1); }

const std::string kNvram = "/home/nvram/", kUser = kNvram + "zt4config.json",
                  kUserTmp = kNvram + "zt4configuration-tmp.json", kSystem = kNvram + "zt4system.json",
                  kSystemTmp = kNvram + "zt4system-tmp.json", kFlat = kNvram + "zt4.cfg",
                  kCalibration = kNvram + "zt4calibration.cfg", kEeprom = "/sys/bus/i2c/devices/0-0050/eeprom",
                  kLed = "/sys/class/leds/zt4:green:power/";

using zt4test::exampleFile;
std::string readAll(const fs::path& path) { return zt4test::readText(path.string()); }
void writeAll(const fs::path& path, const std::string& content) { zt4test::writeText(path.string(), content); }


bool startsWith(const std::string& text, const std::string& prefix) { return text.compare(0, prefix.size(), prefix) == 0; }
bool contains(const Strings& list, const std::string& item) {
    for (const std::string& x : list) if (x == item) return true;
    return false;
}

// The example's FRAM image at layout 1 (version byte, offset 4096, set to 1).
std::string eepromAtLayout1() {
    std::string image = exampleFile(kEeprom);
    if (image.size() > 4096) image[4096] = 1;
    return image;
}
// The example's user document after a merge's first step ("Web" replaced).
std::string userWithFrench() {
    std::string text = exampleFile(kUser);
    return text.replace(text.find("\"Language\": \"en\""), 16, "\"Language\": \"fr\"");
}
// The example's user document without "BACnet", written as the library writes.
std::string userWithoutBACnet() {
    const zt4::JsonRef document(zt4test::exampleJson(kUser));
    json_object_del(document.get(), "BACnet");
    char* text = json_dumps(document.get(), JSON_PRESERVE_ORDER | JSON_ENSURE_ASCII | JSON_INDENT(17));
    const std::string result = text != nullptr ? text : "";
    free(text);
    return result;
}

const char kCalibrationInput[] = R"({"Connector": [{"Cnl": [{"CalVnom": 231.5, "CalInom": 5.0, "CalPref": 3600}]}]})";
const char kEthernet[] = R"({"AddressIP": "10.0.0.9", "Netmask": "255.0.0.0", "GW": "10.0.0.1", "Dns": "10.0.0.2"})";
const char kOldFlatFile[] = "Static_AddressIP=\"192.168.10.42\"\nStatic_Netmask=\"255.255.255.0\"\n"
                            "Static_GW=\"192.168.10.1\"\nStatic_Dns=\"192.168.10.1\"\nWeb_Language=\"en\"\n";

// One writing operation, of the tool or of the driver (fault_driver.c). "@" in the arguments
// stands for the path of `input`.
struct Writer {
    const char* label;
    Strings prepare = {};      // device files and their contents, pairwise, set beforehand
    Strings args = {};
    std::string input = "";
    Strings changes = {};      // the device files a clean run rewrites, exactly
    Strings scratch = {};      // files a failed run may leave behind (not stored files)
    Strings inPlace = {};      // files written in place: old, or a prefix of the new
    Strings made = {};         // calls the clean run must make at least once
    std::string between = "", betweenContent = "";  // a file's state after a first of two commits
    std::string loose = "";     // lines of an in-place file that a failure may change
    bool driver = false;        // run by the driver instead of the tool
    const char* temporary = nullptr;  // WriteOrder: the temporary file renamed over changes[0]
    int renames = 0;                  // ... how many times
    bool synchronous = true;          // ... opened with O_SYNC
    std::vector<std::pair<size_t, size_t>> blocks = {};  // (offset, size): changes[0] may mix old and new blocks
};
void PrintTo(const Writer& w, std::ostream* out) { *out << w.label; }

std::vector<Writer> writers() {
    const Strings replace = {"open", "fdopen", "fwrite", "fflush", "rename"};
    return {
        // A section writer merges twice (existing keys, then new ones): two replacements.
        {"userSection", {}, {"set", "web", R"({"Language": "fr"})"}, "", {kUser}, {kUserTmp}, {}, replace,
         "", "", "", false, "/home/nvram/zt4configuration-tmp.json", 2},
        {"systemSection", {}, {"system", "set", "web", R"({"Debug": 0})"}, "", {kSystem}, {kSystemTmp}, {}, replace,
         "", "", "", false, "/home/nvram/zt4system-tmp.json", 2},
        {"webSection", {}, {"web", "set", "modbus", R"({"Enable": 1, "Version": 2, "Interface": "TCP", "RTUBaudrate": 9600, "Parity": 1, "ID": 17})"},
         "", {kUser}, {kUserTmp}, {}, {"fdopen", "fwrite", "rename"}},
        // Replaces "Web" (a first complete write), then adds "Note" (the second).
        {"userMerge", {}, {"merge", "user", "@"}, R"({"Web": {"Language": "fr"}, "Note": {"By": 1}})", {kUser}, {kUserTmp}, {},
         {"fdopen", "fwrite", "fflush", "rename"}, kUser, userWithFrench(), "", false, "/home/nvram/zt4configuration-tmp.json", 2},
        {"systemMerge", {}, {"merge", "system", "@"}, R"({"Web": {"Debug": 0}})", {kSystem}, {kSystemTmp}, {}, {"fdopen", "fwrite", "rename"}},
        // The take-up writes the user document directly, in place, without a temporary file.
        {"complianceTakeUp", {}, {"apply", "@"}, userWithFrench(), {kUser}, {}, {kUser}, {"open", "fdopen", "fwrite", "fflush"}},
        // The factory's "BACnet" comes back into a user document that lost it.
        {"upgrade", {kUser, userWithoutBACnet()}, {"upgrade"}, "", {kUser}, {kUserTmp}, {}, {"fdopen", "rename"},
         "", "", "", false, "/home/nvram/zt4configuration-tmp.json", 1},
        // The whole flat file is written in place; with the user document unreadable, the
        // connector lines are written from the defaults ("Connector_1_Mode=0").
        {"flatFileExport", {kFlat, kOldFlatFile}, {"export"}, "", {kFlat}, {}, {kFlat}, {"open", "fdopen", "fprintf"}, "", "", "Connector_"},
        // "zt4.cfg.new" is written through a plain stream and synced before the rename.
        {"flatFileUpdate", {kFlat, kOldFlatFile}, {"update", "ethernet", kEthernet}, "", {kFlat}, {kFlat + ".new"}, {},
         {"open", "fdopen", "rename"}, "", "", "", false, "/home/nvram/zt4.cfg.new", 1, false},
        // The scratch file "zt4calibration.new" is renamed to "<file>.new", which stays, then
        // copied over the file by cp (a program of its own, run without faults).
        {"calibrationWrite", {}, {"calibration", "write", "standard", "@"}, kCalibrationInput, {kCalibration, kCalibration + ".new"},
         {kNvram + "zt4calibration.new"}, {}, {"open", "fdopen", "rename"}},
        {"framUpgrade", {kEeprom, eepromAtLayout1()}, {"fram", "upgrade"}, "", {kEeprom}, {}, {}, {"open", "pwrite"}},
        {"radioIdentity", {}, {"radio", "set", "deveui", "70:B3:D5:7E:D0:01:23:46"}, "", {kNvram + "radiodeveui"}, {},
         {kNvram + "radiodeveui"}, {"fopen", "fputs"}},
        {"radioDaemonKey", {}, {"radio", "set", "lorawan.appkey", "2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3D"}, "",
         {"/var/tmp/radioappkey"}, {}, {"/var/tmp/radioappkey"}, {"fopen"}},
        {"joinTime", {}, {"radio", "join-time", "set", "1795431999"}, "", {"/var/run/timestamp_join"}, {},
         {"/var/run/timestamp_join"}, {"open", "fdopen", "fsync"}},
        {"ledOn", {kLed + "brightness", "0\n"}, {"led", "on", "zt4:green:power"}, "", {kLed + "brightness", kLed + "trigger"}, {},
         {kLed + "brightness", kLed + "trigger"}, {"fopen"}},
        // CreateFile empties a marker file in place ("w+").
        {"createFile", {"/var/tmp/marker", "old\n"}, {"create", "/var/tmp/marker"}, "", {"/var/tmp/marker"}, {},
         {"/var/tmp/marker"}, {"fopen", "fflush"}, "", "", "", true},
        // The FRAM writers store their blocks through one open, in place, from an image of the
        // driver's pattern: the six energy blocks (4, 5, 7, 56, 57, 59) or one counter block;
        // the clean run changes no byte outside them.
        // The energy writer goes on after a block that fails: each block is old or new.
        {"framEnergies", {}, {"energies"}, "", {kEeprom}, {}, {}, {"open", "pwrite"}, "", "", "", true, nullptr, 0, true,
         {{192, 96}, {288, 96}, {480, 96}, {576, 96}, {672, 96}, {864, 96}}},
        {"framOperatingTime", {}, {"counter", "operating-time"}, "", {kEeprom}, {}, {}, {"open", "pwrite"}, "", "", "", true, nullptr, 0, true, {{960, 96}}},
        {"framStartups", {}, {"counter", "startup"}, "", {kEeprom}, {}, {}, {"open", "pwrite"}, "", "", "", true, nullptr, 0, true, {{1056, 96}}},
        {"framSags", {}, {"counter", "sag"}, "", {kEeprom}, {}, {}, {"open", "pwrite"}, "", "", "", true, nullptr, 0, true, {{1152, 12}}},
        {"framSwells", {}, {"counter", "swell"}, "", {kEeprom}, {}, {}, {"open", "pwrite"}, "", "", "", true, nullptr, 0, true, {{1164, 12}}},
        {"framOverCurrents", {}, {"counter", "over-current"}, "", {kEeprom}, {}, {}, {"open", "pwrite"}, "", "", "", true, nullptr, 0, true, {{1176, 72}}},
    };
}

// A row's work folder: a pristine device tree (the example with the row's files), its input.
struct Workspace {
    fs::path work, pristine, root;
    Strings command;  // program and arguments, before "--root DIR" is inserted after the program
};

std::string tool() { return std::getenv("ZT4_CLI") != nullptr ? std::getenv("ZT4_CLI") : ""; }

// Runs `command` with "--root ROOT" after the program, stdout to /dev/null, stderr to `errors`,
// with `environment` added; the exit status, or -signal (-1 when it could not run).
int run(const Strings& command, const fs::path& root, const fs::path& errors, const Strings& environment) {
    Strings words = {command[0], "--root", root.string()};
    words.insert(words.end(), command.begin() + 1, command.end());
    Strings env(environment);
    for (char** e = environ; *e != nullptr; ++e) env.emplace_back(*e);  // the first of a name wins
    std::vector<char*> argv, envp;
    for (std::string& w : words) argv.push_back(w.data());
    for (std::string& e : env) envp.push_back(e.data());
    argv.push_back(nullptr);
    envp.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        const int out = open("/dev/null", O_WRONLY), err = open(errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (out >= 0) dup2(out, 1);
        if (err >= 0) dup2(err, 2);
        alarm(20);  // a hang ends as SIGALRM
        execve(argv[0], argv.data(), envp.data());
        _exit(127);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

Workspace prepare(const Writer& w, const char* kind) {
    Workspace s;
    const fs::path base = fs::is_directory("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path();
    s.work = base / (std::string("zt4") + kind + "-" + std::to_string(getpid()) + "-" + w.label);
    s.pristine = s.work / "pristine";
    s.root = s.work / "root";
    fs::remove_all(s.work);
    fs::create_directories(s.work);
    fs::copy(ZT4_EXAMPLE_DEVICE, s.pristine, fs::copy_options::recursive);
    for (size_t i = 0; i + 1 < w.prepare.size(); i += 2) writeAll(s.pristine / w.prepare[i].substr(1), w.prepare[i + 1]);
    writeAll(s.work / "input.json", w.input);
    s.command = {w.driver ? ZT4_FAULT_DRIVER : tool()};
    for (const std::string& a : w.args) s.command.push_back(a == "@" ? (s.work / "input.json").string() : a);
    return s;
}

Tree snapshot(const fs::path& root) {
    Tree tree;
    for (const auto& entry : fs::recursive_directory_iterator(root))
        if (entry.is_regular_file()) tree["/" + fs::relative(entry.path(), root).generic_string()] = readAll(entry.path());
    return tree;
}

// A run with the preload: the status, stderr and the calls made through each point; the `nth`
// call through `point` fails with `error` (none when nth is 0).
struct FaultRun { int status; std::string errors; std::map<std::string, unsigned long> calls; };
FaultRun runWithFault(const Workspace& s, const std::string& point, unsigned long nth, int error) {
    std::string points;
    for (const char* p : kPoints) points += (points.empty() ? "" : ",") + std::string(p);
    Strings environment = {std::string("LD_PRELOAD=") + ZT4_FAULT_PRELOAD, "ZT4_FAULT_POINTS=" + points,
                           "ZT4_FAULT_REPORT=" + (s.work / "calls").string()};
    if (nth > 0) {
        environment.insert(environment.end(), {"ZT4_FAULT_POINT=" + point, "ZT4_FAULT_NTH=" + std::to_string(nth),
                                               "ZT4_FAULT_ERRNO=" + std::to_string(error)});
    }
    fs::remove(s.work / "calls");
    FaultRun result{run(s.command, s.root, s.work / "stderr", environment), readAll(s.work / "stderr"), {}};
    std::ifstream in(s.work / "calls");
    std::string name;
    unsigned long count = 0;
    while (in >> name >> count) result.calls[name] = count;
    return result;
}

// Which calls of a point are made to fail: all of them, or for the hundreds of small writes
// that dumping a document makes, the first and last 16 and 16 spread in between.
std::vector<unsigned long> callsToFail(unsigned long count) {
    std::vector<unsigned long> chosen;
    for (unsigned long k = 1; k <= count; ++k)
        if (count <= 48 || k <= 16 || k > count - 16) chosen.push_back(k);
    for (unsigned long i = 1; count > 48 && i <= 16; ++i) chosen.push_back(16 + i * (count - 32) / 17);
    return chosen;
}

// What a file written in place holds after a failure: lines of its new content, in order, some
// possibly missing (a section that could not be read), the last one possibly cut.
bool partialOf(const std::string& complete, const std::string& partial, const std::string& loose) {
    std::istringstream lines(partial), all(complete);
    std::string line, candidate;
    while (std::getline(lines, line)) {
        if (!loose.empty() && startsWith(line, loose)) continue;
        bool found = false;
        while (!found && std::getline(all, candidate)) found = candidate == line || (lines.eof() && startsWith(candidate, line));
        if (!found) return false;
    }
    return true;
}

// Two documents with the same members (a document may be rewritten with its keys in another
// order when a section had to be rebuilt).
bool sameDocument(const std::string& a, const std::string& b) {
    const zt4::JsonRef left(json_loads(a.c_str(), 0, nullptr)), right(json_loads(b.c_str(), 0, nullptr));
    return left && right && json_equal(left.get(), right.get());
}

// A line that says why: the library's "error.[...]" and "... FAILED ..." lines, the tool's own.
bool saysWhy(const std::string& errors) {
    for (const char* word : {"error", "FAILED", "cannot", "unable to"}) if (errors.find(word) != std::string::npos) return true;
    return false;
}

// Each of `blocks` of `now` is as in `before` or as in `after`, every other byte as before.
bool blockwise(const std::string& before, const std::string& after, const std::string& now,
               const std::vector<std::pair<size_t, size_t>>& blocks) {
    if (blocks.empty() || now.size() != before.size() || after.size() != before.size()) return false;
    std::string expected = before;
    for (const auto& [offset, size] : blocks)
        if (now.compare(offset, size, before, offset, size) != 0) expected.replace(offset, size, after, offset, size);
    return now == expected;
}

// A file's content in a tree, or nullptr.
const std::string* in(const Tree& tree, const std::string& path) {
    const auto it = tree.find(path);
    return it == tree.end() ? nullptr : &it->second;
}

class InjectedFaults : public ::testing::TestWithParam<Writer> {};

TEST_P(InjectedFaults, EveryFailingCallIsRefusedAndLosesNothing) {
    const Writer& w = GetParam();
    if (tool().empty() || tool().find(' ') != std::string::npos) GTEST_SKIP() << "no tool, or it runs under an emulator (host wrappers)";
    if (std::string(ZT4_FAULT_SKIP) != "") GTEST_SKIP() << ZT4_FAULT_SKIP;
    const Workspace s = prepare(w, "faults");
    const Tree before = snapshot(s.pristine);
    fs::copy(s.pristine, s.root, fs::copy_options::recursive);
    const FaultRun clean = runWithFault(s, "", 0, 0);
    ASSERT_EQ(clean.status, 0) << clean.errors;
    const Tree after = snapshot(s.root);
    // The clean run rewrites exactly the files of the row.
    std::set<std::string> changed, paths;
    for (const auto& [path, content] : after) if (!before.count(path) || before.at(path) != content) changed.insert(path);
    for (const auto& [path, content] : before) if (!after.count(path)) changed.insert(path + " (removed)");
    EXPECT_EQ(changed, std::set<std::string>(w.changes.begin(), w.changes.end()));
    const std::string first = after.count(w.changes[0]) ? after.at(w.changes[0]) : "";
    EXPECT_TRUE(w.blocks.empty() || blockwise(before.at(w.changes[0]), first, first, w.blocks)) << "bytes outside the blocks changed";
    for (const char* point : kPoints)
        EXPECT_TRUE(!contains(w.made, callOf(point)) || clean.calls.at(point) > 0) << point << " is never called: the preload is not active";
    for (const Tree* tree : {&before, &after}) for (const auto& e : *tree) paths.insert(e.first);

    unsigned long injected = 0;
    for (const char* point : kPoints) {
        const unsigned long count = clean.calls.count(point) ? clean.calls.at(point) : 0;
        for (const unsigned long k : callsToFail(count)) {
            for (const int error : {ENOSPC, EIO}) {
                fs::remove_all(s.root);
                fs::copy(s.pristine, s.root, fs::copy_options::recursive);
                const FaultRun failed = runWithFault(s, point, k, error);
                const Tree now = snapshot(s.root);
                ++injected;
                const std::string where = callOf(point) + " call " + std::to_string(k) + " of " + std::to_string(count) +
                                          " (" + std::strerror(error) + ")";
                ASSERT_TRUE(failed.status == 0 || failed.status == 1) << where << ": status " << failed.status << "\n" << failed.errors;
                EXPECT_TRUE(failed.status == 0 || saysWhy(failed.errors)) << where << ": refused without an error line";
                std::set<std::string> all(paths);
                for (const auto& e : now) all.insert(e.first);
                for (const std::string& path : all) {
                    const std::string *b = in(before, path), *a = in(after, path), *n = in(now, path);
                    const bool isJson = path.size() > 5 && path.substr(path.size() - 5) == ".json";
                    const bool isBefore = (b == nullptr) == (n == nullptr) && (n == nullptr || *n == *b);
                    const bool isAfter = (a == nullptr) == (n == nullptr) && (n == nullptr || *n == *a || (isJson && sameDocument(*n, *a)));
                    if (contains(w.scratch, path) || isAfter || (isBefore && failed.status != 0)) continue;
                    EXPECT_NE(failed.status, 0) << where << ": reported success, " << path << " is not the new version";
                    const bool isBetween = n && path == w.between && *n == w.betweenContent;
                    const bool isPrefix = n && a && contains(w.inPlace, path) && partialOf(*a, *n, w.loose);
                    const bool isMixed = n && a && b && path == w.changes[0] && blockwise(*b, *a, *n, w.blocks);
                    EXPECT_TRUE(failed.status == 0 || isBetween || isPrefix || isMixed)
                        << where << ": " << path << " damaged:\n" << (n == nullptr ? "(missing)" : n->substr(0, 400));
                }
            }
        }
    }
    EXPECT_GT(injected, 0UL);
    RecordProperty("injected", std::to_string(injected));
    fs::remove_all(s.work);
}

INSTANTIATE_TEST_SUITE_P(Writers, InjectedFaults, ::testing::ValuesIn(writers()),
                         [](const ::testing::TestParamInfo<Writer>& row) { return std::string(row.param.label); });

// strace lines "PID name(arguments) = result" (signals, exits and unfinished calls left out).
struct Call { std::string name, arguments, result; };
std::vector<Call> readTrace(const fs::path& path) {
    static const std::regex line(R"(^\d+\s+(\w+)\((.*)\)\s+=\s+(-?\d+).*$)");
    std::vector<Call> calls;
    std::ifstream in(path);
    std::string text;
    std::smatch match;
    while (std::getline(in, text)) if (std::regex_match(text, match, line)) calls.push_back({match[1], match[2], match[3]});
    return calls;
}

class WriteOrder : public ::testing::TestWithParam<Writer> {};

TEST_P(WriteOrder, TemporaryWrittenSyncedRenamedThenSynced) {
    const Writer& w = GetParam();
    if (tool().empty() || tool().find(' ') != std::string::npos) GTEST_SKIP() << "no tool, or it runs under an emulator (strace would trace it)";
    if (std::system("strace -V >/dev/null 2>&1") != 0) GTEST_SKIP() << "strace is not installed";
    const Workspace s = prepare(w, "order");
    fs::copy(s.pristine, s.root, fs::copy_options::recursive);
    // LeakSanitizer cannot run under ptrace: in a sanitizer build the traced tool checks no leaks.
    std::string command = "ASAN_OPTIONS=detect_leaks=0 strace -f -e trace=open,openat,write,fsync,fdatasync,rename,renameat,"
                          "renameat2,sync -o '" + (s.work / "trace").string() + "' " + s.command[0] + " --root '" + s.root.string() + "'";
    for (size_t i = 1; i < s.command.size(); ++i) command += " '" + s.command[i] + "'";
    ASSERT_EQ(std::system((command + " >/dev/null 2>&1").c_str()), 0) << command;
    const std::string temporary = "\"" + s.root.string() + w.temporary + "\"", target = "\"" + s.root.string() + w.changes[0] + "\"";
    const std::vector<Call> calls = readTrace(s.work / "trace");
    ASSERT_FALSE(calls.empty()) << "nothing traced";
    int renames = 0;
    std::string fd;                                  // the temporary file's descriptor, while it is open
    bool written = false, synced = false, pendingSync = false;  // since it was opened; a rename not yet followed by a sync
    for (const Call& call : calls) {
        if ((call.name == "openat" || call.name == "open") && call.arguments.find(temporary) != std::string::npos && call.result != "-1") {
            EXPECT_NE(call.arguments.find("O_TRUNC"), std::string::npos) << call.arguments;
            EXPECT_EQ(call.arguments.find("O_SYNC") != std::string::npos, w.synchronous) << call.arguments;
            fd = call.result;
            written = synced = false;
        } else if (call.name == "write" && !fd.empty() && startsWith(call.arguments, fd + ",")) {
            written = true;
            synced = false;
        } else if ((call.name == "fsync" || call.name == "fdatasync") && !fd.empty() && call.arguments == fd) {
            synced = written;
        } else if (call.name == "sync") {  // flushes every file, the temporary's written blocks among them
            synced = synced || written;
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
    EXPECT_EQ(renames, w.renames);
    EXPECT_FALSE(pendingSync) << "no sync after the last rename";
    fs::remove_all(s.work);
}

INSTANTIATE_TEST_SUITE_P(Commands, WriteOrder, ::testing::ValuesIn([] {
                             std::vector<Writer> rows;
                             for (const Writer& w : writers()) if (w.renames > 0) rows.push_back(w);
                             return rows;
                         }()),
                         [](const ::testing::TestParamInfo<Writer>& row) { return std::string(row.param.label); });

// The calibration writers' last step copies "<file>.new" over the file with cp, in place. A cp
// that fails after emptying the file (what a full partition does to it) leaves the file empty,
// the complete new version in "<file>.new", and the writer reports cp's status.
TEST(CalibrationCopy, FailingCpLeavesTheNewVersionBeside) {
    if (tool().empty() || tool().find(' ') != std::string::npos) GTEST_SKIP() << "no tool, or it runs under an emulator";
    const Writer w{"calibrationCopy", {}, {"calibration", "write", "threephase", "@"}, kCalibrationInput};
    const Workspace s = prepare(w, "cp");
    fs::copy(s.pristine, s.root, fs::copy_options::recursive);
    const fs::path file = s.root / "home/nvram/zt4calibration_threephase.cfg";
    const std::string old = readAll(file);
    writeAll(s.work / "bin/cp", "#!/bin/sh\n: > \"$2\"\nexit 1\n");
    fs::permissions(s.work / "bin/cp", fs::perms::owner_all);
    const std::string path = std::getenv("PATH") != nullptr ? std::getenv("PATH") : "/bin:/usr/bin";
    EXPECT_EQ(run(s.command, s.root, s.work / "stderr", {"PATH=" + (s.work / "bin").string() + ":" + path}), 1);
    const std::string errors = readAll(s.work / "stderr"), kept = readAll(file.string() + ".new");
    EXPECT_NE(errors.find("return 256"), std::string::npos) << errors;
    EXPECT_EQ(readAll(file), "");
    EXPECT_NE(kept, old);
    EXPECT_NE(kept.find("Connect_1_Cnl_1_CalVnom=231.50\n"), std::string::npos) << kept;
    fs::remove_all(s.work);
}

}  // namespace
