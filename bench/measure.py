"""Measuring one host program with and without the overlay. Used by bench/run (figures) and bench/check (limits).

Every run is a fresh process. A holder process keeps the shared segment alive, so that the companion's settings
(profile, on or off) are there when a measured program starts.
"""
import contextlib
import mmap
import os
import pathlib
import random
import re
import shutil
import statistics
import struct
import subprocess
import tempfile
import threading
import time

import layouts

ROOT = pathlib.Path(__file__).resolve().parent.parent
DATA = pathlib.PurePosixPath("ZARN/Orvin Deck/ORVIN-OSD/Data")
FROM, TO = 300, 1300
START = 30  # frames, until the layout stands
SIXTIETH = "16666667"

# Name, overlay in the process, profile, switched on.
MODES = {"bare": (False, "Empty", True), "off": (True, "Panels20", False), "Empty": (True, "Empty", True),
         "Bench": (True, "Bench", True), "Panels20": (True, "Panels20", True),
         "Frosted20": (True, "Frosted20", True), "Boxes8": (True, "Boxes8", True),
        "Boxes37": (True, "Boxes37", True), "Boxes80": (True, "Boxes80", True)}
MADE = [*layouts.WITH_GRAPH, *layouts.GLASS, "Items4096"]
MODES |= {name: (True, name, True) for name in MADE}
MODES |= {name: (True, name, True) for name in layouts.PICTURES}
MODES |= {name: (True, name, True) for name in layouts.BUILT_IN}
SHIPPED = sorted(path.name for path in (ROOT / "data/Profiles").iterdir())
MODES |= {name: (True, name, True) for name in SHIPPED}
# One text in each of as many faces as fonts fit: their atlases are what takes memory.
FACES = "Faces64"
MODES[FACES] = (True, FACES, True)
# What number boxes show, published once; eight of these names recur in the layouts with boxes.
PUBLISHED = {"GPU_CLK#0": 1755, "GPU_TEMP#0": 71, "CPU_USAGE#0": 38, "GPU_USAGE#0": 97, "CPU_CLK#0": 4650}
RAW_DATA, RAW_BANK = 0xBFA0, 16384  # in the shared segment: two banks of values
TRACE_REQUESTS = 0xB690  # in it: who asks for frames; 16 bytes, then places of 16 bytes
DRIVERS = {"null": {}, "noop": {"GALLIUM_NOOP": "1", "GALLIUM_THREAD": "0"}, "llvmpipe": {"LP_NUM_THREADS": "0"}}


def faces_profile(count=64):
    """Faces of this machine, then names that nobody has, which the default face stands in for."""
    known = subprocess.run(["fc-list", ":", "family"], capture_output=True, text=True, check=True).stdout.splitlines()
    names = sorted({line.split(",")[0] for line in known if not set(line) & set("<>&'\"")})
    names = (names + [f"Face {i}" for i in range(count)])[:count]
    texts = "".join(f"<TextBox IsShow='1' Name='t{i:02}' FrameAnchor='1' FrameAnchorY='{12 * i}' FontName='{name}' "
                    f"TextSize='12' Text='Label'/>" for i, name in enumerate(names))
    return f"<OSD LayoutStyle='2'><CustomLayout><Settings><Info>{texts}</Info></Settings></CustomLayout></OSD>"


def read_pairs(text):
    return dict(line.split("=", 1) for line in text.splitlines() if "=" in line)


def middle(values):
    """Median and spread: the range of the middle half."""
    values = sorted(values)
    quarter = len(values) // 4
    return {"median": statistics.median(values), "low": values[quarter], "high": values[-1 - quarter],
            "runs": len(values)}


