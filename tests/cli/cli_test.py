#!/usr/bin/env python3
"""Runs the tcs tool as a user would, on the bundled example and on broken
input. Usage: cli_test.py TCS-BINARY (run from the source directory)."""
import json
import os
import pty
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ET

TCS = None
EXAMPLE = "examples/evening_news.edl"
SVG = "{http://www.w3.org/2000/svg}"


def tcs(*args, cwd=None, stderr=subprocess.PIPE):
    return subprocess.run([TCS, *args], cwd=cwd, stdout=subprocess.PIPE, stderr=stderr,
                          text=True, timeout=120)


def tcs_json(*args):
    run = tcs(*args, "--json")
    assert run.returncode == 0, run.stderr
    return json.loads(run.stdout)


def frames(tc, fps=30):
    h, m, s, f = (int(x) for x in tc.replace(";", ":").split(":"))
    return ((h * 60 + m) * 60 + s) * fps + f


def clips_of(info):
    return [(ch, clip) for ch in info["channels"] for clip in ch["clips"]]


class Scratch(unittest.TestCase):
    def setUp(self):
        self.dir = tempfile.mkdtemp(prefix="tcs-cli-")

    def tearDown(self):
        shutil.rmtree(self.dir)

    def path(self, name, text=None):
        p = os.path.join(self.dir, name)
        if text is not None:
            with open(p, "w") as f:
                f.write(text)
        return p

    def assertFailsCleanly(self, run, status, *needles):
        self.assertEqual(run.returncode, status, run.stderr)
        self.assertEqual(run.stderr.count("\n"), 1 if status == 1 else 2, run.stderr)
        for needle in needles:
            self.assertIn(needle, run.stderr)


class CommandLine(unittest.TestCase):
    def test_help_usage_errors_and_exit_statuses(self):
        overview = tcs("--help")
        self.assertEqual(overview.returncode, 0)
        for sub in ("info", "at", "edit", "walk", "draw", "backups"):
            self.assertIn(sub, overview.stdout)
            run = tcs(sub, "--help")
            self.assertEqual(run.returncode, 0, sub)
            self.assertTrue(run.stdout.startswith("usage: tcs " + sub), run.stdout)
        for args in ([], ["bogus"], ["info"], ["info", EXAMPLE, "--bogus"], ["info", EXAMPLE, "x"],
                     ["at", EXAMPLE, "01:00:99:00"], ["at", EXAMPLE, "1:0:0:0:0"],
                     ["at", EXAMPLE, "01:00:00:00", "--channel", "Q7"],
                     ["info", EXAMPLE, "--fps", "0"], ["draw", EXAMPLE],
                     ["edit", EXAMPLE, "blank=V1,10,20"], ["backups", EXAMPLE, "--restore", "0"]):
            run = tcs(*args)
            self.assertEqual(run.returncode, 2, args)
            self.assertEqual(run.stdout, "", args)
            self.assertRegex(run.stderr, "^(tcs|usage)", args)


