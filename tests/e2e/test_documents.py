"""Every command line that a document shows is one that the programs take."""
import re
import shlex
import subprocess
import unittest

from e2e.environment import ROOT, LinuxPrograms, wait_until

DOCUMENTS = sorted([ROOT / "README.md", *(ROOT / "docs").glob("*.md")])
USAGE = 2
# What stands for something of the reader's own.
PLACES = {"NAME": "Gauges", "PROFILE": "Default", "PNG": "shown.png", "PROGRAM": "some-program", "mine.png": "shown.png",
          "PID": "1", "VALUE": "7"}
# Words of the documents that name a table's subject and no one command.
COMPANION_TABLES = ("## Commands", "## Profiles", "### `profile render`", "### `fontcache`")


def command_lines(program):
    """(document, words) of each line of a code block and each piece in quotes that begins with the program."""
    found = {}
    for document in DOCUMENTS:
        text = document.read_text()
        pieces = re.findall(r"`([^`\n]+)`", text)
        pieces += [line.strip() for line in text.splitlines()]
        for piece in pieces:
            match = re.match(rf"(?:build/linux-release/bin/)?{re.escape(program)} +([^#|…]+)", piece)
            if match:
                found.setdefault(match.group(1).strip(), document.name)
    return sorted((document, line) for line, document in found.items())


def section(text, heading):
    return text.split(f"\n{heading}\n")[1].split("\n#")[0]


class Documents(unittest.TestCase):
    def setUp(self):
        self.programs = LinuxPrograms("")
        self.addCleanup(self.programs.close)

    def end_of(self, process):
        """Exit code of a command; one that stays is asked to stop as soon as it has said something."""
        wait_until(lambda: process.poll() is not None or process.log.stat().st_size)
        try:
            return process.wait(2)
        except subprocess.TimeoutExpired:
            process.terminate()
            return process.wait(60)

    def test_each_line_of_the_companion_runs_without_a_usage_error(self):
        lines = command_lines("orvin-osd")
        self.assertGreater(len(lines), 15)
        self.programs.ask("profile", "new", "Mine", "--from", "Default")
        for document, line in lines:
            words = [PLACES.get(word, word) for word in shlex.split(line)]
            if words[:2] == ["profile", "new"]:
                words[2] = f"New{abs(hash(line))}"
            words = [str(self.programs.folder / word) if word.endswith(".png") else word for word in words]
            with self.subTest(document=document, line=line):
                process = self.programs.start([self.programs.companion, *words])
                self.assertNotEqual(self.end_of(process), USAGE, process.log.read_text(errors="replace"))

    def test_each_command_and_option_of_the_companions_tables_exists(self):
        text = (ROOT / "docs/companion.md").read_text()
        rows = [row for heading in COMPANION_TABLES for row in section(text, heading).splitlines() if row.startswith("| `")]
        self.assertGreater(len(rows), 30)
        group = ""
        for heading in COMPANION_TABLES:
            for row in section(text, heading).splitlines():
                cell = re.match(r"\| ((?:`[^`]+`(?:, )?)+) \|", row)
                for piece in re.findall(r"`([^`]+)`", cell.group(1)) if cell else ():
                    self.judge(piece.replace("\\|", "|"), heading)

    def judge(self, piece, heading):
        """A command of a table with its options, or an option of the command in the heading."""
        if piece.startswith("-"):
            subject, options = heading.strip("# `").split(), [piece.split()[0]]
        else:
            subject = [word for word in piece.split() if re.fullmatch(r"[a-z][a-z-]*", word)]
            options = re.findall(r"--[a-z]+", piece)
            if "list|use|for|new|check|render" in piece or "write|list|check" in piece:
                for verb in piece.split()[1].split("|"):
                    self.judge(f"{subject[0]} {verb}", heading)
                return
        with self.subTest(command=subject, options=options):
            code, output = self.programs.ask(*subject, "--help")
            self.assertEqual(code, 0, output)
            self.assertTrue(" ".join(subject) in output or subject[-1] in output.split("\n")[0] + output, output)
            for option in options:
                self.assertIn(option, output)
            code, output = self.programs.ask(*subject[:-1], "no-such-command")
            self.assertEqual(code, USAGE, output)

    def test_both_settings_files_say_the_same(self):
        """settings.reg is what Windows takes in, settings.ini what the Linux library reads."""
        values = {}
        for name, encoding in (("settings.reg", "utf-16"), ("settings.ini", "utf-8")):
            key = None
            for line in (ROOT / "Settings" / name).read_text(encoding).splitlines():
                if line.startswith("["):
                    key = line.strip("[]").removeprefix("HKEY_LOCAL_MACHINE\\")
                elif "=" in line and not line.startswith(";"):
                    word, value = (part.strip().strip('"') for part in line.split("=", 1))
                    number = re.fullmatch("dword:([0-9a-f]{8})", value)
                    values.setdefault(name, {})[key, word] = str(int(number.group(1), 16)) if number else value
        self.assertGreater(len(values["settings.ini"]), 10)
        self.assertEqual(values["settings.reg"], values["settings.ini"])

    def test_each_command_of_the_script_exists(self):
        usage = subprocess.run([ROOT / "orvin", "help"], capture_output=True, text=True, check=True).stdout
        lines = command_lines("./orvin")
        self.assertGreater(len(lines), 3)
        for document, line in lines:
            with self.subTest(document=document, line=line):
                self.assertRegex(usage, rf"(?m)^  {re.escape(line.split()[0])}\b")


if __name__ == "__main__":
    unittest.main()
