"""Frames of a program with a known pattern: recorded whole, and the figures of the report are those of the pattern."""
import json
import math
import pathlib
import shutil
import signal
import struct
import subprocess
import tempfile
import unittest

from e2e.environment import LINUX, WIN64, Display, LinuxPrograms, WinePrograms, wait_until

FRAMES, EVERY, STUTTER_MS = 330, 100, 100
REQUESTS = 0xB690 + 16  # in the shared segment: four words each, the process first


def read_recording(path):
    """Head, frames as dictionaries, sensors as (time, name, value), the end's reason; nothing of the product reads it."""
    head, frames, sensors, end = {}, [], [], None
    lines = path.read_text(encoding="utf-8").splitlines()
    for line in lines:
        if line.startswith("# ") and ": " in line:
            key, value = line[2:].split(": ", 1)
            head[key] = value
            continue
        fields = line.split(",")
        if fields[0] == "frame":
            frames.append({"time": float(fields[1]), "number": int(fields[2]),
                           "frame": float(fields[3]) if fields[3] else None,
                           "swap": float(fields[4]) if fields[4] else None})
        elif fields[0] == "sensor":
            sensors.append((float(fields[1]), fields[8], float(fields[9])))
        elif fields[0] == "end":
            end = fields[8]
    return head, frames, sensors, end


def nearest(ordered, share):
    return ordered[max(math.ceil(round(len(ordered) * share, 9)), 1) - 1]


def lows(times, share):
    """Frame time of a low by each definition, worked out anew."""
    ordered = sorted(times)
    place = (len(ordered) - 1) * (1 - share)
    below = int(place)
    above = min(below + 1, len(ordered) - 1)
    worst = ordered[-math.ceil(round(len(ordered) * share, 9)):]
    total, filled, integral = sum(ordered), 0.0, None
    for time in reversed(ordered):
        filled += time
        if integral is None and filled >= total * share:
            integral = time
    return {"percentile": nearest(ordered, 1 - share),
            "percentile_interpolated": ordered[below] + (place - below) * (ordered[above] - ordered[below]),
            "mean_of_worst": sum(worst) / len(worst), "integral": integral}


