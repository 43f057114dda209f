"""An edit through the module is the edit devdef edit makes: the same bytes, the same preview, and save()
writes them."""

import pytest

import devdef
from conftest import EXAMPLES, GOLDEN, run_tool

INSTRUMENTS = EXAMPLES / "instruments.def"
ADAPTERS = EXAMPLES / "adapters_v7.def"
PROGRAMMERS = EXAMPLES / "programmers_v2.def"

# (file, words of devdef edit, the same edit as a call on the Editor)
EDITS = [
    (INSTRUMENTS, ["set", "2021", "module=BASE"], lambda e: e.set(2021, module="BASE")),
    (INSTRUMENTS, ["set", "Am27C010#2", "adapters=0,ADP_S_TSOP32/CLAMP"],
     lambda e: e.set("Am27C010#2", adapters=[0, "ADP_S_TSOP32/CLAMP"])),
    (INSTRUMENTS, ["set", "1003", "value_2=48", "text= PLCC44, 48 pins"],
     lambda e: e.set(1003, value_2=48, text=" PLCC44, 48 pins")),
    (ADAPTERS, ["set", "3002", "packages=PLCC44,QFP64", "value 4=0x3f"],
     lambda e: e.set(3002, packages=["PLCC44", "QFP64"], **{"value 4": "0x3f"})),
    (PROGRAMMERS, ["set", "2003", "value_0=150", "module=HV"], lambda e: e.set(2003, value_0=150, module="HV")),
    (INSTRUMENTS, ["set", "1001", "generation=4"], lambda e: e.set(1001, generation=4)),
    (ADAPTERS, ["rename", "at89s8252", "AT89S8253 B"], lambda e: e.rename("at89s8252", "AT89S8253 B")),
    (INSTRUMENTS, ["rename-kind", "EPROM", "UV EPROM"], lambda e: e.rename_kind("EPROM", "UV EPROM")),
    (INSTRUMENTS, ["rename-manufacturer", "EPROM", "AMD", "Spansion"],
     lambda e: e.rename_manufacturer("EPROM", "AMD", "Spansion")),
    (INSTRUMENTS, ["move", "Am27C010", "EPROM", "ST"], lambda e: e.move("Am27C010", "EPROM", "ST")),
    (ADAPTERS, ["move", "P89C51RD2", "Flash_Memory", "NXP"], lambda e: e.move("P89C51RD2", "Flash_Memory", "NXP")),
    (PROGRAMMERS, ["add-device", "Flash_Memory", "Macronix", "MX29LV320"],
     lambda e: e.add_device("Flash_Memory", "Macronix", "MX29LV320")),
    (INSTRUMENTS, ["add-definition", "M27C512", "id=2022", "module=HV", "text=64 K x 8, HV"],
     lambda e: e.add_definition("M27C512", id=2022, module="HV", text="64 K x 8, HV")),
    (ADAPTERS, ["remove", "28F320J3"], lambda e: e.remove("28F320J3")),
    (PROGRAMMERS, ["remove-definition", "2020"], lambda e: e.remove_definition(2020)),
    (ADAPTERS, ["add-entry", "housing", "SOIC8", "--at", "0"], lambda e: e.add_entry("housing", "SOIC8", at=0)),
    (INSTRUMENTS, ["add-entry", "adapter", "ADP_S_QFP44/ZIF"], lambda e: e.add_entry("adapter", "ADP_S_QFP44/ZIF")),
    (PROGRAMMERS, ["rename-entry", "housing", "SOIC8", "SO8"], lambda e: e.rename_entry("housing", "SOIC8", "SO8")),
    (INSTRUMENTS, ["remove-entry", "module", "HV", "--replace-with", "BASE"],
     lambda e: e.remove_entry("module", "HV", replace_with="BASE")),
    (ADAPTERS, ["renumber-ids", "--from", "100", "--step", "10"], lambda e: e.renumber_ids(start=100, step=10)),
    (INSTRUMENTS, ["renumber-ids", "EPROM", "AMD", "--from", "5000"],
     lambda e: e.renumber_ids(kind="EPROM", manufacturer="AMD", start=5000)),
    (INSTRUMENTS, ["renumber-ids", "AT89C51", "--from", "7"], lambda e: e.renumber_ids("AT89C51", start=7)),
    (GOLDEN / "line_ends_crlf.def", ["rename-entry", "module", "FAST", "QUICK"],
     lambda e: e.rename_entry("module", "FAST", "QUICK")),
    (GOLDEN / "cp1252_names.def", ["rename", "MÜL27C256", "MÜL27C512"], lambda e: e.rename("MÜL27C256", "MÜL27C512")),
]

