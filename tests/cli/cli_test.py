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

TCS = None
EXAMPLE = "examples/evening_news.edl"


def tcs(*args):
    return subprocess.run([TCS, *args], capture_output=True, text=True, timeout=120)


def tcs_json(*args):
    run = tcs(*args, "--json")
    assert run.returncode == 0, run.stderr
    return json.loads(run.stdout)


def frames(tc, fps=30):
    h, m, s, f = (int(x) for x in tc.replace(";", ":").split(":"))
    return ((h * 60 + m) * 60 + s) * fps + f


def tc(n, fps=30):
    return "%02d:%02d:%02d:%02d" % (n // (fps * 3600), n // (fps * 60) % 60, n // fps % 60, n % fps)


def clips_of(info):
    return [(ch, clip) for ch in info["channels"] for clip in ch["clips"]]


def channel(info, name):
    return next(c["clips"] for c in info["channels"] if c["name"] == name)


def read(path):
    with open(path) as f:
        return f.read()


class Tool(unittest.TestCase):
    def setUp(self):
        self.dir = tempfile.mkdtemp(prefix="tcs-cli-")
        self.addCleanup(shutil.rmtree, self.dir)

    def path(self, name, text=None):
        p = os.path.join(self.dir, name)
        if text is not None:
            with open(p, "w") as f:
                f.write(text)
        return p

    def assertFailsCleanly(self, run, status, *needles):
        """Exit `status`, nothing on stdout, one line on stderr (two, with usage, for 2)."""
        self.assertEqual((run.returncode, run.stdout), (status, ""), run.stderr)
        self.assertEqual(run.stderr.count("\n"), 1 if status == 1 else 2, run.stderr)
        for needle in needles:
            self.assertIn(needle, run.stderr)

    # Every sub-command has help; misuse exits 2 with usage on stderr only.
    def test_help_usage_errors_and_exit_statuses(self):
        overview = tcs("--help")
        self.assertEqual(overview.returncode, 0)
        for sub in ("info", "at", "edit", "convert", "walk", "draw", "backups"):
            self.assertIn(sub, overview.stdout)
            run = tcs(sub, "--help")
            self.assertEqual(run.returncode, 0, sub)
            self.assertTrue(run.stdout.startswith("usage: tcs " + sub), run.stdout)
        for args in ([], ["bogus"], ["info"], ["info", EXAMPLE, "--bogus"], ["info", EXAMPLE, "x"],
                     ["at", EXAMPLE, "01:00:99:00"], ["at", EXAMPLE, "1:0:0:0:0"],
                     ["at", EXAMPLE, "01:00:00:00", "--channel", "Q7"],
                     ["info", EXAMPLE, "--fps", "0"], ["draw", EXAMPLE],
                     ["edit", EXAMPLE, "blank=V1,10,20"], ["backups", EXAMPLE, "--restore", "0"],
                     ["at", EXAMPLE, "00:01:00;00", "--fps", "29.97"],
                     ["at", EXAMPLE, "00:01:00;02", "--fps", "25"],
                     ["convert", EXAMPLE], ["convert", EXAMPLE, "out.xyz"],
                     ["convert", EXAMPLE, "out.edl", "--to", "xyz"]):
            run = tcs(*args)
            self.assertEqual((run.returncode, run.stdout), (2, ""), args)
            self.assertRegex(run.stderr, "^(tcs|usage)", args)

    # The README's examples pin the text output, the picture and the edits
    # it shows (tests/cli/readme_test.py); here: the JSON of info, at and
    # walk against each other, and the edits the README leaves out.
    def test_info_at_and_walk_agree(self):
        info = tcs_json("info", EXAMPLE)
        self.assertEqual([c["name"] for c in info["channels"]], ["V1", "V2", "A1", "A2"])
        clips = clips_of(info)
        self.assertEqual((info["totals"]["clips"], info["totals"]["start"], info["totals"]["end"]),
                         (len(clips), "00:59:58:00", "01:00:36:00"))
        for ch, clip in clips:
            self.assertEqual(frames(clip["recordIn"]), clip["recordInFrame"])
            self.assertEqual(clip["recordOutFrame"] - clip["recordInFrame"],
                             clip["sourceOutFrame"] - clip["sourceInFrame"], clip)
            for offset in (0, clip["recordOutFrame"] - clip["recordInFrame"] - 1):
                [answer] = tcs_json("at", EXAMPLE, str(clip["recordInFrame"] + offset),
                                    "--channel", ch["name"])["channels"]
                self.assertEqual((answer["clip"]["name"], answer["clip"]["sourceFrame"]),
                                 (clip["name"], clip["sourceInFrame"] + offset))
        self.assertEqual(sorted((c["transitionFrames"], c["name"]) for _, c in clips
                                if c["transition"] != "cut"),
                         [(20, "city skyline"), (30, "interview mayor")])
        self.assertIsNone(tcs_json("at", EXAMPLE, "01:00:12:00", "--channel", "V2")
                          ["channels"][0]["clip"])
        self.assertEqual(tcs("at", EXAMPLE, "01:00:20:00").stdout.splitlines()[1:],
                         tcs("at", EXAMPLE, str(frames("01:00:20:00"))).stdout.splitlines()[1:])
        # walk reports every clip start once, in order, linked channels together.
        events = tcs_json("walk", EXAMPLE)
        self.assertEqual(sorted(events, key=lambda e: e["recordInFrame"]), events)
        self.assertEqual({(name, e["recordInFrame"]) for e in events for name in e["channels"]},
                         {(ch["name"], c["recordInFrame"]) for ch, c in clips})
        self.assertEqual([e["channels"] for e in events if e["name"] == "interview mayor"],
                         [["V1", "A1"]])

    # Rates read and print timecodes their own way.
    def test_rates(self):
        # Frame 108000 is 01:00:00:00 at 30 fps and reads 01:12:00:00 at 25.
        self.assertEqual(tcs_json("at", EXAMPLE, "108000", "--fps", "25")["at"], "01:12:00:00")
        dropped = tcs_json("at", EXAMPLE, "00:10:00;00", "--fps", "29.97")
        self.assertEqual((dropped["atFrame"], dropped["at"]), (17982, "00:10:00;00"))
        self.assertEqual(tcs_json("at", EXAMPLE, "00:01:00;02", "--fps", "29.97")["atFrame"], 1800)
        out = self.path("out.edl")  # the file written keeps the rate it was edited at
        self.assertEqual(tcs("edit", EXAMPLE, "blank=V2,0,1", "-o", out, "--fps", "25").returncode, 0)
        pal = tcs_json("info", out)
        self.assertEqual((pal["fps"], pal["totals"]["end"]), (25, "01:00:36:00"))

    # Ripple insert moves what follows, blank leaves a gap, trim keeps the
    # record timecode of the source frames that stay.
    def test_insert_blank_and_trim(self):
        end = channel(tcs_json("info", EXAMPLE), "V1")[-1]["recordOutFrame"]
        out = self.path("out.edl")
        for op, name, view, want in (
                ("insert=V1,01:00:06:00,240", "V1", lambda c: c[-1]["recordOutFrame"], end + 240),
                ("blank=V1,01:00:06:00,01:00:16:00", "V1",
                 lambda c: ("studio wide" in [x["name"] for x in c], c[-1]["recordOutFrame"]),
                 (False, end)),
                ("trim=V2,01:00:07:00,00:00:01:00,00:00:03:00", "V2",
                 lambda c: [(x["recordIn"], x["sourceIn"], x["sourceOut"]) for x in c],
                 [("01:00:08:00", "00:00:01:00", "00:00:03:00")])):
            run = tcs("edit", EXAMPLE, op, "-o", out)
            self.assertEqual(run.returncode, 0, run.stderr)
            self.assertEqual(view(channel(tcs_json("info", out), name)), want, op)

    # A failed edit writes nothing.
    def test_a_failed_edit_writes_nothing(self):
        out = self.path("out.edl", "keep me\n")
        for edl, ops, status, needles in (
                (EXAMPLE, ["trim=V1,01:00:07:00,0,10"], 1, ["no clip starts at 01:00:07:00 on V1"]),
                (EXAMPLE, ["blank=V1,20,10"], 2, ["operation 1"]),
                (EXAMPLE, ["insert=V1,01:00:07:00,30"], 1, ["inside"]),
                (EXAMPLE, ["insert=V1,01:00:06:00,1"], 2, ["at least 2"]),
                (EXAMPLE, ["blank=V1,0,10", "splice=V1,0,1"], 2, ["operation 2"]),
                (EXAMPLE, ["overwrite=X1,0,0,10,x"], 2, ["X1"])):
            self.assertFailsCleanly(tcs("edit", edl, *ops, "-o", out), status, *needles)
            self.assertEqual(read(out), "keep me\n")
        self.assertEqual(sorted(os.listdir(self.dir)), ["out.edl"])

    # Edits write every clip of every channel: the one the event walk passes
    # over, aux channels, clips that start together with the same source on
    # different reels, and a moved clip over its neighbour, as it plays.
    def test_edit_and_convert_write_every_clip(self):
        bed = self.path("bed.edl", "TITLE: BED\n"
                        "001  A  V   C  00:00:00:00 00:00:02:00 01:00:00:00 01:00:02:00\n"
                        "002  B  V   C  00:00:00:00 00:00:02:00 01:00:02:00 01:00:04:00\n"
                        "003  C  V2  C  00:00:00:00 00:00:01:00 01:00:03:00 01:00:04:00\n"
                        "004  M  A2  C  00:00:00:00 00:00:10:00 01:00:00:00 01:00:10:00\n"
                        "005  R1 V3  C  00:00:05:00 00:00:06:00 01:00:05:00 01:00:06:00\n"
                        "006  R2 V4  C  00:00:05:00 00:00:06:00 01:00:05:00 01:00:06:00\n"
                        "007  R3 NONE C 00:00:05:00 00:00:06:00 01:00:05:00 01:00:06:00\n"
                        "* TCS AUX: X2\n")
        self.assertNotIn((["V1"], "01:00:02:00"),
                         [(e["channels"], e["recordIn"]) for e in tcs_json("walk", bed)])
        def played(path):
            return sorted((ch["name"], c["recordIn"], c["recordOut"], c["sourceIn"], c["reel"])
                          for ch in tcs_json("info", path)["channels"] for c in ch["clips"])
        before = played(bed)
        out = self.path("out.edl")
        run = tcs("edit", bed, "blank=V2,01:00:08:00,01:00:09:00", "-o", out)
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertEqual(played(out), before)
        self.assertIn(("X2", "01:00:05:00", "01:00:06:00", "00:00:05:00", "R3"), before)
        self.assertIn("TITLE: BED\n", read(out))
        # The clip that starts at 01:00:00:00 on V1 moves over the next one.
        run = tcs("edit", bed, "move=V1,01:00:00:00,01:00:01:00", "-o", out)
        self.assertEqual(run.returncode, 0, run.stderr)
        v1 = [(c["recordIn"], c["recordOut"], c["reel"]) for c in channel(tcs_json("info", out), "V1")]
        self.assertEqual(v1, [("01:00:01:00", "01:00:02:00", "A"), ("01:00:02:00", "01:00:04:00", "B")])
        # convert: the same clips, the title kept or given, standard output.
        converted = self.path("converted.edl")
        run = tcs("convert", bed, converted)
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertEqual(played(converted), before)
        self.assertIn("TITLE: BED\n", read(converted))
        run = tcs("convert", bed, "-", "--title", "Other")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertTrue(run.stdout.startswith("TITLE: Other\n"), run.stdout[:40])
        self.assertFalse(os.path.exists("-"))
        run = tcs("convert", bed, self.path("as.txt"), "--to", "edl", "--fps", "25")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertIn("* TCS FRAME RATE: 25", read(self.path("as.txt")))
        self.assertFailsCleanly(tcs("convert", bed, self.path("x.otio2")), 2, "--to")
        # .otio where the tool is built with it: the same clips on the same tracks.
        run = tcs("convert", bed, self.path("bed.otio"))
        if run.returncode == 0:
            timeline = json.loads(read(self.path("bed.otio")))
            self.assertEqual((timeline["OTIO_SCHEMA"], timeline["name"]), ("Timeline.1", "BED"))
            # And back: every clip but the aux one (a host cannot lay aux
            # channels), which goes to a free video track with a warning.
            run = tcs("convert", self.path("bed.otio"), converted)
            self.assertEqual(run.returncode, 0, run.stderr)
            self.assertIn("track 'X2' read onto V", run.stderr)
            self.assertEqual([p for p in played(converted) if p[0] != "X2" and p[4] != "R3"],
                             [p for p in before if p[0] != "X2"])
            self.assertEqual(played(converted), played(self.path("bed.otio")))
        else:
            self.assertIn("not be told from its name", run.stderr)

    # Writing onto the input keeps the old file as a numbered backup, which
    # tcs backups counts and restores; -o - writes to standard output only.
    def test_edit_onto_its_input_keeps_backups(self):
        edl = self.path("show.edl", read(EXAMPLE))
        versions = [read(edl)]
        for op in ("blank=V1,01:00:06:00,01:00:07:00", "blank=V1,01:00:08:00,01:00:09:00"):
            run = tcs("edit", edl, op, "-o", edl)
            self.assertEqual(run.returncode, 0, run.stderr)
            self.assertIn("show.000.edl", run.stdout)
            versions.append(read(edl))
        self.assertEqual(read(self.path("show.000.edl")), versions[1])
        self.assertEqual(read(self.path("show.001.edl")), versions[0])
        self.assertIn("2 backups", tcs("backups", edl).stdout)
        self.assertEqual(tcs("backups", edl, "--restore", "2").returncode, 0)
        self.assertEqual(read(edl), versions[0])
        run = tcs("edit", edl, "blank=V1,01:00:06:00,01:00:07:00", "-o", "-")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertEqual(run.stdout, versions[1].replace("\r\n", "\n"))
        self.assertEqual(sorted(os.listdir(self.dir)), ["show.edl"])

    # Missing, unreadable or malformed input: exit 1, one line naming the
    # file (and line), no output file touched or made.
    def test_unreadable_or_malformed_files_name_the_file_and_line(self):
        malformed = self.path("bad.edl", "TITLE: BAD\n\n001  AX  V  C  00:00:00:00 00:00:01:00 "
                              "01:00:00:00 01:00:01:00\n002  AX  V  C  00:00:01:00 zz:00:02:00 "
                              "01:00:01:00 01:00:02:00\n")
        keep = self.path("keep.svg", "<old/>")
        for path, needle in ((self.path("missing.edl"), "missing.edl"), (self.dir, "directory"),
                             (malformed, "line 4")):
            for args in (["info", path], ["walk", path], ["at", path, "0"],
                         ["draw", path, "-o", keep], ["edit", path, "blank=V1,0,1", "-o", keep]):
                self.assertFailsCleanly(tcs(*args, "--strict"), 1, needle, os.path.basename(path))
        self.assertEqual(read(keep), "<old/>")
        self.assertEqual(sorted(os.listdir(self.dir)), ["bad.edl", "keep.svg"])
        self.assertFailsCleanly(tcs("draw", EXAMPLE, "-o", self.path("no/such/dir.svg")), 1,
                                "dir.svg")

    # Read tolerantly, a bad line is skipped and named once, under the path
    # said once; --quiet shows none, --warnings all every one, --strict
    # stops at the first.
    def test_warnings_once_each_and_how_many(self):
        lines = ["TITLE: SOME", "FCM: NON-DROP FRAME"]
        for n in range(8):
            lines.append("%03d  AX  V  C  00:00:00:00 00:00:01:00 %s %s" % (
                n + 1, tc(30 * n), tc(30 * n + 30)))
            lines.append("this is not an EDL line %d" % n)
        edl = self.path("some.edl", "\n".join(lines) + "\n")
        run = tcs("info", edl, "--json")
        self.assertEqual(run.returncode, 0, run.stderr)
        info = json.loads(run.stdout)
        self.assertEqual((len(channel(info, "V1")), info["warnings"]), (8, 8))
        self.assertEqual(run.stderr.count(edl), 1)
        self.assertEqual(run.stderr.count("not an EDL line"), 5)
        self.assertIn("line 4: not an EDL line", run.stderr)
        self.assertIn("3 more", run.stderr)
        every = tcs("info", edl, "--warnings", "all").stderr
        self.assertEqual(every.count("not an EDL line"), 8)
        self.assertIn("line 18: not an EDL line", every)
        self.assertEqual(tcs("at", edl, "0", "--quiet").stderr, "")
        self.assertEqual(tcs("walk", edl, "--warnings", "2").stderr.count("not an EDL line"), 2)
        self.assertFailsCleanly(tcs("info", edl, "--strict"), 1, "line 4", "some.edl")
        self.assertEqual(tcs("info", edl, "--warnings", "x").returncode, 2)

    # Without --fps the rate comes from the file and is said; timecodes are
    # taken as the file counts them, whatever separator is typed.
    def test_rate_found_and_said(self):
        key = "tests/data/edl/KEY_TRANSITION.edl"  # FCM: DROP FRAME over ':' timecodes
        info = tcs_json("info", key)
        self.assertEqual((info["fps"], info["dropFrame"], info["rateFrom"]),
                         (30, True, "FCM: DROP FRAME"))
        self.assertEqual(channel(info, "V1")[0]["recordIn"], "01:00:04;10")
        for typed in ("01:00:04:10", "01:00:04;10"):
            at = tcs_json("at", key, typed)
            self.assertEqual(at["atFrame"], 107892 + 130, typed)
        self.assertIn("(29.97 fps drop-frame, from FCM: DROP FRAME)", tcs("info", key).stdout)
        pal = tcs_json("info", "tests/data/edl/test_24.edl")
        self.assertEqual((pal["fps"], pal["rateFrom"]), (25, "frame fields up to 24"))
        film = tcs_json("info", "tests/data/edl/cdl.edl", "--fps", "23.976")
        self.assertEqual((film["fps"], film["rate"], film["rateFrom"]), (24, "23.976 fps", "--fps"))
        # --fps 30 on a drop-frame list: counted and shown non-drop, as typed.
        ndf = tcs_json("info", key, "--fps", "30")
        self.assertEqual(channel(ndf, "V1")[0]["recordIn"], "01:00:04:10")
        self.assertEqual(channel(ndf, "V1")[0]["recordInFrame"], 108000 + 130)
        for rate in ("23.98", "29.97df", "59.94df", "48", "120"):
            self.assertEqual(tcs("info", EXAMPLE, "--fps", rate).returncode, 0, rate)
        # 100 fps and more: three-digit frame fields, counted at the rate asked.
        fast = self.path("fast.edl", "001  AX  V  C  00:00:00:00 00:00:01:50 00:00:00:00 00:00:01:50\n")
        self.assertEqual(channel(tcs_json("info", fast, "--fps", "100"), "V1")[0]["recordOutFrame"], 150)
        # A tape counted drop-frame in a non-drop list: its source timecodes
        # are shown and written back as the FCM: line above it counted them.
        mixed = self.path("mixed.edl", "TITLE: MIXED\nFCM: NON-DROP FRAME\n"
                          "001  R1  V  C  01:00:00:00 01:00:01:29 00:00:00:00 00:00:01:29\n"
                          "FCM: DROP FRAME\n"
                          "002  R2  V  C  01:10:00;00 01:10:01;00 00:00:01:29 00:00:02:29\n")
        clips = channel(tcs_json("info", mixed), "V1")
        self.assertEqual([c["sourceIn"] for c in clips], ["01:00:00:00", "01:10:00;00"])
        self.assertEqual(clips[0]["recordOut"], "00:00:01:29")
        out = self.path("mixed_out.edl")
        self.assertEqual(tcs("convert", mixed, out).returncode, 0)
        self.assertIn("FCM: DROP FRAME\n002  R2       V     C        01:10:00;00", read(out))

    # M2 speeds: shown by info, and at gives the source frame they play.
    def test_speeds(self):
        reverse = "tests/data/edl/FCP_REVERSE.edl"  # -25.0 from 01:00:39:23, read at 25
        clip = channel(tcs_json("info", reverse, "--fps", "25"), "V1")[0]
        self.assertEqual(clip["speed"], "-25.0")
        at = tcs_json("at", reverse, "01:00:00:10", "--fps", "25")
        self.assertEqual(at["channels"][0]["clip"]["source"], "01:00:39:13")
        self.assertIn(" speed ", tcs("info", reverse, "--fps", "25").stdout)
        self.assertNotIn("speed", tcs("info", EXAMPLE).stdout)

    # Names in bytes that are not UTF-8 are kept; the JSON stays UTF-8.
    def test_names_that_are_not_utf8(self):
        edl = self.path("latin.edl")
        with open(edl, "wb") as f:
            f.write(b"001  AX  V  C  00:00:00:00 00:00:01:00 00:00:00:00 00:00:01:00\n"
                    b"* FROM CLIP NAME: caf\xe9 \xc3\xa9t\xc3\xa9\n")
        out = subprocess.run([TCS, "info", edl, "--json"], capture_output=True, timeout=60).stdout
        self.assertEqual(json.loads(out.decode("utf-8"))["channels"][0]["clips"][0]["name"],
                         "caf\u00e9 \u00e9t\u00e9")

    # A long read shows progress on a terminal and nothing when piped.
    def test_progress_only_on_a_terminal(self):
        lines = ["%06d  R%05d V     C        00:00:00:00 00:00:00:01 %s %s" % (
            n + 1, n % 100000, tc(n), tc(n + 1)) for n in range(100000)]
        big = self.path("big.edl", "TITLE: BIG\n" + "\n".join(lines) + "\n")
        piped = tcs("walk", big)
        self.assertEqual((piped.returncode, piped.stderr), (0, ""))
        self.assertEqual(len(piped.stdout.splitlines()), 100001)
        master, slave = pty.openpty()
        try:  # the progress of one file fits the terminal's buffer
            run = subprocess.run([TCS, "info", big], stdout=subprocess.DEVNULL, stderr=slave,
                                 timeout=300)
            self.assertEqual(run.returncode, 0)
            self.assertIn(b"reading", os.read(master, 65536))
        finally:
            os.close(slave)
            os.close(master)

    # Backups are counted, restored by number, and a missing one is refused.
    def test_count_and_restore(self):
        space = self.path("show.spc", "current")
        for i, text in enumerate(("first", "second", "third")):
            self.path("show.%03d.spc" % i, text)
        self.assertIn("3 backups", tcs("backups", space).stdout)
        run = tcs("backups", space, "--restore", "1")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertEqual(read(space), "first")
        self.assertIn("2 backups", tcs("backups", space).stdout)
        self.assertFailsCleanly(tcs("backups", space, "--restore", "3"), 1, "there are 2")
        self.assertFailsCleanly(tcs("backups", self.path("none.spc")), 1, "none.spc")


if __name__ == "__main__":
    TCS = os.path.abspath(sys.argv.pop(1))
    unittest.main(verbosity=1)
