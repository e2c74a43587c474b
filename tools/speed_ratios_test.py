#!/usr/bin/env python3
"""Shows that speed_ratios.py compares the medians of processor times, with a made-up benchmark program."""

import json
import subprocess
import sys
import tempfile
from pathlib import Path

TOOL = Path(__file__).resolve().parent / "speed_ratios.py"
# Name, unit, processor times; the real times are ten times as long.
TIMES = (("BM_Exposure/kind:1/stored:30", "us", (3, 90, 6)), ("BM_ExposureTextsOnly/columns:7/rows:31", "ns", (4000, 3000, 2000)),
         ("BM_Exposure/kind:4/stored:255", "us", (1,)), ("BM_ExposureTextsOnly/columns:11/rows:255", "us", (4,)),
         ("BM_LoadAlone/manual_time", "s", (2,)), ("BM_LoadAloneXmlOnly/manual_time", "ms", (1000,)),
         ("BM_SaveFile", "ms", (5,)), ("BM_SaveFileXmlOnly", "ms", (4,)), ("BM_Sequence/elements:1000", "ms", (15,)))


def answer(times):
    runs = [{"run_type": "iteration", "run_name": name, "time_unit": unit, "cpu_time": time, "real_time": 10 * time}
            for name, unit, values in times for time in values] + [{"run_type": "aggregate"}]
    with tempfile.TemporaryDirectory() as folder:
        program = Path(folder, "benchmarks")
        program.write_text(f"#!{sys.executable}\nprint({json.dumps({'benchmarks': runs})!r})\n", encoding="utf-8")
        program.chmod(0o755)
        return subprocess.run([sys.executable, "-B", TOOL, program], capture_output=True, text=True, encoding="utf-8")


table = [line.split(" | ")[1:5] for line in answer(TIMES).stdout.splitlines()[2:]]
assert table == [["6.0 µs", "3.0 µs", "2.00 ×", "1.50 ×"], ["1.0 µs", "4.0 µs", "0.25 ×", "0.25 ×"],
                 ["20000 ms", "10000 ms", "2.00 ×", "2.00 ×"], ["5 ms", "4 ms", "1.25 ×", "1.25 ×"],
                 ["15 ms", "5 ms", "3.00 ×", "3.00 ×"]], table
assert "has not measured BM_Sequence/elements:1000" in answer(TIMES[:-1]).stderr
