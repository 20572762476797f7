// The user configuration's sections in syntax version 0: exported, declared with the other
// user-section operations.
#pragma once

#include <cstdint>

#include "zt4config/user.h"
