#!/usr/bin/env python3
"""Prints the table of ratios from the JSON output of QorNetworkingBenchmarks.

With "--docs FOLDER" it also writes the table into
performance.md in that folder, between the two marks, and the same figures as a picture into performance.svg.
"""
import argparse
import json
import re
import sys
from dataclasses import dataclass
from pathlib import Path

MARKS = "<!-- table: begin -->\n", "<!-- table: end -->\n"


@dataclass
class Row:
    name: str
    library: str
    against: str
    ratio: float | None = None
    target: float | None = None
    at_least: bool = False

    def holds(self):
        return self.ratio >= self.target if self.at_least else self.ratio <= self.target

    def used(self):
        """How much of its allowance the figure uses: up to 1 it holds."""
        return self.target / self.ratio if self.at_least else self.ratio / self.target

    def cells(self):
        ratio = "" if self.ratio is None else f"{self.ratio:.3f}"
        if self.target is None:
            return [self.name, self.library, self.against, ratio, "", ""]
        target = f"{'≥' if self.at_least else '≤'} {self.target:.2f}"
        return [self.name, self.library, self.against, ratio, target, "yes" if self.holds() else "NO"]


class Medians:
    """The medians over the repetitions: of times in nanoseconds, and of ratios of contestants that took turns."""

    def __init__(self, report):
        self.runs = {}
        for run in report["benchmarks"]:
            if run.get("error_occurred"):
                sys.exit(f"report: {run['name']}: {run['error_message']}")
            if run.get("aggregate_name") == "median":
                self.runs[re.sub(r"/(iterations:\d+|min_time:[\d.]+|manual_time)", "", run["run_name"])] = run

    def ns(self, benchmark, contestant):
        return self.runs[benchmark][contestant] * 1e9

    def counter(self, benchmark, name):
        return self.runs[benchmark][name]

    def adapters(self):
        return [key.removeprefix("none/") for key in self.runs["Adapter"] if key.startswith("none/") and key != "none/none"]

    def times(self, title, benchmark, first, other, target=None):
        return Row(title, time_text(self.ns(benchmark, first)), time_text(self.ns(benchmark, other)),
                   self.counter(benchmark, f"{first}/{other}"), target)


def time_text(ns):
    for unit, size in (("ms", 1e6), ("µs", 1e3)):
        if ns >= size:
            return f"{ns / size:.3g} {unit}" if ns / size < 1000 else f"{ns / size:.0f} {unit}"
    return f"{ns:.3g} ns" if ns < 1000 else f"{ns:.0f} ns"


def size_text(size):
    return f"{size >> 10} KiB" if size < 1 << 20 else f"{size >> 20} MiB"


def url_rows(medians):
    yield medians.times("50 URLs, against `std::regex`", "UrlMix", "library", "regex", 0.10)
    yield medians.times("50 URLs, against libcurl's URL API", "UrlMix", "library", "curl", 1.0)
    for shape, title, target in (("path", "URL, path", 2.5), ("parameters", "URL, parameters", 2.5),
                                 ("ats", "URL, run of \"@\"", 2.5), ("semicolons", "URL, run of \";\"", 2.5),
                                 ("copy", "Copying the text of the path", None)):
        worst = max((1 << exponent for exponent in range(10, 20)),
                    key=lambda size: medians.counter(f"UrlGrowth/{shape}/{size}", "doubled/single"))
        name = f"{title}: steepest doubling, {size_text(worst)} to {size_text(2 * worst)}"
        yield medians.times(name, f"UrlGrowth/{shape}/{worst}", "doubled", "single", target)


def get_rows(medians):
    for peer, title, target in (("cpr", "libcpr", 1.05), ("curl", "libcurl", None)):
        for threads in (1, 2, 4, 8):
            name = f"GET of 100 bytes, {threads} thread{'s' * (threads > 1)}, against {title}"
            yield medians.times(name, f"Get/{threads}", "library", peer, target)


def body_rows(medians):
    for mode in ("collected", "streamed"):
        for size in (1, 64, 192):
            for title, unit, ratio, target, at_least in (("throughput", "MiB/s", "throughput", 0.95, True),
                                                         ("peak memory", "peak MiB", "peak", 1.05, False)):
                figures = (medians.counter(f"Body/{mode}/{size}", f"{side} {unit}") for side in ("library", "cpr"))
                yield Row(f"{size} MiB {mode}, {title}, against libcpr",
                          *(f"{figure:.0f} {unit.removeprefix('peak ')}" for figure in figures),
                          medians.counter(f"Body/{mode}/{size}", ratio), target, at_least)


