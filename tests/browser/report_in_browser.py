#!/usr/bin/python3
"""Loads the host's HTML reports in headless Chromium and checks what it renders.

usage: report_in_browser.py HOST CHROMIUM [--save-screenshot PNG]

Three reports: an extended run's discharge test, a quick run, and a quick run
after several earlier ones (the capacity history). The DOM that Chromium
builds must hold the charts with one point per sample; each screenshot must
show something. Everything is written to a temporary folder, the history too.
"""
import json
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import zlib
from html.parser import HTMLParser

FLAGS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
         "--disable-background-networking", "--disable-component-update", "--disable-sync"]


class Dom(HTMLParser):
    """Elements of interest as (tag, attributes) in document order."""

    def __init__(self):
        super().__init__()
        self.elements = []

    def handle_starttag(self, tag, attrs):
        self.elements.append((tag, dict(attrs)))

    def having(self, tag, css_class=None, **attributes):
        found = []
        for name, attrs in self.elements:
            if name != tag:
                continue
            if css_class and css_class not in attrs.get("class", "").split():
                continue
            if all(attrs.get(k.replace("_", "-")) == v for k, v in attributes.items()):
                found.append(attrs)
        return found


def fail(message):
    print("FAIL: " + message)
    sys.exit(1)


def expect(condition, message):
    if not condition:
        fail(message)


def chromium(browser, work, *arguments):
    profile = tempfile.mkdtemp(dir=work)
    result = subprocess.run([browser, *FLAGS, "--user-data-dir=" + profile, *arguments],
                            capture_output=True, text=True, timeout=120)
    shutil.rmtree(profile, ignore_errors=True)
    expect(result.returncode == 0, "chromium: " + result.stderr[-2000:])
    return result.stdout


def rendered(browser, work, page):
    dom = Dom()
    dom.feed(chromium(browser, work, "--dump-dom", "file://" + page))
    expect(not dom.having("script"), page + ": holds a script")
    for tag, attrs in dom.elements:
        for key in ("src", "href"):
            expect(key not in attrs, f"{page}: <{tag} {key}> would fetch something")
    return dom


def pixels(png):
    """Raw scanlines of a PNG: enough to tell a blank page from a drawn one."""
    with open(png, "rb") as f:
        data = f.read()
    expect(data[:8] == b"\x89PNG\r\n\x1a\n", png + ": not a PNG")
    at, idat = 8, b""
    while at < len(data):
        length, kind = struct.unpack(">I4s", data[at:at + 8])
        if kind == b"IDAT":
            idat += data[at + 8:at + 8 + length]
        at += 12 + length
    return zlib.decompress(idat)


def screenshot(browser, work, page, png):
    chromium(browser, work, "--hide-scrollbars", "--window-size=1000,2600",
             "--screenshot=" + png, "file://" + page)
    raw = pixels(png)
    drawn = sum(1 for b in raw if b < 200)
    expect(len(set(raw)) > 32 and drawn > len(raw) // 200, png + ": the screenshot is blank")


def points_in(attrs):
    return len(attrs.get("points", "").split())


def series(dom, css_class):
    found = dom.having("polyline", css_class)
    expect(len(found) == 1, f"one {css_class} line expected, found {len(found)}")
    expect(int(found[0]["data-points"]) == points_in(found[0]) or "ac" in css_class
           or "display" in css_class, css_class + ": drawn points differ from data-points")
    return found[0]


def main():
    host, browser = sys.argv[1], sys.argv[2]
    if not os.path.isfile(browser):
        fail("no Chromium at '" + browser + "': scripts/setup.sh --all installs Debian's chromium")
    save = sys.argv[4] if len(sys.argv) > 4 and sys.argv[3] == "--save-screenshot" else None
    work = tempfile.mkdtemp(prefix="battery-report-")
    env = dict(os.environ, XDG_DATA_HOME=os.path.join(work, "data"))
    db = os.path.join(work, "history.sqlite3")

    def run(*arguments):
        return subprocess.run([host, "-Mbattery", "--history-db", db, *arguments], env=env,
                              capture_output=True, text=True, timeout=300, stdin=subprocess.DEVNULL)

    try:
        discharge = os.path.join(work, "discharge.html")
        outcome = run("-Ed", "--duration", "5", "--time-scale", "600", "--yes", "--json",
                      "--report", discharge)
        expect(outcome.returncode == 0, "discharge run: " + outcome.stdout + outcome.stderr)
        samples = len(json.loads(outcome.stdout)["runs"][0]["progress"])
        expect(samples > 20, f"a five-minute run gives more than 20 samples, not {samples}")
        dom = rendered(browser, work, discharge)
        expect(len(dom.having("article", "run", data_result="passed")) == 1, "one passed run")
        expect(points_in(series(dom, "charge")) == samples,
               f"the charge line has {samples} points")
        expect(int(series(dom, "display")["data-points"]) == samples, "one display level a sample")
        expect(int(series(dom, "ac")["data-points"]) == samples, "one AC state a sample")
        expect(len(dom.having("line", "threshold")) == 1, "the verdict's threshold is drawn")
        for mark in ("start", "end"):
            expect(len(dom.having("circle", mark)) == 1, mark + " of the charge is marked")
        expect(len(dom.having("svg", "chart")) == 4, "health, charge, display, history charts")
        screenshot(browser, work, discharge, os.path.join(work, "discharge.png"))
        if save:
            shutil.copyfile(os.path.join(work, "discharge.png"), save)

        quick = os.path.join(work, "quick.html")
        expect(run("-Q", "--report", quick).returncode == 0, "quick run")
        dom = rendered(browser, work, quick)
        expect(len(dom.having("article", "run", data_result="passed")) == 2, "two passed runs")
        expect(not dom.having("polyline", "charge"), "a quick run draws no charge")
        expect(len(dom.having("circle", "battery", data_region="pass")) == 1,
               "the healthy battery stands in the passing region")
        screenshot(browser, work, quick, os.path.join(work, "quick.png"))

        for _ in range(3):
            expect(run("-Q").returncode == 0, "earlier quick run")
        history = os.path.join(work, "history.html")
        expect(run("-Q", "--report", history).returncode == 0, "quick run with history")
        dom = rendered(browser, work, history)
        expect(len(dom.having("figure", "capacity", data_runs="6")) == 1,
               "the history shows the battery's six runs")
        expect(points_in(series(dom, "full")) == 6, "six full-charge capacities drawn")
        screenshot(browser, work, history, os.path.join(work, "history.png"))
        expect(not os.path.exists(os.path.join(work, "data")), "nothing in the data folder")
    finally:
        shutil.rmtree(work, ignore_errors=True)
    print("reports render in the browser")


if __name__ == "__main__":
    main()
