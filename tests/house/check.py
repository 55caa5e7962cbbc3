"""Checks of the house: each prints what breaks its rule, and fails if anything does.

    check.py layers|sizes|registered|words|headers SOURCE_DIR BUILD_DIR
"""

import concurrent.futures
import json
import os
import pathlib
import re
import subprocess
import sys

# Who may include whom: a folder of src/ (the longest name that fits counts) and the folders it may
# take headers from, besides its own.
LAYERS = {
    "Models": [],
    "Platform": ["Models"],
    "Solver/Geometry": ["Models"],
    "Solver/Flow": ["Models"],
    "Solver/Surface": ["Models", "Solver/Geometry"],
    "Solver/Tools": ["Models", "Platform", "Solver/Geometry", "Solver/Flow", "Solver/Surface"],
    "Solver/Run": ["Models", "Platform", "Solver"],
    "Rendering": ["Models", "Platform", "Solver/Geometry", "Solver/Flow", "Brand"],
    "Brand": ["Models"],
    "Update": ["Models", "Platform", "Solver"],
    "Ostrella": ["Models", "Platform", "Solver", "Rendering", "Brand", "Update", "Views"],
    "Views": ["Models", "Platform", "Solver", "Rendering", "Brand", "Update", "Ostrella"],
    "Batch": ["Models", "Platform", "Solver", "Rendering", "Ostrella"],
}
# The numerics: plain C++ that can be tested, fuzzed and measured alone.
WITHOUT_QT = ["Solver/Geometry", "Solver/Flow", "Solver/Surface"]
INCLUDE = re.compile(r'^\s*#\s*include\s+(["<])([^">]+)[">]', re.MULTILINE)

MOST_SOURCE_LINES = 500
MOST_TEST_LINES = 600


def sources(root, *folders):
    for folder in folders:
        for path in sorted((root / folder).rglob("*")):
            if path.suffix in (".cpp", ".h", ".mm"):
                yield path


def layer_of(name):
    fitting = [layer for layer in LAYERS if name == layer or name.startswith(layer + "/")]
    return max(fitting, key=len) if fitting else None


def includes(path):
    return [(kind == '"', name) for kind, name in INCLUDE.findall(path.read_text(encoding="utf-8"))]


def check_layers(root, _build):
    src = root / "src"
    graph = {}
    for path in sources(root, "src"):
        own = layer_of(path.relative_to(src).parent.as_posix())
        if own is None:
            yield f"{path.relative_to(root)}: its folder is in no layer"
            continue
        for is_ours, name in includes(path):
            if not is_ours:
                if own in WITHOUT_QT and re.match(r"Q[A-Z]|Qt", name):
                    yield f"{path.relative_to(root)}: {own} is plain C++, yet includes <{name}>"
                continue
            if not (src / name).is_file():
                yield f'{path.relative_to(root)}: "{name}" is no header of src/'
                continue
            graph.setdefault(path.relative_to(src).as_posix(), []).append(name)
            other = pathlib.PurePosixPath(name).parent.as_posix()
            allowed = LAYERS[own] + [own]
            if not any(other == a or other.startswith(a + "/") for a in allowed):
                yield f'{path.relative_to(root)}: {own} may not include "{name}"'
    yield from circles(graph)


def circles(graph):
    state = {}

    def visit(name, trail):
        if state.get(name) == "done":
            return
        if state.get(name) == "open":
            yield "circle of includes: " + " -> ".join(trail[trail.index(name):] + [name])
            return
        state[name] = "open"
        for other in graph.get(name, []):
            yield from visit(other, trail + [name])
        state[name] = "done"

    for name in sorted(graph):
        yield from visit(name, [])


def check_sizes(root, _build):
    for folders, most in ((("src", "preview-solver", "generators"), MOST_SOURCE_LINES),
                          (("tests", "bench"), MOST_TEST_LINES)):
        for path in sources(root, *folders):
            lines = len(path.read_text(encoding="utf-8").splitlines())
            if lines > most:
                yield f"{path.relative_to(root)}: {lines} lines ask to be divided (at most {most})"


def check_registered(root, build):
    """Every source of ours takes part in the build, so that no test file can be forgotten."""
    commands = json.loads((build / "compile_commands.json").read_text(encoding="utf-8"))
    built = {pathlib.Path(entry["file"]).resolve() for entry in commands}
    for path in sources(root, "src", "tests", "preview-solver", "generators"):
        foreign = path.suffix == ".mm" or re.search(r"_(mac|windows)\.cpp$", path.name)
        if path.suffix != ".h" and not foreign and path.resolve() not in built:
            yield f"{path.relative_to(root)}: is built by nothing"


def check_words(root, _build):
    unfinished = re.compile(r"\b(TODO|FIXME|XXX|HACK)\b|^\s*#\s*if 0", re.MULTILINE)
    listed = subprocess.run(["git", "-C", root, "ls-files"], capture_output=True, text=True, check=True)
    for name in listed.stdout.splitlines():
        path = root / name
        if path == pathlib.Path(__file__).resolve() or path.suffix not in (
                ".cpp", ".h", ".mm", ".qml", ".py", ".txt", ".cmake", ".md", ".geo", ".cfg", ""):
            continue
        if not path.is_file():
            continue
        try:
            text = path.read_text(encoding="utf-8")
        except UnicodeDecodeError:
            continue
        for match in unfinished.finditer(text):
            yield f"{name}: {match.group(0).strip()} is work left undone"


def check_headers(root, build):
    """Every header of src/ compiles alone."""
    commands = json.loads((build / "compile_commands.json").read_text(encoding="utf-8"))
    jobs = []
    for folder in sorted({path.parent for path in sources(root, "src") if path.suffix == ".h"}):
        near = [c for c in commands if pathlib.Path(c["file"]).parent == folder]
        if not near:
            continue
        # The command with the most places to look covers what the folder's targets need.
        words = max((c["command"].split() for c in near), key=len)
        flags = [f for f in words if f.startswith(("-I", "-D", "-std", "-f"))]
        for here, there in zip(words, words[1:]):
            if here == "-isystem":
                flags += [here, there]
        for header in sorted(folder.glob("*.h")):
            jobs.append((header, ["c++", *flags, "-fsyntax-only", "-x", "c++", str(header)]))
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        results = pool.map(lambda job: subprocess.run(job[1], capture_output=True, text=True), jobs)
        for (header, _), run in zip(jobs, results):
            if run.returncode != 0:
                first = next((l for l in run.stderr.splitlines() if "error" in l), "")
                yield f"{header.relative_to(root)}: does not compile alone: {first}"


def main():
    check = globals()[f"check_{sys.argv[1]}"]
    failures = list(check(pathlib.Path(sys.argv[2]).resolve(), pathlib.Path(sys.argv[3]).resolve()))
    for failure in failures:
        print(f"FAIL {failure}")
    print(f"{sys.argv[1]}: {'OK' if not failures else f'{len(failures)} failures'}")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
