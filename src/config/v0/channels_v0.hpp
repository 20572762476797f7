// Syntax version 0 of the channels reader (internal, like its version-1 counterpart).
#pragma once

#include <jansson.h>

// The "Channel" member of a connector object, unchanged.
json_t* readJSONZT4ChannelsSyntaxVersion0(json_t* jsonConnector) noexcept;
