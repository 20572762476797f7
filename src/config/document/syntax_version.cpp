// The syntax version a document is written in: its "Syntax" member's "Version", 0 or 1.
#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "config/document/document.hpp"
#include "zt4config/config.h"

int readJSONSyntaxVersion(json_t* json) noexcept {
    json_t* syntax = json_object_get(json, "Syntax");
    if (syntax == nullptr) {
        zt4::logLine(LOG_INFO, "Configuration file Syntax 0 by default");
        return 0;
    }
    json_t* version = json_object_get(syntax, "Version");
    if (version == nullptr) {
        zt4::logLine(LOG_INFO, "Configuration file Syntax Version 0 by default");
        return 0;
    }
    // Only the low 32 bits count, unsigned: a negative or unknown version, or a member that is not
    // an integer at all (it reads as 0), is version 0.
    const auto low = static_cast<uint32_t>(static_cast<unsigned long long>(json_integer_value(version)));
    return low == 1 ? 1 : 0;
}

namespace {

// An unreadable file is version 0, after a message naming the file.
int fileSyntaxVersion(const char* function, zt4::ConfigDocument document) {
    zt4::JsonRef stored(zt4::readDocument(function, document));
    if (!stored) {
        zt4::logError(function, "Failed to read %s", zt4::documentFile(document).description);
        return 0;
    }
    return readJSONSyntaxVersion(stored.get());
}

}  // namespace

int readZT4UserConfigFileSyntaxVersion(void) noexcept {
    return fileSyntaxVersion(__func__, zt4::ConfigDocument::User);
}

int readZT4FactoryUserConfigFileSyntaxVersion(void) noexcept {
    return fileSyntaxVersion(__func__, zt4::ConfigDocument::FactoryUser);
}

int readZT4SystemConfigFileSyntaxVersion(void) noexcept {
    return fileSyntaxVersion(__func__, zt4::ConfigDocument::System);
}

int readZT4FactorySystemConfigFileSyntaxVersion(void) noexcept {
    return fileSyntaxVersion(__func__, zt4::ConfigDocument::FactorySystem);
}