class Bench:
    def __init__(self, build, care=False):
        """With care True the keys of [HostCare] are those of the shipped file, else those that care names."""
        self.build, self.care = pathlib.Path(build).resolve(), care
        self.host = self.build / "bin/host_glx"
        self.companion = self.build / "bin/orvin-osd"
        self.preload = self.build / "bin/libORVIN-OSD64-GL-preload.so"
        self.probe = self.build / "bench/libbench_probe.so"
        self.null = self.build / "bench/null"
        for needed in (self.host, self.companion, self.preload, self.probe, self.null / "libGL.so.1",
                       *self.build.glob("bin/*.so")):
            if not needed.exists():
                raise SystemExit(f"bench: {needed} is missing: build first")
            # Pages of a file just linked count as the program's own memory until they are written out.
            with open(needed, "rb") as file:
                os.fsync(file.fileno())

    def __enter__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="orvin-bench."))
        data = self.folder / DATA
        data.mkdir(parents=True)
        for source, folder in (("data", data), ("shaders", data), ("tests/profiles", data / "Profiles")):
            shutil.copytree(ROOT / source, folder, dirs_exist_ok=True)
        layouts.write(data / "Profiles")
        (data / "Profiles" / FACES).mkdir()
        (data / "Profiles" / FACES / "OSD.xml").write_text(faces_profile(), encoding="utf-8")
        if self.care is not True:
            (data / "OSD.ini").unlink()
        if self.care and self.care is not True:
            keys = "".join(f"{key} = 1\n" for key in self.care)
            (data / "OSD.ini").write_text("[HostCare]\n" + keys)
        read, write = os.pipe()
        self.display = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x1024x24", "-nolisten",
                                         "tcp"], pass_fds=[write], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as pipe:
            number = pipe.readline().strip()
        keep = {k: v for k, v in os.environ.items() if not k.startswith(("ORVIN_OSD_", "NULL_GL_", "BENCH_"))}
        self.env = {**keep, "DISPLAY": f":{number}", "LIBGL_ALWAYS_SOFTWARE": "1",
                    "ORVIN_OSD_APPDATA": str(self.folder), "ORVIN_OSD_SEGMENT": self.folder.name}
        self.stop, self.ready = self.folder / "stop", self.folder / "ready"
        self.holder = subprocess.Popen([self.host, "--ready-file", self.ready, "--wait-file", self.stop, "--frames", "1"],
                                       env={**self.env, "LD_PRELOAD": str(self.preload), "LD_LIBRARY_PATH": str(self.null)},
                                       stdout=subprocess.DEVNULL)
        end = time.monotonic() + 20
        while not self.ready.exists():
            if time.monotonic() > end or self.holder.poll() is not None:
                self.__exit__()
                raise SystemExit("bench: the host program does not start")
            time.sleep(0.05)
        for name, value in PUBLISHED.items():
            self.ask("set", name, str(value))
        return self

    @contextlib.contextmanager
    def machine_of(self, mode):
        """For a built-in style with every row: settings of a machine that has them, with values."""
        if mode not in layouts.BUILT_IN:
            yield
            return
        settings = (self.folder / DATA).parent / "Settings"
        settings.mkdir(exist_ok=True)
        (settings / "settings.ini").write_text(layouts.sheets().machine(1))
        try:
            yield
        finally:
            (settings / "settings.ini").unlink()

    @contextlib.contextmanager
    def writing(self, work):
        """Runs work(segment, done) beside what is measured, with the shared segment's bytes, until done is set."""
        path = next(pathlib.Path("/dev/shm").glob(f"*Shared*{self.folder.name}*"))
        done = threading.Event()

        def run():
            with open(path, "r+b") as file, mmap.mmap(file.fileno(), 0) as segment:
                work(segment, done)

        thread = threading.Thread(target=run)
        thread.start()
        try:
            yield
        finally:
            done.set()
            thread.join()

    @contextlib.contextmanager
    def changing_values(self):
        """Writes other values into the published data all the time, as a companion would."""
        def churn(segment, done):
            noise = random.Random(1)
            while not done.wait(0.0005):
                for bank in (RAW_DATA, RAW_DATA + RAW_BANK):
                    for place in range(len(PUBLISHED)):
                        struct.pack_into("<i", segment, bank + 4 * place, noise.randrange(10000))

        try:
            with self.writing(churn):
                yield
        finally:
            for name, value in PUBLISHED.items():
                self.ask("set", name, str(value))

    def __exit__(self, *_):
        self.stop.touch()
        for process in (self.holder, self.display):
            try:
                process.wait(5 if process is self.holder else 0.1)
            except subprocess.TimeoutExpired:
                process.terminate()
                process.wait(10)
        shutil.rmtree(self.folder, ignore_errors=True)
        for left in pathlib.Path("/dev/shm").glob(f"*{self.folder.name}*"):
            left.unlink()

    def ask(self, *arguments):
        done = subprocess.run([self.companion, *arguments], env=self.env, capture_output=True, text=True, timeout=30)
        if done.returncode:
            raise SystemExit(f"bench: orvin-osd {' '.join(arguments)}: {done.stdout}{done.stderr}")

    def choose(self, mode):
        """Sets profile and switch for the programs that start from now on; the preload list of such a program."""
        overlay, profile, on = MODES[mode]
        self.ask("profile-name", profile)
        self.ask("on" if on else "off")
        return [str(self.preload)] if overlay else []

    def variables(self, mode, driver, probe=True, **more):
        loads = self.choose(mode) + ([str(self.probe)] if probe else [])
        chosen = {**DRIVERS[driver], **more}
        if driver == "null":
            chosen["LD_LIBRARY_PATH"] = str(self.null)
        if loads:
            chosen["LD_PRELOAD"] = ":".join(loads)
        return chosen

    def run(self, command, variables, timeout=600, traced=False):
        """What a program says, on both ways. Traced: its frames are asked for all the time."""
        with subprocess.Popen([str(c) for c in command], env={**self.env, **variables}, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True) as program:
            with self.asking_for_frames(program.pid) if traced else contextlib.nullcontext():
                said = program.communicate(timeout=timeout)
        if program.returncode:
            raise SystemExit(f"bench: {command} ended with {program.returncode}\n{said[0]}\n{said[1]}")
        return said

    @contextlib.contextmanager
    def asking_for_frames(self, pid):
        """What a recording companion writes into the shared segment: its wish, and a beat."""
        def ask(segment, done):
            struct.pack_into("<III", segment, TRACE_REQUESTS + 16, pid, 1, 0)
            changes, = struct.unpack_from("<I", segment, TRACE_REQUESTS)
            struct.pack_into("<I", segment, TRACE_REQUESTS, changes + 1)
            beat = 1
            while not done.wait(0.02):
                beat += 1
                struct.pack_into("<I", segment, TRACE_REQUESTS + 20, beat)
            struct.pack_into("<III", segment, TRACE_REQUESTS + 16, 0, 0, 0)

        with self.writing(ask):
            yield

    def counts(self, mode, driver="null", step=SIXTIETH):
        """GL calls by name, window-system calls, allocations, clock reads per frame; threads, private memory in KiB."""
        calls, probe = self.folder / "calls", self.folder / "probe"
        for file in (calls, probe):
            file.unlink(missing_ok=True)
        self.run([self.host, "--frames", str(TO + 20)],
                 self.variables(mode, driver, NULL_GL_FROM=str(FROM), NULL_GL_TO=str(TO), NULL_GL_COUNTS=str(calls),
                                BENCH_FROM=str(FROM), BENCH_TO=str(TO), BENCH_OUT=str(probe), BENCH_STEP_NS=step))
        frames = TO - FROM
        own = read_pairs(probe.read_text())
        result = {"allocations": int(own["allocations"]) / frames, "clock_reads": int(own["clock_reads"]) / frames,
                  "threads": int(own["threads"]),
                  "private_kb": int(own["private_kb"])}
        if driver == "null":
            by_name = {k: int(v) / frames for k, v in read_pairs(calls.read_text()).items()}
            by_name.pop("swaps")
            result["window_system"] = by_name.pop("window_system")
            result["gl_calls"] = by_name.pop("total")
            result["by_name"] = by_name
        return result

    def building(self, mode, driver):
        """The costliest swap while the overlay is built, by the processor's time, which a busy machine does not
        change much; the first swap on the clock; milliseconds."""
        said, _ = self.run([self.host, "--frames", "60", "--size", "1280x720", "--swap-cpu"],
                           self.variables(mode, driver, probe=False))
        got = read_pairs(said)
        return {"longest_cpu_ms": int(got["longest_swap_cpu_ns"]) / 1e6, "first_ms": int(got["first_swap_ns"]) / 1e6}

    def reloading(self, mode, driver):
        """The costliest swap from a reload on, likewise. The reload is asked for once sixty frames are drawn."""
        mark = self.folder / "mark"
        command = [self.host, "--frames", "700", "--fps-cap", "200", "--size", "1280x720", "--swap-cpu",
                   "--swap-cpu-from", "60", "--mark-file", mark]
        for _ in range(5):
            mark.unlink(missing_ok=True)
            variables = self.variables(mode, driver, probe=False)
            host = subprocess.Popen([str(c) for c in command], env={**self.env, **variables}, stdin=subprocess.DEVNULL,
                                    stdout=subprocess.PIPE, text=True)
            while not mark.exists() and host.poll() is None:
                time.sleep(0.01)
            if MODES[mode][0]:
                self.ask("reload")
            in_time = host.poll() is None  # else the machine was too busy, and the host ended first
            got = read_pairs(host.communicate(timeout=600)[0])
            if in_time and host.returncode == 0:
                return {"reload_cpu_ms": int(got["longest_swap_cpu_ns"]) / 1e6}
        raise SystemExit("bench: the host program ends before a reload reaches it")

    @contextlib.contextmanager
    def font_files(self, mode):
        """Font cache files beside a profile."""
        self.ask("fontcache", "write", mode)
        try:
            yield
        finally:
            for file in (self.folder / DATA / "Profiles" / mode).glob("*.fnt"):
                file.unlink()

    def instructions(self, mode, driver="null"):
        """Instructions a frame: two runs of different length under callgrind, their difference."""
        totals = [self.collected(mode, driver, frames)[0] for frames in (FROM, TO)]
        return (totals[1] - totals[0]) / (TO - FROM)

    def instructions_of_start(self, mode):
        """Instructions of a program's first frames, in which the overlay is built and comes to stand."""
        return self.collected(mode, "null", START)[0]

    def instructions_of_trace(self, mode):
        """Instructions a frame that being recorded takes, and how many of them are spent in reads of the clock."""
        sums = {traced: [self.collected(mode, "null", frames, traced) for frames in (FROM, TO)]
                for traced in (False, True)}
        whole, clock = ([(sums[traced][1][k] - sums[traced][0][k]) / (TO - FROM) for traced in (False, True)]
                        for k in (0, 1))
        return {"instructions": whole[1] - whole[0], "in_clock": clock[1] - clock[0]}

    def collected(self, mode, driver, frames, traced=False):
        """Instructions of a run under callgrind: all of them, and those of reading the clock."""
        out = self.folder / "callgrind"
        _, said = self.run(["valgrind", "--tool=callgrind", f"--callgrind-out-file={out}", self.host, "--frames",
                            str(frames)], self.variables(mode, driver, BENCH_STEP_NS=SIXTIETH), traced=traced)
        listed = subprocess.run(["callgrind_annotate", "--inclusive=yes", "--threshold=100", "--show-percs=no", out],
                                capture_output=True, text=True, check=True).stdout
        clock = [int(line.split()[0].replace(",", "")) for line in listed.splitlines() if ":platform::CounterNow()" in line]
        return int(re.search(r"Collected : (\d+)", said).group(1)), sum(clock)

    def system_calls(self, mode, driver="null", step="0"):
        """System calls a frame, by strace, as the difference of two lengths. With step 0 the clock stands still, so
        that nothing timed (such as the size check) falls due."""
        totals = []
        for frames in (FROM, TO):
            report = self.folder / "strace"
            variables = self.variables(mode, driver, BENCH_STEP_NS=step)
            handed = [part for name, value in variables.items() for part in ("-E", f"{name}={value}")]
            self.run(["strace", "-f", "-c", "-o", report, *handed, self.host, "--frames", str(frames)], {})
            total = [line.split() for line in report.read_text().splitlines() if line.strip().endswith("total")][-1]
            totals.append(int(total[3]))
        return (totals[1] - totals[0]) / (TO - FROM)

    def time_once(self, mode, driver, frames, first=200):
        """Processor and wall time of a frame and the first swap, in microseconds, on the real clock."""
        said, _ = self.run([self.host, "--frames", str(frames), "--measure-from", str(first), "--size", "1280x720"],
                           self.variables(mode, driver, probe=False))
        got = read_pairs(said)
        measured = int(got["measured_frames"])
        return {"cpu_us": int(got["measured_cpu_ns"]) / measured / 1000,
                "wall_us": int(got["measured_wall_ns"]) / measured / 1000,
                "first_frame_us": int(got["first_swap_ns"]) / 1000}
