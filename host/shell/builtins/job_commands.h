// The built-ins for background jobs.
#pragma once

#include <string>
#include <vector>

#include "host/shell/exit_status.h"

class CShell;

// jobs: lists them.
EExitStatus ListJobs(CShell& shell, const std::vector<std::string>& arguments);
// wait [JOB...]: awaits them, or all that nobody awaited yet.
EExitStatus WaitForJobs(CShell& shell, const std::vector<std::string>& arguments);
// stop [JOB|NODE...]: asks them to stop, or all that run on a node or below it, or all.
EExitStatus StopJobs(CShell& shell, const std::vector<std::string>& arguments);
