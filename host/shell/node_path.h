// Nodes by the paths that operators type.
#pragma once

#include <string>
#include <vector>

class CDiagObj;

// The node that `path` names: names separated by "/", "." and "..", from the top
// if it begins with "/", else from `from`. A name may be cut short as long as it
// is the beginning of one child's name only; a whole name always wins. Parameters
// have to be named in full.
//
// Throws CUsageError that says how far the path goes and what could have been
// meant, which in place of a path may be one of `words`.
CDiagObj& FindNode(CDiagObj& from, const std::string& path,
                   const std::vector<std::string>& words = {});
