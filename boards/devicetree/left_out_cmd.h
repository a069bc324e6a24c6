// Lists what of the board's description has no place in the tree.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "framework/diag_func.h"

class CLeftOutCmd : public CDiagFunc {
  public:
    static constexpr const char* NAME = "left-out";

    explicit CLeftOutCmd(std::vector<std::string> texts)
        : CDiagFunc(NAME, "List the nodes of the description that are not in the tree, and why",
                    SHARES_DEVICE),
          m_texts(std::move(texts)) {}

    void Invoke(CInMsg& in, COutMsg& out) override;

  private:
    const std::vector<std::string> m_texts;
};
