// The text of whatever was thrown.
#pragma once

#include <string>

// To be called in a catch block.
std::string CurrentExceptionText();
