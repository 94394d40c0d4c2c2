"""The rows of the table: a piece of the program's work beside what a user would pick instead."""

import os
import shutil
import subprocess
from dataclasses import dataclass

from link import Link
from measure import Failure, in_turns, median, ratio, run
from world import KEY, MIB, WindowWatch

MS = 1000

LINK_MEGABITS = 100
LINK_ROUND_TRIP = 0.030


@dataclass
class Row:
    work: str
    beside: str
    figure: float
    limit: float
    at_least: bool
    unit: str = "×"
    remark: str = ""

    def reached(self, slack=1.0):
        return self.figure >= self.limit / slack if self.at_least else self.figure <= self.limit * slack

    def goal(self):
        return f"{'≥' if self.at_least else '≤'} {self.limit:g} {self.unit}".strip()

    def result(self):
        digits = 2 if self.unit == "×" else 1 if abs(self.figure) < 1000 else 0
        return f"{self.figure:,.{digits}f} {self.unit}".strip()


def digest_rows(world, size, pairs):
    file = world.random_file("digest", size)
    for algorithm in ("sha256", "md5"):
        ours, library, coreutils, memory = in_turns(
            pairs,
            lambda: world.stage("digest", algorithm, file),
            lambda: run(["openssl", "dgst", f"-{algorithm}", file]),
            lambda: run([f"{algorithm}sum", file]),
            lambda: world.stage("digest-memory", algorithm, size))
        name = f"{algorithm} of a warm file of {size // MIB} MiB"
        speed = size / median(cost.seconds for cost in ours) / 1e9
        yield Row(name, f"speed of openssl dgst -{algorithm}", ratio(_walls(library), _walls(ours)), 1.0, True,
                  remark=f"{speed:.2f} GB/s")
        yield Row(name, f"speed of {algorithm}sum", ratio(_walls(coreutils), _walls(ours)), 1.0, True)
        by_processor = ratio(_own(memory, "processorSeconds"), _own(ours, "processorSeconds"))
        yield Row(name, "speed of the library in memory", ratio(_own(memory, "seconds"), _own(ours, "seconds")), 0.9,
                  True, remark=f"by processor time {by_processor:.2f} ×")


def transform_rows(world, size, pairs):
    for length in (1, 16, 20, 32, 33, 64):
        [found] = in_turns(pairs, lambda: world.stage("transform", size, "9c" * length, 5).measured())
        yield Row(f"XOR of {size // MIB} MiB in memory, key of {length} bytes", "speed of memcpy",
                  ratio([one["copySeconds"] for one in found], [one["transformSeconds"] for one in found]), 0.7, True)


def decipher_rows(world, size, pairs):
    enciphered = world.random_file("enciphered", size)

    def ours():
        return world.stage("decipher", enciphered, world.place_for("written", size), size, KEY)

    def copy():
        return run(["cp", enciphered, world.place_for("written", size)])

    deciphered, copied = in_turns(pairs, ours, copy)
    name = f"decipher a file of {size // MIB} MiB"
    yield Row(name, "time of cp", ratio(_walls(deciphered), _walls(copied)), 1.5, False,
              remark=f"of its processor time {ratio(_processors(deciphered), _processors(copied)):.2f} ×")
    yield Row(name, "peak memory", max(_own(deciphered, "peakKib")) / 1024, 2 * size / MIB + 16, False, "MiB")


