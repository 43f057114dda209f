#!/usr/bin/python3
"""How fast the published page of a definition file opens and searches in
headless Chromium: the page's first render (performance.now() when its
first rows are in place, from the start of the navigation) and each
keystroke's filtering and rendering as the page measures them, medians of
several loads and keystrokes; and the page's size against the file's.
Targets: first render 1 s, a keystroke 50 ms, the page half the file.

usage: page_bench.py --page-command 'CMD {file} {page}' [--loads N] FILE"""

import argparse
import os
import pathlib
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tests", "browser"))
import page_driver  # noqa: E402

# Searches typed key by key: a name, a wildcard, a field, a word of two
# fields and one that finds nothing.
QUERIES = ["dev_1_2", "d*7?", "package:pkg1", "kind:k module:a", "zzzz"]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--page-command", required=True)
    parser.add_argument("--loads", type=int, default=5)
    parser.add_argument("file")
    args = parser.parse_args()
    page_driver.require_browser("page_bench")
    from selenium.webdriver.common.keys import Keys
    with tempfile.TemporaryDirectory() as work:
        page = os.path.join(work, "page.html")
        page_driver.write_page(args.page_command, args.file, page)
        file_size, page_size = os.path.getsize(args.file), os.path.getsize(page)
        devices = len(page_driver.page_data(page)["device"]["name"])
        url = pathlib.Path(page).resolve().as_uri()
        driver = page_driver.start_browser()
        try:
            renders, keystrokes = [], []
            for _ in range(args.loads):
                renders.append(page_driver.open_page(driver, url))
            search = driver.find_element("id", "search")
            for query in QUERIES:
                search.send_keys(Keys.ESCAPE)
                keystrokes += page_driver.type_into(driver, search, query)
        finally:
            driver.quit()
    print(f"{args.file}: {file_size / 1e6:.1f} MB, {devices} devices")
    print(f"page: {page_size / 1e6:.1f} MB, {page_size / file_size:.2f}x the file (target 0.5x)")
    print(f"first render: median {page_driver.median(renders):.0f} ms of {len(renders)} loads, "
          f"{min(renders):.0f}..{max(renders):.0f} ms (target 1000 ms)")
    print(f"keystroke: median {page_driver.median(keystrokes):.1f} ms of {len(keystrokes)}, "
          f"slowest {max(keystrokes):.1f} ms (target 50 ms)")
    return 0


if __name__ == "__main__":
    sys.exit(main())
