"""What end-to-end tests stand on: a display, an isolated data folder and segment, and running programs."""
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time

from PIL import Image

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
STATE = pathlib.Path(os.environ.get("ORVIN_STATE") or f"{tempfile.gettempdir()}/orvin-osd.{os.getuid()}")
LINUX = ROOT / "build/linux-release/bin"
WIN64 = ROOT / "build/win64/bin"
DATA = pathlib.PurePosixPath("ZARN/Orvin Deck/ORVIN-OSD/Data")


class Display:
    """An own X server on a free display number; ended by its process id."""

    def __init__(self, size="1280x1024"):
        self.size = size

    def __enter__(self):
        read, write = os.pipe()
        self.process = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", f"{self.size}x24",
                                         "-nolisten", "tcp"], pass_fds=[write], stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise RuntimeError("Xvfb did not start")
        self.name = f":{number}"
        return self.name

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait(20)


def install_data(base):
    """Lays the data folder out under base, the common application data folder of a platform."""
    folder = pathlib.Path(base) / DATA
    folder.mkdir(parents=True, exist_ok=True)
    for shader in (ROOT / "shaders").iterdir():
        shutil.copy(shader, folder)
    return folder


def screenshot(display, path):
    """The whole root window as a PNG, as a person would see it."""
    subprocess.run(["import", "-display", display, "-window", "root", str(path)], check=True, timeout=60)
    return Image.open(path).convert("RGB")


def wait_until(condition, seconds=30):
    """Polls condition; its first true value, else an AssertionError."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        value = condition()
        if value:
            return value
        time.sleep(0.1)
    raise AssertionError("condition not met in time")


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
