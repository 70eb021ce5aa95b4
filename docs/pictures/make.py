#!/usr/bin/env python3
"""Makes the pictures of the manual out of the profiles beside this file.

usage: make.py [--companion PATH] [NAME ...]

Each folder profiles/NAME becomes NAME.png; without names all of them. A settings.ini in it is added to the shipped one. The companion is looked for in the build folder
of the working copy. Pictures that grow beyond 30 KB fail: they belong to the manual, not to a gallery.
"""
import argparse
import re
import subprocess
import sys
import tempfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent.parent
MOST_BYTES = 30 * 1024

# What lies behind the layout.
DARK, BRIGHT, CHECKER = "#1c2430", "#dfe6ef", "checker"
BACKGROUNDS = {"first": "#6d8db5", "panel-scattering": CHECKER, "panel-types": CHECKER, "text-shadow": BRIGHT}
# Pictures of profiles that name no size of their own.
USUAL_SIZE = "480x270"


def companions():
    """Built companions, the newest first."""
    found = [*ROOT.glob("build/*/bin/orvin-osd")]
    return sorted(found, key=lambda path: path.stat().st_mtime, reverse=True)


def size_of(profile):
    """The canvas that the profile asks for."""
    match = re.search(r'<Preview Width="(\d+)" Height="(\d+)"', (profile / "OSD.xml").read_text())
    return "x".join(match.groups()) if match else USUAL_SIZE


def data_folder(profile, folder):
    """The shipped data beside settings of the profile's own."""
    if not (profile / "settings.ini").exists():
        return ROOT / "data"
    (folder / "data").symlink_to(ROOT / "data")
    (folder / "Settings").mkdir()
    parts = [path.read_text() for path in (ROOT / "Settings/settings.ini", profile / "settings.ini")]
    (folder / "Settings/settings.ini").write_text("\n".join(parts))
    return folder / "data"


def make(companion, name):
    """True if the picture was made and is small enough."""
    profile, picture = HERE / "profiles" / name, HERE / f"{name}.png"
    with tempfile.TemporaryDirectory() as folder:
        words = [companion, "profile", "render", profile, "-o", picture, "--data", data_folder(profile, Path(folder))]
        words += ["--size", size_of(profile), "--background", BACKGROUNDS.get(name, DARK)]
        done = subprocess.run([str(word) for word in words], check=False)
    if done.returncode != 0:
        return False
    size = picture.stat().st_size
    print(f"{picture.name}: {size} bytes")
    return size <= MOST_BYTES


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--companion", type=Path)
    parser.add_argument("names", nargs="*")
    options = parser.parse_args()
    companion = options.companion or next(iter(companions()), None)
    if not companion:
        sys.exit("no companion is built; name one with --companion")
    names = options.names or sorted(path.name for path in (HERE / "profiles").iterdir())
    failed = [name for name in names if not make(companion, name)]
    sys.exit(f"failed: {', '.join(failed)}" if failed else 0)


if __name__ == "__main__":
    main()
