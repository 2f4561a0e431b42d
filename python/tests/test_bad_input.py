"""Bad input thrown at every method: each answers with TypeError,
ValueError or a TcsError, never a crash, and the space stays usable."""
import itertools

import pytest

import tcspace

JUNK = [None, -1, 2**40, 10692002, "", "V99", "X0", "A33+", "99:99:99:99", "1e9",
        "00:00:01;00", object(), float("nan"), b"V1", ["V1", None], (), "\x00", "V1" * 5000]
EXPECTED = (TypeError, ValueError, tcspace.TcsError, OverflowError, OSError)


def calls(space):
    yield lambda x: space.clips(x)
    yield lambda x: space.at(x)
    yield lambda x: space.overwrite(x, 0, (0, 10), "n")
    yield lambda x: space.overwrite("V1", x, (0, 10), "n")
    yield lambda x: space.overwrite("V1", 0, (x, 10), "n")
    yield lambda x: space.overwrite("V1", 0, x, "n")
    yield lambda x: space.overwrite("V1", 0, (0, 10), x)
    yield lambda x: space.insert(x, 0, 10)
    yield lambda x: space.insert("V1", 500, x)
    yield lambda x: space.blank("V1", x, 20)
    yield lambda x: space.delete("V1", 5, x)
    yield lambda x: space.trim("V1", x, (0, 10))
    yield lambda x: space.move("V1", 0, x)
    yield lambda x: setattr(space, "on_add", x)
    yield lambda x: tcspace.Timecode(x, "25")
    yield lambda x: tcspace.Timecode(10, x)
    yield lambda x: tcspace.FrameRate(x)
    yield lambda x: tcspace.read(x)
    yield lambda x: space.write(x)


def test_every_method_answers_bad_input_without_crashing(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)  # junk given to write() as a path lands here
    with tcspace.Space() as space:
        space.overwrite("V1", 0, (0, 100), "base")
        for call, junk in itertools.product(list(calls(space)), JUNK):
            try:
                call(junk)
            except EXPECTED:
                pass
            space.on_add = None
        starts = [int(c.record_in) for c in space.clips("V1")]
        assert starts == sorted(starts)
        space.overwrite("V1", 0, (0, 100), "again")
        assert space.clips("V1")[0].name == "again"
        with pytest.raises(FileNotFoundError):
            tcspace.read(str(tmp_path / "missing.edl"))
    for method in ("channels", "events"):
        with pytest.raises(tcspace.BadHandleError):
            getattr(space, method)()
    space.close()  # closing twice is allowed
