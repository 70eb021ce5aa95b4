#!/usr/bin/env python3
"""Rules of the code base that a machine can hold. Prints each broken rule with its places, then the count that hold."""
import concurrent.futures
import pathlib
import re
import statistics
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
FLOORS = ("platform", "base", "shared", "draw", "font", "controls", "batch", "merged", "config", "capture", "frame", "entry",
          "companion", "tools")
PORTABLE = tuple(floor for floor in FLOORS if floor != "platform")
OS_USE = re.compile(r"^\s*#\s*include\s*<(windows|winsock|X11/|GL/glx|EGL/|sys/|unistd|pthread|dlfcn)|_WIN32|__linux__|__MINGW")
SPEECH = re.compile(r"\bParts? [1-7]\.[0-9]+\b|\bspec\.md\b|\bthe spec(ification)?\b|\bSubsystem [1-7]\b")
UNFINISHED = re.compile(r"\b(TO" r"DO|FIX" r"ME|HA" r"CK|not imple" r"mented)\b")
MACHINE = re.compile(r"/work/(main|shared)|/root/|/tmp/b-|/tmp/st-")
# What a CMake file calls otherwise than third_party/README.md; the system's own parts stand under the package with their headers.
LINKED_NAMES = {"GTest": "libgtest-dev", "nlohmann_json": "nlohmann-json", "PNG": "libpng", "png16": "libpng", "z": "zlib",
                "JPEG": "libjpeg-turbo", "jpeg": "libjpeg-turbo", "TIFF": "libtiff", "tiff": "libtiff", "GIF": "giflib",
                "gif": "giflib", "deflate": "libdeflate", "brotlidec": "brotli", "brotlicommon": "brotli",
                "OpenGL": "libgl-dev", "X11": "libx11-dev", "Threads": "gcc runtime", "Python3": "python3"}
LARGEST_KNOT = 8
LONGEST_FUNCTION, MEDIAN_FUNCTION, LONGEST_FILE = 100, 12, 1000


def tracked(*suffixes):
    names = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, capture_output=True,
                           text=True, check=True).stdout.split("\n")
    return [ROOT / n for n in names if n and n.endswith(suffixes) and (ROOT / n).is_file()]


def lines_matching(pattern, paths):
    for path in paths:
        for number, line in enumerate(path.read_text(errors="replace").splitlines(), 1):
            if pattern.search(line):
                yield f"{path.relative_to(ROOT)}:{number}: {line.strip()[:120]}"


def is_portable(path):
    """The core and the tools; the library's entry points are of one system each."""
    parts = path.relative_to(ROOT).parts
    return parts[0] in PORTABLE and parts[1] not in ("win32", "linux")


def formatting():
    files = [str(p) for p in tracked(".cpp", ".h")]
    done = subprocess.run(["clang-format", "--dry-run", "-Werror", *files], capture_output=True, text=True)
    return sorted({line.split(":")[0].replace(str(ROOT) + "/", "") for line in done.stderr.splitlines()
                   if "code should be clang-formatted" in line})


def portable_core():
    return list(lines_matching(OS_USE, [p for p in tracked(".cpp", ".h") if is_portable(p)]))


def wide_characters():
    return list(lines_matching(re.compile(r"\bwchar_t\b"),
                               [p for p in tracked(".cpp", ".h") if is_portable(p)]))


def compiles_alone(path):
    windows = "win32" in path.parts
    compiler = "x86_64-w64-mingw32-g++-posix" if windows else "g++"
    extra = ["-isystem", str(ROOT / "build/third_party/glew/include"), "-isystem",
             str(ROOT / "build/third_party/zydis/include"), "-isystem",
             str(ROOT / "build/third_party/zycore-include")] if windows else []
    done = subprocess.run([compiler, "-std=gnu++20", "-fsyntax-only", "-Wall", "-Wextra", "-DGLEW_STATIC",
                           "-DGLEW_NO_GLU", "-DZYDIS_STATIC_BUILD", "-DZYCORE_STATIC_BUILD", "-DZYAN_NO_LIBC", *extra,
                           "-I", str(ROOT), "-x", "c++", "-include", str(path), "/dev/null"],
                          capture_output=True, text=True)
    return f"{path.relative_to(ROOT)}: {done.stderr.splitlines()[0]}" if done.returncode else None


def headers_alone():
    headers = [p for p in tracked(".h") if p.relative_to(ROOT).parts[0] in PORTABLE + ("platform",)]
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        return [r for r in pool.map(compiles_alone, headers) if r]


def includes(path):
    """(line, path in the tree without its suffix) of each header of our own that the file includes."""
    for number, line in enumerate(path.read_text().splitlines(), 1):
        named = re.match(r'#include "([\w/-]+)\.h"', line)
        if named and (ROOT / (named[1] + ".h")).is_file():
            yield number, named[1]


