// The operator's consent to what others may suffer from, such as a write to a chip
// that a driver of the running kernel works with.
#pragma once

#include <string>

// Whether it may be done, `what` being the question without its mark: "write to 0x50 on
// i2c-0, which the driver at24 uses". An operator at the prompt is asked, once for each
// text while one command runs, and only on the thread of that command. Nobody is there to
// be asked for a script or a job: they are refused without a word, and whoever asked for
// consent says what was refused. All is allowed when diagsh was started with --force.
bool AllowedByOperator(const std::string& what);
