"""Both ways of drawing beside each other, and beside MangoHud where it is installed. Used by bench/run."""
import re
import shutil
import subprocess

import measure
from measure import SIXTIETH, Bench

LAYOUTS = {"A": "", "B": "full"}  # and MangoHud's configuration that shows about as much
DRIVERS = ("null", "noop")


def over_bare(bench, mode, driver, bare):
    return bench.instructions(mode, driver) - bare


def mangohud_variables():
    """What its start script puts into a program's environment; empty without it."""
    if not shutil.which("mangohud"):
        return {}
    said = subprocess.run(["mangohud", "--dlsym", "env"], capture_output=True, text=True, check=True).stdout
    pairs = measure.read_pairs(said)
    return {name: pairs[name] for name in ("MANGOHUD", "LD_LIBRARY_PATH", "LD_PRELOAD") if name in pairs}


def mangohud_instructions(bench, config, driver, more):
    """As Bench.instructions, with its library in the place of ours."""
    variables = {**bench.variables("bare", driver), "BENCH_STEP_NS": SIXTIETH, "MANGOHUD": more["MANGOHUD"],
                 **({"MANGOHUD_CONFIG": config} if config else {})}
    for name in ("LD_LIBRARY_PATH", "LD_PRELOAD"):
        variables[name] = ":".join(part for part in (variables.get(name, ""), more.get(name, "")) if part)
    totals = []
    for frames in (measure.FROM, measure.TO):
        _, said = bench.run(["valgrind", "--tool=callgrind", f"--callgrind-out-file={bench.folder}/callgrind",
                             bench.host, "--frames", str(frames)], variables)
        own = re.search(r"==(\d+)== Command:", said).group(1)  # it starts programs, which are counted too
        totals.append(int(re.search(rf"=={own}== Collected : (\d+)", said).group(1)))
    return (totals[1] - totals[0]) / (measure.TO - measure.FROM)


def side_by_side(build, out):
    """Instructions a frame over the bare program."""
    print("\ninstructions a frame over the bare program: keys of [HostCare] all 0, all 1, and MangoHud")
    more = mangohud_variables()
    if not more:
        print("(MangoHud is not installed: no column of its own)")
    with Bench(build) as plain, Bench(build, care=True) as care:
        for driver in DRIVERS:
            bare = plain.instructions("bare", driver)
            for layout, config in LAYOUTS.items():
                row = {"keys_0": over_bare(plain, layout, driver, bare), "keys_1": over_bare(care, layout, driver, bare)}
                # It looks for more in a driver than the null library answers.
                if more and driver == "noop":
                    row["mangohud"] = mangohud_instructions(plain, config, driver, more) - bare
                out.setdefault(driver, {})[layout] = row
                print(f"{driver:6} {layout:8} " + "  ".join(f"{k} {v:10.0f}" for k, v in row.items()), flush=True)
