"""A line chart as SVG: the cost a unit of work over a load that grows, a line a contestant."""
import math

WIDTH, HEIGHT = 760, 420
LEFT, RIGHT, TOP, BOTTOM = 78, 190, 56, 52
# Distinguishable without colour vision, too; ours is always the first.
COLOURS = ["#1f6fb4", "#d9730d", "#5b8c3a", "#8e4585"]
INK, FAINT = "#24292f", "#d0d7de"


def readable(ns):
    """A time in nanoseconds with two to three digits and its unit."""
    for limit, factor, unit in ((1e3, 1, "ns"), (1e6, 1e3, "µs"), (1e9, 1e6, "ms")):
        if ns < limit * 0.9995:
            return f"{ns / factor:.3g} {unit}"
    return f"{ns / 1e9:.3g} s"


def escape(text):
    return text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")


def text(x, y, words, anchor="start", size=12, colour=INK, weight="normal"):
    return (f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" font-size="{size}" '
            f'font-weight="{weight}" fill="{colour}">{escape(words)}</text>')


def ticks(low, high):
    """1, 2 and 5 times the powers of ten in a range; only the powers in a wide one."""
    steps = (1, 2, 5) if math.log10(high / low) < 3 else (1,)
    found = [step * 10.0**power for power in range(math.floor(math.log10(low)),
                                                  math.ceil(math.log10(high)) + 1)
             for step in steps]
    return [tick for tick in found if low <= tick <= high]


def apart(places, gap):
    """The same places from top to bottom, moved so that no two are closer than the gap."""
    order = sorted(range(len(places)), key=lambda i: places[i])
    moved = list(places)
    for before, after in zip(order, order[1:]):
        moved[after] = max(moved[after], moved[before] + gap)
    return moved


def line_chart(title, x_name, unit, loads, series):
    """series: [(name, [(median, low, high) a load, or None])]. Both axes are logarithmic."""
    points = [point for _, line in series for point in line if point]
    low = min(point[1] for point in points) / 1.3
    high = max(point[2] for point in points) * 1.3
    if high / low < 10:
        middle = math.sqrt(high * low)
        low, high = middle / math.sqrt(10), middle * math.sqrt(10)

    def place_x(load):
        if len(loads) == 1:
            return (LEFT + WIDTH - RIGHT) / 2
        share = math.log(load / loads[0]) / math.log(loads[-1] / loads[0])
        return LEFT + 12 + share * (WIDTH - LEFT - RIGHT - 24)

    def place_y(ns):
        return HEIGHT - BOTTOM - math.log(ns / low) / math.log(high / low) * (HEIGHT - TOP - BOTTOM)

    out = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" '
           f'width="{WIDTH}" height="{HEIGHT}" font-family="sans-serif" role="img">',
           f'<title>{escape(title)}</title>',
           f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>',
           text(16, 24, title, size=15, weight="bold"),
           text(16, 42, f"time a {unit}, median of the windows and their range; "
                "both axes logarithmic, lower is better", size=11, colour="#57606a")]
    for tick in ticks(low, high):
        y = place_y(tick)
        out.append(f'<path d="M{LEFT} {y:.1f}H{WIDTH - RIGHT}" stroke="{FAINT}"/>')
        out.append(text(LEFT - 8, y + 4, readable(tick), "end"))
    for load in loads:
        out.append(text(place_x(load), HEIGHT - BOTTOM + 20, f"{load:,}".replace(",", " "), "middle"))
    out.append(text((LEFT + WIDTH - RIGHT) / 2, HEIGHT - 12, x_name, "middle"))
    ends = []
    for number, (_, line) in enumerate(series):
        colour = COLOURS[number % len(COLOURS)]
        placed = [(place_x(load), point) for load, point in zip(loads, line) if point]
        for x, (_, least, most) in placed:
            out.append(f'<path d="M{x:.1f} {place_y(least):.1f}V{place_y(most):.1f}" '
                       f'stroke="{colour}" stroke-width="6" stroke-opacity="0.25"/>')
        path = "L".join(f"{x:.1f} {place_y(point[0]):.1f}" for x, point in placed)
        out.append(f'<path d="M{path}" fill="none" stroke="{colour}" '
                   f'stroke-width="{2.5 if number == 0 else 1.5}"/>')
        for x, point in placed:
            out.append(f'<circle cx="{x:.1f}" cy="{place_y(point[0]):.1f}" r="3.5" fill="{colour}"/>')
        ends.append((placed[-1][0], place_y(placed[-1][1][0])))
    for number, y in enumerate(apart([end[1] for end in ends], 15)):
        out.append(text(ends[number][0] + 10, y + 4, series[number][0],
                        colour=COLOURS[number % len(COLOURS)],
                        weight="bold" if number == 0 else "normal"))
    return "\n".join(out + ["</svg>"]) + "\n"
