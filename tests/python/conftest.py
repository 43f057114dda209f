"""What the tests of the Python module share: the files they read, the devdef command to compare with, and
the catalogue as plain data in the shape of devdef's JSON documents.

The module comes from PYTHONPATH, the command from DEVDEF_TOOL, the files from this repository.
"""

import json
import os
import shlex
import subprocess
from pathlib import Path

import pytest


REPO = Path(__file__).resolve().parents[2]
EXAMPLES = REPO / "examples"
GOLDEN = REPO / "tests" / "golden"
TOOL = os.environ.get("DEVDEF_TOOL")

# Every definition file of the repository: the examples and the odd cases.
FILES = sorted(EXAMPLES.glob("*.def")) + sorted(GOLDEN.glob("*.def"))

# The command line options of a golden case (its NAME.options) as keyword arguments of devdef.read().
_KEYWORDS = {"--check-ids": ("check_ids", None), "--encoding": ("encoding", str), "--generation": ("generation", int),
             "--layout": ("layout", int)}


def pytest_configure(config):
    if not TOOL or not os.access(TOOL, os.X_OK):
        raise pytest.UsageError("DEVDEF_TOOL must name the devdef command (it is " + repr(TOOL) + ")")


def file_id(path):
    return path.parent.name + "/" + path.name


def options_of(path):
    """The options a golden case is read with: (command line words, keyword arguments of devdef.read)."""
    options = path.with_suffix(".options")
    if path.parent != GOLDEN or not options.exists():
        return [], {}
    words = shlex.split(options.read_text().splitlines()[0])
    keywords, i = {}, 0
    while i < len(words):
        name, convert = _KEYWORDS[words[i]]
        keywords[name] = True if convert is None else convert(words[i + 1])
        i += 1 if convert is None else 2
    return words, keywords


def run_tool(*words, cwd=None):
    """Runs devdef with the words; the finished process, its output as bytes."""
    return subprocess.run([TOOL, *map(str, words)], capture_output=True, cwd=cwd, check=False)


def tool_json(*words):
    """The JSON document devdef prints for the words (with exit status 0 or 1)."""
    done = run_tool(*words)
    assert done.returncode in (0, 1), done.stderr.decode(errors="replace")
    return json.loads(done.stdout)


# The catalogue as devdef tree --json shows it, made from the module's objects alone.

def numbered(names, numbers):
    return [{"name": name, "number": number} for name, number in zip(names, numbers)]


def definition_data(d):
    return {
        "adapters": numbered(d.adapters, d.adapter_numbers),
        "generation": d.generation,
        "hidden": not d.visible,
        "id": d.id,
        "line": d.line,
        "marks": d.marks,
        "module": {"name": d.module, "number": d.module_number},
        "package_name": d.package_name,
        "packages": numbered(d.packages, d.package_numbers),
        "text": d.text,
        "values": d.values,
        "visible_index": d.visible_index,
    }


def named(thing):
    return {"line": thing.line, "name": thing.name}


def device_data(device):
    return {
        "definitions": [definition_data(d) for d in device.definitions],
        "housings": numbered(device.housings, device.housing_numbers),
        "kind": named(device.kind),
        "line": device.line,
        "manufacturer": named(device.manufacturer),
        "marks": device.marks,
        "name": device.name,
        "visible_definitions": len(device.visible),
    }


def tree_data(catalogue):
    def entries(names):
        return numbered(names, range(len(names)))

    return {
        "adapters": entries(catalogue.adapters),
        "encoding": catalogue.encoding,
        "file": str(catalogue.path),
        "kinds": [
            dict(named(kind), manufacturers=[dict(named(m), devices=[device_data(d) for d in m.devices])
                                             for m in kind.manufacturers])
            for kind in catalogue.kinds
        ],
        "layout": catalogue.layout,
        "modules": entries(catalogue.modules),
        "packages": entries(catalogue.housings),
        "schema": 1,
    }


def finding_data(f):
    place = {"line": f.line, "column": f.column, "end_line": f.end_line, "end_column": f.end_column,
             "message": f.message}
    return dict(place, kind=f.kind, severity=f.severity, count=f.count, last_column=f.last_column,
                related=[{"line": r.line, "column": r.column, "end_line": r.end_line, "end_column": r.end_column,
                          "message": r.message, "cause": r.cause} for r in f.related])


def without_bytes(document):
    """The document without its *_bytes fields: the raw bytes of a text the encoding cannot decode, which
    the module does not give (its strings hold U+FFFD there, as the JSON text fields do)."""
    if isinstance(document, dict):
        return {k: without_bytes(v) for k, v in document.items() if not k.endswith("_bytes")}
    if isinstance(document, list):
        return [without_bytes(v) for v in document]
    return document


@pytest.fixture
def copy_of(tmp_path):
    """copy_of(path): a copy of the file in a fresh directory, to edit or spoil."""
    def copy(path):
        target = tmp_path / Path(path).name
        target.write_bytes(Path(path).read_bytes())
        return target
    return copy