def jar_rows(medians):
    for threads, how in ((1, "alone"), (8, "8 threads on one jar")):
        yield medians.times(f"Jar of 100,000 cookies, {how}, against 10 cookies", f"CookieJar/{threads}",
                            "100000", "10", 10)
        yield medians.times(f"Jar of 100,000 cookies, {how}, against 1,000 cookies", f"CookieJar/{threads}",
                            "100000", "1000")


def adapter_rows(medians):
    stub = medians.ns("Adapter", "none")
    adapters = medians.adapters()
    for adapter in adapters:
        taken = medians.ns("Adapter", adapter)
        count = len(adapters) - 1 if adapter == "all" else 1
        name = f"Chain of all {count} adapters" if adapter == "all" else f"{adapter} adapter"
        added = f"adds {time_text((taken - stub) / count)}" + " for each" * (adapter == "all")
        yield Row(f"{name}, against the stub alone", time_text(taken), f"{time_text(stub)}; {added}")


def start_rows(medians):
    yield medians.times("Start of a process to `main`, against libcpr linked", "Start", "library", "cpr")
    yield medians.times("Start of a process to `main`, against neither linked", "Start", "library", "plain")


def table(rows):
    head = ["measured", "library", "against", "ratio", "target", "holds"]
    lines = [head] + [row.cells() for row in rows]
    widths = [max(len(line[column]) for line in lines) for column in range(len(head))]
    lines.insert(1, ["-" * width for width in widths])
    padded = [" | ".join(cell.ljust(width) for cell, width in zip(line, widths)) for line in lines]
    return "".join(f"| {line} |\n" for line in padded)


def machine(context):
    load = context.get("load_avg") or [0]
    return (f"{context.get('cpu', 'unknown processor')}, {context['num_cpus']} cores, {context['compiler']}, "
            f"libcpr {context['libcpr']}, libcurl {context['libcurl']}, {context['date'][:10]}, "
            f"load at the start {load[0]:.1f}")


def escaped(text):
    return text.replace("`", "").replace("&", "&amp;").replace("<", "&lt;")


def picture(rows, title):
    """Bars: the share of its allowance that each figure uses, up to twice the allowance."""
    rows = [row for row in rows if row.target is not None]
    left, width, step, top = 440, 400, 20, 70
    limit = left + width / 2
    bottom = top + step * len(rows)
    svg = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {left + width + 20} {bottom + 10}" '
           'font-family="sans-serif" font-size="12">',
           '<rect width="100%" height="100%" fill="#fff"/>',
           '<text x="10" y="20" font-size="15">Share of its allowance that each figure uses: left of the line, '
           'the target holds</text>',
           f'<text x="10" y="40" fill="#555">{escaped(title)}</text>',
           f'<text x="{limit}" y="{top - 8}" text-anchor="middle" fill="#555">target</text>']
    for index, row in enumerate(rows):
        y = top + step * index
        length = min(row.used(), 2) * width / 2
        _, _, _, ratio, target, _ = row.cells()
        svg += [f'<text x="{left - 8}" y="{y + 13}" text-anchor="end">{escaped(row.name)}</text>',
                f'<rect x="{left}" y="{y + 3}" width="{length:.1f}" height="{step - 6}" '
                f'fill="{"#7fb3d5" if row.holds() else "#e08e79"}"/>',
                f'<text x="{left + 5}" y="{y + 14}" font-size="11">{ratio} ({target})</text>']
    svg += [f'<line x1="{limit}" x2="{limit}" y1="{top}" y2="{bottom}" stroke="#333"/>', '</svg>', '']
    return "\n".join(svg)


def update_documents(folder, text, drawing):
    page = folder / "performance.md"
    before, rest = page.read_text().split(MARKS[0])
    after = rest.split(MARKS[1])[1]
    page.write_text(before + MARKS[0] + text + MARKS[1] + after)
    (folder / "performance.svg").write_text(drawing)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--docs", type=Path, metavar="FOLDER")
    parser.add_argument("file", type=Path)
    arguments = parser.parse_args()
    report = json.loads(arguments.file.read_text())
    medians = Medians(report)
    rows = [row for part in (url_rows, get_rows, body_rows, jar_rows, adapter_rows, start_rows) for row in part(medians)]
    title = machine(report["context"])
    text = f"{title}\n\n{table(rows)}"
    print(text)
    if arguments.docs:
        update_documents(arguments.docs, text, picture(rows, title))


if __name__ == "__main__":
    main()
