"""The rules for the source tree, as functions that take text and return violations."""

import re

# Which layers a layer may include, besides itself. A layer is a folder under src/. The folders of a
# service (linux/, store/, …) together are a layer of their own above the service's interface.
FOUNDATION = "platform/foundation"
INTERFACES = {"platform/audio", "platform/speech", "platform/translation", "platform/desktop",
              "platform/updates", "platform/models", "platform/recording", FOUNDATION}
MEDIA_SERVER = "platform/pipewire/linux"  # not a service: shared by the insides of several
INSIDE = "/<part>"
ALLOWED = {
    MEDIA_SERVER: set(),
    FOUNDATION: set(),
    "language": {FOUNDATION},
    "model": {FOUNDATION, "language"},
    "settings": {FOUNDATION, "language", "model"},
    "platform/audio": {FOUNDATION, "language"},
    "platform/models": {FOUNDATION, "language"},
    "platform/speech": {FOUNDATION, "platform/audio", "language"},
    "platform/translation": {FOUNDATION, "platform/models", "language"},
    "platform/desktop": {FOUNDATION, "language"},
    "platform/recording": {FOUNDATION, "platform/speech", "language"},
    "platform/updates": {FOUNDATION, "language"},
    "audio": INTERFACES | {"model", "language", "settings"},
    "translation": INTERFACES | {"model", "language", "settings"},
    "captions": INTERFACES | {"model", "language", "settings", "audio", "translation"},
    "cli": INTERFACES | {"model", "language", "settings", "audio", "translation", "captions"},
    "ui": INTERFACES | {"model", "language", "settings", "audio", "translation",
                        "captions"},
}

# Libraries of the system, by the start of an include, and who may include them.
SYSTEM_LIBRARIES = {
    "pipewire/": set(), "spa/": set(), "xcb/": set(), "X11/": set(), "archive": set(), "libav": set(), "libswresample": set(), "sentencepiece": set(), "dnnl": set(),
    "QDBus": set(), "QtDBus": set(), "QNetwork": {"platform/updates"}, "QtNetwork": set(),
    "QTcp": set(), "QSsl": {"platform/updates"},
    "fftw3": {"audio"}, "speex/": {"audio"},
    "unicode/": {FOUNDATION, "settings", "language", "model", "captions", "translation",
                 "platform/speech", "platform/translation", "ui"},
    "simdjson": {"model", FOUNDATION},
}


def layer_of(path):
    """The layer of a file by its path below src/ ("ui/caption/caption_view.h")."""
    parts = path.split("/")
    if parts[0] == "app":
        return "app"
    if path.startswith(MEDIA_SERVER + "/"):
        return MEDIA_SERVER
    if parts[0] == "platform":
        return "/".join(parts[:2]) + (INSIDE if parts[2:-1] else "")
    return parts[0]


def allowed_for(layer):
    """The layers that a layer may use, including itself."""
    if layer.endswith(INSIDE):
        return INTERFACES | {"language", MEDIA_SERVER, layer}
    return ALLOWED[layer] | {layer}


def include_complaints(path, text):
    """Includes that the layers do not allow."""
    layer = layer_of(path)
    if layer == "app":
        return
    for own, name in re.findall(r'^\s*#\s*include\s+(?:"([^"]+)"|<([^>]+)>)', text, re.M):
        if own:
            other = layer_of(own)
            if other not in allowed_for(layer):
                yield f"{path} ({layer}) may not include {own} ({other})"
        elif not layer.endswith(INSIDE) and layer != MEDIA_SERVER:
            for start, who in SYSTEM_LIBRARIES.items():
                if name.startswith(start) and layer not in who:
                    yield f"{path} ({layer}) may not include <{name}>"


def declared_layers(folder, cmake_text):
    """Name, layer and links of each library that a folder below src/ declares."""
    for body in re.findall(r"velun_layer\(([^)]*)\)", cmake_text):
        words = body.split()
        links = words[words.index("LINKS") + 1:] if "LINKS" in words else []
        layers = {layer_of(f"{folder}/{word}") for word in words if re.search(r"\.(h|cpp)$", word)}
        # The inside of a service may list headers of the interface for moc.
        yield words[0], max(layers, key=len), links
    # Private links.
    for body in re.findall(r"target_link_libraries\(([^)]*)\)", cmake_text):
        words = body.split()
        yield words[0], None, words[2:]


def link_complaints(declarations):
    """Links that the layers do not allow."""
    layers = {name: layer for name, layer, _ in declarations if layer}
    for name, _, links in declarations:
        layer = layers.get(name)
        if layer in (None, "app"):
            continue
        for link in links:
            if link in layers and layers[link] not in allowed_for(layer):
                yield f"{name} ({layer}) may not link {link} ({layers[link]})"


