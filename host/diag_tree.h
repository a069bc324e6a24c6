// Finding nodes of the object tree.
#pragma once

#include <string>

#include "framework/diag_obj.h"

// The topmost ancestor of a node.
CDiagObj& RootOf(CDiagObj& node);
const CDiagObj& RootOf(const CDiagObj& node);

// "/" for the root, else the names from below the root on, each behind a "/".
std::string PathOf(const CDiagObj& node);

// The node that `path` names, or null: names separated by "/", "." and "..",
// from the root if it begins with "/", else from `from`.
CDiagObj* FindByPath(CDiagObj& from, const std::string& path);

// The node with that object id in the tree below `root`, or null.
CDiagObj* FindById(CDiagObj& root, unsigned int id);
