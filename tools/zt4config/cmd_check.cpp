// zt4config check / apply: a candidate user document, checked (and filtered) as the device takes
// it up; apply also stores it as the user document.
#include <iostream>
#include <string>

#include "cli.hpp"
#include "zt4config.h"

namespace {

// The top-level sections in the order compliance reports them (number = index + 1).
constexpr const char* kSectionNames[] = {"Syntax",   "Web",    "RadioLoRa", "WiFi",
                                         "Ethernet", "Modbus", "BACnet",    "ElectricalConfiguration"};

int report(int result, uint8_t section) {
    if (result == 0) {
        std::cout << "ok" << std::endl;
        return cli::kExitOk;
    }
    if (section >= 1 && section <= 8) std::cout << unsigned{section} << " " << kSectionNames[section - 1] << std::endl;
    return cli::kExitFailed;
}

// Compliance, filter and compliance of the filtered copy, as apply runs them, writing nothing.
int checkDocument(json_t* document, uint8_t* section) {
    const int version = readJSONSyntaxVersion(document);
    auto comply = version == 1 ? checkComplianceUserConfigFileSyntaxVersion1 : checkComplianceUserConfigFileSyntaxVersion0;
    auto filter = version == 1 ? filterUserConfigFileSyntaxVersion1 : filterUserConfigFileSyntaxVersion0;
    if (comply(document, section) != 0) return -1;
    json_t* copy = json_object();
    int result = copy != nullptr && filter(document, copy) == 0 ? comply(copy, section) : -1;
    json_decref(copy);
    return result;
}

int runCheck(const cli::Args& args) {
    if (args.size() != 1) return cli::usageError("check takes one FILE");
    json_t* document = readJSONFile(args[0].c_str());
    if (document == nullptr) return cli::kExitFailed;
    uint8_t section = 0;
    const int result = checkDocument(document, &section);
    json_decref(document);
    return report(result, section);
}

int runApply(const cli::Args& args) {
    if (args.size() != 1) return cli::usageError("apply takes one FILE");
    uint8_t section = 0;
    const int result = checkComplianceUserConfigFile(args[0].c_str(), &section);
    return report(result, section);
}

const cli::Registration check({"check",
                               "check FILE                 does FILE comply as a user document? prints ok,\n"
                               "                           or the failing section's number and name",
                               400, runCheck});
const cli::Registration apply({"apply",
                               "apply FILE                 check FILE and store it, filtered, as the user\n"
                               "                           document (only when it complies)",
                               401, runApply});

}  // namespace
