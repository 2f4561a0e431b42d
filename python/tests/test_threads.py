"""One space shared by Python threads: edits, listings and walks from four
threads at once, and notifications that call back into the space, end with
every channel's clips tiling what was laid."""
import threading

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
