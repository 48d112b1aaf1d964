"""`velun captions`: the real program without windows."""

import array
import json
import os
import re
import shlex
import signal
import subprocess
import unittest
import wave
from pathlib import Path

import srt
from private_desktop import PrivateDesktop
from speech import say

EXECUTABLE = os.environ["VELUN_PROGRAM"]
DATA = Path(__file__).resolve().parents[3] / "data"
SENTENCE = "thank you for your time"
SAID = "Thank you for your time."
# The superuser reads every file, so the program runs without that right.
WITHOUT_PRIVILEGE = (["setpriv", "--bounding-set=-dac_override,-dac_read_search"]
                     if os.geteuid() == 0 else [])


class CaptionsProgram(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(PrivateDesktop())
        cls.server, _ = cls.desktop.start_sound()
        cls.clip = say(SENTENCE, cls.desktop.root / "clip.wav")
        cls.recording = cls.desktop.root / "a talk.mkv"
        # Two seconds of silence, the sentence, three of silence, and the sentence again.
        cls.ffmpeg("-i", cls.clip, "-i", cls.clip, "-filter_complex",
                   "[0]adelay=2000,apad=pad_dur=3[a];[a][1]concat=v=0:a=1", cls.recording)

    @staticmethod
    def ffmpeg(*arguments):
        subprocess.run(["ffmpeg", "-v", "error", "-y", *arguments], check=True)

    def environment(self):
        """Without a display: nothing of it may be needed."""
        return {name: value for name, value in self.desktop.environment.items()
                if name not in ("DISPLAY", "WAYLAND_DISPLAY")}

    def run_captions(self, *arguments, prefix=(), **options):
        return subprocess.run([*prefix, EXECUTABLE, "captions", *map(str, arguments)], check=False,
                              env=self.environment(), timeout=120,
                              **{"capture_output": True, **options})

    def captions(self, *arguments, **options):
        done = self.run_captions(*arguments, **options)
        self.assertEqual((done.returncode, done.stderr.decode()), (0, ""))
        return done.stdout.decode()

    def test_a_video_becomes_text(self):
        self.assertEqual(self.captions(self.recording), f"{SAID}\n{SAID}\n")

    def test_files_of_every_kind_are_captioned(self):
        for name in ("a.mp3", "b.opus", "c.flac", "d.mp4"):
            with self.subTest(name=name):
                file = self.desktop.root / name
                # As recorders write them: the defaults for a clip of 16 kHz lose half of the sound.
                self.ffmpeg("-i", self.clip, "-ar", "48000", "-b:a", "192k", file)
                self.assertEqual(self.captions(file), f"{SAID}\n")

    def test_files_that_cannot_be_captioned_are_refused(self):
        root = self.desktop.root
        (root / "empty.mp3").write_bytes(b"")
        (root / "broken.mkv").write_bytes(self.recording.read_bytes()[:300])
        (root / "text.txt").write_text("no sound here")
        self.ffmpeg("-f", "lavfi", "-i", "color=s=64x64:d=1", root / "mute.mp4")
        for name, text in (
                ("empty.mp3", "“empty.mp3” isn’t a sound or video file, or it is damaged."),
                ("broken.mkv", "“broken.mkv” couldn’t be read."),
                ("text.txt", "“text.txt” isn’t a sound or video file, or it is damaged."),
                ("mute.mp4", "“mute.mp4” has no sound.")):
            with self.subTest(name=name):
                done = self.run_captions(root / name)
                self.assertEqual((done.returncode, done.stdout), (1, b""))
                self.assertEqual(done.stderr.decode(), f"velun: {text}\n")

    def test_a_file_that_the_user_may_not_read_is_refused(self):
        secret = self.desktop.root / "secret.wav"
        secret.write_bytes(self.clip.read_bytes())
        self.assertEqual(self.run_captions(secret, prefix=WITHOUT_PRIVILEGE).returncode, 0)
        secret.chmod(0)
        done = self.run_captions(secret, prefix=WITHOUT_PRIVILEGE)
        self.assertEqual((done.returncode, done.stdout), (1, b""))
        self.assertEqual(done.stderr.decode(),
                         "velun: You don’t have permission to read “secret.wav”.\n")

    def test_captions_that_cannot_be_written_are_told_by_the_status(self):
        with open("/dev/full", "wb") as full:
            done = self.run_captions(self.clip, capture_output=False, stdout=full,
                                     stderr=subprocess.PIPE)
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr.decode(),
                         "velun: There is not enough disk space to write “standard output”.\n")

    def test_lists_that_cannot_be_written_are_told_by_the_status(self):
        for option in ("--help", "--list-models"):
            with open("/dev/full", "wb") as full:
                done = self.run_captions(option, capture_output=False, stdout=full,
                                         stderr=subprocess.PIPE)
            self.assertEqual(done.returncode, 1, option)
            self.assertIn("standard output", done.stderr.decode())

    def test_a_closed_standard_output_is_told(self):
        done = self.run_captions(self.clip, capture_output=False, stderr=subprocess.PIPE,
                                 preexec_fn=lambda: os.close(1))
        self.assertEqual(done.returncode, 1)
        self.assertIn("standard output", done.stderr.decode())

    def test_subtitles_have_the_times_of_the_words(self):
        first, second = srt.parse(self.captions("-f", "srt", self.recording))
        self.assertEqual([first.content, second.content], [SAID, SAID])
        begin, end, length = self.speech_in_clip()
        for cue, start in ((first, 2), (second, 5 + length)):
            self.assertAlmostEqual(cue.start.total_seconds(), start + begin, delta=0.3)
            self.assertAlmostEqual(cue.end.total_seconds(), start + end, delta=0.5)

    def speech_in_clip(self):
        """When the speech of the clip begins and ends, and the clip's length, in seconds."""
        with wave.open(str(self.clip)) as clip:
            rate, samples = clip.getframerate(), array.array("h", clip.readframes(1 << 24))
        loud = [place for place, sample in enumerate(samples) if abs(sample) > 500]
        return loud[0] / rate, loud[-1] / rate, len(samples) / rate

    def test_the_standard_input_is_read(self):
        output = self.captions("--format", "json", "-", input=self.recording.read_bytes())
        lines = [json.loads(line) for line in output.splitlines()]
        self.assertEqual([line["text"] for line in lines], [SAID, SAID])
        self.assertEqual({line["sourceLanguage"] for line in lines}, {"en_US"})
        self.assertLess(lines[0]["end"], lines[1]["start"])

    def test_translations_follow_their_lines(self):
        original, translation = self.captions("-t", "es", self.clip).splitlines()
        self.assertEqual(original, SAID)
        self.assertTrue(translation.startswith("    "))
        self.assertIn("tiempo", translation)

    def test_nothing_of_the_user_changes(self):
        preferences = self.desktop.home / "config" / "app.velun.Velun" / "preferences.json"
        self.captions("--model", "built-in", self.clip)
        self.assertFalse(preferences.exists())
        self.assertEqual([each for each in self.desktop.home.rglob("*.json")
                          if "Sessions" in str(each)], [])

    def test_faults_are_said_and_told_by_the_status(self):
        for arguments, status, text in (
                (["/none.mp3"], 1, "velun: “none.mp3” doesn’t exist."),
                (["--format", "doc"], 2, "velun: “doc” is not a value of --format"),
                (["--loud"], 2, "velun: Unknown option 'loud'."),
                (["-l", "ko_KR", self.clip], 1, "velun: The recognizer isn’t installed."),
                (["-l", "xx", self.clip], 1, "velun: There is no recognizer for “xx”."),
                (["-m", "none", self.clip], 1, "velun: There is no recognizer “none”"),
                (["-t", "fi", self.clip], 1, "velun: ")):
            with self.subTest(arguments=arguments):
                done = self.run_captions(*arguments)
                self.assertEqual(done.returncode, status)
                self.assertTrue(done.stderr.decode().startswith(text), done.stderr)
                self.assertEqual(done.stdout, b"")

    def test_help_and_models_are_listed(self):
        self.assertIn("--list-models", self.captions("--help"))
        self.assertIn("built-in\tinstalled\tBuilt-in recognizer\n", self.captions("--list-models"))

    def test_completions_and_the_manual_know_every_option(self):
        texts = self.captions("--help") + self.velun("--help").stdout
        options = set(re.findall(r"^  (?:-[a-z], )?--([a-z-]+)", texts, re.M))
        self.assertLess({"drafts", "version"}, options)
        for name, form in (("completions/velun.bash", r"--([a-z-]{2,})"),
                           ("completions/_velun", r"--([a-z-]{2,})\W"),
                           ("completions/velun.fish", r"complete .*-l ([a-z-]+)"),
                           ("velun.1.in", r"\\-\\-([a-z\\-]+)")):
            with self.subTest(name=name):
                text = (DATA / name).read_text(encoding="utf-8")
                found = {each.replace("\\", "") for each in re.findall(form, text)}
                self.assertEqual(options - found, set())
                self.assertEqual(found - options, set())

    def velun(self, *arguments, **environment):
        return subprocess.run([EXECUTABLE, *arguments], check=False, text=True, capture_output=True,
                              env=self.environment() | environment, timeout=30)

    def test_the_program_with_windows_tells_of_itself(self):
        self.assertTrue(self.velun("-h").stdout.startswith("Usage: velun [options] [file...]\n"))
        self.assertRegex(self.velun("--version").stdout, r"^Velun \d+\.\d+\.\d+\n$")

    def test_the_program_with_windows_refuses_other_options(self):
        done = self.velun("--nonsense", QT_QPA_PLATFORM="offscreen")
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertTrue(done.stderr.startswith("velun: Unknown option 'nonsense'.\n"), done.stderr)

    def completed(self, *words, before=":"):
        script = (f'source {DATA}/completions/velun.bash; {before}; COMP_WORDS=(velun "$@"); '
                  'COMP_CWORD=$#; _velun; printf "%s\\n" "${COMPREPLY[@]}"')
        done = subprocess.run(["bash", "-c", script, "bash", *words], check=True, text=True,
                              capture_output=True)
        return done.stdout.splitlines()

    def test_bash_completes_options_and_their_values(self):
        for words, completed in ((["captions", "--dr"], "--drafts"), (["c"], "captions"),
                                 (["captions", "-f", "s"], "srt"),
                                 (["captions", "--input", "b"], "both")):
            self.assertEqual(self.completed(*words), [completed])

    def test_bash_completes_names_as_they_are(self):
        trap = self.desktop.root / "expanded"
        names = ("The Player", "it's", f"$(touch {trap})", "other")
        rows = "".join(f"program\t{name}\n" for name in names) + "output\tA Loudspeaker\n"
        velun = f"velun() {{ printf %s {shlex.quote(rows)}; }}"
        self.assertEqual(self.completed("captions", "-p", "The", before=velun), ["The\\ Player"])
        self.assertEqual(self.completed("captions", "-p", "The\\ P", before=velun), ["The\\ Player"])
        self.assertEqual(self.completed("captions", "-d", "", before=velun), ["A\\ Loudspeaker"])
        offered = self.completed("captions", "-x", "", before=velun)
        self.assertEqual([shlex.split(each) for each in offered], [[each] for each in names])
        self.assertFalse(trap.exists())

    def start_captions(self, *arguments):
        process = self.desktop.start([EXECUTABLE, "captions", *arguments], stdout=subprocess.PIPE,
                                     stderr=subprocess.PIPE, text=True)
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)
        return process

    @staticmethod
    def helpers(process, name):
        found = subprocess.run(["pgrep", "-P", str(process.pid), "-f", name], check=False,
                               capture_output=True, text=True)
        return [int(pid) for pid in found.stdout.split()]

    def test_a_recognizer_that_is_killed_loses_nothing_of_a_recording(self):
        process = self.start_captions(str(self.recording))
        self.desktop.wait("all sound to be decoded", lambda: self.helpers(process, "velun-recognizer")
                          and not self.helpers(process, "velun-decoder"))
        for helper in self.helpers(process, "velun-recognizer"):
            os.kill(helper, signal.SIGKILL)
        lines, messages = process.communicate(timeout=120)
        self.assertEqual((lines, messages, process.returncode), (f"{SAID}\n{SAID}\n", "", 0))

    def test_live_sound_is_captioned_until_an_interrupt(self):
        process = self.start_captions("--format", "json", "--drafts")
        said = []
        while not said or said[-1].get("text") != SAID:
            # Again and again: the program may hear none of the first, or only its end.
            self.assertLess(sum("text" in each for each in said), 10, said)
            player = self.desktop.play(self.clip)
            player.wait()
            said.append(json.loads(process.stdout.readline()))
            while "draft" in said[-1]:
                said.append(json.loads(process.stdout.readline()))
        self.assertEqual(said[-1]["input"], "computer")
        self.assertTrue(any("draft" in each for each in said[:-1]))
        process.send_signal(signal.SIGINT)
        self.assertEqual(process.wait(30), 0)

    def test_an_interrupted_recording_is_told_by_the_status(self):
        endless = self.desktop.root / "long.wav"
        self.ffmpeg("-f", "lavfi", "-i", "anullsrc=r=16000:cl=mono", "-t", "36000", endless)
        process = self.start_captions("--drafts", str(endless))
        self.desktop.wait("the decoder", lambda: self.helpers(process, "velun-decoder"))
        process.send_signal(signal.SIGINT)
        self.assertEqual(process.wait(60), 130)


if __name__ == "__main__":
    unittest.main()
