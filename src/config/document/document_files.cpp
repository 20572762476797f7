// The exported file operations on the four documents and their aliases.
#include "config/document/document.hpp"
#include "zt4config/config.h"

using zt4::ConfigDocument;

json_t* readJSONZT4ConfigFile(void) noexcept {
    return zt4::readDocument(__func__, ConfigDocument::User);
}
json_t* readJSONZT4UserConfigFile(void) noexcept { return readJSONZT4ConfigFile(); }

int writeJSONZT4ConfigFile(json_t* json) noexcept {
    return zt4::replaceDocument(__func__, ConfigDocument::User, json);
}
int writeJSONZT4UserConfigFile(json_t* json) noexcept { return writeJSONZT4ConfigFile(json); }

json_t* readJSONZT4FactoryConfigFile(void) noexcept {
    return zt4::readDocument(__func__, ConfigDocument::FactoryUser);
}
json_t* readJSONZT4FactoryUserConfigFile(void) noexcept { return readJSONZT4FactoryConfigFile(); }

json_t* readJSONZT4SystemFile(void) noexcept {
    return zt4::readDocument(__func__, ConfigDocument::System);
}
json_t* readJSONZT4SystemConfigFile(void) noexcept { return readJSONZT4SystemFile(); }

int writeJSONZT4SystemFile(json_t* json) noexcept {
    return zt4::replaceDocument(__func__, ConfigDocument::System, json);
}
int writeJSONZT4SystemConfigFile(json_t* json) noexcept { return writeJSONZT4SystemFile(json); }

json_t* readJSONZT4FactorySystemConfigFile(void) noexcept {
    return zt4::readDocument(__func__, ConfigDocument::FactorySystem);
}
json_t* readJSONZT4FactorySystemFile(void) noexcept { return readJSONZT4FactorySystemConfigFile(); }

int updateJSONZT4UserConfigFile(json_t* json) noexcept {
    return zt4::mergeIntoDocument(__func__, ConfigDocument::User, json);
}

int updateJSONZT4SystemFile(json_t* json) noexcept {
    return zt4::mergeIntoDocument(__func__, ConfigDocument::System, json);
}
