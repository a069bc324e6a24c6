// What a command or a test declares about its arguments and its answer.
#pragma once

#include <string>
#include <vector>

#include "framework/diag_menu.h"
#include "host/shell/value_type.h"

struct CParamInfo {
    std::string name;
    std::string description;
    CValueType type;
    bool optional;
};

struct CSignature {
    std::vector<CParamInfo> inputs;
    std::vector<CParamInfo> outputs;

    // As the parameter nodes below `node` describe themselves.
    static CSignature Of(CDiagObj& node);

    // "rdwr addr [data0 .. data31]": the inputs in order, optional ones in
    // brackets, numbered ones from the first to the last.
    std::string Synopsis() const;

    // Appends the words as arguments, each in its declared type. Throws
    // CUsageError for a missing, surplus or unfit word.
    void Pack(COutMsg& request, const std::vector<std::string>& words) const;
};
