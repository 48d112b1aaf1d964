"""Runs inside the system of scripts/desktops: starts one desktop, checks the packaged program there and
writes the results and pictures: inside.py NAME FOLDER.
"""

import json
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
sys.path[:0] = [str(ROOT / "scripts" / "lib"), str(ROOT / "tests" / "support")]

from PIL import Image  # noqa: E402

from accessibility import Accessibility  # noqa: E402
from bare_system import run  # noqa: E402
from catalogue import SESSIONS  # noqa: E402
from check_base import UNKNOWN, run_checks  # noqa: E402
from checks import Checks  # noqa: E402
from output_check import OutputCheck  # noqa: E402
from program import PackagedProgram  # noqa: E402
from velun_program import APPLICATION  # noqa: E402

OUTPUT = "its output removed"


def check(name, folder):
    """Some checks have a session of their own."""
    kind = SESSIONS[name]
    results = in_session(kind(), folder, lambda *place: Checks(*place).all())
    if kind.KEEPS_OUTPUTS:
        results[OUTPUT] = (UNKNOWN, kind.KEEPS_OUTPUTS)
    else:
        results |= in_session(kind(outputs=2), folder, lambda *place: run_checks(
            {OUTPUT: OutputCheck(*place).panel_on_removed_output}))
    text = json.dumps({"name": name, "title": kind.TITLE, "version": version(kind.PACKAGE),
                       "results": results}, indent=1)
    (folder / f"{name}.json").write_text(text + "\n")


def in_session(new_session, folder, checks):
    with new_session as session, Accessibility(session) as accessibility:
        session.run("dbus-update-activation-environment", "--all")
        program = PackagedProgram(session)
        program.write_preferences(language="en", hideFromScreenSharing=True)
        program.launch()

        def keep(moment, picture):
            Image.fromarray(picture.astype("uint8")).save(folder / f"{session.NAME}-{moment}.png")

        results = checks(session, program, lambda: accessibility.application(APPLICATION), keep)
        if program.owns_name():
            program.quit()
        for log in session.root.glob("*.log"):
            (folder / f"{session.NAME}-{log.name}").write_bytes(log.read_bytes()[-20000:])
        return results


def version(package):
    return run("dpkg-query", "-W", "-f", "${Version}", package)


if __name__ == "__main__":
    check(sys.argv[1], Path(sys.argv[2]))
