#include "boards/devicetree/left_out.h"

#include "boards/devicetree/printable_text.h"

void CLeftOut::Add(const CDeviceTreeNode& node, const std::string& compatible, const char* why) {
    std::string text = node.Path() + ": ";
    if (!compatible.empty()) {
        text += "\"" + PrintableText(compatible) + "\" ";
    }
    m_texts.push_back(text + "is " + why);
}
