// Who gives consent on this thread, and what was answered (framework/consent.h).
#pragma once

#include <functional>
#include <map>
#include <string>

class CConsent {
  public:
    // Asks the operator; true for a yes.
    using CAsk = std::function<bool(const std::string& what)>;

    // Whom a command on the calling thread asks, for a scope; without `ask` nobody, all is
    // refused then. A command that is run by another one goes by the answers that the other
    // got.
    explicit CConsent(CAsk ask);
    ~CConsent();
    CConsent(const CConsent&) = delete;
    CConsent& operator=(const CConsent&) = delete;

    // From now on everything is allowed, on every thread.
    static void GrantAll();
    // What AllowedByOperator() answers.
    static bool IsGivenFor(const std::string& what);

  private:
    bool Ask(const std::string& what);

    CConsent* const m_outer;
    const CAsk m_ask;
    std::map<std::string, bool> m_own_answers;
    std::map<std::string, bool>& m_answers;  // of the outermost command that may ask
};
