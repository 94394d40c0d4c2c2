"""What a picture of the screen holds, point by point, and how well colours stand out from one another."""

from collections import Counter


class Pixels:
    """A rectangle of the screen; `colours` are three bytes a point, row by row."""

    def __init__(self, width, height, colours):
        assert len(colours) == 3 * width * height
        self.width = width
        self.height = height
        self._colours = colours

    def __eq__(self, other):
        return (self.width, self._colours) == (other.width, other._colours)

    def at(self, x, y):
        start = 3 * (y * self.width + x)
        return tuple(self._colours[start:start + 3])

    def part(self, left, top, right, bottom):
        rows = (self._colours[3 * (y * self.width + left):3 * (y * self.width + right)] for y in range(top, bottom))
        return Pixels(right - left, bottom - top, b"".join(rows))

    def counts(self):
        """How many points have which colour."""
        return Counter(zip(self._colours[::3], self._colours[1::3], self._colours[2::3], strict=True))

    def ground(self):
        """The colour of most points."""
        return self.counts().most_common(1)[0][0]

    def contrast(self):
        """Of the ground and the colour that stands out most from it."""
        ground = self.ground()
        return max(contrast(ground, colour) for colour in self.counts())


def contrast(one, other):
    """The ratio that the Web Content Accessibility Guidelines define: from 1, the same, to 21, black and white."""
    darker, lighter = sorted((_luminance(one), _luminance(other)))
    return (lighter + 0.05) / (darker + 0.05)


def _luminance(colour):
    linear = [value / 255 / 12.92 if value <= 10 else ((value / 255 + 0.055) / 1.055) ** 2.4 for value in colour]
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]
