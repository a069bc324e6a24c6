#include "host/shell/run/node_run.h"

#include <memory>
#include <utility>

#include "framework/diag_exception.h"
#include "framework/diag_log_word.h"
#include "framework/diag_test_base.h"
#include "framework/long_work.h"
#include "host/device_lock.h"
#include "host/diag_tree.h"
#include "host/printable.h"
#include "host/shell/node_kind.h"
#include "host/shell/run/register_arguments.h"
#include "host/shell/run/request.h"
#include "host/shell/run/run_recorder.h"
#include "host/terminal.h"
#include "host/usage_error.h"

namespace {

CDiagMenu& Runnable(CDiagObj& node) {
    const ENodeType type = node.GetNodeType();
    auto* menu = dynamic_cast<CDiagMenu*>(&node);
    if (menu == nullptr || (type != TFUNC && type != TPROC)) {
        throw CUsageError(PathOf(node) + " is " + DescribeType(node) + "; " + HintFor(node));
    }
    return *menu;
}

EMsgType RequestFor(const CDiagObj& node) {
    return node.GetNodeType() == TPROC ? MSG_START : MSG_CALL;
}

}  // namespace

CNodeRun::CNodeRun(CDiagObj& node, const std::vector<std::string>& arguments, std::string origin)
    : m_node(Runnable(node)),
      m_arguments(arguments),
      m_origin(std::move(origin)),
      m_signature(CSignature::Of(node)),
      m_request(RequestFor(node), node.GetId()),
      m_title(PathOf(node)) {
    try {
        m_signature.Pack(m_request, CRegisterArguments(node, m_signature).AsBits(arguments));
    } catch (const CUsageError& e) {
        throw CUsageError(PathOf(node) + ": " + e.what() + "\nusage: " + node.GetName() +
                          (m_signature.Synopsis().empty() ? "" : " " + m_signature.Synopsis()));
    }
    for (const std::string& argument : arguments) {
        m_title += " " + Printable(argument);
    }
}

const CDiagTestBase* CNodeRun::Test() const {
    return dynamic_cast<const CDiagTestBase*>(&m_node);
}

bool CNodeRun::CanStop() const {
    return Test() != nullptr || dynamic_cast<const CLongWork*>(&m_node) != nullptr;
}

void CNodeRun::Describe(CRunRecord& record) const {
    record.command = m_title;
    record.path = PathOf(m_node);
    record.node_id = m_node.GetId();
    record.is_test = Test() != nullptr;
    record.arguments = m_arguments;
    record.origin = m_origin;
}

// While the node is asked, unless the run was to stop before.
class CNodeRun::CAsked {
  public:
    explicit CAsked(CNodeRun& run) : m_run(run) {
        const std::lock_guard<std::mutex> guard(m_run.m_asked_lock);
        m_run.m_asked = !m_run.m_stop.IsRequested();
        m_allowed = m_run.m_asked;
    }
    ~CAsked() {
        const std::lock_guard<std::mutex> guard(m_run.m_asked_lock);
        m_run.m_asked = false;
    }
    CAsked(const CAsked&) = delete;
    CAsked& operator=(const CAsked&) = delete;

    bool IsAllowed() const { return m_allowed; }

  private:
    CNodeRun& m_run;
    bool m_allowed = false;
};

EResCode CNodeRun::Perform(CTerminal& terminal, CRunRecorder& recorder) {
    const CRunStop::CScope scope(m_stop);
    // A test refuses a second run of itself; here the runs take turns.
    std::unique_ptr<CDeviceHold> turn;
    if (Test() != nullptr) {
        turn = CDeviceHold::Acquire({{&m_node, DEV_LOCK_ACCESS}}, CRunStop::IsRequestedHere);
    }
    const CAsked asked(*this);
    if (!asked.IsAllowed()) {
        CRunRecorder::NoteCode(MSG_ERR_ABORTED);
        return MSG_ERR_ABORTED;
    }
    CReply reply(m_node, m_request);
    const CAnswer answer = Read(reply);
    CRunRecorder::NoteCode(answer.code);
    if (StatusOf(answer.code) != EXIT_PASSED) {
        TellNearRegisters();
    }
    terminal.EndLine();
    for (const CRunOutput& output : answer.outputs) {
        recorder.NoteOutput(output.name, output.type, output.value);
        terminal.Write(output.name + " = " + output.value.text + "\n");
    }
    if (!answer.error.empty()) {
        PrintError(terminal, PathOf(m_node), answer.error);
    }
    return answer.code;
}

bool CNodeRun::Stop() {
    m_stop.Request();
    // Locked, so that the run does not end and leave its turn to another one,
    // which would be stopped instead.
    const std::lock_guard<std::mutex> guard(m_asked_lock);
    if (!m_asked) {
        return true;
    }
    const EResCode code = AskToStop(m_node);
    // A test that does not run is just beginning, and sees the request, or has ended.
    return code == MSG_SUCCESS || code == MSG_ERR_NOTRUN;
}

void CNodeRun::PrintError(CTerminal& terminal, const std::string& name,
                          const std::string& text) const {
    CRunRecorder::NoteError(name + ": " + text);
    terminal.WriteError((m_origin.empty() ? "" : m_origin + ": ") + name + ": " + text + "\n");
}

void CNodeRun::TellNearRegisters() const {
    const std::string near = CRegisterArguments(m_node, m_signature).NearRegisters(m_arguments);
    if (!near.empty()) {
        m_node.SendLog(LW_ERR_SW, "%s\n", near.c_str());
    }
}

CNodeRun::CAnswer CNodeRun::Read(CReply& reply) const {
    CAnswer answer{reply.Code(), {}, ""};
    const auto fail = [&answer](EResCode code) {
        if (StatusOf(answer.code) == EXIT_PASSED) {
            answer.code = code;
        }
    };
    ReadOutputs(answer, reply.Fields());
    const size_t rest = answer.error.empty() ? reply.Fields().GetLen() : 0;
    if (rest == 1) {
        // A second answer byte, of what was done behind the outputs.
        uint8_t second = MSG_SUCCESS;
        reply.Fields() >> second;
        if (second != MSG_SUCCESS) {
            fail(MSG_ERR_FAIL);
        }
    } else if (rest != 0) {
        answer.error = "the answer has " + std::to_string(rest) + " bytes behind its outputs";
    }
    if (!answer.error.empty()) {
        fail(MSG_ERR_MSGLEN);
    }
    // What a test answers is about the run, and holds.
    if (StatusOf(answer.code) != EXIT_PASSED && Test() == nullptr) {
        for (CRunOutput& output : answer.outputs) {
            output.value.text += " (failed)";
        }
    }
    return answer;
}

void CNodeRun::ReadOutputs(CAnswer& answer, CInMsg& fields) const {
    // A node may leave outputs out, and after a failure most do.
    for (const CParamInfo& output : m_signature.outputs) {
        if (fields.GetLen() == 0) {
            return;
        }
        try {
            answer.outputs.push_back({output.name, output.type, output.type.Unpack(fields)});
        } catch (const CDiagException& e) {
            answer.error = "answer " + output.name + ": " + e.what();
            return;
        }
    }
}
