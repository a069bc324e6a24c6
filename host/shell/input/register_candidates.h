// Registers, for who types the name of one.
#pragma once

#include <string>

class CCandidates;
class CRegisterArguments;

// Offers what the argument `param` takes: registers, and of an array its elements once
// its name and a "[" stand there. Nothing where it takes no registers.
void OfferRegisters(CCandidates& candidates, const CRegisterArguments& arguments,
                    const std::string& param);
