// What a scan found out, as people are shown it.
#pragma once

#include <string>
#include <vector>

#include "host/shell/run/scan_result.h"

// A grid for each wire with something on it, a line for each without; the marks that want
// it are explained once, at the end.
std::string ScanPicture(const std::vector<CScannedWire>& wires);
