#!/usr/bin/env python3
"""Makes the contact sheets of the two built-in styles: each combination drawn by "profile render" and put on a sheet.

usage: styles.py [--companion PATH] [--out FOLDER] [STYLE ...]

A machine is made up for each picture: its cards and CPUs stand in a settings file beside a data folder of a moment, as
"orvin-osd feed" leaves them. --single writes one combination in full size and makes no sheet.
"""
import argparse
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

from PIL import Image, ImageDraw

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
KEY = r"SOFTWARE\Zarn\ORVIN-OSD\Information Option"
STYLES = ("Classic", "RV5")
SIZES = {"720p": (1280, 720), "1080p": (1920, 1080), "1440p": (2560, 1440), "4K": (3840, 2160)}
SCALES = (50, 100, 150)
THREE = ("FPS", "GPUUsage", "CPUUsage")  # the rows of "three rows on"
TILE = (480, 270)
MOST_BYTES = 900 * 1024


def rows_of_cards():
    """Row names of cards as the settings call them, out of the one table that there is."""
    return re.findall(r'u"([^"]+)", "(?!CPU_)[A-Z0-9_]+"', (ROOT / "shared/info_rows.cpp").read_text())


def machine(cards):
    """Settings of a machine that reports everything."""
    lines = [(ROOT / "Settings/settings.ini").read_text(), rf"[{KEY}\Card]", f"Card Num = {cards}"]
    for card in range(cards):
        for row in rows_of_cards():
            lines += [rf"[{KEY}\Card\{card}\{row}]", "IsSupport = 1"]
    for row in ("CPU Clock", "CPU Temperature", "CPU Usage"):
        lines += [rf"[{KEY}\CPU\{row}]", "IsSupport = 1"]
    for name in set(re.findall(r"Sensor\\([A-Z_]+)\]", lines[0])):
        lines += [rf"[{KEY}\Sensor\0\{name}]", "IsSupport = 1"]
    return "\n".join(lines) + "\n"


def profile(style, rows, cards, cpus, scale):
    """The shipped profile with other rows on, for so many cards and CPUs."""
    text = (ROOT / "data/Profiles" / style / "OSD.xml").read_text()
    info = text.index("<FPS ")
    end = text.index("<DisplayIndex")

    def switch(match):
        on = rows == "all" or match.group(1) in THREE
        return f'<{match.group(1)} IsShow="{int(on)}"/>'
    body = re.sub(r'<(\w[\w.]*) IsShow="[01]"/>', switch, text[info:end])
    cpu = re.search(r" *<CPU .*?</CPU>\n", body, re.S).group(0)
    body = body.replace(cpu, "".join(cpu.replace("CPU#0", f"CPU#{index}") for index in range(cpus)))
    head = re.sub(r'FontScale="\d+"', f'FontScale="{scale}"', text[:info])
    head = re.sub(r'CardDisplayNum="\d+"', f'CardDisplayNum="{cards}"', head)
    return head + body + text[end:]


class Stage:
    """A data folder of a moment."""

    def __init__(self, companion):
        self.companion = companion
        self.folder = tempfile.TemporaryDirectory()
        self.data = pathlib.Path(self.folder.name) / "Data"

    def __enter__(self):
        shutil.copytree(ROOT / "data", self.data)
        shutil.copytree(ROOT / "shaders", self.data, dirs_exist_ok=True)
        (self.data.parent / "Settings").mkdir()
        return self

    def __exit__(self, *_):
        self.folder.cleanup()

    def draw(self, style, rows="all", cards=1, cpus=1, scale=100, size="1080p", background="dark"):
        (self.data.parent / "Settings/settings.ini").write_text(machine(cards))
        folder = self.data / "Profiles/Drawn"
        folder.mkdir(exist_ok=True)
        (folder / "OSD.xml").write_text(profile(style, rows, cards, cpus, scale))
        picture = pathlib.Path(self.folder.name) / "picture.png"
        width, height = SIZES[size]
        subprocess.run([self.companion, "profile", "render", "Drawn", "-o", picture, "--data", self.data, "--size",
                        f"{width}x{height}", "--background", background, "--seconds", "1.2"], check=True)
        return Image.open(picture).convert("RGB")


def words(rows, cards, cpus, scale, size, background):
    many = "every row" if rows == "all" else "three rows"
    return f"{size}  {scale}%  {cards} GPU {cpus} CPU  {many}  {background}"


def combinations():
    """Every size with every scale, over bright and dark, with few and with all rows, on small and large machines."""
    machines = ((1, 1), (2, 1), (2, 2), (4, 1), (4, 2))
    count = 0
    for size in SIZES:
        for scale in SCALES:
            for rows in ("three", "all"):
                cards, cpus = machines[count % len(machines)]
                yield rows, cards, cpus, scale, size, ("dark", "bright")[count // 2 % 2]
                count += 1
    for cards, cpus in machines:
        yield "all", cards, cpus, 100, "1080p", "dark"
        yield "all", cards, cpus, 50, "1080p", "bright"


def sheet(stage, style, path):
    tiles = list(combinations())
    across = 4
    down = -(-len(tiles) // across)
    out = Image.new("RGB", (across * TILE[0], down * (TILE[1] + 18)), (24, 26, 30))
    pen = ImageDraw.Draw(out)
    for number, tile in enumerate(tiles):
        x, y = number % across * TILE[0], number // across * (TILE[1] + 18)
        picture = stage.draw(style, tile[0], tile[1], tile[2], tile[3], tile[4], tile[5])
        out.paste(picture.resize(TILE, Image.LANCZOS), (x, y + 18))
        pen.text((x + 6, y + 3), words(*tile), fill=(220, 224, 230))
    out.quantize(192, method=Image.MEDIANCUT).save(path, optimize=True)
    if path.stat().st_size > MOST_BYTES:
        sys.exit(f"{path.name}: {path.stat().st_size} bytes")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--companion", type=pathlib.Path, default=ROOT / "build/linux-release/bin/orvin-osd")
    parser.add_argument("--out", type=pathlib.Path, default=HERE)
    parser.add_argument("--single", help="ROWS,CARDS,CPUS,SCALE,SIZE,BACKGROUND, such as all,2,1,100,1080p,dark")
    parser.add_argument("styles", nargs="*", default=STYLES)
    options = parser.parse_args()
    with Stage(options.companion.resolve()) as stage:
        for style in options.styles:
            if options.single:
                rows, cards, cpus, scale, size, background = options.single.split(",")
                picture = stage.draw(style, rows, int(cards), int(cpus), int(scale), size, background)
                picture.save(options.out / f"{style}-{options.single.replace(',', '-')}.png")
            else:
                sheet(stage, style, options.out / f"style-{style.lower()}.png")


if __name__ == "__main__":
    main()
