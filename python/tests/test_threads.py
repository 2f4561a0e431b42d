"""One space shared by Python threads: edits, listings and walks from four
threads at once, and notifications that call back into the space, end with
every channel's clips tiling what was laid."""
import threading
import time

import tcspace


def test_threads_share_a_space():
    space = tcspace.Space()
    errors = []
    added = []
    space.on_add = lambda clip: added.append(clip.name) or True

    def work(n):
        try:
            chan = ["V1", "V2", "A1", "A2"][n]
            for i in range(150):
                space.overwrite(chan, i * 10, (i * 100, i * 100 + 10), f"{chan}-{i}")
                if i % 10 == 0:
                    clips = space.clips(chan)
                    assert [int(c.record_in) for c in clips] == [k * 10 for k in range(i + 1)]
                    space.at(i * 10)
                    space.events()
        except Exception as error:  # reported below, not lost in the thread
            errors.append(error)

    threads = [threading.Thread(target=work, args=(n,)) for n in range(4)]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    assert errors == []
    assert len(added) == 600
    for chan in ["V1", "V2", "A1", "A2"]:
        assert [c.name for c in space.clips(chan)] == [f"{chan}-{i}" for i in range(150)]
    space.close()


def test_a_notification_may_call_back_into_the_space():
    with tcspace.Space() as space:
        counts = []
        space.on_add = lambda clip: counts.append(len(space.clips("V1")))
        space.overwrite("V1", 0, (0, 10), "a")
        space.overwrite("V1", 10, (0, 10), "b")
        assert counts == [0, 1]


def test_reading_a_large_file_lets_other_threads_run(tmp_path):
    path = tmp_path / "large.edl"
    with open(path, "w") as out:
        for i in range(60000):
            f = 108000 + i * 10
            tc = lambda f: "%02d:%02d:%02d:%02d" % (f // 108000, f // 1800 % 60, f // 30 % 60, f % 30)
            out.write("%06d  R  V  C  %s %s %s %s\n" % (i + 1, tc(i), tc(i + 10), tc(f), tc(f + 10)))
    started, done = threading.Event(), threading.Event()
    took = []

    def read():
        started.wait()  # the loop below runs already
        t = time.perf_counter()
        space = tcspace.read(str(path), fps=30)
        took.append(time.perf_counter() - t)
        done.set()
        space.close()

    reader = threading.Thread(target=read)
    reader.start()
    longest, last = 0.0, time.perf_counter()
    while not done.is_set():
        started.set()
        now = time.perf_counter()
        longest, last = max(longest, now - last), now
    reader.join()
    # Held through the read, the interpreter's lock would stop this loop for
    # the whole of it.
    assert longest < took[0] / 2, (longest, took[0])


def test_help_reads_well():
    import pydoc
    text = pydoc.render_doc(tcspace, renderer=pydoc.plaintext)
    for needed in ("time code spaces", "class Space", "def read", "StaleClipError", "overwrite("):
        assert needed in text or needed.replace("def ", "") in text, needed
