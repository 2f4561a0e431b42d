from tcspace._tcspace import (
    Clip as Clip,
    Event as Event,
    FrameRate as FrameRate,
    Playing as Playing,
    Space as Space,
    Timecode as Timecode,
    read as read,
)
from tcspace.errors import (
    AddRefusedError as AddRefusedError,
    BadArgumentsError as BadArgumentsError,
    BadHandleError as BadHandleError,
    BadRangeError as BadRangeError,
    StaleClipError as StaleClipError,
    TcsError as TcsError,
)
