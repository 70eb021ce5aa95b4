"""Limits of drawing with key MergedDraw of [HostCare], alone and with the other keys. Used by bench/check."""
from measure import DATA, SIXTIETH, Bench

LAYOUTS = ("Boxes8", "Boxes37", "Boxes80")
DRAWING_CALLS = 12  # beyond what a layout without controls makes: a bind and a draw for shapes and for each font
NOISE = 0.02
CONTROL_READS_PER_SECOND = 20  # of the control block, each a system call
# With all keys, over the bare program: instructions a frame by driver, and all GL calls of a frame.
INSTRUCTIONS = {"A": {"null": 5000, "noop": 40000}, "B": {"null": 8000, "noop": 60000}}
CALLS = {"A": 60, "B": 60, "Boxes80": 60, "Items4096": 149}


def drawing_calls(row, empty):
    """GL calls by name that the drawing of controls adds to a frame."""
    names = set(row["by_name"]) | set(empty["by_name"])
    added = {n: round(row["by_name"].get(n, 0) - empty["by_name"].get(n, 0), 6) for n in names}
    return {n: v for n, v in sorted(added.items()) if v}


def hold_merged(build, hold):
    with Bench(build) as bench:
        (bench.folder / DATA / "OSD.ini").write_text("[HostCare]\nMergedDraw = 1\n")
        bare, empty = bench.counts("bare", step="0"), bench.counts("Empty", step="0")
        bare_system, seen = bench.system_calls("bare"), {}
        for layout in LAYOUTS:
            row = bench.counts(layout, step="0")
            seen[layout] = drawing_calls(row, empty)
            total = sum(seen[layout].values())
            hold(f"{layout}, merged: draws", seen[layout].get("glDrawElements", 0) >= 2, seen[layout])
            hold(f"{layout}, merged: at most {DRAWING_CALLS} calls for its controls", total <= DRAWING_CALLS, f"{total:g}")
            asked = [n for n in seen[layout] if n.startswith(("glGet", "glIs", "glMap", "glFinish"))]
            hold(f"{layout}, merged: asks the driver nothing", not asked, asked)
            hold(f"{layout}, merged: no allocation", row["allocations"] == bare["allocations"], row["allocations"])
            system = bench.system_calls(layout) - bare_system
            hold(f"{layout}, merged: no system call", abs(system) < NOISE, system)
        hold("merged: the number of boxes does not matter", len({str(s) for s in seen.values()}) == 1, seen)


def hold_all_keys(build, hold):
    """As shipped: every key is 1. Values and graphs change at their intervals, at 60 frames a second."""
    with Bench(build, care=True) as bench:
        bare, bare_system = bench.counts("bare"), bench.system_calls("bare", step=SIXTIETH)
        for layout, most in CALLS.items():
            row = bench.counts(layout)
            calls = row["gl_calls"] - bare["gl_calls"]
            hold(f"{layout}, all keys: at most {most} GL calls", calls <= most, f"{calls:g}")
            hold(f"{layout}, all keys: draws", row["by_name"].get("glDrawElements", 0) >= 2, row["by_name"])
            hold(f"{layout}, all keys: no allocation", row["allocations"] == bare["allocations"], row["allocations"])
            system = bench.system_calls(layout, step=SIXTIETH) - bare_system
            hold(f"{layout}, all keys: no system call but the reading of the control block",
                 system <= CONTROL_READS_PER_SECOND / 60 + NOISE, system)
        for driver in ("null", "noop"):
            bare_instructions = bench.instructions("bare", driver)
            for layout, limits in INSTRUCTIONS.items():
                taken = bench.instructions(layout, driver) - bare_instructions
                hold(f"{layout}, all keys, {driver}: at most {limits[driver]} instructions a frame",
                     taken <= limits[driver], f"{taken:.0f}")