# The words of the table in ARCHITECTURE.md.
WORDS = {"foundation": {FOUNDATION}, "language": {"language"}, "interfaces": INTERFACES,
          "other interfaces": INTERFACES, "its interface": set(), "model": {"model"},
          "settings": {"settings"}, "audio": {"audio"}, "translation": {"translation"},
          "captions": {"captions"}, "pipewire": {MEDIA_SERVER}, "nothing of ours": set()}


def layers_of_row(folder):
    """The layers of a row of the table."""
    name = re.match(r"`src/([^`]+)`", folder)
    if name[1] == "platform/<service>":
        return INTERFACES - {FOUNDATION}
    if name[1] == "platform/<service>/<part>":
        return {layer + INSIDE for layer in INTERFACES - {FOUNDATION}}
    return {name[1]}


def map_complaints(architecture):
    """Rows of the table in ARCHITECTURE.md that contradict these rules."""
    rows = re.findall(r"^\| (`src/[^|]*) \| [^|]* \| ([^|]*) \|$", architecture, re.M)
    spoken_of = set().union(*(layers_of_row(folder) for folder, _ in rows))
    missing = set(ALLOWED) - spoken_of
    if missing:
        yield f"The map leaves out {sorted(missing)}"
    for folder, uses in rows:
        if uses == "everything":
            continue
        own, *exceptions = uses.split("; ")
        for layer in layers_of_row(folder):
            said = set().union(*(WORDS[word] for word in own.split(", ")))
            for exception in exceptions:
                service, _, more = exception.partition(" also ")
                if layer == "platform/" + service:
                    said |= {"platform/" + more}
            if said | {layer} != allowed_for(layer):
                yield f"The map says of {layer}: {uses}; the rules: {sorted(allowed_for(layer))}"


def without_comments(text):
    return re.sub(r"//[^\n]*", "", text)


def call_arguments(text, start):
    """The arguments of the call whose opening parenthesis is at `start`."""
    arguments, depth, current, quoted, i = [], 0, "", False, start
    while i < len(text):
        c = text[i]
        if quoted:
            current += c
            if c == "\\":
                current += text[i + 1]
                i += 1
            elif c == '"':
                quoted = False
        elif c == '"':
            quoted, current = True, current + c
        elif c in "([{":
            depth += 1
            if depth > 1:
                current += c
        elif c in ")]}":
            depth -= 1
            if depth == 0:
                arguments.append(current.strip())
                return arguments
            current += c
        elif c == "," and depth == 1:
            arguments.append(current.strip())
            current = ""
        else:
            current += c
        i += 1
    return arguments


def literals(expression):
    return "".join(re.findall(r'"((?:[^"\\]|\\.)*)"', expression))


# Names and formats that are the same in both languages.
SAME_IN_BOTH = {"Markdown (.md)", "Velun", " · ", "Velun — ", "OK"}


def text_complaints(path, text):
    """Texts that are in one language only."""
    code = without_comments(text)
    for match in re.finditer(r"(?<![\w:>.])L\(", code):
        arguments = call_arguments(code, match.end() - 1)
        where = f"{path}: L({', '.join(arguments)})"
        if len(arguments) != 2:
            yield f"{where} is not a pair"
            continue
        english, korean = (literals(a) for a in arguments)
        if not english and not korean:
            continue  # two variables, each a text made elsewhere
        if not english or not korean:
            yield f"{where} has one text only"
        elif not re.search(r"[가-힣]", korean) and english not in SAME_IN_BOTH:
            yield f"{where} has no Korean text"
        elif re.search(r"[가-힣]", english):
            yield f"{where} has Korean in its English text"


SHOWN_BY = ("setText", "setTitle", "setToolTip", "setWindowTitle", "setAccessibleName",
            "setAccessibleDescription", "setPlaceholderText", "setStatusTip", "addAction",
            "addMenu", "addItem", "setInformativeText", "addButton", "setLabelText")
NO_LANGUAGE = {"", "Velun", "English", "한국어", "Language · 언어"}


def untranslated_complaints(path, text):
    """Literals that are shown without `L`."""
    code = without_comments(text)
    for match in re.finditer(r"\b(" + "|".join(SHOWN_BY) + r")\(", code):
        arguments = call_arguments(code, match.end() - 1)
        for argument in arguments:
            literal = re.fullmatch(
                r'(?:QString(?:Literal|::fromUtf8)?\(|tr\()?u?"((?:[^"\\]|\\.)*)"_?s?\)?', argument)
            if literal and literal[1] not in NO_LANGUAGE and re.search(r"[A-Za-z가-힣]", literal[1]):
                yield f"{path}: {match[1]} shows “{literal[1]}” in one language only"


