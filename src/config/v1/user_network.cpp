// The network sections of the user configuration, syntax version 1: checks.
#include "common/api.hpp"
#include "config/sections/engine.hpp"
#include "config/sections/user_sections.hpp"
#include "config/v1/user_checks.hpp"

using zt4::sections::check;

json_t* checkJSONZT4UserConfigWebSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return check(zt4::sections::kWeb, section, status);
}

json_t* checkJSONZT4UserConfigEthernetSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return check(zt4::sections::kEthernet, section, status);
}

json_t* checkJSONZT4UserConfigModbusSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return check(zt4::sections::kModbus, section, status);
}

json_t* checkJSONZT4UserConfigBACnetSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return check(zt4::sections::kBACnet, section, status);
}
