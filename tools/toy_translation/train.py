#!/usr/bin/env python3
"""Trains the small translation models of the tests: train.py enes|enko FOLDER [MINUTES].

Writes model.floats.bin, model.bin (8-bit), the vocabularies and lex.bin into FOLDER. Needs Debian's
python3-torch and sentencepiece. Five minutes on one core give a model that knows its language.
"""

import math
import random
import struct
import subprocess
import sys
import time
from pathlib import Path

import numpy as np
import torch
import torch.nn.functional as F

import container
import corpus

PAIRS, SEED = 20000, 1
BATCH = 64
FIRST, BEST = 50, 50  # of the shortlist: tokens always allowed, tokens for each source token


def make_vocabulary(path, lines, size):
    text = path.with_suffix(".txt")
    text.write_text("\n".join(lines) + "\n")
    subprocess.run(["spm_train", f"--input={text}", f"--model_prefix={path.with_suffix('')}",
                    f"--vocab_size={size}", "--character_coverage=1", "--hard_vocab_limit=false",
                    "--eos_id=0", "--unk_id=1", "--bos_id=-1", "--pad_id=-1", "--minloglevel=2"],
                   check=True, stderr=subprocess.DEVNULL)
    path.with_suffix(".model").rename(path)
    text.unlink()
    # Products want a multiple of eight tokens; the file may hold fewer than the network.
    count = len(path.with_suffix(".vocab").read_text().split("\n")) - 1
    path.with_suffix(".vocab").unlink()
    return -(-count // 8) * 8


def encode(vocabulary, lines):
    """The tokens of each line and the end token."""
    output = subprocess.run(["spm_encode", f"--model={vocabulary}", "--output_format=id"],
                            input="\n".join(lines), capture_output=True, text=True, check=True)
    return [[int(token) for token in line.split()] + [0] for line in output.stdout.splitlines()]


class Network:
    """The network in the form that trains: whole sentences at once."""

    def __init__(self, sizes):
        self.sizes = sizes
        self.largest = {}  # of the input of each product, once for each batch
        self.parameters = {name: self.start(name, shape).requires_grad_()
                           for name, shape in container.shapes(sizes).items()}
        half = sizes["width"] // 2
        angles = torch.arange(256).float()[:, None] * torch.exp(
            torch.arange(half).float() * -(math.log(10000) / (half - 1)))
        self.positions = torch.cat([torch.sin(angles), torch.cos(angles)], 1)

    @staticmethod
    def start(name, shape):
        if "ln_scale" in name:
            return torch.ones(shape)
        if shape[0] == 1:
            return torch.zeros(shape)
        if "Wemb" in name:
            return torch.randn(shape) / math.sqrt(shape[1])
        limit = math.sqrt(6 / (shape[0] + shape[1]))
        return torch.empty(shape).uniform_(-limit, limit)

    def product(self, x, name, bias=None):
        self.largest.setdefault(name, []).append(x.detach().abs().max().item())
        weights = self.parameters[name]
        y = x @ (weights.t() if "Wemb" in name else weights)
        return y if bias is None else y + self.parameters[bias]

    def norm(self, x, prefix):
        return F.layer_norm(x, (self.sizes["width"],), self.parameters[prefix + "_ln_scale"][0],
                            self.parameters[prefix + "_ln_bias"][0], 1e-6)

    def attention(self, prefix, x, source, mask):
        def heads(y):
            split = y.view(*y.shape[:2], self.sizes["heads"], -1)
            return split.transpose(1, 2)

        q, k, v = (heads(self.product(y, f"{prefix}_W{part}", f"{prefix}_b{part}"))
                   for part, y in (("q", x), ("k", source), ("v", source)))
        weights = torch.softmax(q @ k.transpose(2, 3) / math.sqrt(q.shape[-1]) + mask, -1)
        found = (weights @ v).transpose(1, 2).reshape(x.shape)
        return self.norm(self.product(found, prefix + "_Wo", prefix + "_bo") + x, prefix + "_Wo")

    def feed_forward(self, prefix, x):
        inner = torch.relu(self.product(x, prefix + "_W1", prefix + "_b1"))
        return self.norm(self.product(inner, prefix + "_W2", prefix + "_b2") + x, prefix + "_ffn")

    def recurrent(self, prefix, y):
        new = self.product(y, prefix + "_W")
        keep = torch.sigmoid(self.product(y, prefix + "_Wf", prefix + "_bf"))
        state, states = torch.zeros_like(new[:, 0]), []
        for step in range(new.shape[1]):
            state = keep[:, step] * state + (1 - keep[:, step]) * new[:, step]
            states.append(torch.relu(state))
        return self.norm(torch.stack(states, 1) + y, prefix + "_ffn")

    def scores(self, source, source_mask, target):
        """Of every next token, given the right ones before it."""
        shared, scale = self.sizes["shared"], math.sqrt(self.sizes["width"])
        source_table = self.parameters["Wemb" if shared else "encoder_Wemb"]
        target_name = "Wemb" if shared else "decoder_Wemb"
        mask = (1 - source_mask)[:, None, None, :] * -99999999.0
        x = source_table[source] * scale + self.positions[:source.shape[1]]
        for layer in range(1, self.sizes["encoder"] + 1):
            x = self.attention(f"encoder_l{layer}_self", x, x, mask)
            x = self.feed_forward(f"encoder_l{layer}_ffn", x)
        y = self.parameters[target_name][target] * scale
        y = torch.cat([torch.zeros_like(y[:, :1]), y[:, :-1]], 1) + self.positions[:target.shape[1]]
        for layer in range(1, self.sizes["decoder"] + 1):
            y = self.recurrent(f"decoder_l{layer}_rnn", y)
            y = self.attention(f"decoder_l{layer}_context", y, x, mask)
            y = self.feed_forward(f"decoder_l{layer}_ffn", y)
        return self.product(y, target_name, "decoder_ff_logit_out_b")


def padded(rows):
    longest = max(map(len, rows))
    tokens = torch.zeros(len(rows), longest, dtype=torch.long)
    mask = torch.zeros(len(rows), longest)
    for i, row in enumerate(rows):
        tokens[i, :len(row)] = torch.tensor(row)
        mask[i, :len(row)] = 1
    return tokens, mask


def train(network, source, target, minutes):
    optimizer = torch.optim.Adam(network.parameters.values(), lr=1e-3, betas=(0.9, 0.98))
    order = sorted(range(len(source)), key=lambda i: (len(target[i]), len(source[i]), random.random()))
    batches = [order[i:i + BATCH] for i in range(0, len(order), BATCH)]
    start, step = time.time(), 0
    while (done := (time.time() - start) / (minutes * 60)) < 1:
        batch = random.choice(batches)
        tokens, mask = padded([source[i] for i in batch])
        wanted, wanted_mask = padded([target[i] for i in batch])
        for group in optimizer.param_groups:
            group["lr"] = 2e-3 * min(1, (step + 1) / 100) * max(0.03, 1 - done)
        network.largest.clear()
        losses = F.cross_entropy(network.scores(tokens, mask, wanted).flatten(0, 1),
                                 wanted.flatten(), reduction="none")
        loss = (losses * wanted_mask.flatten()).sum() / wanted_mask.sum()
        optimizer.zero_grad()
        loss.backward()
        torch.nn.utils.clip_grad_norm_(list(network.parameters.values()), 1.0)
        optimizer.step()
        step += 1
        if step % 100 == 0:
            print(f"step {step}, loss {loss.item():.4f}", flush=True)


def input_scales(network, source, target):
    """So that nearly all inputs of a product fit into 8 bits."""
    network.largest.clear()
    with torch.no_grad():
        for i in range(0, min(len(source), 640), BATCH):
            tokens, mask = padded(source[i:i + BATCH])
            network.scores(tokens, mask, padded(target[i:i + BATCH])[0])
    return {name: 127 / (np.mean(values) + 1.1 * np.std(values))
            for name, values in network.largest.items()}


def write_shortlist(path, source, target, sizes):
    together = np.zeros((sizes["source"], sizes["target"]))
    for a, b in zip(source, target):
        together[np.ix_(sorted(set(a)), sorted(set(b)))] += 1
    seen_source = np.array([sum(s in row for row in map(set, source)) for s in range(sizes["source"])])
    seen_target = np.array([sum(t in row for row in map(set, target)) for t in range(sizes["target"])])
    score = together ** 2 / np.maximum(1, np.outer(seen_source, seen_target))
    offsets, tokens = [0], []
    for row in score:
        tokens += sorted(int(t) for t in np.argsort(-row)[:BEST] if row[t] > 0)
        offsets.append(len(tokens))
    # No reader checks the sum, which would stand second.
    path.write_bytes(struct.pack("<6Q", 0xF11A48D5013417F5, 0, FIRST, BEST, len(offsets), len(tokens))
                     + np.array(offsets, "<u8").tobytes() + np.array(tokens, "<u4").tobytes())


def main():
    pair, folder = sys.argv[1], Path(sys.argv[2])
    minutes = float(sys.argv[3]) if len(sys.argv) > 3 else 5
    torch.manual_seed(3)
    random.seed(3)
    torch.set_num_threads(1)
    folder.mkdir(parents=True, exist_ok=True)
    lines = corpus.corpus(SEED, PAIRS)
    english, other = [l[0] for l in lines], [l[1 if pair == "enes" else 2] for l in lines]
    sizes = {"width": 128, "inner": 256, "encoder": 2, "decoder": 2, "heads": 8,
             "shared": pair == "enes"}
    if sizes["shared"]:
        vocabularies = [folder / "vocab.spm"] * 2
        sizes["source"] = sizes["target"] = make_vocabulary(vocabularies[0], english + other, 600)
    else:
        vocabularies = [folder / "srcvocab.spm", folder / "trgvocab.spm"]
        sizes["source"] = make_vocabulary(vocabularies[0], english, 400)
        sizes["target"] = make_vocabulary(vocabularies[1], other, 424)
    source, target = encode(vocabularies[0], english), encode(vocabularies[1], other)

    network = Network(sizes)
    train(network, source, target, minutes)
    arrays = {name: values.detach().numpy() for name, values in network.parameters.items()}
    text = container.configuration(sizes)
    container.write(folder / "model.floats.bin", arrays, text)
    container.write(folder / "model.bin", arrays, text, input_scales(network, source, target))
    write_shortlist(folder / "lex.bin", source[:4000], target[:4000], sizes)


if __name__ == "__main__":
    main()