# Several operations in turn, as one script of devdef edit.
SCRIPT = """\
add-entry housing SO8 --at 0
add-device Serial_EEPROM Microchip 24LC02
add-definition 24LC02 package=SO8 module=BASE "text=2 Kbit"
move Am27C010 EPROM ST
rename M27C512 "M27C512 B"
"""


def script_calls(e):
    e.add_entry("housing", "SO8", at=0)
    e.add_device("Serial_EEPROM", "Microchip", "24LC02")
    e.add_definition("24LC02", package="SO8", module="BASE", text="2 Kbit")
    e.move("Am27C010", "EPROM", "ST")
    e.rename("M27C512", "M27C512 B")


def edit_id(case):
    return case[0].stem + ":" + " ".join(case[1][:2])


def tool_edit(path, *words):
    """The bytes devdef edit writes for the words."""
    done = run_tool("edit", path, *words, "-o", "-")
    assert done.returncode == 0, done.stderr.decode(errors="replace")
    return done.stdout


def dry_run_diff(path, *words):
    """The unified diff of devdef edit --dry-run: the part in front of the blank line before what diff says."""
    done = run_tool("edit", "--dry-run", path, *words)
    assert done.returncode == 0, done.stderr.decode(errors="replace")
    return done.stdout.split(b"\n\n", 1)[0] + b"\n"


CODECS = {"utf-8": "utf-8", "cp1252": "cp1252", "latin1": "latin-1"}


def shown(editor, data):
    """Bytes of the file as the module shows its text: in the catalogue's encoding, U+FFFD for what is none."""
    return data.decode(CODECS[editor.catalogue.encoding], "replace")


@pytest.mark.parametrize("case", EDITS, ids=edit_id)
def test_edit_equals_the_command(case, tmp_path):
    path, words, call = case
    editor = devdef.edit(str(path))
    call(editor)
    assert editor.changed
    assert editor.bytes() == tool_edit(path, *words)
    saved = tmp_path / "saved.def"
    editor.save(saved)
    assert saved.read_bytes() == editor.bytes()
    # The catalogue of the edit is that of its bytes.
    assert [d.name for d in editor.catalogue] == [d.name for d in devdef.read_bytes(editor.bytes())]


@pytest.mark.parametrize("case", EDITS, ids=edit_id)
def test_preview_equals_the_dry_run(case):
    path, words, call = case
    editor = devdef.edit(str(path))
    call(editor)
    assert editor.preview() == shown(editor, dry_run_diff(path, *words))


def test_calls_in_turn_equal_a_script(tmp_path):
    script = tmp_path / "edits.txt"
    script.write_text(SCRIPT)
    editor = devdef.edit(str(INSTRUMENTS))
    script_calls(editor)
    assert editor.bytes() == tool_edit(INSTRUMENTS, "--script", script)
    assert editor.preview() == shown(editor, dry_run_diff(INSTRUMENTS, "--script", script))


def test_unchanged_editor_gives_the_file(copy_of):
    path = copy_of(INSTRUMENTS)
    editor = devdef.edit(path)
    assert not editor.changed and editor.preview() == "" and editor.changes() == []
    assert editor.bytes() == path.read_bytes()


def test_save_replaces_the_file_it_opened_and_keeps_its_mode(copy_of):
    path = copy_of(ADAPTERS)
    path.chmod(0o640)
    editor = devdef.edit(path)
    editor.rename("AT89C51", "AT89C52")
    editor.save()
    assert path.read_bytes() == editor.bytes()
    assert path.stat().st_mode & 0o777 == 0o640
    assert [p.name for p in path.parent.iterdir()] == [path.name]


def test_editor_of_bytes_saves_only_to_a_path(tmp_path):
    editor = devdef.edit(devdef.read_bytes(INSTRUMENTS.read_bytes()))
    editor.rename("AT89C51", "AT89C52")
    with pytest.raises(ValueError):
        editor.save()
    editor.save(tmp_path / "out.def")
    assert (tmp_path / "out.def").read_bytes() == editor.bytes()
