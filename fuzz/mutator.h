// Makes new inputs from those of a corpus, the same ones from the same seed.
#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

class CMutator {
  public:
    // Bytes of an input at the most.
    static constexpr size_t LONGEST = 4096;

    explicit CMutator(std::vector<std::string> corpus) : m_corpus(std::move(corpus)) {}

    std::string Next();

  private:
    size_t Below(size_t bound) { return m_random() % bound; }
    const std::string& AnyInput() { return m_corpus[Below(m_corpus.size())]; }
    // Some bytes of the text in a row, none of an empty one.
    std::string PieceOf(const std::string& text);
    void Change(std::string& text);

    const std::vector<std::string> m_corpus;
    std::mt19937 m_random{20261120};
};
