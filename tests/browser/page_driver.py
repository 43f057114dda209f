"""Headless Chromium on a published page, for the browser test and the
page's benchmark: writing the page, opening it, reading its data, typing
into its search box and the times the page measures itself
(window.devdefPage: firstRender, lastUpdate, from performance.now())."""

import json
import os
import re
import shlex
import shutil
import subprocess
import sys
import time

CHROMEDRIVER = "/usr/bin/chromedriver"


def require_browser(name):
    """Exits 77 (skipped) where Chromium, its driver or Selenium is
    missing, or 1 where DEVDEF_REQUIRE_CHROMIUM says they must be there."""
    missing = [what for what, there in (
        ("chromium", shutil.which("chromium") or shutil.which("chromium-browser")),
        ("chromium-driver", os.path.exists(CHROMEDRIVER)),
        ("python3-selenium", _has_selenium()),
    ) if not there]
    if not missing:
        return
    packages = " ".join(missing)
    if os.environ.get("DEVDEF_REQUIRE_CHROMIUM"):
        print(f"{name}: missing: {packages} (Debian packages)", file=sys.stderr)
        sys.exit(1)
    print(f"{name}: skipped: missing {packages} (Debian packages; ./dev.sh test installs them)")
    sys.exit(77)


def _has_selenium():
    try:
        import selenium  # noqa: F401
        return True
    except ImportError:
        return False


def start_browser(width=1280, height=900):
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    options = webdriver.ChromeOptions()
    for argument in ("--headless=new", "--disable-gpu", "--disable-dev-shm-usage", f"--window-size={width},{height}",
                     "--disable-extensions", "--no-first-run", "--lang=en-US"):
        options.add_argument(argument)
    if os.geteuid() == 0:
        options.add_argument("--no-sandbox")  # Chromium's sandbox refuses to run as root
    return webdriver.Chrome(service=Service(CHROMEDRIVER), options=options)


def write_page(command, definition_file, page):
    """Runs the command that writes the page: its {file} and {page} are
    replaced by the paths."""
    words = [word.replace("{file}", definition_file).replace("{page}", page) for word in shlex.split(command)]
    subprocess.run(words, check=True)


def page_data(page):
    """The data the page carries, as its script reads it."""
    with open(page, encoding="utf-8") as text:
        html = text.read()
    begin = html.index('<script type="application/json" id="data">')
    begin = html.index(">", begin) + 1
    return json.loads(html[begin:html.index("</script>", begin)])


DIGITS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"


def numbers(text, signed=False):
    """A column of the page's data: base-64 digits of five bits, least
    significant first, 32 and above saying another follows; signed ones
    zigzagged."""
    values, value, shift = [], 0, 0
    for c in text:
        digit = DIGITS.index(c)
        value |= (digit & 31) << shift
        shift += 5
        if digit < 32:
            values.append(-(value + 1) // 2 if signed and value & 1 else value // 2 if signed else value)
            value, shift = 0, 0
    return values


def open_page(driver, url, timeout=60):
    """Opens url (loading it again even where only the fragment differs)
    and waits for the page's first render; returns its time in ms."""
    driver.get("about:blank")
    driver.get(url)
    deadline = time.monotonic() + timeout
    while time.monotonic() < deadline:
        first = driver.execute_script("return window.devdefPage && window.devdefPage.firstRender")
        if first is not None:
            return first
        time.sleep(0.02)
    raise AssertionError(f"{url}: the page did not render in {timeout} s")


def count_text(driver):
    return driver.execute_script("return document.getElementById('count').textContent")


def shown_names(driver):
    """The device names of the rows rendered, in order."""
    return driver.execute_script(
        "return Array.from(document.querySelectorAll('#devices tbody tr'), (row) => row.cells[2].textContent)")


def type_into(driver, element, keys):
    """Types keys one by one; returns the time of each keystroke's update
    as the page measured it, in ms."""
    times = []
    for key in keys:
        element.send_keys(key)
        times.append(driver.execute_script("return window.devdefPage.lastUpdate"))
    return times


def fold(name):
    """A name as the search compares it: ASCII letters in lower case, "_"
    as a blank."""
    return re.sub(r"[A-Z]", lambda c: c.group().lower(), name.replace("_", " "))


def name_test(word):
    """What the page's search does with a word, written again: found
    anywhere in the name, or with "*" and "?" the whole name matched."""
    word = fold(word)
    if "*" not in word and "?" not in word:
        return lambda name: word in fold(name)
    pattern = re.compile("".join(".*" if c == "*" else "." if c == "?" else re.escape(c) for c in word), re.S)
    return lambda name: pattern.fullmatch(fold(name)) is not None


def median(values):
    ordered = sorted(values)
    return ordered[len(ordered) // 2]
