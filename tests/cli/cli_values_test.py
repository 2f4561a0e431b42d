#!/usr/bin/env python3
"""Values the tcs tool must pass through as they are: names with the
characters JSON escapes, and timecodes of 100 hours and more where the rate
lets the timeline run that long. Usage: cli_values_test.py TCS-BINARY."""
import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

TCS = None
TIMELINE_END = 10692000  # frames: the last start a clip may have


def tcs(*args):
    return subprocess.run([TCS, *args], capture_output=True, text=True, timeout=120)


def tcs_json(*args):
    run = tcs(*args, "--json")
    assert run.returncode == 0, run.stderr
    return json.loads(run.stdout)


class Values(unittest.TestCase):
    def setUp(self):
        self.dir = tempfile.mkdtemp(prefix="tcs-values-")
        self.addCleanup(shutil.rmtree, self.dir)

    def edl(self, text):
        path = os.path.join(self.dir, "list.edl")
        with open(path, "w") as f:
            f.write(text)
        return path

    # Every JSON output parses and gives each name back exactly, whatever
    # JSON has to escape in it: backslashes (a Windows path), quotes.
    def test_json_names_round_trip(self):
        names = ["C:\\media\\take1.mov", 'the "best" take', "a\\tb\\"]
        lines = ["TITLE: NAMES", "FCM: NON-DROP FRAME", ""]
        for n, name in enumerate(names):
            rec = "01:00:%02d:00" % (2 * n)
            lines += ["%03d  AX       V     C        00:00:00:00 00:00:01:00 %s 01:00:%02d:00"
                      % (n + 1, rec, 2 * n + 1), "* FROM CLIP NAME: " + name, ""]
        path = self.edl("\n".join(lines))
        info = tcs_json("info", path)
        self.assertEqual([c["name"] for ch in info["channels"] for c in ch["clips"]], names)
        self.assertEqual([e["name"] for e in tcs_json("walk", path)], names)
        for n, name in enumerate(names):
            [answer] = tcs_json("at", path, "01:00:%02d:00" % (2 * n), "--channel", "V1")["channels"]
            self.assertEqual(answer["clip"]["name"], name)

    # At 24 and 25 fps the timeline runs past 99 hours: three-digit hours
    # read and print, up to the timeline's end and not past it.
    def test_hundred_hours_and_more(self):
        path = self.edl("TITLE: LONG\nFCM: NON-DROP FRAME\n\n"
                        "001  AX       V     C        00:00:00:00 00:00:01:00 "
                        "01:00:00:00 01:00:01:00\n")
        for fps in (24, 25):
            end_seconds = TIMELINE_END // fps
            end = "%d:%02d:%02d:%02d" % (end_seconds // 3600, end_seconds // 60 % 60,
                                         end_seconds % 60, TIMELINE_END % fps)
            for text, frame in (("100:00:00:00", 100 * 3600 * fps),
                                ("100:59:59:%02d" % (fps - 1), 101 * 3600 * fps - 1),
                                (end, TIMELINE_END)):
                with self.subTest(fps=fps, timecode=text):
                    answer = tcs_json("at", path, text, "--fps", str(fps))
                    self.assertEqual((answer["atFrame"], answer["at"]), (frame, text))
                    self.assertEqual(tcs_json("at", path, str(frame), "--fps", str(fps))["at"],
                                     text)
            past_text = "%d:00:00:00" % (TIMELINE_END // fps // 3600 + 1)
            past = tcs("at", path, past_text, "--fps", str(fps))
            self.assertEqual((past.returncode != 0, past.stdout), (True, ""))
            self.assertIn(past_text, past.stderr)


if __name__ == "__main__":
    TCS = os.path.abspath(sys.argv.pop(1))
    unittest.main(verbosity=1)