def floor_files():
    return [p for p in tracked(".cpp", ".h") if p.relative_to(ROOT).parts[0] in FLOORS]


def folders_look_down():
    rank = {folder: i for i, folder in enumerate(FLOORS)}
    broken = []
    for path in floor_files():
        own = path.relative_to(ROOT).parts[0]
        for number, named in includes(path):
            if rank.get(named.split("/")[0], -1) > rank[own]:
                broken.append(f"{path.relative_to(ROOT)}:{number}: {own} includes {named}.h")
    return broken


def reach(graph, start):
    seen, todo = set(), [start]
    while todo:
        for unit in graph.get(todo.pop(), ()):
            if unit not in seen:
                seen.add(unit)
                todo.append(unit)
    return seen


def knots_stay_small():
    """Units (a header with its source) that need each other all round: few, and inside one folder."""
    graph = {}
    for path in floor_files():
        unit = str(path.relative_to(ROOT).with_suffix(""))
        graph.setdefault(unit, set()).update(named for _, named in includes(path) if named != unit)
    reached = {unit: reach(graph, unit) for unit in graph}
    broken, done = [], set()
    for unit in sorted(graph):
        knot = {other for other in reached[unit] if unit in reached.get(other, ())}
        if unit in done or len(knot) < 2:
            continue
        done |= knot
        if len(knot) > LARGEST_KNOT or len({other.split("/")[0] for other in knot}) > 1:
            broken.append(f"{len(knot)} units: {', '.join(sorted(knot))}")
    return broken


def declared_at_home():
    """A global is declared in the header beside the source that defines it."""
    broken = []
    for header in (p for p in floor_files() if p.suffix == ".h" and p.parts[-2] not in ("linux", "win32", "headless")):
        code = re.sub(r"//.*", "", header.read_text())
        homes = [header.with_suffix(".cpp"), *header.parent.glob(f"*/{header.stem}.cpp"), *header.parent.glob(f"*/log.cpp")]
        text = "".join(home.read_text() for home in homes if home.is_file())
        for declared in re.findall(r"^extern (?!\"C\")([^;(]*?)(?:\[[^;]*)?;", code, re.M):
            for part in re.sub(r"<.*>|\[[^\]]*\]", "", declared.split("=")[0]).split(","):
                name = re.findall(r"\w+", part)[-1]
                if not re.search(rf"^(?!extern)[^\s/#][^;{{]*\b{name}\b", text, re.M):
                    broken.append(f"{header.relative_to(ROOT)}: {name}")
    return broken


def functions(path):
    """(line, length) of each function body: formatting puts its closing brace at the opening line's indent."""
    lines = path.read_text(errors="replace").splitlines()
    for number, line in enumerate(lines):
        opened = re.match(r"^(\s*)[^\s/#}].*\)[\w\s:&>()\-,{}]*\{$", line)
        if not opened or re.match(r"\s*(if|for|while|switch|else|do|namespace|struct|class|enum|extern|catch|try)\b", line):
            continue
        indent = opened.group(1)
        if len(indent) > 4 or "= [" in line or line.lstrip().startswith(("TEST", "return", "static const", "constexpr")):
            continue
        for length, later in enumerate(lines[number + 1:]):
            if later.startswith(indent + "}"):
                yield number + 1, length
                break


def sizes():
    broken, lengths = [], []
    for path in tracked(".cpp", ".h"):
        count = len(path.read_text(errors="replace").splitlines())
        if count > LONGEST_FILE:
            broken.append(f"{path.relative_to(ROOT)}: {count} lines")
        for line, length in functions(path):
            lengths.append(length)
            if length > LONGEST_FUNCTION:
                broken.append(f"{path.relative_to(ROOT)}:{line}: function of {length} lines")
    if lengths and statistics.median(lengths) > MEDIAN_FUNCTION:
        broken.append(f"median function has {statistics.median(lengths)} lines")
    return broken


def texts():
    return [p for p in tracked(".cpp", ".h", ".md", ".py", ".cmake", ".txt", ".vs", ".fs", ".def", ".map")
            if p.name != "check.py"]


def own_words():
    return list(lines_matching(SPEECH, texts()))


def finished():
    return list(lines_matching(UNFINISHED, texts()))


def no_machine_paths():
    return list(lines_matching(MACHINE, texts()))


