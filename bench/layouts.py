"""Profiles that are made for the measurements, beside those of tests/profiles."""
import importlib.util
import pathlib

ROW = """<?xml version="1.0" encoding="UTF-8"?>
<OSD LayoutStyle="2"><CustomLayout><Settings><Camera TextShadow="1"/><Info>
{}
</Info></Settings></CustomLayout></OSD>
"""
PANEL = ('<Panel IsShow="1" Name="{name}" FrameSizeW="{w}" FrameSizeH="{h}" FrameAnchor="1" FrameAnchorX="{x}" '
         'FrameAnchorY="{y}" ContentSizeW="{w}" ContentSizeH="{h}" PanelColorR="40" PanelColorG="60" '
         'PanelColorB="160" PanelColorA="144" PanelType="{kind}" PanelScattering="{blur}"/>')
GRAPH = ('<LineGraph IsShow="1" Name="{name}" FrameAnchor="1" FrameAnchorX="{x}" FrameAnchorY="{y}" FrameSizeW="{w}" '
         'FrameSizeH="{h}" ContentSizeW="{w}" ContentSizeH="{h}" LineType="1" LineColorR="92" LineColorG="188" '
         'LineColorB="255" LineColorA="90" DataNum="114" DataStartIdx="114" MinValue="0" MaxValue="150" '
         'DataFullName="FPS" ZIndex="0"/>')
TEXT = ('<TextBox IsShow="1" Name="{name}" FrameAnchor="1" FrameAnchorX="{x}" FrameAnchorY="{y}" ContentAnchor="1" '
        'FontName="{face}" TextSize="{size}" TextColorR="168" TextColorG="180" TextColorB="196" '
        'ShadowColorA="160" Text="{text}"/>')
NUMBER = ('<NumBox IsShow="1" Name="{name}" FrameAnchor="1" FrameAnchorX="{x}" FrameAnchorY="{y}" ContentAnchor="1" '
          'FontName="{face}" TextSize="{size}" TextColorR="238" TextColorG="242" TextColorB="247" '
          'ShadowColorA="160" DataFullName="{value}"/>')
FACES = ("DejaVu Sans", "DejaVu Serif", "DejaVu Sans Mono")
VALUES = ("FPS", "GPU_CLK#0", "FRAME_TIME", "GPU_TEMP#0")

# The built-in styles with every row, which need a machine that has them.
BUILT_IN = {"ClassicAll": "Classic", "RV5All": "RV5"}
# What a person calls a small and a full display: one panel, 8 or 37 boxes, and a graph.
WITH_GRAPH = {"A": "Boxes8", "B": "Boxes37"}
DIAMETERS = (10, 30, 60, 100)
GLASS = ["Flat"] + [f"Glass{d}" for d in DIAMETERS]
IMAGE = ('<Image IsShow="1" Name="i" FrameAnchor="1" FrameSizeW="{w}" FrameSizeH="{h}" ContentSizeW="{w}" '
         'ContentSizeH="{h}" ContentAnchor="1" ImageFileName="{file}"/>')
PICTURES = ["Picture4K", "Gif100"]
MANY = 4096  # most items that a layout takes


def glass(blur):
    """One pane of 300 by 200 pixels in a window of 720 rows; without a diameter a flat one."""
    return ROW.format(PANEL.format(name="p01", w=450, h=300, x=400, y=300, kind=2 if blur else 1, blur=blur or 0))


def many():
    """As many items as a layout takes: texts, numbers, panels and graphs of several sizes and faces side by side. Each
    has a frame, so a little more than a thousand of them find room in the arrays of controls and are drawn."""
    rows = []
    for i in range(MANY):
        place = {"x": 4 + i % 36 * 52, "y": 4 + i // 36 % 36 * 29}
        face = FACES[i % len(FACES)]
        if i % 9 == 0:
            rows.append(PANEL.format(name=f"f{i}", w=50, h=24, kind=1, blur=0, **place))
        elif i % 100 == 1:
            rows.append(GRAPH.format(name=f"graph{i}", w=50, h=24, **place))
        elif i % 2 == 1:
            rows.append(NUMBER.format(name=f"n{i}", size=12 + i % 5, value=VALUES[i // 2 % 4], face=face, **place))
        else:
            rows.append(TEXT.format(name=f"t{i}", text=f"a{i}", size=12 + i % 5, face=face, **place))
    return ROW.format("\n".join(rows))


def write_pictures(profiles):
    """A photograph-like PNG of 3840 by 2160, and an animation of 100 frames of 256 by 256, each as the only item."""
    from PIL import Image  # only here: most measurements need none
    noise = Image.effect_noise((3840, 2160), 24)
    photo = Image.merge("RGB", [Image.linear_gradient("L").rotate(90 * i).resize(noise.size) for i in range(3)])
    photo = Image.blend(photo, Image.merge("RGB", [noise] * 3), 0.25)
    frames = [photo.crop((20 * i, 10 * i, 20 * i + 256, 10 * i + 256)).convert("P") for i in range(100)]
    for name, file, w, h in ((PICTURES[0], "photo.png", 960, 540), (PICTURES[1], "frames.gif", 256, 256)):
        (profiles / name).mkdir(exist_ok=True)
        (profiles / name / "OSD.xml").write_text(ROW.format(IMAGE.format(w=w, h=h, file=file)))
    photo.save(profiles / PICTURES[0] / "photo.png", compress_level=1)
    frames[0].save(profiles / PICTURES[1] / "frames.gif", save_all=True, append_images=frames[1:], duration=40)


def sheets():
    """What makes the pictures of the built-in styles."""
    root = pathlib.Path(__file__).resolve().parent.parent
    spec = importlib.util.spec_from_file_location("styles", root / "docs/pictures/styles.py")
    module = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    return module


def write_built_in(profiles):
    """The built-in styles with all rows of one card and one CPU."""
    for name, style in BUILT_IN.items():
        (profiles / name).mkdir()
        (profiles / name / "OSD.xml").write_text(sheets().profile(style, "all", 1, 1, 100))


def write(profiles):
    """Into the folder of the profiles, where those of tests/profiles stand already."""
    texts = {f"Glass{d}": glass(d) for d in DIAMETERS} | {"Flat": glass(None), "Items4096": many()}
    graph = GRAPH.format(name="graph@p01", x=12, y=78, w=240, h=60)
    for name, source in WITH_GRAPH.items():
        texts[name] = (profiles / source / "OSD.xml").read_text().replace("</Info>", graph + "\n</Info>")
    for name, text in texts.items():
        (profiles / name).mkdir()
        (profiles / name / "OSD.xml").write_text(text)
    write_built_in(profiles)
