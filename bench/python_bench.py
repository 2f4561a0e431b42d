#!/usr/bin/env python3
"""The Python module's two speed figures, measured in one run with the
repetitions interleaved: reading a 100,000-event EDL through tcspace.read
against the C path (tcsOpen, edlReadFile, tcsClose called straight on
libtcspace through ctypes), and listing a 100,000-clip channel from Python
in clips per second. Medians of the repetitions.

    PYTHONPATH=build/python python3 bench/python_bench.py build [repetitions]
"""
import ctypes
import os
import statistics
import sys
import tempfile
import time

import tcspace

EVENTS = 100_000


def write_list(path):
    def tc(f):
        return "%02d:%02d:%02d:%02d" % (f // 108000, f // 1800 % 60, f // 30 % 60, f % 30)

    with open(path, "w") as out:
        out.write("TITLE: bench\nFCM: NON-DROP FRAME\n\n")
        for i in range(EVENTS):
            start = 108000 + i * 10
            out.write("%06d  R%06d  V     C        %s %s %s %s\n"
                      % (i + 1, i % 997, tc(i * 50), tc(i * 50 + 10), tc(start), tc(start + 10)))


def c_path(lib, path):
    """Open and read, timed; close untimed, as the Python side's close is."""
    settings = ctypes.create_string_buffer(1 << 16)  # room for EDLSETTINGS; 30 fps, as tcspace.read is asked
    lib.edlInitSettings(settings, 30, 0)
    start = time.perf_counter()
    space = lib.tcsOpen(None, None, None)
    status = lib.edlReadFile(space, path.encode(), settings)
    took = time.perf_counter() - start
    lib.tcsClose(space)
    assert status == 0, hex(status)
    return took


def main():
    build = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else "build")
    reps = int(sys.argv[2]) if len(sys.argv) > 2 else 7
    lib = ctypes.CDLL(os.path.join(build, "libtcspace.so"))
    lib.tcsOpen.restype = ctypes.c_void_p
    lib.tcsOpen.argtypes = [ctypes.c_void_p, ctypes.c_void_p, ctypes.c_char_p]
    lib.edlReadFile.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_void_p]
    lib.tcsClose.argtypes = [ctypes.c_void_p]
    lib.edlInitSettings.argtypes = [ctypes.c_void_p, ctypes.c_uint32, ctypes.c_uint32]
    with tempfile.TemporaryDirectory() as scratch:
        path = os.path.join(scratch, "bench.edl")
        write_list(path)
        times = {"c": [], "python": [], "list": []}
        for _ in range(reps):
            times["c"].append(c_path(lib, path))
            t = time.perf_counter()
            with tcspace.read(path, fps=30) as space:
                times["python"].append(time.perf_counter() - t)
                t = time.perf_counter()
                clips = space.clips("V1")
                times["list"].append(time.perf_counter() - t)
                assert len(clips) == EVENTS
                del clips
    c, py, listing = (statistics.median(times[k]) for k in ("c", "python", "list"))
    print(f"read 100k events: C path {c * 1e3:8.1f} ms, tcspace.read {py * 1e3:8.1f} ms, "
          f"{py / c:5.2f}x  (target 1.2x) {'ok' if py / c <= 1.2 else 'OVER'}")
    rate = EVENTS / listing
    print(f"list 100k clips:  {listing * 1e3:8.1f} ms, {rate / 1e6:5.2f} M clips/s  "
          f"(target >= 1 M/s) {'ok' if rate >= 1e6 else 'UNDER'}")


if __name__ == "__main__":
    main()
