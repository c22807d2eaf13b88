"""What can go wrong, and what is doubtful about a file."""

import errno


class Error(Exception):
    """Why something could not be done, as one sentence."""


class NotFound(Error, FileNotFoundError):
    """There is no such file."""

    errno = errno.ENOENT


class PermissionDenied(Error, PermissionError):
    """The system does not let the file be opened."""

    errno = errno.EACCES


class ReadFailed(Error, OSError):
    """The system could not read a file that is there."""


class UnknownFormat(Error):
    """Nothing recognises the file."""


class NotReadable(Error):
    """The file is recognised, but kem does not read this kind of it."""


class Damaged(Error, ValueError):
    """The file is recognised, but its content contradicts itself or is cut off."""


class NoSuchItem(Error, LookupError):
    """The file has fewer items."""


class DoesNotFit(Error, ValueError):
    """A record cannot hold it, or an operation does not take it."""


class WriteFailed(Error, OSError):
    """The system could not write a file."""


class OutOfMemory(Error, MemoryError):
    """There is not enough memory for a file."""


class Note(UserWarning):
    """What one should know about a dataset.

    Parameters
    ----------
    text : str
    severity : {"remark", "doubtful", "damaged"}
        Good to know; values or axes may not be what the instrument meant; data are missing or contradict
        themselves.
    """

    def __init__(self, text: str, severity: str = "doubtful") -> None:
        super().__init__(text, severity)
        self.text = text
        self.severity = severity

    def __str__(self) -> str:
        return self.text
