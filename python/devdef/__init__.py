"""Read, check, compare and edit device definition files (layouts 1, 2 and 7) with the devdef library.

>>> import devdef
>>> catalogue = devdef.read("examples/instruments.def")
>>> for device in catalogue.devices("AT89*"):
...     print(device.name, [d.id for d in device.visible])

Names and texts are decoded as the devdef command decodes them (``encoding``). Every object keeps its
catalogue alive; none of them becomes invalid while the caller holds it.
"""

from devdef._devdef import (
    Catalogue,
    Change,
    Definition,
    Device,
    Editor,
    Finding,
    Kind,
    Manufacturer,
    Related,
    check,
    diff,
    edit,
    read,
    read_bytes,
)
from devdef.errors import AmbiguousName, EditRefused, Error, LayoutMismatch, NotADefinitionFile, UnknownName

__all__ = [
    "AmbiguousName",
    "Catalogue",
    "Change",
    "Definition",
    "Device",
    "EditRefused",
    "Editor",
    "Error",
    "Finding",
    "Kind",
    "LayoutMismatch",
    "Manufacturer",
    "NotADefinitionFile",
    "Related",
    "UnknownName",
    "check",
    "diff",
    "edit",
    "read",
    "read_bytes",
]
