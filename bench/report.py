"""The table of what was measured, for the terminal and for docs/performance.md."""
import datetime
import os
import pathlib
import platform
import re
import subprocess

import runner

NAMES = {"project": "Project", "against": "Other build", "plain": "Plain", "tirpc": "libtirpc", "grpc": "gRPC"}
MARKS = "<!-- measured: from here on scripts/bench writes -->", "<!-- measured: until here -->"


def number(value):
    """With three digits that count, and no more than it has."""
    if value == 0:
        return "0"
    if abs(value) >= 100:
        return f"{value:,.0f}"
    return f"{value:.1f}" if abs(value) >= 10 else f"{value:.2f}"


def value_text(rounds, measure):
    """Median and quartiles of one contestant."""
    values = [each[measure.name] for each in rounds if measure.name in each]
    if not values:
        return ""
    if measure.of:
        return f"{sum(values):,.0f} of {sum(each[measure.of] for each in rounds):,.0f}"
    middle, low, high = runner.spread(values)
    few = len(values) < 2 or low == high
    return number(middle) if few else f"{number(middle)} ({number(low)}–{number(high)})"


def lines(results):
    """Per case and measure: row number, where and what, and by contestant the value and its ratio."""
    for row, cases in results:
        for case, rounds in cases:
            for measure in row.measures:
                unit = f", {measure.unit}" if measure.unit else ""
                where = case.text and f"{case.text}: "
                cells = {}
                for name, each in rounds.items():
                    ratio = None if measure.of or name == "project" else runner.ratio(rounds, name, measure)
                    cells[name] = value_text(each, measure), "" if ratio is None else f"{ratio:.2f}"
                bare = cells.pop("bare", ("", ""))
                yield row, f"{where}{measure.text}{unit} {'↑' if measure.more else '↓'}", cells
                if bare[1] and measure is row.measures[0]:
                    yield row, f"{where}the same, against {row.bare}", {"project": cells["project"], "plain": bare}


def columns(results):
    there = {name for _, cases in results for _, rounds in cases for name in rounds}
    return [name for name in NAMES if name in there]


def cells_of(cells, names):
    for name in names:
        value, ratio = cells.get(name, ("", ""))
        yield value
        if name != "project":
            yield ratio


def heading(names):
    return [part for name in names for part in ([NAMES[name]] if name == "project" else [NAMES[name], "×"])]


def terminal(results):
    """Columns of their own width, a title per row."""
    names = columns(results)
    table = [(None, ["", *heading(names)])]
    table += [(row, [what, *cells_of(cells, names)]) for row, what, cells in lines(results)]
    widths = [max(len(line[i]) for _, line in table) for i in range(len(table[0][1]))]
    shown, text = None, []
    for row, line in table:
        if row is not None and row.number != shown:
            shown = row.number
            text.append(f"{row.number}. {row.title}" + (f" (plain: {row.plain})" if row.plain else ""))
        padded = [line[0].ljust(widths[0])] + [part.rjust(width) for part, width in zip(line[1:], widths[1:])]
        text.append("  " + "  ".join(padded).rstrip())
    return "\n".join(text) + "\n"


def markdown(results):
    names = columns(results)
    head = ["Row", "Measured", *heading(names)]
    text = [head, ["---:", "---", *("---:" for _ in head[2:])]]
    shown = None
    for row, what, cells in lines(results):
        if row.number != shown:
            shown = row.number
            plain = f" (plain: {row.plain})" if row.plain else ""
            text.append([f"**{row.number}**", f"**{row.title}**{plain}", *("" for _ in head[2:])])
        text.append(["", what, *cells_of(cells, names)])
    return "\n".join("| " + " | ".join(line) + " |" for line in text) + "\n"


def first_line(*command):
    try:
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout.splitlines()[0]
    except (OSError, subprocess.CalledProcessError, IndexError):
        return "unknown"


def version(package):
    """Of what pkg-config knows."""
    return first_line("pkg-config", "--modversion", package)


def machine(build):
    """Where and when it was measured."""
    cpu = re.search(r"^model name\s*: (.*)$", pathlib.Path("/proc/cpuinfo").read_text(encoding="utf-8"), re.M)
    memory = os.sysconf("SC_PHYS_PAGES") * os.sysconf("SC_PAGE_SIZE") / 2**30
    return [
        ("Processor", f"{cpu.group(1) if cpu else platform.machine()}, {len(os.sched_getaffinity(0))} cores"),
        ("Memory", f"{memory:.0f} GiB"),
        ("System", f"{platform.system()} {platform.release()}"),
        ("Disk", first_line("stat", "-f", "-c", "%T", str(build))),
        ("Compiler", f"{first_line('g++', '--version')}, CMake's Release (-O3)"),
        ("Peers", f"libtirpc {version('libtirpc')}, gRPC {version('grpc++')}"),
        ("Date", datetime.date.today().isoformat()),
    ]


def write_page(page, results, build, absent):
    """Puts the machine and the table between the marks of the page."""
    text = page.read_text(encoding="utf-8")
    begin, end = (text.index(mark) for mark in MARKS)
    about = "\n".join(f"| {name} | {value} |" for name, value in machine(build))
    left_out = "".join(f"\n{NAMES[name]} was not there.\n" for name in sorted(absent))
    picture = "![Rows 1, 3, 7, 10 and 11](performance.svg)"
    measured = f"\n\n{picture}\n\n| | |\n|---|---|\n{about}\n{left_out}\n{markdown(results)}\n"
    page.write_text(text[:begin] + MARKS[0] + measured + text[end:], encoding="utf-8")
