// A file that a terminal writes to and a test reads back.
#pragma once

#include <array>
#include <cstdio>
#include <memory>
#include <string>

class CTextFile {
  public:
    std::FILE* Get() const { return m_file.get(); }

    // What was written since the last call.
    std::string Written() {
        std::fflush(m_file.get());
        std::fseek(m_file.get(), m_read, SEEK_SET);
        std::string text;
        std::array<char, 4096> part;
        size_t count = 0;
        while ((count = std::fread(part.data(), 1, part.size(), m_file.get())) != 0) {
            text.append(part.data(), count);
        }
        m_read += static_cast<long>(text.size());
        return text;
    }

  private:
    struct CClose {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    const std::unique_ptr<std::FILE, CClose> m_file{std::tmpfile()};
    long m_read = 0;
};
