"""The real program captions one of two programs that play, or all but it."""

import unittest

from speech import say
from spoken_case import SpokenCase

# A word of what each program says.
FILM = "time"
CALL = "window"
PATIENCE = 60


class Programs(SpokenCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.call_clip = say("please open the window", cls.desktop.root / "call.wav")

    def play(self, clip, program):
        """Plays a clip to its end, as this program."""
        player = self.desktop.start(
            ["pw-play", "-P", f'{{ application.name = "{program}" }}', str(clip)])
        self.assertEqual(player.wait(PATIENCE), 0)

    def wait_for_lines(self, *words):
        """Waits until there is one line for each word, which contains it."""
        def are_there():
            lines = self.transcript().lower().split("\n")
            return len(lines) == len(words) and all(w in line for w, line in zip(words, lines))
        try:
            self.desktop.wait(f"lines with {words}", are_there, PATIENCE)
        except AssertionError as error:
            raise AssertionError(f"{error}; they are {self.transcript()!r}") from None

    def start_captions(self):
        self.program.action("toggle-captions")
        self.program.wait_for_state("running", True)
        self.desktop.wait("the capture", lambda: "Velun Tap:input_FL"
                          in self.desktop.run("pw-link", "-i"))

    def test_only_the_chosen_program_is_heard_and_again_when_it_restarts(self):
        self.launch(program="Film")
        self.start_captions()
        self.play(self.call_clip, "Call")
        self.play(self.clip, "Film")
        self.wait_for_lines(FILM)
        self.play(self.call_clip, "Film")
        self.wait_for_lines(FILM, CALL)
        self.stop_captions()

    def test_the_excluded_program_is_not_heard(self):
        self.launch()
        self.program.action("except-program", "Film")
        self.program.wait_for_state("except-program", "Film")
        self.start_captions()
        self.play(self.clip, "Film")
        self.play(self.call_clip, "Call")
        self.wait_for_lines(CALL)
        self.assertEqual(self.program.read_preferences()["program"], "Film")
        self.stop_captions()


if __name__ == "__main__":
    unittest.main()
