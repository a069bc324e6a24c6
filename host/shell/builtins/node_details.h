// What the long listings tell of a node beside its name and its description.
#pragma once

#include <string>

class CDiagObj;

struct CNodeDetails {
    std::string type;   // "device", "command"; of values and arrays what they hold
    std::string value;  // what a value holds, where an array runs, a test's last result
};

// Reads a value if that leaves no trace; arrays are not read, since their
// elements may come from a bus.
CNodeDetails DetailsOf(CDiagObj& node);
