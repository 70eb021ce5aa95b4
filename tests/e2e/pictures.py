"""Judging pictures: where two differ, and what a region looks like."""
from PIL import ImageChops, ImageStat


def difference_box(a, b):
    """Smallest box (left, top, right, bottom) that holds every differing pixel; None when equal."""
    return ImageChops.difference(a, b).getbbox()


def differing_outside(a, b, boxes):
    """Number of pixels that differ and lie in none of the boxes."""
    mask = ImageChops.difference(a, b).convert("L").point(lambda v: 255 if v else 0)
    for left, top, right, bottom in boxes:
        mask.paste(0, (left, top, right, bottom))
    return mask.histogram()[255]


def differing_inside(a, b, box):
    """Share of pixels in the box that differ, 0 to 1."""
    mask = ImageChops.difference(a.crop(box), b.crop(box)).convert("L").point(lambda v: 255 if v else 0)
    return mask.histogram()[255] / max(1, mask.width * mask.height)


def lit(picture):
    """Whether anything but black is seen: on an empty screen the first program has drawn."""
    return picture.getbbox() is not None


def colourful(picture):
    """Whether any pixel is far from grey: a window's own frame is not, a program's picture is."""
    red, green, blue = picture.split()
    spread = ImageChops.subtract(ImageChops.lighter(ImageChops.lighter(red, green), blue),
                                 ImageChops.darker(ImageChops.darker(red, green), blue))
    return spread.getextrema()[1] > 100


def roughness(picture, box):
    """Mean absolute step between neighbouring pixels of a row: high for detail, low for a blurred pane."""
    part = picture.crop(box)
    shifted = ImageChops.offset(part, 1, 0)
    inner = (1, 0, part.width, part.height)
    return sum(ImageStat.Stat(ImageChops.difference(part, shifted).crop(inner)).mean)


def ink_box(picture, box, level=120):
    """Box of the pixels inside a region whose brightest channel exceeds level, in the picture's coordinates, or None."""
    red, green, blue = picture.crop(box).split()
    brightest = ImageChops.lighter(ImageChops.lighter(red, green), blue)
    found = brightest.point(lambda v: 255 if v > level else 0).getbbox()
    return found and (found[0] + box[0], found[1] + box[1], found[2] + box[0], found[3] + box[1])


def shows_shapes(picture):
    """Whether the profile Shapes stands on a window of 640x480: the edge of its first panel."""
    return holds_color(picture, (8, 8, 16, 44), (64, 176, 255))


def holds_color(picture, box, color):
    """Whether a pixel of the region has exactly this colour."""
    return color in picture.crop(box).getdata()
