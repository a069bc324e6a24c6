#include "host/shell/report/json_report.h"

#include <nlohmann/json.hpp>

#include "framework/diag_functions.h"
#include "host/log_types.h"
#include "host/shell/report/json_scan.h"
#include "host/shell/report/utc_time.h"
#include "host/shell/run/result_name.h"

namespace {

// Keeps the members in the order in which they are written.
using CJson = nlohmann::ordered_json;

CJson TextOrNull(const std::string& text) {
    return text.empty() ? CJson() : CJson(text);
}

CJson LogOf(const CRunRecord& record) {
    CJson lines = CJson::array();
    for (const CRunLogLine& line : record.log) {
        lines.push_back({{"type", LogTypeName(line.type)},
                         {"level", line.level},
                         {"path", TextOrNull(line.path)},
                         {"text", line.text}});
    }
    return lines;
}

CJson OutputsOf(const CRunRecord& record) {
    CJson outputs = CJson::array();
    for (const CRunOutput& output : record.outputs) {
        CJson value = std::visit([](const auto& data) { return CJson(data); }, output.value.data);
        outputs.push_back({{"name", output.name},
                           {"type", output.type.Name()},
                           {"value", value},
                           {"text", output.value.text}});
    }
    return outputs;
}

CJson ResultOf(const CRunRecord& record) {
    return {{"status", ResultName(record)},
            {"exit", static_cast<int>(record.status)},
            {"code", record.code.has_value() ? CJson(static_cast<int>(*record.code)) : CJson()},
            {"name", record.code.has_value() ? CJson(resCode2str(*record.code)) : CJson()}};
}

}  // namespace

void CJsonReport::OnEnd(const CRunRecord& record) {
    const std::chrono::duration<double, std::milli> duration = record.duration;
    CJson object = {{"schema", SCHEMA_VERSION},
                    {"command", record.command},
                    {"path", TextOrNull(record.path)},
                    {"arguments", record.arguments},
                    {"origin", TextOrNull(record.origin)},
                    {"job", record.job == 0 ? CJson() : CJson(record.job)},
                    {"began", UtcTime(record.began)},
                    {"duration_ms", duration.count()},
                    {"result", ResultOf(record)},
                    {"outputs", OutputsOf(record)},
                    {"log", LogOf(record)},
                    {"log_left_out", record.log_left_out},
                    {"errors", record.errors}};
    if (!record.scan.empty()) {
        object["scan"] = ScanAsJson(record.scan);
    }
    // Bytes that are no text, as a chip may answer, must not spoil the rest.
    const std::string line = object.dump(-1, ' ', false, CJson::error_handler_t::replace) + "\n";
    if (std::fwrite(line.data(), 1, line.size(), m_out) != line.size() || std::fflush(m_out) != 0) {
        m_lost = true;
    }
}
