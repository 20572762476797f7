// Syntax version 1 reaches one section of a document by its key. These readers are internal to
// the library; each returns a new reference, or null after its message.
#pragma once

#include <jansson.h>

// Member `key` of `json`: read as an array for "Connectors", "Channel", "CurrentTransformer" and
// "Phase", as an object for any other key.
json_t* readJSONZT4ByKeyObject(json_t* json, const char* key) noexcept;

// Top-level section `key` of the user document, or the section's defaults when the document lacks
// it. "VoltageTransformer" and "Connectors" sit inside "ElectricalConfiguration" in a version-1
// document, so for them this reader gives the defaults: read that section and take them from it.
json_t* readJSONZT4UserConfigByKeyObject(const char* key) noexcept;

// Member `key` of the user "Expert" section (in "ElectricalConfiguration"), or its defaults.
json_t* readJSONZT4UserConfigExpertByKeyObject(const char* key) noexcept;

// Section `key` of the system document.
json_t* readJSONZT4SystemByKeyObject(const char* key) noexcept;

// Section `key` of the factory system document.
json_t* readJSONZT4FactorySystemByKeyObject(const char* key) noexcept;

// The "Channel" array of a connector object.
json_t* readJSONZT4ChannelsSyntaxVersion1(json_t* jsonConnector) noexcept;

namespace zt4::v1 {

// True for the members that documents hold as arrays.
bool isArrayKey(const char* key) noexcept;

}  // namespace zt4::v1
