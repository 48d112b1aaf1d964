"""Has a packaged program caption a spoken sentence."""

import json

from speech import say


def caption(desktop, program):
    """Starts the program, plays the sentence and quits; the first line of the saved session."""
    desktop.start_sound()
    desktop.start_tray()
    clip = say("thank you for your time", desktop.root / "clip.wav")
    program.write_preferences(translate=False, autoSaveSessions=True)
    program.launch()
    program.action("toggle-captions")
    program.wait_until_capturing()
    desktop.play(clip)
    desktop.wait("a line", lambda: program.can("save-session"), seconds=60)
    program.action("toggle-captions")
    program.wait_for_state("running", False)
    assert program.quit() == 0, program.log()
    session, = [json.loads(path.read_text()) for path in program.session_files()]
    return session["lines"][0]["text"]
