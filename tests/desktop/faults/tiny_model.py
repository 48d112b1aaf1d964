"""Installs the tiny recognition model of the tests in place of a downloaded English model."""

import json
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
CATALOGUE = ROOT / "data" / "models" / "recognition.json"
FILES = ROOT / "tests" / "platform" / "speech" / "data"
LOCALE = "en_US"
TINY = {"encoder": "zipformer2-encoder.int8.onnx", "decoder": "decoder.int8.onnx",
        "joiner": "joiner.int8.onnx", "tokens": "tokens-blank0.txt"}
PHRASE = FILES / "h01.wav"  # "turn off the music now"


def model_of(locale):
    models = json.loads(CATALOGUE.read_text())["models"]
    return next(m for m in models if locale in m["options"].get("locales", []))


def install(data_home):
    """Installs the model as if downloaded and verified; returns its files by part."""
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
