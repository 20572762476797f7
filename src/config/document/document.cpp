#include "config/document/document.hpp"

#include "common/api.hpp"
#include "common/path.hpp"
#include "zt4config/config.h"
#include "zt4config/json.h"

namespace zt4 {
namespace {

constexpr DocumentFile kUser = {"/home/nvram/zt4config.json",
                                "/home/nvram/zt4configuration-tmp.json",
                                "User configuration file", true};
constexpr DocumentFile kFactoryUser = {"/etc/zt4config_factory.json", nullptr,
                                       "Factory User configuration file", false};
constexpr DocumentFile kSystem = {"/home/nvram/zt4system.json", "/home/nvram/zt4system-tmp.json",
                                  "System configuration file", false};
constexpr DocumentFile kFactorySystem = {"/etc/zt4system_factory.json", nullptr,
                                         "Factory System configuration file", false};

}  // namespace

const DocumentFile& documentFile(ConfigDocument document) noexcept {
    switch (document) {
        case ConfigDocument::User: return kUser;
        case ConfigDocument::FactoryUser: return kFactoryUser;
        case ConfigDocument::System: return kSystem;
        case ConfigDocument::FactorySystem: break;
    }
    return kFactorySystem;
}

json_t* readDocument(const char* function, ConfigDocument document) noexcept {
    return guarded(function, static_cast<json_t*>(nullptr), [&] {
        return readJSONFile(resolvePath(documentFile(document).path).c_str());
    });
}

int syntaxVersionOf(ConfigDocument document) noexcept {
    switch (document) {
        case ConfigDocument::User: return readZT4UserConfigFileSyntaxVersion();
        case ConfigDocument::FactoryUser: return readZT4FactoryUserConfigFileSyntaxVersion();
        case ConfigDocument::System: return readZT4SystemConfigFileSyntaxVersion();
        case ConfigDocument::FactorySystem: break;
    }
    return readZT4FactorySystemConfigFileSyntaxVersion();
}

}  // namespace zt4
