#!/usr/bin/env python3
"""Measures the five ratios of docs/PERFORMANCE.md in one run and prints them with their limits.

A ratio compares the processor times of two benchmarks of the same program on the same machine. The repetitions
of all benchmarks take turns, so that other programs disturb both sides alike; the medians are compared.

    tools/speed_ratios.py build/release/bin/vorex_benchmarks
"""

import argparse
import json
import statistics
import subprocess
import sys
from collections import defaultdict

# What, its benchmark, the benchmark that it is compared with, and the largest ratio that is allowed.
RATIOS = (
    ("one exposure, 22 columns, 30 stored", "BM_Exposure/kind:1/stored:30",
     "BM_ExposureTextsOnly/columns:7/rows:31", 1.8),
    ("one exposure, 34 columns, 255 stored", "BM_Exposure/kind:4/stored:255",
     "BM_ExposureTextsOnly/columns:11/rows:255", 1.15),
    ("load of 50 MB", "BM_LoadAlone/manual_time", "BM_LoadAloneXmlOnly/manual_time", 1.7),
    ("save of 50 MB", "BM_SaveFile", "BM_SaveFileXmlOnly", 1.3),
    ("1,000 elements with 10 exposures", "BM_Sequence/elements:1000", "BM_SaveFile", 1.4),
)
NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def measure(program, repetitions):
    """The processor times of each benchmark in nanoseconds."""
    names = sorted({name for _, one, other, _ in RATIOS for name in (one, other)})
    answer = subprocess.run(
        [program, "--benchmark_filter=^(" + "|".join(names) + ")$", f"--benchmark_repetitions={repetitions}",
         "--benchmark_enable_random_interleaving=true", "--benchmark_format=json"],
        check=True, stdout=subprocess.PIPE, text=True).stdout
    times = defaultdict(list)
    for run in json.loads(answer)["benchmarks"]:
        if run["run_type"] != "iteration":
            continue
        # A process that loads a file states its own processor time, which is reported as the real time.
        time = run["real_time" if run["run_name"].endswith("/manual_time") else "cpu_time"]
        times[run["run_name"]].append(time * NANOSECONDS[run["time_unit"]])
    missing = [name for name in names if name not in times]
    if missing:
        sys.exit(f"{program} has not measured {', '.join(missing)}")
    return times


def in_words(nanoseconds):
    return f"{nanoseconds / 1e6:.0f} ms" if nanoseconds >= 1e6 else f"{nanoseconds / 1e3:.1f} µs"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", help="the benchmark program")
    parser.add_argument("--repetitions", type=int, default=9)
    options = parser.parse_args()
    times = measure(options.program, options.repetitions)
    print("| what | measured | compared with | ratio | of the fastest | at most |\n|---|---|---|---|---|---|")
    for what, one, other, limit in RATIOS:
        medians = statistics.median(times[one]), statistics.median(times[other])
        fastest = min(times[one]) / min(times[other])
        print(f"| {what} | {in_words(medians[0])} | {in_words(medians[1])} | "
              f"{medians[0] / medians[1]:.2f} × | {fastest:.2f} × | {limit} × |")


if __name__ == "__main__":
    main()
