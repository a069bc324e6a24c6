#include "boards/mdio_sim/sim_environment.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>

std::optional<int> FaultFrom(const char* variable) {
    const char* text = std::getenv(variable);
    if (text == nullptr) {
        return 0;
    }
    char* rest = nullptr;
    const long number = std::strtol(text, &rest, 10);
    const bool is_number = std::isdigit(static_cast<unsigned char>(*text)) != 0 && *rest == 0;
    if (!is_number || number < 1 || number > LAST_ERRNO) {
        return std::nullopt;
    }
    return static_cast<int>(number);
}

void TellWrongFault(const char* variable) {
    std::fprintf(stderr, "morva-mdio-sim: %s is '%s', should be an error number from 1 to %d\n",
                 variable, std::getenv(variable), LAST_ERRNO);
}