class ReadingTheExample(unittest.TestCase):
    def test_info_tables_and_json_agree(self):
        text = tcs("info", EXAMPLE)
        self.assertEqual(text.returncode, 0, text.stderr)
        info = tcs_json("info", EXAMPLE)
        self.assertEqual([c["name"] for c in info["channels"]], ["V1", "V2", "A1", "A2"])
        clips = clips_of(info)
        self.assertEqual(info["totals"]["clips"], len(clips))
        self.assertEqual(info["totals"]["start"], "00:59:58:00")
        self.assertEqual(info["totals"]["end"], "01:00:36:00")
        for channel, clip in clips:
            self.assertIn("\nchannel %s (%d)" % (channel["name"], channel["channel"]), text.stdout)
            self.assertIn(clip["recordIn"] + "  " + clip["recordOut"], text.stdout)
            self.assertEqual(frames(clip["recordIn"]), clip["recordInFrame"])
            self.assertEqual(clip["recordOutFrame"] - clip["recordInFrame"],
                             clip["sourceOutFrame"] - clip["sourceInFrame"], clip)
        names = {clip["name"] for _, clip in clips}
        self.assertTrue({"opening titles", "interview mayor", "city skyline", "theme music"} <= names)
        transitions = sorted((c["transitionFrames"], c["name"]) for _, c in clips
                             if c["transition"] != "cut")
        self.assertEqual(transitions, [(20, "city skyline"), (30, "interview mayor")])

    def test_at_answers_as_info_lays_the_clips_out(self):
        info = tcs_json("info", EXAMPLE)
        for channel, clip in clips_of(info):
            for offset in (0, clip["recordOutFrame"] - clip["recordInFrame"] - 1):
                at = tcs_json("at", EXAMPLE, str(clip["recordInFrame"] + offset),
                              "--channel", channel["name"])
                [answer] = at["channels"]
                self.assertEqual(answer["clip"]["name"], clip["name"])
                self.assertEqual(answer["clip"]["sourceFrame"], clip["sourceInFrame"] + offset)
        gap = tcs_json("at", EXAMPLE, "01:00:12:00", "--channel", "V2")
        self.assertIsNone(gap["channels"][0]["clip"])
        # A timecode and its frame count ask the same; every channel answers.
        self.assertEqual(tcs("at", EXAMPLE, "01:00:20:00").stdout.splitlines()[1:],
                         tcs("at", EXAMPLE, str(frames("01:00:20:00"))).stdout.splitlines()[1:])
        self.assertEqual(len(tcs_json("at", EXAMPLE, "01:00:20:00")["channels"]), 4)

    def test_walk_reports_each_start_once_with_linked_channels(self):
        events = tcs_json("walk", EXAMPLE)
        info = tcs_json("info", EXAMPLE)
        starts = {(ch["name"], c["recordInFrame"]) for ch, c in clips_of(info)}
        self.assertEqual(sorted(events, key=lambda e: e["recordInFrame"]), events)
        reported = {(name, e["recordInFrame"]) for e in events for name in e["channels"]}
        self.assertEqual(reported, starts)
        interview = [e for e in events if e["name"] == "interview mayor"]
        self.assertEqual([e["channels"] for e in interview], [["V1", "A1"]])
        text = tcs("walk", EXAMPLE).stdout.splitlines()
        self.assertEqual(len(text), len(events) + 1)
        self.assertIn("V1+A1", text[1 + events.index(interview[0])])

    def test_rates(self):
        # 01:00:00:00 at 30 fps is frame 108000; at 25 fps the same frame reads 01:12:00:00.
        self.assertEqual(tcs_json("at", EXAMPLE, "108000", "--fps", "25")["at"], "01:12:00:00")
        dropped = tcs_json("at", EXAMPLE, "00:10:00;00", "--fps", "29.97")
        self.assertEqual((dropped["atFrame"], dropped["at"]), (17982, "00:10:00;00"))
        self.assertEqual(tcs_json("at", EXAMPLE, "00:01:00;02", "--fps", "29.97")["atFrame"], 1800)
        self.assertEqual(tcs("at", EXAMPLE, "00:01:00;00", "--fps", "29.97").returncode, 2)
        self.assertEqual(tcs("at", EXAMPLE, "00:01:00;02", "--fps", "25").returncode, 2)


class Drawing(Scratch):
    def test_picture_holds_a_box_per_clip_and_a_lane_per_channel(self):
        out = self.path("t.svg")
        run = tcs("draw", EXAMPLE, "-o", out)
        self.assertEqual(run.returncode, 0, run.stderr)
        root = ET.parse(out).getroot()
        info = tcs_json("info", EXAMPLE)
        boxes = [r for r in root.iter(SVG + "rect") if "clip" in r.get("class", "").split()]
        self.assertEqual(len(boxes), info["totals"]["clips"])
        lanes = [g.get("id") for g in root.iter(SVG + "g") if g.get("class") == "lane"]
        self.assertEqual(lanes, [c["name"] for c in info["channels"]])
        marks = [p for p in root.iter(SVG + "path") if p.get("class") == "transition"]
        self.assertEqual(len(marks), 2)
        # Boxes keep record order and never overlap within a lane.
        for lane in (g for g in root.iter(SVG + "g") if g.get("class") == "lane"):
            xs = [(float(r.get("x")), float(r.get("width"))) for r in lane.iter(SVG + "rect")
                  if "clip" in r.get("class", "")]
            for (x0, w0), (x1, _) in zip(xs, xs[1:]):
                self.assertLessEqual(x0 + w0, x1 + 0.1)


