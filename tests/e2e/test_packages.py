"""What a user gets: packages that are installed, used and removed again, in folders and prefixes of their own."""
import functools
import gzip
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest
import zipfile

from PIL import Image

from e2e.environment import (DATA, LINUX, ROOT, SHIPPED, STATE, STORE_KEYS, WIN64, Display, LinuxPrograms, WinePrograms,
                             glfw_examples, see, wait_until)
from e2e.pictures import colourful, difference_box

VERSION = re.search(r"VERSION ([0-9.]+)", (ROOT / "CMakeLists.txt").read_text().split("project(")[1])[1]
OPTION = re.compile(r"(?<![\w-])(--?[a-z][a-z-]*)")


@functools.lru_cache
def packages():
    """Makes them once."""
    done = subprocess.run([ROOT / "orvin", "package"], env={**os.environ, "ORVIN_STATE": str(STATE)}, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    if done.returncode:
        raise AssertionError(done.stdout)
    folder = ROOT / "out/packages"
    return {kind: next(folder.glob(f"*{VERSION}*{kind}")) for kind in (".deb", "-setup.exe", ".zip")}


def as_root(*command):
    """The caller if that is root, else root of a name space of its own."""
    prefix = [] if os.getuid() == 0 else ["unshare", "-r"]
    return subprocess.run([*prefix, *map(str, command)], capture_output=True, text=True)


class Package(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.files = packages()
        cls.folder = pathlib.Path(tempfile.mkdtemp(prefix="orvin-package."))
        cls.addClassCleanup(shutil.rmtree, cls.folder, ignore_errors=True)
        screen = Display()
        cls.display = screen.__enter__()
        cls.addClassCleanup(screen.__exit__)


class Debian(Package):
    """Installed below a folder with a database of its own, so that the machine keeps nothing of it."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.root, cls.home = cls.folder / "root", cls.folder / "home"
        cls.home.mkdir()
        (cls.root / "var/lib/dpkg/updates").mkdir(parents=True)
        (cls.root / "var/lib/dpkg/info").mkdir()
        (cls.root / "var/lib/dpkg/status").touch()
        cls.bare = set(cls.root.rglob("*"))
        cls.dpkg("--install", cls.files[".deb"])
        cls.companion = cls.root / "usr/bin/orvin-osd"

    @classmethod
    def dpkg(cls, *arguments):
        done = as_root("dpkg", f"--root={cls.root}", "--force-depends", *arguments)
        if done.returncode:
            raise AssertionError(done.stdout + done.stderr)

    def setUp(self):
        self.programs = LinuxPrograms(self.display)
        self.addCleanup(self.programs.close)
        self.programs.env.pop("ORVIN_OSD_APPDATA")
        self.programs.env.pop("XDG_DATA_HOME", None)
        self.programs.env["HOME"] = str(self.home)
        self.programs.companion = self.companion
        self.data = self.home / ".local/share" / DATA

    def ask(self, *arguments, code=0):
        done, output = self.programs.ask(*arguments)
        self.assertEqual(done, code, output)
        return output

    def changed_by(self, *switches):
        """The part of a host's picture that the overlay changes."""
        before, shown = self.programs.folder / "before.ppm", self.programs.folder / "shown.ppm"
        process = self.programs.with_overlay([LINUX / "host_glx", "--frames", "65", "--dump-ppm", f"{shown}@60",
                                              "--dump-before", before, *switches])
        self.assertEqual(process.wait(120), 0, process.log.read_text(errors="replace"))
        return difference_box(Image.open(before).convert("RGB"), Image.open(shown).convert("RGB"))

    def test_lintian_finds_nothing(self):
        done = subprocess.run(["lintian", "--fail-on", "error,warning", self.files[".deb"]], capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stdout), (0, ""), done.stderr)

    def test_what_it_needs_is_named(self):
        done = subprocess.run(["dpkg-deb", "--field", self.files[".deb"], "Depends", "Version", "Architecture"],
                              capture_output=True, text=True, check=True).stdout
        for package in ("libc6", "libpng16-16", "libegl1", "libglx0", "libopengl0"):
            self.assertIn(package, done)
        self.assertIn(f"Version: {VERSION}-1\n", done)

    def test_a_program_carries_the_overlay_out_of_the_package(self):
        self.assertEqual(self.ask("--version"), f"orvin-osd {VERSION}\n")
        self.assertIsNotNone(self.changed_by())
        self.assertTrue((self.data / "Profiles/Default").is_symlink())
        self.assertEqual(sorted(re.findall(r"^\w+", self.ask("profile", "list"), re.M)[1:]), SHIPPED)

    def test_a_users_own_files_come_first_and_stay(self):
        self.ask("profile", "new", "Mine", "--from", "FPS")
        (self.data / "Profiles/Default").unlink()
        shutil.copytree(self.data / "Profiles/Mine", self.data / "Profiles/Default")
        own = self.changed_by()
        self.assertFalse((self.data / "Profiles/Default").is_symlink())
        self.ask("setup", "--remove")
        self.assertEqual(sorted(path.name for path in (self.data / "Profiles").iterdir()), ["Default", "Mine"])
        self.assertEqual([path for path in self.home.rglob("*") if path.is_symlink()], [])
        shutil.rmtree(self.data / "Profiles/Default")
        self.assertNotEqual(own, self.changed_by())
        shutil.rmtree(self.data / "Profiles/Mine")
        self.ask("setup", "--remove")
        self.assertEqual(list(self.home.rglob("*")), [self.home / ".local", self.home / ".local/share"])

    def test_licences_of_all_that_is_inside_are_in_it(self):
        text = (self.root / "usr/share/doc/orvin-osd/copyright").read_text()
        for words in ("Permission is hereby granted", "FreeType", "Glenn Randers-Pehrson", "GCC RUNTIME LIBRARY EXCEPTION"):
            self.assertIn(words, text)
        changes = gzip.decompress((self.root / "usr/share/doc/orvin-osd/changelog.gz").read_bytes()).decode()
        self.assertIn(f"## {VERSION}\n", changes)

    def test_zz_purged_it_leaves_nothing(self):
        self.dpkg("--purge", "orvin-osd")
        left = [path for path in set(self.root.rglob("*")) - self.bare if "var/lib/dpkg" not in str(path)]
        self.assertEqual([path for path in left if not path.is_dir()], [])
        self.assertEqual(left, [])


class Manual(Package):
    """Pages and completions against what --help prints."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        subprocess.run(["dpkg-deb", "--extract", cls.files[".deb"], cls.folder], check=True)

    def help(self, *words):
        """(options, commands) that --help lists."""
        text = subprocess.run([LINUX / "orvin-osd", *words, "--help"], capture_output=True, text=True, check=True).stdout
        first = [line.split("  ")[1] for line in text.split("Options:")[1].split("Subcommands:")[0].splitlines()
                 if re.match(r"  -", line)]
        commands = re.findall(r"^  ([a-z-]+) ", text.split("Subcommands:")[1], re.M) if "Subcommands:" in text else []
        return {name for line in first for name in OPTION.findall(re.sub(r" .*", "", line))}, commands

    def page(self, name):
        text = gzip.decompress((self.folder / f"usr/share/man/man1/{name}.1.gz").read_bytes()).decode()
        return text.replace("\\-", "-").replace("\\fB", "").replace("\\fR", "").replace("\\fI", "")

    def test_each_command_has_a_page_with_its_options(self):
        options, commands = self.help()
        self.assertGreater(len(commands), 15)
        main = self.page("orvin-osd")
        self.assertEqual(set(OPTION.findall(" ".join(re.findall(r"^\.TP\n(-.*)$", main, re.M)))), options)
        self.assertEqual(re.findall(r"^\.TP\n([a-z][a-z-]*)$", main, re.M), commands)
        for command in commands:
            with self.subTest(command=command):
                wanted, inner = self.help(command)
                for word in inner:
                    wanted |= self.help(command, word)[0]
                page = self.page(f"orvin-osd-{command}")
                typed = " ".join(line.split(" ")[0] + " " + (line.split(" ")[1] if "," in line.split(" ")[0] else "")
                                 for line in re.findall(r"^\.TP\n(-.*)$", page, re.M))
                self.assertEqual(set(OPTION.findall(typed)), wanted)
                self.assertEqual(re.findall(rf'^\.SS "{command} (.*)"$', page, re.M), inner)
        pages = {path.name for path in (self.folder / "usr/share/man/man1").iterdir()}
        self.assertEqual(pages, {"orvin-osd.1.gz"} | {f"orvin-osd-{command}.1.gz" for command in commands})

    def test_pages_are_set_without_a_complaint(self):
        for path in (self.folder / "usr/share/man/man1").iterdir():
            done = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", path], capture_output=True, text=True)
            self.assertEqual((done.returncode, done.stderr), (0, ""), path.name)

    def bash(self, *words):
        file = self.folder / "usr/share/bash-completion/completions/orvin-osd"
        script = (f'source "{file}"; COMP_WORDS=(orvin-osd "$@"); COMP_CWORD=$#; _orvin_osd; '
                  'printf "%s\\n" "${COMPREPLY[@]}"')
        return set(subprocess.run(["bash", "-uc", script, "bash", *words], capture_output=True, text=True,
                                  env={**os.environ, "PATH": f"{LINUX}:{os.environ['PATH']}"}, check=True).stdout.split())

    def fish(self, line):
        file = self.folder / "usr/share/fish/vendor_completions.d/orvin-osd.fish"
        env = {**os.environ, "HOME": str(self.folder), "PATH": f"{LINUX}:{os.environ['PATH']}"}
        done = subprocess.run(["fish", "--no-config", "-c", f"source {file}; complete -C '{line}'"], capture_output=True,
                              text=True, env=env, check=True)
        return {row.split("\t")[0] for row in done.stdout.splitlines()}

    def test_shells_complete_commands_and_options(self):
        options, commands = self.help()
        self.assertEqual(self.bash("") & set(commands), set(commands))
        self.assertEqual(self.bash("--"), {name for name in options if name.startswith("--")})
        self.assertEqual(self.bash("frametime", "o"), {"on", "off"})
        self.assertEqual(self.bash("profile", "render", "--wa"), {"--watch"})
        self.assertEqual(self.fish("orvin-osd "), set(commands))
        for command in commands:
            with self.subTest(command=command):
                wanted, inner = self.help(command)
                wanted = {name for name in wanted if name.startswith("--")}
                if command != "run":  # completed as the program's own
                    self.assertEqual(self.bash(command, "--"), wanted)
                self.assertLessEqual(wanted, self.fish(f"orvin-osd {command} --"))
                for word in inner:
                    deeper = {name for name in self.help(command, word)[0] if name.startswith("--")}
                    self.assertEqual(self.bash(command, word, "--"), deeper)
                    self.assertLessEqual(deeper, self.fish(f"orvin-osd {command} {word} --"))


class Windows(Package):
    """Installed into the prefix that all tests under Wine use, and taken out of it again."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.drive = pathlib.Path(os.environ.get("WINEPREFIX", STATE / "wine")) / "drive_c"
        cls.program = cls.drive / "Program Files/ORVIN-OSD"
        cls.zarn = cls.drive / "ProgramData/ZARN"
        cls.menu = cls.drive / "ProgramData/Microsoft/Windows/Start Menu/Programs/ORVIN-OSD"

    def setUp(self):
        self.programs = WinePrograms(self.display)
        self.addCleanup(self.programs.close)
        shutil.rmtree(self.zarn)
        self.addCleanup(shutil.rmtree, self.zarn, ignore_errors=True)
        self.programs.companion = self.program / "orvin-osd.exe"

    def wine(self, *command, code=0):
        done, output = self.programs.run([*self.programs.wrapper, *command])
        self.assertEqual(done, code, output)
        return output

    def install(self, code=0):
        self.addCleanup(self.remove)
        self.wine(self.files["-setup.exe"], "/S", code=code)

    def remove(self):
        """The remover goes on in a copy of itself. A library that the desktop's own process still holds after a hook is
        put aside until the machine starts anew."""
        if (self.program / "uninstall.exe").exists():
            self.wine(self.program / "uninstall.exe", "/S")
            wait_until(lambda: not self.menu.exists() and not self.left() - {"ORVIN-OSD64-GL.dll.old"})
            wait_until(lambda: not self.keys())
            shutil.rmtree(self.program, ignore_errors=True)

    def left(self):
        return {path.name for path in self.program.glob("*")}

    def keys(self):
        """Keys of the registry that the installer made."""
        names = (r"HKLM\SOFTWARE\Zarn", r"HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\ORVIN-OSD")
        return [name for name in names if self.programs.run([*self.programs.wrapper, "reg", "query", name])[0] == 0]

    def test_installed_used_and_removed(self):
        self.assertEqual(self.keys(), [])
        self.install()
        self.assertEqual(len(self.keys()), 2)
        self.assertEqual(len(list(self.menu.glob("*.lnk"))), 4)
        self.assertIn(f"orvin-osd {VERSION}", self.wine(self.programs.companion, "--version"))
        look = self.programs.folder / "look.png"
        hook = self.programs.wine(self.programs.companion, "hook", "--yes")
        wait_until(lambda: "laid" in self.programs.ask("status")[1])
        gears = self.programs.wine(glfw_examples() / "gears.exe")
        see(self.display, look, colourful)
        self.programs.wait_for_overlay(gears)
        self.programs.end(gears)
        self.assertEqual(self.programs.ask("unhook")[0], 0)
        self.assertEqual(hook.wait(60), 0)
        self.assertTrue(self.shows_overlay())
        self.remove()
        self.assertEqual((self.zarn.exists(), self.menu.exists()), (False, False))
        self.assertEqual(self.keys(), [])

    def shows_overlay(self):
        before, shown = self.programs.folder / "before.ppm", self.programs.folder / "shown.ppm"
        process = self.programs.with_overlay([WIN64 / "host_wgl.exe", "--frames", "95", "--await-detour", "--dump-ppm",
                                              f"{shown}@90", "--dump-before", before])
        self.assertEqual(process.wait(300), 0, process.log.read_text(errors="replace"))
        return difference_box(Image.open(before).convert("RGB"), Image.open(shown).convert("RGB")) is not None

    def test_data_is_taken_from_whoever_was_there_first(self):
        """Wine keeps rights as the mode of a file: those of administrators as the group's, no other user's."""
        planted = self.drive / "ProgramData" / DATA / "Profiles/Default"
        planted.mkdir(parents=True)
        mine = planted / "mine.png"
        mine.write_text("x")
        for path in (self.zarn, *self.zarn.rglob("*")):
            path.chmod(0o777)
        self.install()
        everything = [self.zarn, *self.zarn.rglob("*")]
        self.assertGreater(len(everything), 30)
        self.assertEqual([path for path in everything if path.stat().st_mode & 0o002], [])
        self.remove()
        self.assertEqual([path for path in self.zarn.rglob("*") if not path.is_dir()], [mine])

    def test_a_settings_file_of_ones_own_and_settings_outlive_an_upgrade(self):
        self.install()
        own = self.drive / "ProgramData" / DATA / "OSD.ini"
        own.write_text("; mine\n")
        key = STORE_KEYS[1] + r"\Information Option"
        self.wine("reg", "add", key, "/v", "UpdateFrameDataInterval", "/t", "REG_DWORD", "/d", "250", "/f")
        (self.drive / "ProgramData" / DATA / "DrawText_GL.fs").write_text("broken")
        self.install()
        self.assertEqual(own.read_text(), "; mine\n")
        self.assertIn("0xfa", self.wine("reg", "query", key, "/v", "UpdateFrameDataInterval"))
        self.assertEqual((self.drive / "ProgramData" / DATA / "DrawText_GL.fs").read_bytes(),
                         (ROOT / "shaders/DrawText_GL.fs").read_bytes())

    def test_the_zip_holds_what_the_installer_lays_out(self):
        self.install()
        installed = {str(path.relative_to(self.program)) for path in self.program.rglob("*") if path.is_file()}
        data = self.drive / "ProgramData" / DATA
        installed |= {f"Data/{path.relative_to(data)}" for path in data.rglob("*") if path.is_file()}
        with zipfile.ZipFile(self.files[".zip"]) as archive:
            zipped = {name.split("/", 1)[1] for name in archive.namelist()}
        self.assertEqual(installed - {"uninstall.exe"}, zipped)
        self.assertIn("MinGW", (self.program / "Licences.txt").read_text())