def download_rows(world, size, pairs):
    small = world.random_file("download-small", min(size // 4, 64 * MIB))
    file = world.random_file("download", size)

    def ours(name=file.name):
        return run([world.build / "BenchDownload", f"{world.origin}/{name}", world.place_for("downloaded", size),
                    world.authority], world.variables).measured()

    def curl():
        return run(["curl", "--silent", "--fail", "--cacert", world.authority,
                    "--output", world.place_for("downloaded", size),
                    "--write-out", '{"seconds": %{time_total}}\n', f"{world.origin}/{file.name}"])

    downloads, curls = in_turns(pairs, ours, curl)
    if {one["bytes"] for one in downloads} != {size}:
        raise Failure("a download is not whole")
    name = f"HTTPS download of {size // MIB} MiB to disk, behind a window"
    seconds = [one["seconds"] for one in downloads]
    yield Row(name, "speed of curl", ratio([cost.measured()["seconds"] for cost in curls], seconds), 0.95, True,
              remark=f"{size / median(seconds) / 1e9:.2f} GB/s")
    yield Row(name, "processor time of curl",
              ratio([one["processorSeconds"] for one in downloads], _processors(curls)), 1.1, False)
    of_small = ours(small.name)["peakKib"]
    yield Row(name, f"peak memory for {small.stat().st_size // MIB} MiB",
              median(one["peakKib"] for one in downloads) / of_small, 1.05, False,
              remark=f"{of_small / 1024:.0f} MiB, nearly all of it the window")
    yield Row(name, "longest wait of an event", median(one["longestEventWait"] for one in downloads) * MS, 50, False,
              "ms")
    yield Row(name, "longest wait of an item of the main queue",
              median(one["longestItemWait"] for one in downloads) * MS, 50, False, "ms")


def start_rows(world, pairs):
    watch = WindowWatch(world)
    folder = world.rehearsal("start").folder
    minimal = [world.build / "BenchMinimalWindow"]
    like_ours = [*minimal, "with-controls"]
    ours, empty, filled, linked = in_turns(
        3 * pairs,
        lambda: watch.start_to_window([world.build / "OrvaneBootstrapRehearsal"],
                                      world.variables | {"ORVANE_REHEARSAL": str(folder)}),
        lambda: watch.start_to_window(minimal, world.variables),
        lambda: watch.start_to_window(like_ours, world.variables),
        lambda: watch.start_to_window(like_ours, world.variables | {"LD_PRELOAD": "libcurl.so.4"}))
    for beside, others in (("an empty window", empty),
                           ("a window with two texts, a bar and a button", filled),
                           ("the same, linked with libcurl", linked)):
        yield Row("start to window shown", f"time of {beside}",
                  ratio([one[0] for one in ours], [one[0] for one in others]), 1.15, False,
                  remark=f"{median(one[0] for one in ours) * MS:.0f} ms")
        yield Row("start to window shown", f"peak memory above {beside}",
                  (median(one[1] for one in ours) - median(one[1] for one in others)) / 1024, 8, False, "MiB")


def message_rows(world, count, pairs):
    rehearsal = world.rehearsal("messages", installed=True)
    shown, bare, watched = in_turns(pairs, lambda: rehearsal.run(messages=count), lambda: bare_receipt(world, count),
                                    lambda: rehearsal.run("BenchRehearsal", messages=count))
    few = rehearsal.run(messages=1)[0].peak_kib
    rates = [count / sent for _, sent, _ in shown]
    name = f"{count:,} messages into the window"
    yield Row(name, "a second", median(rates), 100_000, True, "",
              f"{ratio(rates, [count / seconds for seconds in bare]):.2f} × a bare receiving loop")
    yield Row(name, "peak memory above that of 1 message",
              (median(cost.peak_kib for cost, _, _ in shown) - few) / 1024, 8, False, "MiB")
    yield Row(name, "longest wait of an event",
              median(stalls["longestEventWait"] for _, _, stalls in watched) * MS, 50, False, "ms")
    yield Row(name, "longest wait of an item of the main queue",
              median(stalls["longestItemWait"] for _, _, stalls in watched) * MS, 50, False, "ms")


def bare_receipt(world, count):
    """Seconds that a loop takes which does nothing but receive. The engine's last message ends the run."""
    service = "bench.bare"
    with subprocess.Popen([world.build / "BenchStage", "receive", service, str(count + 1)], stdout=subprocess.PIPE,
                          text=True) as receiver:
        if receiver.stdout.readline() != "ready\n":
            raise Failure("the bare loop does not start")
        run([world.build / "BenchEngine", "--owner", service], {"BENCH_MESSAGES": str(count)})
        output = receiver.stdout.read()
    return float(output.split('"seconds": ')[1].split(",")[0])


def whole_run_rows(world, size, pairs):
    rehearsal = world.rehearsal("whole", engine_size=size)
    url = f"{world.origin}/{rehearsal.enciphered.name}"
    watch = WindowWatch(world)

    def ours():
        rehearsal.forget_engine()
        return rehearsal.run()[0].seconds

    def parts():
        downloaded = world.fresh("by-hand")
        steps = [["curl", "--silent", "--fail", "--cacert", world.authority, "--output", downloaded, url],
                 ["openssl", "dgst", "-sha256", downloaded],
                 ["cp", downloaded, world.fresh("by-hand-plain")],
                 [rehearsal.folder / "engine", "--version"]]
        return sum(run(step).seconds for step in steps)

    def window():
        return watch.start_to_window([world.build / "BenchMinimalWindow"], world.variables)[0]

    runs, sums, windows = in_turns(pairs, ours, parts, window)
    name = f"whole run with an enciphered engine of {size // MIB} MiB"
    yield Row(name, "curl + openssl + cp + starting the engine", ratio(runs, sums), 1.2, False,
              remark=f"{median(runs) * MS:.0f} ms; those {median(sums) * MS:.0f} ms")
    yield Row(name, "the same and a minimal window",
              ratio(runs, [a + b for a, b in zip(sums, windows)]), 1.2, False,
              remark=f"the window {median(windows) * MS:.0f} ms")


def link_rows(world, size, pairs):
    if os.geteuid() != 0:
        print("compare: the row link needs root, and is left out")
        return
    rehearsal = world.rehearsal("link", engine_size=size)
    description = f"{world.origin}/downloadinstaller"
    engine = f"{world.origin}/{rehearsal.enciphered.name}"

    def curl(link, url):
        return run([*link.command(), "curl", "--silent", "--fail", "--cacert", world.authority,
                    "--output", world.fresh("by-hand"), url]).seconds

    def ours(link):
        rehearsal.forget_engine()
        return rehearsal.run(through=link.command())[0].seconds

    with Link(int(world.origin.rpartition(":")[2]), LINK_MEGABITS, LINK_ROUND_TRIP) as link:
        runs, curls = in_turns(pairs, lambda: ours(link), lambda: curl(link, description) + curl(link, engine))
    yield Row(f"whole installation of an enciphered engine of {size // MIB} MiB, link of {LINK_MEGABITS} Mbit/s and "
              f"{LINK_ROUND_TRIP * MS:.0f} ms", "curl for the description, then curl for the engine",
              ratio(runs, curls), 1.05, False,
              remark=f"{median(runs):.2f} s; those {median(curls):.2f} s")


def size_rows(world):
    stripped = world.fresh("stripped")
    shutil.copy(world.build / "OrvaneBootstrap", stripped)
    run(["strip", stripped])
    yield Row("size of the stripped program", "Linux", stripped.stat().st_size / 1000, 600, False, "KB")


def _own(costs, name):
    return [cost.measured()[name] for cost in costs]


def _walls(costs):
    return [cost.seconds for cost in costs]


def _processors(costs):
    return [cost.processor_seconds for cost in costs]
