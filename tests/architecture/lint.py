#!/usr/bin/env python3
"""lint.py BUILD...: the linter finds nothing in what the builds compile (.clang-tidy says what it looks for).

Reads BUILD/compile_commands.json, and ninja's record of which headers each file includes; so BUILD must be built. A
file that several builds compile is looked at in the first. What only Windows compiles is not looked at.
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


def key_of(command, made_of, version):
    """Neither the machine nor the folder of the checkout is part of it."""
    text = version + command.replace(str(SOURCES), "")
    digest = hashlib.sha256(text.encode())
    for path in [SOURCES / ".clang-tidy", *sorted(made_of)]:
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
        for entry in [entry for entry in entries if entry["file"] not in seen]:
            file = pathlib.Path(entry["file"])
            if file.suffix != ".cpp" or not file.is_relative_to(SOURCES) or file.is_relative_to(build):
                continue
            seen.add(entry["file"])
            words = shlex.split(entry["command"])
            made_of = record.get(words[words.index("-o") + 1], [])
            key = key_of(entry["command"].replace(str(build), "BUILD"), {file, *made_of}, version)
            if not (CACHE / key).exists():
                work[file] = (key, build)

    def look_at(file):
        key, build = work[file]
        done = subprocess.run([name, "--quiet", "-p", str(build), str(file)], capture_output=True, text=True)
        if done.returncode == 0:
            (CACHE / key).touch()
        return file, done

    bad = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for file, done in pool.map(look_at, sorted(work)):
            if done.returncode != 0:
                bad += 1
                print(f"{file.relative_to(SOURCES)}:\n{done.stdout}{done.stderr}")
    print(f"{len(work)} files were looked at, the linter found something in {bad}")
    sys.exit(1 if bad else 0)


main()
