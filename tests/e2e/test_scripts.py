"""The scripts themselves: where they write, and where they refuse to."""
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

from e2e.environment import ROOT

SOMEBODY_ELSE = 65534


class StateFolder(unittest.TestCase):
    """The folder of what scripts keep: the user's own, and nobody else's hand in it."""

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="orvin-scripts."))
        self.addCleanup(shutil.rmtree, self.folder)
        self.env = {name: value for name, value in os.environ.items()
                    if name not in ("ORVIN_STATE", "XDG_CACHE_HOME", "WINEPREFIX")}

    def ask(self, script="cmake/state-folder", *words, **variables):
        return subprocess.run([ROOT / script, *words], env={**self.env, **variables}, capture_output=True, text=True)

    def refused(self, state, why):
        """No script goes on with such a folder, nor writes into it."""
        before = sorted(self.folder.rglob("*"))
        for script, words in (("cmake/state-folder", []), ("cmake/wine-run", ["cmd", "/c", "exit"]), ("orvin", ["build"])):
            with self.subTest(script=script):
                done = self.ask(script, *words, ORVIN_STATE=str(state))
                self.assertNotEqual(done.returncode, 0)
                self.assertIn(why, done.stderr)
        self.assertEqual(sorted(self.folder.rglob("*")), before)

    def test_it_lies_in_the_users_cache_folder(self):
        done = self.ask(XDG_CACHE_HOME=str(self.folder))
        self.assertEqual((done.stdout, done.returncode), (f"{self.folder}/orvin-osd\n", 0))
        self.assertEqual((self.folder / "orvin-osd").stat().st_mode & 0o777, 0o700)
        done = self.ask(HOME=str(self.folder))
        self.assertEqual(done.stdout, f"{self.folder}/.cache/orvin-osd\n")
        done = self.ask(ORVIN_STATE=f"{self.folder}/named/")
        self.assertEqual(done.stdout, f"{self.folder}/named\n")

    def test_a_link_in_its_place_is_refused(self):
        target = self.folder / "target"
        target.mkdir()
        link = self.folder / "state"
        link.symlink_to(target)
        self.refused(link, "is a link")
        self.refused(f"{link}/", "is a link")
        link.unlink()
        link.symlink_to(self.folder / "nothing")
        self.refused(link, "is a link")

    def test_a_folder_of_another_user_is_refused(self):
        other = self.folder / "state"
        other.mkdir()
        if os.getuid():
            other = pathlib.Path("/usr")  # always root's
        else:
            os.chown(other, SOMEBODY_ELSE, SOMEBODY_ELSE)
        self.refused(other, "belongs to another user")

    def test_a_folder_that_everybody_may_write_to_is_refused(self):
        state = self.folder / "state"
        state.mkdir()
        state.chmod(0o1777)
        self.refused(state, "can be written to by everybody")

    def test_a_file_in_its_place_is_refused(self):
        (self.folder / "state").touch()
        self.refused(self.folder / "state", "is no folder")


if __name__ == "__main__":
    unittest.main()
