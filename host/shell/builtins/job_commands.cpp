#include "host/shell/builtins/job_commands.h"

#include <charconv>
#include <system_error>

#include "host/diag_tree.h"
#include "host/printable.h"
#include "host/shell/run/jobs.h"
#include "host/shell/shell.h"
#include "host/usage_error.h"

namespace {

bool IsNumber(const std::string& word) {
    return !word.empty() && word.find_first_not_of("0123456789") == std::string::npos;
}

CJob& JobAt(const CShell& shell, const std::string& word) {
    unsigned int number = 0;
    const auto parsed = std::from_chars(word.data(), word.data() + word.size(), number);
    CJob* job = IsNumber(word) && parsed.ec == std::errc() ? shell.Jobs().Find(number) : nullptr;
    if (job == nullptr) {
        throw CUsageError("there is no job " + Printable(word) + "; jobs lists them");
    }
    return *job;
}

bool IsAtOrBelow(const CDiagObj* node, const CDiagObj& top) {
    while (node != nullptr && node != &top) {
        node = node->GetParent();
    }
    return node != nullptr;
}

std::vector<CJob*> RunningAt(const CShell& shell, const CDiagObj& top) {
    std::vector<CJob*> running;
    for (const auto& job : shell.Jobs().All()) {
        if (!job->Result().has_value() && IsAtOrBelow(&job->Node(), top)) {
            running.push_back(job.get());
        }
    }
    return running;
}

}  // namespace

EExitStatus ListJobs(CShell& shell, const std::vector<std::string>&) {
    for (const auto& job : shell.Jobs().All()) {
        shell.Print(job->Description());
    }
    return EXIT_PASSED;
}

EExitStatus WaitForJobs(CShell& shell, const std::vector<std::string>& arguments) {
    std::vector<CJob*> jobs;
    jobs.reserve(arguments.size());
    for (const std::string& word : arguments) {
        jobs.push_back(&JobAt(shell, word));
    }
    if (arguments.empty()) {
        for (const auto& job : shell.Jobs().All()) {
            if (!job->IsCollected()) {
                jobs.push_back(job.get());
            }
        }
    }
    const EExitStatus status = CJobs::Await(jobs, shell.Interrupt());
    if (shell.IsInterrupted()) {
        return shell.ReportError("wait: ended by Ctrl-C; the jobs go on", EXIT_ABORTED);
    }
    return status;
}

EExitStatus StopJobs(CShell& shell, const std::vector<std::string>& arguments) {
    // All words are looked up before any job is stopped. A job may end just
    // before, so that one which has is no error.
    std::vector<CJob*> jobs;
    for (const std::string& word : arguments) {
        if (IsNumber(word)) {
            jobs.push_back(&JobAt(shell, word));
            continue;
        }
        const std::vector<CJob*> running = RunningAt(shell, shell.NodeAt(word));
        jobs.insert(jobs.end(), running.begin(), running.end());
    }
    if (arguments.empty()) {
        jobs = RunningAt(shell, RootOf(shell.Current()));
    }
    if (jobs.empty()) {
        shell.Print(arguments.empty() ? "no job runs\n" : "no job runs there\n");
    }
    for (CJob* job : jobs) {
        if (job->Result().has_value()) {
            shell.Print(job->Description());
        } else {
            job->Stop();
        }
    }
    return EXIT_PASSED;
}
