// Waiting for input without missing Ctrl-C.
#pragma once

class CInterrupt;

// Waits until the descriptor can be read; false when Ctrl-C comes first or came
// already.
bool AwaitInput(int descriptor, const CInterrupt& interrupt);
