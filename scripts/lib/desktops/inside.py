"""Runs inside the system of scripts/desktops: starts one desktop, checks the packaged program there and
writes the results and pictures: inside.py NAME FOLDER.
"""

import json
import shutil
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
sys.path[:0] = [str(ROOT / "scripts" / "lib"), str(ROOT / "tests" / "support")]

from PIL import Image  # noqa: E402

from accessibility import Accessibility  # noqa: E402
from bare_system import run  # noqa: E402
from catalogue import SESSIONS  # noqa: E402
from check_base import UNKNOWN, YES, run_checks  # noqa: E402
from checks import Checks  # noqa: E402
from output_check import OutputCheck  # noqa: E402
from program import PackagedProgram  # noqa: E402
from session import START  # noqa: E402
from velun_program import APPLICATION  # noqa: E402

LOGIN, REMOVED, RETURNED = "start at login", "its output removed", "its output is back"


def check(name, folder):
    """Some checks have a session of their own."""
    kind = SESSIONS[name]
    autostart = folder / f"{name}-autostart"
    shutil.rmtree(autostart, ignore_errors=True)
    results = in_session(kind(), folder, lambda *place: all_checks(place, autostart))
    results |= run_checks({LOGIN: lambda: start_at_login(kind, autostart, folder)})
    if kind.KEEPS_OUTPUTS:
        results |= dict.fromkeys((REMOVED, RETURNED), (UNKNOWN, kind.KEEPS_OUTPUTS))
    else:
        results |= in_session(kind(outputs=2), folder, output_checks)
    text = json.dumps({"name": name, "title": kind.TITLE, "version": version(kind.PACKAGE),
                       "results": results}, indent=1)
    (folder / f"{name}.json").write_text(text + "\n")


def all_checks(place, autostart):
    results = Checks(*place).all()
    session = place[0]
    if session.LOGIN:
        Checks(*place).start_at_login()
        shutil.copytree(session.autostart, autostart)
    return results


def output_checks(*place):
    check = OutputCheck(*place)
    return run_checks({REMOVED: check.panel_on_removed_output, RETURNED: check.panel_returns})


def start_at_login(kind, autostart, folder):
    """The next session starts the program."""
    if not kind.LOGIN:
        return UNKNOWN, kind.NO_LOGIN
    with kind(autostart=autostart) as session:
        program = PackagedProgram(session)
        try:
            session.wait("the program", program.owns_name, START)
            session.wait("its actions", program.state)
        finally:
            keep_logs(session, folder)
    return YES, f"by {kind.LOGIN[0]}"


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
        keep_logs(session, folder)
        return results


def keep_logs(session, folder):
    for log in session.root.glob("*.log"):
        (folder / f"{session.NAME}-{log.name}").write_bytes(log.read_bytes()[-20000:])


def version(package):
    return run("dpkg-query", "-W", "-f", "${Version}", package)


if __name__ == "__main__":
    check(sys.argv[1], Path(sys.argv[2]))
