#!/usr/bin/env python3
"""Lists the devices of a definition file that have no definition of a generation.

    missing_generation.py catalogue.def              # devices without a KVR5DEF line
    missing_generation.py catalogue.def --generation 4

One line per device: kind / manufacturer / device and the line of its name.
"""

import argparse

import devdef


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("file", help="the definition file")
    parser.add_argument("--generation", type=int, choices=(3, 4, 5), default=5,
                        help="the generation to look for (default: 5)")
    args = parser.parse_args()

    try:
        catalogue = devdef.read(args.file, generation=args.generation)
    except (OSError, devdef.Error) as error:
        parser.exit(2, f"{parser.prog}: {error}\n")
    missing = [device for device in catalogue if not device.visible]
    for device in missing:
        print(f"{args.file}:{device.line}: {device.kind} / {device.manufacturer} / {device.name}")
    print(f"{len(missing)} of {len(catalogue)} devices have no generation {args.generation} definition")


if __name__ == "__main__":
    main()
