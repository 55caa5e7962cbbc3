"""Checks the staged licences: each prints what is missing, and fails if anything is.

    check.py linked STAGE          every library that a program of the package links has its notice
    check.py texts STAGE           the texts that are promised are there, whole, and every licence
                                   that a notice points to lies beside it
    check.py misses STAGE FOLDER   the two above notice what is taken away (a copy in FOLDER)
    check.py refuses ALONE FOLDER  the project ALONE, which stages nothing else, is not configured
                                   where a text is missing, and says which (in FOLDER)
"""

import pathlib
import re
import shutil
import subprocess
import sys

# Of the system and the compiler, whose licences make an exception for what is linked with them.
RUNTIME = re.compile(r"^(ld-linux.*|lib(c|m|dl|rt|pthread|gcc_s|stdc\+\+|c\+\+|c\+\+abi|unwind"
                     r"|asan|ubsan|tsan|lsan))\.so")

# A place in the folder of licences and words that stand in the text there.
PROMISED = {
    "SU2/LGPL-2.1.txt": ("GNU LESSER GENERAL PUBLIC LICENSE", "Version 2.1", "END OF TERMS"),
    "gmsh/GPL-2.txt": ("GNU GENERAL PUBLIC LICENSE", "Version 2,", "END OF TERMS"),
    "Qt/LGPL-3.txt": ("GNU LESSER GENERAL PUBLIC LICENSE", "Version 3,"),
    "Qt/GPL-3.txt": ("GNU GENERAL PUBLIC LICENSE", "Version 3,", "END OF TERMS"),
    "fast_float/copyright.txt": ("Lemire",),
    "GLM/copyright.txt": ("G-Truc",),
    "nlohmann-json/copyright.txt": ("Niels Lohmann",),
    "libsodium/copyright.txt": ("Frank Denis",),
    "libarchive/copyright.txt": ("Tim Kientzle",),
    "Inter/copyright.txt": ("Open Font License", "PERMISSION & CONDITIONS", "Inter"),
    "JetBrainsMono/copyright.txt": ("JetBrains", "Copyright"),
}


def licenses_of(stage):
    return stage / "share" / "ostrella" / "licenses"


def programs_of(stage):
    """The package's own programs; links lead to those of others."""
    for folder in (stage / "bin", stage / "libexec" / "ostrella"):
        for path in sorted(folder.iterdir()):
            if path.is_file() and not path.is_symlink() and path.read_bytes()[:4] == b"\x7fELF":
                yield path