def documents_name_files():
    """Links of documents, and paths in them that begin with a folder of the repository, lead somewhere; what holds NAME or
    FOLDER stands for a name of the reader's own. A path may leave the suffix out."""
    folders = {p.relative_to(ROOT).parts[0] for p in tracked("") if p.parent != ROOT}
    broken = []
    for document in tracked(".md"):
        text = re.sub(r"^```.*?^```", "", document.read_text(), flags=re.S | re.M)
        for link in re.findall(r"\]\(([^)#:]+)(?:#[^)]*)?\)", text):
            if not (document.parent / link).exists():
                broken.append(f"{document.relative_to(ROOT)}: link to {link}")
        for path in (path.rstrip("/") for path in re.findall(r"`([\w./*-]+/[\w./*-]*)`", text)):
            if path.split("/")[0] in folders and not re.search("NAME|FOLDER", path) and not any(
                    next(ROOT.glob(path + suffix), None) for suffix in ("", ".*")):
                broken.append(f"{document.relative_to(ROOT)}: {path}")
    return broken


def platform_is_documented():
    """platform/README.md names each header of the seam."""
    text = (ROOT / "platform/README.md").read_text()
    return [f"{path.name} is not in platform/README.md" for path in sorted((ROOT / "platform").glob("*.h"))
            if not re.search(rf"\b{path.stem}\b", text)]


def third_party_is_documented():
    """third_party/README.md has a row for each package of packages.txt, each source of sources.lock with its version,
    and each library that a CMake file looks for."""
    folder = ROOT / "third_party"
    rows = {}
    for row in (folder / "README.md").read_text().splitlines():
        cells = [c.strip(" `") for c in row.strip("|").split("|")]
        if len(cells) > 3:
            rows.setdefault(cells[0].lower(), []).append(cells[1])
    broken = []
    for name in (line for line in (folder / "packages.txt").read_text().split("\n") if line and not line.startswith("#")):
        if name not in rows:
            broken.append(f"packages.txt: {name} has no row")
    for line in (folder / "sources.lock").read_text().splitlines():
        name, version = (line.split() + ["", ""])[:2]
        if name and name != "#" and version not in rows.get(name, []):
            broken.append(f"sources.lock: {name} {version} has no row")
    texts = {p: p.read_text() for p in tracked("CMakeLists.txt", ".cmake")}
    for path, text in texts.items():
        linked = re.findall(r"find_package\((\w+)", text)
        linked += " ".join(re.findall(r"ARCHIVES ([a-z0-9 ]+)", text)).split()
        for name in linked:
            if LINKED_NAMES.get(name, name.lower()) not in rows:
                broken.append(f"{path.relative_to(ROOT)}: {name} has no row")
    return broken


def keeps_say_for_whom():
    """Each comment on an oddity that is kept names for whom, in a word that docs/kept-behaviour.md explains."""
    document = (ROOT / "docs/kept-behaviour.md").read_text()
    words = re.findall(r"^\| `([a-z ]+)` \|", document, re.M)
    paths = tracked(".cpp", ".h", ".inc")
    return list(lines_matching(re.compile(rf"\bKEEP(?!\((?:{'|'.join(words)})\):)"), paths))


def kept_behaviour():
    """Each row of docs/kept-behaviour.md names a test that exists."""
    tests = set()
    for path in tracked(".cpp", ".py"):
        text = path.read_text(errors="replace")
        tests |= {f"{a}.{b}" for a, b in re.findall(r"TEST(?:_F|_P)?\((\w+),\s*(\w+)\)", text)}
        tests |= set(re.findall(r"def (test_\w+)", text))
    broken = []
    document = ROOT / "docs/kept-behaviour.md"
    for row in document.read_text().splitlines() if document.exists() else []:
        cells = [c.strip() for c in row.strip("|").split("|")]
        if len(cells) < 3 or cells[0] in ("what", "") or set(cells[0]) <= {"-"}:
            continue
        names = re.findall(r"`([^`]+)`", cells[-1])
        if not any(n in tests for n in names):
            broken.append(f"no such test: {cells[-1]} ({cells[0]})")
    return broken


RULES = {"sources are formatted": formatting, "the core is free of operating systems": portable_core,
         "UTF-16 text is char16_t": wide_characters, "each header compiles alone": headers_alone, "folders look down": folders_look_down,
         "knots of units stay small": knots_stay_small, "globals are declared at home": declared_at_home,
         "functions and files stay small": sizes, "texts speak for the system itself": own_words,
         "nothing is left unfinished": finished, "no path of one machine": no_machine_paths,
         "documents name files that exist": documents_name_files,
         "services of the platform are documented": platform_is_documented,
         "third-party software is documented": third_party_is_documented,
         "oddities say for whom they are kept": keeps_say_for_whom, "kept behaviour is pinned by tests": kept_behaviour}


def main():
    held = 0
    for name, rule in RULES.items():
        broken = rule()
        held += not broken
        if broken:
            print(f"BROKEN {name}")
            print("\n".join(f"    {line}" for line in broken[:40]))
    print(f"{held} rules hold")
    return 0 if held == len(RULES) else 1


if __name__ == "__main__":
    sys.exit(main())
