// Listings of the object tree.
#pragma once

#include <string>

class CDiagObj;

// A line for each child but parameters: name, mark, description.
std::string ListChildren(const CDiagObj& node);
// The node and everything below it but commands and parameters.
std::string ListTree(const CDiagObj& node);
