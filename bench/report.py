"""report.py RESULTS DESTINATION: makes the table and the plot of what bench/run has measured.

Prints the table and writes performance.md and performance.svg into DESTINATION.
"""

import datetime
import json
import math
import os
import platform
import re
import statistics
import subprocess
import sys
import textwrap

NANOSECONDS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}
MEBIBYTE = 1 << 20
SYSTEM_LIBRARIES = (
    "linux-vdso.so", "ld-linux", "libc.so", "libm.so", "libstdc++.so", "libgcc_s.so")

# Work, our benchmark, the peer, its benchmark, ratio to reach (None: only shown).
TIMED = [
    ("small GET on loopback, new connection", "small_ours",
     "its bare system calls", "small_bare", 0.95),
    ("the same", "small_ours", "libcurl, fresh handle", "small_curl", None),
    ("128 MiB reply body", "body_ours/128", "libcurl into `std::string`", "body_curl/128", 1.3),
    ("the same", "body_ours/128", "bare waits and receives, dropped", "body_bare/128", 0.6),
    ("base64 of 20 bytes", "base64_ours/20", "OpenSSL `EVP_EncodeBlock`", "base64_openssl/20", 1.0),
    ("base64 of 48 KiB", "base64_ours/49152",
     "OpenSSL `EVP_EncodeBlock`", "base64_openssl/49152", 1.0),
    ("`form_escape`, 900 bytes", "form_escape_ours", "`curl_easy_escape`", "form_escape_curl", 2.0),
    ("the same", "form_escape_ours", "`g_uri_escape_string`", "form_escape_glib", 2.0),
    ("`url_encode`, 900 bytes", "url_encode_ours", "`curl_easy_escape`", "url_encode_curl", 2.0),
    ("the same", "url_encode_ours", "`g_uri_escape_string`", "url_encode_glib", 2.0),
    *((work, f"options_ours/{kind}", who, f"{peer}/{kind}", reach)
      for kind, name in enumerate(("options first", "operands first", "clusters",
                                   "abbreviations", "20 operands, 4 options"))
      for work, who, peer, reach in (
          (f"options: {name}", "`getopt_long`", "options_libc", None),
          ("the same", "`getopt_long`, the environment read at each call",
           "options_libc_asking", 1.0))),
    ("`format_string_new`, 60 characters", "format_ours", "`asprintf`", "format_libc", 1.0),
    ("`string_buffer_append_format`, 20,000 appends", "append_ours",
     "GLib `GString`", "append_glib", 1.0),
    ("`replace_all_substrings`, 4 KiB", "replace_ours",
     "Abseil `StrReplaceAll`", "replace_abseil", 1.5),
    ("`parse_float`, 5 characters", "parse_float_ours", "`strtof`", "parse_float_libc", 2.0),
    ("`parse_float` with an exponent", "parse_power_ours", "`strtof`", "parse_power_libc", None),
    ("day number to date and back, years 1 to 9999", "calendar_ours",
     "C++20 `<chrono>`", "calendar_chrono", 1.0),
    ("the same, random days", "random_days_ours",
     "C++20 `<chrono>`", "random_days_chrono", 1.0),
    ("walk of 5,000 files", "walk_ours", "`<filesystem>`, a status each", "walk_filesystem", 1.1),
    ("one `report_message`", "message_ours",
     "`fprintf`, `fflush` of its two lines", "message_libc", 0.9),
    ("start to exit of `corvella get`, 200 bytes", "get_page_ours",
     "`curl`", "get_page_curl", None),
    ("start to exit of `corvella -version`", "start_ours", "`curl --version`", "start_curl", 3.0),
]


