"""The exceptions of tcspace: one family, TcsError, whose members carry the
library's status code, the code's name in the status table and the line the
library logged."""

from __future__ import annotations

from typing import Optional


class TcsError(Exception):
    """A call the library refused.

    code: the status (an int such as 0xA8087013), or None where the failure
    is the module's own (a stale clip); name: the status's name in the table
    (``"TCS_ERR_BAD_ARGUMENTS"``); log: what the library logged, one line per
    entry, joined by newlines ("" when it logged nothing)."""

    def __init__(self, message: str, code: Optional[int] = None, name: str = "",
                 log: str = "") -> None:
        super().__init__(message)
        self.code = code
        self.name = name
        self.log = log


class BadHandleError(TcsError, ValueError):
    """TCS_ERR_BAD_HANDLE: the space is closed or was never opened."""


class NullSpaceError(TcsError, ValueError):
    """TCS_ERR_NULL_SPACE: no space (the current-clip and EDL line calls)."""


class NoCurrentClipError(TcsError):
    """TCS_ERR_NO_CURRENT_CLIP: the space has no current clip."""


class NoAddCallbackError(TcsError):
    """TCS_ERR_NO_ADD_CALLBACK: a file insert while nobody listens to additions."""


class BadRangeError(TcsError, ValueError):
    """TCS_ERR_BAD_RANGE: an empty, reversed or too long range."""


class AddRefusedError(TcsError):
    """TCS_ERR_ADD_REFUSED: the add notification refused the clip."""


class BadRecordTypeError(TcsError, ValueError):
    """TCS_ERR_BAD_RECORD_TYPE: a command record of the wrong type or version."""


class BadArgumentsError(TcsError, ValueError):
    """TCS_ERR_BAD_ARGUMENTS: unacceptable clip record or command arguments."""


class SetterNullSpaceError(TcsError, ValueError):
    """TCS_ERR_SETTER_NULL_SPACE: a callback setter without a space."""


class NoResultError(TcsError):
    """TCS_RESULT_NONE: no result (a file that cannot be opened or read)."""


class StaleClipError(TcsError):
    """A Clip whose record has left its space (an edit swallowed it, or the
    space was closed): its values would describe what no longer plays."""


_BY_CODE = {
    0xA8080004: ("TCS_ERR_BAD_HANDLE", BadHandleError),
    0xA8080005: ("TCS_ERR_NULL_SPACE", NullSpaceError),
    0xA808F003: ("TCS_ERR_NO_CURRENT_CLIP", NoCurrentClipError),
    0xA808F005: ("TCS_ERR_NO_ADD_CALLBACK", NoAddCallbackError),
    0xA808F013: ("TCS_ERR_BAD_RANGE", BadRangeError),
    0xA808F01A: ("TCS_ERR_ADD_REFUSED", AddRefusedError),
    0xA8087004: ("TCS_ERR_BAD_RECORD_TYPE", BadRecordTypeError),
    0xA8087013: ("TCS_ERR_BAD_ARGUMENTS", BadArgumentsError),
    0xE8090004: ("TCS_ERR_SETTER_NULL_SPACE", SetterNullSpaceError),
    0xFFFFFFFF: ("TCS_RESULT_NONE", NoResultError),
}


def status_name(code: int) -> str:
    """The name of a status code in the status table, or "" for none."""
    return _BY_CODE.get(code, ("", TcsError))[0]


def error_for(code: int, log: str, message: str) -> TcsError:
    """The exception for a status: its class, name and the logged lines."""
    name, kind = _BY_CODE.get(code, ("", TcsError))
    text = f"{message}: {name or 'status'} (0x{code:08X})"
    if log:
        text += f"; the library logged: {log}"
    return kind(text, code, name, log)


def stale(message: str) -> StaleClipError:
    return StaleClipError(message, None, "stale clip", "")
