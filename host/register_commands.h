// The commands of every register device.
#pragma once

class CDiagRegisterDevice;

// Adds "regpeek", "regpoke", "regset", "regclr", "regdump" and "regtable".
void AddRegisterCommands(CDiagRegisterDevice& device);
