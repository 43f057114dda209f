"""Reads a definition file through the Python module and asks every definition for its id, package and
module names: what a script over a whole catalogue costs, set against the library's own read of the file.

usage: iterate_definitions.py FILE
"""

import sys

import devdef


def main() -> int:
    catalogue = devdef.read(sys.argv[1])
    count = 0
    for device in catalogue:
        for definition in device.definitions:
            definition.id
            definition.package
            definition.module
            count += 1
    print(count)
    return 0


if __name__ == "__main__":
    sys.exit(main())
