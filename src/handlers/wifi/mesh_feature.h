// The handler of X_QM_MeshFeature that the networks forward to.
#pragma once

#include "core/handler.h"

HANDLER(X_QM_MeshFeature_Host_WPS_Enable);
