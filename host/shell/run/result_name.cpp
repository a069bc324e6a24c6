#include "host/shell/run/result_name.h"

const char* ResultName(const CRunRecord& record) {
    if (record.code == MSG_SKIPPED) {
        return "skipped";
    }
    switch (record.status) {
        case EXIT_PASSED:
            return "passed";
        case EXIT_FAILED:
            return "failed";
        case EXIT_USAGE:
            return "usage";
        case EXIT_ABORTED:
            return "aborted";
        default:
            return "host";
    }
}
