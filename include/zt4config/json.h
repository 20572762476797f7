#ifndef ZT4CONFIG_JSON_H
#define ZT4CONFIG_JSON_H

#include "zt4config/common.h"

ZT4_BEGIN_DECLS

ZT4_END_DECLS

#endif /* ZT4CONFIG_JSON_H */
