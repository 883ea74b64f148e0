#!/usr/bin/env python3
"""Prints the table of figures from the JSON output of QorNetworkingBenchmarks.

With "--docs FOLDER" it also writes the table into performance.md in that folder,
between the two marks, and draws the ratios into performance.svg.
"""
import argparse
import json
import math
from pathlib import Path
from xml.sax.saxutils import escape

MARKS = "<!-- table: begin -->\n", "<!-- table: end -->\n"

# Title, benchmark, the two contestants, and the target: the largest ratio that is wanted, if any.
ROWS = (
    ("30 URLs parsed, against `std::regex`", "Url", "library", "regex", 0.10),
    ("30 URLs parsed, against libcurl", "Url", "library", "curl", 1.0),
    ("GET of 100 bytes, 1 thread, against libcpr", "Get/1", "library", "cpr", 1.05),
    ("GET of 100 bytes, 1 thread, against libcurl", "Get/1", "library", "curl", None),
    ("GET of 100 bytes, 8 threads, against libcpr", "Get/8", "library", "cpr", 1.05),
    ("GET of 100 bytes, 8 threads, against libcurl", "Get/8", "library", "curl", None),
    ("50 MiB collected, time, against libcpr", "Body/collected", "library", "cpr", 1.05),
    ("50 MiB collected, peak memory, against libcpr", "Memory/collected", "library", "cpr", 1.05),
    ("50 MiB streamed, time, against libcpr", "Body/streamed", "library", "cpr", 1.05),
    ("50 MiB streamed, peak memory, against libcpr", "Memory/streamed", "library", "cpr", 1.05),
    ("Lookup among 100,000 cookies, against 10", "CookieJar", "100000", "10", 10.0),
    ("Start and end of a program, against libcpr", "Start", "library", "cpr", None),
)


class Row:
    def __init__(self, medians, title, benchmark, first, other, target):
        run = medians[benchmark]
        self.title = title
        self.ratio = run[f"{first}/{other}"]
        self.target = target
        self.holds = target is None or self.ratio <= target
        limit = "" if target is None else f"≤ {target:.2f}{'' if self.holds else ', missed'}"
        figures = (text_of(run[name], benchmark.startswith("Memory")) for name in (first, other))
        self.cells = [title, *figures, f"{self.ratio:.3f}", limit]


def text_of(figure, is_memory):
    units = (("MiB", 2**20),) if is_memory else (("ms", 1e-3), ("µs", 1e-6), ("ns", 1e-9))
    unit, size = next((entry for entry in units if figure >= entry[1]), units[-1])
    return f"{float(f'{figure / size:.3g}'):g} {unit}"


def table(rows):
    lines = [["measured", "library", "peer", "ratio", "target"]] + [row.cells for row in rows]
    widths = [max(map(len, column)) for column in zip(*lines)]
    lines.insert(1, ["-" * width for width in widths])
    return "".join(f"| {' | '.join(cell.ljust(width) for cell, width in zip(line, widths))} |\n" for line in lines)


def machine(context):
    load = context.get("load_avg") or [0]
    return (f"{context['cpu']}, {context['num_cpus']} cores, {context['compiler']}, libcpr {context['libcpr']}, "
            f"libcurl {context['libcurl']}, {context['date'][:10]}, load at the start {load[0]:.1f}")


def picture(rows, subtitle):
    """Draws each ratio as a bar from 1 to the left or to the right, on a logarithmic scale."""
    step, top, decade = 22, 80, 120
    one = 330 + 2 * decade
    bottom = top + step * len(rows)

    def place(ratio):
        return one + decade * max(-2.0, min(1.0, math.log10(ratio)))

    svg = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {one + decade + 70} {bottom + 10}" '
           'font-family="sans-serif" font-size="12">',
           '<rect width="100%" height="100%" fill="#fff"/>',
           '<text x="10" y="20" font-size="14">Time and memory of the library, divided by those of its peer. '
           'Dark line: target. Orange: missed.</text>',
           f'<text x="10" y="40" fill="#555">{escape(subtitle)}</text>']
    for ratio, label in ((0.01, "1/100"), (0.1, "1/10"), (1, "equal"), (10, "10 times")):
        svg += [f'<text x="{place(ratio):.1f}" y="{top - 8}" text-anchor="middle" fill="#555">{label}</text>',
                f'<path d="M{place(ratio):.1f} {top}V{bottom}" stroke="#ccc"/>']
    for index, row in enumerate(rows):
        y = top + step * index
        left, right = sorted((one, place(row.ratio)))
        svg += [f'<text x="10" y="{y + 15}">{escape(row.title.replace("`", ""))}</text>',
                f'<rect x="{left:.1f}" y="{y + 4}" width="{right - left:.1f}" height="{step - 8}" '
                f'fill="{"#7fb3d5" if row.holds else "#e08e79"}"/>',
                f'<text x="{one + decade + 20}" y="{y + 15}">{row.ratio:.3f}</text>']
        if row.target is not None:
            svg.append(f'<path d="M{place(row.target):.1f} {y + 2}v{step - 4}" stroke="#333" stroke-width="2"/>')
    return "\n".join(svg + ["</svg>", ""])


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--docs", type=Path, metavar="FOLDER")
    parser.add_argument("file", type=Path)
    arguments = parser.parse_args()
    report = json.loads(arguments.file.read_text())
    medians = {run["run_name"].removesuffix("/manual_time"): run
               for run in report["benchmarks"] if run.get("aggregate_name") == "median"}
    rows = [Row(medians, *row) for row in ROWS]
    title = machine(report["context"])
    text = f"{title}\n\n{table(rows)}"
    print(text)
    if arguments.docs:
        page = arguments.docs / "performance.md"
        before, rest = page.read_text().split(MARKS[0])
        page.write_text(before + MARKS[0] + text + MARKS[1] + rest.split(MARKS[1])[1])
        (arguments.docs / "performance.svg").write_text(picture(rows, title))


if __name__ == "__main__":
    main()
