// What a node is to the operator.
#pragma once

#include <string>

class CDiagObj;

// "a device", "a command", ...
std::string DescribeType(const CDiagObj& node);
// The same without the article.
std::string TypeName(const CDiagObj& node);
// The mark behind the name in listings: "/" for menus and devices, "=" for
// values, "[]" for arrays, "!" for tests, nothing for commands.
std::string TypeMark(const CDiagObj& node);
// Whether the operator can go there.
bool IsContainer(const CDiagObj& node);
// What to do with a node that cannot be run.
std::string HintFor(const CDiagObj& node);
