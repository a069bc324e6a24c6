#include "boards/devicetree/left_out_cmd.h"

#include "framework/diag_command.h"

void CLeftOutCmd::Invoke(CInMsg&, COutMsg& out) {
    for (const std::string& text : m_texts) {
        SendLog(LW_PRINT, "%s\n", text.c_str());
    }
    if (m_texts.empty()) {
        SendLog(LW_PRINT, "nothing: the tree has all of the description\n");
    }
    AnswerResult(out, true);
}
