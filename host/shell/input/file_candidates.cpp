#include "host/shell/input/file_candidates.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

#include "host/shell/input/candidates.h"

void OfferFiles(CCandidates& candidates, const std::string& folder) {
    const bool hidden = candidates.Typed().starts_with('.');
    std::vector<std::filesystem::directory_entry> entries;
    std::error_code error;
    std::filesystem::directory_iterator next(folder.empty() ? "." : folder, error);
    for (; !error && next != std::filesystem::directory_iterator(); next.increment(error)) {
        const std::string name = next->path().filename().string();
        if (name.starts_with(candidates.Typed()) && (hidden || !name.starts_with('.'))) {
            entries.push_back(*next);
        }
    }
    std::sort(entries.begin(), entries.end());
    for (const auto& entry : entries) {
        const char* mark = entry.is_directory(error) ? "/" : "";
        candidates.Offer(entry.path().filename().string(), mark, mark);
    }
}
