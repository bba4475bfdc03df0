// The handlers of WLANConfiguration's guest clients that the access points forward to.
#pragma once

#include "core/handler.h"
