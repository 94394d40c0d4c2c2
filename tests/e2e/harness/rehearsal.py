"""A folder in which the program rehearses: engine and logs lie there, a vendor of its own serves it."""

import json
import os

from . import processes, reports
from .program import Run
from .vendor import Vendor
from .waiting import eventually

FRENCH = "fr_CH"
GERMAN = "de_CH"
NONE = ""  # the window speaks French, the system's own error texts are English

# Starts a program as a user whom the permissions of files hold back; by themselves they do not hold root back.
BOUND_BY_PERMISSIONS = ("setpriv", "--bounding-set=-dac_override,-dac_read_search") if os.geteuid() == 0 else ()


class Rehearsal:
    program_name = "OrvaneBootstrapRehearsal"

    def __init__(self, build, desktop, folder):
        self.build = build
        self.desktop = desktop
        self.folder = folder
        self.mark = str(folder)
        self.engine_path = folder / "opt/Varlen/orvane/varlen-setup"
        self.log_root = folder / "Library/Kestrix"
        self.sample_engine = (build / "SampleEngine").read_bytes()
        self.vendors = []
        self.runs = []
        self.helpers = []
        self.limits = {}
        self.api_origin = None
        self._scenario = folder / "scenario"

    @property
    def is_sanitized(self):
        """Whether the program under test was built with the address or the thread sanitizer."""
        program = (self.build / self.program_name).read_bytes()
        return b"__asan_init" in program or b"__tsan_init" in program

    # The vendor.

    def vendor(self, *options, name="vendor"):
        vendor = Vendor([self.build / "VendorServer"], self.folder / name, self.variables(), options)
        self.vendors.append(vendor)
        return vendor

    def vendor_with_engine(self, **publication):
        """A vendor that describes the very engine that lies on the machine."""
        vendor = self.vendor()
        vendor.publish(self.sample_engine, **publication)
        self.install_engine()
        return vendor

    # The machine.

    def install_engine(self, content=None, mode=0o755):
        self.engine_path.parent.mkdir(parents=True, exist_ok=True)
        self.engine_path.write_bytes(self.sample_engine if content is None else content)
        self.engine_path.chmod(mode)

    def variables(self, languages=FRENCH, **more):
        return self.desktop.variables | {
            processes.MARK: self.mark,
            "ORVANE_REHEARSAL": str(self.folder),
            "ORVANE_SAMPLE_SCENARIO": str(self._scenario),
            "LANGUAGE": languages,
        } | more

    # The engine.

    def scenario(self, *lines):
        """What the sample engine plays."""
        self._scenario.write_text("\n".join(lines) + "\n")

    def gate(self, name):
        """A line of a scenario at which the engine waits until `open_gate`."""
        return f"wait-for {self.folder / name}"

    def open_gate(self, name):
        (self.folder / name).touch()

    def mark_of(self, name):
        """A file that a scenario makes with "mark" or "mark-on-interrupt"."""
        return self.folder / name

    def await_mark(self, name):
        eventually(self.mark_of(name).exists, f"the engine's mark {name}")

    def record(self, name):
        """What an engine wrote with "record": how it was started."""
        self.await_mark(name)
        return json.loads(self.mark_of(name).read_text())

    # The program.

    def prepare(self):
        """Leads the program to `api_origin`, else to the first vendor, or to nobody."""
        vendor = self.vendors[0] if self.vendors else None
        origin = vendor.origin if vendor else "https://localhost:1"
        rehearsal = {"apiOrigin": self.api_origin or origin,
                     "certificateAuthority": str(vendor.folder / "ca.pem") if vendor else "/none"} | self.limits
        (self.folder / "rehearsal.json").write_text(json.dumps(rehearsal))

    def start(self, *options, languages=FRENCH, variables=None, through=()):
        """`through` begins a command line that ends in the program, such as one that sets another umask."""
        self.prepare()
        return self.run_program([*through, self.build / self.program_name, *options],
                                self.variables(languages, **(variables or {})))

    def run_program(self, command, variables):
        run = Run(command, variables, self.log_root, self.folder, len(self.runs) + 1)
        self.runs.append(run)
        return run

    def acknowledge(self, run, text, reported=True):
        """Reads the fatal alert, waits until the first vendor has the report, if there is one, and presses OK."""
        alert = run.window.await_alert(text)
        assert alert.buttons == ("OK",)
        assert run.window.look().main is None, "the window stays behind a fatal alert"
        if self.vendors and reported:
            eventually(self.vendors[0].report_bodies, "the crash report")
        run.window.press("OK")
        assert run.status() == 1

    # The end of a test.

    def check_nothing_is_left(self):
        for vendor in self.vendors:
            assert not vendor.unexpected(), "the vendor got requests that no client of a vendor should send"
        assert not [run for run in self.runs if run.is_running()], "the test left a program running"
        self._check_every_cause_is_known()
        expected = {vendor.process for vendor in self.vendors} | set(self.helpers)
        eventually(lambda: not set(processes.marked(self.mark)) - expected, "the end of every engine")

    def _check_every_cause_is_known(self):
        """Whatever happens to a run, support must be able to tell it by the log."""
        folders = [self.log_root, *(vendor.folder / "reports" for vendor in self.vendors)]
        logs = [file for folder in folders for file in folder.rglob("*.*")
                if file.suffix in (".json", ".log") and file.is_file() and not file.is_symlink()]
        unknown = [log for log in reports.with_causes(self.build, logs) if log["cause"] == "unrecognised"]
        assert not unknown, f"orvane-reports finds no cause: {unknown}"

    def close(self):
        for run in self.runs:
            run.kill()
        for vendor in self.vendors:
            vendor.stop()
        leftovers = set(processes.marked(self.mark)) - set(self.helpers)
        processes.end_all(leftovers)
        eventually(lambda: not leftovers & set(processes.marked(self.mark)), "the end of the test's processes")
