// zt4config led on|off|blink|heartbeat NAME: drives one front-panel LED.
#include <string>

#include "cli.hpp"
#include "zt4config.h"

namespace {

struct LedAction {
    const char* word;
    int (*apply)(const char* name);
};

const LedAction kActions[] = {
    {"on", leds_on},
    {"off", leds_off},
    {"blink", leds_blink},
    {"heartbeat", leds_heartbeat},
};

int runLed(const cli::Args& args) {
    if (args.size() != 2) return cli::usageError("led takes an action and an LED name");
    const std::string& name = args[1];
    if (name.empty() || name.find('/') != std::string::npos) {
        return cli::usageError("led: '" + name + "' is not an LED name");
    }
    for (const LedAction& action : kActions) {
        if (args[0] == action.word) return cli::exitFor(action.apply(name.c_str()));
    }
    return cli::usageError("led: unknown action '" + args[0] + "' (on, off, blink, heartbeat)");
}

const cli::Registration r({"led",
                           "led on|off|blink|heartbeat NAME\n"
                           "                          switch on, off, blink or pulse an LED",
                           600, runLed});

}  // namespace
