"""Read, check, compare and edit device definition files (layouts 1, 2 and 7) with the devdef library."""

import os
from typing import Dict, Iterator, List, Optional, Tuple, Union

from devdef.errors import (
    AmbiguousName as AmbiguousName,
    EditRefused as EditRefused,
    Error as Error,
    LayoutMismatch as LayoutMismatch,
    NotADefinitionFile as NotADefinitionFile,
    UnknownName as UnknownName,
)

_Path = Union[str, bytes, "os.PathLike[str]", "os.PathLike[bytes]"]
# A value of a change: a number, a name or text, a list of them, or None.
_Value = Union[None, int, str, List[Union[None, int, str]]]

class Kind:
    """A kind of device (EPROM, Microcontroller, ...) with its manufacturers."""

    @property
    def name(self) -> str: ...
    @property
    def line(self) -> int: ...
    @property
    def manufacturers(self) -> List[Manufacturer]: ...
    @property
    def devices(self) -> List[Device]: ...
    def __eq__(self, other: object) -> bool: ...
    def __hash__(self) -> int: ...

class Manufacturer:
    """A manufacturer under a kind, with its devices."""

    @property
    def name(self) -> str: ...
    @property
    def line(self) -> int: ...
    @property
    def kind(self) -> Kind: ...
    @property
    def devices(self) -> List[Device]: ...
    def __eq__(self, other: object) -> bool: ...
    def __hash__(self) -> int: ...

class Device:
    """A device with its definitions, under a kind and a manufacturer."""

    @property
    def name(self) -> str:
        """The name as shown: a '_' of the file is a blank, a mark byte is not part of it."""
    @property
    def kind(self) -> Kind: ...
    @property
    def manufacturer(self) -> Manufacturer: ...
    @property
    def line(self) -> int:
        """The line of its name (1-based)."""
    @property
    def definitions(self) -> List[Definition]:
        """All its definitions, hidden ones too, in file order."""
    @property
    def visible(self) -> List[Definition]:
        """Its definitions of the generation in force."""
    @property
    def package_name(self) -> Optional[str]:
        """The package name the library derives for its first visible definition."""
    @property
    def marks(self) -> List[str]:
        """The mark bytes its name opened with: '0xB0', '0xDF'."""
    @property
    def housings(self) -> List[Optional[str]]:
        """The names of its DEVICE_HOUSING_LIST entries; None where a number has no name."""
    @property
    def housing_numbers(self) -> List[int]: ...
    def __eq__(self, other: object) -> bool: ...
    def __hash__(self) -> int: ...

class Definition:
    """One definition line of a device."""

    @property
    def id(self) -> int:
        """The definition id, unsigned 32-bit."""
    @property
    def generation(self) -> int:
        """3, 4 or 5: the digit of the line's KVRnDEF keyword."""
    @property
    def visible(self) -> bool:
        """True when it is of the generation in force."""
    @property
    def visible_index(self) -> Optional[int]: ...
    @property
    def package(self) -> Optional[str]:
        """The name of its (first) package; None where the number has no name."""
    @property
    def packages(self) -> List[Optional[str]]: ...
    @property
    def package_number(self) -> Optional[int]: ...
    @property
    def package_numbers(self) -> List[int]: ...
    @property
    def module(self) -> Optional[str]: ...
    @property
    def module_number(self) -> int: ...
    @property
    def adapters(self) -> List[Optional[str]]:
        """The names of its adapters; None where a number has no name."""
    @property
    def adapter_numbers(self) -> List[int]: ...
    @property
    def values(self) -> List[int]:
        """The eleven numeric values of the line, as show --json gives them."""
    @property
    def text(self) -> str:
        """The text behind the ':', as read (with its leading blank)."""
    @property
    def marks(self) -> List[str]: ...
    @property
    def package_name(self) -> Optional[str]:
        """The package name the library derives for it; None when hidden or when it gives none."""
    @property
    def line(self) -> int: ...
    @property
    def device(self) -> Device: ...
    def __eq__(self, other: object) -> bool: ...
    def __hash__(self) -> int: ...

