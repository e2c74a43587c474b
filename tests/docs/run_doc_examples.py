#!/usr/bin/env python3
"""Runs the commands that the documents show, and compares what they print with what the documents say.

    run_doc_examples.py --program build/release/bin/vorex [DOCUMENT.md ...]

In a fenced block marked "console" a line that begins with "$ " is a command; it continues on the next line if it
ends with a backslash. The lines after it are its output, standard error included; a line "..." matches any
lines. A command that ends with another code than 0 is followed by "$ echo $?". A fenced block marked
"xml file=NAME" (or json, text) is written to that file first. Each document has a folder of its own with a copy of
the examples in it, and its blocks are run from top to bottom.
"""

import argparse
import difflib
import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
FENCE = re.compile(r"^```(\w*)\s*(.*)$")
MARK = "\x1e"
TIMEOUT = 60


class Block:
    def __init__(self, language, info, line):
        self.language, self.info, self.line, self.lines = language, info, line, []


class Command:
    def __init__(self, text, line):
        self.text, self.line, self.expected = text, line, []


def read_blocks(path):
    """The fenced blocks of a document, in order."""
    blocks, open_block = [], None
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        fence = FENCE.match(line)
        if open_block is None and fence:
            open_block = Block(fence.group(1), fence.group(2), number)
        elif open_block is not None and line == "```":
            blocks.append(open_block)
            open_block = None
        elif open_block is not None:
            open_block.lines.append(line)
    if open_block is not None:
        raise ValueError(f"{path}:{open_block.line}: the block has no end")
    return blocks


def read_commands(block):
    """The commands of a console block, each with the lines that it should print."""
    commands = []
    for offset, line in enumerate(block.lines, 1):
        if commands and commands[-1].text.endswith("\\"):
            commands[-1].text += "\n" + line.removeprefix("> ")
        elif line.startswith("$ "):
            commands.append(Command(line[2:], block.line + offset))
        elif not commands:
            raise ValueError(f"line {block.line + offset}: output without a command")
        else:
            commands[-1].expected.append(line)
    return commands


def matches(expected, printed):
    """True when the lines agree; "..." matches any number of lines."""
    if not expected:
        return not printed
    if expected[0] == "...":
        return any(matches(expected[1:], printed[skip:]) for skip in range(len(printed) + 1))
    return bool(printed) and expected[0] == printed[0] and matches(expected[1:], printed[1:])


def run_commands(commands, folder, environment):
    """What each command printed, and its exit code."""
    script = "exec 2>&1\n"
    for command in commands:
        script += f"{command.text}\nvorex_doc_status=$?\nprintf '{MARK}%d{MARK}' $vorex_doc_status\n(exit $vorex_doc_status)\n"
    run = subprocess.run(["bash", "-c", script], cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                         stdout=subprocess.PIPE, encoding="utf-8", timeout=TIMEOUT, check=False)
    parts = run.stdout.split(MARK)
    return [(parts[2 * i].splitlines(), int(parts[2 * i + 1])) for i in range(len(parts) // 2)]


def check_block(path, block, folder, environment):
    """Faults of a console block, as texts."""
    commands = read_commands(block)
    results = run_commands(commands, folder, environment)
    faults = []
    if len(results) != len(commands):
        faults.append(f"{path}:{block.line}: a command ended the shell")
    for index, (command, (printed, status)) in enumerate(zip(commands, results)):
        where = f"{path}:{command.line}"
        following = commands[index + 1].text if index + 1 < len(commands) else ""
        if status != 0 and following != "echo $?":
            faults.append(f"{where}: ended with {status}, and no 'echo $?' follows: {command.text}")
        if not matches(command.expected, printed):
            diff = difflib.unified_diff(command.expected, printed, "document", "program", lineterm="")
            faults.append(f"{where}: {command.text}\n" + "\n".join(diff))
    return faults, len(commands)


def check_document(path, program, examples):
    """Faults of a document, and how many commands it has."""
    with tempfile.TemporaryDirectory(prefix="vorex-docs-") as scratch:
        folder = Path(scratch) / "examples"
        folder.mkdir()
        for file in [path for kind in ("*.xml", "*.jsonl", "*.json") for path in examples.glob(kind)]:
            shutil.copy(file, folder)
        shutil.copytree(examples / "rooms", folder / "rooms")
        environment = {key: value for key, value in os.environ.items() if not key.startswith("VOREX_")}
        environment |= {"PATH": f"{program.parent}:{environment['PATH']}", "LC_ALL": "C.UTF-8",
                        "VOREX_SETTINGS": str(Path(scratch) / "settings.ini")}
        faults, count = [], 0
        for block in read_blocks(path):
            if block.info.startswith("file="):
                text = "\n".join(block.lines) + "\n"
                (folder / block.info.removeprefix("file=")).write_text(text, encoding="utf-8")
            elif block.language == "console":
                block_faults, commands = check_block(path, block, folder, environment)
                faults += block_faults
                count += commands
    return faults, count


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", type=Path, required=True, help="the built program vorex")
    parser.add_argument("documents", type=Path, nargs="*", help="default: README.md and docs/*.md")
    arguments = parser.parse_args()
    program = arguments.program.resolve()
    if not os.access(program, os.X_OK):
        parser.error(f"there is no program {program}")
    documents = arguments.documents or [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md"))]
    faults, total = [], 0
    for document in documents:
        try:
            document_faults, count = check_document(document, program, ROOT / "examples")
        except (ValueError, subprocess.TimeoutExpired) as error:
            document_faults, count = [f"{document}: {error}"], 0
        faults += document_faults
        total += count
    print("\n\n".join(faults) if faults else f"{total} commands of {len(documents)} documents do what they say")
    if total == 0:
        print("no command was found")
    return 1 if faults or total == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
