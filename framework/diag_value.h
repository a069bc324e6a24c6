// Named values that answer peek and poke.
#pragma once

#include <string>
#include <type_traits>

#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"
#include "framework/diag_menu.h"
#include "framework/diag_mutex.h"

// What every value has, whatever its type.
class CDiagValueBase : public CDiagMenu {
  public:
    CDiagValueBase(const std::string& name, const std::string& description, uint8_t vt, bool ro)
        : CDiagMenu(TVALUE, name, description), m_vt(vt), m_ro(ro) {}

    // Appends the value-type byte and the read-only flag.
    void Query(COutMsg& out) override { out << m_vt << static_cast<uint8_t>(m_ro); }

    uint8_t GetValueType() const { return m_vt; }
    bool IsReadOnly() const { return m_ro; }

  protected:
    bool IsTraced() const { return (m_vt & VF_TRACED) != 0; }

  private:
    const uint8_t m_vt;
    const bool m_ro;
};

// A value of type T. A peek answers MSG_SUCCESS and the value, a poke takes the
// value and answers a code byte.
template <class T>
class CDiagValue : public CDiagValueBase {
  public:
    CDiagValue(const std::string& name, const std::string& description, bool ro, uint8_t vt)
        : CDiagValueBase(name, description, vt, ro) {}

    void HandleMsg(CInMsg& in, COutMsg& out) override {
        switch (in.GetType()) {
            case MSG_PEEKV:
                Peek(out);
                break;
            case MSG_POKEV:
                Poke(in, out);
                break;
            default:
                CDiagMenu::HandleMsg(in, out);
        }
    }

    // Either may throw CDiagException.
    virtual void Set(const T& value) = 0;
    virtual T Get() = 0;

  private:
    void Peek(COutMsg& out) {
        try {
            const T value = Get();
            if (IsTraced()) {
                SendLog(LW_RESULT, "%s peek val=%s", resCode2str(MSG_SUCCESS), Text(value).c_str());
            }
            AnswerCode(out, MSG_SUCCESS);
            out << value;
        } catch (const CDiagException& e) {
            SendLog(LW_ERR_TEST, "peek (%s)", e.what());
            if (IsTraced()) {
                SendLog(LW_RESULT, "%s peek (%s)", resCode2str(MSG_ERR_FAIL), e.what());
            }
            out.Clear();
            AnswerCode(out, MSG_ERR_FAIL);
        }
    }

    void Poke(CInMsg& in, COutMsg& out) {
        if (IsReadOnly()) {
            SendLog(LW_ERR_TEST, "poke (Value is readonly)");
            if (IsTraced()) {
                SendLog(LW_RESULT, "%s poke", resCode2str(MSG_ERR_READONLY));
            }
            AnswerCode(out, MSG_ERR_READONLY);
            return;
        }
        try {
            T value{};
            in >> value;
            Set(value);
            if (IsTraced()) {
                SendLog(LW_RESULT, "%s poke val=%s", resCode2str(MSG_SUCCESS), Text(value).c_str());
            }
            AnswerCode(out, MSG_SUCCESS);
        } catch (const CDiagException& e) {
            SendLog(LW_ERR_TEST, "poke (%s)", e.what());
            if (IsTraced()) {
                SendLog(LW_RESULT, "%s poke (%s)", resCode2str(MSG_ERR_PARAM), e.what());
            }
            AnswerCode(out, MSG_ERR_PARAM);
        }
    }

    std::string Text(const T& value) const {
        if constexpr (std::is_same_v<T, std::string>) {
            return value;
        } else {
            uint64_t data = value;
            std::string text;
            const auto type = static_cast<EValueType>(GetValueType() & VF_TYPE_MASK);
            return reg_data_to_string(text, &data, type, GetValueType()) ? text : toString(data, 0);
        }
    }
};

// A value kept in memory, safe to use from several threads.
template <class T>
class CDiagMemValue : public CDiagValue<T> {
  public:
    CDiagMemValue(const std::string& name, const std::string& description, bool ro, uint8_t vt,
                  const T& initial = T{})
        : CDiagValue<T>(name, description, ro, vt), m_val(initial) {}

    void Set(const T& value) override {
        const CGuard<CMutex> guard(m_lock);
        m_val = value;
    }
    T Get() override {
        const CGuard<CMutex> guard(m_lock);
        return m_val;
    }

  private:
    T m_val;
    CMutex m_lock;
};
