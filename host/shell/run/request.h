// One request to a node and its answer.
#pragma once

#include <string>

#include "framework/diag_menu.h"
#include "host/shell/exit_status.h"

EExitStatus StatusOf(EResCode code);

class CReply {
  public:
    // Sends `request` to `node` and waits for the answer.
    CReply(CDiagMenu& node, const COutMsg& request);

    // The response code if the node set one, else the first byte of the
    // answer; MSG_ERR_NORESP when there is none.
    EResCode Code() const { return m_code; }
    EExitStatus Status() const { return StatusOf(m_code); }
    // The answer behind its code byte.
    CInMsg& Fields() { return m_fields; }

  private:
    explicit CReply(const COutMsg& answer);

    CInMsg m_fields;
    EResCode m_code = MSG_ERR_NORESP;
};

// Sends `node` a stop message, from any thread, and returns the answer; what the
// node throws is logged and counts as a failure.
EResCode AskToStop(CDiagMenu& node);

// A code for the operator: "failed (ERR_FAIL)".
std::string FailureText(EResCode code);
