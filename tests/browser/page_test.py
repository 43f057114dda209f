#!/usr/bin/python3
"""The published page in headless Chromium: the page of each file given and
of a generated catalogue of 100,000 devices is opened, searched by typing
(a word, a wildcard, a package: search, a search with no result), opened
from a #q= link, sorted and scrolled; the count and the rows shown must be
what the page's data says. The page's first render and each keystroke's
update are timed by the page itself and may take at most three times their
targets (1 s and 50 ms): the targets are the benchmark's
(bench/browser/page_bench.py).

usage: page_test.py --page-command 'CMD {file} {page}' --work DIR [--screenshot PNG] FILE...
Exit status 77 (skipped) where Chromium is missing, unless
DEVDEF_REQUIRE_CHROMIUM is set. --screenshot writes the README's picture
instead of testing."""

import argparse
import os
import pathlib
import random
import sys
import time
import urllib.parse

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import page_driver  # noqa: E402
from page_driver import count_text, fold, name_test, shown_names  # noqa: E402

FIRST_RENDER_LIMIT = 3 * 1000  # ms
KEYSTROKE_LIMIT = 3 * 50       # ms


def devices_of(data):
    """Each device of the page's data: its name, kind, manufacturer and
    package names."""
    numbers = page_driver.numbers
    groups, counts = numbers(data["groups"]), numbers(data["device"]["definitions"])
    packages = numbers(data["definition"]["packages"])
    devices = []
    group = at = 0
    for name, step, count in zip(data["device"]["name"], numbers(data["device"]["group"], True), counts):
        group += step
        names = set()
        for _ in range(count):
            for number in packages[at + 1:at + 1 + packages[at]]:
                names.add(data["packages"][number] if number < len(data["packages"]) else f"#{number}")
            at += 1 + packages[at]
        devices.append({"name": name, "kind": data["kinds"][groups[2 * group]],
                        "maker": data["makers"][groups[2 * group + 1]], "packages": names})
    return devices


def expect(what, got, wanted):
    if got != wanted:
        raise AssertionError(f"{what}: got {got!r}, wanted {wanted!r}")