def told(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def linked(program):
    """Names of the libraries that a program asks for by itself, and where they lie."""
    places = dict(re.findall(r"^\s*(\S+) => (\S+)", told("ldd", program), re.MULTILINE))
    for name in re.findall(r"\(NEEDED\).*\[(.*)\]", told("readelf", "-d", program)):
        if not RUNTIME.match(name):
            yield name, places.get(name)


def package_of(place):
    """The Debian package of a file, which dpkg may know by its place before /usr was merged."""
    real = pathlib.Path(place).resolve()
    for name in (str(real), str(real).removeprefix("/usr")):
        run = subprocess.run(["dpkg", "-S", name], capture_output=True, text=True)
        if run.returncode == 0:
            return run.stdout.split(":")[0]
    return None


def check_linked(stage):
    notices = {path.read_bytes() for path in licenses_of(stage).rglob("*.txt")}
    programs = list(programs_of(stage))
    names = {program.name for program in programs}
    for name in ("ostrella", "ostrella-batch", "ostrella-preview-solver"):
        if name not in names:
            yield f"{name} is not in the package"
    for program in programs:
        libraries = list(linked(program))
        if not libraries:
            yield f"{program.name}: no library was found, which cannot be"
        for name, place in libraries:
            package = package_of(place) if place else None
            if package is None:
                yield f"{program.name}: {name} belongs to no package"
                continue
            notice = pathlib.Path("/usr/share/doc") / package / "copyright"
            if notice.read_bytes() not in notices:
                yield f"{program.name}: {name} of {package} is linked without its notice"


def check_texts(stage):
    folder = licenses_of(stage)
    for name, words in PROMISED.items():
        path = folder / name
        text = path.read_text(encoding="utf-8", errors="replace") if path.is_file() else ""
        for word in words:
            if word.lower() not in text.lower():
                yield f'{name}: "{word}" is not in it'
    for path in sorted(folder.rglob("*.txt")):
        if path.parent.name == "common-licenses":
            continue
        text = path.read_text(encoding="utf-8", errors="replace")
        for licence in sorted(set(re.findall(r"/common-licenses/([\w.+-]*\w)", text))):
            if not (folder / "common-licenses" / f"{licence}.txt").is_file():
                yield f"{path.relative_to(folder)}: points to {licence}, which is not there"


def check_misses(stage, copy):
    """Takes one text away after the other: each must be missed."""
    shutil.rmtree(copy, ignore_errors=True)
    for part in ("bin", "libexec"):
        copy.mkdir(parents=True, exist_ok=True)
        (copy / part).symlink_to(stage / part)
    shutil.copytree(licenses_of(stage), licenses_of(copy))
    for check in (check_linked, check_texts):
        yield from check(copy)
    for name in ("fmt/copyright.txt", "xcb/copyright.txt", "OpenMP/copyright.txt",
                 "Qt/qtsvg.txt", "Qt/qtbase.txt", "Qt/qtdeclarative.txt"):
        path = licenses_of(copy) / name
        path.rename(path.with_suffix(".away"))
        if not list(check_linked(copy)):
            yield f"nobody misses {name}"
        path.with_suffix(".away").rename(path)
    for name in ("SU2/LGPL-2.1.txt", "gmsh/GPL-2.txt", "common-licenses/GPL-3.txt"):
        path = licenses_of(copy) / name
        text = path.read_bytes()
        path.unlink()
        if not list(check_texts(copy)):
            yield f"nobody misses {name}"
        path.write_bytes(text)
    shutil.rmtree(copy)


def configured(alone, folder, *options):
    """How CMake ends, and what it says, in one line."""
    build = folder / "build"
    shutil.rmtree(build, ignore_errors=True)
    run = subprocess.run(["cmake", "-S", alone, "-B", build, *options],
                         capture_output=True, text=True)
    return run.returncode, re.sub(r"\s+", " ", run.stderr)


def check_refuses(alone, folder):
    shutil.rmtree(folder, ignore_errors=True)
    common, notices = folder / "common", folder / "doc"
    shutil.copytree("/usr/share/common-licenses", common)
    notices.mkdir()
    for package in pathlib.Path("/usr/share/doc").iterdir():
        (notices / package.name).symlink_to(package.resolve())
    places = [f"-DOSTRELLA_COMMON_LICENSES={common}", f"-DOSTRELLA_NOTICES={notices}"]
    status, said = configured(alone, folder, *places)
    if status != 0:
        yield f"with everything there: {said}"

    def lacking(path, *words):
        away = path.with_name("away")
        path.rename(away)
        status, said = configured(alone, folder, *places)
        if status == 0:
            yield f"nobody misses {path.name}"
        for word in (*words, "-DOSTRELLA_LICENSES=OFF"):
            if word not in said:
                yield f'without {path.name}, "{word}" is not said: {said}'
        status, said = configured(alone, folder, *places, "-DOSTRELLA_LICENSES=OFF")
        if status != 0:
            yield f"{path.name} is asked for, though nobody wants it: {said}"
        away.rename(path)

    yield from lacking(common / "LGPL-2.1", "LGPL-2.1", "SU2", "base-files",
                       "-DOSTRELLA_COMMON_LICENSES=PATH")
    yield from lacking(common / "GPL-2", "GPL-2", "gmsh")
    # Only a notice points to this one.
    yield from lacking(common / "Apache-2.0", "Apache-2.0", "-DOSTRELLA_COMMON_LICENSES=PATH")
    yield from lacking(notices / "libfmt-dev", "fmt", "libfmt-dev", "-DOSTRELLA_NOTICES=PATH")
    shutil.rmtree(folder)


def main():
    check = globals()[f"check_{sys.argv[1]}"]
    failures = list(check(*(pathlib.Path(place).resolve() for place in sys.argv[2:])))
    for failure in failures:
        print(f"FAIL {failure}")
    print(f"{sys.argv[1]}: {'OK' if not failures else f'{len(failures)} failures'}")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
