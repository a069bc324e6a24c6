#include "framework/diag_menu.h"

#include "framework/diag_device.h"
#include "framework/diag_exception.h"
#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"
#include "host/diag_log.h"
#include "host/diag_tree.h"

CDiagMenu::CDiagMenu(ENodeType type, const std::string& name, const std::string& description)
    : CDiagObj(type, name, description) {}

CDiagMenu::~CDiagMenu() = default;

void CDiagMenu::HandleMsg(CInMsg& in, COutMsg& out) {
    switch (in.GetType()) {
        case MSG_QUERY:
            out << static_cast<uint8_t>(MSG_SUCCESS);
            try {
                Query(out);
            } catch (const CDiagException& e) {
                SendLog(LW_ERR_SW, "%s", e.what());
                out.Clear();
                out << static_cast<uint8_t>(MSG_ERR_MSGLEN);
            }
            break;
        case MSG_MAIL:
            ReceiveMail(in);
            out << static_cast<uint8_t>(MSG_SUCCESS);
            break;
        default:
            out << static_cast<uint8_t>(MSG_ERR_MSGTYPE);
    }
}

void CDiagMenu::SendLog(unsigned int logword, const char* fmt, va_list args) const {
    CDiagLog::Instance().Send(this, logword, fmt, args);
}

void CDiagMenu::SendLog(unsigned int logword, const char* fmt, ...) const {
    va_list args;
    va_start(args, fmt);
    SendLog(logword, fmt, args);
    va_end(args);
}

void CDiagMenu::ReceiveMail(CInMsg&) {}

void CDiagMenu::SendMsg(CDiagMsg msg) const {
    // The tree hands out mutable nodes to whoever holds one of them.
    auto& root = const_cast<CDiagObj&>(RootOf(*this));
    auto* addressee = dynamic_cast<CDiagMenu*>(FindById(root, msg.GetHeader().to));
    if (addressee == nullptr) {
        SendLog(LW_ERR_SW, "No object with id %u to send a message to", msg.GetHeader().to);
        return;
    }
    CInMsg mail(msg);
    addressee->ReceiveMail(mail);
}

CDiagDevice* CDiagMenu::GetParentDevice() const {
    for (CDiagObj* node = GetParent(); node != nullptr; node = node->GetParent()) {
        if (auto* device = dynamic_cast<CDiagDevice*>(node)) {
            return device;
        }
    }
    return nullptr;
}
