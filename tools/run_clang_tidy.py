#!/usr/bin/env python3
"""Runs the static check on the .cpp files of src/, as many at a time as there are processors.

A file that passed is not looked at again until it, a file of ours that it includes, or the settings change.
"""

import argparse
import hashlib
import os
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor, as_completed
from functools import lru_cache
from pathlib import Path

from check_includes import INCLUDE

ROOT = Path(__file__).resolve().parent.parent
SOURCE = ROOT / "src"


@lru_cache(maxsize=None)
def content_and_includes(path):
    """Digest of one file and those of its includes that are files below src/."""
    text = path.read_text(encoding="utf-8")
    includes = [SOURCE / match[1] for match in INCLUDE.finditer(text) if match[1]]
    return hashlib.sha256(text.encode()).hexdigest(), [name for name in includes if name.is_file()]


def key_of(path, settings):
    """Digest of everything of ours that the result of the check depends on."""
    digest = hashlib.sha256(settings.encode())
    seen = set()
    waiting = [path]
    while waiting:
        name = waiting.pop()
        if name in seen:
            continue
        seen.add(name)
        content, includes = content_and_includes(name)
        digest.update(f"{name.relative_to(ROOT).as_posix()} {content}\n".encode())
        waiting += includes
    return digest.hexdigest()


# Sources that need headers the flags below do not name: those of a toolkit, or of another system.
LEFT_OUT = ("desktop/", "reports/pdf/", "system/system_windows.cpp")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--tool", default="clang-tidy-14")
    parser.add_argument("--build", type=Path, default=ROOT / "build/release",
                        help="build folder with the generated headers")
    parser.add_argument("--cache", type=Path, default=ROOT / "build/clang_tidy_passed")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 1)
    parser.add_argument("files", nargs="*", type=Path, help="default: every .cpp below src/ but those of a toolkit or of another system")
    options = parser.parse_args()

    # Compiled without the precompiled headers of the build, so that a missing include is found.
    compiler = ["-std=c++20", f"-I{SOURCE}", f"-I{options.build.resolve() / 'generated'}",
                "-Wall", "-Wextra", "-Wno-overloaded-virtual", "-Wno-missing-field-initializers"]
    version = subprocess.run([options.tool, "--version"], capture_output=True, text=True, check=True).stdout
    settings = version + " ".join(compiler) + (ROOT / ".clang-tidy").read_text(encoding="utf-8")

    files = [path.resolve() for path in options.files] or [
        path for path in sorted(SOURCE.rglob("*.cpp"))
        if not path.relative_to(SOURCE).as_posix().startswith(LEFT_OUT)]
    options.cache.mkdir(parents=True, exist_ok=True)
    marks = {path: options.cache / key_of(path, settings) for path in files}
    waiting = [path for path in files if not marks[path].exists()]
    print(f"{len(files)} files, {len(files) - len(waiting)} unchanged since they passed")

    def check(path):
        return subprocess.run([options.tool, "--quiet", str(path), "--", *compiler],
                              capture_output=True, text=True, check=False)

    failed = 0
    with ThreadPoolExecutor(options.jobs) as pool:
        running = {pool.submit(check, path): path for path in waiting}
        for number, done in enumerate(as_completed(running), 1):
            path, result = running[done], done.result()
            name = path.relative_to(ROOT).as_posix()
            print(f"[{number}/{len(waiting)}] {name}: {'ok' if result.returncode == 0 else 'FAILED'}", flush=True)
            if result.returncode == 0:
                marks[path].touch()
            else:
                failed += 1
                print(result.stdout + result.stderr, flush=True)

    # Entries without a file are dropped. A run on chosen files knows only those.
    if not options.files:
        for mark in set(options.cache.iterdir()) - set(marks.values()):
            mark.unlink()
    print(f"{len(waiting)} files checked, {failed} with findings")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
