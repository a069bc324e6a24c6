"""The Debian packages: complete, consistent, and enough to write a board with.

Makes them of a build folder, unpacks them into an empty root, and works there. Runs with the
build folder, the sources, cmake, cpack, the compiler, the folder of libraries below the
prefix, the number of the library's interface and the version in BUILD, SOURCES, CMAKE, CPACK,
CXX, LIBDIR, ABI and VERSION.
"""

import concurrent.futures
import gzip
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

SOURCES = pathlib.Path(os.environ["SOURCES"])
VERSION = os.environ["VERSION"]
LIBRARY = f"libmorva-diags{os.environ['ABI']}"
DEVELOPMENT = "libmorva-diags-dev"
BOARD = "morva-board"
SHELL = "diagsh"


def run(*words, **options):
    done = subprocess.run(words, capture_output=True, text=True, check=False,
                          stdin=subprocess.DEVNULL, **{"timeout": 300, **options})
    if done.returncode != 0:
        raise AssertionError(f"{words} ended with {done.returncode}:\n{done.stdout}{done.stderr}")
    return done.stdout


class Package:
    """One package: its name, its fields, and the files in it by their modes."""

    def __init__(self, path):
        self.path = path
        fields = run("dpkg-deb", "--field", path)
        self.fields = dict(re.findall(r"^([\w-]+): (.*(?:\n .*)*)", fields, re.MULTILINE))
        self.name = self.fields["Package"]
        self.contents = {}
        for line in run("dpkg-deb", "--contents", path).splitlines():
            mode, owner, _, _, _, name = line.split(maxsplit=5)
            self.contents[name.split(" -> ")[0].removeprefix(".")] = (mode, owner)

    def files(self):
        return {name for name, (mode, _) in self.contents.items() if not mode.startswith("d")}

    def needs(self):
        return self.fields.get("Depends", "").split(", ")


