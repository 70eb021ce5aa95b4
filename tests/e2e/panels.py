"""Where the panels of a profile stand in a window, worked out independently of the library.

The rows are read from the profile's file; a canvas is 1080 units high whatever the window's size, and a panel hangs by
its anchor code, which counts as on a telephone keypad.
"""
import math
import xml.etree.ElementTree

from e2e.environment import ROOT

CANVAS_HEIGHT = 1080
OUTSET = 1  # what filtering at an edge may touch
FLAT, FROSTED = "1", "2"


def folder_of(profile):
    folders = (ROOT / "tests/profiles", ROOT / "data/Profiles")
    return next(folder / profile for folder in folders if (folder / profile).is_dir())


def is_custom(profile):
    """Whether a profile lays its items out itself."""
    return xml.etree.ElementTree.parse(folder_of(profile) / "OSD.xml").find("CustomLayout/Settings/Info") is not None


def rows(profile):
    """Attributes of each panel of a profile that hangs in no other item."""
    path = folder_of(profile) / "OSD.xml"
    panels = xml.etree.ElementTree.parse(path).iterfind("CustomLayout/Settings/Info/Panel")
    return [panel.attrib for panel in panels if "@" not in panel.get("Name")]


def place(row, canvas_width):
    """Canvas rectangle (left, top, right, bottom)."""
    code, x, y, w, h = (int(row.get(key, 0)) for key in ("FrameAnchor", "FrameAnchorX", "FrameAnchorY", "FrameSizeW",
                                                         "FrameSizeH"))
    column, line = (code - 1) % 3, (code - 1) // 3
    left = (x, (canvas_width - w) / 2 + x, canvas_width - w - x)[column]
    middle = (CANVAS_HEIGHT - h) / 2 + (-y if code == 5 else y)
    top = (y, middle, CANVAS_HEIGHT - h - y)[line]
    return left, top, left + w, top + h


def inside(owner, row):
    """Canvas rectangle of an item that hangs in another's rectangle."""
    code, x, y, w, h = (int(row.get(key, 1 if key == "FrameAnchor" else 0)) for key in
                        ("FrameAnchor", "FrameAnchorX", "FrameAnchorY", "FrameSizeW", "FrameSizeH"))
    column, line = (code - 1) % 3, (code - 1) // 3
    left, top, right, bottom = owner
    left = (left + x, (left + right - w) / 2 + x, right - w - x)[column]
    middle = (top + bottom - h) / 2 + (-y if code == 5 else y)
    top = (top + y, middle, bottom - h - y)[line]
    return left, top, left + w, top + h


def value_places(profile, width, height):
    """Pixel boxes of what shows a value in an owner's frame: (name of the value, kind, attributes, box). A number's box
    is where its last digit stands, a graph's where its oldest samples are once it is full."""
    canvas_width = int(CANVAS_HEIGHT * (width / height))
    owners = {row["Name"]: place(row, canvas_width) for row in rows(profile)}
    path = folder_of(profile) / "OSD.xml"
    for item in xml.etree.ElementTree.parse(path).find("CustomLayout/Settings/Info"):
        owner, name = owners.get(item.get("Name").rpartition("@")[2]), item.get("DataFullName")
        if not owner or not name or name in ("SYSTEM_TIME", "RESOLUTION"):
            continue
        left, top, right, bottom = inside(owner, item.attrib)
        if item.tag == "NumBox":
            size, code = float(item.get("TextSize")), int(item.get("ContentAnchor", 1))
            left -= (0, 0.3, 0.6)[(code - 1) % 3] * size
            top -= (0, 0.5, 1)[(code - 1) // 3] * size
            right, bottom = left + 0.6 * size, top + size
        elif item.tag == "LineGraph":
            right = left + (right - left) / 10
        else:
            continue
        yield name, item.tag, item.attrib, tuple(round(v * height / CANVAS_HEIGHT) for v in (left, top, right, bottom))


def named_boxes(profile, width, height, kinds=(FLAT, FROSTED), outset=OUTSET):
    """Pixel boxes, by name, of a window of the given size that the profile's panels may touch."""
    canvas_width = int(CANVAS_HEIGHT * (width / height))
    fx, fy = width / canvas_width, height / CANVAS_HEIGHT
    placed = {row["Name"]: place(row, canvas_width) for row in rows(profile) if row.get("PanelType", FLAT) in kinds}
    return {name: (max(0, math.floor((l - outset) * fx)), max(0, math.floor((t - outset) * fy)),
                   min(width, math.ceil((r + outset) * fx)), min(height, math.ceil((b + outset) * fy)))
            for name, (l, t, r, b) in placed.items()}


def boxes(profile, width, height):
    return list(named_boxes(profile, width, height).values())


def frosted_boxes(profile, width, height):
    """Pixel boxes that lie wholly inside frosted panels."""
    return [(l + 3, t + 3, r - 3, b - 3) for l, t, r, b in named_boxes(profile, width, height, (FROSTED,), 0).values()]
