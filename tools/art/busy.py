#!/usr/bin/env python3
"""Prints the busy wallpaper as SVG: overlapping discs, leaves and stripes in saturated colours, large and small, so that
headers and labels have bright, dark and finely structured ground under them. The same drawing on every run."""
import math
import random

PALETTE = ["#ff5d5d", "#ff9f43", "#ffd23f", "#7bd389", "#1fb5a8", "#2e86de", "#5f5dd6", "#b065d9", "#f368a6",
           "#0b2545", "#fdf6e3", "#f7ede2"]


def disc(rng, x, y, radius):
    colour = rng.choice(PALETTE)
    rings = [f'<circle cx="{x:.0f}" cy="{y:.0f}" r="{radius:.0f}" fill="{colour}"/>']
    if rng.random() < 0.5:
        for step in range(1, 4):
            rings.append(f'<circle cx="{x:.0f}" cy="{y:.0f}" r="{radius * (1 - step * 0.24):.0f}" '
                         f'fill="{rng.choice(PALETTE)}"/>')
    return "".join(rings)


def leaf(rng, x, y, length):
    width, turn = length * rng.uniform(0.25, 0.4), rng.uniform(0, 360)
    return (f'<g transform="translate({x:.0f} {y:.0f}) rotate({turn:.0f})">'
            f'<path d="M0 0 Q {length / 2:.0f} {-width:.0f} {length:.0f} 0 Q {length / 2:.0f} {width:.0f} 0 0 Z" '
            f'fill="{rng.choice(PALETTE)}"/>'
            f'<path d="M0 0 H {length * 0.92:.0f}" stroke="{rng.choice(PALETTE)}" stroke-width="3"/></g>')


def stripes(rng, x, y, size):
    turn, colour = rng.uniform(0, 180), rng.choice(PALETTE)
    bars = "".join(f'<rect x="{-size / 2:.0f}" y="{-size / 2 + i * 14:.0f}" width="{size:.0f}" height="7" rx="3.5" '
                   f'fill="{colour}"/>' for i in range(int(size / 14)))
    return f'<g transform="translate({x:.0f} {y:.0f}) rotate({turn:.0f})">{bars}</g>'


def main():
    rng = random.Random(20)
    parts = ['<svg xmlns="http://www.w3.org/2000/svg" width="2120" height="1400" viewBox="-100 -100 2120 1400">',
             '<defs><linearGradient id="ground" x1="0" y1="0" x2="1" y2="1"><stop offset="0" stop-color="#16324f"/>'
             '<stop offset="0.5" stop-color="#e8a87c"/><stop offset="1" stop-color="#85324c"/></linearGradient></defs>',
             '<rect x="-100" y="-100" width="2120" height="1400" fill="url(#ground)"/>']
    shapes = [disc, leaf, stripes, leaf, disc]
    for size, count in ((330, 26), (190, 60), (90, 130)):
        for index in range(count):
            angle = index * math.pi * (3 - math.sqrt(5))
            reach = math.sqrt((index + 0.5) / count)
            x = 960 + math.cos(angle) * reach * 1180 + rng.uniform(-60, 60)
            y = 600 + math.sin(angle) * reach * 760 + rng.uniform(-60, 60)
            parts.append(shapes[rng.randrange(len(shapes))](rng, x, y, size * rng.uniform(0.35, 0.6)))
    parts.append("</svg>")
    print("\n".join(parts))


if __name__ == "__main__":
    main()
