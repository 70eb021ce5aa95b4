#!/usr/bin/env python3
"""Brings the overlay into real programs on Linux and under Wine, shows every shipped profile from its file with live
sensors, and leaves the pictures in out/demo.

A picture is taken as soon as what it is to show is seen, however long that takes: the profile's ground, its values, and
graphs that have filled. With a display present (DISPLAY set) the window is also shown there for some seconds a profile.
"""
import json
import os
import pathlib
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
from e2e.environment import (LINUX, ROOT, SHIPPED, WIN64, Display, LinuxPrograms, WinePrograms,  # noqa: E402
                             glfw_examples, see, wait_until)
from e2e.panels import is_custom, named_boxes, value_places  # noqa: E402
from e2e.pictures import differing_inside, holds_color, ink_box  # noqa: E402

OUT = ROOT / "out/demo"
FEED_MS = "100"
SECONDS_TO_LOOK_AT = 4
INK = 120
STRIP = (92, 188, 255)  # at the left edge of the Default profile


def publish(programs):
    """Publishes what the machine's sensors say, over and over. What it lacks stays empty on the picture."""
    programs.start([*programs.wrapper, programs.companion, "feed", "--interval", FEED_MS])
    wait_until(lambda: "CPU_USAGE#0" in programs.ask("names")[1])
    return programs.ask("names")[1].split()


def ask(programs, *arguments):
    code, output = programs.ask(*arguments)
    if code:
        raise SystemExit(f"orvin-osd {' '.join(arguments)}: exit code {code} {output}")


def bare_picture(programs, display, program):
    """The program alone: what the overlay's ground is told from."""
    process = programs.start([*programs.wrapper, *program])
    picture = see(display, OUT / "bare.png", lambda p: p.getbbox())
    programs.end(process)
    (OUT / "bare.png").unlink()
    return picture


def is_complete(picture, bare, profile, names):
    """Whether a profile stands there with all that has a value."""
    grounds = named_boxes(profile, *picture.size).values()
    if not all(differing_inside(picture, bare, ground) > 0.8 for ground in grounds):
        return False
    for name, kind, row, box in value_places(profile, *picture.size):
        color = tuple(int(row.get(f"LineColor{letter}", 0)) for letter in "RGB")
        if name in names and not (ink_box(picture, box, INK) if kind == "NumBox" else holds_color(picture, box, color)):
            return False
    return True


def style_boxes(programs, profile, width, height):
    """Pixel boxes of a built-in style: of the ground, and of what shows a caption or a published value."""
    code, output = programs.ask("rows", profile, "--json", "--size", f"{width}x{height}")
    listed = json.loads(output[output.index("{"):])
    shown = [row for row in listed["rows"] if row["place"]]
    parts = [part["box"] for row in shown for part in row["boxes"]
             if part["part"] == "title" or (part["part"] == "value" and row["published"])]
    scale = height / listed["canvas"][1]
    ground, *boxes = [tuple(round(v * scale) for v in (x, y, x + w, y + h)) for x, y, w, h in [listed["ground"], *parts]]
    if code or not boxes:
        raise SystemExit(f"orvin-osd rows {profile}: exit code {code}, {len(boxes)} boxes")
    return ground, boxes


def is_style_complete(picture, bare, ground, boxes):
    return differing_inside(picture, bare, ground) > 0.8 and all(ink_box(picture, box, INK) for box in boxes)


def shows_strip(picture, bare):
    """Whether the Default profile stands in a window that lies and is large as its program wants."""
    return STRIP in picture.getdata() and STRIP not in bare.getdata()


def condition(programs, profile, bare, names, whole):
    """What a picture has to show."""
    if not whole:
        return lambda picture: shows_strip(picture, bare)
    if is_custom(profile):
        return lambda picture: is_complete(picture, bare, profile, names)
    ground, boxes = style_boxes(programs, profile, *bare.size)
    return lambda picture: is_style_complete(picture, bare, ground, boxes)


def tour(programs, display, program, name, profiles=SHIPPED, pictures=True, whole=True):
    """One program, its profiles in turn, a picture of each. Without whole its window is not the whole screen."""
    programs.take_settings()
    bare = bare_picture(programs, display, program) if pictures else None
    process = programs.with_overlay(program)
    programs.wait_for_overlay(process, frame_time=True)
    names = publish(programs)
    for profile in profiles:
        ask(programs, "profile-name", profile)
        ask(programs, "reload")
        if pictures:
            path = OUT / f"{name}-{profile}.png"
            see(display, path, condition(programs, profile, bare, names, whole))
            print(f"out/demo/{name}-{profile}.png", flush=True)
        else:
            time.sleep(SECONDS_TO_LOOK_AT)
        if process.poll() is not None:
            print(process.log.read_text(errors="replace"))
            raise SystemExit(f"{name}: the program ended early with code {process.returncode}")
    programs.end(process)


def main():
    OUT.mkdir(parents=True, exist_ok=True)
    for width, height in ((1280, 720), (1920, 1080)):
        size = f"{width}x{height}"
        with Display(size) as display:
            with LinuxPrograms(display, care=True) as linux:
                tour(linux, display, [LINUX / "host_glx", "--size", size, "--frames", "1000000"], f"linux-host-{size}")
            with LinuxPrograms(display, care=True) as linux:
                tour(linux, display, ["glxgears", "-geometry", f"{size}+0+0"], f"linux-glxgears-{size}", ["Default"])
            with WinePrograms(display, care=True) as wine:
                tour(wine, display, [WIN64 / "host_wgl.exe", "--size", size, "--frames", "1000000"], f"wine-host-{size}")
            with WinePrograms(display, care=True) as wine:
                tour(wine, display, [glfw_examples() / "gears.exe"], f"wine-glfw-gears-{size}", ["Default"], whole=False)
    if os.environ.get("DISPLAY"):
        with LinuxPrograms(os.environ["DISPLAY"], care=True) as linux:
            tour(linux, None, ["glxgears", "-geometry", "1280x720+0+0"], "glxgears", pictures=False)


if __name__ == "__main__":
    main()
