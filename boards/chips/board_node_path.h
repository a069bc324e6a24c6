// The place of a node in the tree, as an operator types it.
#pragma once

#include <string>

#include "framework/diag_obj.h"

// "/i2c-0/spd-0"; the topmost node itself is "/".
std::string NodePath(const CDiagObj& node);
