#include "host/shell/builtins/help_texts.h"

#include <algorithm>

namespace {

constexpr const char* NAVIGATE = "Navigate";
constexpr const char* RUN = "Run";
constexpr const char* VALUES = "Values";
constexpr const char* MEMORY = "Memory";
constexpr const char* JOBS = "Jobs";
constexpr const char* SHELL = "Shell";

const std::vector<CHelpText>& HelpTexts() {
    static const std::vector<CHelpText> texts = {
        {"cd",
         NAVIGATE,
         "The prompt shows where you are. As in a file system, .. is the node above.\n",
         {{"cd i2c-0/pca9547-0/ch1", "down, from where you are"},
          {"cd ..", "up"},
          {"cd /i2c-1", "from the top"}}},
        {"pwd", NAVIGATE, "", {}},
        {"ls",
         NAVIGATE,
         "Behind a name / marks a menu or a device, = a value, [] an array and ! a test;\n"
         "commands have no mark. With -l each line begins with the type, of values and\n"
         "arrays what they hold (ro: read-only), and shows what a value holds, where an\n"
         "array runs, or how a test ended last. Arrays are not read, nor are values\n"
         "that log each peek; ? stands for a value that could not be read.\n",
         {{"ls", "where you are"}, {"ls -l /i2c-0", "the first bus, with types and values"}}},
        {"tree",
         NAVIGATE,
         "-a shows commands too, -l types and values as ls does, -d stops that many\n"
         "levels below the node.\n",
         {{"tree", "from where you are"},
          {"tree -d 2 /", "an overview of the board"},
          {"tree -al i2c-0", "all there is on the first bus"}}},
        {"find",
         NAVIGATE,
         "Upper and lower case are the same. Without NODE the whole tree is searched.\n",
         {{"find eeprom", "all of them"}, {"find 0x50 /i2c-0", "what hangs at 0x50"}}},
        {"scan",
         RUN,
         "Each bus and each channel of a multiplexer is a grid, or a line where nothing\n"
         "answers: -- is no answer, the address itself an answer, UU what a driver of the\n"
         "kernel works with, ^^ on a channel what answers nearer to the root bus already,\n"
         "!! a failure of the bus. 0x08 to 0x77 are asked, with -a all: 0x30 to 0x37 and\n"
         "0x50 to 0x5f by reading a byte, the others by a quick write. -q asks all by a\n"
         "quick write, -r all by reading; either does harm to some chips.\n",
         {{"scan", "where you are and below"},
          {"scan /", "the whole board"},
          {"scan i2c-0/pca9547-0/ch1", "a channel and what hangs on it"}}},
        {"repeat",
         RUN,
         "With a count all runs are done, whatever becomes of them; until-fail ends after\n"
         "the first that does not pass. Ctrl-C ends both. At the end there is a count of\n"
         "runs and failures, and the shortest, mean and longest time. Several commands\n"
         "are given in quotes.\n",
         {{"repeat 100 i2c-0/chk-dev 0x50", "a hundred times"},
          {"repeat until-fail i2c-0/mfg-eeprom/rw-test", "for a fault that comes and goes"},
          {"repeat 3 'i2c-0/probe; sleep 1'", "two commands, three times"}}},
        {"sleep", RUN, "Ctrl-C ends it.\n", {{"sleep 0.5", "half a second"}}},
        {"source",
         RUN,
         "It ends at the first command that does not pass, unless diagsh was started\n"
         "with --keep-going. Errors name file and line.\n",
         {{"source bringup.txt", "the lines of a file, as if typed here"}}},
        {"status",
         RUN,
         "A table of the tests: the last result, how often each result came, and when\n"
         "the last run ended. --reset forgets all that.\n",
         {{"status", "all tests"},
          {"status /i2c-0", "those of the first bus"},
          {"status --reset", "begins anew"}}},
        {"peek",
         VALUES,
         "Without a position all elements of an array are read. Positions are indexes or\n"
         "addresses; help NODE tells which, and where they end.\n",
         {{"peek /i2c-0/last-error", "a value"},
          {"peek memory 0x20..0x2f", "elements of an array"},
          {"peek memory", "all of them"}}},
        {"poke",
         VALUES,
         "The same value goes to all elements of a range.\n",
         {{"poke memory 0x20 0xAB", "one element"},
          {"poke memory 0x20..0x2f 0", "sixteen elements"}}},
        {"export",
         MEMORY,
         "The file is made when everything has been read, so that what goes wrong before\n"
         "leaves no file, or the old one as it was. --force lets it replace a file.\n",
         {{"export /i2c-0/mfg-eeprom saved.bin", "all its bytes, as they are"},
          {"export /i2c-0/mfg-eeprom saved.bin --force", "over a file that exists"}}},
        {"import",
         MEMORY,
         "It shows what would change and asks first, unless --yes is given; in a script\n"
         "nobody can be asked. It writes only the pages that differ, and reads back what\n"
         "it wrote.\n",
         {{"import /i2c-0/mfg-eeprom saved.bin", "from the start of the device on"},
          {"import /i2c-0/mfg-eeprom part.bin 0x100", "from offset 0x100 on"}}},
        {"jobs",
         JOBS,
         "A & behind a command or a test starts one. Built-ins do not run as jobs.\n",
         {{"/i2c-0/mfg-eeprom/read-cont 3600 &", "starts a job"},
          {"jobs", "what runs, and what became of the others"}}},
        {"wait",
         JOBS,
         "It ends as the worst of the jobs did. Ctrl-C ends the wait, not the jobs.\n",
         {{"wait", "until all jobs have ended"}, {"wait 1 3", "until these have"}}},
        {"stop",
         JOBS,
         "A test ends at its next safe point, and restores what it changed. A command that\n"
         "works already cannot be stopped.\n",
         {{"stop 2", "job 2"}, {"stop /i2c-0", "what runs there or below"}, {"stop", "all"}}},
        {"log",
         SHELL,
         "The types are test-error, system-error, error, warning, system, info, progress,\n"
         "result, hw-debug and sw-debug; all stands for them. The higher the level, the\n"
         "more shows. Without arguments it tells what shows, default is as at the start.\n",
         {{"log hw-debug=1", "why a transfer failed"},
          {"log all=off warning=15", "warnings only"},
          {"log default", "as at the start"}}},
        {"history",
         SHELL,
         "They are kept from session to session. Arrow keys and Ctrl-R bring them back.\n",
         {{"history 5", "the last five"}, {"history rw-test", "those that have rw-test in them"}}},
        {"echo",
         SHELL,
         "",
         {{"echo 'Put the loopback plug in'", "a line for who reads a script's output"}}},
        {"help",
         SHELL,
         "Of a command or a test it tells the arguments and the answers.\n",
         {{"help /i2c-0/trans", "a command"},
          {"help peek", "a built-in"},
          {"help syntax", "how lines, words and numbers are written"}}},
        {"quit", SHELL, "Jobs that still run are asked to stop, and awaited.\n", {}},
    };
    return texts;
}

}  // namespace

