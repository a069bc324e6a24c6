// Arrays of elements that answer peek and poke by position: by index
// (TARRAY_I) or by address (TARRAY_A).
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

#include "framework/diag_exception.h"
#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"
#include "framework/diag_menu.h"

// What every array has, whatever its elements. Positions run from `sa` to `ea`
// inclusive.
class CDiagArrayBase : public CDiagMenu {
  public:
    CDiagArrayBase(ENodeType type, const std::string& name, const std::string& desc, uint8_t vt,
                   uint64_t sa, uint64_t ea, bool ro)
        : CDiagMenu(type, name, desc), m_vt(vt), m_sa(sa), m_ea(ea), m_ro(ro) {}

    // Appends the value-type byte, first and last position (64 bits each) and
    // the read-only flag.
    void Query(COutMsg& out) override { out << m_vt << m_sa << m_ea << static_cast<uint8_t>(m_ro); }

    uint8_t GetValueType() const { return m_vt; }
    uint64_t GetStartAddr() const { return m_sa; }
    uint64_t GetEndAddr() const { return m_ea; }
    bool IsReadOnly() const { return m_ro; }

    // The text that refuses a position.
    std::string AddrExc(bool isIndex, uint64_t pos) const {
        return (isIndex ? "Index " + toString(pos, 0) : "Addr. " + toString(pos, VF_HEX)) +
               " out of bounds";
    }
    // Appends the text of a range: "[first]" or "[first..last]".
    void PutAddrs(std::string& text, bool isIndex, uint64_t first, uint64_t last) const {
        text += "[" + PositionText(isIndex, first);
        if (last != first) {
            text += ".." + PositionText(isIndex, last);
        }
        text += "]";
    }

  private:
    static std::string PositionText(bool isIndex, uint64_t pos) {
        return isIndex ? toString(static_cast<int64_t>(pos), 0) : toString(pos, VF_HEX);
    }

    const uint8_t m_vt;
    const uint64_t m_sa;
    const uint64_t m_ea;
    const bool m_ro;
};

// An array of elements of type T. Peek takes first and last position and
// answers MSG_SUCCESS and pairs of position and element; poke takes an element,
// first and last position and answers a code byte.
template <class T>
class CDiagArray : public CDiagArrayBase {
  public:
    CDiagArray(ENodeType type, const std::string& name, const std::string& desc, uint64_t sa,
               uint64_t ea, bool ro, uint8_t vt)
        : CDiagArrayBase(type, name, desc, vt, sa, ea, ro) {}

    void HandleMsg(CInMsg& in, COutMsg& out) override {
        switch (in.GetType()) {
            case MSG_PEEKV:
                Peek(in, out);
                break;
            case MSG_POKEV:
                Poke(in, out);
                break;
            default:
                CDiagMenu::HandleMsg(in, out);
        }
    }

    // One element; either may throw CDiagException.
    virtual void Set(uint64_t pos, const T& value) = 0;
    virtual T Get(uint64_t pos) = 0;
    // Steps to the next position; false, and no step, at the end.
    virtual bool IncAddr(uint64_t* pos, uint64_t last) {
        if (*pos >= std::min(last, GetEndAddr())) {
            return false;
        }
        ++*pos;
        return true;
    }

  private:
    void Peek(CInMsg& in, COutMsg& out) {
        std::string operation = "peek";
        EResCode stage = MSG_ERR_PARAM;
        try {
            uint64_t first = 0;
            uint64_t last = 0;
            in >> first >> last;
            CheckRange(first, last);
            PutAddrs(operation, IsIndexed(), first, last);
            AnswerCode(out, MSG_SUCCESS);

            // A reversed range is read in ascending order.
            uint64_t pos = std::min(first, last);
            const uint64_t end = std::max(first, last);
            std::string shown;
            bool more = false;
            do {
                stage = MSG_ERR_FAIL;
                const T value = Get(pos);
                stage = MSG_ERR_MSGLEN;
                out << pos << value;
                if (shown.empty()) {
                    shown = toString(value, VF_HEX | VF_PAD);
                } else {
                    more = true;
                }
            } while (IncAddr(&pos, end));

            if (IsTraced()) {
                SendLog(LW_RESULT, "%s %s val=%s%s", resCode2str(MSG_SUCCESS), operation.c_str(),
                        shown.c_str(), more ? " ..." : "");
            }
        } catch (const CDiagException& e) {
            out.Clear();
            Refuse(out, operation, stage, e);
        }
    }

    void Poke(CInMsg& in, COutMsg& out) {
        std::string operation = "poke";
        if (IsReadOnly()) {
            SendLog(LW_ERR_TEST, "%s (Value is readonly)", operation.c_str());
            SendLog(LW_RESULT, "%s %s", resCode2str(MSG_ERR_READONLY), operation.c_str());
            AnswerCode(out, MSG_ERR_READONLY);
            return;
        }
        EResCode stage = MSG_ERR_PARAM;
        try {
            T value{};
            uint64_t pos = 0;
            uint64_t last = 0;
            in >> value >> pos >> last;
            CheckRange(pos, last);
            PutAddrs(operation, IsIndexed(), pos, last);

            stage = MSG_ERR_FAIL;
            do {
                Set(pos, value);
            } while (IncAddr(&pos, last));

            if (IsTraced()) {
                SendLog(LW_RESULT, "%s %s val=%s", resCode2str(MSG_SUCCESS), operation.c_str(),
                        toString(value, VF_HEX | VF_PAD).c_str());
            }
            AnswerCode(out, MSG_SUCCESS);
        } catch (const CDiagException& e) {
            Refuse(out, operation, stage, e);
        }
    }

    void CheckRange(uint64_t first, uint64_t last) const {
        for (const uint64_t pos : {first, last}) {
            if (pos < GetStartAddr() || pos > GetEndAddr()) {
                throw CDiagException("%s", AddrExc(IsIndexed(), pos).c_str());
            }
        }
    }

    void Refuse(COutMsg& out, const std::string& operation, EResCode code,
                const CDiagException& e) const {
        SendLog(LW_ERR_TEST, "%s (%s)", operation.c_str(), e.what());
        SendLog(LW_RESULT, "%s %s (%s)", resCode2str(code), operation.c_str(), e.what());
        AnswerCode(out, code);
    }

    bool IsIndexed() const { return GetNodeType() == TARRAY_I; }
    bool IsTraced() const { return (GetValueType() & VF_TRACED) != 0; }
};

// An array by address.
template <class T>
class CDiagAddrArray : public CDiagArray<T> {
  public:
    CDiagAddrArray(const std::string& name, const std::string& desc, uint64_t sa, uint64_t ea,
                   bool ro, uint8_t vt)
        : CDiagArray<T>(TARRAY_A, name, desc, sa, ea, ro, vt) {}
};
