// The folder that a run of morva-i2c-sim has for itself: sockets, what processes share, and
// a little sysfs. Removed when the run ends.
#pragma once

#include <filesystem>

class CSimFolder {
  public:
    // Throws std::runtime_error when it cannot be made, or when its sockets could not have
    // a name so long.
    CSimFolder();
    ~CSimFolder();
    CSimFolder(const CSimFolder&) = delete;
    CSimFolder& operator=(const CSimFolder&) = delete;

    const std::filesystem::path& Path() const { return m_path; }
    std::filesystem::path Sysfs() const { return m_path / "sys"; }

  private:
    void MakeTurns() const;

    std::filesystem::path m_path;
};
