"""tcspace: time code spaces for pipeline scripts.

A space holds up to 96 channels of clips laid out by record timecode, as a
playout or editing application needs them. Read one from a file, list and
query its clips, edit it as the tcs tool does, and write it back::

    import tcspace
    with tcspace.read("cut.edl") as space:
        for clip in space.clips("V1"):
            print(clip.record_in, clip.record_out, clip.name, clip.reel)
        space.overwrite("V1+A1", at="01:00:02:00",
                        source=("00:50:00:00", "00:50:02:00"), name="breaking")
        space.write("cut_v2.edl")

Space, Clip, Event, Playing, FrameRate and Timecode are documented on their
own (help(tcspace.Space)); every refusal of the library raises a TcsError
(tcspace.errors) carrying the status code, its name and the logged line.
"""

from tcspace._tcspace import (
    Clip,
    Event,
    FrameRate,
    Playing,
    Space,
    Timecode,
    read,
)
from tcspace.errors import (
    AddRefusedError,
    BadArgumentsError,
    BadHandleError,
    BadRangeError,
    StaleClipError,
    TcsError,
)

__all__ = [
    "AddRefusedError",
    "BadArgumentsError",
    "BadHandleError",
    "BadRangeError",
    "Clip",
    "Event",
    "FrameRate",
    "Playing",
    "Space",
    "StaleClipError",
    "TcsError",
    "Timecode",
    "read",
]
