// Syntax version 0 of compliance and filtering: not offered by this library.
#include "config/v0/policy.hpp"
#include "zt4config/compliance.h"

int checkComplianceUserConfigFileSyntaxVersion0(json_t*, uint8_t*) noexcept {
    return zt4::v0::unsupported<int>(__func__);
}

int filterUserConfigFileSyntaxVersion0(json_t*, json_t*) noexcept {
    return zt4::v0::unsupported<int>(__func__);
}
