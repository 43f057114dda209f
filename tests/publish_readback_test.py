"""devdef publish's tables read back by Python's own readers.

usage: publish_readback_test.py TOOL SOURCE_DIR

The CSV is read with the csv module and the JSON Lines with json: each has
one row per definition that tree --json counts (the visible ones alone with
--visible-only), the two forms agree row by row, a file named by its
extension gets the same bytes as standard output, and a device name and a
text with commas, double quotes and non-ASCII characters come back as the
file holds them.
"""

import csv
import io
import json
import os
import subprocess
import sys
import tempfile

TOOL = sys.argv[1]
SOURCE = sys.argv[2]
FAILURES = []
CHECKS = 0


def check(condition, what):
    global CHECKS
    CHECKS += 1
    if not condition:
        FAILURES.append(what)


def devdef(*args):
    return subprocess.run([TOOL, *args], check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout


def definitions(path):
    """(kind, manufacturer, device, id, hidden) of each definition, as tree --json has them."""
    tree = json.loads(devdef("tree", "--json", path))
    return [
        (kind["name"], manufacturer["name"], device["name"], definition["id"], definition["hidden"])
        for kind in tree["kinds"]
        for manufacturer in kind["manufacturers"]
        for device in manufacturer["devices"]
        for definition in device["definitions"]
    ]


def csv_rows(data):
    # newline="" leaves the line ends inside quoted fields to the reader.
    reader = csv.DictReader(io.StringIO(data.decode("utf-8"), newline=""), strict=True)
    return list(reader)


def jsonl_rows(data):
    lines = data.decode("utf-8").split("\n")
    check(lines[-1] == "", "the JSON Lines end with a line end")
    return [json.loads(line) for line in lines[:-1]]


def check_file(path):
    name = os.path.basename(path)
    expected = definitions(path)
    visible = [row for row in expected if not row[4]]
    rows = csv_rows(devdef("publish", "--format", "csv", path))
    objects = jsonl_rows(devdef("publish", "--format", "jsonl", path))
    check(len(rows) == len(expected), f"{name}: {len(rows)} CSV rows for {len(expected)} definitions")
    check(len(objects) == len(expected), f"{name}: {len(objects)} JSON lines for {len(expected)} definitions")
    from_csv = [(r["kind"], r["manufacturer"], r["device"], int(r["id"]), r["hidden"] == "true") for r in rows]
    from_jsonl = [
        (o["kind"]["name"], o["manufacturer"]["name"], o["device"]["name"], o["definition"]["id"],
         o["definition"]["hidden"])
        for o in objects
    ]
    check(from_csv == expected, f"{name}: the CSV rows are not tree's definitions")
    check(from_jsonl == expected, f"{name}: the JSON lines are not tree's definitions")
    for row, obj in zip(rows, objects):
        definition = obj["definition"]
        same = (
            row["text"] == definition["text"]
            and int(row["line"]) == definition["line"]
            and int(row["device_line"]) == obj["device"]["line"]
            and int(row["generation"]) == definition["generation"]
            and row["module"] == (definition["module"]["name"] or f"#{definition['module']['number']}")
            and row["adapters"].split(";") == [a["name"] or f"#{a['number']}" for a in definition["adapters"]]
            and row["package_name"] == (definition["package_name"] or "")
        )
        check(same, f"{name}: CSV and JSON Lines differ for definition {definition['id']}")
    only = csv_rows(devdef("publish", "--format", "csv", "--visible-only", path))
    check(len(only) == len(visible), f"{name}: {len(only)} rows with --visible-only for {len(visible)} visible")
    check(all(r["hidden"] == "false" for r in only), f"{name}: --visible-only keeps a hidden definition")
    with tempfile.TemporaryDirectory() as scratch:
        for extension, form in (("csv", "csv"), ("jsonl", "jsonl"), ("ndjson", "jsonl")):
            out = os.path.join(scratch, "table." + extension)
            devdef("publish", path, "-o", out)
            with open(out, "rb") as written:
                same = written.read() == devdef("publish", "--format", form, path)
            check(same, f"{name}: -o table.{extension} differs from --format {form} on standard output")
    return rows, objects


def main():
    examples = os.path.join(SOURCE, "examples")
    for entry in sorted(os.listdir(examples)):
        if entry.endswith(".def"):
            check_file(os.path.join(examples, entry))
    rows, objects = check_file(os.path.join(SOURCE, "tests", "golden", "publish_names.def"))
    # The names as the file holds them, a "_" read as a blank.
    device = 'Dual "Port", Ä∂ü'
    text = ' says "hello", then «bye»'
    check(any(r["device"] == device for r in rows), "the device name with a comma and a quote, from the CSV")
    check(any(o["device"]["name"] == device for o in objects), "the device name, from the JSON Lines")
    check(any(r["text"] == text for r in rows), "the text with a comma and quotes, from the CSV")
    check(any(o["definition"]["text"] == text for o in objects), "the text, from the JSON Lines")
    for failure in FAILURES:
        print("FAIL:", failure)
    print(f"publish_readback: {CHECKS - len(FAILURES)} passed, {len(FAILURES)} failed")
    return 1 if FAILURES else 0


if __name__ == "__main__":
    sys.exit(main())
