// The arguments that a command declares, for comparing all of them at once.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "framework/diag_param.h"

// One declared argument: name, description, value type, parameter-type byte.
struct CDeclaredParam {
    std::string name;
    std::string description;
    unsigned int vt;
    unsigned int pt;

    bool operator==(const CDeclaredParam&) const = default;
};
inline void PrintTo(const CDeclaredParam& param, std::ostream* out) {
    *out << param.name << " (" << param.description << ") vt=" << param.vt << " pt=" << param.pt;
}

// Every child of a command must be a parameter.
inline std::vector<CDeclaredParam> DeclaredParamsOf(const CDiagObj& command) {
    std::vector<CDeclaredParam> params;
    for (CDiagObj* child : command.GetChildren()) {
        auto* param = dynamic_cast<CDiagParam*>(child);
        if (param == nullptr) {
            ADD_FAILURE() << "a child of " << command.GetName() << " is no parameter";
            continue;
        }
        EXPECT_EQ(param->GetNodeType(), TPARAM);
        COutMsg query;
        param->Query(query);
        EXPECT_EQ(query.GetHeader().len, 2);
        EXPECT_EQ(query.GetPayload()[0], param->GetValueType());
        EXPECT_EQ(query.GetPayload()[1], param->GetParamType());
        params.push_back({param->GetName(), param->GetDescription(), param->GetValueType(),
                          param->GetParamType()});
    }
    return params;
}
