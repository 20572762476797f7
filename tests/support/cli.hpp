// Runs the command-line tool (env ZT4_CLI, a command line that may start with an emulator) on a
// test's device root.
#pragma once

#include <jansson.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace zt4test {

// The tool's exit status (-1 when it could not run or did not exit), its stdout in `output`, and
// its stderr too unless `withStderr` is false.
inline int runCli(const std::string& root, const std::string& arguments, std::string& output,
                  bool withStderr = true) {
    const char* cli = std::getenv("ZT4_CLI");
    if (cli == nullptr) return -1;
    const std::string command = std::string(cli) + " --root '" + root + "' " + arguments +
                                (withStderr ? " 2>&1" : " 2>/dev/null");
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return -1;
    output.clear();
    char buffer[4096];
    size_t got;
    while ((got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) output.append(buffer, got);
    const int status = pclose(pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// The tool's stdout parsed as JSON (a new reference; nullptr when it is not JSON), its exit status
// in `status`.
inline json_t* runCliJson(const std::string& root, const std::string& arguments, int& status) {
    std::string output;
    status = runCli(root, arguments, output, false);
    return json_loads(output.c_str(), JSON_DECODE_ANY, nullptr);
}

}  // namespace zt4test