# Work, benchmark, size, ten times the size, why it is not linear.
GROWING = [
    ("reply header, bytes", "grow_header", 6554, 65536, ""),
    ("form body, fields", "grow_form", 100, 1000, ""),
    ("walk, files", "grow_walk", 10000, 100000, ""),
    ("`report_message` with an indent, lines", "grow_message", 2, 20, ""),
    ("`wrap_text_in_place`, bytes", "grow_wrap", MEBIBYTE // 10, MEBIBYTE,
     "each break moves the rest of the text, in place"),
    ("`insert_string_into_string`, bytes", "grow_insert", MEBIBYTE // 10, MEBIBYTE, ""),
    ("`replace_all_substrings`, bytes", "grow_replace", MEBIBYTE // 10, MEBIBYTE, ""),
]


def read(results, name):
    with open(os.path.join(results, name), encoding="utf-8") as file:
        return file.read()


def medians(run):
    """The median of each benchmark of one run in nanoseconds: of the elapsed time where it waits
    for somebody else, of the processor's time where it only computes."""
    times = {}
    for name in ("utilities.json", "web.json"):
        for entry in json.loads(read(run, name))["benchmarks"]:
            if entry.get("aggregate_name") == "median":
                waits = entry["run_name"].endswith("/real_time")
                time = entry["real_time" if waits else "cpu_time"]
                times[entry["run_name"].removesuffix("/real_time")] = (
                    time * NANOSECONDS[entry["time_unit"]])
    return times


class Figure:
    """What the runs gave, one value each."""

    def __init__(self, values):
        self.values = sorted(values)

    @property
    def median(self):
        return statistics.median(self.values)

    def of(self, text):
        """The median with the least and the greatest, unless there is one value only."""
        if len(self.values) == 1:
            return text(self.median)
        return f"{text(self.median)} ({text(self.values[0])} to {text(self.values[-1])})"


def time_text(nanoseconds):
    for unit, size in (("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def size_text(size):
    return f"{size / MEBIBYTE:.2f} MiB" if size >= MEBIBYTE else f"{size / 1024:.0f} KiB"


def ratio_text(ratio):
    return f"{ratio:.2f}"


def all_rows(results, runs):
    """Rows of work, ours, peer, what the peer is, ratio, ratio to reach."""

    def compared(work, ours, who, peer, reach, ours_parts=1, peer_parts=1):
        own = [run[ours] / ours_parts for run in runs]
        other = [run[peer] / peer_parts for run in runs]
        return (work, Figure(own).of(time_text), Figure(other).of(time_text), who,
                Figure(b / a for a, b in zip(own, other)), reach)

    rows = [compared(*timed) for timed in TIMED]
    rows.insert(4, compared("each MiB of a 128 MiB body", "body_ours/128",
                            "each MiB of a 32 MiB body", "body_ours/32", 0.9, 128, 32))
    growths = {}
    for number in range(1, len(runs) + 1):
        for line in read(results, f"run-{number}/memory.txt").splitlines():
            size, growth = map(int, line.split())
            growths.setdefault(size, []).append(growth)
    for place, (size, values) in enumerate(growths.items()):
        body = size * MEBIBYTE
        rows.insert(5 + place, (f"peak memory growth, {size} MiB body",
                                Figure(values).of(size_text), size_text(body), "the body itself",
                                Figure(body / value for value in values), 1 / 1.05))
    ours, peer = map(int, read(results, "sizes.txt").split())
    rows.append(("stripped program", size_text(ours), size_text(peer),
                 "Debian's `curl` with its libcurl", Figure([peer / ours]), 4.0))
    return rows


def growth_table(runs):
    """How the time of each work grows with its size."""
    lines = ["| Work | Size | Time | Ten times the size | Time | Factor | |",
             "|---|--:|--:|--:|--:|--:|---|"]
    for work, name, small, large, reason in GROWING:
        few = [run[f"{name}/{small}"] for run in runs]
        many = [run[f"{name}/{large}"] for run in runs]
        factor = Figure(b / a for a, b in zip(few, many))
        # A little over ten: what is ten times as large leaves the caches.
        verdict = reason or ("linear" if factor.median <= 13 else "not linear")
        lines.append(f"| {work} | {small:,} | {Figure(few).of(time_text)} | {large:,} | "
                     f"{Figure(many).of(time_text)} | {factor.of(ratio_text)} | {verdict} |")
    return "\n".join(lines)


def table(rows):
    lines = ["| Work | Ours | Peer | | Ratio peer/ours | To reach | |",
             "|---|--:|--:|---|--:|--:|---|"]
    for work, ours, peer, who, ratio, reach in rows:
        wanted = "shown" if reach is None else f"{reach:.3g}"
        missed = "" if reach is None or ratio.median >= reach else "missed"
        lines.append(f"| {work} | {ours} | {peer} | {who} | {ratio.of(ratio_text)} | {wanted} | "
                     f"{missed} |")
    return "\n".join(lines)


def notes(results, runs):
    """What the table has no column for."""
    first_calls, later_calls = read(results, "calls.txt").split()
    first_blocks, later_blocks = read(results, "allocations.txt").split()
    ours = read(results, "ours.ldd").split()
    peer = read(results, "peer.ldd").split()
    others = [name for name in ours if not os.path.basename(name).startswith(SYSTEM_LIBRARIES)]
    times = {name: statistics.median(run[name] for run in runs) for name in runs[0]}
    header_cost = times["small_bare"] - times["small_bare_whole_header"]
    size = int(read(results, "sizes.txt").split()[0])
    return [
        f"The header of the small GET is received byte by byte, with two system calls for each of "
        f"its 180 bytes. That alone costs {time_text(header_cost)}: with the header received "
        f"whole, the bare system calls take {time_text(times['small_bare_whole_header'])} instead "
        f"of {time_text(times['small_bare'])}.",
        f"Received in pieces of 64 KiB without waits and dropped, the 128 MiB body takes "
        f"{time_text(times['body_bare_large/128'])}.",
        f"A header of 64 KiB takes {time_text(times['grow_header/65536'] / 65536)} a byte.",
        f"A `report_message` with the default hooks makes {later_calls} system calls and "
        f"{later_blocks} allocations (at most 4 and 0); the first one of a process, for which libc "
        f"reads the time zone, makes {first_calls} and {first_blocks}.",
        f"The stripped program has {size:,} bytes (under 256,000), a share of the peer's of "
        f"{size / int(read(results, 'sizes.txt').split()[1]):.3f} (at most 0.25). `ldd` lists "
        f"{len(ours)} names for it and {len(peer)} for `curl`. Beyond libc, libm, libstdc++ and "
        f"libgcc it needs " + (", ".join(others) if others else "nothing") + ".",
    ]


def remarks():
    """What a measurement cannot tell: why a row is as it is."""
    here = os.path.dirname(os.path.abspath(__file__))
    with open(os.path.join(here, "remarks.md"), encoding="utf-8") as file:
        return file.read()


def machine():
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        processor = re.search(r"model name\s*: (.*)", file.read())
    with open("/proc/meminfo", encoding="utf-8") as file:
        memory = int(re.search(r"MemTotal:\s*(\d+)", file.read()).group(1)) / MEBIBYTE
    with open("/etc/os-release", encoding="utf-8") as file:
        system = re.search(r'PRETTY_NAME="(.*)"', file.read()).group(1)
    compiler = subprocess.run(["g++", "-dumpfullversion"], capture_output=True, text=True,
                              check=True).stdout.strip()
    name = processor.group(1) if processor else platform.machine()
    kernel = platform.release().split("-")[0]
    return (f"{name}, {os.cpu_count()} processors, {memory:.0f} GiB of memory, {system},\n"
            f"Linux {kernel}, g++ {compiler}, Release build, {platform.machine()}")


def plot(rows):
    """The ratios as bars on a logarithmic scale, each with a mark at the ratio to reach."""
    left, right, step, top = 400, 60, 22, 40
    width, height = 960, top + step * len(rows) + 30
    exponents = range(-1, 5)
    scale = (width - left - right) / (exponents[-1] - exponents[0])

    def across(ratio):
        return left + (math.log2(ratio) - exponents[0]) * scale

    def within(ratio):
        return min(max(across(ratio), left), width - right)

    def text(x, y, words, anchor="start"):
        words = words.replace("&", "&amp;").replace("<", "&lt;").replace("`", "")
        return f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}">{words}</text>'

    parts = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" '
        f'width="{width}" height="{height}" font-family="sans-serif" font-size="11">',
        f'<rect width="{width}" height="{height}" fill="white"/>',
        text(left, 16, "ratio peer/ours: to the right we are ahead; a mark is the ratio to reach"),
    ]
    for exponent in exponents:
        x = across(2.0**exponent)
        colour = "#444" if exponent == 0 else "#ddd"
        parts.append(f'<line x1="{x:.1f}" y1="{top - 8}" x2="{x:.1f}" y2="{height - 24}" '
                     f'stroke="{colour}"/>')
        parts.append(text(x, height - 10, f"{2.0**exponent:g}", "middle"))
    work = ""
    for place, (name, _, _, who, figure, reach) in enumerate(rows):
        ratio = figure.median
        work = work if name == "the same" else name
        y = top + place * step
        missed = reach is not None and ratio < reach
        start, end = sorted((across(1.0), within(ratio)))
        parts.append(text(left - 8, y + 11, f"{work}: {who}", "end"))
        parts.append(f'<rect x="{start:.1f}" y="{y}" width="{end - start:.1f}" height="14" '
                     f'fill="{"#c0504d" if missed else "#4f81bd"}"/>')
        if reach is not None:
            x = within(reach)
            parts.append(f'<line x1="{x:.1f}" y1="{y - 3}" x2="{x:.1f}" y2="{y + 17}" '
                         'stroke="black" stroke-width="2"/>')
        parts.append(text(max(end, within(reach or 1.0)) + 5, y + 11, f"{ratio:.2f}"))
    return "\n".join(parts + ["</svg>"]) + "\n"


def page(rows, results, runs):
    return f"""# Performance

Ours and what a caller would take instead, on the same bytes in the same process; the results are
compared for equality before anything is timed. Each figure is the median of {len(runs)} runs, with
the least and the greatest; in a run the benchmarks take turns at random. `./bench/run` measures
them again and writes this page.

{machine()}; {datetime.date.today().isoformat()}.

{table(rows)}

![The ratios as a plot](performance.svg)

## How each cost grows

{growth_table(runs)}

""" + "".join(textwrap.fill(f"- {note}", 100, subsequent_indent="  ") + "\n"
              for note in notes(results, runs)) + "\n" + remarks()


def main():
    results, destination = sys.argv[1:]
    runs = [medians(os.path.join(results, name)) for name in sorted(os.listdir(results))
            if name.startswith("run-")]
    rows = all_rows(results, runs)
    os.makedirs(destination, exist_ok=True)
    with open(os.path.join(destination, "performance.md"), "w", encoding="utf-8") as file:
        file.write(page(rows, results, runs))
    with open(os.path.join(destination, "performance.svg"), "w", encoding="utf-8") as file:
        file.write(plot(rows))
    print(table(rows))


main()
