// Makes the records of commands and tests while they run and hands each to the
// observers when it ends. What a thread logs or prints belongs to the innermost
// record that is open on it.
#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "host/diag_log.h"
#include "host/shell/run/run_record.h"

class CLogFilter;

class CRunRecorder : public ILogSink {
  public:
    // Lines of the log that one record keeps at the most.
    static constexpr size_t MAX_LINES = 10000;

    // Records the log texts that `filter` lets through.
    explicit CRunRecorder(const CLogFilter& filter) : m_filter(filter) {}
    ~CRunRecorder() override;
    CRunRecorder(const CRunRecorder&) = delete;
    CRunRecorder& operator=(const CRunRecorder&) = delete;

    // Not owned. Before anything runs.
    void AddObserver(IRunObserver& observer);
    // Whether an observer lost what it writes.
    bool IsLost() const;

    // Has a record open on the calling thread for a scope.
    class COpen {
      public:
        COpen(CRunRecorder& recorder, CRunRecord record);
        // Hands the record to the observers.
        ~COpen();
        COpen(const COpen&) = delete;
        COpen& operator=(const COpen&) = delete;

        CRunRecord& Record() { return m_record; }
        // Tells the observers that it begins: the record says by now what it is.
        void Begin() const { m_recorder.Begin(m_record); }
        // Nothing ran that would be worth a record.
        void Drop() { m_dropped = true; }

      private:
        friend class CRunRecorder;

        CRunRecorder& m_recorder;
        COpen* const m_outer;
        CRunRecord m_record;
        const std::chrono::steady_clock::time_point m_began;
        std::string m_print;  // the line that print text has begun
        std::string m_print_path;
        bool m_dropped = false;
    };

    // Add to the record that is open on the calling thread, if one is.
    void NoteOutput(const std::string& name, CValueType type, const CValue& value);
    void NotePrint(std::string_view text);
    void NoteScan(const std::vector<CScannedWire>& wires);
    static void NoteCode(EResCode code);
    static void NoteError(const std::string& text);
    // The job that the calling thread carries out, 0 if none.
    static unsigned int JobHere();

    bool Takes(unsigned int logword) const override;
    void Write(const CLogRecord& record) override;

  private:
    COpen* OpenHere() const;
    static void AddPrint(COpen& open, const std::string& path, std::string_view text);
    static void EndPrint(COpen& open);
    static void AddLine(CRunRecord& record, CRunLogLine line);
    void Begin(const CRunRecord& record);
    void End(const CRunRecord& record);

    const CLogFilter& m_filter;
    bool m_wants_details = false;
    std::mutex m_lock;
    std::vector<IRunObserver*> m_observers;
};