class Editing(Scratch):
    def edited(self, *ops):
        out = self.path("out.edl")
        run = tcs("edit", EXAMPLE, *ops, "-o", out)
        self.assertEqual(run.returncode, 0, run.stderr)
        return tcs_json("info", out)

    def channel(self, info, name):
        return next(c["clips"] for c in info["channels"] if c["name"] == name)

    def test_each_operation_changes_the_timeline_as_it_says(self):
        before = self.channel(tcs_json("info", EXAMPLE), "V1")
        second = 8 * 30
        # Ripple delete: what followed moves back by the removed length.
        after = self.channel(self.edited("delete=V1,01:00:01:00,01:00:09:00"), "V1")
        self.assertEqual(after[-1]["recordOutFrame"], before[-1]["recordOutFrame"] - second)
        # Ripple insert: what followed moves on.
        after = self.channel(self.edited("insert=V1,01:00:06:00,240"), "V1")
        self.assertEqual(after[-1]["recordOutFrame"], before[-1]["recordOutFrame"] + second)
        # Blank: a gap, nothing moves.
        after = self.channel(self.edited("blank=V1,01:00:06:00,01:00:16:00"), "V1")
        self.assertNotIn("studio wide", [c["name"] for c in after])
        self.assertEqual(after[-1]["recordOutFrame"], before[-1]["recordOutFrame"])
        # Overwrite on two channels at once.
        info = self.edited("overwrite=V1+A1,01:00:02:00,00:50:00:00,00:50:02:00,breaking, news")
        for name in ("V1", "A1"):
            hit = [c for c in self.channel(info, name) if c["name"] == "breaking, news"]
            self.assertEqual([(c["recordIn"], c["recordOut"], c["sourceIn"]) for c in hit],
                             [("01:00:02:00", "01:00:04:00", "00:50:00:00")])
        # Move and trim act on the clip that starts at the position.
        moved = self.channel(self.edited("move=V2,01:00:07:00,01:00:20:00"), "V2")
        self.assertEqual([c["recordIn"] for c in moved], ["01:00:20:00"])
        trimmed = self.channel(self.edited("trim=V2,01:00:07:00,00:00:01:00,00:00:03:00"), "V2")
        # Source frames that stay keep their record timecode.
        self.assertEqual([(c["recordIn"], c["sourceIn"], c["sourceOut"]) for c in trimmed],
                         [("01:00:08:00", "00:00:01:00", "00:00:03:00")])

    def test_a_failed_edit_writes_nothing(self):
        out = self.path("out.edl", "keep me\n")
        for ops, status, needle in (
                (["trim=V1,01:00:07:00,0,10"], 1, "no clip starts at 01:00:07:00 on V1"),
                (["blank=V1,20,10"], 2, "operation 1"),
                (["insert=V1,01:00:07:00,30"], 1, "inside"),
                (["insert=V1,01:00:06:00,1"], 2, "at least 2"),
                (["blank=V1,0,10", "splice=V1,0,1"], 2, "operation 2"),
                (["overwrite=X1,0,0,10,x"], 2, "X1")):
            run = tcs("edit", EXAMPLE, *ops, "-o", out)
            self.assertFailsCleanly(run, status, needle)
            with open(out) as f:
                self.assertEqual(f.read(), "keep me\n")
        self.assertEqual(os.listdir(self.dir), ["out.edl"])

    def test_an_export_that_would_lose_a_clip_is_refused(self):
        # A long clip reported at the same start as another channel's leaves
        # that channel's next clip behind in the event walk.
        edl = self.path("bed.edl", "TITLE: BED\n"
                        "001  A  V   C  00:00:00:00 00:00:02:00 01:00:00:00 01:00:02:00\n"
                        "002  B  V   C  00:00:00:00 00:00:02:00 01:00:02:00 01:00:04:00\n"
                        "003  C  V2  C  00:00:00:00 00:00:01:00 01:00:03:00 01:00:04:00\n"
                        "004  M  A2  C  00:00:00:00 00:00:10:00 01:00:00:00 01:00:10:00\n")
        out = self.path("out.edl", "keep me\n")
        lost = [(e["channels"], e["recordIn"]) for e in tcs_json("walk", edl)]
        self.assertNotIn((["V1"], "01:00:02:00"), lost)
        run = tcs("edit", edl, "blank=V2,01:00:08:00,01:00:09:00", "-o", out)
        self.assertFailsCleanly(run, 1, "would lose 1 clip", "V1 01:00:02:00")
        with open(out) as f:
            self.assertEqual(f.read(), "keep me\n")


