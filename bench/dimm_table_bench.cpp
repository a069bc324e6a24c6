// What reading a DIMM table costs over what libxml2 takes for the same document:
// time against xmlReadFile and one walk over all its nodes, with the memory of
// both beside it; and that ten times the modules take ten times as long.
#include <libxml/parser.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/bench_main.h"
#include "bench/bench_report.h"
#include "bench/median.h"
#include "bench/program.h"
#include "host/diag_log.h"
#include "host/log_filter.h"
#include "host/terminal.h"
#include "i2c/diag_param_eeprom_xml_parser.h"
#include "tests/support/temp_folder.h"

namespace {

constexpr double MOST = 1.5;
constexpr double MOST_FOR_TEN_TIMES = 11.0;
constexpr int FEW = 2'000;
constexpr int MANY = 20'000;
constexpr int PAIRS = 20;
constexpr int ROUNDS = 9;

std::string Element(const char* name, const std::string& text) {
    return "      <" + std::string(name) + ">" + text + "</" + name + ">\n";
}

std::string WriteTable(const CTempFolder& folder, int modules) {
    std::string file = folder / (std::to_string(modules) + ".xml");
    std::ofstream out(file);
    out << "<?xml version=\"1.0\"?>\n<dimm_table>\n"
        << Element("dimm_table_version", "0x00000003") << Element("signature", "0xA5A50001");
    for (int i = 0; i < modules; ++i) {
        out << "  <dimm>\n"
            << Element("jedec_manufacturer_id", "0x000000000000802C")
            << Element("dimm_part_num", "PN-" + std::to_string(i))
            << Element("revision_start", "0x00") << Element("revision_end", "0xFF")
            << "    <register_set>\n";
        for (int pair = 0; pair < PAIRS; ++pair) {
            out << Element("offset", "0x00000010") << Element("value", "0x0000001F");
        }
        out << "    </register_set>\n  </dimm>\n";
    }
    out << "</dimm_table>\n";
    return file;
}

int64_t CountNodes(const xmlNode* node) {
    int64_t count = 0;
    for (; node != nullptr; node = node->next) {
        count += 1 + CountNodes(node->children);
    }
    return count;
}

struct CFreeDoc {
    void operator()(xmlDoc* doc) const { xmlFreeDoc(doc); }
};

void ReadBare(const std::string& file) {
    const std::unique_ptr<xmlDoc, CFreeDoc> doc(xmlReadFile(file.c_str(), nullptr, 0));
    if (CountNodes(xmlDocGetRootElement(doc.get())) == 0) {
        throw CDiagException("%s has no nodes", file.c_str());
    }
}

void ReadTable(const std::string& file, size_t modules) {
    DimmTable table;
    Parser parser(file.c_str(), &table);
    const std::vector<std::string> text = parser.parse();
    if (table.num_Entries != modules || text.size() != modules * (PAIRS + 2)) {
        throw CDiagException("%s: modules are missing", file.c_str());
    }
}

struct CCost {
    double cpu_ms = 0;
    double peak_mib = 0;
};

// Of `work` in a fresh process: a shell reads a table now and then, not again and
// again in memory that it has kept.
CCost CostOf(const std::function<void()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        work();
        ::_exit(0);
    }
    rusage usage{};
    int status = 0;
    if (child < 0 || ::wait4(child, &status, 0, &usage) != child || status != 0) {
        throw CDiagException("a measured process failed");
    }
    return {MsOf(usage), static_cast<double>(usage.ru_maxrss) / 1024};
}

struct CUse {
    const char* name;
    std::function<void()> work;
    std::vector<double> ms{};
    std::vector<double> mib{};
};

int Run() {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> nowhere(std::fopen("/dev/null", "we"),
                                                                  std::fclose);
    CTerminal terminal(nowhere.get(), nowhere.get());
    CLogFilter filter;
    CTerminalLog log(terminal, filter);
    const CLogSinkScope sink(log);

    const CTempFolder folder;
    const std::string few = WriteTable(folder, FEW);
    const std::string many = WriteTable(folder, MANY);
    std::vector<CUse> uses = {{"xmlReadFile and a walk, 20,000", [&] { ReadBare(many); }},
                              {"table, 20,000 modules", [&] { ReadTable(many, MANY); }},
                              {"table, 2,000 modules", [&] { ReadTable(few, FEW); }}};
    for (int round = 0; round < ROUNDS; ++round) {
        for (CUse& use : uses) {
            const CCost cost = CostOf(use.work);
            use.ms.push_back(cost.cpu_ms);
            use.mib.push_back(cost.peak_mib);
        }
    }
    for (const CUse& use : uses) {
        std::printf("%-32s %6.1f ms %6.0f MiB at the most\n", use.name, Median(use.ms),
                    Median(use.mib));
    }
    const double table = Median(uses[1].ms);
    const bool cheap =
        CBenchReport::Judge("the table / xmlReadFile and a walk", table / Median(uses[0].ms), MOST);
    const bool linear = CBenchReport::Judge("ten times the modules", table / Median(uses[2].ms),
                                            MOST_FOR_TEN_TIMES);
    return cheap && linear ? 0 : 1;
}

}  // namespace

int main() {
    return BenchMain(Run);
}
