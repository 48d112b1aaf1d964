#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Write the tiny NeMo CTC model as a multilingual NeMo transducer.

Needs (Debian 12): python3-numpy python3-onnx
Usage: make_tiny_transducer.py nemo-ctc.int8.onnx OUTDIR
Writes OUTDIR/nemo-encoder.int8.onnx, nemo-decoder.int8.onnx and nemo-joiner.int8.onnx, which have
the inputs, outputs and metadata of NeMo's cache-aware streaming transducers with language prompts.
Nothing is trained: 128 Slaney mel bands are turned into the 80 bands that the network was trained
with, the decoder is the last token, and the joiner moves that token's weight to the blank. With
another language than English, the encoder gives blanks only.
"""
import json
import os
import sys

import numpy as np
import onnx
from onnx import TensorProto, helper, numpy_helper

RATE, BINS, BANDS = 16000, 257, 128
FLOOR = 1.1920929e-07
PROMPTS = {"auto": 101, "de-DE": 2, "en-US": 0, "es-ES": 1}


def kaldi_bands(count=80, low=20.0, high=7600.0):
    """Triangles on the scale of the features that the network was trained with."""
    def mel(f):
        return 1127.0 * np.log(1.0 + f / 700.0)
    f = mel(np.arange(BINS) * RATE / 512)
    edges = np.linspace(mel(low), mel(high), count + 2)
    return triangles(f, edges)


def slaney_bands(count=BANDS, low=0.0, high=8000.0):
    """Triangles on Slaney's scale, each with the area one."""
    def mel(f):
        f = np.asarray(f, dtype=float)
        return np.where(f < 1000, f * 3 / 200, 15 + np.log(np.maximum(f, 1) / 1000) * 27 / np.log(6.4))

    def hertz(m):
        return np.where(m < 15, m * 200 / 3, 1000 * np.exp((m - 15) * np.log(6.4) / 27))
    edges = hertz(np.linspace(mel(low), mel(high), count + 2))
    f = np.arange(BINS) * RATE / 512
    return triangles(f, edges) * (2 / (edges[2:] - edges[:-2]))[:, None]


def triangles(f, edges):
    left, center, right = edges[:-2, None], edges[1:-1, None], edges[2:, None]
    return np.maximum(0, np.minimum((f - left) / (center - left), (right - f) / (right - center)))


def band_weights():
    """Weights, none of them negative, that make the 80 bands from the 128: the best ones in squares,
    found step by step."""
    wanted, given = kaldi_bands(), slaney_bands()
    weights = wanted @ given.T
    for _ in range(2000):
        weights *= (wanted @ given.T) / np.maximum(weights @ given @ given.T, 1e-12)
    return weights.astype(np.float32)


def constant(name, value):
    return numpy_helper.from_array(np.asarray(value), name)


def value(name, kind, shape):
    return helper.make_tensor_value_info(name, kind, shape)


def save(graph, path, metadata=None):
    model = helper.make_model(graph, opset_imports=[helper.make_opsetid("", 13)])
    model.ir_version = 7
    for key, text in (metadata or {}).items():
        entry = model.metadata_props.add()
        entry.key, entry.value = key, str(text)
    onnx.checker.check_model(model)
    onnx.save(model, path)
    print(f"{path}: {os.path.getsize(path)} bytes")


def encoder(ctc, path):
    graph, tokens = ctc.graph, ctc.graph.output[0].type.tensor_type.shape.dim[2].dim_value
    meta = {entry.key: entry.value for entry in ctc.metadata_props}
    window = int(meta["window_size"])
    for node in graph.node:   # the network hears the bands that were made
        for i, name in enumerate(node.input):
            if name == "audio_signal":
                node.input[i] = "bands"
    before = [
        helper.make_node("Exp", ["audio_signal"], ["slaney_power"]),
        helper.make_node("MatMul", ["band_weights", "slaney_power"], ["power"]),
        helper.make_node("Max", ["power", "floor"], ["safe_power"]),
        helper.make_node("Log", ["safe_power"], ["bands"]),
    ]
    after = [   # other languages: the blank, which is the last token, is certain
        helper.make_node("Equal", ["prompt_index", "english"], ["is_english"]),
        helper.make_node("Reshape", ["is_english", "column"], ["is_english_column"]),
        helper.make_node("Where", ["is_english_column", "logprobs", "only_blank"], ["heard"]),
        helper.make_node("Transpose", ["heard"], ["outputs"], perm=[0, 2, 1]),
    ]
    only_blank = np.full((1, 1, tokens), -30, np.float32)
    only_blank[0, 0, -1] = 0
    constants = [
        constant("band_weights", band_weights()), constant("floor", np.float32(FLOOR)),
        constant("english", np.int64(PROMPTS["en-US"])), constant("only_blank", only_blank),
        constant("column", np.array([-1, 1, 1], np.int64)),
    ]
    inputs = [value("audio_signal", TensorProto.FLOAT, ["N", BANDS, window])] + list(graph.input)[1:]
    inputs.append(value("prompt_index", TensorProto.INT64, ["N"]))
    steps = graph.output[0].type.tensor_type.shape.dim[1].dim_value
    outputs = [value("outputs", TensorProto.FLOAT, ["N", tokens, steps])] + list(graph.output)[1:]
    meta.update(normalize_type="", pred_rnn_layers=1, pred_hidden=1, feat_dim=BANDS,
                model_type="EncDecRNNTBPEModelWithPrompt", version="1",
                prompt_dictionary=json.dumps(PROMPTS, sort_keys=True),
                auto_prompt_id=PROMPTS["auto"])
    save(helper.make_graph(before + list(graph.node) + after, "encoder", inputs, outputs,
                           list(graph.initializer) + constants), path, meta)
    return tokens


