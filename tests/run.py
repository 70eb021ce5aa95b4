#!/usr/bin/env python3
"""Runs all tests from cheap to dear and prints one closing line "N passed, N failed".

Stages: house (rules of the code base), unit (both compilers; Linux under address and undefined-behaviour
sanitizers, with bounded fuzz runs, Windows under Wine), gl (real contexts), threads (a program that
swaps on four threads, under the thread sanitizer), cost, e2e (host programs with the overlay on
both platforms).
A stage with a failure ends the run.
"""
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests"))
from e2e.environment import Display, LinuxPrograms, STATE, prepare  # noqa: E402

STAGES = ["house", "unit", "gl", "threads", "cost", "e2e"]
GTEST_PASSED = re.compile(r"\[  PASSED  \] (\d+) test")
GTEST_FAILED = re.compile(r"^\[  FAILED  \] [\w/.]+(?:, where.*)?(?: \(\d+ ms\))?$", re.M)


def run(command, log, env=None, timeout=1500):
    """Runs a command with its output in a file; returns (exit code, output)."""
    with open(log, "wb") as out:
        try:
            code = subprocess.run(command, stdout=out, stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL,
                                  env={**os.environ, **(env or {})}, cwd=ROOT, timeout=timeout).returncode
        except subprocess.TimeoutExpired:
            code = 124
    return code, log.read_text(errors="replace")


def report(name, passed, failed, output=""):
    print(f"{'ok  ' if not failed else 'FAIL'} {name}: {passed} passed, {failed} failed", flush=True)
    if failed:
        print(output[-6000:])
    return passed, failed


def gtest(name, command, env=None):
    code, output = run(command, STATE / f"{name}.log", env)
    passed = sum(int(n) for n in GTEST_PASSED.findall(output))
    failed = len(set(GTEST_FAILED.findall(output)))
    if code and not failed or not passed:
        failed = max(failed, 1)
    return report(name, passed, failed, output)


def build(preset):
    code, output = run(["./orvin", "build", preset], STATE / f"test-build-{preset}.log", timeout=2400)
    if code:
        print(output[-6000:])
        raise SystemExit(f"build {preset} failed\n0 passed, 1 failed")


def house():
    code, output = run(["/usr/bin/python3", "tests/house/check.py"], STATE / "house.log")
    passed = int(re.search(r"(\d+) rules hold", output).group(1)) if "rules hold" in output else 0
    return report("house", passed, output.count("BROKEN") or int(code != 0), output)


def programs(preset, pattern, suffix=""):
    return sorted((ROOT / "build" / preset / "tests").glob(pattern + suffix))


SANITIZER = {"ASAN_OPTIONS": "detect_leaks=1:allocator_may_return_null=1",
             "UBSAN_OPTIONS": "print_stacktrace=1:halt_on_error=1",
             "LSAN_OPTIONS": f"suppressions={ROOT}/tests/support/leaks.supp"}


def fuzz(program):
    code, output = run([str(program)], STATE / f"{program.name}.log", SANITIZER)
    return report(f"linux-asan-{program.name}", int(code == 0), int(code != 0), output)


def executable(path):
    return path.is_file() and os.access(path, os.X_OK)


def unit():
    build("linux-asan")
    build("win64")
    prepare()
    with Display() as display:
        env = {"DISPLAY": display, "LIBGL_ALWAYS_SOFTWARE": "1"}
        for program in filter(executable, programs("linux-asan", "unit_*")):
            yield gtest(f"linux-asan {program.name}".replace(" ", "-"), [str(program)], {**env, **SANITIZER})
        yield from map(fuzz, filter(executable, programs("linux-asan", "fuzz_*")))
        for program in programs("win64", "unit_*", ".exe"):
            yield gtest(f"win64-{program.stem}", ["cmake/wine-run", str(program)], env)


def gl():
    build("linux-asan")
    # The leak check stops all threads to look at them; the software driver's, inside generated code, crash its tracer.
    env = {"LIBGL_ALWAYS_SOFTWARE": "1", "EGL_PLATFORM": "surfaceless", **SANITIZER,
           "ASAN_OPTIONS": SANITIZER["ASAN_OPTIONS"].replace("detect_leaks=1", "detect_leaks=0")}
    yield gtest("linux-asan-gl_tests", [str(ROOT / "build/linux-asan/tests/gl_tests")], env)


# The driver's mutexes and what it calls of the C library are its own: it is not instrumented, and is unloaded before the end.
TSAN = {"TSAN_OPTIONS": "exitcode=66:report_mutex_bugs=0:detect_deadlocks=0:ignore_noninstrumented_modules=1:"
                        f"suppressions={ROOT}/tests/support/threads.supp", "LP_NUM_THREADS": "0"}
THREADED = {"swapping": ["--frames", "1500"], "remaking": ["--frames", "300", "--remake-context", "20"],
            "staying": ["--frames", "1500"]}


def threads():
    """The library itself in a program of four threads. A race shows only where two frames meet, so there are many."""
    build("linux-tsan")
    folder = ROOT / "build/linux-tsan/bin"
    with Display() as display:
        for name, switches in THREADED.items():
            with LinuxPrograms(display) as programs:
                programs.show("Bench")
                if name == "staying":
                    (programs.data / "OSD.ini").write_text("[HostCare]\nStayWithSurface=1\n")
                code, output = programs.run([folder / "host_glx", "--threads", "4", "--size", "320x240", *switches], 60,
                                            LD_PRELOAD=str(folder / "libORVIN-OSD64-GL-preload.so"), **TSAN)
            yield report(f"linux-tsan-{name}", int(code == 0), int(code != 0), output)


def cost():
    build("linux-release")
    code, output = run(["/usr/bin/python3", "bench/check", "build/linux-release"], STATE / "cost.log")
    failed = len(re.findall(r"^FAIL ", output, re.M))
    yield report("cost", len(re.findall(r"^ok ", output, re.M)), failed or int(code != 0), output)


def e2e():
    build("linux-release")
    build("win64")
    prepare()
    code, output = run(["/usr/bin/python3", "-m", "unittest", "discover", "-v", "-s", "tests/e2e", "-t", "tests",
                        "-p", "test_*.py"], STATE / "e2e.log", timeout=3600)
    ran = re.search(r"Ran (\d+) tests?", output)
    bad = re.search(r"FAILED \((.*)\)", output)
    failed = sum(int(n) for n in re.findall(r"(?:failures|errors)=(\d+)", bad.group(1))) if bad else int(code != 0)
    skipped = re.search(r"skipped=(\d+)", output)
    total = int(ran.group(1)) if ran else 0
    yield report("e2e", total - failed - (int(skipped.group(1)) if skipped else 0), failed or int(total == 0), output)


def main(wanted):
    passed = failed = 0
    for stage in [s for s in STAGES if not wanted or s in wanted]:
        outcome = globals()[stage]()
        for p, f in [outcome] if isinstance(outcome, tuple) else outcome:
            passed, failed = passed + p, failed + f
        if failed:
            break
    if passed == 0:
        failed = max(failed, 1)
    print(f"{passed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
