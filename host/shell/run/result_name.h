// A result in one word: passed, skipped, failed, usage, aborted or host.
#pragma once

#include "host/shell/run/run_record.h"

const char* ResultName(const CRunRecord& record);
