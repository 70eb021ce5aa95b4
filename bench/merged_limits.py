"""Limits of drawing with key MergedDraw of [HostCare]. Used by bench/check."""
from measure import DATA, Bench

LAYOUTS = ("Boxes8", "Boxes37", "Boxes80")
DRAWING_CALLS = 12  # beyond what a layout without controls makes: a bind and a draw for shapes and for each font
NOISE = 0.02


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