def size_complaints(line_counts):
    """Checks that nine in ten files have fewer than 400 lines. `line_counts`: path → lines."""
    counts = sorted(line_counts.values())
    ninth = counts[int(len(counts) * 0.9)]
    if ninth >= 400:
        yield f"One file in ten has {ninth} lines or more; nine in ten should have fewer than 400"


def licence_complaints(path, text):
    if not text.startswith("// SPDX-License-Identifier: GPL-3.0-or-later\n"):
        yield f"{path} does not begin with its licence"


def option_complaints(models, description, code):
    """Options of models that are not described or not read."""
    for name in sorted({name for model in models for name in model.get("options", {})}):
        if f"`{name}`" not in description:
            yield f"The option {name} is not described"
        if f'"{name}"' not in code:
            yield f"The option {name} is read by nothing"


def callback_complaints(path, text):
    """Public notifications of a header that are std::function members instead of signals."""
    for match in re.finditer(r"std::function<[^;]*>\s+(on[A-Z]\w*)\s*(?:=[^;]*|\{[^;]*)?;",
                             without_comments(text)):
        if not match[1].endswith("_"):
            yield f"{path}: {match[1]} should be a signal or a constructor argument"


# What only some files may use, and those files: (pattern, name, paths below src/ without extension).
RESTRICTED = [
    (r"\bQ(?:Basic)?Timer\b|\bstartTimer\(", "timers (use Clock)",
     {"platform/foundation/system_clock",
      # Frames of animations; layout while the event loop is idle
      "ui/caption/level_meter", "ui/caption/spinner_clock",
      "ui/caption/bottom_pinned_scroll_view"}),
    (r"\bstd::j?thread\b(?!::hardware_concurrency)|\bQThread\b|\bstd::async\b",
     "threads of their own (use LatestJob)",
     {"platform/speech/local_speech_run",  # decoding
      # In the helper program, which has no event loop.
      "platform/speech/helper/recording_recognizer",
      "platform/speech/helper/connections",
      "platform/recording/recording_feed",  # a recording lasts for hours
      "platform/models/store/download_store",  # downloads last for minutes
      "platform/models/store/model_verifier",  # hashing many models lasts for seconds
      "model/session_files"}),  # reads in parallel and returns when all is read
    (r"\bQThreadPool\b|\bQtConcurrent\b|\bQRunnable\b", "Qt's thread pool (use LatestJob)",
     {"platform/foundation/latest_job",
      "platform/translation/translator_pool"}),  # of one thread: translators are not thread-safe
    (r"\bQSaveFile\b", "QSaveFile (use writeFileAtomically)", set()),
    (r"\bposix_spawnp?\b|\bQProcess\b|\bfork\(", "child processes (use ProcessPipeline)",
     {"platform/foundation/process_pipeline",
      "platform/desktop/linux/open_outside"}),  # a program that outlives this one
]


def restricted_complaints(path, text):
    """Uses of what CONTRIBUTING reserves to the one way for each need."""
    code = without_comments(text)
    for pattern, name, allowed in RESTRICTED:
        if path.rsplit(".", 1)[0] not in allowed and re.search(pattern, code):
            yield f"{path} may not use {name}"


FIXED_WAITS = {
    "python": r"\btime\.sleep\(",
    "c++": r"\bqWait\(\s*\d|\bqSleep\(|\b[mu]sleep\(|\bsleep_(?:for|until)\(|::sleep\(",
}
MAY_SLEEP = {"scripts/lib/private_desktop.py",  # polls conditions
             "tests/desktop/faults/sound_test.py",  # the fault is a machine that sleeps
             "tests/model/session_accident_test.cpp"}  # kills at random moments


def fixed_wait_complaints(path, text):
    """Waits of tests for a time instead of a condition."""
    pattern = FIXED_WAITS["c++" if path.endswith((".cpp", ".h")) else "python"]
    if path not in MAY_SLEEP:
        for match in re.finditer(pattern, text):
            yield f"{path}: {match[0]} waits for a time instead of a condition"


def name_complaints(page, source):
    """Classes and functions that a page names in code spans and that `source` does not contain."""
    known = set(re.findall(r"\w+", source))
    for span in re.findall(r"`([^`\n]+)`", page):
        if not re.fullmatch(r"(?:\w+::)*\w+(?:\([^()]*\))?(?:<\w*>)?", span):
            continue  # a path, a command or a text
        name = span.split("(")[0].split("<")[0]
        isName = "::" in name or re.search(r"[a-z][A-Z]|^[A-Z][a-z]", name)
        for part in name.split("::") if isName else ():
            if part not in known and part != "std":
                yield f"{span} is not in the source"
                break
