# SPDX-License-Identifier: GPL-3.0-or-later
"""Embedding, a convolution, a bidirectional LSTM and two heads."""
import torch

PIECES, WIDTH, HIDDEN = 8000, 128, 128
PAUSES = 2  # pieces that follow the others: a short pause, a long pause


class Model(torch.nn.Module):
    def __init__(self, pieces=PIECES + PAUSES, width=WIDTH, hidden=HIDDEN):
        super().__init__()
        self.embedding = torch.nn.Embedding(pieces, width)
        torch.nn.init.normal_(self.embedding.weight, std=0.1)
        self.convolution = torch.nn.Conv1d(width, width, 5, padding=2)
        self.lstm = torch.nn.LSTM(width, hidden, batch_first=True, bidirectional=True)
        self.case = torch.nn.Linear(2 * hidden, 4)
        self.mark = torch.nn.Linear(2 * hidden, 4)
        self.dropout = torch.nn.Dropout(0.1)

    def forward(self, tokens, where):
        """`where`: the place of each word's first piece in the flattened tokens."""
        x = self.dropout(self.embedding(tokens))
        x = x + torch.relu(self.convolution(x.transpose(1, 2))).transpose(1, 2)
        x, _ = self.lstm(x)
        x = self.dropout(x.reshape(-1, x.shape[-1])[where])
        return self.case(x), self.mark(x)
