#!/usr/bin/env python3
"""Brings the overlay into real programs on Linux and under Wine and leaves their pictures in out/demo.

With a display present (DISPLAY set) the window is also shown there for some seconds.
"""
import os
import pathlib
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
from e2e.environment import (LINUX, ROOT, WIN64, Display, LinuxPrograms, WinePrograms, glfw_examples,  # noqa: E402
                             screenshot)

OUT = ROOT / "out/demo"
SHOWN_SECONDS = 10
# Set by hand on a machine without a graphics card that can be read.
SAMPLES = {"GPU_USAGE#0": 97, "GPU_TEMP#0": 71, "GPU_CLK#0": 1755, "VRAM_USAGE_MB#0": 6421}


def publish(programs):
    """What the machine's sensors say, and samples for a graphics card that it lacks; True if those were needed."""
    programs.ask("feed", "--once")
    lacking = "GPU_CLK#0" not in programs.ask("names")[1]
    if lacking:
        for name, value in SAMPLES.items():
            programs.ask("set", name, str(value))
    return lacking


def take(programs, display, command, name, seconds):
    process = programs.with_overlay(command)
    time.sleep(seconds)
    if publish(programs):
        print(f"{name}: no graphics card to read; its values are samples set by hand")
    time.sleep(2)
    if process.poll() is not None:
        print(process.log.read_text(errors="replace"))
        raise SystemExit(f"{name}: the program ended early with code {process.returncode}")
    screenshot(display, OUT / f"{name}.png")
    programs.end(process)
    print(f"out/demo/{name}.png")


def main():
    OUT.mkdir(parents=True, exist_ok=True)
    for width, height in ((1280, 720), (1920, 1080)):
        size = f"{width}x{height}"
        with Display(size) as display:
            with LinuxPrograms(display) as linux:
                take(linux, display, [LINUX / "host_glx", "--size", size, "--frames", "100000"], f"linux-host-{size}", 3)
                take(linux, display, ["glxgears", "-geometry", f"{size}+0+0"], f"linux-glxgears-{size}", 3)
            with WinePrograms(display) as wine:
                take(wine, display, [WIN64 / "host_wgl.exe", "--size", size, "--frames", "100000"],
                     f"wine-host-{size}", 8)
                take(wine, display, [glfw_examples() / "gears.exe"], f"wine-glfw-gears-{size}", 8)
    if os.environ.get("DISPLAY"):
        with LinuxPrograms(os.environ["DISPLAY"]) as linux:
            process = linux.with_overlay(["glxgears", "-geometry", "1280x720+0+0"])
            time.sleep(1)
            publish(linux)
            time.sleep(SHOWN_SECONDS)
            linux.end(process)


if __name__ == "__main__":
    main()
