"""What was measured as text: the table on the terminal, and docs/performance.md with its plot."""

import os
import platform
import re
import subprocess
import time

import plot
from world import ROOT

PAGE = ROOT / "docs/performance.md"
PLOT = ROOT / "docs/pictures/growth.svg"
FINDINGS = ROOT / "bench/findings.md"


def line(row):
    mark = "reached" if row.reached() else "missed "
    return f"{mark}  {row.result():>14}  {row.goal():<12} {row.work}: {row.beside}" + (
        f" ({row.remark})" if row.remark else "")


def machine():
    """What the numbers hold for."""
    processor = re.search(r"^model name\s*: (.*)$", _text_of("/proc/cpuinfo"), re.MULTILINE)[1]
    memory = int(re.search(r"MemTotal:\s*(\d+)", _text_of("/proc/meminfo"))[1]) / 1024 / 1024
    flags = [name for flag, name in (("sha_ni", "SHA-NI"), ("avx2", "AVX2"), ("avx512f", "AVX-512"))
             if re.search(rf"^flags.*\b{flag}\b", _text_of("/proc/cpuinfo"), re.MULTILINE)]
    system = re.search(r'PRETTY_NAME="(.*)"', _text_of("/etc/os-release"))[1]
    versions = [_first_line(command) for command in (["c++", "--version"], ["openssl", "version"],
                                                     ["curl", "--version"])]
    return [f"{os.cpu_count()} processors ({processor}; {', '.join(flags)}), {memory:.0f} GiB of memory",
            f"{system}, Linux {platform.release()}",
            versions[0], versions[1], " ".join(versions[2].split()[:2]),
            f"measured on {time.strftime('%Y-%m-%d')}; load average at the start "
            f"{os.getloadavg()[0]:.1f}, which other work on the machine made"]


def write_page(facts, rows, engine_curves, message_curve, log_curve, micro):
    _plot(engine_curves)
    text = ["# Performance", "",
            "Written by `bench/compare`; what stands under \"What bounds it\" is kept in `bench/findings.md`.", "",
            *(f"- {fact}" for fact in facts), "",
            "Each figure is the median of pairs measured in turns; × is the ratio to what stands beside.", "",
            "| work | beside | figure | to reach | |", "|---|---|---|---|---|",
            *(_table_line(row) for row in rows), "",
            "## How cost grows", "",
            "![Time and peak memory of each stage over the engine's size](pictures/growth.svg)", "",
            *_engine_table(engine_curves), "",
            "The download's memory is that of the window before it.", "",
            *_count_table(message_curve, "messages"), "", *_count_table(log_curve, "log lines"), "",
            "## Small pieces", "", "| benchmark | time | speed |", "|---|---|---|",
            *(_micro_line(one) for one in micro), "", FINDINGS.read_text().strip(), ""]
    PAGE.write_text("\n".join(text))


def _plot(curves):
    plot.write(PLOT, [
        plot.Panel("Time", "engine, MiB", "seconds",
                   [(curve.stage, curve.amounts, curve.seconds) for curve in curves]),
        plot.Panel("Peak memory", "engine, MiB", "MiB",
                   [(curve.stage, curve.amounts, curve.peaks_mib) for curve in curves])])


def _table_line(row):
    outcome = "; ".join(filter(None, ["reached" if row.reached() else "**missed**", row.remark]))
    return f"| {row.work} | {row.beside} | {row.result()} | {row.goal()} | {outcome} |"


def _engine_table(curves):
    yield "| engine | " + " | ".join(f"{curve.stage}: time | memory" for curve in curves) + " |"
    yield "|---|" + "---|---|" * len(curves)
    for number, amount in enumerate(curves[0].amounts):
        cells = (f"{curve.seconds[number]:.3f} s | {curve.peaks_mib[number]:.1f} MiB" for curve in curves)
        yield f"| {amount:,} MiB | " + " | ".join(cells) + " |"


def _count_table(curve, what):
    yield f"| {what} | time | each | peak memory |"
    yield "|---|---|---|---|"
    for amount, seconds, peak in zip(curve.amounts, curve.seconds, curve.peaks_mib):
        yield f"| {amount:,} | {seconds:.3f} s | {seconds / amount * 1e6:.2f} µs | {peak:.1f} MiB |"


def _micro_line(one):
    speed = one.get("bytes_per_second")
    items = one.get("items_per_second")
    shown = f"{speed / 1e9:.2f} GB/s" if speed else f"{items:,.0f} a second" if items else ""
    return f"| {one['name'].replace('/manual_time', '')} | {one['cpu_time']:,.0f} {one['time_unit']} | {shown} |"


def _text_of(file):
    with open(file, encoding="utf-8") as content:
        return content.read()


def _first_line(command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.splitlines()[0]
