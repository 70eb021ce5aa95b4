"""Every command with wrong words, without room for what it prints or writes, and with Ctrl-C: an exit code of the documented
ones, one line on standard error, and nothing half-written."""
import re
import resource
import signal
import subprocess
import unittest

from e2e.environment import LINUX, ROOT, Display, LinuxPrograms, WinePrograms, wait_until

MANY = ["9"] * 30
# Each command of the companion: a command line of it that is wrong, and what the one line says. The words of an option that
# does not exist, and too many words, are tried with all of them.
WRONG = {
    "run": ([], "PROGRAM is required"),
    "attach": ([], "target is required"),
    "hook": ([], "confirm with --yes"),
    "unhook": (["--yes"], "not expected: --yes"),
    "init": (["all"], "not expected: all"),
    "status": (["--raw"], "not expected: --raw"),
    "on": (["all"], "not expected: all"),
    "off": (["all"], "not expected: all"),
    "reload": (["--pid", "-1"], "--pid"),
    "send": (["5", "--byte", "256"], "--byte"),
    "shot": (["--timeout", "0"], "--timeout"),
    "config": (["limit-rate", "1001"], "1 to 1000"),
    "record": (["--seconds", "864001"], "--seconds"),
    "report": ([], "files is required"),
    "report-problem": ([], "target is required"),
    "profile": (["new", "a/b", "--from", "Default"], "profile name"),
    "rows": (["--size", "1"], "--size"),
    "language": (["use"], "name is required"),
    "fontcache": (["write"], "required"),
    "profile-name": (["a/b"], "profile name"),
    "frametime": (["perhaps"], "not in"),
    "dump": (["--json", "--text"], "excludes"),
    "feed": (["--interval", "49"], "--interval"),
    "watch": (["--interval", "100"], "not expected"),
    "sensors": (["--all"], "not expected: --all"),
    "names": (["--all"], "not expected: --all"),
    "set": (["GPU_CLK#0", "2147483648"], "value"),
    "top": (["--interval", "60001"], "--interval"),
    "doctor": (["1", "2"], "not expected: 2"),
    "keys": (["--no-such"], "not expected: --no-such"),
    "video": (["8"], "0 to 7"),
    "control": (["recolour", "1"], "required"),
    "setup": (["--yes"], "not expected: --yes"),
}
# What prints; {} is the test's own folder, {pid} a program with the overlay.
PRINTS = (["--help"], ["--version"], ["status"], ["status", "--json"], ["dump"], ["doctor"], ["sensors"], ["names"],
          ["config"], ["config", "limit"], ["video", "list"], ["top", "--once"], ["report", "{}/rec.csv", "--text"],
          ["profile", "list"], ["profile", "check", "Default"], ["rows", "Classic"], ["language", "list"],
          ["report-problem", "{pid}"])
# What writes files, where the file is to be, and whether the command is given the path.
WRITES = (["config", "limit-rate", "77"], ["config", "warning-time", "77"], ["profile", "new", "Fresh", "--from", "FPS"],
          ["profile", "use", "FPS"], ["profile", "render", "FPS", "--size", "64x64", "--seconds", "1", "-o", "{}/new.png"],
          ["record", "{pid}", "--seconds", "1", "-o", "{}/new.csv"], ["report", "{}/rec.csv", "-o", "{}/new.html"],
          ["report-problem", "{pid}", "--yes", "-o", "{}/new.txt"], ["fontcache", "write", "FPS"],
          ["language", "use", "German"], ["language", "off"], ["shot", "{pid}", "--folder", "{}"],
          ["video", "0", "--setup"])
STAYS = (["feed"], ["feed", "--watch"], ["feed", "--keys"], ["watch"], ["top"], ["keys"],
         ["record", "{pid}", "-o", "{}/stopped.csv"],
         ["profile", "render", "FPS", "--watch", "--size", "64x64", "-o", "{}/watched.png"])


def without_room():
    """No file can grow: the limit holds for any user, and the signal that comes with it is ignored."""
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (0, 0))


