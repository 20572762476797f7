// The flat parameter file's facade: one line each, routed on the syntax version of the document
// that the operation reads (the read-back on the factory user file's).
#include "config/facade/dispatch.hpp"
#include "zt4config/export.h"

using zt4::ConfigDocument;
using zt4::dispatch;

int setParameterConfig(FILE* stream, const char* section) noexcept {
    return dispatch<setParameterUserConfigSyntaxVersion0,
                    setParameterUserConfigSyntaxVersion1>(__func__, ConfigDocument::User, stream, section);
}

int setParameterConfigWeb(FILE* stream) noexcept {
    return dispatch<setParameterUserConfigWebSyntaxVersion0,
                    setParameterUserConfigWebSyntaxVersion1>(__func__, ConfigDocument::User, stream);
}

int setParameterConfigRadio(FILE* stream) noexcept {
    return dispatch<setParameterUserConfigRadioLoRaSyntaxVersion0,
                    setParameterUserConfigRadioLoRaSyntaxVersion1>(__func__, ConfigDocument::User, stream);
}

int setParameterConfigWiFi(FILE* stream) noexcept {
    return dispatch<setParameterUserConfigWiFiSyntaxVersion0,
                    setParameterUserConfigWiFiSyntaxVersion1>(__func__, ConfigDocument::User, stream);
}

int setParameterConfigEthernet(FILE* stream) noexcept {
    return dispatch<setParameterUserConfigEthernetSyntaxVersion0,
                    setParameterUserConfigEthernetSyntaxVersion1>(__func__, ConfigDocument::User, stream);
}

int setParameterConfigModbus(FILE* stream) noexcept {
    return dispatch<setParameterUserConfigModbusSyntaxVersion0,
                    setParameterUserConfigModbusSyntaxVersion1>(__func__, ConfigDocument::User, stream);
}

int setParameterConfigBACnet(FILE* stream) noexcept {
    return dispatch<setParameterUserConfigBACnetSyntaxVersion0,
                    setParameterUserConfigBACnetSyntaxVersion1>(__func__, ConfigDocument::User, stream);
}

int setParameterConfigConnector(FILE* stream) noexcept {
    return dispatch<setParameterUserConfigConnectorsSyntaxVersion0,
                    setParameterUserConfigConnectorsSyntaxVersion1>(__func__, ConfigDocument::User, stream);
}

int printZT4ConfigFile(void) noexcept {
    return dispatch<printZT4UserConfigFileSyntaxVersion0,
                    printZT4UserConfigFileSyntaxVersion1>(__func__, ConfigDocument::User);
}

int setParameterSystem(FILE* stream, const char* section) noexcept {
    return dispatch<setParameterSystemSyntaxVersion0,
                    setParameterSystemSyntaxVersion1>(__func__, ConfigDocument::System, stream, section);
}

int setParameterSystemDevice(FILE* stream) noexcept {
    return dispatch<setParameterSystemDeviceSyntaxVersion0,
                    setParameterSystemDeviceSyntaxVersion1>(__func__, ConfigDocument::System, stream);
}

int setParameterSystemWeb(FILE* stream) noexcept {
    return dispatch<setParameterSystemWebSyntaxVersion0,
                    setParameterSystemWebSyntaxVersion1>(__func__, ConfigDocument::System, stream);
}

int setParameterSystemRadio(FILE* stream) noexcept {
    return dispatch<setParameterSystemRadioLoRaSyntaxVersion0,
                    setParameterSystemRadioLoRaSyntaxVersion1>(__func__, ConfigDocument::System, stream);
}

int setParameterSystemWiFi(FILE* stream) noexcept {
    return dispatch<setParameterSystemWiFiSyntaxVersion0,
                    setParameterSystemWiFiSyntaxVersion1>(__func__, ConfigDocument::System, stream);
}

int setParameterSystemEthernet(FILE* stream) noexcept {
    return dispatch<setParameterSystemEthernetSyntaxVersion0,
                    setParameterSystemEthernetSyntaxVersion1>(__func__, ConfigDocument::System, stream);
}

int setParameterSystemModbus(FILE* stream) noexcept {
    return dispatch<setParameterSystemModbusSyntaxVersion0,
                    setParameterSystemModbusSyntaxVersion1>(__func__, ConfigDocument::System, stream);
}

int setParameterSystemBACnet(FILE* stream) noexcept {
    return dispatch<setParameterSystemBACnetSyntaxVersion0,
                    setParameterSystemBACnetSyntaxVersion1>(__func__, ConfigDocument::System, stream);
}

int setParameterSystemConnector(FILE* stream) noexcept {
    return dispatch<setParameterSystemConnectorsSyntaxVersion0,
                    setParameterSystemConnectorsSyntaxVersion1>(__func__, ConfigDocument::System, stream);
}

int setParameterSystemExpert(FILE* stream) noexcept {
    return dispatch<setParameterSystemExpertSyntaxVersion0,
                    setParameterSystemExpertSyntaxVersion1>(__func__, ConfigDocument::System, stream);
}

int setParameterFactorySystem(FILE* stream, const char* section) noexcept {
    return dispatch<setParameterFactorySystemSyntaxVersion0,
                    setParameterFactorySystemSyntaxVersion1>(__func__, ConfigDocument::FactorySystem, stream, section);
}

int setParameterFactorySystemDevice(FILE* stream) noexcept {
    return dispatch<setParameterFactorySystemDeviceSyntaxVersion0,
                    setParameterFactorySystemDeviceSyntaxVersion1>(__func__, ConfigDocument::FactorySystem, stream);
}

int printZT4JSONConfigFile(void) noexcept {
    return dispatch<printZT4JSONUserConfigFileSyntaxVersion0,
                    printZT4JSONUserConfigFileSyntaxVersion1>(__func__, ConfigDocument::FactoryUser);
}
