#include "host/consent.h"

#include <atomic>
#include <utility>

#include "framework/consent.h"

namespace {

std::atomic<bool> g_all_granted{false};
thread_local CConsent* t_here = nullptr;

}  // namespace

CConsent::CConsent(CAsk ask)
    : m_outer(t_here),
      m_ask(std::move(ask)),
      m_answers(m_outer != nullptr && m_outer->m_ask ? m_outer->m_answers : m_own_answers) {
    t_here = this;
}

CConsent::~CConsent() {
    t_here = m_outer;
}

void CConsent::GrantAll() {
    g_all_granted = true;
}

bool CConsent::IsGivenFor(const std::string& what) {
    return g_all_granted || (t_here != nullptr && t_here->m_ask && t_here->Ask(what));
}

bool CConsent::Ask(const std::string& what) {
    const auto known = m_answers.find(what);
    return known != m_answers.end() ? known->second
                                    : m_answers.emplace(what, m_ask(what)).first->second;
}

bool AllowedByOperator(const std::string& what) {
    return CConsent::IsGivenFor(what);
}