def stutters(times):
    """Indexes of the stutters, worked out anew."""
    found = []
    for index, time in enumerate(times):
        around = sorted(times[max(index - 15, 0):index + 16])
        middle = around[len(around) // 2]
        if time > 2 * middle and time >= middle + 4:
            found.append(index)
    return found


class RecordingCase:
    def hold_report(self, path):
        head, frames, sensors, end = read_recording(path)
        times = [row["frame"] for row in frames if row["frame"] is not None]
        code, output = self.programs.ask("report", "--json", self.told(path))
        self.assertEqual(code, 0, output)
        report = json.loads(output)[0]
        self.assertEqual(report["frames"], len(times))
        self.assertEqual(report["recorded"], head)
        self.assertEqual(report["end"], end)
        self.assertAlmostEqual(report["seconds"], sum(times) / 1000, 4)
        self.assertAlmostEqual(report["fps"]["average"], 1000 * len(times) / sum(times), 4)
        self.assertAlmostEqual(report["fps"]["minimum"], 1000 / max(times), 4)
        self.assertAlmostEqual(report["fps"]["maximum"], 1000 / min(times), 4)
        for name, share in (("p50", 0.5), ("p95", 0.95), ("p99", 0.99), ("p99.9", 0.999)):
            self.assertAlmostEqual(report["frame_ms"][name], nearest(sorted(times), share), 5, name)
        for share, name in ((0.01, "1%"), (0.001, "0.1%")):
            for kind, value in lows(times, share).items():
                self.assertAlmostEqual(report["lows"][kind][name]["frame_ms"], value, 5, f"{name} {kind}")
                self.assertAlmostEqual(report["lows"][kind][name]["fps"], 1000 / value, 4, f"{name} {kind}")
        known = [row for row in frames if row["frame"] is not None]
        self.assertEqual([round(row["time_ms"], 4) for row in report["stutters"]],
                         [round(known[i]["time"], 4) for i in stutters(times)])
        self.assertEqual({row["name"] for row in report["sensors"]}, {name for _, name, _ in sensors})
        return report, frames

    def record(self, *words):
        return self.programs.start([*self.programs.wrapper, self.programs.companion, "record", *words])

    def host(self, *more):
        """A host that waits for the file "go" ahead of its first frame."""
        ready, go = self.programs.folder / "ready", self.programs.folder / "go"
        process = self.start("--frames", str(FRAMES), "--fps-cap", "120", "--stutter", f"{STUTTER_MS}@{EVERY}", "--idle",
                             "--ready-file", ready, "--wait-file", go, *more)
        wait_until(ready.exists)
        return process, go

    def test_one_line_says_what_is_wrong(self):
        code, output = self.programs.ask("record", "-o", self.told(self.programs.folder / "none.csv"))
        self.assertEqual((code, output), (3, "orvin-osd: no running program carries the overlay\n"))
        self.assertFalse((self.programs.folder / "none.csv").exists())
        odd = self.programs.folder / "odd.csv"
        odd.write_bytes(b"\0\xff" * 5000)
        code, output = self.programs.ask("report", "--text", self.told(odd))
        self.assertEqual(code, 1, output)
        self.assertRegex(output, r"odd\.csv: line 1: the line is too long\n$")
        code, output = self.programs.ask("report", "--text", self.told(self.programs.folder / "absent.csv"))
        self.assertEqual(code, 3, output)


class Linux(RecordingCase, unittest.TestCase):
    def setUp(self):
        screen = Display()
        self.programs = LinuxPrograms(screen.__enter__())
        self.addCleanup(screen.__exit__)
        self.addCleanup(self.programs.close)

    def told(self, path):
        return str(path)

    def start(self, *words):
        return self.programs.with_overlay([LINUX / "host_glx", *words])

    def requests(self):
        path = next(pathlib.Path("/dev/shm").glob(f"*Shared*{self.programs.folder.name}*"))
        with open(path, "rb") as file:
            file.seek(REQUESTS)
            return [struct.unpack("<4I", file.read(16)) for _ in range(15)]

    def await_question(self):
        wait_until(lambda: any(row[0] and row[1] for row in self.requests()))

    def test_a_pattern_is_recorded_and_the_report_agrees_with_an_independent_one(self):
        path, stamps = self.programs.folder / "rec.csv", self.programs.folder / "stamps"
        process, go = self.host("--stamps", self.told(stamps))
        recorder = self.record("-o", self.told(path), "--interval", "50")
        wait_until(lambda: "recording" in recorder.log.read_text(errors="replace") or recorder.poll() is not None)
        self.await_question()
        go.touch()
        self.assertEqual(process.wait(300), 0)
        self.assertEqual(recorder.wait(300), 0, recorder.log.read_text())
        head, _, sensors, end = read_recording(path)
        self.assertEqual(end, "program ended")
        self.assertTrue(head["gl renderer"] and head["profile"] and head["system"], head)
        self.assertTrue(sensors)
        report, frames = self.hold_report(path)
        self.assertEqual(report["lost"], 0)
        numbers = [row["number"] for row in frames]
        self.assertEqual(numbers, list(range(numbers[0], FRAMES + 1)), "every frame to the program's last one")
        self.hold_pattern(frames, report, stamps)
        page = self.programs.folder / "rec.html"
        code, output = self.programs.ask("report", self.told(path), "-o", self.told(page))
        self.assertEqual((code, output), (0, ""))
        self.assertIn("</html>", page.read_text(encoding="utf-8"))
        code, output = self.programs.ask("report", self.told(path), "-o", self.told(page))
        self.assertEqual(code, 1, output)
        self.assertIn("--force", output)

    def hold_pattern(self, frames, report, stamps):
        """The scripted sleeps are the frames behind them, and each of them is found."""
        scripted = [row for row in frames if row["number"] % EVERY == 1 and row["number"] > 1 and row["frame"]]
        self.assertTrue(scripted)
        found = {round(row["time_ms"], 4) for row in report["stutters"]}
        for row in scripted:
            self.assertGreaterEqual(row["frame"], STUTTER_MS)
            self.assertIn(round(row["time"], 4), found, row)
        self.hold_stamps(frames, [int(line) / 1e6 for line in stamps.read_text().split()])

    def hold_stamps(self, frames, ends):
        """The program's own look at the clock falls between the end of a swap and the next frame's beginning."""
        ends = {row["number"]: ends[row["number"] - 1] for row in frames}
        begin = min(ends[row["number"]] - row["time"] - row["swap"] for row in frames if row["swap"])
        for row, following in zip(frames, frames[1:]):
            if row["swap"]:
                self.assertGreaterEqual(ends[row["number"]] - begin + 0.001, row["time"] + row["swap"])
            self.assertLessEqual(ends[row["number"]] - begin, following["time"] + 0.001)

    def test_ctrl_c_and_the_time_end_a_recording_whole(self):
        process, go = self.host("--frames", "100000")
        go.touch()
        path = self.programs.folder / "a.csv"
        recorder = self.record(str(process.pid), "-o", str(path))
        wait_until(lambda: path.exists() and "\nframe," in path.read_text())
        recorder.send_signal(signal.SIGINT)
        self.assertEqual(recorder.wait(300), 0, recorder.log.read_text())
        self.assertEqual(read_recording(path)[3], "stopped")
        code, output = self.programs.ask("record", "--seconds", "1", "-o", str(path))
        self.assertEqual(code, 1, output)
        self.assertIn("exists; --force writes over it", output)
        code, output = self.programs.ask("record", "--seconds", "1", "--force", "-o", str(path))
        self.assertEqual(code, 0, output)
        self.assertRegex(output, r"a\.csv: \d+ frames, 0 lost, [\d.]+ seconds\n$")
        self.assertEqual(read_recording(path)[3], "time over")

    def test_a_full_disk_and_a_folder_that_is_not_there_are_one_line(self):
        process, go = self.host("--frames", "100000")
        go.touch()
        code, output = self.programs.ask("record", "--seconds", "5", "-o", "/dev/full")
        self.assertEqual(code, 1, output)
        self.assertTrue(output.endswith("\norvin-osd: cannot write /dev/full: No space left on device\n"), output)
        code, output = self.programs.ask("record", "--seconds", "5", "-o", str(self.programs.folder / "no/where.csv"))
        self.assertEqual(code, 1, output)
        self.assertRegex(output, r"\norvin-osd: cannot write .*where\.csv: No such file or directory\n$")

    def test_a_reader_that_is_killed_and_started_again_goes_on(self):
        process, go = self.host("--frames", "100000")
        go.touch()
        first, second = self.programs.folder / "first.csv", self.programs.folder / "second.csv"
        recorder = self.record("-o", str(first))
        wait_until(lambda: first.exists() and "\nframe," in first.read_text())
        recorder.kill()
        recorder.wait(20)
        code, output = self.programs.ask("report", "--text", str(first))
        self.assertEqual(code, 0, output)
        self.assertIn("the file breaks off", output)
        code, output = self.programs.ask("record", "--seconds", "1", "-o", str(second))
        self.assertEqual(code, 0, output)
        self.assertGreater(read_recording(second)[1][0]["number"], read_recording(first)[1][-1]["number"])
        self.assertIsNone(process.poll())

    def test_figures_are_published_while_a_feed_reads_the_frames(self):
        process, go = self.host("--frames", "100000")
        go.touch()
        feed = self.programs.start([self.programs.companion, "feed", "--interval", "50", "--frames", "host_glx"])
        names = ("AVG_FRAME#0", "P1_FRAME#0", "P01_FRAME#0", "STUTTER_CNT#0")

        def published():
            code, output = self.programs.ask("names", "--json")
            self.assertEqual(code, 0, output)
            rows = {row["name"]: row["value"] for row in json.loads(output) if row["published"]}
            return rows if all(rows.get(name) for name in names) else None

        def stuttered():
            rows = published()
            return rows if rows and rows["P01_FRAME#0"] <= 10 * 1000 / STUTTER_MS else None

        rows = wait_until(stuttered)  # a frame that took the scripted time
        self.assertLessEqual(rows["P01_FRAME#0"], rows["P1_FRAME#0"])
        self.assertLessEqual(rows["P1_FRAME#0"], rows["AVG_FRAME#0"])
        self.assertGreater(rows["STUTTER_CNT#0"], 0)
        self.programs.end(process)
        wait_until(lambda: published() is None)
        feed.send_signal(signal.SIGINT)
        feed.wait(20)

    @unittest.skipUnless(shutil.which("chromium"), "there is no chromium")
    def test_a_browser_shows_the_page(self):
        path, page = self.programs.folder / "a.csv", self.programs.folder / "a.html"
        process, go = self.host("--frames", "100000")
        go.touch()
        code, output = self.programs.ask("record", "--seconds", "2", "-o", str(path))
        self.assertEqual(code, 0, output)
        self.assertEqual(self.programs.ask("report", str(path), "-o", str(page))[0], 0)
        with tempfile.TemporaryDirectory() as profile:
            shown = subprocess.run(["chromium", "--headless=new", "--no-sandbox", "--disable-gpu",
                                    f"--user-data-dir={profile}", "--dump-dom", page.as_uri()], capture_output=True,
                                   text=True, timeout=180)
        self.assertEqual(shown.returncode, 0, shown.stderr)
        for piece in ("host_glx", "average rate", "integral over time", "</svg>", "</footer>"):
            self.assertIn(piece, shown.stdout)


class Wine(RecordingCase, unittest.TestCase):
    def setUp(self):
        screen = Display()
        self.programs = WinePrograms(screen.__enter__())
        self.addCleanup(screen.__exit__)
        self.addCleanup(self.programs.close)

    def told(self, path):
        return "Z:" + str(path).replace("/", "\\")

    def start(self, *words):
        return self.programs.with_overlay([WIN64 / "host_wgl.exe", "--await-detour", *words])

    def hold_pattern(self, frames, report):
        """Which of the program's frames is the first one is not known here, but the sleeps lie as far apart as there."""
        found = {round(row["time_ms"], 4) for row in report["stutters"]}
        slept = {row["number"] for row in frames if row["frame"] and row["frame"] >= STUTTER_MS}
        recorded = range(frames[0]["number"] + 1, frames[-1]["number"] + 1)
        starts = [first for first in range(EVERY) if all(n in slept for n in recorded if n % EVERY == first)]
        self.assertTrue(starts, sorted(slept))
        for row in frames:
            if row["number"] in slept and row["number"] % EVERY in starts:
                self.assertIn(round(row["time"], 4), found, row)

    def test_a_pattern_is_recorded_and_the_report_agrees_with_an_independent_one(self):
        """The words of a recorder come at its end only here, so it records a program that runs already."""
        path = self.programs.folder / "rec.csv"
        process, go = self.host("--frames", "100000")
        go.touch()
        self.programs.wait_for_overlay(process)
        code, output = self.programs.ask("record", "--seconds", "6", "--interval", "50", "-o", self.told(path))
        self.assertEqual(code, 0, output)
        self.assertRegex(output, r"rec\.csv: \d+ frames, 0 lost, [\d.]+ seconds\s*$")
        head, _, sensors, end = read_recording(path)
        self.assertEqual(end, "time over")
        self.assertTrue(head["gl renderer"] and head["profile"] and head["system"], head)
        report, frames = self.hold_report(path)
        self.assertEqual(report["lost"], 0)
        self.assertEqual([row["number"] for row in frames], list(range(frames[0]["number"], frames[-1]["number"] + 1)))
        self.assertGreater(len(frames), 2 * EVERY)
        self.hold_pattern(frames, report)
        self.assertIsNone(process.poll())
