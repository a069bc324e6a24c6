// Help texts.
#pragma once

#include <string>

class CDiagObj;
struct CBuiltin;

std::string HelpOnShell();
std::string HelpOnBuiltin(const CBuiltin& builtin);
// What a node is, how it is used, and its arguments if it has any.
std::string HelpOnNode(CDiagObj& node);
