"""The tiny recognition model of the tests: installed, or in a catalogue of its own."""

import hashlib
import json
from pathlib import Path

from local_server import LocalServer

ROOT = Path(__file__).resolve().parents[2]
CATALOGUE = ROOT / "data" / "models" / "recognition.json"
FILES = ROOT / "tests" / "platform" / "speech" / "data"
LOCALE = "en_US"
TINY = {"encoder": "zipformer2-encoder.int8.onnx", "decoder": "decoder.int8.onnx",
        "joiner": "joiner.int8.onnx", "tokens": "tokens-blank0.txt"}
PHRASE = FILES / "h01.wav"  # "turn off the music now"
MODEL = "tiny-en"
TITLE = "Tiny English"


def model_of(locale):
    models = json.loads(CATALOGUE.read_text())["models"]
    return next(m for m in models if locale in m["options"].get("locales", []))


def install(data_home):
    """Installs the model as if downloaded and verified, in place of the catalogue's English one;
    returns its files by part.
    """
    model = model_of(LOCALE)
    folder = data_home / "app.velun.Velun" / "models" / model["id"]
    folder.mkdir(parents=True)
    hashes = {file["name"]: download["sha256"]
              for download in model["downloads"] for file in download["files"]}
    files, verified = {}, []
    for part, tiny in TINY.items():
        name = model["options"][part]
        files[part] = folder / name
        files[part].write_bytes((FILES / tiny).read_bytes())
        status = files[part].stat()
        verified.append({"name": name, "bytes": status.st_size,
                         "modified": status.st_mtime_ns // 1_000_000,
                         "sha256": hashes[name], "download": hashes[name]})
    (folder / "verified.json").write_text(json.dumps({"files": verified}))
    return files


def content_of(name):
    return (FILES / name).read_bytes()


def download(name):
    """An entry of a catalogue for one file."""
    size, digest = len(content_of(name)), hashlib.sha256(content_of(name)).hexdigest()
    return {"address": f"https://models.example/{name}", "bytes": size, "sha256": digest,
            "packing": "none", "files": [{"name": name, "bytes": size, "sha256": digest}]}


def write_catalogue(path, *others):
    """Writes a catalogue that has this model and the others."""
    model = {"id": MODEL, "kind": "recognition", "title": TITLE, "languages": ["en"],
             "licence": "MIT", "writes": [], "stepMs": 320, "memoryBytes": 1_000_000,
             "quality": "good",
             "options": {"locales": [LOCALE], "modelType": "zipformer2", "letters": "fold"} | TINY,
             "downloads": [download(name) for name in TINY.values()]}
    path.write_text(json.dumps({"models": [model, *others]}))


def mirror():
    """A server of the files of the catalogue's model."""
    return LocalServer(content_of)
