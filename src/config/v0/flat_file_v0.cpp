// Version 0 of the flat parameter file: its older sections are not exported; every writer and
// the read-back refuse.
#include "config/v0/policy.hpp"
#include "zt4config/export.h"

using zt4::v0::unsupported;

int setParameterUserConfigSyntaxVersion0(FILE*, const char*) noexcept { return unsupported<int>(__func__); }
int setParameterUserConfigWebSyntaxVersion0(FILE*) noexcept { return unsupported<int>(__func__); }
int setParameterUserConfigRadioLoRaSyntaxVersion0(FILE*) noexcept { return unsupported<int>(__func__); }
int setParameterUserConfigWiFiSyntaxVersion0(FILE*) noexcept { return unsupported<int>(__func__); }
int setParameterUserConfigEthernetSyntaxVersion0(FILE*) noexcept { return unsupported<int>(__func__); }
int setParameterUserConfigModbusSyntaxVersion0(FILE*) noexcept { return unsupported<int>(__func__); }
int setParameterUserConfigBACnetSyntaxVersion0(FILE*) noexcept { return unsupported<int>(__func__); }
int setParameterUserConfigConnectorsSyntaxVersion0(FILE*) noexcept { return unsupported<int>(__func__); }
int printZT4UserConfigFileSyntaxVersion0(void) noexcept { return unsupported<int>(__func__); }
int setParameterSystemSyntaxVersion0(FILE*, const char*) noexcept { return unsupported<int>(__func__); }
int setParameterSystemDeviceSyntaxVersion0(FILE*) noexcept { return unsupported<int>(__func__); }
int setParameterSystemWebSyntaxVersion0(FILE*) noexcept { return unsupported<int>(__func__); }
int setParameterSystemRadioLoRaSyntaxVersion0(FILE*) noexcept { return unsupported<int>(__func__); }
int setParameterSystemWiFiSyntaxVersion0(FILE*) noexcept { return unsupported<int>(__func__); }
int setParameterSystemEthernetSyntaxVersion0(FILE*) noexcept { return unsupported<int>(__func__); }
int setParameterSystemModbusSyntaxVersion0(FILE*) noexcept { return unsupported<int>(__func__); }
int setParameterSystemBACnetSyntaxVersion0(FILE*) noexcept { return unsupported<int>(__func__); }
int setParameterSystemConnectorsSyntaxVersion0(FILE*) noexcept { return unsupported<int>(__func__); }
int setParameterSystemExpertSyntaxVersion0(FILE*) noexcept { return unsupported<int>(__func__); }
int setParameterFactorySystemSyntaxVersion0(FILE*, const char*) noexcept { return unsupported<int>(__func__); }
int setParameterFactorySystemDeviceSyntaxVersion0(FILE*) noexcept { return unsupported<int>(__func__); }
int printZT4JSONUserConfigFileSyntaxVersion0(void) noexcept { return unsupported<int>(__func__); }