class Catalogue:
    """A definition file as the library read it. Iterating gives the devices in file order."""

    @property
    def layout(self) -> int: ...
    @property
    def generation(self) -> int: ...
    @property
    def encoding(self) -> str:
        """'utf-8', 'cp1252' or 'latin1'."""
    @property
    def path(self) -> Optional[str]: ...
    @property
    def housings(self) -> List[str]:
        """The names of HOUSING_LIST (the packages): a number is an index into it."""
    @property
    def adapters(self) -> List[str]: ...
    @property
    def modules(self) -> List[str]: ...
    @property
    def kinds(self) -> List[Kind]: ...
    @property
    def findings(self) -> List[Finding]:
        """What devdef check says of the file."""
    def devices(self, pattern: Optional[str] = None) -> List[Device]:
        """The devices in file order; with a pattern, those it names as the devdef command names them."""
    def device(self, name: str) -> Device:
        """The one device a name names; UnknownName or AmbiguousName otherwise."""
    def find(self, id: int) -> Optional[Definition]:
        """The visible definition with this id as the library's look-up finds it."""
    def definitions(self) -> List[Definition]:
        """Every definition, hidden ones too, in file order."""
    def __len__(self) -> int: ...
    def __iter__(self) -> Iterator[Device]: ...

class Related:
    """A place a finding speaks of: its cause, or a consequence."""

    line: int
    column: int
    end_line: int
    end_column: int
    cause: bool
    message: str

class Finding:
    """A place where the library reads the file differently from how it looks, or what a write would not keep."""

    kind: str
    severity: str
    line: int
    column: int
    end_line: int
    end_column: int
    last_column: Optional[int]
    count: int
    message: str
    related: List[Related]

class Change:
    """One change between two catalogues by meaning, as devdef diff --json gives it."""

    change: str
    what: str
    path: List[str]
    name: Optional[str]
    old_name: Optional[str]
    id: Optional[int]
    fields: Dict[str, Tuple[_Value, _Value]]
    from_path: Optional[List[str]]
    to_path: Optional[List[str]]
    old_line: Optional[int]
    new_line: Optional[int]

_FieldValue = Union[int, str, List[Union[int, str]], Tuple[Union[int, str], ...]]

class Editor:
    """Edits of one definition file, byte for byte, each verified at once; save() writes them."""

    @property
    def changed(self) -> bool: ...
    @property
    def catalogue(self) -> Catalogue: ...
    def set(self, definition: Union[int, str], **fields: _FieldValue) -> None: ...
    def rename(self, device: str, new_name: str) -> None: ...
    def rename_kind(self, kind: str, new_name: str) -> None: ...
    def rename_manufacturer(self, kind: str, manufacturer: str, new_name: str) -> None: ...
    def move(self, device: str, kind: str, manufacturer: str) -> None: ...
    def add_device(self, kind: str, manufacturer: str, name: str) -> None: ...
    def add_definition(self, device: str, **fields: _FieldValue) -> None: ...
    def remove(self, device: str) -> None: ...
    def remove_definition(self, definition: Union[int, str]) -> None: ...
    def add_entry(self, list: str, name: str, *, at: Optional[int] = None) -> None: ...
    def rename_entry(self, list: str, old: Union[int, str], new_name: str) -> None: ...
    def remove_entry(self, list: str, name: str, *, replace_with: Optional[str] = None) -> None: ...
    def renumber_ids(
        self,
        device: Optional[str] = None,
        *,
        kind: Optional[str] = None,
        manufacturer: Optional[str] = None,
        start: int,
        step: int = 1,
    ) -> None: ...
    def preview(self) -> str:
        """The unified diff from the file as opened to the edits so far."""
    def changes(self) -> List[Change]: ...
    def bytes(self) -> bytes: ...
    def save(self, path: Optional[_Path] = None) -> None:
        """Writes the edited bytes atomically to path (default: the file opened)."""

def read(
    path: _Path,
    *,
    layout: Optional[int] = None,
    generation: int = 5,
    check_ids: bool = False,
    encoding: Optional[str] = None,
) -> Catalogue:
    """Reads a definition file with the library, as the devdef command does."""

def read_bytes(
    data: bytes,
    *,
    layout: Optional[int] = None,
    generation: int = 5,
    check_ids: bool = False,
    encoding: Optional[str] = None,
) -> Catalogue:
    """Reads the bytes of a definition file as read() reads a file."""

def check(
    path: _Path,
    *,
    layout: Optional[int] = None,
    generation: int = 5,
    check_ids: bool = False,
    encoding: Optional[str] = None,
) -> List[Finding]:
    """The findings of devdef check for the file at path."""

def diff(
    old: Union[_Path, Catalogue],
    new: Union[_Path, Catalogue],
    *,
    visible_only: bool = False,
    layout: Optional[int] = None,
    generation: int = 5,
    encoding: Optional[str] = None,
) -> List[Change]:
    """What changed between two catalogues by meaning."""

def edit(
    path: Union[_Path, Catalogue],
    *,
    layout: Optional[int] = None,
    generation: int = 5,
    encoding: Optional[str] = None,
) -> Editor:
    """Opens a definition file (or a Catalogue read before) for verified edits."""
