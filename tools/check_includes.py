#!/usr/bin/env python3
"""Checks every #include of src/ against the ranks of the files and names each one that breaks them.

An include of the test library goes to a file of a lower rank, or stays inside its folder with a rank that is
not higher; there is no cycle. The library includes its own files and standard headers only. Each folder
outside the library may include the folders that are listed for it, and nothing includes a program. An outside
library is included only in the folders that are listed for it, and a header of an operating system only in
system/.
"""

import argparse
import re
import sys
from dataclasses import dataclass
from fnmatch import fnmatchcase
from pathlib import Path

# The first pattern that fits gives the rank. A stem means .h and .cpp.
RANKS = (
    ("guide/dialog_wrapper", 1),
    ("guide/frm_timer", 1),
    ("guide/transparent_overlay", 1),
    ("waveforms/waveform", 1),
    ("waveforms/report_layout", 1),
    ("mqsa/mammo_calculation", 1),
    ("views/detailed_result", 5),
    ("version", 0),  # generated
    ("library", 8),
    ("foundation/*", 0),
    ("config/*", 2),
    ("results/*", 3),
    ("views/*", 4),
    ("waveforms/*", 4),
    ("mqsa/*", 5),
    ("execution/*", 6),
    ("guide/*", 7),
    ("setup/*", 7),
)

# Folders outside the library, with the folders that each may include; "*" is everything.
OUTER_FOLDERS = {
    "system": ("system",),
    "host": ("foundation", "system", "host", "files", "reports"),
    "files": ("foundation", "system", "host", "files"),
    "reports": ("foundation", "system", "reports"),
    "instruments": ("foundation", "instruments", "files"),
    "app": ("*",),
    "cli": ("*",),
    "desktop": ("*",),
}

# Nothing outside them includes their files.
PROGRAMS = ("cli", "desktop")

# Outside libraries: how their includes begin, and the folders that may use them.
OUTSIDE_LIBRARIES = (
    (re.compile(r"pugi"), ("files",)),
    (re.compile(r"nlohmann/"), ("files",)),
    (re.compile(r"CLI/"), ("cli",)),
    (re.compile(r"Q[A-Z]|Qt|qpdf/"), ("reports/pdf", "desktop")),
)

# The folder of the headers that no pattern above knows: those of operating systems.
SYSTEM_FOLDER = "system"

# Headers that the build generates outside src/.
GENERATED = {"version.h"}

STANDARD_HEADERS = set(
    """
    algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono cinttypes
    climits clocale cmath codecvt compare complex concepts condition_variable coroutine csetjmp csignal cstdarg
    cstddef cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype deque exception execution filesystem format
    forward_list fstream functional future initializer_list iomanip ios iosfwd iostream istream iterator latch
    limits list locale map memory memory_resource mutex new numbers numeric optional ostream queue random ranges
    ratio regex scoped_allocator semaphore set shared_mutex source_location span sstream stack stdexcept stop_token
    streambuf string string_view strstream syncstream system_error thread tuple type_traits typeindex typeinfo
    unordered_map unordered_set utility valarray variant vector version
    stddef.h stdint.h
    """.split()
)

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(?:"([^"\n]+)"|<([^>\n]+)>)', re.MULTILINE)
SUFFIXES = (".h", ".cpp")


@dataclass(frozen=True)
class Include:
    source: str  # path below src/
    line: int
    target: str
    quoted: bool


def rank_of(path):
    """Rank of a file of the library by its path below src/; None for any other file."""
    stem = re.sub(r"\.(h|cpp)$", "", path)
    return next((rank for pattern, rank in RANKS if fnmatchcase(stem, pattern)), None)


def folder_of(path):
    return path.split("/")[0] if "/" in path else ""


def read_includes(source_root):
    """Every file below the root, with its includes in order."""
    files = {}
    for path in sorted(source_root.rglob("*")):
        if path.suffix not in SUFFIXES:
            continue
        name = path.relative_to(source_root).as_posix()
        text = path.read_text(encoding="utf-8")
        files[name] = [
            Include(name, text.count("\n", 0, match.start()) + 1, match[1] or match[2], match[1] is not None)
            for match in INCLUDE.finditer(text)
        ]
    return files


def fault_of_quoted(include, files):
    """What is wrong with an include of ours, or an empty text."""
    source, target = include.source, include.target
    if target not in files and target not in GENERATED:
        return "there is no such file below src/"

    source_folder, target_folder = folder_of(source), folder_of(target)
    source_rank, target_rank = rank_of(source), rank_of(target)
    if source_rank is None:
        if target_folder in PROGRAMS and target_folder != source_folder:
            return f"nothing outside {target_folder}/ includes a program"
        allowed = OUTER_FOLDERS[source_folder]
        if "*" in allowed or target_folder in allowed or target in GENERATED:
            return ""
        return f"{source_folder}/ may include {' and '.join(name + '/' for name in allowed)} only"
    if target_rank is None:
        return "the test library includes files of its own only"
    if target_rank < source_rank or (target_folder == source_folder and target_rank == source_rank):
        return ""
    return f"rank {source_rank} must not include rank {target_rank}"


def fault_of_angled(include):
    """What is wrong with an include of an outside header, or an empty text."""
    if rank_of(include.source) is not None:
        return "" if include.target in STANDARD_HEADERS else "the test library includes standard headers only"
    folders = (SYSTEM_FOLDER,)
    if include.target in STANDARD_HEADERS:
        return ""
    for pattern, named in OUTSIDE_LIBRARIES:
        if pattern.match(include.target):
            folders = named
            break
    if any(include.source.startswith(name + "/") for name in folders):
        return ""
    return f"belongs in {' and '.join(name + '/' for name in folders)} only"


def find_cycles(files):
    """Each cycle once, as the list of its files, beginning and ending with the same one."""
    cycles = []
    done = set()
    path = []

    def walk(name):
        if name in path:
            cycles.append(path[path.index(name):] + [name])
            return
        if name in done:
            return
        path.append(name)
        for include in files[name]:
            if include.quoted and include.target in files:
                walk(include.target)
        path.pop()
        done.add(name)

    for name in files:
        walk(name)
    return cycles


def find_faults(source_root):
    """All faults of a source tree as lines of text, and the number of includes that were checked."""
    files = read_includes(source_root)
    faults = []
    for name, includes in files.items():
        if rank_of(name) is None and folder_of(name) not in OUTER_FOLDERS:
            faults.append(f"{name}: is in no known folder: give it a rank or list its folder")
            continue
        for include in includes:
            fault = fault_of_quoted(include, files) if include.quoted else fault_of_angled(include)
            if fault:
                mark = '"{}"' if include.quoted else "<{}>"
                faults.append(f"{name}:{include.line}: {name} -> {mark.format(include.target)}: {fault}")
    faults += ["cycle: " + " -> ".join(cycle) for cycle in find_cycles(files)]
    return faults, len(files), sum(map(len, files.values()))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--source", type=Path, default=Path(__file__).resolve().parent.parent / "src",
                        help="root of the includes (default: src/ of this tree)")
    source_root = parser.parse_args().source
    if not source_root.is_dir():
        parser.error(f"{source_root} is not a folder")

    faults, file_count, include_count = find_faults(source_root)
    for fault in faults:
        print(fault)
    print(f"{file_count} files, {include_count} includes, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