class PageCheck:
    """The checks of one page, against its data."""

    def __init__(self, driver, page, label):
        self.driver = driver
        self.url = pathlib.Path(page).resolve().as_uri()
        self.label = label
        self.devices = devices_of(page_driver.page_data(page))
        self.first_render = page_driver.open_page(driver, self.url)
        self.search = driver.find_element("id", "search")
        self.keystrokes = []

    def rows_capacity(self):
        return len(shown_names(self.driver))

    def expect_shown(self, what, matches):
        """The count says matches of all, and the rows shown are the first
        of matches, in order (as many as the window holds)."""
        expect(f"{self.label}: {what}: count", count_text(self.driver), f"{len(matches)} of {len(self.devices)} devices")
        names = shown_names(self.driver)
        if matches and not names:
            raise AssertionError(f"{self.label}: {what}: no rows shown")
        expect(f"{self.label}: {what}: rows", names, [device["name"] for device in matches[:len(names)]])
        if len(matches) <= 20:
            expect(f"{self.label}: {what}: every row shown", len(names), len(matches))

    def type_search(self, text):
        from selenium.webdriver.common.keys import Keys
        self.search.send_keys(Keys.ESCAPE)
        self.keystrokes += page_driver.type_into(self.driver, self.search, text)

    def run(self):
        from selenium.webdriver.common.keys import Keys
        driver, devices = self.driver, self.devices
        self.expect_shown("all", devices)

        # "/" goes to the search box.
        driver.find_element("tag name", "h1").click()
        driver.find_element("tag name", "body").send_keys("/")
        expect(f"{self.label}: focus after /", driver.execute_script("return document.activeElement.id"), "search")

        first = devices[0]["name"]
        word = first[1:4]
        self.type_search(word)
        self.expect_shown(f"search {word!r}", [d for d in devices if name_test(word)(d["name"])])
        wildcard = first[:2].lower() + "*" + ("?" if len(first) > 3 else "")
        self.type_search(wildcard)
        self.expect_shown(f"search {wildcard!r}", [d for d in devices if name_test(wildcard)(d["name"])])
        package = next((d for d in devices if d["packages"]), None)
        if package:
            name = sorted(package["packages"])[0]
            query = f"package:{name.replace(' ', '_')} {first[0]}"
            self.type_search(query)
            wanted = [d for d in devices if any(name_test(name)(p) for p in d["packages"])
                      and name_test(first[0])(d["name"])]
            self.expect_shown(f"search {query!r}", wanted)
        self.type_search("no-such-device-anywhere")
        self.expect_shown("search with no result", [])
        self.search.send_keys(Keys.ESCAPE)
        self.expect_shown("after Escape", devices)

        # A link with the search and the kind filter in it, sorted by name
        # going down.
        kind = devices[0]["kind"]
        link = f"#q={urllib.parse.quote(wildcard)}&kind={urllib.parse.quote(kind)}&sort=name&order=desc"
        page_driver.open_page(driver, self.url + link)
        wanted = [d for d in devices if name_test(wildcard)(d["name"]) and d["kind"] == kind]
        wanted = sorted(wanted, key=lambda d: fold(d["name"]), reverse=True)
        self.expect_shown("#q= link, sorted down", wanted)
        self.search = driver.find_element("id", "search")
        expect(f"{self.label}: search box after #q=", self.search.get_attribute("value"), wildcard)
        expect(f"{self.label}: kind filter after #q=",
               driver.find_element("id", "kind").get_attribute("value"), kind)
        driver.find_element("id", "kind").send_keys(Keys.HOME)  # the first choice: all kinds

        # Sorting a column by its header, then the other way.
        self.search.send_keys(Keys.ESCAPE)
        header = driver.find_element("css selector", 'th[data-column="name"]')
        header.find_element("tag name", "button").click()
        by_name = sorted(devices, key=lambda d: fold(d["name"]))
        self.expect_shown("sorted by name", by_name)
        expect(f"{self.label}: aria-sort", header.get_attribute("aria-sort"), "ascending")
        if "sort=name" not in driver.current_url:
            raise AssertionError(f"{self.label}: the address does not hold the sort: {driver.current_url}")
        kind = driver.find_element("css selector", 'th[data-column="kind"] button')
        kind.click()
        kind.click()
        by_kind = sorted(devices, key=lambda d: fold(d["kind"]))
        expect(f"{self.label}: sorted by kind, down: first row's kind",
               driver.execute_script("return document.querySelector('#devices tbody tr').cells[0].textContent"),
               by_kind[-1]["kind"])

        if len(devices) > 1000:
            self.check_scrolling()

    def check_scrolling(self):
        """Halfway down a long list the rows in view are those of that
        place, and few are rendered."""
        driver = self.driver
        driver.get(self.url)
        page_driver.open_page(driver, self.url)
        driver.execute_script("window.scrollTo(0, document.body.scrollHeight / 2)")
        time.sleep(0.3)
        rows = driver.execute_script(
            "return Array.from(document.querySelectorAll('#devices tbody tr'),"
            " (row) => [Number(row.getAttribute('aria-rowindex')), row.cells[2].textContent])")
        if not 10 <= len(rows) <= 200:
            raise AssertionError(f"{self.label}: {len(rows)} rows rendered halfway down")
        for index, name in rows:
            expect(f"{self.label}: row {index} halfway down", name, self.devices[index - 2]["name"])
        middle = len(self.devices) // 2
        if not rows[0][0] - 2 < middle < rows[-1][0] - 2 + 200:
            raise AssertionError(f"{self.label}: rows {rows[0][0]}..{rows[-1][0]} rendered halfway down")


