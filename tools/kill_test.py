#!/usr/bin/env python3
"""Kills vorex at random moments and checks that nothing is lost.

    kill_test.py --program build/release/bin/vorex [--kills 200] [--seed N]

Runs of all kinds (every test, redo, stop, groups, fluoroscopy, waveforms, all instruments) are ended by SIGKILL after
a random time and taken up again by `vorex resume`, which is killed as well, until one comes to its end. Each time:
what the journal held stays in it, and the finished file and the exit code are those of the undisturbed run.
"""

import argparse
import os
import random
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
SIGKILL_CODE = -9

# element file, recording or "simulated:SEED ROOM", operator script
RUNS = (
    ("radio_reproducibility", "radio_reproducibility", "start,redo 5,next"),
    ("radio_reproducibility", "radio_reproducibility", "start,stop@3,redo 1,redo 1,next"),
    ("radio_accuracy", "radio_accuracy", ""),
    ("radio_linearity", "radio_linearity", ""),
    ("fluoro_accuracy", "fluoro_accuracy", ""),
    ("fluoro_exposure", "fluoro_exposure", ""),
    ("mammo_accuracy", "mammo_accuracy", ""),
    ("mammo_aec", "mammo_aec", ""),
    ("mammo_output", "mammo_output", ""),
    ("mammo_output", "mammo_output_link_lost", ""),
    ("dosimeter", "dosimeter", ""),
    ("dosimeter_mas", "dosimeter_mas", ""),
    ("mas_meter", "mas_meter", ""),
    ("unit", "unit", ""),
    ("unit", "unit", "start,stop@2,start,next"),
    ("unit", "unit", ";na;start,redo 1,next"),
    ("unit", "unit", "start,next;previous;redo 1,next"),
    ("radiographic_unit", "simulated:7 drifting_timer", "start,redo 2,redo 2,next"),
    ("fluoroscopic_unit", "simulated:8 good", ""),
    ("mammographic_unit", "simulated:9 weak_mammography_tube", ""),
    ("radiographic_unit", "simulated:10 flaky_link", ""),
)


class Faults(Exception):
    """Something was lost or has changed."""


def whole_lines(journal):
    """The whole lines of a journal; none when there is no journal."""
    if not journal.exists():
        return []
    return [line for line in journal.read_bytes().splitlines(keepends=True) if line.endswith(b"\n")]


def run(program, arguments, folder, delay=None):
    """Exit code of the program, which is killed after the delay; and how long it ran."""
    begin = time.monotonic()
    process = subprocess.Popen([str(program), *arguments], cwd=folder, stdin=subprocess.DEVNULL,
                               stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                               env=os.environ | {"LC_ALL": "C.UTF-8",
                                                 "VOREX_SETTINGS": str(folder / "settings.ini"),
                                                 "VOREX_NOW": "2026-01-15T09:00:00Z"})
    if delay is not None:
        time.sleep(delay)
        process.kill()
    messages = process.communicate(timeout=60)[1].decode()
    return process.returncode, messages, time.monotonic() - begin


class Campaign:
    def __init__(self, program, examples, scratch, seed):
        self.program, self.examples, self.scratch = program, examples, scratch
        self.random = random.Random(seed)
        self.kills = self.too_late = self.in_journal = self.after_save = self.lines_kept = 0

    def first_arguments(self, case, output):
        elements, answers, script = case
        arguments = ["run", str(self.examples / f"{elements}.xml"), "-o", output]
        simulated, _, room = answers.partition(" ")
        if room:
            arguments += ["--instruments", simulated, "--room", str(self.examples / "rooms" / f"{room}.json")]
        else:
            arguments += ["--instruments", f"recording:{self.examples / answers}.jsonl"]
        return arguments + (["--operator", script] if script else [])

    def undisturbed(self, case):
        code, messages, took = run(self.program, self.first_arguments(case, "whole.xml"), self.scratch)
        output = self.scratch / "whole.xml"
        if not output.exists():
            raise Faults(f"{case}: the undisturbed run ended with {code}: {messages}")
        text = output.read_bytes()
        output.unlink()
        return code, text, took

    def disturbed(self, case, most_kills):
        """One run, killed again and again at random moments until it completes."""
        code, text, took = self.undisturbed(case)
        output, journal = self.scratch / "out.xml", self.scratch / "out.xml.journal"
        lines = []
        kills = 0
        while True:
            arguments = ["resume", "out.xml"] if journal.exists() else self.first_arguments(case, "out.xml")
            delay = self.random.uniform(0, 1.2 * took) if kills < most_kills else None
            ended, messages, _ = run(self.program, arguments, self.scratch, delay)
            left = whole_lines(journal)
            if ended != SIGKILL_CODE:
                break
            kills += 1
            if not left and output.exists():
                self.after_save += 1  # saved already, and killed on the way out
                ended = code
                break
            self.in_journal += 1 if left else 0
            if left[:len(lines)] != lines:
                raise Faults(f"{case}: the journal lost lines: {len(lines)} before, {len(left)} now")
            lines = left
            self.lines_kept += len(left)
            # A first line that is not whole is no run: nothing had been measured.
            if journal.exists() and not left:
                journal.unlink()
        self.kills += kills
        self.too_late += 1 if kills == 0 else 0
        if ended != code or not output.exists() or output.read_bytes() != text:
            raise Faults(f"{case}: after {kills} kills the run ended with {ended} (undisturbed {code}), and its "
                         f"file {'differs' if output.exists() else 'is missing'}: {messages}")
        if journal.exists():
            raise Faults(f"{case}: the journal of a finished run is still there")
        output.unlink()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", type=Path, required=True, help="the built program vorex")
    parser.add_argument("--kills", type=int, default=200, help="how many times to kill (default: 200)")
    parser.add_argument("--seed", type=int, default=None, help="seed of the random moments (default: the time)")
    arguments = parser.parse_args()
    program = arguments.program.resolve()
    if not os.access(program, os.X_OK):
        parser.error(f"there is no program {program}")
    seed = arguments.seed if arguments.seed is not None else time.time_ns() % 1_000_000
    with tempfile.TemporaryDirectory(prefix="vorex-kill-") as scratch:
        campaign = Campaign(program, ROOT / "examples", Path(scratch), seed)
        runs = 0
        try:
            while campaign.kills < arguments.kills:
                campaign.disturbed(RUNS[runs % len(RUNS)], min(4, arguments.kills - campaign.kills))
                runs += 1
        except Faults as fault:
            print(f"seed {seed}: {fault}")
            return 1
    print(f"{campaign.kills} kills in {runs} runs (seed {seed}): {campaign.in_journal} with a journal, holding "
          f"{campaign.lines_kept} lines in all, {campaign.after_save} after the save; nothing was lost, every "
          "finished file is that of the undisturbed run")
    return 0


if __name__ == "__main__":
    sys.exit(main())
