#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes the running mean of a checkpoint as an int8 ONNX model in the format of sherpa-onnx's
"online punctuation", its vocabulary and their SHA-256 (needs python3-onnx).
usage: export.py CHECKPOINT VOCABULARY OUT"""
import hashlib
import os
import sys

import numpy
import onnx
import torch
from onnx import TensorProto, helper, numpy_helper

# What the outputs mean, as sherpa-onnx reads it.
NOTES = dict(COMMA="1", PERIOD="2", QUESTION="3", UPPER="1", CAP="2", MIX_CASE="3")
# One character each: sherpa-onnx does not find longer signs in the vocabulary.
PAUSE_SIGNS = ("|", "+")
FILES = ("punctuation.onnx", "punctuation.vocab")


class Graph:
    def __init__(self, state):
        self.state, self.nodes, self.constants = state, [], {}

    def node(self, kind, inputs, output, **attributes):
        self.nodes.append(helper.make_node(kind, inputs, [output], **attributes))
        return output

    def constant(self, name, value, kind=None):
        self.constants[name] = numpy.asarray(value, kind)
        return name

    def int8(self, name, value, last):
        """int8 with one scale for each row of the `last` dimensions."""
        axes = tuple(range(value.ndim - last, value.ndim))
        scale = numpy.maximum(numpy.abs(value).max(axes, keepdims=True), 1e-8) / 127
        self.constant(name + "_q", numpy.rint(value / scale), numpy.int8)
        self.constant(name + "_s", scale, numpy.float32)

    def weight(self, name, value, last):
        """int8 in the file; ONNX Runtime makes it float on loading."""
        self.int8(name, value, last)
        self.node("Cast", [name + "_q"], name + "_c", to=TensorProto.FLOAT)
        return self.node("Mul", [name + "_c", name + "_s"], name)

    def gates(self, name):
        """torch has the gates i f g o, ONNX i o f g."""
        both = []
        for suffix in ("", "_reverse"):
            i, f, g, o = numpy.split(self.state[f"lstm.{name}_l0{suffix}"], 4)
            both.append(numpy.concatenate([i, o, f, g]))
        return numpy.stack(both)

    def trim(self):
        """Only the used part of the 200 places."""
        self.constant("zero", 0, numpy.float32)
        self.constant("one", [1], numpy.int64)
        self.constant("two", [2], numpy.int64)
        self.constant("begin", 1, numpy.int32)
        self.constant("end", 2, numpy.int32)
        self.constant("first", [0], numpy.int64)
        self.constant("axis", [1], numpy.int64)
        self.constant("flat", [-1], numpy.int64)
        self.node("Equal", ["tokens", "end"], "is_end")
        self.node("NonZero", ["is_end"], "ends")
        self.node("Slice", ["ends", "one", "two", "first"], "end_places")
        self.node("ReduceMax", ["end_places"], "last", axes=[0, 1], keepdims=0)
        self.node("Add", ["last", "one"], "used")
        self.node("Slice", ["tokens", "first", "used", "axis"], "t")
        self.node("Slice", ["valids", "first", "used", "axis"], "v")

    def places(self):
        """Where the words' first pieces are."""
        self.node("Equal", ["v", "begin"], "is_first")
        self.node("Equal", ["t", "begin"], "is_begin")
        self.node("Equal", ["t", "end"], "is_last")
        self.node("Or", ["is_begin", "is_last"], "is_edge")
        self.node("Not", ["is_edge"], "is_piece")
        self.node("And", ["is_first", "is_piece"], "is_word")
        self.node("Reshape", ["is_word", "flat"], "is_word_flat")
        self.node("NonZero", ["is_word_flat"], "word_row")
        self.node("Reshape", ["word_row", "flat"], "places")

    def network(self):
        state = self.state
        self.int8("embedding", state["embedding.weight"], 1)
        self.node("Gather", ["embedding_q", "t"], "rows_q", axis=0)
        self.node("Cast", ["rows_q"], "rows", to=TensorProto.FLOAT)
        self.node("Gather", ["embedding_s", "t"], "rows_s", axis=0)
        self.node("Mul", ["rows", "rows_s"], "x")
        self.node("Transpose", ["x"], "x_channels", perm=[0, 2, 1])
        self.weight("conv", state["convolution.weight"], 2)
        self.constant("conv_b", state["convolution.bias"])
        self.node("Conv", ["x_channels", "conv", "conv_b"], "c", pads=[2, 2])
        self.node("Relu", ["c"], "c_relu")
        self.node("Transpose", ["c_relu"], "c_steps", perm=[0, 2, 1])
        self.node("Add", ["x", "c_steps"], "y")
        self.node("Transpose", ["y"], "y_steps", perm=[1, 0, 2])
        hidden = state["lstm.weight_hh_l0"].shape[1]
        self.weight("lstm_w", self.gates("weight_ih"), 1)
        self.weight("lstm_r", self.gates("weight_hh"), 1)
        self.constant("lstm_b", numpy.concatenate([self.gates("bias_ih"), self.gates("bias_hh")], 1))
        self.node("LSTM", ["y_steps", "lstm_w", "lstm_r", "lstm_b"], "h", direction="bidirectional",
                  hidden_size=hidden)
        self.node("Transpose", ["h"], "h_rows", perm=[2, 0, 1, 3])
        self.constant("h_shape", [-1, 2 * hidden], numpy.int64)
        self.node("Reshape", ["h_rows", "h_shape"], "h_flat")
        self.node("Gather", ["h_flat", "places"], "words", axis=0)

    def heads(self):
        # The model must use all of its inputs.
        self.node("Cast", ["lengths"], "lengths_float", to=TensorProto.FLOAT)
        self.node("ReduceSum", ["lengths_float"], "lengths_sum", keepdims=0)
        self.node("Mul", ["lengths_sum", "zero"], "nothing")
        self.node("Add", ["words", "nothing"], "words_all")
        for head, output in (("case", "case"), ("mark", "marks")):
            self.constant(head + "_w", self.state[head + ".weight"].T.copy())
            self.constant(head + "_b", self.state[head + ".bias"])
            self.node("MatMul", ["words_all", head + "_w"], head + "_m")
            self.node("Add", [head + "_m", head + "_b"], output)

    def model(self):
        value = helper.make_tensor_value_info
        graph = helper.make_graph(
            self.nodes, "punctuation",
            [value("tokens", TensorProto.INT32, ["N", 200]),
             value("valids", TensorProto.INT32, ["N", 200]),
             value("lengths", TensorProto.INT32, ["N"])],
            [value("case", TensorProto.FLOAT, ["M", 4]), value("marks", TensorProto.FLOAT, ["M", 4])],
            [numpy_helper.from_array(array, name) for name, array in self.constants.items()])
        model = helper.make_model(graph, opset_imports=[helper.make_opsetid("", 13)])
        model.ir_version = 7
        helper.set_model_props(model, NOTES)
        onnx.checker.check_model(model)
        return model


def main():
    checkpoint, vocabulary, out = sys.argv[1:4]
    state = torch.load(checkpoint)
    graph = Graph({name: value.numpy() for name, value in state["mean"].items()})
    for part in (graph.trim, graph.places, graph.network, graph.heads):
        part()
    model, vocab = (os.path.join(out, name) for name in FILES)
    onnx.save(graph.model(), model)
    with open(vocabulary, encoding="utf8") as source, open(vocab, "w", encoding="utf8") as target:
        for line in source:
            target.write(line.replace("\t", " "))
        for sign in PAUSE_SIGNS:
            target.write(f"▁{sign} 0\n")
    with open(os.path.join(out, "SHA256SUMS"), "w") as sums:
        for name in FILES:
            with open(os.path.join(out, name), "rb") as file:
                sums.write(f"{hashlib.sha256(file.read()).hexdigest()}  {name}\n")


if __name__ == "__main__":
    main()
