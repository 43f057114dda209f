"""Each way a read or an edit fails raises its own exception, with what a script needs to act on it, and
leaves nothing changed."""

import os

import pytest

import devdef
from conftest import EXAMPLES, GOLDEN

INSTRUMENTS = EXAMPLES / "instruments.def"

# Every entry point that opens a file by its path.
OPENERS = [devdef.read, devdef.check, devdef.edit, lambda path: devdef.diff(INSTRUMENTS, path)]
OPENER_IDS = ["read", "check", "edit", "diff"]


@pytest.mark.parametrize("open_file", OPENERS, ids=OPENER_IDS)
def test_file_errors_are_os_errors(open_file, tmp_path):
    with pytest.raises(FileNotFoundError) as raised:
        open_file(tmp_path / "missing.def")
    assert raised.value.filename == tmp_path / "missing.def"
    with pytest.raises(IsADirectoryError):
        open_file(tmp_path)


@pytest.mark.parametrize("open_file", OPENERS, ids=OPENER_IDS)
def test_unreadable_file_is_a_permission_error(open_file, copy_of):
    if os.geteuid() == 0:
        pytest.skip("root reads a file of mode 000")
    path = copy_of(INSTRUMENTS)
    path.chmod(0)
    with pytest.raises(PermissionError):
        open_file(path)


@pytest.mark.parametrize("name", ["empty", "binary", "no_version", "layout3", "version_no_equals"])
def test_no_definition_file(name):
    path = str(GOLDEN / (name + ".def"))
    for open_file in OPENERS[:3]:
        with pytest.raises(devdef.NotADefinitionFile) as raised:
            open_file(path)
        assert raised.value.path == path
        assert isinstance(raised.value, devdef.Error) and isinstance(raised.value, ValueError)
    with pytest.raises(devdef.NotADefinitionFile) as raised:
        devdef.read_bytes((GOLDEN / (name + ".def")).read_bytes())
    assert raised.value.path is None


def test_layout_mismatch_names_both_layouts():
    with pytest.raises(devdef.LayoutMismatch, match="declares layout 1") as raised:
        devdef.read(str(INSTRUMENTS), layout=7)
    assert raised.value.path == str(INSTRUMENTS)
    assert isinstance(raised.value, devdef.Error) and isinstance(raised.value, ValueError)
    assert devdef.read(INSTRUMENTS, layout=1).layout == 1


@pytest.mark.parametrize("keywords", [{"layout": 3}, {"layout": 5}, {"generation": 2}, {"generation": 6},
                                      {"encoding": "ebcdic"}], ids=str)
def test_bad_option_is_a_value_error(keywords):
    for call in (devdef.read, devdef.check, devdef.edit):
        with pytest.raises(ValueError) as raised:
            call(INSTRUMENTS, **keywords)
        assert not isinstance(raised.value, devdef.Error)
    with pytest.raises(ValueError):
        devdef.read_bytes(INSTRUMENTS.read_bytes(), **keywords)


def test_device_names_none_or_several():
    catalogue = devdef.read(INSTRUMENTS)
    with pytest.raises(devdef.UnknownName) as unknown:
        catalogue.device("am27c265")
    assert unknown.value.candidates == ["EPROM / AMD / Am27C256 (line 39)"]
    assert isinstance(unknown.value, LookupError) and isinstance(unknown.value, devdef.Error)
    with pytest.raises(devdef.UnknownName) as far:
        catalogue.device("nothing like it")
    assert far.value.candidates == []
    with pytest.raises(devdef.AmbiguousName) as ambiguous:
        catalogue.device("AT89*")
    assert ambiguous.value.candidates == [
        "Microcontroller / Atmel / AT89C51 (line 14)", "Microcontroller / Atmel / AT89S8252 (line 21)"]


# Edits the engine does not make, each after an edit that was made, with the exception and what it holds.
FAILING_EDITS = [
    (lambda e: e.remove("AT89*"), devdef.AmbiguousName,
     {"candidates": ["Microcontroller / Atmel / AT89C51 (line 14)", "Microcontroller / Atmel / AT89S8252 (line 21)"]}),
    (lambda e: e.rename("Am27C265", "X"), devdef.UnknownName, {"candidates": ["EPROM / AMD / Am27C256 (line 39)"]}),
    (lambda e: e.rename_kind("EPRM", "X"), devdef.UnknownName, {"candidates": ["EPROM"]}),
    (lambda e: e.set(9999, module="BASE"), devdef.UnknownName, {"candidates": []}),
    (lambda e: e.rename("AT89C51", "AT89C52:"), devdef.EditRefused, {"line": 15}),
    (lambda e: e.set(2021, text=" 64 K x 8; fast"), devdef.EditRefused, {"line": 58}),
    (lambda e: e.remove_entry("module", "HV"), devdef.EditRefused, {"line": 8, "column": 24, "related": [(31, 17), (32, 17)]}),
    (lambda e: e.set(2021, nonsense=1), devdef.Error, {}),
    (lambda e: e.renumber_ids("AT89C51", kind="EPROM", manufacturer="AMD", start=1), ValueError, {}),
]


@pytest.mark.parametrize("edit, exception, attributes", FAILING_EDITS)
def test_failed_edit_changes_nothing(edit, exception, attributes):
    editor = devdef.edit(str(INSTRUMENTS))
    editor.set(1003, text=" changed first")
    before = editor.bytes(), editor.preview()
    with pytest.raises(exception) as raised:
        edit(editor)
    for name, value in attributes.items():
        assert getattr(raised.value, name) == value
    if exception is devdef.EditRefused:
        where = f"{INSTRUMENTS}:{raised.value.line}:{raised.value.column}: "
        assert raised.value.reason and str(raised.value).startswith(where)
    assert (editor.bytes(), editor.preview()) == before


def test_refused_edit_of_an_unchanged_editor_leaves_it_unchanged():
    editor = devdef.edit(INSTRUMENTS)
    with pytest.raises(devdef.EditRefused):
        editor.rename("AT89C51", "AT89C52:")
    assert not editor.changed and editor.bytes() == INSTRUMENTS.read_bytes()


def test_failed_save_leaves_the_target_as_it_was(copy_of, tmp_path):
    path = copy_of(INSTRUMENTS)
    editor = devdef.edit(path)
    editor.rename("AT89C51", "AT89C52")
    # A read-only file is refused even to root, as devdef edit -i refuses it.
    path.chmod(0o444)
    with pytest.raises(PermissionError):
        editor.save()
    assert path.read_bytes() == INSTRUMENTS.read_bytes()
    with pytest.raises(FileNotFoundError):
        editor.save(tmp_path / "no such directory" / "out.def")
    with pytest.raises(IsADirectoryError):
        editor.save(tmp_path)
    assert sorted(p.name for p in tmp_path.iterdir()) == [path.name]
