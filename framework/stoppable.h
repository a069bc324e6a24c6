// A command that an operator can stop. It looks for the request between its
// units of work and ends early there; the answer is then MSG_ERR_ABORTED. Tests
// have CDiagTestBase::ProgressCb for that.
#pragma once

class CStoppable {
  public:
    virtual ~CStoppable();

  protected:
    // Whether what runs on the calling thread shall stop.
    static bool IsStopReq();
};
