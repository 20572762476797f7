// The zt4config command-line tool: JSON on stdout, diagnostics on stderr, exit status 0 on
// success, 1 when the library refuses or fails, 2 on a usage error.
#pragma once

#include <jansson.h>

#include <string>
#include <vector>

namespace cli {

using Args = std::vector<std::string>;

constexpr int kExitOk = 0;
constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;

struct Command {
    const char* name;      // first word of the command line
    const char* synopsis;  // lines of the help text, without the program name
    int order;             // position in the help text
    int (*run)(const Args& args);  // args: the words after the command name
};

// Each command file registers its commands with a static Registration.
struct Registration {
    explicit Registration(const Command& command);
};
const std::vector<Command>& commands();

// Prints `message` and the usage to stderr; returns kExitUsage.
int usageError(const std::string& message);
// Prints a value the caller owns as indented JSON on stdout and releases it. A null value is a
// failure (the library has logged why): kExitFailed.
int printJson(json_t* owned);
// Reads a JSON document from the argument text, or from stdin when the argument is "-".
json_t* jsonArgument(const std::string& textOrDash);
// Parses a whole decimal number into `value`; false when the text is not one.
bool parseNumber(const std::string& text, long long& value);
// The connector number of "connector N", or 0 when the text is not a number from 1 to 6.
unsigned connectorNumber(const std::string& text);
// The exit status for a library result code (0 success).
inline int exitFor(int result) { return result == 0 ? kExitOk : kExitFailed; }

}  // namespace cli
