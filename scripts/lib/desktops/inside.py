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
from catalogue import SESSIONS  # noqa: E402
from checks import Checks  # noqa: E402
from velun_program import APPLICATION  # noqa: E402
from program import PackagedProgram  # noqa: E402


def check(name, folder):
    with SESSIONS[name]() as session, Accessibility(session) as accessibility:
        session.run("dbus-update-activation-environment", "--all")
        program = PackagedProgram(session)
        program.write_preferences(language="en")
        program.launch()

        def keep(moment, picture):
            Image.fromarray(picture.astype("uint8")).save(folder / f"{name}-{moment}.png")

        checks = Checks(session, program, lambda: accessibility.application(APPLICATION), keep)
        results = checks.all()
        program.quit()
        text = json.dumps({"name": name, "title": session.TITLE, "version": session.version(),
                           "results": results}, indent=1)
        (folder / f"{name}.json").write_text(text + "\n")
        for log in session.root.glob("*.log"):
            (folder / f"{name}-{log.name}").write_bytes(log.read_bytes()[-20000:])


if __name__ == "__main__":
    check(sys.argv[1], Path(sys.argv[2]))
