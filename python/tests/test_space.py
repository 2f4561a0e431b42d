"""Spaces from Python against a frame model: random edits sent through the
module, then every channel's clips, what plays at random frames and the
event walk checked against each other and against a model of each channel
kept the obvious way, frame by frame."""
import random

import pytest

import tcspace

CHANNELS = ["V1", "V2", "A1", "A2"]
WINDOW = 600


class Model:
    """Each channel as a list of frames: (name, source frame) or None."""

    def __init__(self):
        self.frames = {c: [None] * (WINDOW * 3) for c in CHANNELS}

    def overwrite(self, chans, at, src_in, src_out, name):
        for c in chans:
            for i in range(src_out - src_in):
                self.frames[c][at + i] = (name, src_in + i)

    def blank(self, chans, a, b):
        for c in chans:
            for i in range(a, b):
                self.frames[c][i] = None

    def delete(self, chans, a, b):
        for c in chans:
            f = self.frames[c]
            self.frames[c] = f[:a] + f[b:] + [None] * (b - a)


def check(space, model):
    listed = {c: space.clips(c) for c in space.channels()}
    for c in CHANNELS:
        played = [None] * (WINDOW * 3)
        for clip in listed.get(c, []):
            assert clip.channel == c and clip.alive
            for i in range(clip.length):
                played[int(clip.record_in) + i] = (clip.name, int(clip.source_in) + i)
        assert played == model.frames[c], c
    for f in random.Random(7).sample(range(WINDOW * 3), 40):
        for p in space.at(f):
            expected = model.frames[p.channel][f]
            if expected is None:
                assert p.clip is None and p.source is None
            else:
                assert (p.clip.name, int(p.source)) == expected
    starts = {(c, int(k.record_in)) for c, clips in listed.items() for k in clips}
    for e in space.events():
        for c in e.channels:
            assert (c, int(e.record_in)) in starts


@pytest.mark.parametrize("seed", range(4))
def test_random_edits_match_the_frame_model(seed):
    rng = random.Random(seed)
    model = Model()
    with tcspace.Space("25") as space:
        for step in range(60):
            chans = rng.sample(CHANNELS, rng.randint(1, 2))
            a = rng.randrange(0, WINDOW)
            b = a + rng.randint(1, 200)
            kind = rng.choice(["overwrite", "overwrite", "blank", "delete"])
            if kind == "overwrite":
                src = rng.randrange(0, 100000)
                name = f"clip{step}"
                space.overwrite("+".join(chans), at=a, source=(src, src + b - a), name=name)
                model.overwrite(chans, a, src, src + b - a, name)
            elif kind == "blank":
                space.blank(chans, a, b)
                model.blank(chans, a, b)
            else:
                space.delete(chans, a, b)
                model.delete(chans, a, b)
            check(space, model)


def test_timecodes_follow_the_rate():
    with tcspace.Space("29.97df") as space:
        space.overwrite("V1", at="00:10:00;00", source=(0, 30), name="x")
        clip = space.clips("V1")[0]
        assert clip.record_in.frames == 17982
        assert str(clip.record_in) == "00:10:00;00"
        assert str(clip.record_out) == "00:10:01;00"
    assert tcspace.Timecode.parse("00:01:00;02", "29.97df").frames == 1800
    assert str(tcspace.Timecode(1800, "29.97df")) == "00:01:00;02"
    assert tcspace.Timecode("01:00:00:00", 25) == 90000
    assert repr(tcspace.FrameRate(23.976)) == "FrameRate('23.976')"
    assert tcspace.FrameRate("59.94df") == tcspace.FrameRate(59.94)
    assert sorted([tcspace.Timecode(5), tcspace.Timecode(2)])[0] == 2


def test_a_clip_that_outlives_its_record_raises(news):
    space = tcspace.read(news)
    first = space.clips("V1")[0]
    kept = space.clips("V1")[-1]
    space.delete("V1", first.record_in, first.record_out)
    assert not first.alive
    with pytest.raises(tcspace.StaleClipError):
        first.name
    assert "stale" in repr(first)
    # The ripple moved the last clip: its listed values no longer hold.
    assert not kept.alive
    fresh = space.clips("V1")[-1]
    assert fresh.alive and fresh.name == "city skyline"
    space.close()
    with pytest.raises(tcspace.StaleClipError):
        fresh.record_in
    with pytest.raises(tcspace.BadHandleError) as error:
        space.clips("V1")
    assert error.value.code == 0xA8080004 and error.value.name == "TCS_ERR_BAD_HANDLE"


