"""What the module reads of a file is what devdef shows of it: the tree, the findings and the changes
between two files, field by field, for every example and odd file."""

import pytest

import devdef
from conftest import EXAMPLES, FILES, GOLDEN, file_id, finding_data, options_of, run_tool, tool_json, tree_data, \
    without_bytes


@pytest.mark.parametrize("path", FILES, ids=file_id)
def test_tree_equals_the_command(path):
    words, keywords = options_of(path)
    if run_tool("tree", "-q", *words, path).returncode == 2:
        # devdef refuses it: the module raises one of its own errors for it.
        with pytest.raises(devdef.Error):
            devdef.read(str(path), **keywords)
        return
    assert tree_data(devdef.read(str(path), **keywords)) == without_bytes(tool_json("tree", "--json", *words, path))


@pytest.mark.parametrize("path", FILES, ids=file_id)
def test_findings_equal_the_command(path):
    words, keywords = options_of(path)
    if run_tool("check", "-q", *words, path).returncode == 2:
        with pytest.raises(devdef.Error):
            devdef.check(str(path), **keywords)
        return
    expected = tool_json("check", "--json", *words, path)["findings"]
    # last_column stands only where merged findings spread along the line; the module gives None.
    expected = [dict(f, last_column=f.get("last_column")) for f in without_bytes(expected)]
    assert [finding_data(f) for f in devdef.check(str(path), **keywords)] == expected
    assert [finding_data(f) for f in devdef.read(str(path), **keywords).findings] == expected


def change_data(c):
    return {"change": c.change, "what": c.what, "path": c.path, "name": c.name, "old_name": c.old_name, "id": c.id,
            "fields": {field: list(values) for field, values in c.fields.items()}, "from": c.from_path,
            "to": c.to_path, "old_line": c.old_line, "new_line": c.new_line}


def json_change(c):
    """A change of diff --json with every field of the module's: those the document leaves out are None."""
    return {key: c.get(key, {} if key == "fields" else None) for key in
            ("change", "what", "path", "name", "old_name", "id", "fields", "from", "to", "old_line", "new_line")}


def edit_instruments():
    """instruments.def with a device moved, one renamed, a definition changed and a housing added."""
    editor = devdef.edit(str(EXAMPLES / "instruments.def"))
    editor.move("Am27C010", "EPROM", "ST")
    editor.rename("PIC16F84A", "PIC16F84B")
    editor.set(2021, module="BASE", text=" 64 K x 8, base")
    editor.add_entry("housing", "SO8", at=0)
    return editor


def moved_and_renamed(directory):
    edit_instruments().save(directory / "edited.def")
    return directory / "edited.def"


DIFFS = [(new.with_suffix(".def"), new) for new in sorted(GOLDEN.glob("*.new"))] + [
    (EXAMPLES / "instruments.def", EXAMPLES / "programmers_v2.def"),
    (EXAMPLES / "adapters_v7.def", EXAMPLES / "instruments.def"),
    (EXAMPLES / "instruments.def", moved_and_renamed),
]


@pytest.mark.parametrize("old, new", DIFFS, ids=lambda p: getattr(p, "name", "edited"))
def test_diff_equals_the_command(old, new, tmp_path):
    if callable(new):
        new = new(tmp_path)
    expected = [json_change(c) for c in tool_json("diff", "--json", old, new)["changes"]]
    assert expected, "a pair of files that differ"
    assert [change_data(c) for c in devdef.diff(str(old), str(new))] == expected
    # A catalogue read before is compared as its file is.
    assert [change_data(c) for c in devdef.diff(devdef.read(old), new)] == expected


def test_editor_changes_equal_the_diff_of_its_result(tmp_path):
    editor = edit_instruments()
    edited = moved_and_renamed(tmp_path)
    expected = tool_json("diff", "--json", EXAMPLES / "instruments.def", edited)["changes"]
    assert [change_data(c) for c in editor.changes()] == [json_change(c) for c in expected]


def test_find_gives_the_visible_definition_of_an_id():
    catalogue = devdef.read(EXAMPLES / "instruments.def")
    found = catalogue.find(1101)
    assert (found.id, found.device.name, found.visible_index) == (1101, "PIC16F84A", 0)
    # 1100 is of generation 4, hidden under the default generation 5.
    assert catalogue.find(1100) is None and catalogue.find(-1) is None and catalogue.find(2**32) is None
    assert devdef.read(EXAMPLES / "instruments.def", generation=4).find(1100).visible


def test_devices_match_names_as_the_command_does():
    catalogue = devdef.read(EXAMPLES / "instruments.def")
    for pattern in ("at89*", "empty slot", "Am27C0?0", "[AM]*"):
        expected = [d["name"] for d in tool_json("list", "--json", catalogue.path, pattern)["devices"]]
        assert [d.name for d in catalogue.devices(pattern)] == expected
    assert catalogue.device("empty_slot").name == "Empty Slot"
    assert [d.name for d in catalogue] == [d.name for d in catalogue.devices()]
    assert len(catalogue) == len(catalogue.devices())
