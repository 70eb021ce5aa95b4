"""Keys of the companion: real key events, and what each of them does to real programs."""
import json
import pathlib
import signal
import subprocess
import unittest

from PIL import Image

from e2e.environment import (DATA, LINUX, STORE_KEYS, WIN64, Display, LinuxPrograms, WinePrograms, see,
                             see_still, wait_until)
from e2e.pictures import shows_shapes
from e2e.test_recording import read_recording

ACTIONS = ("overlay", "profile", "shot", "record", "limit")
COMMANDS = [f"orvin-osd keys do {name}" for name in ACTIONS]
WINDOW = (0, 0, 640, 480)  # of the host on the display
MANY = "100000000"


class KeysCase:
    @classmethod
    def setUpClass(cls):
        screen = Display()
        cls.display = screen.__enter__()
        cls.addClassCleanup(screen.__exit__)

    def ask(self, *words, code=0):
        result, output = self.programs.ask(*words)
        self.assertEqual(result, code, output)
        return output.replace("\r", "")

    def xdotool(self, *words):
        return subprocess.run(["xdotool", *map(str, words)], env=self.programs.env, check=True, timeout=60,
                              stdout=subprocess.PIPE, text=True).stdout.split()

    def press(self, keys):
        self.xdotool("key", keys)

    def text(self, process):
        return process.log.read_text(errors="replace").replace("\r", "")

    def lines(self, process, words):
        return [line for line in self.text(process).splitlines() if line.startswith(words)]

    def listen(self, *command, until="listening"):
        process = self.start_companion(*(command or ("keys",)))
        self.addCleanup(self.programs.end, process)
        wait_until(lambda: until in self.text(process) or process.poll() is not None)
        self.assertIsNone(process.poll(), self.text(process))
        return process

    def window(self, condition=shows_shapes):
        """The host's picture; two looks in a row are equal."""
        return see_still(self.display, self.programs.folder / "root.png",
                         lambda picture: condition(picture.crop(WINDOW))).crop(WINDOW)

    def hold_each_action(self, process):
        """Each key pressed, and its effect seen."""
        shown = self.window()
        self.press("ctrl+shift+F10")
        wait_until(lambda: self.lines(process, "overlay off"))
        bare = self.window(lambda picture: picture.tobytes() != shown.tobytes())
        self.press("ctrl+shift+F10")
        wait_until(lambda: self.lines(process, "overlay on"))
        self.window(lambda picture: picture.tobytes() == shown.tobytes())

        self.press("ctrl+shift+F8")
        line, = wait_until(lambda: [line for line in self.text(process).splitlines() if line.endswith(".png")])
        with Image.open(self.local(line)) as file:
            picture = file.convert("RGB")
        self.assertEqual(picture.tobytes(), shown.tobytes())
        self.assertNotEqual(picture.tobytes(), bare.tobytes())

        self.ask("config", "limit-rate", "50")
        for state, text in (("on", "limit on: 50 frames a second"), ("off", "limit off")):
            self.press("ctrl+shift+F6")
            wait_until(lambda: self.lines(process, text))
            self.assertEqual(self.ask("config", "limit").splitlines()[0], state)

        self.press("ctrl+shift+F9")
        line, = wait_until(lambda: self.lines(process, "recording "))
        path = self.local(line.split(" to ", 1)[1])
        before = path.stat().st_size
        wait_until(lambda: path.stat().st_size > before)
        self.press("ctrl+shift+F10")  # other keys go on meanwhile
        wait_until(lambda: len(self.lines(process, "overlay off")) == 2)
        self.press("ctrl+shift+F10")
        wait_until(lambda: len(self.lines(process, "overlay on")) == 2)
        self.press("ctrl+shift+F9")
        said, = wait_until(lambda: [text for text in self.text(process).splitlines() if " frames, " in text])
        head, frames, _, end = read_recording(path)
        self.assertEqual(self.local(said.rsplit(": ", 1)[0]), path)
        self.assertEqual((head["program"], end), (self.name, "stopped"))
        self.assertIn(f"{len(frames)} frames, 0 lost", said)
        self.assertGreater(len(frames), 0)

        self.press("ctrl+shift+F7")
        line, = wait_until(lambda: self.lines(process, "profile "))
        names = [row["name"] for row in json.loads(self.ask("profile", "list", "--json"))]
        used = [row["name"] for row in json.loads(self.ask("profile", "list", "--json")) if row["shownIn"]]
        self.assertEqual([f"profile {name}" for name in used], [line])
        self.assertGreater(names.index(used[0]), names.index("Default"))
        see(self.display, self.programs.folder / "root.png",
            lambda picture: picture.crop((0, 0, 640, 480)).tobytes() != shown.tobytes())


