"""The real program captions one of two programs that play, or all but it."""

import unittest

from spoken_case import SpokenCase

PATIENCE = 60


class Programs(SpokenCase):
    def play(self, program):
        """Plays the phrase to its end, as this program."""
        player = self.desktop.start(
            ["pw-play", "-P", f'{{ application.name = "{program}" }}', str(self.clip)])
        self.assertEqual(player.wait(PATIENCE), 0)

    def lines(self):
        return [line for line in self.transcript().split("\n") if line]

    def wait_for_lines(self, count):
        self.desktop.wait(f"{count} lines", lambda: len(self.lines()) >= count, PATIENCE)

    def start_captions(self):
        self.program.action("toggle-captions")
        self.program.wait_for_state("running", True)
        self.desktop.wait("the capture", lambda: "Velun Tap:input_FL"
                          in self.desktop.run("pw-link", "-i"))

    def test_only_the_chosen_program_is_heard_and_again_when_it_restarts(self):
        self.launch(program="Film")
        self.start_captions()
        self.play("Call")
        self.play("Film")
        self.wait_for_lines(1)
        self.play("Film")
        self.wait_for_lines(2)
        self.stop_captions()
        self.assertEqual(len(self.lines()), 2)

    def test_the_excluded_program_is_not_heard(self):
        self.launch()
        self.program.action("except-program", "Film")
        self.program.wait_for_state("except-program", "Film")
        self.start_captions()
        self.play("Film")
        self.play("Call")
        self.wait_for_lines(1)
        self.stop_captions()
        self.assertEqual(len(self.lines()), 1)
        self.assertEqual(self.program.read_preferences()["program"], "Film")


if __name__ == "__main__":
    unittest.main()
