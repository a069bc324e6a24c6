#include "host/shell/report/junit_report.h"

#include <libxml/xmlwriter.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

#include "host/printable.h"
#include "host/shell/report/utc_time.h"
#include "host/shell/run/result_name.h"

namespace {

enum class EVerdict { PASSED, FAILURE, ERROR, SKIPPED };

// A failure is what the device did; an error kept it from being asked.
EVerdict VerdictOf(const CRunRecord& record) {
    if (record.code == MSG_SKIPPED) {
        return EVerdict::SKIPPED;
    }
    switch (record.status) {
        case EXIT_PASSED:
            return EVerdict::PASSED;
        case EXIT_FAILED:
            return EVerdict::FAILURE;
        default:
            return EVerdict::ERROR;
    }
}

struct CTotals {
    std::array<size_t, 4> count{};
    std::chrono::nanoseconds time{0};

    size_t Of(EVerdict verdict) const { return count[static_cast<size_t>(verdict)]; }
};

CTotals TotalsOf(const std::vector<CRunRecord>& records) {
    CTotals totals;
    for (const CRunRecord& record : records) {
        ++totals.count[static_cast<size_t>(VerdictOf(record))];
        totals.time += record.duration;
    }
    return totals;
}

std::string Seconds(std::chrono::nanoseconds duration) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.6f",
                  std::chrono::duration<double>(duration).count());
    return text.data();
}

// "i2c-0.eeprom" of "/i2c-0/eeprom/rw-test": readers group testcases by it.
std::string ClassOf(const CRunRecord& record) {
    const size_t name = record.path.rfind('/');
    if (name == std::string::npos || name == 0) {
        return "diagsh";
    }
    std::string text = record.path.substr(1, name - 1);
    std::replace(text.begin(), text.end(), '/', '.');
    return Printable(text);
}

std::string NameOf(const CRunRecord& record) {
    const size_t name = record.path.rfind('/');
    return name == std::string::npos ? record.command : record.command.substr(name + 1);
}

std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += (text.empty() ? "" : "\n") + Printable(line);
    }
    return text;
}

std::string LogText(const CRunRecord& record) {
    std::string text;
    for (const CRunLogLine& line : record.log) {
        text += Printable(line.text) + "\n";
    }
    if (record.log_left_out != 0) {
        text += "... and " + std::to_string(record.log_left_out) + " more lines\n";
    }
    return text;
}

// The XML library's writer, into memory.
class CXmlText {
  public:
    CXmlText() : m_buffer(::xmlBufferCreate()), m_writer(::xmlNewTextWriterMemory(m_buffer, 0)) {
        if (m_writer == nullptr) {
            ::xmlBufferFree(m_buffer);
            throw std::bad_alloc();
        }
        ::xmlTextWriterSetIndent(m_writer, 1);
        ::xmlTextWriterStartDocument(m_writer, nullptr, "UTF-8", nullptr);
    }
    ~CXmlText() {
        ::xmlFreeTextWriter(m_writer);
        ::xmlBufferFree(m_buffer);
    }
    CXmlText(const CXmlText&) = delete;
    CXmlText& operator=(const CXmlText&) = delete;

    void Begin(const char* element) { ::xmlTextWriterStartElement(m_writer, BAD_CAST element); }
    void Attribute(const char* name, const std::string& value) {
        ::xmlTextWriterWriteAttribute(m_writer, BAD_CAST name, BAD_CAST value.c_str());
    }
    void Text(const std::string& text) {
        ::xmlTextWriterWriteString(m_writer, BAD_CAST text.c_str());
    }
    void End() { ::xmlTextWriterEndElement(m_writer); }

    std::string Whole() {
        ::xmlTextWriterEndDocument(m_writer);
        ::xmlTextWriterFlush(m_writer);
        return {reinterpret_cast<const char*>(::xmlBufferContent(m_buffer)),
                static_cast<size_t>(::xmlBufferLength(m_buffer))};
    }

  private:
    ::xmlBufferPtr m_buffer;
    ::xmlTextWriterPtr m_writer;
};

void AddTotals(CXmlText& xml, const std::vector<CRunRecord>& records) {
    const CTotals totals = TotalsOf(records);
    xml.Attribute("name", "diagsh");
    xml.Attribute("tests", std::to_string(records.size()));
    xml.Attribute("failures", std::to_string(totals.Of(EVerdict::FAILURE)));
    xml.Attribute("errors", std::to_string(totals.Of(EVerdict::ERROR)));
    xml.Attribute("skipped", std::to_string(totals.Of(EVerdict::SKIPPED)));
    xml.Attribute("time", Seconds(totals.time));
}

void AddVerdict(CXmlText& xml, const CRunRecord& record) {
    const EVerdict verdict = VerdictOf(record);
    if (verdict == EVerdict::PASSED) {
        return;
    }
    if (verdict == EVerdict::SKIPPED) {
        xml.Begin("skipped");
        xml.End();
        return;
    }
    const std::string errors = Joined(record.errors);
    xml.Begin(verdict == EVerdict::FAILURE ? "failure" : "error");
    xml.Attribute("type", ResultName(record));
    xml.Attribute("message", errors.substr(0, errors.find('\n')));
    xml.Text(errors);
    xml.End();
}

void AddCase(CXmlText& xml, const CRunRecord& record) {
    xml.Begin("testcase");
    xml.Attribute("name", Printable(NameOf(record)));
    xml.Attribute("classname", ClassOf(record));
    xml.Attribute("time", Seconds(record.duration));
    AddVerdict(xml, record);
    if (const std::string log = LogText(record); !log.empty()) {
        xml.Begin("system-out");
        xml.Text(log);
        xml.End();
    }
    xml.End();
}

std::string ReportOf(const std::vector<CRunRecord>& records) {
    CXmlText xml;
    xml.Begin("testsuites");
    AddTotals(xml, records);
    xml.Begin("testsuite");
    AddTotals(xml, records);
    if (!records.empty()) {
        xml.Attribute("timestamp", UtcTime(records.front().began));
    }
    for (const CRunRecord& record : records) {
        AddCase(xml, record);
    }
    xml.End();
    xml.End();
    return xml.Whole();
}

[[noreturn]] void ThrowErrno(const std::string& path) {
    throw std::system_error(errno, std::generic_category(), path);
}

}  // namespace

CJunitReport::CJunitReport(const std::string& path)
    : m_path(path), m_file(std::fopen(path.c_str(), "we")) {
    if (m_file == nullptr) {
        ThrowErrno(path);
    }
}

void CJunitReport::OnEnd(const CRunRecord& record) {
    // A built-in counts where it has something to say for itself, and not where
    // it passes on what others did, as repeat and wait do.
    if (record.path.empty() && record.errors.empty()) {
        return;
    }
    m_records.push_back(record);
    CRunRecord& kept = m_records.back();
    kept.outputs.clear();
    if (kept.log.size() > MAX_LINES) {
        kept.log_left_out += kept.log.size() - MAX_LINES;
        kept.log.resize(MAX_LINES);
    }
}

void CJunitReport::Finish() {
    const std::string report = ReportOf(m_records);
    if (std::fwrite(report.data(), 1, report.size(), m_file.get()) != report.size() ||
        std::fclose(m_file.release()) != 0) {
        ThrowErrno(m_path);
    }
}