def test_notifications_are_python_callables():
    seen = []
    with tcspace.Space() as space:
        space.on_add = lambda clip: clip.name != "refused"
        space.on_delete = lambda clip: seen.append((clip.channel, clip.name))
        space.overwrite("V1", 0, (0, 50), "kept")
        space.overwrite("V1", 100, (0, 50), "refused")
        assert [c.name for c in space.clips("V1")] == ["kept"]

        def broken(clip):
            raise RuntimeError("host bug")

        space.on_add = broken
        with pytest.warns(RuntimeWarning, match="host bug"):
            space.overwrite("A1", 0, (0, 10), "added anyway")
        assert [c.name for c in space.clips("A1")] == ["added anyway"]
    assert sorted(seen) == [("A1", "added anyway"), ("V1", "kept")]


def test_refusals_raise_the_status_family():
    with tcspace.Space() as space:
        space.overwrite("V1", 0, (0, 50), "a")
        with pytest.raises(tcspace.BadRangeError) as error:
            space.delete("V1", 0, 10692001)
        assert error.value.code == 0xA808F013 and "TCSpace(0xA808F013)" in error.value.log
        with pytest.raises(ValueError, match="no clip starts at 00:00:00:01 on V1"):
            space.move("V1", 1, 100)
        with pytest.raises(ValueError, match="inside a clip on V1"):
            space.insert("V1", 10, 20)
        assert [int(c.record_in) for c in space.clips("V1")] == [0]


def test_read_finds_the_rate_and_keeps_warnings(tmp_path):
    data = __import__("os").path.join(__import__("conftest").ROOT, "tests", "data", "edl")
    with tcspace.read(f"{data}/45S_SAMPLE.edl") as space:
        assert space.rate == tcspace.FrameRate(25)
        assert "frame fields" in space.rate_reason
    with tcspace.read(f"{data}/KEY_TRANSITION.edl") as space:
        assert space.rate == tcspace.FrameRate("29.97df")
    broken = tmp_path / "broken.edl"
    broken.write_text("TITLE: t\n001  AX  V  C  00:00:0x:00 junk\n"
                      "002  AX       V     C        00:00:00:00 00:00:01:00 "
                      "00:00:00:00 00:00:01:00\n")
    with tcspace.read(str(broken), fps=25) as space:
        assert space.rate_reason == "given"
        assert [line for line, _ in space.warnings] == [2]
        assert len(space.clips("V1")) == 1
    with pytest.raises(tcspace.TcsError) as error:
        tcspace.read(str(broken), strict=True)
    assert "line 2" in error.value.log


def test_speeds_play_the_source_they_say():
    data = __import__("os").path.join(__import__("conftest").ROOT, "tests", "data", "edl")
    with tcspace.read(f"{data}/FCP_REVERSE.edl", fps=25) as space:
        reversed_clips = [c for name in space.channels() for c in space.clips(name)
                          if c.speed is not None and c.speed < 0]
        assert reversed_clips, "the list plays a clip in reverse"
        clip = reversed_clips[0]
        first = [p for p in space.at(clip.record_in) if p.channel == clip.channel][0]
        later = [p for p in space.at(clip.record_in + 5) if p.channel == clip.channel][0]
        assert int(later.source) == int(first.source) - 5  # full-speed reverse


def test_otio_and_edl_hold_the_same_clips(news, tmp_path):
    def clips(space):
        return {c: [(int(k.record_in), k.length, int(k.source_in), k.name, k.reel)
                    for k in space.clips(c)] for c in space.channels()}

    with tcspace.read(news) as space:
        original = clips(space)
        space.write(str(tmp_path / "news.otio"))
    with tcspace.read(str(tmp_path / "news.otio")) as space:
        assert space.rate == tcspace.FrameRate(30)
        assert clips(space) == original
        space.write(str(tmp_path / "back.edl"))
    with tcspace.read(str(tmp_path / "back.edl")) as space:
        assert clips(space) == original
    (tmp_path / "bad.otio").write_text("{not json")
    with pytest.raises(tcspace.TcsError):
        tcspace.read(str(tmp_path / "bad.otio"))


def test_write_keeps_every_clip_the_walk_would_pass_over(tmp_path):
    with tcspace.Space() as space:
        # V1's clip at 40 starts while the walk still marks V1 as reported;
        # V9 and A20 lie beyond what the walk visits.
        for chans, at, length, src in [("V1", 20, 20, 0), ("V1", 40, 30, 2005), ("V2", 45, 25, 0),
                                       ("V3", 30, 25, 0), ("V9+A20", 0, 50, 700)]:
            space.overwrite(chans, at, (src, src + length), f"c{at}-{src}")
        walked = {(c, int(e.record_in)) for e in space.events() for c in e.channels}
        assert ("V1", 40) not in walked
        space.write(str(tmp_path / "all.edl"))
        before = {c: [(int(k.record_in), k.length, k.name) for k in space.clips(c)]
                  for c in space.channels()}
    with tcspace.read(str(tmp_path / "all.edl"), fps=30) as back:
        assert {c: [(int(k.record_in), k.length, k.name) for k in back.clips(c)]
                for c in back.channels()} == before
