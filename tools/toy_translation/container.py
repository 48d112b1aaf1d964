"""Writes model files: the arrays of a network under their names, as floats or as 8-bit integers."""

import struct

import numpy as np

CHARACTERS, FLOAT, INTEGER = 0x0101, 0x0404, 0x4101
BLOCK = 256


def is_product(name):
    """Whether an array is the right-hand side of a product, which 8-bit files hold as integers."""
    return name.endswith(("_W", "_Wq", "_Wk", "_Wv", "_Wo", "_W1", "_W2", "_Wf")) or "Wemb" in name


def floats(name, values):
    return name, FLOAT, values.shape, np.ascontiguousarray(values, dtype="<f4").tobytes()


def integers(name, values):
    # The weights of one output lie side by side, except in tables, which are that way round already.
    multiplier = np.float32(127) / np.abs(values).max()
    stored = values if "Wemb" in name else values.T
    steps = np.clip(np.rint(stored * multiplier), -127, 127).astype(np.int8)
    return name, INTEGER, values.shape, steps.tobytes() + struct.pack("<f", multiplier)


def write(path, parameters, configuration, input_scales=None):
    """Writes floats, or integers when the scales of the products' inputs are given."""
    items = []
    for name in sorted(parameters):
        as_integers = input_scales is not None and is_product(name)
        items.append((integers if as_integers else floats)(name, parameters[name]))
    for name, scale in (input_scales or {}).items():
        items.append(floats(name + "_QuantMultA", np.array([[scale]])))
    items.sort(key=lambda item: item[0])
    text = configuration.encode() + b"\0"
    items.append(("special:model.yml", CHARACTERS, (len(text),), text))

    def padded(kind, data):
        return data if kind == CHARACTERS else data + bytes(-len(data) % BLOCK)

    data = [padded(kind, raw) for _, kind, _, raw in items]
    out = bytearray(struct.pack("<QQ", 1, len(items)))
    for (name, kind, shape, _), raw in zip(items, data):
        out += struct.pack("<QQQQ", len(name.encode()) + 1, kind, len(shape), len(raw))
    for name, *_ in items:
        out += name.encode() + b"\0"
    for _, _, shape, _ in items:
        out += struct.pack(f"<{len(shape)}i", *shape)
    position = len(out) + 8
    filler = (position // BLOCK + 1) * BLOCK - position
    out += struct.pack("<Q", filler) + bytes(filler) + b"".join(data)
    path.write_bytes(out)


def configuration(sizes):
    """The description that is stored with a network; engines want the unused keys too."""
    keys = {
        "bert-train-type-embeddings": "true", "bert-type-vocab-size": 2, "dec-cell": "ssru",
        "dec-cell-base-depth": 2, "dec-cell-high-depth": 1, "dec-depth": sizes["decoder"],
        "dim-emb": sizes["width"], "dim-rnn": 1024,
        "dim-vocabs": f"\n  - {sizes['source']}\n  - {sizes['target']}", "enc-cell": "gru",
        "enc-cell-depth": 1, "enc-depth": sizes["encoder"], "enc-type": "bidirectional",
        "factors-combine": "sum", "factors-dim-emb": 0, "input-types": "\n  []",
        "layer-normalization": "false", "lemma-dependency": '""', "lemma-dim-emb": 0,
        "output-omit-bias": "false", "right-left": "false", "skip": "false",
        "tied-embeddings": str(not sizes["shared"]).lower(),
        "tied-embeddings-all": str(sizes["shared"]).lower(), "tied-embeddings-src": "false",
        "transformer-aan-activation": "swish", "transformer-aan-depth": 2,
        "transformer-aan-nogate": "false", "transformer-decoder-autoreg": "rnn",
        "transformer-decoder-dim-ffn": 0, "transformer-decoder-ffn-depth": 0,
        "transformer-dim-aan": 2048, "transformer-dim-ffn": sizes["inner"],
        "transformer-ffn-activation": "relu", "transformer-ffn-depth": 2,
        "transformer-guided-alignment-layer": "last", "transformer-heads": sizes["heads"],
        "transformer-no-projection": "false", "transformer-pool": "false",
        "transformer-postprocess": "dan", "transformer-postprocess-emb": "d",
        "transformer-postprocess-top": '""', "transformer-preprocess": '""',
        "transformer-rnn-projection": "false", "transformer-tied-layers": "\n  []",
        "transformer-train-position-embeddings": "false", "type": "transformer", "ulr": "false",
        "ulr-dim-emb": 0, "ulr-trainable-transformation": "false", "version": "v1.12.14 toy"}
    return "".join(f"{key}:{'' if str(value).startswith(chr(10)) else ' '}{value}\n"
                   for key, value in keys.items())


def shapes(sizes):
    """The arrays of a network and their shapes, in rows of inputs."""
    width, inner = sizes["width"], sizes["inner"]
    found = {}

    def norm(prefix):
        found[prefix + "_ln_scale"] = found[prefix + "_ln_bias"] = (1, width)

    def attention(prefix):
        for part in "qkvo":
            found[f"{prefix}_W{part}"], found[f"{prefix}_b{part}"] = (width, width), (1, width)
        norm(prefix + "_Wo")

    def feed_forward(prefix):
        found[prefix + "_W1"], found[prefix + "_b1"] = (width, inner), (1, inner)
        found[prefix + "_W2"], found[prefix + "_b2"] = (inner, width), (1, width)
        norm(prefix + "_ffn")

    if sizes["shared"]:
        found["Wemb"] = (sizes["target"], width)
    else:
        found["encoder_Wemb"] = (sizes["source"], width)
        found["decoder_Wemb"] = (sizes["target"], width)
    for layer in range(1, sizes["encoder"] + 1):
        attention(f"encoder_l{layer}_self")
        feed_forward(f"encoder_l{layer}_ffn")
    for layer in range(1, sizes["decoder"] + 1):
        prefix = f"decoder_l{layer}_rnn"
        found[prefix + "_W"] = found[prefix + "_Wf"] = (width, width)
        found[prefix + "_bf"] = (1, width)
        norm(prefix + "_ffn")
        attention(f"decoder_l{layer}_context")
        feed_forward(f"decoder_l{layer}_ffn")
    found["decoder_ff_logit_out_b"] = (1, sizes["target"])
    return found
