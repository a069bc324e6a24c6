#include "host/shell/run/request.h"

#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"
#include "host/exception_text.h"

namespace {

COutMsg Ask(CDiagMenu& node, const COutMsg& request) {
    CInMsg in(request);
    COutMsg answer(request.GetType(), 0, node.GetId());
    node.HandleMsg(in, answer);
    return answer;
}

}  // namespace

CReply::CReply(CDiagMenu& node, const COutMsg& request) : CReply(Ask(node, request)) {}

CReply::CReply(const COutMsg& answer) : m_fields(answer) {
    if (m_fields.GetLen() != 0) {
        uint8_t code = 0;
        m_fields >> code;
        m_code = static_cast<EResCode>(code);
    }
    if (answer.GetRespCode() != MSG_SUCCESS) {
        m_code = answer.GetRespCode();
    }
}

EResCode AskToStop(CDiagMenu& node) {
    try {
        return CReply(node, COutMsg(MSG_STOP, node.GetId())).Code();
    } catch (...) {
        node.SendLog(LW_ERR_SW, "%s", CurrentExceptionText().c_str());
        return MSG_ERR_FAIL;
    }
}

EExitStatus StatusOf(EResCode code) {
    switch (code) {
        case MSG_SUCCESS:
        case MSG_SKIPPED:
            return EXIT_PASSED;
        case MSG_ERR_ABORTED:
        case MSG_ERR_CANCELED:
            return EXIT_ABORTED;
        default:
            return EXIT_FAILED;
    }
}

std::string FailureText(EResCode code) {
    switch (code) {
        case MSG_ERR_NORESP:
            return "failed (no answer)";
        case MSG_ERR_ABORTED:
        case MSG_ERR_CANCELED:
            return std::string("aborted (") + resCode2str(code) + ")";
        default:
            return std::string("failed (") + resCode2str(code) + ")";
    }
}
