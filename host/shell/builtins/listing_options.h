// The words behind "ls" and "tree": options, which may stand anywhere, and a node.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

struct CListingOptions {
    std::string node = ".";
    bool commands = false;                                   // -a: commands too
    bool details = false;                                    // -l: type and value too
    uint64_t levels = std::numeric_limits<uint64_t>::max();  // -d: below the node

    // Options of one letter may stand together, "-al". Throws CUsageError for an
    // option that is none of `letters`, and for a second node.
    static CListingOptions Of(const std::string& builtin, const std::vector<std::string>& words,
                              const std::string& letters);
};
