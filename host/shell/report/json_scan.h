// What a scan found out, as JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <vector>

#include "host/shell/run/scan_result.h"

nlohmann::ordered_json ScanAsJson(const std::vector<CScannedWire>& wires);
