// The folder with the contents of a simulated board belongs to one process at a
// time: two would overwrite each other's memories, and both report success.
#pragma once

#include <filesystem>

#include "framework/file_descriptor.h"

class CStateLock {
  public:
    // Makes the folder where it is missing. Throws CDiagException, naming the
    // other process, when that has the folder. A folder that cannot be written,
    // or locked, is not locked.
    explicit CStateLock(const std::filesystem::path& folder);

  private:
    const CFileDescriptor m_file;
};
