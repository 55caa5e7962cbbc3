#!/usr/bin/env python3
"""Times whole programs from an STL file to a picture, and frames after the first, beside their peers.

usage: programs.py BUILD_DIRECTORY [ROUNDS]

All of one row take turns on one virtual display with Mesa's software driver, so that a neighbour's
noise falls on each alike. Medians in seconds: of the whole life and, behind the slash, of the
processor's time, which a neighbour hardly touches. Of frames there is the former only.
"""
import os
import resource
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

SIZE = (1200, 800)


class Display:
    """An Xvfb under a number that it chooses itself."""

    def __enter__(self):
        reading, writing = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", "1400x900x24", "-nolisten", "tcp"],
            pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as answer:
            number = answer.readline().strip()
        if not number:
            sys.exit("Xvfb does not start.")
        return f":{number}"

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()


def run(command, environment):
    """What the command prints, and the seconds of its life and of the processor."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    start = time.monotonic()
    done = subprocess.run(command, env=environment, capture_output=True, text=True)
    seconds = time.monotonic() - start
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    busy = after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime
    if done.returncode != 0:
        sys.exit(f"{command[0]} ends with {done.returncode}: {done.stderr or done.stdout}")
    return done.stdout, (seconds, busy)


def wholeLife(command, picture):
    def measure(environment):
        picture.unlink(missing_ok=True)
        _, times = run(command, environment)
        if not picture.exists():
            sys.exit(f"{command[0]} drew nothing.")
        return times
    return measure


def ownWord(command):
    return lambda environment: (float(run(command, environment)[0]),)


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    build = Path(sys.argv[1]).resolve()
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 7
    tools = build / "bench" / "viewport"
    batch = build / "stage" / "bin" / "ostrella-batch"
    with tempfile.TemporaryDirectory() as folder, Display() as display:
        environment = dict(os.environ, DISPLAY=display, LIBGL_ALWAYS_SOFTWARE="1",
                           QT_QPA_PLATFORM="xcb", XDG_RUNTIME_DIR=folder, LC_ALL="C.UTF-8")
        folder = Path(folder)
        run([tools / "ostrella-make-bench-models", folder], environment)
        picture = folder / "picture.png"

        def ours(model, look, samples):
            return wholeLife([batch, model, "--no-run", "--image", picture, "--look", look,
                              "--samples", str(samples), "--size", "%dx%d" % SIZE], picture)

        def f3d(model):
            return wholeLife(["f3d", "--dry-run", "--resolution", "%d,%d" % SIZE,
                              "--output", picture, model], picture)

        def vtk(model, samples):
            return wholeLife([tools / "ostrella-vtk-picture", model, picture, str(samples)],
                             picture)

        def ourFrame(model, look, samples):
            return ownWord([tools / "ostrella-frame-time", model, str(samples), "9", look])

        def vtkFrame(model, samples):
            return ownWord([tools / "ostrella-vtk-picture", model, picture, str(samples), "9"])

        def row(title, **programs):
            times = {name: [] for name in programs}
            for _ in range(rounds):
                for name, measure in programs.items():
                    times[name].append(measure(environment))
            cells = [name + " " + " / ".join(f"{statistics.median(all):.3f}" for all in zip(*taken))
                     for name, taken in times.items()]
            print(f"{title:36}", *cells, sep=" | ", flush=True)

        for facets in (5120, 1310720):
            model = folder / f"{facets}.stl"
            row(f"{facets} facets, 1 sample", shaded=ours(model, "shaded", 1),
                glass=ours(model, "glass", 1), f3d=f3d(model), vtk=vtk(model, 1))
            row(f"{facets} facets, 4 samples", shaded=ours(model, "shaded", 4),
                glass=ours(model, "glass", 4), vtk=vtk(model, 4))
        model = folder / "200344.stl"
        for samples in (1, 4):
            row(f"a frame of 200344, {samples} a pixel", shaded=ourFrame(model, "shaded", samples),
                glass=ourFrame(model, "glass", samples), vtk=vtkFrame(model, samples))


if __name__ == "__main__":
    main()
