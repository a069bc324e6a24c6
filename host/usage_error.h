// The operator's input cannot be carried out as it stands.
#pragma once

#include <stdexcept>

class CUsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};
