// A descriptor of a simulated adapter, as the preloaded object makes it and knows it again.
#pragma once

#include <optional>

// The number that the text is: digits alone, as the kernel writes it.
std::optional<unsigned int> AdapterNumber(const char* text);

// A descriptor, or a negated errno.
int OpenAdapter(unsigned int number, bool close_on_exec);

// The number of the adapter that the descriptor is one of. Leaves errno alone.
std::optional<unsigned int> AdapterOf(int fd);
