// Scripts: lines that run one after the other, until one does not pass.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "host/shell/exit_status.h"

class CShell;
class ILineReader;
enum class ELine;

struct CScriptCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using CScriptFile = std::unique_ptr<std::FILE, CScriptCloser>;

// Opens a script; null, and errno says why, when it is none.
CScriptFile OpenScript(const std::string& path);

// Carries out the line that a read gave, or says why nothing of it was done.
EExitStatus CarryOut(CShell& shell, ELine result, const std::string& line,
                     const std::string& origin);

// What a run goes on with after something ended with `status`: it says that it
// was aborted where nobody said so yet, and knows when output got lost.
EExitStatus StatusAfter(CShell& shell, EExitStatus status, const std::string& origin);

// Whether a run ends behind a command that ended with `status`.
bool EndsRun(const CShell& shell, EExitStatus status);

// Runs the lines. Errors name them, "NAME:3".
EExitStatus RunLines(CShell& shell, ILineReader& lines, const std::string& name);