def generate_catalogue(path, devices=100000):
    """A layout 1 catalogue of that many devices: five kinds, manufacturers
    of 500 devices each, one to four definitions a device."""
    rng = random.Random(31)
    packages = [f"{shape}{pins}" for shape in ("DIP", "PLCC", "SOIC", "TSOP", "QFP") for pins in range(8, 100, 8)]
    adapters = [f"ADP_{c}_{p}/ZIF" for c in "SUX" for p in packages]
    modules = ["BASE", "FAST", "HV", "ISP", "JTAG", "SWD"]
    words = ["flash", "EEPROM", "OTP", "boot", "sector", "verify", "ISP", "fast", "parallel", "serial"]
    kinds = ["Microcontroller", "EPROM", "Flash", "EEPROM", "PLD"]
    lines = ["DEF_LAYOUT_VERSION = 1 ", "HOUSING_LIST " + ", ".join(packages) + ";",
             "ADAPTER_LIST " + ", ".join(adapters) + ";", "MODUL_LIST " + ", ".join(modules) + ";", ""]
    next_id = 1
    for n in range(devices):
        if n % 20000 == 0:
            lines += [f"{kinds[n // 20000 % len(kinds)]}:", ""]
        if n % 500 == 0:
            lines += [f":Maker_{n // 500}", ""]
        lines += [f"{rng.choice(['AT', 'M27C', 'PIC', 'Dev_', 'SST'])}{n}{rng.choice(['', 'A', '_X'])}", "{"]
        for generation in sorted(rng.sample([3, 4, 5], rng.randint(1, 3))):
            adapter = ",".join(str(rng.randrange(len(adapters))) for _ in range(rng.randint(1, 2)))
            text = " ".join(rng.choice(words) for _ in range(3))
            lines.append(f"KVR{generation}DEF: {next_id} {rng.randrange(len(packages))} {rng.randrange(len(modules))}"
                         f" {adapter} {rng.choice([8, 28, 32, 40])} : {text}")
            next_id += 1
        lines += ["}", ""]
    with open(path, "w", encoding="ascii") as out:
        out.write("\n".join(lines))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--page-command", required=True)
    parser.add_argument("--work", required=True)
    parser.add_argument("--screenshot")
    parser.add_argument("files", nargs="*")
    args = parser.parse_args()
    page_driver.require_browser("page_test")
    os.makedirs(args.work, exist_ok=True)
    driver = page_driver.start_browser()
    try:
        if args.screenshot:
            return screenshot(driver, args)
        big = os.path.join(args.work, "devices100k.def")
        if not os.path.exists(big):
            generate_catalogue(big)
        for definition in args.files + [big]:
            label = os.path.basename(definition)
            page = os.path.join(args.work, label + ".html")
            page_driver.write_page(args.page_command, definition, page)
            check = PageCheck(driver, page, label)
            check.run()
            slowest = max(check.keystrokes)
            typical = page_driver.median(check.keystrokes)
            print(f"{label}: {len(check.devices)} devices, first render {check.first_render:.0f} ms, "
                  f"keystroke median {typical:.1f} ms, slowest {slowest:.1f} ms")
            if check.first_render > FIRST_RENDER_LIMIT:
                raise AssertionError(f"{label}: first render took {check.first_render:.0f} ms")
            if typical > KEYSTROKE_LIMIT:
                raise AssertionError(f"{label}: a keystroke's update took {typical:.1f} ms (median)")
    finally:
        driver.quit()
    return 0


def screenshot(driver, args):
    """The README's picture: the first file's page, sorted by kind."""
    page = os.path.join(args.work, "screenshot.html")
    page_driver.write_page(args.page_command, args.files[0], page)
    driver.set_window_size(1280, 600)
    page_driver.open_page(driver, pathlib.Path(page).resolve().as_uri() + "#sort=kind")
    driver.save_screenshot(args.screenshot)
    print(f"page_test: wrote {args.screenshot}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
