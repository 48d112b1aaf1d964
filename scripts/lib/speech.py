"""Speech for tests and the demonstration: our own text in synthetic voices, clips of human readers,
and two people on the telephone."""

import array
import gzip
import re
import subprocess
import sys
import wave
from dataclasses import dataclass, field
from pathlib import Path
from xml.etree import ElementTree

LIBRIVOX = Path("/usr/share/pocketsphinx/test/data/librivox")
# A conversation of two friends, 24 s, with its transcript: an example of the package transcriber,
# which Debian distributes under the GPL, version 2 or later. Its header names the CALLFRIEND corpus of
# the Linguistic Data Consortium, whose members are among the program's authors. It stays where the
# package put it.
TELEPHONE = Path("/usr/share/doc/transcriber/examples/know.sph.gz")

SENTENCES = [
    ("slt", "good morning and welcome to the first lesson of the year"),
    ("rms", "today we will talk about the river and the people who live beside it"),
    ("slt", "in the spring the water is high and the fields are green"),
    ("rms", "every summer the children of the village swim near the old bridge"),
    ("slt", "please open the window because it is very warm in this room"),
    ("rms", "thank you for your time and see you again next week"),
]

FRAME = 0.02  # seconds
SPEECH_LEVEL = 0.02  # of the clip's peak; quieter frames count as a pause
SHORTEST_PAUSE = 0.35  # seconds


@dataclass
class Clip:
    path: Path
    text: str
    kind: str  # "flite", "librivox" or "telephone"
    phrase_ends: list = field(default_factory=list)  # seconds from the clip's start


def phrase_ends(path):
    """Where speech stops for at least a short pause, or for good, in seconds."""
    with wave.open(str(path)) as clip:
        rate = clip.getframerate()
        samples = array.array("h", clip.readframes(clip.getnframes()))
    if sys.byteorder == "big":
        samples.byteswap()
    step = int(rate * FRAME)
    levels = [max(map(abs, samples[i:i + step]), default=0) for i in range(0, len(samples), step)]
    loud = max(levels) * SPEECH_LEVEL
    spoken = [i for i, level in enumerate(levels) if level > loud]
    ends = [a for a, b in zip(spoken, spoken[1:]) if (b - a) * FRAME >= SHORTEST_PAUSE]
    return [(i + 1) * FRAME for i in ends + spoken[-1:]]


def padded(source, path):
    """A copy with a moment of silence around it: the clips are cut to the word, and a player that
    starts and stops with them would swallow a part of the first and the last."""
    subprocess.run(["sox", str(source), str(path), "pad", "0.3", "0.3"], check=True)
    return path


def say(text, path, voice="slt"):
    """A sound file at the path that says the text in a synthetic voice."""
    spoken = path.with_name(f"{path.stem}-spoken.wav")
    subprocess.run(["flite", "-voice", voice, "-t", text, "-o", str(spoken)], check=True)
    return padded(spoken, path)


def synthetic(folder):
    for number, (voice, text) in enumerate(SENTENCES):
        yield Clip(say(text, folder / f"{number}-{voice}.wav", voice), text, "flite")


def human(folder):
    for line in (LIBRIVOX / "transcription").read_text().splitlines():
        text, name = re.fullmatch(r"<s> (.*) </s> \((.*)\)", line.strip()).groups()
        path = padded(LIBRIVOX / f"{name}.wav", folder / f"{name}.wav")
        yield Clip(path, text, "librivox")


def transcript(path):
    """The words of a transcript of the program Transcriber, without its notes about noises."""
    text = " ".join(ElementTree.parse(path).getroot().itertext())
    return " ".join(re.sub(r"\{.*?\}|[^\w\s']", " ", text).lower().split())


def telephone(folder):
    """Nothing where the package's examples are not installed."""
    if not TELEPHONE.exists():
        return
    recording = folder / "telephone.sph"
    recording.write_bytes(gzip.decompress(TELEPHONE.read_bytes()))
    mixed = folder / "telephone-mixed.wav"
    subprocess.run(["sox", str(recording), "-b", "16", "-e", "signed", str(mixed), "gain", "-3",
                    "remix", "1,2", "rate", "16000"], check=True)
    text = transcript(TELEPHONE.with_name("know.trs"))
    yield Clip(padded(mixed, folder / "telephone.wav"), text, "telephone")


def clips(folder):
    folder.mkdir()
    spoken = [*synthetic(folder), *telephone(folder), *human(folder)]
    for clip in spoken:
        clip.phrase_ends = phrase_ends(clip.path)
    return spoken
