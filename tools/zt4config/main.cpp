#include <syslog.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <string>

#include "cli.hpp"

// The library reads the host's debug level; exported so that the shared library can see it
// (the build hides symbols by default).
__attribute__((visibility("default"))) int debug_level = 0;

namespace cli {

std::vector<Command>& registry() {
    static std::vector<Command> all;
    return all;
}

Registration::Registration(const Command& command) { registry().push_back(command); }

const std::vector<Command>& commands() {
    std::vector<Command>& all = registry();
    std::stable_sort(all.begin(), all.end(),
                     [](const Command& a, const Command& b) { return a.order < b.order; });
    return all;
}

namespace {

void printUsage(std::ostream& out) {
    out << "usage: zt4config [--root DIR] [--debug N] COMMAND [ARGS...]\n\n"
           "  --root DIR   work on the device tree under DIR (sets ZT4_ROOT)\n"
           "  --debug N    library debug level (default 0)\n\ncommands:\n";
    for (const Command& command : commands()) {
        std::string synopsis = command.synopsis;
        size_t start = 0;
        while (start < synopsis.size()) {
            size_t end = synopsis.find('\n', start);
            if (end == std::string::npos) end = synopsis.size();
            out << "  " << synopsis.substr(start, end - start) << "\n";
            start = end + 1;
        }
    }
}

int runHelp(const Args&) {
    printUsage(std::cout);
    return kExitOk;
}

const Registration help({"help", "help                      this text", 1000, runHelp});

}  // namespace

int usageError(const std::string& message) {
    std::cerr << "zt4config: " << message << "\n";
    printUsage(std::cerr);
    return kExitUsage;
}

int printJson(json_t* owned) {
    if (owned == nullptr) return kExitFailed;
    char* text = json_dumps(owned, JSON_INDENT(2) | JSON_PRESERVE_ORDER | JSON_ENCODE_ANY);
    json_decref(owned);
    if (text == nullptr) return kExitFailed;
    std::cout << text << std::endl;
    std::free(text);
    return kExitOk;
}

json_t* jsonArgument(const std::string& textOrDash) {
    std::string text = textOrDash;
    if (textOrDash == "-") {
        text.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
    }
    json_error_t error;
    json_t* value = json_loads(text.c_str(), JSON_REJECT_DUPLICATES, &error);
    if (value == nullptr) {
        std::cerr << "zt4config: invalid JSON: " << error.text << " (line " << error.line
                  << ", column " << error.column << ")\n";
    }
    return value;
}

bool parseNumber(const std::string& text, long long& value) {
    if (text.empty()) return false;
    char* end = nullptr;
    errno = 0;
    value = std::strtoll(text.c_str(), &end, 10);
    return errno == 0 && end && *end == '\0';
}

unsigned connectorNumber(const std::string& text) {
    long long number = 0;
    if (!parseNumber(text, number) || number < 1 || number > 6) return 0;
    return static_cast<unsigned>(number);
}

}  // namespace cli

int main(int argc, char** argv) {
    using namespace cli;
    int index = 1;
    while (index < argc && argv[index][0] == '-' && argv[index][1] == '-') {
        std::string option = argv[index];
        if (index + 1 >= argc) return usageError("option " + option + " needs a value");
        std::string value = argv[index + 1];
        if (option == "--root") {
            setenv("ZT4_ROOT", value.c_str(), 1);
        } else if (option == "--debug") {
            long long level = 0;
            if (!parseNumber(value, level) || level < 0 || level > 9) {
                return usageError("--debug takes a number from 0 to 9");
            }
            debug_level = static_cast<int>(level);
        } else {
            return usageError("unknown option " + option);
        }
        index += 2;
    }
    if (index >= argc) return usageError("no command given");
    std::string name = argv[index];
    Args args(argv + index + 1, argv + argc);
    for (const Command& command : commands()) {
        if (name == command.name) {
            // Every library message also reaches stderr.
            openlog("zt4config", LOG_PERROR, LOG_USER);
            int status = command.run(args);
            closelog();
            return status;
        }
    }
    return usageError("unknown command " + name);
}
