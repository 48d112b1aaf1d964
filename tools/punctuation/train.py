#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Trains the model (needs python3-torch). Writes a checkpoint each minute, from which a later call
goes on. The exported weights are the running mean of the trained ones."""
import argparse
import os
import time

# The products are small: more threads of the BLAS only wait for each other (2.7 times slower).
os.environ.setdefault("OPENBLAS_NUM_THREADS", "1")

import numpy
import torch

from model import Model
from windows import IGNORED, Windows

MEAN = 0.999  # of each step, of the running mean


def save(path, **state):
    torch.save(state, path + ".new")
    os.replace(path + ".new", path)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("data", help="the folder that prepare.py wrote")
    parser.add_argument("checkpoint", help="written each minute; where it exists, training goes on")
    parser.add_argument("--minutes", type=float, required=True)
    parser.add_argument("--rate", type=float, default=3e-3, help="the highest learning rate")
    parser.add_argument("--told", type=float, default=0.75, help="share of windows with pauses")
    parser.add_argument("--batch", type=int, default=96)
    arguments = parser.parse_args()
    torch.set_num_threads(1)
    torch.manual_seed(1)
    model, mean, step, seen = Model(), Model(), 0, 0
    optimizer = torch.optim.Adam(model.parameters(), lr=arguments.rate, betas=(0.9, 0.98))
    if os.path.exists(arguments.checkpoint):
        state = torch.load(arguments.checkpoint)
        model.load_state_dict(state["model"])
        mean.load_state_dict(state["mean"])
        optimizer.load_state_dict(state["optimizer"])
        step, seen = state["step"], state["words"]
    else:
        mean.load_state_dict(model.state_dict())
    random = numpy.random.default_rng(step + 1)
    data = Windows(arguments.data, "train", random, 0.06, arguments.told)
    print("parameters", sum(p.numel() for p in model.parameters()), "words", len(data.words),
          "go on at step", step, flush=True)
    batches = data.batches(arguments.batch)
    loss_of = torch.nn.CrossEntropyLoss(ignore_index=IGNORED)
    start = shown = time.time()
    before, losses, first = seen, [], step
    while (spent := (time.time() - start) / 60) < arguments.minutes:
        rate = arguments.rate * min(1, (step - first + 1) / 200) * \
            max(0.02, 1 - spent / arguments.minutes)
        for group in optimizer.param_groups:
            group["lr"] = rate
        tokens, where, cases, marks = map(torch.from_numpy, next(batches))
        case_scores, mark_scores = model(tokens, where)
        loss = loss_of(mark_scores, marks) + 0.5 * loss_of(case_scores, cases)
        optimizer.zero_grad(set_to_none=True)
        loss.backward()
        torch.nn.utils.clip_grad_norm_(model.parameters(), 1.0)
        optimizer.step()
        step += 1
        seen += len(marks)
        losses.append(loss.item())
        keep = min(MEAN, (step + 1) / (step + 10))
        with torch.no_grad():
            for kept, new in zip(mean.parameters(), model.parameters()):
                kept.lerp_(new, 1 - keep)
        if time.time() - shown > 60 or spent + 0.01 > arguments.minutes:
            print(f"{time.strftime('%H:%M')} step {step}, {seen / 1e6:.2f} M words, "
                  f"{(seen - before) / (time.time() - shown):.0f} words/s, "
                  f"loss {numpy.mean(losses):.4f}", flush=True)
            save(arguments.checkpoint, model=model.state_dict(), mean=mean.state_dict(),
                 optimizer=optimizer.state_dict(), step=step, words=seen)
            shown, before, losses = time.time(), seen, []


if __name__ == "__main__":
    main()
