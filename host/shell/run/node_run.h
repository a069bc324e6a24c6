// One run of a command or a test: checked when made, performed once, in the
// foreground or in a job.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "host/run_stop.h"
#include "host/shell/exit_status.h"
#include "host/shell/run/run_record.h"
#include "host/shell/run/signature.h"

class CDiagTestBase;
class CReply;
class CRunRecorder;
class CTerminal;

class CNodeRun {
  public:
    // Throws CUsageError when the node does not run or the words are not its
    // arguments. Errors are printed behind `origin`, if there is one.
    CNodeRun(CDiagObj& node, const std::vector<std::string>& arguments, std::string origin);

    const CDiagMenu& Node() const { return m_node; }
    // The path and the arguments, as the operator may type them.
    const std::string& Title() const { return m_title; }
    // The node as a test; null when it is none.
    const CDiagTestBase* Test() const;
    // Whether it can be stopped while it runs.
    bool CanStop() const;

    // Says in `record` what is run.
    void Describe(CRunRecord& record) const;

    // Sends the request, prints and records the outputs; the answer's code, that of a
    // failure too when something behind the outputs failed or does not belong there.
    EResCode Perform(CTerminal& terminal, CRunRecorder& recorder);
    // Asks the run to stop, from any thread, whether it has begun or not. False
    // when the node does not understand: it then stops at most while it waits
    // for a device.
    bool Stop();

    // Prints an error behind the origin and the path.
    void PrintError(CTerminal& terminal, const std::string& name, const std::string& text) const;

  private:
    class CAsked;

    struct CAnswer {
        EResCode code;
        std::vector<CRunOutput> outputs;  // marked where they may be no good
        std::string error;                // what is wrong with the answer itself
    };
    CAnswer Read(CReply& reply) const;
    void ReadOutputs(CAnswer& answer, CInMsg& fields) const;

    // Which registers the operator may have meant, where the arguments name none.
    void TellNearRegisters() const;

    CDiagMenu& m_node;
    const std::vector<std::string> m_arguments;
    const std::string m_origin;
    const CSignature m_signature;
    COutMsg m_request;
    std::string m_title;
    CRunStop m_stop;
    std::mutex m_asked_lock;
    bool m_asked = false;  // the node has the request, and its answer is awaited
};
