"""Objects outlive the names that held their catalogue, catalogues alive at once keep their own header
lists, and threads read as one thread does. Run under PYTHONMALLOC=debug, a use of freed memory shows."""

import gc
from concurrent.futures import ThreadPoolExecutor

import devdef
from conftest import EXAMPLES, GOLDEN, definition_data, device_data, finding_data, named, tree_data

INSTRUMENTS = EXAMPLES / "instruments.def"
ADAPTERS = EXAMPLES / "adapters_v7.def"
PROGRAMMERS = EXAMPLES / "programmers_v2.def"


def kind_data(kind):
    return dict(named(kind), manufacturers=[dict(named(m), kind=m.kind.name, devices=[d.name for d in m.devices])
                                            for m in kind.manufacturers], devices=[d.name for d in kind.devices])


def other_work(tmp_path):
    """Reads and edits other files, so that the library's process-wide state is that of other catalogues."""
    for path in (ADAPTERS, PROGRAMMERS, GOLDEN / "cp1252_names.def", GOLDEN / "layout7_writer.def"):
        tree_data(devdef.read(path))
        devdef.check(path)
    editor = devdef.edit(ADAPTERS)
    editor.add_entry("housing", "SOIC8", at=0)
    editor.save(tmp_path / "edited.def")
    devdef.diff(ADAPTERS, tmp_path / "edited.def")
    gc.collect()


def test_objects_outlive_their_catalogue(tmp_path):
    catalogue = devdef.read(INSTRUMENTS)
    device = catalogue.device("Am27C010")
    definition = catalogue.find(2011)
    kind = catalogue.kinds[1]
    manufacturer = device.manufacturer
    before = definition_data(definition), device_data(device), kind_data(kind), named(manufacturer)
    del catalogue
    gc.collect()
    other_work(tmp_path)
    assert (definition_data(definition), device_data(device), kind_data(kind), named(manufacturer)) == before
    assert definition.device == device and device.kind == kind
    assert definition.package_name == "PLCC32" and device.package_name == "PLCC32"


def test_editor_catalogue_outlives_the_editor(tmp_path):
    editor = devdef.edit(PROGRAMMERS)
    editor.rename_entry("housing", "DIP28", "DIP28W")
    device = editor.catalogue.device("M27C512")
    before = device_data(device)
    editor.rename("M27C512", "M27C512B")
    del editor
    gc.collect()
    other_work(tmp_path)
    assert device_data(device) == before and device.visible[0].packages == ["DIP28W"]


def test_catalogues_alive_at_once_keep_their_own_lists():
    files = (INSTRUMENTS, ADAPTERS, PROGRAMMERS)
    alone = {}
    for path in files:
        alone[path] = [(d.package_name, d.packages, d.adapters, d.module) for d in devdef.read(path).definitions()]
    catalogues = [devdef.read(path) for path in files]
    definitions = [c.definitions() for c in catalogues]
    together = {path: [] for path in files}
    # Definitions of the three asked in turn: each answer needs its own catalogue's lists.
    for i in range(max(map(len, definitions))):
        for path, defs in zip(files, definitions):
            if i < len(defs):
                d = defs[i]
                together[path].append((d.package_name, d.packages, d.adapters, d.module))
    assert together == alone
    # The lists differ, or the test would prove nothing.
    assert len({tuple(map(str, rows)) for rows in alone.values()}) == len(files)


def test_threads_read_as_one_thread_does(tmp_path):
    files = sorted(EXAMPLES.glob("*.def")) + [GOLDEN / name for name in
                                             ("cp1252_names.def", "layout7_writer.def", "line_ends_mixed.def",
                                              "repeated_numbers.def", "utf8_names.def", "housing.def")]

    def work(path):
        editor = devdef.edit(path)
        editor.add_entry("housing", "ZZ99", at=0)
        return (tree_data(devdef.read(path)), [finding_data(f) for f in devdef.check(path)], editor.bytes(),
                tree_data(editor.catalogue))

    expected = [work(path) for path in files]
    with ThreadPoolExecutor(max_workers=4) as pool:
        for _ in range(3):
            assert list(pool.map(work, files)) == expected
