#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes a speaker model for the tests: its print is the mean spectrum of the audio, without its
level. usage: make_tiny_speaker.py FOLDER (needs python3-onnx)"""
import os
import sys

import onnx
from onnx import TensorProto, helper

BANDS = 80
NOTES = dict(framework="wespeaker", language="English", sample_rate="16000",
             output_dim=str(BANDS), normalize_samples="0", feature_normalize_type="")


def model():
    node = helper.make_node
    nodes = [
        node("ReduceMean", ["x"], ["spectrum"], axes=[1], keepdims=0),
        node("ReduceMean", ["spectrum"], ["level"], axes=[1], keepdims=1),
        node("Sub", ["spectrum", "level"], ["embedding"]),
    ]
    value = helper.make_tensor_value_info
    graph = helper.make_graph(
        nodes, "speaker", [value("x", TensorProto.FLOAT, ["N", "T", BANDS])],
        [value("embedding", TensorProto.FLOAT, ["N", BANDS])])
    made = helper.make_model(graph, opset_imports=[helper.make_opsetid("", 13)], ir_version=7)
    for key, text in NOTES.items():
        made.metadata_props.add(key=key, value=text)
    onnx.checker.check_model(made)
    return made


if __name__ == "__main__":
    onnx.save(model(), os.path.join(sys.argv[1], "speaker.onnx"))
