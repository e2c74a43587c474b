#!/usr/bin/env python3
"""Shows that check_includes.py finds each kind of broken include in a made-up tree."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

TOOL = Path(__file__).resolve().parent / "check_includes.py"

SOUND_TREE = {
    "foundation/vocabulary.h": "#pragma once\n#include <string>\n",
    "foundation/event.h": '#include "foundation/vocabulary.h"\n',
    "waveforms/waveform.h": '#include "foundation/vocabulary.h"\n',
    "waveforms/display.h": '#include "waveforms/waveform.h"\n#include "results/measurement.h"\n',
    "config/config_common.h": '#include "foundation/event.h"\n',
    "results/measurement.h": '#include "config/config_common.h"\n#include "waveforms/waveform.h"\n',
    "results/measurement.cpp": '#include "results/measurement.h"\n\n#include <cmath>\n',
    "views/list.h": '#include "results/measurement.h"\n',
    "views/detailed_result.h": '#include "views/list.h"\n',
    "mqsa/survey.h": '#include "mqsa/mammo_calculation.h"\n#include "views/list.h"\n',
    "mqsa/mammo_calculation.h": '#include "foundation/vocabulary.h"\n',
    "execution/test_common.h": '#include "mqsa/survey.h"\n',
    "guide/frm_timer.h": '#include "foundation/event.h"\n',
    "guide/test_guide.h": '#include "execution/test_common.h"\n#include "guide/frm_timer.h"\n',
    "setup/page.h": '#include "execution/test_common.h"\n',
    "library.h": "#include <memory>\n",
    "library.cpp": '#include "library.h"\n\n#include "guide/test_guide.h"\n#include "setup/page.h"\n',
    "system/system.h": "#include <string>\n",
    "files/tree.h": "",
    "system/system_posix.cpp": '#include <unistd.h>\n#include "system/system.h"\n',
    "files/element_file.cpp": "#include <pugixml.hpp>\n#include <filesystem>\n"
                             '#include "foundation/event.h"\n#include "system/system.h"\n#include "version.h"\n',
    "reports/pdf/module.cpp": "#include <QPainter>\n#include <qpdf/QPDF.hh>\n",
    "instruments/recording.cpp": '#include "files/tree.h"\n#include "foundation/event.h"\n',
    "app/session.h": '#include "library.h"\n#include "results/measurement.h"\n#include "host/tree.h"\n',
    "host/tree.h": "",
    "cli/commands.h": '#include "app/session.h"\n#include "setup/page.h"\n',
    "cli/main.cpp": '#include <CLI/CLI.hpp>\n#include "cli/commands.h"\n#include "results/measurement.h"\n',
}


class CheckIncludes(unittest.TestCase):
    def check(self, changes):
        """Runs the tool on the sound tree with the changes put in; gives its exit code and output."""
        with tempfile.TemporaryDirectory() as folder:
            for name, text in {**SOUND_TREE, **changes}.items():
                path = Path(folder, name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text, encoding="utf-8")
            done = subprocess.run([sys.executable, str(TOOL), "--source", folder],
                                  capture_output=True, text=True, check=False)
            return done.returncode, done.stdout

    def expect_fault(self, name, text, fault):
        code, output = self.check({name: text})
        self.assertEqual(code, 1, output)
        self.assertIn(fault, output)

    def test_a_sound_tree_has_no_faults(self):
        code, output = self.check({})
        self.assertEqual(code, 0, output)
        self.assertIn("0 faults", output)

    def test_each_broken_include_is_named(self):
        cases = [
            ("upward", "config/model.cpp", "results/measurement.h", "rank 2 must not include rank 3"),
            ("from the foundation", "foundation/a.h", "config/config_common.h", "rank 0 must not include rank 2"),
            ("upward inside a folder", "waveforms/waveform.cpp", "waveforms/display.h",
             "rank 1 must not include rank 4"),
            ("same rank, other folder", "views/plot.cpp", "waveforms/display.h", "rank 4 must not include rank 4"),
            ("setup to guide", "setup/other.cpp", "guide/test_guide.h", "rank 7 must not include rank 7"),
            ("survey to detailed result", "mqsa/other.cpp", "views/detailed_result.h",
             "rank 5 must not include rank 5"),
            ("to the entry file", "guide/other.cpp", "library.h", "rank 7 must not include rank 8"),
            ("library to host", "results/other.cpp", "host/tree.h", "includes files of its own only"),
            ("host to library", "host/tree.cpp", "results/measurement.h", "host/ may include foundation/ and system/"),
            ("reports to files", "reports/other.cpp", "files/tree.h",
             "reports/ may include foundation/ and system/ and reports/ only"),
            ("system to foundation", "system/other.cpp", "foundation/event.h", "system/ may include system/ only"),
            ("instruments to host", "instruments/other.cpp", "host/tree.h",
             "instruments/ may include foundation/ and instruments/"),
            ("app to a program", "app/other.cpp", "cli/commands.h", "nothing outside cli/ includes a program"),
            ("host to app", "host/other.cpp", "app/session.h", "host/ may include foundation/"),
            ("missing", "results/other.cpp", "results/nowhere.h", "no such file"),
        ]
        for title, name, target, fault in cases:
            with self.subTest(title):
                code, output = self.check({name: f'// first line\n#include "{target}"\n'})
                self.assertEqual(code, 1, output)
                self.assertIn(f'{name}:2: {name} -> "{target}"', output)
                self.assertIn(fault, output)

    def test_the_library_uses_standard_headers_only(self):
        self.expect_fault("results/other.cpp", "#include <pugixml.hpp>\n", "<pugixml.hpp>: the test library")
        self.expect_fault("results/other.cpp", "#include <unistd.h>\n", "<unistd.h>: the test library")

    def test_an_outside_library_stays_in_its_folders(self):
        self.expect_fault("instruments/other.cpp", "#include <pugixml.hpp>\n", "belongs in files/ only")
        self.expect_fault("host/other.cpp", "#include <CLI/CLI.hpp>\n", "belongs in cli/ only")
        self.expect_fault("reports/other.cpp", "#include <QPainter>\n", "belongs in reports/pdf/ and desktop/ only")

    def test_an_operating_system_stays_in_its_folder(self):
        for name in ("files/other.cpp", "cli/other.cpp", "reports/pdf/other.cpp"):
            for header in ("unistd.h", "sys/stat.h", "windows.h", "dlfcn.h"):
                with self.subTest(f"{name} {header}"):
                    self.expect_fault(name, f"#include <{header}>\n", f"<{header}>: belongs in system/ only")

    def test_a_cycle_is_named_with_all_its_files(self):
        code, output = self.check({
            "results/a.h": '#include "results/b.h"\n',
            "results/b.h": '#include "results/c.h"\n',
            "results/c.h": '#  include "results/a.h"\n',
        })
        self.assertEqual(code, 1, output)
        self.assertIn("cycle: results/a.h -> results/b.h -> results/c.h -> results/a.h", output)

    def test_an_unknown_folder_is_a_fault(self):
        self.expect_fault("helpers/misc.h", "", "helpers/misc.h: is in no known folder")


if __name__ == "__main__":
    unittest.main()
