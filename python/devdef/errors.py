"""The exceptions of devdef: what went wrong, with what a script needs to act on it."""

from typing import List, Optional, Sequence, Tuple


class Error(ValueError):
    """Base class of devdef's own errors: the file or the request is not what devdef can work with."""


class NotADefinitionFile(Error):
    """The file is no definition file devdef reads: empty, binary, without a version line, or of a
    layout devdef does not read. ``path`` is the file (None for bytes)."""

    def __init__(self, message: str, path: Optional[str] = None) -> None:
        super().__init__(message)
        self.path = path


class LayoutMismatch(Error):
    """The file declares another layout than the one asked for with ``layout=``."""

    def __init__(self, message: str, path: Optional[str] = None) -> None:
        super().__init__(message)
        self.path = path


class UnknownName(Error, LookupError):
    """A name names nothing. ``candidates`` are the closest names (perhaps none)."""

    def __init__(self, message: str, candidates: Sequence[str] = ()) -> None:
        super().__init__(message)
        self.candidates: List[str] = list(candidates)


class AmbiguousName(Error, LookupError):
    """A name names several things where one is needed. ``candidates`` are the things it names."""

    def __init__(self, message: str, candidates: Sequence[str] = ()) -> None:
        super().__init__(message)
        self.candidates: List[str] = list(candidates)


class EditRefused(Error):
    """An edit would change more, or other, than asked, or cannot be made; nothing was changed.
    ``reason`` says why; ``line`` and ``column`` where (in the file before the edit, or None), and
    ``related`` the further places the reason speaks of, as (line, column) pairs."""

    def __init__(
        self,
        reason: str,
        line: Optional[int] = None,
        path: Optional[str] = None,
        column: Optional[int] = None,
        related: Sequence[Tuple[int, int]] = (),
    ) -> None:
        where = ""
        if path is not None and line is not None:
            where = f"{path}:{line}:{column}: " if column is not None else f"{path}:{line}: "
        super().__init__(where + reason)
        self.reason = reason
        self.line = line
        self.column = column
        self.related: List[Tuple[int, int]] = list(related)
        self.path = path