class Linux(KeysCase, unittest.TestCase):
    name = "host_glx"
    local = staticmethod(pathlib.Path)

    def setUp(self):
        self.programs = LinuxPrograms(self.display, care=True)
        self.addCleanup(self.programs.close)
        self.programs.env.pop("WAYLAND_DISPLAY", None)
        self.programs.env.pop("XDG_SESSION_TYPE", None)

    def start_companion(self, *words):
        return self.programs.start([self.programs.companion, *words])

    def begin(self, *switches, profile="Shapes"):
        if profile:
            self.programs.show(profile)
        process = self.programs.with_overlay([LINUX / "host_glx", "--frames", MANY, *switches])
        self.programs.wait_for_overlay(process)
        return process

    def test_each_key_does_what_it_stands_for(self):
        self.begin()
        self.hold_each_action(self.listen())

    def test_keys_of_a_feed_work_too(self):
        self.begin()
        feed = self.listen("feed", "--keys", "--interval", "50", until="Ctrl+Shift+F10: ")
        self.press("ctrl+shift+F10")
        wait_until(lambda: self.lines(feed, "overlay off"))
        self.programs.end(feed)
        self.ask("config", "feed-keys", "on")
        feed = self.listen("feed", "--interval", "50", until="Ctrl+Shift+F10: ")
        self.press("ctrl+shift+F10")
        wait_until(lambda: self.lines(feed, "overlay on"))

    def test_locks_do_not_matter_and_a_held_key_counts_once(self):
        self.begin()
        process = self.listen()
        self.xdotool("key", "Caps_Lock")
        self.xdotool("key", "Num_Lock")
        self.press("ctrl+shift+F10")
        wait_until(lambda: self.lines(process, "overlay off"))
        self.xdotool("key", "Caps_Lock")
        self.press("ctrl+shift+F10")
        wait_until(lambda: self.lines(process, "overlay on"))
        self.xdotool("key", "Num_Lock")
        # The server repeats a held key 25 times a second; what is pressed later comes after all of them.
        self.xdotool("keydown", "ctrl", "keydown", "shift", "keydown", "F10", "sleep", "2", "keyup", "F10", "keyup",
                     "shift", "keyup", "ctrl")
        self.press("ctrl+shift+F6")
        wait_until(lambda: self.lines(process, "limit on"))
        self.assertEqual(len(self.lines(process, "overlay ")), 3, self.text(process))

    def test_what_another_program_has_is_told_and_the_rest_works(self):
        self.begin()
        self.ask("config", "key-limit", "none")
        for name in ACTIONS[1:4]:
            self.ask("config", f"key-{name}", "none")
        other = self.listen()
        self.ask("config", "key-limit", "--default")
        process = self.listen()
        self.assertIn("orvin-osd: Ctrl+Shift+F10 (overlay): another program has these keys; 'orvin-osd config key-overlay "
                      "KEYS' chooses others\n", self.text(process))
        self.press("ctrl+shift+F6")
        wait_until(lambda: self.lines(process, "limit on"))
        self.press("ctrl+shift+F10")
        wait_until(lambda: self.lines(other, "overlay off"))
        self.ask("config", "key-limit", "none")
        code, output = self.programs.ask("keys")
        self.assertEqual((code, output.splitlines()[-1]), (1, "orvin-osd: none of the keys can be listened to"))

    def test_keys_are_chosen_by_settings(self):
        self.begin()
        self.assertEqual(self.ask("config", "key-overlay", "alt+o"), "key-overlay = Alt+O\n")
        self.assertIn("belongs to key-overlay", self.ask("config", "key-limit", "Alt+O", code=2))
        self.assertIn("cannot be Hyper+O", self.ask("config", "key-limit", "Hyper+O", code=2))
        self.assertIn("cannot be O", self.ask("config", "key-limit", "O", code=2))
        self.ask("config", "key-limit", "none")
        rows = {row["action"]: row for row in json.loads(self.ask("keys", "--list", "--json"))}
        self.assertEqual((rows["overlay"]["keys"], rows["limit"]["keys"]), ("Alt+O", None))
        self.assertEqual([row["command"] for row in rows.values()], COMMANDS)
        process = self.listen()
        self.press("ctrl+shift+F6")
        self.press("ctrl+shift+F10")
        self.press("alt+o")
        wait_until(lambda: self.lines(process, "overlay off"))
        self.assertFalse(self.lines(process, "limit"))
        for name in ACTIONS:
            self.ask("config", f"key-{name}", "none")
        self.assertIn("no keys are set", self.ask("keys", code=3))

    def test_the_program_with_the_keyboard_is_meant(self):
        """Of two programs that both carry the overlay; each has a name of its own."""
        other = self.programs.folder / "other_host"
        other.symlink_to(LINUX / "host_egl")
        self.begin(profile=None)
        self.programs.with_overlay([other, "--frames", MANY, "--size", "320x200"])
        wait_until(lambda: [row["api"] for row in json.loads(self.ask("status", "--json"))["instances"]] == ["OpenGL"] * 2)
        sizes = set()
        for window in self.xdotool("search", "--name", "orvin host") * 2:
            self.xdotool("windowfocus", "--sync", window)
            with Image.open(self.ask("keys", "do", "shot").strip()) as picture:
                shape = {f"WIDTH={picture.width}", f"HEIGHT={picture.height}"}
                sizes.add(picture.size)
            self.assertLessEqual(shape, set(self.xdotool("getwindowgeometry", "--shell", window)))
        self.assertEqual(sizes, {(640, 480), (320, 200)})

    def test_commands_do_the_same_from_one_program_to_the_next(self):
        self.begin()
        holder = self.start_companion("feed")
        wait_until(lambda: "publishing" in self.text(holder))
        self.assertEqual(self.ask("keys", "do", "overlay"), "overlay off\n")
        self.assertEqual(self.ask("keys", "do", "overlay"), "overlay on\n")
        self.assertEqual(self.ask("keys", "do", "limit"), "limit on: 60 frames a second\n")
        self.assertEqual(self.ask("keys", "do", "limit"), "limit off\n")
        self.assertRegex(self.ask("keys", "do", "record"), r"\Arecording host_glx \(\d+\) to .*\.csv\n\Z")
        path = self.ask("keys", "do", "record").rsplit(": ", 1)[0]
        self.assertEqual(read_recording(pathlib.Path(path))[3], "stopped")
        self.assertIn("no action", self.ask("keys", "do", "nothing", code=2))

    def test_a_recording_ends_with_its_program_and_with_the_listener(self):
        host = self.begin()
        process = self.listen()
        self.press("ctrl+shift+F9")
        wait_until(lambda: self.lines(process, "recording "))
        self.programs.end(host)
        wait_until(lambda: " frames, " in self.text(process))
        self.begin(profile=None)
        self.press("ctrl+shift+F9")
        wait_until(lambda: len(self.lines(process, "recording ")) == 2)
        process.send_signal(signal.SIGINT)
        self.assertEqual(process.wait(60), 0, self.text(process))
        said = [line for line in self.text(process).splitlines() if " frames, " in line]
        ends = [read_recording(pathlib.Path(line.rsplit(": ", 1)[0]))[3] for line in said]
        self.assertEqual(ends, ["program ended", "stopped"])

    def test_next_profile_skips_what_cannot_be_used_and_comes_round(self):
        self.begin()
        profiles = self.programs.data / "Profiles"
        for path in sorted(profiles.iterdir()):
            if path.name not in ("Default", "FPS", "Gauges", "Player"):
                path.rename(self.programs.folder / f"away-{path.name}")
        (profiles / "Gauges/OSD.xml").write_text("<OSD>")
        seen = [self.ask("keys", "do", "profile") for _ in range(4)]
        self.assertEqual(seen, ["profile FPS\n", "profile Player\n", "profile Default\n", "profile FPS\n"])
        choices = self.programs.folder / "orvin-osd/choices.json"
        self.assertEqual(json.loads(choices.read_text())["profile"], "FPS")

    def test_without_programs_each_action_says_so(self):
        for name, words in (("overlay", "no running program"), ("shot", "no running program"),
                            ("record", "no running program")):
            self.assertRegex(self.ask("keys", "do", name, code=3), rf"\Aorvin-osd: {words} carries the overlay\n\Z")

    def test_a_wayland_session_is_told_what_to_do(self):
        for environment in ({"XDG_SESSION_TYPE": "wayland"}, {"WAYLAND_DISPLAY": "wayland-0", "DISPLAY": ""}):
            code, output = self.programs.run([self.programs.companion, "keys"], **environment)
            self.assertEqual(code, 1)
            for command in COMMANDS:
                self.assertIn(f"  {command}\n", output)
            errors = [line for line in output.splitlines() if line.startswith("orvin-osd: ")]
            self.assertEqual(errors, ["orvin-osd: in a Wayland session no program can have keys that work everywhere"])
        # An X server of its own inside of a Wayland session has keys.
        self.begin()
        self.programs.env["WAYLAND_DISPLAY"] = "wayland-0"
        self.listen()

    def test_without_a_display_there_is_one_line(self):
        for display, words in (("", "there is no display to take keys from"),
                               (":4711", "cannot reach the X server :4711")):
            code, output = self.programs.run([self.programs.companion, "keys"], DISPLAY=display)
            self.assertEqual((code, output), (1, f"orvin-osd: {words}\n"))
        feed = self.programs.start([self.programs.companion, "feed", "--keys", "--interval", "50"], DISPLAY="")
        wait_until(lambda: "there is no display" in self.text(feed))
        self.assertIsNone(feed.poll())

    def test_the_end_of_the_x_server_is_told_and_a_feed_goes_on(self):
        screen = Display("640x480")
        name = screen.__enter__()
        process = self.programs.start([self.programs.companion, "keys"], DISPLAY=name)
        wait_until(lambda: "listening" in self.text(process))
        screen.__exit__()
        self.assertEqual(process.wait(60), 1)
        self.assertEqual(self.text(process).splitlines()[-1], "orvin-osd: the system tells of keys no more")


