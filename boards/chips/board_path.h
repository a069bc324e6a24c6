// The way to a chip, open for a piece of work.
#pragma once

#include <utility>

#include "framework/diag_exception.h"
#include "i2c/DiagI2cSlaveDevice.h"

// Opens the way, does `work` and closes the way, also when the work throws.
// Throws CDiagException when the way cannot be opened or closed.
template <class Work>
void OnOpenPath(CDiagI2cSlaveDevice& chip, Work&& work) {
    if (!chip.EnablePath()) {
        throw CDiagException("the I2C path could not be opened");
    }
    try {
        std::forward<Work>(work)();
    } catch (...) {
        chip.ClearPath();
        throw;
    }
    if (!chip.ClearPath()) {
        throw CDiagException("the I2C path could not be closed");
    }
}
