"""What end-to-end tests stand on: a display, an isolated data folder and segment, and running programs."""
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

from PIL import Image

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
STATE = pathlib.Path(subprocess.run([ROOT / "cmake/state-folder"], stdout=subprocess.PIPE, text=True,
                                    check=True).stdout.rstrip("\n"))
LINUX = ROOT / "build/linux-release/bin"
WIN64 = ROOT / "build/win64/bin"
DATA = pathlib.PurePosixPath("ZARN/Orvin Deck/ORVIN-OSD/Data")
STORE = r"SOFTWARE\Zarn\ORVIN-OSD"  # root of the settings store
STORE_KEYS = (r"HKLM\SOFTWARE\WOW6432Node\Zarn\ORVIN-OSD", rf"HKLM\{STORE}")  # in the order in which they are looked for
SHIPPED = sorted(path.name for path in (ROOT / "data/Profiles").iterdir())


def prepare():
    """Pays what is paid once on a machine, in words and with progress, so that no test meets it."""
    subprocess.run([ROOT / "cmake/prepare"], check=True)


class Display:
    """An own X server on a free display number; ended by its process id."""

    def __init__(self, size="1280x1024"):
        self.size = size

    def __enter__(self):
        """Two that start at once may want one number, and one of them ends; it looks for another number then."""
        for _ in range(5):
            number = self.start()
            if number:
                self.name = f":{number}"
                return self.name
            self.process.wait(20)
        raise RuntimeError("Xvfb did not start")

    def start(self):
        """The number of the display; empty if the server did not come up."""
        read, write = os.pipe()
        self.process = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", f"{self.size}x24",
                                         "-nolisten", "tcp"], pass_fds=[write], stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as pipe:
            return pipe.readline().strip()

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait(20)


def install_data(base, care=False):
    """Lays the data folder out under base, the common application data folder of a platform: what is shipped, and the
    profiles of the tests beside it. Without care the settings file stays away, so that no key of [HostCare] is set."""
    folder = pathlib.Path(base) / DATA
    shutil.rmtree(folder, ignore_errors=True)
    shutil.copytree(ROOT / "data", folder)
    if not care:
        (folder / "OSD.ini").unlink()
    shutil.copytree(ROOT / "shaders", folder, dirs_exist_ok=True)
    shutil.copytree(ROOT / "tests/profiles", folder / "Profiles", dirs_exist_ok=True)
    return folder


def screenshot(display, path):
    """The whole root window as a PNG, as a person would see it."""
    subprocess.run(["import", "-display", display, "-window", "root", str(path)], check=True, timeout=60)
    return Image.open(path).convert("RGB")


def wait_until(condition, seconds=180):
    """Polls condition; its first true value, else an AssertionError. The seconds only end what would never come: no
    test takes them as a measure, so they are many, for machines that have much else to do."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError("condition not met in time")
        time.sleep(0.1)


def see(display, path, condition, seconds=180):
    """The first screenshot of which the condition is true."""
    def look():
        picture = screenshot(display, path)
        return picture if condition(picture) else None
    return wait_until(look, seconds)


def see_still(display, path, condition):
    """The same of a picture that does not move: two looks in a row show it, so that no half of a frame is taken."""
    former = []

    def look(picture):
        good = condition(picture) and former and former[0].tobytes() == picture.tobytes()
        former[:] = [picture]
        return good
    return see(display, path, look)


def finish(process, seconds=10):
    """Ends one process started here: interrupt, then kill, by id."""
    if process.poll() is None:
        process.send_signal(signal.SIGTERM)
        try:
            process.wait(seconds)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait(seconds)
    return process.returncode


def glfw_examples():
    """Example programs of GLFW, cross-built outside the repository from Debian's source package; their folder."""
    folder = STATE / "glfw"
    if not (folder / "examples/splitview.exe").exists():
        subprocess.run(["cmake", "-S", str(ROOT / "build/third_party/glfw3"), "-B", str(folder), "-G", "Ninja",
                        f"-DCMAKE_TOOLCHAIN_FILE={ROOT}/cmake/mingw.cmake", "-DGLFW_BUILD_DOCS=OFF",
                        "-DGLFW_BUILD_TESTS=OFF"], check=True, stdout=subprocess.DEVNULL)
        subprocess.run(["cmake", "--build", str(folder)], check=True, stdout=subprocess.DEVNULL)
    return folder / "examples"


class Programs:
    """Starts programs with one environment and ends them all, with their children, by process group."""

    wrapper = ()  # what a program of the platform is started through

    def __init__(self, env):
        self.env = {**os.environ, **env}
        self.started = []
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="orvin-e2e."))

    def show(self, profile):
        """Puts a profile in the place of the one that is shown where none was chosen; for programs that start from
        now on."""
        default = self.data / "Profiles/Default"
        shutil.rmtree(default)
        shutil.copytree(self.data / "Profiles" / profile, default)

    def start(self, command, **more):
        path = self.folder / f"log{len(self.started)}"
        with open(path, "wb") as log:
            process = subprocess.Popen([str(c) for c in command], stdout=log, stderr=subprocess.STDOUT,
                                       stdin=subprocess.DEVNULL, env={**self.env, **more}, start_new_session=True)
        process.log = path
        process.names = {pathlib.Path(str(c)).name for c in command}
        self.started.append(process)
        return process

    def run(self, command, timeout=120, **more):
        """Runs to the end; (exit code, output)."""
        process = self.start(command, **more)
        try:
            code = process.wait(timeout)
        except subprocess.TimeoutExpired:
            self.end(process)
            code = 124
        return code, process.log.read_text(errors="replace")

    def end(self, process):
        if process.poll() is None:
            os.killpg(process.pid, signal.SIGTERM)
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait(5)

    def wait_for_overlay(self, process, frame_time=False):
        """Until a program reports that the overlay is built in it, and a frame time if asked for."""
        def row():
            if process.poll() is not None:
                raise AssertionError(f"the program ended early, code {process.returncode}: "
                                     f"{process.log.read_text(errors='replace')}")
            found = re.search(r" OpenGL +([0-9.]+|-)", self.ask("status")[1])
            return found and (not frame_time or (found.group(1) != "-" and float(found.group(1)) > 0))
        if frame_time:
            wait_until(lambda: self.ask("frametime", "on")[0] == 0)
        wait_until(row)

    def close(self):
        for process in self.started:
            self.end(process)
        shutil.rmtree(self.folder, ignore_errors=True)
        for left in pathlib.Path("/dev/shm").glob(f"*{self.folder.name}*"):
            left.unlink()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()