class Windows(KeysCase, unittest.TestCase):
    """Wine hears of keys while one of its windows has the keyboard, which a click gives it."""
    name = "host_wgl.exe"

    def setUp(self):
        self.programs = WinePrograms(self.display, care=True)
        self.addCleanup(self.programs.close)
        self.addCleanup(self.forget)
        self.drive = self.programs.data.parents[len(pathlib.PurePosixPath(DATA).parts)]

    def forget(self):
        self.programs.run([*self.programs.wrapper, "reg", "delete", STORE_KEYS[1], "/f"])

    def local(self, text):
        path = pathlib.PurePosixPath(text.replace("\\", "/"))
        return pathlib.Path("/", *path.parts[1:]) if text.startswith("Z:") else self.drive.joinpath(*path.parts[1:])

    def start_companion(self, *words):
        """What it prints is seen while it runs: what Wine starts is shown at its end alone."""
        log = self.programs.folder / f"listener{len(self.programs.started)}"
        log.touch()
        names = [f"Z:{path}".replace("/", "\\") for path in (self.programs.companion, log)]
        process = self.programs.wine("cmd", "/c", f"{names[0]} {' '.join(words)} > {names[1]} 2>&1")
        process.log = log
        process.names.add("orvin-osd.exe")
        return process

    def take_keyboard(self):
        """xdotool fails while no window has the keyboard."""
        self.xdotool("mousemove", 100, 100, "click", 1)
        return subprocess.run(["xdotool", "getwindowfocus"], env=self.programs.env, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL).returncode == 0

    def begin(self):
        self.programs.show("Shapes")
        process = self.programs.with_overlay([WIN64 / "host_wgl.exe", "--await-detour", "--frames", MANY])
        self.programs.wait_for_overlay(process)
        wait_until(self.take_keyboard)
        self.xdotool("mousemove", 900, 900)
        return process

    def test_each_key_does_what_it_stands_for(self):
        self.begin()
        self.hold_each_action(self.listen())

    def test_what_another_program_has_is_told_and_the_rest_works(self):
        self.begin()
        for name in ACTIONS[1:]:
            self.ask("config", f"key-{name}", "none")
        other = self.listen()
        self.ask("config", "key-limit", "--default")
        process = self.listen()
        self.assertIn("orvin-osd: Ctrl+Shift+F10 (overlay): another program has these keys", self.text(process))
        self.press("ctrl+shift+F6")
        wait_until(lambda: self.lines(process, "limit on"))
        self.press("ctrl+shift+F10")
        wait_until(lambda: self.lines(other, "overlay off"))
