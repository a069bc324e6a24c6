"""What bash offers behind diagsh: options, files that fit them, types and levels.

Runs with the source folder and diagsh in SOURCES and DIAGSH.
"""

import os
import pathlib
import re
import subprocess
import tempfile
import unittest

DIAGSH = os.environ["DIAGSH"]
SCRIPT = pathlib.Path(os.environ["SOURCES"]) / "completions" / "diagsh.bash"

# Calls the function as bash does: the program, the word at the cursor, the one before.
ASK = r"""
source "$1"; word=$2; shift 2
COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
function=$(complete -p diagsh | sed 's/.*-F \([^ ]*\) .*/\1/')
"$function" diagsh "$word" "${COMP_WORDS[COMP_CWORD - 1]}"
((${#COMPREPLY[@]} == 0)) || printf '%s\n' "${COMPREPLY[@]}"
"""


class BashCompletion(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        (self.folder / "boards").mkdir()
        (self.folder / "two words").mkdir()
        for name in ("board.dtb", "board.so", "board.txt"):
            (self.folder / name).touch()

    def offered(self, *words, word=None):
        """What is offered at the end of the words, as bash splits them."""
        done = subprocess.run(
            ["bash", "-c", ASK, "bash", SCRIPT, words[-1] if word is None else word,
             "diagsh", *words],
            cwd=self.folder, capture_output=True, text=True, timeout=60, check=False)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout.splitlines()

    def test_it_offers_the_options_of_help_and_no_others(self):
        summary = subprocess.run([DIAGSH, "--help"], capture_output=True, text=True, timeout=60,
                                 check=True).stdout
        options = [option for group in re.findall(r"^  (-[-\w,]+)", summary, re.MULTILINE)
                   for option in group.split(",")]
        self.assertIn("--keep-going", options)
        self.assertEqual(sorted(self.offered("-")), sorted(options))

    def test_it_completes_a_begun_option(self):
        self.assertEqual(self.offered("--json", "--s"), ["--sim", "--state"])

    def test_it_offers_the_options_of_the_board_behind_two_dashes(self):
        self.assertEqual(self.offered("--json", "--", "-"),
                         ["--sim", "--state", "--dtb", "--bus", "--i2c"])

    def test_it_offers_blobs_to_simulate_and_folders_on_the_way(self):
        self.assertCountEqual(self.offered("--sim", ""), ["board.dtb", "boards", "two words"])
        self.assertCountEqual(self.offered("--sim", "=", word=""),
                              ["board.dtb", "boards", "two words"])
        self.assertEqual(self.offered("--sim", "=", "board."), ["board.dtb"])

    def test_it_offers_shared_objects_as_boards(self):
        self.assertCountEqual(self.offered("--board", "board"), ["board.so", "boards"])

    def test_it_offers_folders_for_the_state(self):
        self.assertCountEqual(self.offered("--state", ""), ["boards", "two words"])

    def test_it_offers_any_file_to_be_run_or_written(self):
        everything = ["board.dtb", "board.so", "board.txt", "boards", "two words"]
        for words in ([""], ["--junit", ""], ["--log-file", ""], ["--json", ""]):
            self.assertCountEqual(self.offered(*words), everything, words)

    def test_it_offers_no_file_for_a_command(self):
        self.assertEqual(self.offered("-c", ""), [])

    def test_it_offers_the_types_of_log_texts(self):
        refusal = subprocess.run([DIAGSH, "--log", "none=1"], capture_output=True, text=True,
                                 timeout=60, check=False).stderr
        types = re.search("there are (.*), and all", refusal).group(1).split(", ") + ["all"]
        self.assertEqual(self.offered("--log", ""), [f"{name}=" for name in types])
        self.assertEqual(self.offered("--log", "=", "hw"), ["hw-debug="])

    def test_it_offers_levels_behind_a_type(self):
        levels = ["off", *map(str, range(16))]
        self.assertEqual(self.offered("--log", "hw-debug", "=", word=""), levels)
        self.assertEqual(self.offered("--log", "hw-debug", "=", "o"), ["off"])
        self.assertEqual(self.offered("--log", "=", "info", "=", "1"),
                         ["1", "10", "11", "12", "13", "14", "15"])

    def test_it_offers_decode_as_the_first_word_once_it_is_begun(self):
        self.assertEqual(self.offered("dec"), ["decode"])
        self.assertEqual(self.offered("--json", "d"), ["decode"])
        self.assertEqual(self.offered("--keep-going", "d"), [])

    def test_it_offers_the_kinds_behind_decode(self):
        refusal = subprocess.run([DIAGSH, "decode", "?", "-"], capture_output=True, text=True,
                                 timeout=60, check=False).stderr
        kinds = re.search('there are ([a-z, ]*)', refusal).group(1).split(", ")
        self.assertEqual(self.offered("decode", ""), kinds)
        self.assertEqual(self.offered("--json", "decode", "sf"), ["sfp"])
        self.assertEqual(self.offered("decode", "--json", "m"), ["mfg"])

    def test_it_offers_any_file_behind_a_kind(self):
        everything = ["board.dtb", "board.so", "board.txt", "boards", "two words"]
        self.assertCountEqual(self.offered("decode", "spd", ""), everything)
        self.assertEqual(self.offered("decode", "--json", "spd", "board.t"), ["board.txt"])

    def test_it_offers_the_options_of_decode(self):
        self.assertCountEqual(self.offered("decode", "-"), ["--json", "--help", "-h"])
        self.assertEqual(self.offered("decode", "spd", "--j"), ["--json"])


if __name__ == "__main__":
    unittest.main()
