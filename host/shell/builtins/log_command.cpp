#include "host/shell/builtins/log_command.h"

#include "host/log_filter.h"
#include "host/log_types.h"
#include "host/shell/log_settings.h"
#include "host/shell/shell.h"
#include "host/shell/table.h"
#include "host/usage_error.h"

namespace {

std::string WhatShows(std::optional<unsigned int> level) {
    if (!level.has_value()) {
        return "off";
    }
    return *level == HIGHEST_LOG_LEVEL ? "shown" : "up to level " + std::to_string(*level);
}

std::string Overview(const CLogFilter& filter) {
    CTable table;
    for (const CLogTypeName& known : LOG_TYPE_NAMES) {
        if (known.type != LOG_LT_PRINT) {
            table.Add({known.name, WhatShows(filter.LevelOf(known.type))});
        }
    }
    return table.Text(0);
}

}  // namespace

std::vector<const char*> LogWords() {
    std::vector<const char*> words;
    for (const CLogTypeName& known : LOG_TYPE_NAMES) {
        if (known.type != LOG_LT_PRINT) {
            words.push_back(known.name);
        }
    }
    words.insert(words.end(), {"all", "off", "default"});
    return words;
}

EExitStatus ChooseLog(CShell& shell, const std::vector<std::string>& arguments) {
    CLogFilter& filter = shell.LogFilter();
    if (arguments.empty()) {
        shell.Print(Overview(filter));
    } else if (arguments.front() != "default") {
        Apply(ParseLogSettings(arguments), filter);
    } else if (arguments.size() == 1) {
        filter.RestoreDefaults();
    } else {
        throw CUsageError("log default: brings all types back at once and takes no argument");
    }
    return EXIT_PASSED;
}
