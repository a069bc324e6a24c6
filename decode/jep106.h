// Makers' identification codes (JEDEC JEP-106).
#pragma once

#include <cstdint>
#include <string>

// "Samsung (bank 1, code 0xce)" of the number of continuation codes, which is one less
// than the bank, and the code in that bank. Both have odd parity in their bit 7; with
// wrong parity there is no telling who is meant, and no name is given. Bytes that were
// never written (both 0x00 or both 0xff) are "(none)".
std::string MakerText(uint8_t continuations, uint8_t code);
