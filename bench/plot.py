"""Draws curves over logarithmic axes, as an SVG file."""

import math
from html import escape

WIDTH, HEIGHT = 440, 320
LEFT, RIGHT, TOP, BOTTOM = 64, 28, 44, 48
LEGEND_STEP = 80
COLOURS = ("#005f8a", "#c2571a", "#4a7d2c")


class Panel:
    """One diagram. Its axes reach to the powers of ten around what is drawn."""

    def __init__(self, title, x_label, y_label, curves):
        """`curves`: name, x values and y values of each, all above zero."""
        self._title, self._x_label, self._y_label, self._curves = title, x_label, y_label, curves
        self._x_range = _decades(x for _, xs, _ in curves for x in xs)
        self._y_range = _decades(y for _, _, ys in curves for y in ys)

    def svg(self, offset):
        parts = [f'<g transform="translate({offset} 0)">',
                 _text(WIDTH / 2, 20, self._title, "middle", "bold"),
                 _text((LEFT + WIDTH - RIGHT) / 2, HEIGHT - 10, self._x_label, "middle"),
                 _text(LEFT, TOP - 6, self._y_label, "start")]
        parts += [*self._grid()]
        for number, (name, xs, ys) in enumerate(self._curves):
            colour = COLOURS[number % len(COLOURS)]
            points = " ".join(f"{self._x(x):.1f},{self._y(y):.1f}" for x, y in zip(xs, ys))
            parts.append(f'<polyline points="{points}" fill="none" stroke="{colour}" stroke-width="2"/>')
            legend = WIDTH - RIGHT - LEGEND_STEP * (len(self._curves) - 1 - number)
            parts.append(_text(legend, TOP - 6, name, "end", "bold", colour))
        return "\n".join([*parts, "</g>"])

    def _grid(self):
        for power in range(self._x_range[0], self._x_range[1] + 1):
            x = self._x(10 ** power)
            yield _line(x, TOP, x, HEIGHT - BOTTOM)
            yield _text(x, HEIGHT - BOTTOM + 16, _number(power), "middle")
        for power in range(self._y_range[0], self._y_range[1] + 1):
            y = self._y(10 ** power)
            yield _line(LEFT, y, WIDTH - RIGHT, y)
            yield _text(LEFT - 6, y + 4, _number(power), "end")

    def _x(self, value):
        return LEFT + _share(value, self._x_range) * (WIDTH - LEFT - RIGHT)

    def _y(self, value):
        return HEIGHT - BOTTOM - _share(value, self._y_range) * (HEIGHT - TOP - BOTTOM)


def write(file, panels):
    """The panels side by side."""
    width = WIDTH * len(panels)
    file.write_text("\n".join([
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {HEIGHT}" width="{width}" height="{HEIGHT}"',
        '     font-family="sans-serif" font-size="12">',
        f'<rect width="{width}" height="{HEIGHT}" fill="white"/>',
        *(panel.svg(number * WIDTH) for number, panel in enumerate(panels)),
        "</svg>", ""]))


def _decades(values):
    values = list(values)
    lowest, highest = math.floor(math.log10(min(values))), math.ceil(math.log10(max(values)))
    return lowest, max(highest, lowest + 1)


def _share(value, decades):
    return (math.log10(value) - decades[0]) / (decades[1] - decades[0])


def _number(power):
    return f"{10 ** power:,}" if power >= 0 else f"{10 ** power:.{-power}f}"


def _line(x1, y1, x2, y2):
    return f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" stroke="#ddd"/>'


def _text(x, y, text, anchor, weight="normal", colour="#333"):
    return (f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" font-weight="{weight}" fill="{colour}">'
            f'{escape(text)}</text>')
