#!/usr/bin/env python3
"""Makes the README's pictures of the shipped profiles: each drawn at 1920x1080 by "profile render", then cut to where it
stands.

usage: shipped.py [COMPANION]
"""
import io
import pathlib
import subprocess
import sys
import tempfile

from PIL import Image

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
MOST_BYTES = 150 * 1024
# Background and the part of the picture that is shown: left, top, right, bottom.
VIEWS = {"Default": ("bright", (0, 0, 640, 300)), "FPS": ("dark", (1280, 0, 1920, 300)),
         "Gauges": ("bright", (1280, 0, 1920, 640)), "Graphs": ("dark", (0, 0, 640, 640)),
         "Emblem": ("bright", (1280, 0, 1920, 300)),
         "Player": ("bright", (1280, 0, 1920, 300)), "Reviewer": ("dark", (0, 0, 380, 900)),
         "Full": ("dark", (0, 0, 640, 690)), "Streamer": ("bright", (640, 390, 1280, 1080))}


def main(companion):
    with tempfile.TemporaryDirectory() as folder:
        for name, (background, view) in VIEWS.items():
            whole = pathlib.Path(folder) / f"{name}.png"
            subprocess.run([companion, "profile", "render", ROOT / "data/Profiles" / name, "-o", whole, "--data",
                            companion.parent.parent / "data", "--size", "1920x1080", "--background", background,
                            "--seconds", "70"], check=True)
            out = io.BytesIO()
            Image.open(whole).convert("RGB").crop(view).save(out, "PNG", optimize=True)
            if len(out.getvalue()) > MOST_BYTES:
                sys.exit(f"{name}: {len(out.getvalue())} bytes")
            (HERE / f"shipped-{name.lower()}.png").write_bytes(out.getvalue())


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ROOT / "build/linux-release/bin/orvin-osd").resolve())
