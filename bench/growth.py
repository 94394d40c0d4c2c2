"""How the cost of each stage grows with the engine, the messages and the log."""

import shutil
from dataclasses import dataclass, field

from measure import run
from world import KEY, MIB


@dataclass
class Curve:
    """Of one stage: what it took for each amount."""
    stage: str
    amounts: list = field(default_factory=list)
    seconds: list = field(default_factory=list)
    peaks_mib: list = field(default_factory=list)

    def add(self, amount, seconds, peak_kib):
        self.amounts.append(amount)
        self.seconds.append(seconds)
        self.peaks_mib.append(peak_kib / 1024)


def engine_curves(world, largest_mib):
    """Digest and deciphering each in a process of its own, the download behind a window."""
    curves = {stage: Curve(stage) for stage in ("download", "digest", "decipher")}
    size_mib = 1
    while size_mib <= largest_mib and _fits(world, size_mib):
        file = world.random_file("growing", size_mib * MIB)
        works = {
            "download": lambda: run([world.build / "BenchDownload", f"{world.origin}/growing",
                                     world.fresh("downloaded"), world.authority], world.variables),
            "digest": lambda: world.stage("digest", "sha256", file),
            "decipher": lambda: world.stage("decipher", file, world.fresh("plain"), size_mib * MIB, KEY),
        }
        for stage, work in works.items():
            measured = work().measured()
            curves[stage].add(size_mib, measured["seconds"], measured["peakKib"])
        for name in ("downloaded", "plain"):
            world.fresh(name)
        file.unlink()
        size_mib *= 4
    return list(curves.values())


def message_curve(world):
    curve = Curve("messages")
    rehearsal = world.rehearsal("growing-messages", installed=True)
    for count in (1, 10, 100, 1_000, 10_000, 100_000, 1_000_000):
        cost, sent, _ = rehearsal.run(messages=count)
        curve.add(count, sent, cost.peak_kib)
    return curve


def log_curve(world):
    curve = Curve("log lines")
    for count in (1, 10, 100, 1_000, 10_000, 100_000, 1_000_000):
        folder = world.folder / "logs"
        measured = world.stage("log", folder, count).measured()
        shutil.rmtree(folder)
        curve.add(count, measured["seconds"], measured["peakKib"])
    return curve


def _fits(world, size_mib):
    """The file, its download and its plain form, with room to spare."""
    return shutil.disk_usage(world.folder).free > 5 * size_mib * MIB