class Packages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        made = cls.folder / "made"
        run(os.environ["CPACK"], "--config", f"{os.environ['BUILD']}/CPackConfig.cmake", "-B", made)
        cls.packages = {}
        cls.root = cls.folder / "root"
        for path in sorted(made.glob("*.deb")):
            package = Package(path)
            cls.packages[package.name] = package
            run("dpkg-deb", "--extract", path, cls.root)
        cls.libraries = cls.root / "usr" / os.environ["LIBDIR"]
        cls.headers = cls.root / "usr/include/morva-diags"
        cls.diagsh = cls.root / "usr/bin/diagsh"

    def files_of(self, name):
        return self.packages[name].files()

    def example(self, name):
        """A copy of an example, as who begins a board takes one."""
        examples = self.root / "usr/share/doc" / DEVELOPMENT / "examples"
        folder = self.folder / f"{self.id().rsplit('.', maxsplit=1)[-1]}-{name}"
        shutil.copytree(examples / name, folder)
        return folder

    def test_there_are_four_of_one_version(self):
        self.assertEqual({name: package.fields["Version"]
                          for name, package in self.packages.items()},
                         dict.fromkeys((SHELL, BOARD, LIBRARY, DEVELOPMENT), VERSION))

    def test_their_names_are_those_of_files(self):
        architecture = run("dpkg", "--print-architecture").strip()
        for name, package in self.packages.items():
            self.assertEqual(package.fields["Architecture"], architecture)
            self.assertEqual(package.path.name, f"{name}_{VERSION}_{architecture}.deb")

    def test_each_says_what_it_is_and_who_to_ask(self):
        summaries = set()
        for package in self.packages.values():
            summary, *lines = package.fields["Description"].splitlines()
            summaries.add(summary)
            self.assertLessEqual(len(summary), 80)
            self.assertTrue(lines, summary)
            for line in lines:
                self.assertLessEqual(len(line), 80, line)
            self.assertRegex(package.fields["Maintainer"], r"^\S.* <\S+@\S+>$")
        self.assertEqual(len(summaries), len(self.packages))

    def test_each_needs_the_others_as_they_were_built_with_it(self):
        ours = {name: {need for need in package.needs() if need.split()[0] in self.packages}
                for name, package in self.packages.items()}
        library = f"{LIBRARY} (= {VERSION})"
        self.assertEqual(ours, {LIBRARY: set(), BOARD: {library}, DEVELOPMENT: {library},
                                SHELL: {f"{BOARD} (= {VERSION})"}})

    def test_they_need_the_libraries_that_their_binaries_are_linked_with(self):
        for name, expected in ((LIBRARY, {"libc6", "libstdc++6", "libxml2"}),
                               (BOARD, {"libc6", "libstdc++6", "libfdt1"}),
                               (SHELL, {"libc6", "libstdc++6", "libedit2"})):
            needed = {need.split()[0] for need in self.packages[name].needs()}
            self.assertLessEqual(expected, needed, name)

    def test_no_file_is_in_two(self):
        owners = {}
        for name, package in self.packages.items():
            for file in package.files():
                self.assertNotIn(file, owners, name)
                owners[file] = name

    def test_every_file_that_is_installed_is_in_one(self):
        prefix = self.folder / "installed"
        run(os.environ["CMAKE"], "--install", os.environ["BUILD"], "--prefix", prefix)
        installed = {"/usr/" + str(path.relative_to(prefix))
                     for path in prefix.rglob("*") if path.is_symlink() or path.is_file()}
        packed = set().union(*(package.files() for package in self.packages.values()))
        self.assertEqual(packed, installed)

    def test_everything_belongs_to_root_and_is_for_everybody(self):
        for package in self.packages.values():
            for name, (mode, owner) in package.contents.items():
                expected = {"d": "drwxr-xr-x", "l": "lrwxrwxrwx"}.get(
                    mode[0], "-rwxr-xr-x" if name.startswith("/usr/bin/") else "-rw-r--r--")
                self.assertEqual((owner, mode), ("root/root", expected), name)

    def test_the_library_is_versioned(self):
        folder = f"/usr/{os.environ['LIBDIR']}"
        soname = f"libmorva-diags.so.{os.environ['ABI']}"
        self.assertEqual(self.files_of(LIBRARY), {f"{folder}/{soname}",
                                                  f"{folder}/libmorva-diags.so.{VERSION}"})
        self.assertIn(f"{folder}/libmorva-diags.so", self.files_of(DEVELOPMENT))
        self.assertIn(f"soname: [{soname}]",
                      run("readelf", "--dynamic", self.libraries / soname))
        control = self.folder / "control"
        run("dpkg-deb", "--control", self.packages[LIBRARY].path, control)
        self.assertEqual((control / "shlibs").read_text(),
                         f"libmorva-diags {os.environ['ABI']} {LIBRARY} (>= {VERSION})\n")

    def test_binaries_are_stripped(self):
        binaries = [*(self.root / "usr/bin").iterdir(), *self.libraries.glob("*.so.*.*"),
                    *self.libraries.glob("libmorva-*.a")]
        self.assertGreater(len(binaries), 4)
        for path in binaries:
            self.assertNotIn(".debug_info", run("readelf", "--sections", "--wide", path))

    def test_nothing_remembers_where_it_was_built(self):
        for path in self.root.rglob("*"):
            if path.is_file() and not path.is_symlink():
                content = path.read_bytes()
                for folder in (os.environ["BUILD"], os.environ["SOURCES"]):
                    self.assertNotIn(folder.encode(), content, path)

    def test_documents_are_with_what_they_are_about(self):
        man = self.root / "usr/share/man/man1"
        for name, pages in ((SHELL, ("diagsh", "diag_mdio_util")),
                            (BOARD, ("morva-i2c-sim", "morva-mdio-sim"))):
            for page in pages:
                self.assertIn(f"/usr/share/man/man1/{page}.1.gz", self.files_of(name))
                self.assertIn(f"/usr/bin/{page}", self.files_of(name))
                text = gzip.decompress((man / f"{page}.1.gz").read_bytes())
                self.assertEqual(text, (SOURCES / f"docs/{page}.1").read_bytes())
        programs = {path.name for path in (self.root / "usr/bin").iterdir()}
        self.assertEqual({path.name.removesuffix(".1.gz") for path in man.iterdir()}, programs)
        for file in ("bash-completion/completions/diagsh", "morva-diags/diagsh.schema.json",
                     "morva-diags/decode.schema.json", "morva-diags/dimm_table.rng"):
            self.assertIn(f"/usr/share/{file}", self.files_of(SHELL))

    def test_the_tables_of_memory_modules_are_where_programming_looks_for_them(self):
        looked_for = re.search(r'"(/usr/lib/\S+\.xml)"', "".join(
            path.read_text() for path in (SOURCES / "i2c").glob("param_eeprom*"))).group(1)
        self.assertIn(looked_for, self.files_of(BOARD))

    def test_the_shell_simulates_the_default_board(self):
        blob = self.root / "usr/share/morva-diags/quillbank/quillbank.dtb"
        said = run(self.diagsh, "--sim", blob, "--state", self.folder / "state",
                   "-c", "/i2c-0/mfg-eeprom/get-serial-num", timeout=60)
        self.assertIn("QB", said)

    def test_every_header_stands_alone(self):
        headers = sorted(self.headers.rglob("*.h"))
        self.assertGreater(len(headers), 80)

        def compile_alone(header):
            run(os.environ["CXX"], "-std=c++20", "-fsyntax-only", "-I", self.headers,
                "-include", header, "-x", "c++", "/dev/null")

        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            for _ in pool.map(compile_alone, headers):
                pass

    def check_example(self, board, **environment):
        """Works with the board of examples/lab_board, as its first lines show."""
        eeprom = "i2c/pca9548-0/ch2/eeprom"
        said = run(self.diagsh, "--board", board, "-c", f"{eeprom}/rw-test",
                   "-c", f"{eeprom}/write-byte 0x20 0xab", "-c", f"{eeprom}/read 0x20 2",
                   timeout=60, env=dict(os.environ, **environment))
        self.assertIn("rw-test: passed\n", said)
        self.assertIn("0x0020:   ab ff\n", said)

    def test_the_example_is_built_with_cmake(self):
        folder = self.example("lab_board")
        run(os.environ["CMAKE"], "-S", folder, "-B", folder / "build",
            f"-DCMAKE_PREFIX_PATH={self.root}/usr", f"-DCMAKE_CXX_COMPILER={os.environ['CXX']}",
            "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror",
            "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON")
        run(os.environ["CMAKE"], "--build", folder / "build")
        self.assertNotIn(str(SOURCES), (folder / "build/compile_commands.json").read_text())
        self.check_example(folder / "build/lab-board.so")

    def test_the_example_is_built_with_pkg_config(self):
        folder = self.example("lab_board")
        run("make", "-C", folder, f"CXX={os.environ['CXX']}",
            env=dict(os.environ, PKG_CONFIG_PATH=f"{self.libraries}/pkgconfig"))
        self.check_example(folder / "lab-board.so", LD_LIBRARY_PATH=str(self.libraries))

    def test_a_board_of_another_version_is_refused(self):
        folder = self.example("lab_board")
        lists = folder / "CMakeLists.txt"
        lists.write_text(lists.read_text().replace("morva-diags 0.1", "morva-diags 99"))
        with self.assertRaisesRegex(AssertionError, r'compatible with requested\s+version "99"'):
            run(os.environ["CMAKE"], "-S", folder, "-B", folder / "build",
                f"-DCMAKE_PREFIX_PATH={self.root}/usr")


if __name__ == "__main__":
    unittest.main()
