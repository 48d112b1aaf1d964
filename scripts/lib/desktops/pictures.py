"""What differs between two pictures of a screen."""

import numpy
from PIL import Image

NOTICEABLE = 12  # of 255, in any colour


def load(path):
    with Image.open(path) as image:
        return numpy.asarray(image.convert("RGB"), dtype=numpy.int16)


def differing(before, after):
    """For each pixel, whether it differs noticeably."""
    return numpy.abs(before - after).max(axis=2) > NOTICEABLE


def area_of(mask, least_width, least_height):
    """Left, top, width and height of the largest part of a mask, none if nothing is so large. Rows
    and columns count when at least half of the wanted size differs in them.
    """
    columns = numpy.flatnonzero(mask.sum(axis=0) >= least_height / 2)
    rows = numpy.flatnonzero(mask.sum(axis=1) >= least_width / 2)
    if len(columns) < least_width or len(rows) < least_height:
        return None
    return (int(columns[0]), int(rows[0]), int(columns[-1] - columns[0]) + 1,
            int(rows[-1] - rows[0]) + 1)


def spots(mask, least, most):
    """The areas of connected parts of a mask whose sides are within the limits. Parts at most three
    pixels apart count as connected.
    """
    gap = 3
    found = []
    left = {(int(x), int(y)) for y, x in numpy.argwhere(mask)}
    while left:
        pending = [left.pop()]
        xs, ys = [], []
        while pending:
            x, y = pending.pop()
            xs.append(x)
            ys.append(y)
            near = {(x + dx, y + dy) for dx in range(-gap, gap + 1) for dy in range(-gap, gap + 1)}
            near &= left
            left -= near
            pending += near
        area = (min(xs), min(ys), max(xs) - min(xs) + 1, max(ys) - min(ys) + 1)
        if all(least <= side <= most for side in area[2:]):
            found.append(area)
    return found


def cut(picture, area):
    left, top, width, height = area
    return picture[top:top + height, left:left + width]


def luminance(colour):
    """The relative luminance of the guidelines for accessible web content, 0 to 1."""
    parts = numpy.asarray(colour, dtype=float) / 255
    linear = numpy.where(parts <= 0.04045, parts / 12.92, ((parts + 0.055) / 1.055) ** 2.4)
    return linear @ numpy.array([0.2126, 0.7152, 0.0722])


def contrast(one, other):
    """The contrast ratio of two luminances, 1 to 21."""
    light, dark = max(one, other), min(one, other)
    return (light + 0.05) / (dark + 0.05)


def median_colour(picture):
    return tuple(int(part) for part in numpy.median(picture.reshape(-1, 3), axis=0))
