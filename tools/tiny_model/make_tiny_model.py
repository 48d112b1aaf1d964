#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Make a tiny, real streaming recogniser for tests, from synthetic speech only.

Needs (Debian 12): python3-torch python3-numpy python3-onnx flite espeak-ng
Usage: make_tiny_model.py OUTDIR [--utts 5000] [--minutes 9.5] [--seed 7]
       make_tiny_model.py OUTDIR --export-only      (re-export from OUTDIR/net.pt)
Writes OUTDIR/{tokens.txt, nemo-ctc*.onnx, lstm-*.onnx, zipformer2-*.onnx, heldout/*.wav, heldout/list.txt}
"""
import os
# one thread: with 2 the OpenMP/OpenBLAS workers of Debian's torch spin against each other (25 instead of 1200 s of audio per second)
for _k in ("OMP_NUM_THREADS", "OPENBLAS_NUM_THREADS"):
    os.environ[_k] = "1"
os.environ["OMP_WAIT_POLICY"] = "passive"
import argparse, random, subprocess, time, wave
import numpy as np
from concurrent.futures import ThreadPoolExecutor

# ------------------------------------------------------------------ vocabulary
NOUN = "window door light music book water table garden river city".split()
ADJ = "red green blue small big new old".split()
NUM = "one two three four five six seven eight nine ten".split()
VERB = "open close start stop show bring write play".split()   # no homophones in the list (red/read)
PRON = "we you they".split()
TIME = "now today tomorrow".split()
OTHER = "the a please hello good morning evening turn on off in and is are".split()
VOCAB = sorted(set(NOUN + ADJ + NUM + VERB + PRON + TIME + OTHER))

HELDOUT = """hello good morning please open the window
turn off the music now
the small garden is in the city
they bring a new book today
we close the red door tomorrow
please write one two three
show seven green light and four blue table
you play music in the evening
start the water now please
the old river is big
good evening we are in the garden
five six nine ten eight
turn on the light and bring the book
stop the music and close the window
tomorrow they open a new door
hello are you in the old city
please show the big table now
nine red and three green book
write the book today and play tomorrow
the blue water is in the small river""".split("\n")


def words_to_pieces(word):
    """BPE-like: chunks of at most 3 letters, the first one carries the word mark."""
    n = len(word)
    k = (n + 2) // 3
    cut = [round(i * n / k) for i in range(k + 1)]
    out = [word[cut[i]:cut[i + 1]] for i in range(k)]
    out[0] = "\u2581" + out[0]
    return out


def build_tokens():
    pieces = sorted({p for w in VOCAB for p in words_to_pieces(w)})
    return pieces + ["<blk>"]  # CTC of the NeMo layout: blank is the last id


def np_(rng):
    s = []
    s.append(rng.choice(["the", "a", rng.choice(NUM)]))
    if rng.random() < 0.5:
        s.append(rng.choice(ADJ))
    s.append(rng.choice(NOUN))
    return s


def sentence(rng):
    r = rng.random()
    if r < 0.30:
        return [rng.choice(VOCAB) for _ in range(rng.randint(2, 7))]
    if r < 0.40:
        return [rng.choice(NUM) for _ in range(rng.randint(2, 6))]
    if r < 0.55:
        s = ["turn", rng.choice(["on", "off"])] + np_(rng)
    elif r < 0.70:
        s = [rng.choice(PRON), rng.choice(VERB)] + np_(rng)
    elif r < 0.80:
        s = np_(rng) + ["is", rng.choice(ADJ + ["in the " + rng.choice(NOUN), rng.choice(["on", "off"])])]
    elif r < 0.90:
        s = [rng.choice(VERB)] + np_(rng)
    else:
        s = [rng.choice(["hello", "good morning", "good evening"])] + [rng.choice(PRON), "are", rng.choice(["in the " + rng.choice(NOUN), rng.choice(ADJ), rng.choice(["on", "off"])])]
    if rng.random() < 0.25:
        s = ["please"] + s
    if rng.random() < 0.25:
        s = s + [rng.choice(TIME)]
    if rng.random() < 0.15:
        s = s + ["and", rng.choice(VERB)] + np_(rng)
    return " ".join(s).split()


# ------------------------------------------------------------------ synthesis
VOICES = ["flite:slt", "flite:rms", "flite:kal16", "flite:awb",
          "espeak:en-us", "espeak:en-us+f3", "espeak:en-gb"]


def read_wav(path):
    with wave.open(path) as w:
        assert w.getnchannels() == 1 and w.getsampwidth() == 2
        x = np.frombuffer(w.readframes(w.getnframes()), dtype="<i2").astype(np.float32) / 32768
        return x, w.getframerate()


def write_wav(path, x, rate=16000):
    with wave.open(path, "wb") as w:
        w.setnchannels(1); w.setsampwidth(2); w.setframerate(rate)
        w.writeframes((np.clip(x, -1, 1) * 32767).astype("<i2").tobytes())


def resample(x, a, b=16000):
    if a == b:
        return x
    n = int(len(x) * b / a)
    half = 16
    cut = 0.95 * min(1.0, b / a)
    t = np.arange(n) * (a / b)
    i0 = np.floor(t).astype(int)
    out = np.zeros(n, np.float64)
    for k in range(-half + 1, half + 1):
        d = t - (i0 + k)
        win = 0.5 + 0.5 * np.cos(np.pi * d / half)
        idx = i0 + k
        ok = (idx >= 0) & (idx < len(x))
        out += np.where(ok, x[np.clip(idx, 0, len(x) - 1)], 0) * cut * np.sinc(cut * d) * win
    return out.astype(np.float32)


def synth(text, voice, speed, path):
    kind, name = voice.split(":")
    if kind == "flite":
        cmd = ["flite", "-voice", name, "--setf", "duration_stretch=%.3f" % (1 / speed), "-t", text, "-o", path]
    else:
        cmd = ["espeak-ng", "-v", name, "-s", str(int(160 * speed)), "-w", path, text]
    subprocess.run(cmd, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    x, r = read_wav(path)
    os.unlink(path)
    x = resample(x, r)
    p = np.abs(x).max()
    return x * (0.5 / p) if p > 0 else x


# ------------------------------------------------------------------ features
def mel(f):
    return 1127.0 * np.log(1.0 + f / 700.0)


class Fbank:
    """80 log-mel, kaldi recipe, 16 kHz, samples in [-1,1], no dither, edges kept."""

    def __init__(self, dim=80, lo=20.0, hi=7600.0, rate=16000):
        self.win, self.hop, self.nfft = 400, 160, 512
        self.w = np.power(0.5 - 0.5 * np.cos(2 * np.pi * np.arange(400) / 399), 0.85)
        f = mel(np.arange(self.nfft // 2) * rate / self.nfft)
        a, b = mel(lo), mel(hi)
        d = (b - a) / (dim + 1)
        m = np.zeros((dim, self.nfft // 2))
        for i in range(dim):
            l, c, r = a + i * d, a + (i + 1) * d, a + (i + 2) * d
            m[i] = np.where((f > l) & (f < r), np.where(f <= c, (f - l) / (c - l), (r - f) / (r - c)), 0)
        self.m = m.T

    def __call__(self, x):
        n = (len(x) + self.hop // 2) // self.hop
        idx = (np.arange(n) * self.hop + self.hop // 2 - self.win // 2)[:, None] + np.arange(self.win)
        idx = np.where(idx < 0, -idx - 1, idx)
        idx = np.where(idx >= len(x), 2 * len(x) - 1 - idx, idx)
        fr = x[idx].astype(np.float64)
        fr -= fr.mean(1, keepdims=True)
        fr = fr - 0.97 * np.concatenate([fr[:, :1], fr[:, :-1]], 1)
        sp = np.abs(np.fft.rfft(fr * self.w, self.nfft)) ** 2
        e = sp[:, :self.nfft // 2] @ self.m
        return np.log(np.maximum(e, 1.1920929e-07)).astype(np.float32)


# ------------------------------------------------------------------ data
def make_data(out, utts, seed):
    rng = random.Random(seed)
    held = set(HELDOUT)
    sents = []
    while len(sents) < utts:
        s = " ".join(sentence(rng))
        if s not in held:
            sents.append(s)
    jobs = [(i, s, VOICES[i % len(VOICES)], rng.uniform(0.85, 1.2)) for i, s in enumerate(sents)]
    tmp = os.path.join(out, "tmp"); os.makedirs(tmp, exist_ok=True)
    cache = os.path.join(out, "synth-%d-%d.npz" % (utts, seed))
    if os.path.exists(cache):
        z = np.load(cache); x, o = z["x"], np.cumsum([0] + list(z["n"]))
        return sents, [x[o[i]:o[i + 1]].astype(np.float32) / 32768 for i in range(len(sents))]
    with ThreadPoolExecutor(2) as ex:
        wavs = list(ex.map(lambda j: synth(j[1], j[2], j[3], os.path.join(tmp, "%d.wav" % j[0])), jobs))
    np.savez(cache, x=np.concatenate([(w * 32767).astype(np.int16) for w in wavs]), n=np.array([len(w) for w in wavs]))
    return sents, wavs


def augment(x, nrng):
    g = 10 ** (nrng.uniform(-22, 3) / 20)
    x = x * g
    if nrng.random() < 0.7:
        x = x + nrng.standard_normal(len(x)) * 10 ** (nrng.uniform(-85, -50) / 20)
    return np.clip(x, -1, 1).astype(np.float32)


def silence(nrng, a, b):
    return np.zeros(int(16000 * nrng.uniform(a, b)), np.float32)


# ------------------------------------------------------------------ model
HID, STEPS = 120, 8                       # STEPS output steps of 40 ms in one chunk
DIL = (1, 2, 4, 1, 2, 4)                  # causal residual convolutions, kernel 3
CTX = 2 * sum(DIL)                        # frames of history kept between chunks
WINDOW, SHIFT = 4 * (STEPS - 1) + 9, 4 * STEPS


def make_net(vocab):
    import torch
    from torch import nn

    class Net(nn.Module):
        def __init__(self):
            super().__init__()
            self.register_buffer("mean", torch.zeros(80, 1))
            self.register_buffer("istd", torch.ones(80, 1))
            self.c1, self.b1 = nn.Conv1d(80, 96, 5, 2), nn.BatchNorm1d(96)
            self.c2, self.b2 = nn.Conv1d(96, HID, 3, 2), nn.BatchNorm1d(HID)
            self.cv = nn.ModuleList(nn.Conv1d(HID, HID, 3, dilation=d) for d in DIL)
            self.bn = nn.ModuleList(nn.BatchNorm1d(HID) for _ in DIL)
            self.out = nn.Conv1d(HID, vocab, 1)
            self.drop = nn.Dropout(0.15)

        def forward(self, x, cache):               # x: B,80,T   cache: B,CTX,HID
            x = (x - self.mean) * self.istd
            x = torch.relu(self.b1(self.c1(x)))
            x = torch.relu(self.b2(self.c2(x)))
            o, keep = 0, []
            for d, cv, bn in zip(DIL, self.cv, self.bn):
                y = torch.cat([cache[:, o:o + 2 * d].transpose(1, 2), x], 2)
                keep.append(y[:, :, -2 * d:].transpose(1, 2)); o += 2 * d
                x = x + self.drop(torch.relu(bn(cv(y))))
            return self.out(x).transpose(1, 2).log_softmax(-1), torch.cat(keep, 1)
    return Net()


def train(out, utts, minutes, seed):
    import torch
    torch.manual_seed(seed); torch.set_num_threads(1)
    nrng = np.random.default_rng(seed)
    toks = build_tokens(); tid = {t: i for i, t in enumerate(toks)}; blank = len(toks) - 1
    t0 = time.time()
    sents, wavs = make_data(out, utts, seed)
    print("synth %.0f s, %d utts, %.1f min audio, vocab %d words, %d tokens" % (
        time.time() - t0, len(sents), sum(map(len, wavs)) / 960000, len(VOCAB), len(toks)), flush=True)
    ids = [[tid[p] for w in s.split() for p in words_to_pieces(w)] for s in sents]
    fb = Fbank()
    t0 = time.time()

    def build(k):   # one example: k utterances with pauses, augmented
        parts, y = [silence(nrng, 0.05, 0.8)], []
        for _ in range(k):
            i = int(nrng.integers(len(sents)))
            parts += [wavs[i], silence(nrng, 0.15, 1.5)]; y += ids[i]
        parts.append(silence(nrng, 0.2, 0.8))
        return fb(augment(np.concatenate(parts), nrng)), y

    data = []
    order = nrng.permutation(len(sents))
    for i in order:   # every utterance once on its own
        x = np.concatenate([silence(nrng, 0.05, 0.5), wavs[i], silence(nrng, 0.3, 0.6)])
        data.append((fb(augment(x, nrng)), ids[i]))
    for _ in range(len(sents) // 6):
        data.append(build(int(nrng.integers(2, 4))))
    for _ in range(30):   # silence and noise only
        data.append((fb(augment(silence(nrng, 2, 8), nrng)), []))
    allf = np.concatenate([d[0] for d in data[:400]])
    print("features %.0f s" % (time.time() - t0), flush=True)
    net = make_net(len(toks))
    net.mean.copy_(torch.from_numpy(allf.mean(0))[:, None])
    net.istd.copy_(torch.from_numpy(1 / allf.std(0))[:, None])
    data.sort(key=lambda d: len(d[0]))
    nb = 16
    batches = [data[i:i + nb] for i in range(0, len(data), nb)]
    batches = [b for b in batches if any(s for _, s in b)]
    total = max(1, int(minutes * 60)); t0 = time.time(); ep = 0
    opt = torch.optim.Adam(net.parameters(), 2e-3)
    ema = {k: v.clone() for k, v in net.state_dict().items()}   # running mean of the weights: better than the last ones
    net.train()
    while time.time() - t0 < total:
        ep += 1; tot = 0.0
        for bi in (range(len(batches)) if ep <= 2 else nrng.permutation(len(batches))):   # short ones first at the start
            frac = min(1.0, (time.time() - t0) / total)
            lr = 3e-3 * (1 - frac) + 3e-5
            if ep == 1: lr = 1e-3
            for g in opt.param_groups: g["lr"] = lr
            b = batches[bi]
            T = max(len(f) for f, _ in b)
            x = np.zeros((len(b), 80, T), np.float32)
            cut = []
            for j, (f, _) in enumerate(b):   # new level, noise floor and frame phase every time
                k = int(nrng.integers(0, 4)); cut.append(k)
                tilt = np.linspace(0, nrng.uniform(-3, 3), 80, dtype=np.float32)
                f = np.logaddexp(f[k:] + np.float32(nrng.uniform(-2, 1)), np.float32(nrng.uniform(-22, -9)) + tilt)
                x[j, :, :len(f)] = f.T; x[j, :, len(f):] = f[-1][:, None]
            x = torch.from_numpy(x)
            # spectrogram masking, light
            for j in range(len(b)):
                for _ in range(2):
                    a = int(nrng.integers(0, 70)); x[j, a:a + int(nrng.integers(0, 9))] = net.mean[a:a + 1]
            lp, _ = net(x, torch.zeros(len(b), CTX, HID))
            tl = torch.tensor([(len(f) - k - 9) // 4 + 1 for (f, _), k in zip(b, cut)])
            y = torch.tensor([t for _, s in b for t in s], dtype=torch.long)
            yl = torch.tensor([len(s) for _, s in b])
            loss = torch.nn.functional.ctc_loss(lp.transpose(0, 1), y, tl, yl, blank=blank, reduction="sum", zero_infinity=True) / len(b)
            opt.zero_grad(); loss.backward()
            torch.nn.utils.clip_grad_norm_(net.parameters(), 5.0); opt.step()
            tot += loss.item()
            d = 0.0 if ep < 3 else 0.998
            with torch.no_grad():
                for k, v in net.state_dict().items():
                    if v.dtype.is_floating_point: ema[k].mul_(d).add_(v, alpha=1 - d)
                    else: ema[k].copy_(v)
            if time.time() - t0 > total: break
        print("epoch %d  loss %.3f  %.0f s" % (ep, tot / len(batches), time.time() - t0), flush=True)
    net.load_state_dict(ema)
    net.eval()
    torch.save(net.state_dict(), os.path.join(out, "net.pt"))
    return net, toks


def greedy(net, toks, f):
    import torch
    with torch.no_grad():
        p = net(torch.from_numpy(f.T[None]), torch.zeros(1, CTX, HID))[0][0].argmax(-1).tolist()
    blank = len(toks) - 1
    s, last = "", blank
    for t in p:
        if t != blank and t != last: s += toks[t]
        last = t
    return s.replace("\u2581", " ").strip()


def edit(a, b):
    d = list(range(len(b) + 1))
    for i, x in enumerate(a, 1):
        e, d[0] = d[0], i
        for j, y in enumerate(b, 1):
            e, d[j] = d[j], min(d[j] + 1, d[j - 1] + 1, e + (x != y))
    return d[-1]


def heldout(out, net, toks):
    hd = os.path.join(out, "heldout"); os.makedirs(hd, exist_ok=True)
    fb = Fbank(); err = n = bad = 0; lines = []
    for i, s in enumerate(HELDOUT):
        v = VOICES[i % len(VOICES)]
        x = synth(s, v, 1.0, os.path.join(hd, "t.wav"))
        x = np.concatenate([np.zeros(4800, np.float32), x, np.zeros(12800, np.float32)])
        p = os.path.join(hd, "h%02d.wav" % i); write_wav(p, x)
        lines.append("%s\t%s\t%s" % (os.path.basename(p), v, s))
        if net is not None:
            x, _ = read_wav(p)
            g = greedy(net, toks, fb(x)); e = edit(s.split(), g.split())
            err += e; n += len(s.split()); bad += e > 0
            if e: print("  ", v, "|", s, "|", g)
    open(os.path.join(hd, "list.txt"), "w").write("\n".join(lines) + "\n")
    if net is not None:
        print("torch greedy on held-out: WER %.2f%% (%d/%d words), %d/%d sentences wrong" % (100 * err / n, err, n, bad, len(HELDOUT)), flush=True)


# ------------------------------------------------------------------ export
def export(out, net, toks):
    import torch, onnx
    from torch import nn
    V = len(toks); blank = V - 1

    def blank_first(lp):
        return torch.cat([lp[..., V - 1:], lp[..., :V - 1]], -1)

    class Nemo(nn.Module):      # the history rides in cache_last_channel; cache_last_time is passed through
        def __init__(s, n): super().__init__(); s.n = n
        def forward(s, audio_signal, length, cache_last_channel, cache_last_time, cache_last_channel_len):
            lp, k = s.n(audio_signal, cache_last_channel.squeeze(1))
            n = length * 0 + STEPS
            return lp, n, k.unsqueeze(1), cache_last_time * 1.0, cache_last_channel_len + n

    class Lstm(nn.Module):      # h carries the history (CTX,N,HID), c is passed through
        def __init__(s, n): super().__init__(); s.n = n
        def forward(s, x, h, c):
            lp, k = s.n(x.transpose(1, 2), h.transpose(0, 1))
            return blank_first(lp), k.transpose(0, 1), c * 1.0

    class Zip2(nn.Module):      # zipformer2 state layout of one layer; the history rides in cached_key
        def __init__(s, n): super().__init__(); s.n = n
        def forward(s, x, k, na, v1, v2, c1, c2, emb, proc):
            lp, q = s.n(x.transpose(1, 2), k.transpose(0, 1))
            return blank_first(lp), q.transpose(0, 1), na * 1.0, v1 * 1.0, v2 * 1.0, c1 * 1.0, c2 * 1.0, emb * 1.0, proc + STEPS

    class Dec(nn.Module):       # one-hot of the last token, none for blank
        def __init__(s):
            super().__init__(); e = torch.eye(V); e[0, 0] = 0; s.register_buffer("e", e)
        def forward(s, y): return torch.nn.functional.embedding(y[:, 1], s.e)

    class Join(nn.Module):      # CTC collapse as a transducer: mass of the token emitted last goes to blank
        def forward(s, encoder_out, decoder_out):
            p = encoder_out.exp()
            m = (p * decoder_out).sum(-1, keepdim=True)
            q = p * (1 - decoder_out)
            return torch.cat([q[..., :1] + m, q[..., 1:]], -1).clamp(min=1e-20).log()

    def ex(mod, args, name, ins, outs, meta, dyn):
        p = os.path.join(out, name)
        mod.eval()
        torch.onnx.export(mod, args, p, input_names=ins, output_names=outs, dynamic_axes=dyn, opset_version=13)
        m = onnx.load(p)
        for k, v in meta.items():
            e = m.metadata_props.add(); e.key, e.value = k, str(v)
        onnx.save(m, p)
        shrink(m, p.replace(".onnx", ".int8.onnx"))
        print("  %-28s %7d bytes,  int8 weights %7d" % (name, os.path.getsize(p), os.path.getsize(p.replace(".onnx", ".int8.onnx"))))

    def shrink(m, path):
        """weights as int8 + scale per tensor row block, dequantised when the model is loaded"""
        from onnx import helper, numpy_helper
        g = m.graph; keep, add, nodes = [], [], []
        for t in g.initializer:
            a = numpy_helper.to_array(t)
            if a.dtype == np.float32 and a.size >= 2048:
                ax = 1 if a.ndim == 3 and a.shape[0] == 1 else 0
                red = tuple(i for i in range(a.ndim) if i != ax)
                sc = np.maximum(np.abs(a).max(red), 1e-8).astype(np.float32) / 127
                sh = [1] * a.ndim; sh[ax] = -1
                q = np.clip(np.round(a / sc.reshape(sh)), -127, 127).astype(np.int8)
                add += [numpy_helper.from_array(q, t.name + "_q"), numpy_helper.from_array(sc, t.name + "_s"),
                        numpy_helper.from_array(np.zeros(sc.shape, np.int8), t.name + "_z")]
                nodes.append(helper.make_node("DequantizeLinear", [t.name + "_q", t.name + "_s", t.name + "_z"], [t.name], axis=ax))
            else:
                keep.append(t)
        m2 = onnx.ModelProto(); m2.CopyFrom(m); g2 = m2.graph
        del g2.initializer[:]; g2.initializer.extend(keep + add)
        old = list(g2.node); del g2.node[:]; g2.node.extend(nodes + old)
        onnx.save(m2, path)

    B = 2   # trace with two, so that nothing is specialised to one
    ln = torch.zeros(B, dtype=torch.int64)
    x = torch.zeros(B, WINDOW, 80)
    ins = ["audio_signal", "length", "cache_last_channel", "cache_last_time", "cache_last_channel_len"]
    outs = ["logprobs", "encoded_lengths", "cache_last_channel_next", "cache_last_time_next", "cache_last_channel_next_len"]
    ex(Nemo(net), (x.transpose(1, 2), ln + WINDOW, torch.zeros(B, 1, CTX, HID), torch.zeros(B, 1, 1, 1), ln), "nemo-ctc.onnx", ins, outs,
       dict(window_size=WINDOW, chunk_shift=SHIFT, subsampling_factor=4, vocab_size=V - 1,
            cache_last_channel_dim1=1, cache_last_channel_dim2=CTX, cache_last_channel_dim3=HID,
            cache_last_time_dim1=1, cache_last_time_dim2=1, cache_last_time_dim3=1,
            model_type="EncDecCTCModelBPE", comment="tiny synthetic test model"),
       {n: {0: "N"} for n in ins + outs})
    ex(Lstm(net), (x, torch.zeros(CTX, B, HID), torch.zeros(CTX, B, 1)), "lstm-encoder.onnx", ["x", "h", "c"], ["encoder_out", "next_h", "next_c"],
       dict(model_type="lstm", version="1", T=WINDOW, decode_chunk_len=SHIFT, num_encoder_layers=CTX, rnn_hidden_size=1, d_model=HID),
       {"x": {0: "N"}, "h": {1: "N"}, "c": {1: "N"}, "encoder_out": {0: "N"}, "next_h": {1: "N"}, "next_c": {1: "N"}})
    ex(Dec(), (torch.zeros(B, 2, dtype=torch.int64),), "decoder.onnx", ["y"], ["decoder_out"],
       dict(vocab_size=V, context_size=2), {"y": {0: "N"}, "decoder_out": {0: "N"}})
    ex(Join(), (torch.zeros(B, V), torch.zeros(B, V)), "joiner.onnx", ["encoder_out", "decoder_out"], ["logit"],
       dict(joiner_dim=V), {"encoder_out": {0: "N"}, "decoder_out": {0: "N"}, "logit": {0: "N"}})
    D, HEADS, KER = 4, 4, 4
    st = [torch.zeros(CTX, B, HID), torch.zeros(1, B, CTX, 3 * D // 4), torch.zeros(CTX, B, HEADS), torch.zeros(CTX, B, HEADS),
          torch.zeros(B, D, KER // 2), torch.zeros(B, D, KER // 2), torch.zeros(B, 128, 3, 19), ln]
    nm = ["cached_key_0", "cached_nonlin_attn_0", "cached_val1_0", "cached_val2_0", "cached_conv1_0", "cached_conv2_0", "embed_states", "processed_lens"]
    ax = [1, 1, 1, 1, 0, 0, 0, 0]
    meta = dict(model_type="zipformer2", version="1", T=WINDOW, decode_chunk_len=SHIFT, num_encoder_layers="1", encoder_dims=D, cnn_module_kernels=KER,
                left_context_len=CTX, query_head_dims=HID // HEADS, value_head_dims=1, num_heads=HEADS)
    dyn = {"x": {0: "N"}}
    for n, a in zip(nm, ax): dyn[n] = {a: "N"}; dyn["new_" + n] = {a: "N"}
    ex(Zip2(net), (x, *st), "zipformer2-encoder.onnx", ["x"] + nm, ["encoder_out"] + ["new_" + n for n in nm], meta, {**dyn, "encoder_out": {0: "N"}})
    ex(Zip2(net), (x, *st), "zipformer2-ctc.onnx", ["x"] + nm, ["log_probs"] + ["new_" + n for n in nm], meta, {**dyn, "log_probs": {0: "N"}})
    with open(os.path.join(out, "tokens.txt"), "w") as f:          # nemo layout: blank last
        f.writelines("%s %d\n" % (t, i) for i, t in enumerate(toks))
    with open(os.path.join(out, "tokens-blank0.txt"), "w") as f:   # icefall layout: blank first
        f.writelines("%s %d\n" % (t, i) for i, t in enumerate([toks[-1]] + toks[:-1]))


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("out"); ap.add_argument("--utts", type=int, default=5000); ap.add_argument("--minutes", type=float, default=9.5)
    ap.add_argument("--seed", type=int, default=7); ap.add_argument("--export-only", action="store_true")
    a = ap.parse_args(); os.makedirs(a.out, exist_ok=True)
    if a.export_only:
        import torch
        toks = build_tokens(); net = make_net(len(toks)); net.load_state_dict(torch.load(os.path.join(a.out, "net.pt"))); net.eval()
    else:
        net, toks = train(a.out, a.utts, a.minutes, a.seed)
    heldout(a.out, net, toks)
    export(a.out, net, toks)


if __name__ == "__main__":
    main()
