"""Every item of the status menu in every state, as a StatusNotifier host shows it."""

import signal
import unittest

from spoken_case import SpokenCase
from trays import BusTray
from window_titles import PANEL

# Title → (enabled, checked), in order.
AT_FIRST = {
    "Start Captions": (True, False),
    "Computer Audio": (True, True),
    "Microphone": (True, False),
    "Computer and Microphone": (True, False),
    "Keep on Top": (True, True),
    "Click Through Captions": (True, False),
    "Show Caption Window": (True, False),
    "Restore Default Position": (True, False),
    "Save Current Session": (False, False),
    "Saved Sessions…": (True, False),
    "New Session": (True, False),
    "Settings…": (True, False),
    "Check for Updates…": (True, False),
    "Quit Velun": (True, False),
}
KOREAN = ["자막 시작", "컴퓨터 오디오", "마이크", "컴퓨터와 마이크", "항상 위에 표시", "자막 창 클릭 통과",
          "자막 창 보기", "기본 위치로 복원", "현재 세션 저장", "저장 기록…", "새 세션", "설정…", "업데이트 확인…", "Velun 종료"]


class StatusMenu(SpokenCase):
    TRAY = BusTray

    def test_every_state(self):
        self.launch()
        self.tray.wait_for_icon()
        self.expect("at first")
        self.assertEqual(self.tray.tip(), "Velun · Captions Stopped")

        self.change("Start Captions", "Switching Captions…", (False, False))
        self.change("Show Caption Window", "Hide Caption Window", (True, False))
        self.set({"Computer Audio": (False, True), "Microphone": (False, False),
                  "Computer and Microphone": (False, False), "New Session": (False, False)})
        # While PipeWire does not reply, switching takes some seconds.
        self.server.send_signal(signal.SIGSTOP)
        try:
            self.tray.click("Start Captions")
            self.expect("while switching")
        finally:
            self.server.send_signal(signal.SIGCONT)
        self.desktop.wait("the end of the switch",
                          lambda: "Switching Captions…" not in self.tray.menu())
        if "Start Captions" in self.tray.menu():
            # PipeWire was stopped for longer than the timeout, so the start failed.
            self.tray.click("Start Captions")
        self.change("Switching Captions…", "Stop Captions", (True, False))
        self.set({"Computer Audio": (True, True), "Microphone": (True, False),
                  "Computer and Microphone": (True, False), "New Session": (True, False)})
        self.expect("while running")
        self.assertEqual(self.tray.tip(), "Velun · Captions On")

        self.program.wait_until_capturing()
        self.speak()
        self.set({"Save Current Session": (True, False)})
        self.expect("with a line")
        self.tray.click("Save Current Session")
        self.change("Save Current Session", "Saving Current Session", (False, True))
        self.expect("once saved")
        self.assertEqual(len(self.saved_sessions()), 1)

        self.make_saving_fail()
        self.speak()
        self.set({"Saving Current Session": (True, False)})
        self.expect("after a write that failed")
        self.data.unlink()
        self.tray.click("Saving Current Session")
        self.set({"Saving Current Session": (False, True)})
        self.expect("saved again")

        self.tray.click("Stop Captions")
        self.change("Stop Captions", "Start Captions", (True, False))
        self.expect("stopped with lines")
        self.assertEqual(self.tray.tip(), "Velun · Captions Stopped")
        self.tray.click("New Session")
        self.change("Saving Current Session", "Save Current Session", (False, False))
        self.expect("in a new session")

    def test_settings_and_windows(self):
        self.launch()
        self.tray.wait_for_icon()
        self.tray.click("Microphone")
        self.set({"Computer Audio": (True, False), "Microphone": (True, True)})
        self.expect("with the microphone")
        self.tray.click("Keep on Top")
        self.set({"Keep on Top": (True, False)})
        self.expect("not on top")
        self.tray.click("Computer Audio")
        self.tray.click("Keep on Top")
        self.set({"Computer Audio": (True, True), "Microphone": (True, False),
                  "Keep on Top": (True, True)})
        self.expect("as before")

        self.tray.click("Click Through Captions")
        self.set({"Click Through Captions": (True, True)})
        self.expect("click through")
        self.tray.click("Click Through Captions")
        self.set({"Click Through Captions": (True, False)})
        self.tray.click("Show Caption Window")
        self.change("Show Caption Window", "Hide Caption Window", (True, False))
        self.expect("with the panel")
        self.desktop.wait_for_window(PANEL)
        first = self.panel_place()
        self.desktop.run("xdotool", "search", "--name", PANEL, "windowmove", 40, 50)
        self.desktop.wait("the panel to move", lambda: self.panel_place() != first)
        self.tray.click("Restore Default Position")
        self.desktop.wait("the panel to return", lambda: self.panel_place() == first)
        self.tray.click("Hide Caption Window")
        self.change("Hide Caption Window", "Show Caption Window", (True, False))
        self.expect("without the panel")
        self.desktop.wait("the panel to go", lambda: PANEL not in self.desktop.windows())

        for item, title in (("Settings…", "Velun Settings"),
                            ("Saved Sessions…", "Velun — Saved Sessions"),
                            ("Check for Updates…", "Velun — Updates")):
            self.tray.click(item)
            self.desktop.wait_for_window(title)
        self.tray.click("Quit Velun")
        self.assert_ends()

    def test_in_korean(self):
        self.launch(language="ko")
        self.tray.wait_for_icon()
        self.assertEqual(list(self.tray.menu()), KOREAN)
        self.assertEqual(self.tray.tip(), "Velun · 자막 중지됨")
        self.start_captions()
        self.desktop.wait("the running state", lambda: "자막 중지" in self.tray.menu())
        self.assertEqual(self.tray.tip(), "Velun · 자막 실행 중")
        self.assertIn("자막 창 숨기기", self.tray.menu())

    def setUp(self):
        super().setUp()
        self.expected = list(AT_FIRST.items())

    def set(self, states):
        self.expected = [(title, states.get(title, state)) for title, state in self.expected]

    def change(self, title, new_title, state):
        self.expected = [(new_title, state) if row[0] == title else row for row in self.expected]

    def expect(self, when):
        try:
            self.desktop.wait("the menu", lambda: list(self.tray.menu().items()) == self.expected)
        except AssertionError:
            self.assertEqual(list(self.tray.menu().items()), self.expected, when)

    def panel_place(self):
        return self.desktop.run("xdotool", "search", "--name", PANEL, "getwindowgeometry")


if __name__ == "__main__":
    unittest.main()