class Errors(unittest.TestCase):
    def setUp(self):
        screen = Display()
        self.programs = LinuxPrograms(screen.__enter__())
        self.addCleanup(screen.__exit__)
        self.addCleanup(self.programs.close)

    def ask(self, *words, **more):
        """(exit code, output, errors), by pipes."""
        more = {"stdout": subprocess.PIPE, **more}
        done = subprocess.run([self.programs.companion, *map(str, words)], stderr=subprocess.PIPE, text=True,
                              stdin=subprocess.DEVNULL, env=self.programs.env, timeout=120, **more)
        return done.returncode, done.stdout, done.stderr

    def one_line(self, errors):
        self.assertRegex(errors, r"\Aorvin-(osd|profile): [^\n]+\n\Z")

    def host(self):
        process = self.programs.with_overlay([LINUX / "host_glx", "--frames", "1000000", "--fps-cap", "60"])
        self.programs.wait_for_overlay(process)
        return process

    def filled(self, words, process=None):
        return [word.replace("{pid}", str(process.pid if process else 0)).replace("{}", str(self.programs.folder))
                for word in words]

    def test_the_table_has_every_command(self):
        commands = re.findall(r"^  ([a-z-]+) ", self.ask("--help")[1].split("Subcommands:")[1], re.M)
        self.assertEqual(sorted(WRONG), sorted(commands))
        told = (ROOT / "docs/companion.md").read_text()
        for command in commands:
            self.assertRegex(told, rf"`{command}[ `]|`off`", command)

    def test_wrong_words(self):
        for command, (words, part) in WRONG.items():
            cases = [(words, part)]
            if command != "run":  # whose words are the program's own
                cases += [(["--no-such-option"], ""), (MANY, "")]
            for case, said in cases:
                with self.subTest(command=command, words=case):
                    code, output, errors = self.ask(command, *case)
                    self.assertEqual((code, output), (2, ""), errors)
                    self.one_line(errors)
                    self.assertIn(said, errors)

    def test_no_room_for_what_is_printed(self):
        process = self.host()
        recording = self.programs.folder / "rec.csv"
        self.assertEqual(self.ask("record", process.pid, "--seconds", "1", "-o", recording)[0], 0)
        for words in PRINTS:
            words = self.filled(words, process)
            with self.subTest(words=words), open("/dev/full", "w") as full:
                code, _, errors = self.ask(*words, stdout=full)
                self.assertEqual(code, 1, errors)
                self.assertRegex(errors, r"orvin-osd: cannot write [^\n]+\n\Z")

    def test_no_room_for_what_is_written(self):
        process = self.host()
        self.programs.take_settings()
        recording = self.programs.folder / "rec.csv"
        self.assertEqual(self.ask("record", process.pid, "--seconds", "1", "-o", recording)[0], 0)

        def files():
            return {path: path.read_bytes() for path in self.programs.folder.rglob("*")
                    if path.is_file() and not path.name.startswith("log")}

        before = files()
        for words in WRITES:
            with self.subTest(words=words):
                code, _, errors = self.ask(*self.filled(words, process), preexec_fn=without_room)
                self.assertEqual(code, 1, errors)
                self.one_line(errors)
                after = files()
                self.assertEqual(sorted(map(str, after)), sorted(map(str, before)), "something is left behind")
                self.assertEqual(after, before, "something was changed")

    def test_a_folder_below_a_file(self):
        """Where nobody can write, root neither."""
        process = self.host()
        (self.programs.folder / "file").write_text("x")
        for words in (["record", "{pid}", "--seconds", "1", "-o", "{}/file/a.csv"],
                      ["report-problem", "{pid}", "--yes", "-o", "{}/file/a.txt"],
                      ["profile", "render", "FPS", "--size", "64x64", "--seconds", "1", "-o", "{}/file/a.png"],
                      ["shot", "{pid}", "--folder", "{}/file/a"]):
            with self.subTest(words=words):
                code, _, errors = self.ask(*self.filled(words, process))
                self.assertEqual(code, 1, errors)
                self.one_line(errors)

    def test_ctrl_c(self):
        self.programs.take_settings()
        process = self.host()
        settings = (self.programs.data.parent / "Settings/settings.ini").read_bytes()
        for words in STAYS:
            with self.subTest(words=words):
                stays = self.programs.start([self.programs.companion, *self.filled(words, process)])
                wait_until(lambda: self.catches(stays.pid))
                stays.send_signal(signal.SIGINT)
                self.assertIn(stays.wait(60), (0, 1), stays.log.read_text())
                self.assertLessEqual(stays.log.read_text().count("orvin-osd: "), 1)
                self.assertEqual((self.programs.data.parent / "Settings/settings.ini").read_bytes(), settings)
        self.assertIsNone(process.poll())
        self.assertIn("no values are published", self.ask("status")[1])

    @staticmethod
    def catches(pid):
        """Whether a process has a handler for the key."""
        with open(f"/proc/{pid}/status") as file:
            caught = next(line for line in file if line.startswith("SigCgt"))
        return int(caught.split()[1], 16) >> (signal.SIGINT - 1) & 1


class WindowsErrors(unittest.TestCase):
    """Output and errors come by one file there."""

    def setUp(self):
        screen = Display()
        self.programs = WinePrograms(screen.__enter__())
        self.addCleanup(screen.__exit__)
        self.addCleanup(self.programs.close)

    def test_wrong_words(self):
        for command, (words, part) in WRONG.items():
            with self.subTest(command=command):
                code, output = self.programs.ask(command, *words)
                self.assertEqual(code, 2, output)
                self.assertRegex(output, r"\Aorvin-(osd|profile): [^\r\n]+\r?\n\Z")
                self.assertIn(part, output)

    def test_no_room_where_nobody_can_write(self):
        """A folder below a file."""
        (self.programs.folder / "file").write_text("x")
        below = "Z:" + str(self.programs.folder / "file").replace("/", "\\")
        recording = self.programs.folder / "rec.csv"
        recording.write_text("# orvin-osd recording 1\n")
        for words in (["report", "Z:" + str(recording).replace("/", "\\"), "-o", below + "\\a.html"],
                      ["profile", "render", "FPS", "--size", "64x64", "--seconds", "1", "-o", below + "\\a.png"]):
            with self.subTest(words=words):
                code, output = self.programs.ask(*words)
                self.assertEqual(code, 1, output)
                self.assertRegex(output, r"\Aorvin-(osd|profile): [^\r\n]+\r?\n\Z")
        self.assertEqual((self.programs.folder / "file").read_text(), "x")
