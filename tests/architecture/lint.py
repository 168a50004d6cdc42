#!/usr/bin/env python3
"""lint.py BUILD...: the linter finds nothing in what the builds compile (.clang-tidy says what it looks for).

Reads BUILD/compile_commands.json, and ninja's record of which headers each file includes; so BUILD must be built. A
file that several builds compile is looked at in the first; in a build for Windows only what no other system compiles.
What was found to be clean is remembered, in $XDG_CACHE_HOME/kestrova/lint: a file is looked at again only when it, a
header of ours that it includes, its compile command or the linter has changed. Other versions of the linter than 14
find other things; with those, or without one, exit code 77.
"""
import concurrent.futures
import hashlib
import json
import os
import pathlib
import shlex
import shutil
import subprocess
import sys

SOURCES = pathlib.Path(__file__).resolve().parents[2]
CACHE = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache") / "kestrova" / "lint"


def linter():
    for name in ("clang-tidy-14", "clang-tidy"):
        if shutil.which(name):
            version = subprocess.run([name, "--version"], capture_output=True, text=True, check=True).stdout
            if "version 14." in version:
                return name, version
    print("skipped: there is no clang-tidy of version 14")
    sys.exit(77)


def headers_of_objects(build):
    """Object file -> what it was made of, below the sources."""
    record, current = {}, None
    lines = subprocess.run(["ninja", "-C", str(build), "-t", "deps"], capture_output=True, text=True, check=True).stdout
    for line in lines.splitlines():
        if line and not line.startswith((" ", "ninja:")):
            current = record.setdefault(line.split(":")[0], [])
        elif line.startswith(" ") and current is not None:
            path = (build / line.strip()).resolve()
            if path.is_relative_to(SOURCES):
                current.append(path)
    return record


def options_for_windows(compiler):
    """Where its C++ library lies. Not what handles are (pointers under another name, made of numbers), nor what is empty
    there only."""
    said = subprocess.run([compiler, "-E", "-v", "-x", "c++", os.devnull], capture_output=True, text=True, check=True)
    folders = [line.strip() for line in said.stderr.splitlines() if line.startswith(" /") and "/c++" in line]
    return ["--checks=-performance-no-int-to-ptr,-misc-misplaced-const,-performance-trivially-destructible",
            *[f"--extra-arg-before=-isystem{folder}" for folder in folders]]


def key_of(command, made_of, version):
    """Neither the folder of the checkout is part of it nor how the compiler optimises, warns and watches over."""
    text = version + " ".join(word for word in command if word != "-D_GLIBCXX_ASSERTIONS").replace(str(SOURCES), "")
    digest = hashlib.sha256(text.encode())
    for path in [SOURCES / ".clang-tidy", SOURCES / "tests" / ".clang-tidy", *sorted(made_of)]:
        digest.update(hashlib.sha256(path.read_bytes() if path.exists() else b"").digest())
    return digest.hexdigest()


def main():
    name, version = linter()
    CACHE.mkdir(parents=True, exist_ok=True)
    work = {}
    seen = set()
    for build in [pathlib.Path(folder).resolve() for folder in sys.argv[1:]]:
        record = headers_of_objects(build)
        entries = json.loads((build / "compile_commands.json").read_text())
        compiler = shlex.split(entries[0]["command"])[0]
        windows = "mingw" in compiler
        options = options_for_windows(compiler) if windows else []
        for entry in [entry for entry in entries if entry["file"] not in seen]:
            file = pathlib.Path(entry["file"])
            if file.suffix != ".cpp" or not file.is_relative_to(SOURCES) or file.is_relative_to(build):
                continue
            if windows and file.parent.name != "windows":
                continue
            seen.add(entry["file"])
            words = shlex.split(entry["command"])
            made_of = record.get(words[words.index("-o") + 1], [])
            seen_by_linter = [word for word in words if word.startswith(("-D", "-I", "-std"))]
            key = key_of([*seen_by_linter, *options], {file, *made_of}, version)
            if not (CACHE / key).exists():
                work[file] = (key, ["-p", str(build), *options])

    def look_at(file):
        key, options = work[file]
        done = subprocess.run([name, "--quiet", *options, str(file)], capture_output=True, text=True)
        if done.returncode == 0:
            (CACHE / key).touch()
        return file, done

    bad = 0
    with concurrent.futures.ThreadPoolExecutor(len(os.sched_getaffinity(0))) as pool:
        for file, done in pool.map(look_at, sorted(work)):
            if done.returncode != 0:
                bad += 1
                print(f"{file.relative_to(SOURCES)}:\n{done.stdout}{done.stderr}")
    print(f"{len(work)} files were looked at, the linter found something in {bad}")
    sys.exit(1 if bad else 0)


main()