const std::vector<const char*>& HelpGroups() {
    static const std::vector<const char*> groups = {NAVIGATE, RUN, VALUES, MEMORY, JOBS, SHELL};
    return groups;
}

const CHelpText* FindHelpText(const std::string& builtin) {
    const auto& all = HelpTexts();
    const auto found = std::find_if(all.begin(), all.end(), [&builtin](const CHelpText& text) {
        return builtin == text.builtin;
    });
    return found == all.end() ? nullptr : &*found;
}

const char* SyntaxHelp() {
    return R"(lines
  COMMAND ; COMMAND     one after the other
  COMMAND && COMMAND    the second only if the first passed
  NODE [ARGUMENT...] &  in the background, as a job
  # COMMENT             a # at the beginning of a word: the rest is ignored
paths
  /i2c-0/probe          from the top
  probe, ../i2c-1       from the node in the prompt; .. is the node above
  /i2c-0/pro            a name may be cut short while only one node begins so;
                        built-ins are written in full, and go before nodes:
                        ./stop is a node
words
  'a b'                 everything between is taken as it stands
  "a\tb"                knows \\ \" \' \n \t \r \0 \xHH, as bare words do
  \; \& \# and \        before a blank: no special meaning
numbers
  10  0xa  0o12  0b1010    ten, in four ways; -10 where the sign fits
  0x1234_5678  1_000_000   _ between digits, for the eye
  010                      refused: octal to some, decimal to others
)";
}