class BadInput(Scratch):
    def test_unreadable_or_malformed_files_name_the_file_and_line(self):
        malformed = self.path("bad.edl", "TITLE: BAD\n\n001  AX  V  C  00:00:00:00 00:00:01:00 "
                              "01:00:00:00 01:00:01:00\n002  AX  V  C  00:00:01:00 zz:00:02:00 "
                              "01:00:01:00 01:00:02:00\n")
        keep = self.path("keep.svg", "<old/>")
        cases = ((self.path("missing.edl"), "missing.edl"), (self.dir, "directory"),
                 (malformed, "line 4"))
        for path, needle in cases:
            for args in (["info", path], ["walk", path], ["at", path, "0"],
                         ["draw", path, "-o", keep], ["edit", path, "blank=V1,0,1", "-o", keep]):
                run = tcs(*args)
                self.assertFailsCleanly(run, 1, needle, os.path.basename(path))
                self.assertEqual(run.stdout, "")
        with open(keep) as f:
            self.assertEqual(f.read(), "<old/>")
        self.assertEqual(sorted(os.listdir(self.dir)), ["bad.edl", "keep.svg"])
        unwritable = tcs("draw", EXAMPLE, "-o", self.path("no/such/dir.svg"))
        self.assertFailsCleanly(unwritable, 1, "dir.svg")

    def test_progress_only_on_a_terminal(self):
        lines = ["%06d  R%05d V     C        00:00:00:00 00:00:00:01 %s %s" % (
            n + 1, n % 100000, tc(n), tc(n + 1)) for n in range(100000)]
        big = self.path("big.edl", "TITLE: BIG\n" + "\n".join(lines) + "\n")
        piped = tcs("walk", big)
        self.assertEqual((piped.returncode, piped.stderr), (0, ""))
        self.assertEqual(len(piped.stdout.splitlines()), 100001)
        master, slave = pty.openpty()
        try:
            run = subprocess.run([TCS, "info", big], stdout=subprocess.DEVNULL, stderr=slave,
                                 timeout=300)
            os.close(slave)
            shown = b""
            while True:
                try:
                    chunk = os.read(master, 65536)
                except OSError:
                    break
                if not chunk:
                    break
                shown += chunk
        finally:
            os.close(master)
        self.assertEqual(run.returncode, 0)
        self.assertIn(b"reading", shown)


def tc(n, fps=30):
    return "%02d:%02d:%02d:%02d" % (n // (fps * 3600), n // (fps * 60) % 60, n // fps % 60, n % fps)


class Backups(Scratch):
    def test_count_and_restore(self):
        space = self.path("show.spc", "current")
        for i, text in enumerate(("first", "second", "third")):
            self.path("show.%03d.spc" % i, text)
        self.assertIn("3 backups", tcs("backups", space).stdout)
        run = tcs("backups", space, "--restore", "1")
        self.assertEqual(run.returncode, 0, run.stderr)
        with open(space) as f:
            self.assertEqual(f.read(), "first")
        self.assertIn("2 backups", tcs("backups", space).stdout)
        self.assertFailsCleanly(tcs("backups", space, "--restore", "3"), 1, "there are 2")
        self.assertFailsCleanly(tcs("backups", self.path("none.spc")), 1, "none.spc")


if __name__ == "__main__":
    TCS = os.path.abspath(sys.argv.pop(1))
    unittest.main(verbosity=1)