class LinuxPrograms(Programs):
    """Programs on Linux with a data folder and a shared segment of their own."""

    def __init__(self, display, care=False):
        super().__init__({"DISPLAY": display, "LIBGL_ALWAYS_SOFTWARE": "1"})
        self.env["ORVIN_OSD_APPDATA"] = str(self.folder)
        self.env["ORVIN_OSD_SEGMENT"] = self.folder.name
        self.data = install_data(self.folder, care)
        self.companion = LINUX / "orvin-osd"

    def take_settings(self):
        """The settings store as it is shipped, for programs that start from now on."""
        folder = self.data.parent / "Settings"
        folder.mkdir(exist_ok=True)
        shutil.copy(ROOT / "Settings/settings.ini", folder)

    def set(self, key, *lines):
        """Adds a key below the root to the settings store, for programs that start from now on."""
        folder = self.data.parent / "Settings"
        folder.mkdir(exist_ok=True)
        with open(folder / "settings.ini", "a") as file:
            file.write("\n".join([f"[{STORE}\\{key}]", *lines, ""]))

    def with_overlay(self, command, **more):
        """With the overlay whatever state its data is in; test_readiness.py holds what a plain run looks at."""
        return self.start([self.companion, "run", "--force", "--", *command], **more)

    def ask(self, *arguments):
        return self.run([self.companion, *arguments])


class WinePrograms(Programs):
    """Programs under Wine. A copy of the library has a shared section of its own, which isolates the test."""

    wrapper = (ROOT / "cmake/wine-run",)

    def __init__(self, display, care=False):
        super().__init__({"DISPLAY": display, "ORVIN_STATE": str(STATE), "ORVIN_WINE_TIMEOUT": "120"})
        self.env["ORVIN_E2E"] = self.folder.name
        self.env["ORVIN_OSD_CONFIG"] = "Z:" + str(self.folder / "config").replace("/", "\\")
        self.settings_taken = False
        self.mark = f"ORVIN_E2E={self.folder.name}".encode()
        prefix = pathlib.Path(os.environ.get("WINEPREFIX", STATE / "wine"))
        prepare()
        self.data = install_data(prefix / "drive_c/ProgramData", care)
        for built in ("ORVIN-OSD64-GL.dll", "orvin-osd.exe", "orvin-profile.exe"):
            shutil.copy(WIN64 / built, self.folder)
        self.companion = self.folder / "orvin-osd.exe"

    def take_settings(self):
        """The settings store as it is shipped, until these programs are closed."""
        shutil.copy(ROOT / "Settings/settings.reg", self.folder)
        code, output = self.run([*self.wrapper, "reg", "import", self.folder / "settings.reg"])
        if code:
            raise AssertionError(f"the settings cannot be imported: {output}")
        self.settings_taken = True

    def start(self, command, **more):
        self.settings_taken = self.settings_taken or "feed" in command  # a killed one leaves what it made known
        return super().start(command, **more)

    def close(self):
        if self.settings_taken:
            self.run([*self.wrapper, "reg", "delete", STORE_KEYS[1], "/f"])
        super().close()

    def set(self, key, *lines):
        """Adds a key of numbers below the root to the registry, until these programs are closed."""
        self.settings_taken = True
        for line in lines:
            name, value = (part.strip() for part in line.split("="))
            code, output = self.run([*self.wrapper, "reg", "add", rf"{STORE_KEYS[1]}\{key}", "/v", name, "/t", "REG_DWORD",
                                     "/d", value, "/f"])
            if code:
                raise AssertionError(f"cannot be set: {output}")

    def wine(self, *command, **more):
        return self.start([*self.wrapper, *command], **more)

    def with_overlay(self, command, **more):
        return self.wine(self.companion, "run", "--force", "--", *command, **more)

    def ask(self, *arguments):
        """Of many hundreds of programs that it starts, Wine loses one without a word, which the companion never is when
        it fails; so such a one is started again, and told of."""
        code, output = self.run([*self.wrapper, self.companion, *arguments])
        if code and not output:
            print(f"lost: orvin-osd {' '.join(map(str, arguments))}, exit code {code}", file=sys.stderr)
            code, output = self.run([*self.wrapper, self.companion, *arguments])
        return code, output

    def end(self, process):
        """Wine starts programs outside the group; those carry this test's mark in their environment."""
        super().end(process)
        for folder in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                name = (folder / "cmdline").read_bytes().split(b"\0")[0].decode(errors="replace")
                marked = self.mark in (folder / "environ").read_bytes()
            except OSError:
                continue
            if marked and re.split(r"[/\\]", name)[-1] in process.names:
                os.kill(int(folder.name), signal.SIGKILL)
