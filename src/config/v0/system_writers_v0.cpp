// Syntax version 0 of the system creators and writers: not offered by this library.
#include "config/v0/policy.hpp"
#include "zt4config/system.h"

using zt4::v0::unsupported;

json_t* createJSONZT4SystemEnableSyntaxVersion0(uint8_t) noexcept { return unsupported<json_t*>(__func__); }
json_t* createJSONZT4SystemRadioLoRaSyntaxVersion0(uint8_t) noexcept { return unsupported<json_t*>(__func__); }
json_t* createJSONZT4SystemConnectorSyntaxVersion0(uint8_t) noexcept { return unsupported<json_t*>(__func__); }
json_t* createJSONZT4SystemConnectorsSyntaxVersion0(uint8_t) noexcept { return unsupported<json_t*>(__func__); }
json_t* createJSONZT4SystemExpertSyntaxVersion0(uint8_t) noexcept { return unsupported<json_t*>(__func__); }

int writeJSONZT4SystemWebSyntaxVersion0(json_t*) noexcept { return unsupported<int>(__func__); }
int writeJSONZT4SystemRadioLoRaSyntaxVersion0(json_t*) noexcept { return unsupported<int>(__func__); }
int writeJSONZT4SystemWiFiSyntaxVersion0(json_t*) noexcept { return unsupported<int>(__func__); }
int writeJSONZT4SystemEthernetSyntaxVersion0(json_t*) noexcept { return unsupported<int>(__func__); }
int writeJSONZT4SystemModbusSyntaxVersion0(json_t*) noexcept { return unsupported<int>(__func__); }
int writeJSONZT4SystemBACnetSyntaxVersion0(json_t*) noexcept { return unsupported<int>(__func__); }
int writeJSONZT4SystemConnectorsSyntaxVersion0(json_t*) noexcept { return unsupported<int>(__func__); }
int writeJSONZT4SystemExpertSyntaxVersion0(json_t*) noexcept { return unsupported<int>(__func__); }
