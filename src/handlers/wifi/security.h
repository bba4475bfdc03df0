// Handlers of Security that several paths forward to.
#pragma once

#include "core/handler.h"

HANDLER(WiFi_AccessPoint_Security_KeyPassphrase);
HANDLER(WiFi_AccessPoint_Security_ModesSupported);
