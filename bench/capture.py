"""What screenshots and video cost. Used by bench/run; alone: bench/capture.py BUILD_DIR [ROUNDS]."""
import json
import os
import pathlib
import subprocess
import sys
import time

from measure import SIXTIETH, Bench, middle

SIZES = {"1920x1080": (1920, 1080), "3840x2160": (3840, 2160)}
# A frame of 1920 by 1080 in a box so small that its drawing costs next to nothing. It is due in each frame of the
# probe's clock, which moves by a sixtieth of a second.
SOURCE = ("--setup", "--size", "1920x1080", "--box", "96x54", "--fps", "100", "--test-pattern")
FRAMES = {"null": 400, "noop": 400, "llvmpipe": 120}
FIRST = 40


def screenshots(build, out, rounds):
    """Reading and turning a frame on the render thread, beside a plain glReadPixels of the same size."""
    print(f"\nscreenshot on the render thread, llvmpipe, ms, medians of {rounds} rounds (middle half)")
    env = {**os.environ, "EGL_PLATFORM": "surfaceless", "LIBGL_ALWAYS_SOFTWARE": "1"}
    for name, size in SIZES.items():
        said = subprocess.run([pathlib.Path(build) / "bench/screenshot_bench", *map(str, size), str(rounds)], env=env,
                              capture_output=True, text=True, check=True).stdout
        out[name] = {key: middle([one / 1000 for one in taken]) for key, taken in json.loads(said).items()}
        print(f"{name:10} " + "  ".join(f"{label} {out[name][key]['median']:7.2f} ({out[name][key]['low']:.2f}-"
                                        f"{out[name][key]['high']:.2f})"
                                        for key, label in (("plain_us", "plain read"), ("read_us", "read"),
                                                           ("flip_us", "flip"))), flush=True)


def frame_cost(bench, driver):
    """Processor microseconds of a frame."""
    said, _ = bench.run([bench.host, "--frames", str(FRAMES[driver]), "--measure-from", str(FIRST), "--size", "1280x720"],
                        bench.variables("Empty", driver, BENCH_STEP_NS=SIXTIETH))
    got = dict(line.split("=", 1) for line in said.splitlines() if "=" in line)
    return int(got["measured_cpu_ns"]) / int(got["measured_frames"]) / 1000


def reads_a_frame(bench):
    """System calls a frame beyond those of a layout without video, by strace."""
    return bench.system_calls("Empty", step=SIXTIETH)


def video(build, out, repeats):
    """One source of 1920 by 1080 whose frame is taken in each frame, over the same layout without it. On the null
    driver only the copy out of the block is left."""
    print(f"\nvideo of 1920x1080, a frame taken in each, processor us a frame, medians of {repeats} rounds (middle half)")
    taken = {driver: {"without": [], "with": []} for driver in FRAMES}
    calls = {}
    for which in ("without", "with"):
        with Bench(build, care=True) as bench:
            writer = None
            if which == "with":
                bench.ask("video", "0", *SOURCE, "--frames", "1")
                writer = subprocess.Popen([bench.companion, "video", "0", "--test-pattern", "--fps", "1"], env=bench.env,
                                          stdout=subprocess.DEVNULL)
                blocks = pathlib.Path("/dev/shm")
                end = time.monotonic() + 60
                while not any(path.stat().st_blocks for path in blocks.glob(f"*Video-0*{bench.folder.name}*")):
                    if time.monotonic() > end:
                        raise SystemExit("bench: the writer of video frames does not start")
                    time.sleep(0.05)
            for _ in range(repeats):
                for driver in FRAMES:
                    taken[driver][which].append(frame_cost(bench, driver))
            calls[which] = reads_a_frame(bench)
            if writer:
                writer.terminate()
                writer.wait(30)
    for driver, both in taken.items():
        row = out[driver] = {which: middle(both[which]) for which in both}
        row["more"] = row["with"]["median"] - row["without"]["median"]
        print(f"{driver:10} without {row['without']['median']:8.0f}  with {row['with']['median']:8.0f} "
              f"({row['with']['low']:.0f}-{row['with']['high']:.0f})  more {row['more']:8.0f}", flush=True)
    out["system_calls"] = calls
    print(f"system calls a frame: without {calls['without']:.2f}, with {calls['with']:.2f}", flush=True)


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    ROUNDS = int(sys.argv[2]) if len(sys.argv) > 2 else 3
    screenshots(sys.argv[1], {}, ROUNDS * 3)
    video(sys.argv[1], {}, ROUNDS)
