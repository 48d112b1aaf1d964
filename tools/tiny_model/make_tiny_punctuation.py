#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes a punctuation model for the tests: it makes every word's first letter large and puts a
full stop after it. usage: make_tiny_punctuation.py FOLDER (needs python3-onnx)"""
import os
import sys

import numpy
import onnx
from onnx import TensorProto, helper, numpy_helper

LARGE_FIRST_LETTER = 2
FULL_STOP = 2
NOTES = dict(COMMA="1", PERIOD="2", QUESTION="3", UPPER="1", CAP="2", MIX_CASE="3")
WORDS = "hello good morning turn off the music now six seven big river is start water please".split()


def one_hot(index):
    row = numpy.zeros((1, 4), numpy.float32)
    row[0, index] = 1
    return row


def model():
    node = helper.make_node
    # One row for each word: the valid positions without the marks of beginning and end. The other
    # inputs have to be used, so they are added as nothing.
    nodes = [
        node("Reshape", ["valids", "flat"], ["valid"]),
        node("NonZero", ["valid"], ["where"]),
        node("Transpose", ["where"], ["rows"], perm=[1, 0]),
        node("Slice", ["rows", "first", "last", "axis"], ["words"]),
        node("Cast", ["words"], ["numbers"], to=TensorProto.FLOAT),
        node("Mul", ["numbers", "zero"], ["zeros"]),
        node("Cast", ["tokens"], ["tokens_float"], to=TensorProto.FLOAT),
        node("ReduceSum", ["tokens_float"], ["tokens_sum"], keepdims=0),
        node("Mul", ["tokens_sum", "zero"], ["tokens_zero"]),
        node("Cast", ["lengths"], ["lengths_float"], to=TensorProto.FLOAT),
        node("ReduceSum", ["lengths_float"], ["lengths_sum"], keepdims=0),
        node("Mul", ["lengths_sum", "zero"], ["lengths_zero"]),
        node("Add", ["zeros", "case_row"], ["case_rows"]),
        node("Add", ["case_rows", "tokens_zero"], ["case"]),
        node("Add", ["zeros", "mark_row"], ["mark_rows"]),
        node("Add", ["mark_rows", "lengths_zero"], ["marks"]),
    ]
    constants = dict(
        flat=numpy.array([-1], numpy.int64), first=numpy.array([1], numpy.int64),
        last=numpy.array([-1], numpy.int64), axis=numpy.array([0], numpy.int64),
        zero=numpy.array(0, numpy.float32), case_row=one_hot(LARGE_FIRST_LETTER),
        mark_row=one_hot(FULL_STOP))
    value = helper.make_tensor_value_info
    graph = helper.make_graph(
        nodes, "punctuation",
        [value("tokens", TensorProto.INT32, ["N", 200]),
         value("valids", TensorProto.INT32, ["N", 200]),
         value("lengths", TensorProto.INT32, ["N"])],
        [value("case", TensorProto.FLOAT, ["M", 4]), value("marks", TensorProto.FLOAT, ["M", 4])],
        [numpy_helper.from_array(array, name) for name, array in constants.items()])
    result = helper.make_model(graph, opset_imports=[helper.make_opsetid("", 13)])
    result.ir_version = 7
    helper.set_model_props(result, NOTES)
    onnx.checker.check_model(result)
    return result


def main():
    folder = sys.argv[1]
    onnx.save(model(), os.path.join(folder, "punctuation.onnx"))
    pieces = ["<unk>", "<s>", "</s>"] + ["▁" + word for word in WORDS]
    letters = sorted({letter for word in WORDS for letter in word} | {"▁"})
    with open(os.path.join(folder, "punctuation.vocab"), "w", encoding="utf8") as out:
        for index, piece in enumerate(pieces + letters):
            out.write(f"{piece} {-float(index)}\n")


main()
