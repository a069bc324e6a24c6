// Sends requests to nodes as the shell does and holds what came back.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "framework/diag_menu.h"

struct CAnswer {
    std::vector<uint8_t> bytes;
    EResCode resp_code;

    // The answer byte; 0xFF when there was no answer.
    uint8_t Code() const { return bytes.empty() ? uint8_t{0xFF} : bytes.front(); }
};

// `Send(node, MSG_CALL, std::string("rd"), uint8_t{0x50})`: one field per
// argument, in its own width.
template <class... Args>
CAnswer Send(CDiagMenu& node, EMsgType type, const Args&... args) {
    COutMsg request(type, node.GetId());
    (static_cast<void>(request << args), ...);
    CInMsg in(request);
    COutMsg out(type, 0, node.GetId());
    node.HandleMsg(in, out);
    const uint8_t* payload = out.GetPayload();
    return {std::vector<uint8_t>(payload, payload + out.GetHeader().len), out.GetRespCode()};
}

// The node at `path` below `root` as a menu; throws when there is none.
CDiagMenu& NodeAt(CDiagObj& root, const std::string& path);
