// Taking up a candidate user document: compliance, filtering, compliance of the filtered copy,
// and only then the copy written as the user document.
#include <string>

#include "common/api.hpp"
#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "common/path.hpp"
#include "zt4config/compliance.h"
#include "zt4config/config.h"
#include "zt4config/json.h"

namespace {

// What differs between the two syntax versions: the steps and the words of two messages.
struct VersionSteps {
    int (*comply)(json_t*, uint8_t*);
    int (*filter)(json_t*, json_t*);
    const char* announce;
    const char* copyRefused;
};

constexpr VersionSteps kVersion0 = {
    checkComplianceUserConfigFileSyntaxVersion0, filterUserConfigFileSyntaxVersion0,
    "Check compliance User configuration file for syntax version 0",
    "FAILED to check compliance new User configuration file syntax version 0"};
constexpr VersionSteps kVersion1 = {
    checkComplianceUserConfigFileSyntaxVersion1, filterUserConfigFileSyntaxVersion1,
    "Check compliance User configuration file for syntax version 1",
    "FAILED to check compliance for new User configuration file syntax version 1"};

int takeUp(const char* function, const VersionSteps& steps, json_t* document, uint8_t* section) {
    zt4::logInfo(function, "%s", steps.announce);
    if (steps.comply(document, section) != 0) {
        zt4::logError(function, "FAILED to check compliance User configuration file");
        return -1;
    }
    zt4::JsonRef copy(json_object());
    if (!copy) {
        zt4::logError(function, "FAILED to create object json jsonFileCopy");
        return -1;
    }
    if (steps.filter(document, copy.get()) != 0) {
        zt4::logError(function, "FAILED to copy json User configuration file");
        return -1;
    }
    if (steps.comply(copy.get(), section) != 0) {
        zt4::logError(function, "%s", steps.copyRefused);
        return -1;
    }
    return zt4::guarded(function, -1, [&] {
        return writeJSONFile(zt4::resolvePath("/home/nvram/zt4config.json").c_str(), copy.get());
    });
}

}  // namespace

int checkComplianceUserConfigFile(const char* path, uint8_t* section) noexcept {
    if (path == nullptr) {
        zt4::logError(__func__, "path NULL");
        return -1;
    }
    zt4::JsonRef document(readJSONFile(path));
    if (!document) {
        zt4::logError(__func__, "FAILED to open file %s in JSON format", path);
        return -1;
    }
    switch (readJSONSyntaxVersion(document.get())) {
        case 0: return takeUp(__func__, kVersion0, document.get(), section);
        case 1: return takeUp(__func__, kVersion1, document.get(), section);
        default: break;
    }
    zt4::logError(__func__, "Failed to read version configuration file");
    return -1;
}
