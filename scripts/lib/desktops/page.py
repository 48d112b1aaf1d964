"""Writes the results of scripts/desktops into docs/desktops.md."""

import json
from pathlib import Path

from bare_system import run

ROOT = Path(__file__).resolve().parents[3]
PAGE = ROOT / "docs/desktops.md"
IMAGES = ROOT / "docs/images/desktops"
START, END = "<!-- by scripts/desktops: start -->", "<!-- by scripts/desktops: end -->"
# The desktops that inside.py knows, in the order of the page.
NAMES = ("gnome", "plasma", "plasma-x11", "xfce", "mate", "lxqt", "sway", "sway-waybar", "weston")
WIDTH = 640  # of the pictures, in pixels
# Of these moments the first that was kept is shown.
SHOWN = ("full-screen-wayland", "full-screen-x11", "window-x11", "notice")


def write(folder):
    results = {}
    for name in NAMES:
        path = folder / f"{name}.json"
        if path.exists():
            results[name] = json.loads(path.read_text())
    IMAGES.mkdir(parents=True, exist_ok=True)
    for name in results:
        show(folder, name)
    text = PAGE.read_text()
    before, rest = text.split(START)
    _, after = rest.split(END)
    PAGE.write_text(f"{before}{START}\n{table(results)}\n{END}{after}")


def show(folder, name):
    kept = [folder / f"{name}-{moment}.png" for moment in SHOWN]
    path = next((path for path in kept if path.exists()), None)
    if not path:
        return
    run("convert", path, "-resize", WIDTH, "-colors", 128, "-strip", IMAGES / f"{name}.png")


def table(results):
    names = list(dict.fromkeys(check for result in results.values() for check in result["results"]))
    lines = ["| desktop | " + " | ".join(names) + " |", "|---" * (len(names) + 1) + "|"]
    for result in results.values():
        version = result["version"].split(":")[-1].split("-")[0]
        cells = [cell(*result["results"].get(check, ("–", ""))) for check in names]
        lines.append(f"| {result['title']} {version} | " + " | ".join(cells) + " |")
    pictures = [f"| {result['title']} | ![{result['title']}](images/desktops/{name}.png) |"
                for name, result in results.items() if (IMAGES / f"{name}.png").exists()]
    return "\n".join(["", *lines, "", "| desktop | the panel above a full-screen window |", "|---|---|",
                      *pictures, ""])


def cell(mark, note):
    note = note.replace("|", "/")
    return f"{mark} ({note})" if note and mark != "–" else (note or mark)
