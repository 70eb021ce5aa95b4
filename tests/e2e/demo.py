#!/usr/bin/env python3
"""Brings the overlay into real programs on Linux and under Wine, shows every shipped profile from its file with live
sensors, and leaves the pictures in out/demo.

With a display present (DISPLAY set) the window is also shown there for some seconds a profile.
"""
import os
import pathlib
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
from e2e.environment import (LINUX, ROOT, SHIPPED, WIN64, Display, LinuxPrograms, WinePrograms,  # noqa: E402
                             glfw_examples, screenshot, wait_until)

OUT = ROOT / "out/demo"
FEED_MS = "250"
# Until the picture is taken: graphs get a sample a second.
SECONDS = {"Graphs": 30}


def publish(programs):
    """Publishes what the machine's sensors say, over and over. What it lacks stays empty on the picture."""
    programs.start([*programs.wrapper, programs.companion, "feed", "--interval", FEED_MS])
    wait_until(lambda: "CPU_USAGE#0" in programs.ask("names")[1])


def choose(programs, profile):
    for arguments in (("profile-name", profile), ("reload",)):
        code, output = programs.ask(*arguments)
        if code:
            raise SystemExit(f"orvin-osd {' '.join(arguments)}: exit code {code} {output}")


def tour(programs, display, program, name, start_seconds, profiles=SHIPPED, pictures=True):
    """One program, its profiles in turn, a picture of each."""
    process = programs.with_overlay(program)
    time.sleep(start_seconds)
    publish(programs)
    for profile in profiles:
        choose(programs, profile)
        time.sleep(SECONDS.get(profile, 4))
        if process.poll() is not None:
            print(process.log.read_text(errors="replace"))
            raise SystemExit(f"{name}: the program ended early with code {process.returncode}")
        if pictures:
            screenshot(display, OUT / f"{name}-{profile}.png")
            print(f"out/demo/{name}-{profile}.png", flush=True)
    programs.end(process)


def main():
    OUT.mkdir(parents=True, exist_ok=True)
    for width, height in ((1280, 720), (1920, 1080)):
        size = f"{width}x{height}"
        with Display(size) as display:
            with LinuxPrograms(display, care=True) as linux:
                tour(linux, display, [LINUX / "host_glx", "--size", size, "--frames", "1000000"], f"linux-host-{size}", 2)
            with LinuxPrograms(display, care=True) as linux:
                tour(linux, display, ["glxgears", "-geometry", f"{size}+0+0"], f"linux-glxgears-{size}", 2, ["Default"])
            with WinePrograms(display, care=True) as wine:
                tour(wine, display, [WIN64 / "host_wgl.exe", "--size", size, "--frames", "1000000"],
                     f"wine-host-{size}", 6)
            with WinePrograms(display, care=True) as wine:
                tour(wine, display, [glfw_examples() / "gears.exe"], f"wine-glfw-gears-{size}", 6, ["Default"])
    if os.environ.get("DISPLAY"):
        with LinuxPrograms(os.environ["DISPLAY"], care=True) as linux:
            tour(linux, None, ["glxgears", "-geometry", "1280x720+0+0"], "glxgears", 1, pictures=False)


if __name__ == "__main__":
    main()
