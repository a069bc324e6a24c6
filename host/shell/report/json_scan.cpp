#include "host/shell/report/json_scan.h"

namespace {

// Keeps the members in the order in which they are written.
using CJson = nlohmann::ordered_json;

CJson TextOrNull(const std::string& text) {
    return text.empty() ? CJson() : CJson(text);
}

CJson WireAsJson(const CScannedWire& wire) {
    CJson lists = {{"answers", CJson::array()},
                   {"silent", CJson::array()},
                   {"upstream", CJson::array()},
                   {"owned", CJson::array()},
                   {"failed", CJson::array()}};
    for (size_t addr = 0; addr < wire.cells.size(); ++addr) {
        const CScanCell& cell = wire.cells[addr];
        switch (cell.mark) {
            case EScanMark::NOT_ASKED:
                break;
            case EScanMark::SILENT:
                lists["silent"].push_back({{"address", addr}, {"name", TextOrNull(cell.name)}});
                break;
            case EScanMark::ANSWERS:
                lists["answers"].push_back({{"address", addr}, {"name", TextOrNull(cell.name)}});
                break;
            case EScanMark::ABOVE:
                lists["upstream"].push_back(addr);
                break;
            case EScanMark::OWNED:
                lists["owned"].push_back(
                    {{"address", addr}, {"name", TextOrNull(cell.name)}, {"driver", cell.text}});
                break;
            case EScanMark::FAILED:
                lists["failed"].push_back(
                    {{"address", addr}, {"name", TextOrNull(cell.name)}, {"reason", cell.text}});
                break;
        }
    }
    CJson object = {
        {"path", wire.path}, {"error", TextOrNull(wire.error)}, {"note", TextOrNull(wire.note)}};
    object.update(lists);
    return object;
}

}  // namespace

CJson ScanAsJson(const std::vector<CScannedWire>& wires) {
    CJson scan = CJson::array();
    for (const CScannedWire& wire : wires) {
        scan.push_back(WireAsJson(wire));
    }
    return scan;
}
