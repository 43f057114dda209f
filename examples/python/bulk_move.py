#!/usr/bin/env python3
"""Moves every device of one manufacturer under a kind to another kind (and manufacturer).

    bulk_move.py catalogue.def EPROM AMD Flash_Memory            # to Flash_Memory / AMD
    bulk_move.py catalogue.def EPROM AMD EPROM Spansion --dry-run

The file is rewritten in place, byte for byte: only the moved blocks change. With --dry-run nothing is
written; the diff of the file and what changes by meaning are printed instead.
"""

import argparse

import devdef


def same(name, given):
    """Names compare as devdef compares them: case ignored, '_' equal to a blank."""
    return name.replace("_", " ").casefold() == given.replace("_", " ").casefold()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("file", help="the definition file")
    parser.add_argument("kind", help="the kind the devices stand under")
    parser.add_argument("manufacturer", help="the manufacturer they stand under")
    parser.add_argument("new_kind", help="the kind to move them to (made where missing)")
    parser.add_argument("new_manufacturer", nargs="?", help="the manufacturer to move them to (default: the same)")
    parser.add_argument("--dry-run", action="store_true", help="print the diff and the changes; write nothing")
    args = parser.parse_args()

    try:
        editor = devdef.edit(args.file)
        devices = [device for device in editor.catalogue
                   if same(device.kind.name, args.kind) and same(device.manufacturer.name, args.manufacturer)]
        if not devices:
            parser.exit(1, f"{parser.prog}: no device stands under {args.kind} / {args.manufacturer}\n")
        new_manufacturer = args.new_manufacturer or devices[0].manufacturer.name
        for device in devices:
            editor.move(device.name, args.new_kind, new_manufacturer)
        if not args.dry_run:
            editor.save()
    except (OSError, devdef.Error) as error:
        parser.exit(2, f"{parser.prog}: {error}\n")

    if args.dry_run:
        print(editor.preview())
        for change in editor.changes():
            where = " / ".join(change.path + [change.name or f"definition {change.id}"])
            moved = f" (from {' / '.join(change.from_path)})" if change.from_path else ""
            print(f"{change.change} {change.what} {where}{moved}")
    else:
        print(f"{args.file}: {len(devices)} devices moved to {args.new_kind} / {new_manufacturer}")


if __name__ == "__main__":
    main()
