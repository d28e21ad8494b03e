#!/usr/bin/env python3
"""command_line_test.py ZRT ZRT_CHECK VERSION: what the commands answer where there is no display."""

import os
import subprocess
import sys
import unittest

ZRT, CHECK, VERSION = sys.argv[1:4]
NO_DISPLAY = {key: value for key, value in os.environ.items()
              if key not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}


def run(*command):
    done = subprocess.run(command, env=NO_DISPLAY, capture_output=True, text=True, timeout=20)
    return done.returncode, done.stdout, done.stderr


class CommandLine(unittest.TestCase):
    def test_version_and_help(self):
        for program, name in ((ZRT, "zrt"), (CHECK, "zrt_check")):
            self.assertEqual(run(program, "--version"), (0, f"{name} {VERSION}\n", ""))
            code, out, err = run(program, "--help")
            self.assertEqual((code, err), (0, ""))
            self.assertIn(f"  {name} ", out)

    def test_anything_else_is_an_error(self):
        for arguments in (["-v"], ["--versions"], ["shop"], [""], ["--version", "--help"], ["-platform", "offscreen"]):
            for program in (ZRT, CHECK):
                code, out, err = run(program, *arguments)
                self.assertEqual((code, out), (2, ""), arguments)
                self.assertIn("--help", err)


unittest.main(argv=sys.argv[:1], verbosity=2)