def decoder(tokens, path):
    last_token = np.eye(tokens, dtype=np.int8)
    last_token[-1, -1] = 0   # nothing after the blank
    nodes = [
        helper.make_node("DequantizeLinear", ["last_token_q", "scale"], ["last_token"]),
        helper.make_node("Gather", ["last_token", "targets"], ["row"]),
        helper.make_node("Transpose", ["row"], ["outputs"], perm=[0, 2, 1]),
        helper.make_node("Identity", ["target_length"], ["prednet_lengths"]),
        helper.make_node("Identity", ["states.1"], ["states_next.1"]),
        helper.make_node("Identity", ["states.2"], ["states_next.2"]),
    ]
    state = [1, "N", 1]
    inputs = [value("targets", TensorProto.INT32, ["N", 1]),
              value("target_length", TensorProto.INT32, ["N"]),
              value("states.1", TensorProto.FLOAT, state), value("states.2", TensorProto.FLOAT, state)]
    outputs = [value("outputs", TensorProto.FLOAT, ["N", tokens, 1]),
               value("prednet_lengths", TensorProto.INT32, ["N"]),
               value("states_next.1", TensorProto.FLOAT, state),
               value("states_next.2", TensorProto.FLOAT, state)]
    constants = [constant("last_token_q", last_token), constant("scale", np.float32(1))]
    save(helper.make_graph(nodes, "decoder", inputs, outputs, constants), path)


def joiner(tokens, path):
    is_blank = np.zeros((1, tokens, 1), np.float32)
    is_blank[0, -1, 0] = 1
    nodes = [
        helper.make_node("Exp", ["encoder_outputs"], ["p"]),
        helper.make_node("Mul", ["p", "decoder_outputs"], ["repeated"]),
        helper.make_node("Sub", ["p", "repeated"], ["rest"]),
        helper.make_node("ReduceSum", ["repeated", "token_axis"], ["moved"], keepdims=1),
        helper.make_node("Mul", ["moved", "is_blank"], ["to_blank"]),
        helper.make_node("Add", ["rest", "to_blank"], ["q"]),
        helper.make_node("Max", ["q", "least"], ["safe_q"]),
        helper.make_node("Log", ["safe_q"], ["logit"]),
        helper.make_node("Reshape", ["logit", "shape"], ["outputs"]),
    ]
    inputs = [value(name, TensorProto.FLOAT, ["N", tokens, 1])
              for name in ("encoder_outputs", "decoder_outputs")]
    constants = [constant("token_axis", np.array([1], np.int64)), constant("is_blank", is_blank),
                 constant("least", np.float32(1e-20)),
                 constant("shape", np.array([-1, 1, 1, tokens], np.int64))]
    outputs = [value("outputs", TensorProto.FLOAT, ["N", 1, 1, tokens])]
    save(helper.make_graph(nodes, "joiner", inputs, outputs, constants), path)


def main():
    ctc, out = onnx.load(sys.argv[1]), sys.argv[2]
    os.makedirs(out, exist_ok=True)
    tokens = encoder(ctc, os.path.join(out, "nemo-encoder.int8.onnx"))
    decoder(tokens, os.path.join(out, "nemo-decoder.int8.onnx"))
    joiner(tokens, os.path.join(out, "nemo-joiner.int8.onnx"))


if __name__ == "__main__":
    main()
