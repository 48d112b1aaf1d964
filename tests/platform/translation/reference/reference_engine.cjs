// Translates lines with the reference engine, which runs as WebAssembly.
//
// usage: node reference_engine.cjs PACKAGE MODEL SHORTLIST|- PRECISION SOURCE_VOCABULARY
//        [TARGET_VOCABULARY] < sentences > translations
//
// One line is one sentence. With REPEAT=n in the environment every sentence is translated n times
// and the mean over the sentences of each one's best time goes to stderr: "ms-per-sentence 12.3".
// LENGTH_FACTOR limits the translation's length (2.0).
'use strict';
const fs = require('fs');
const path = require('path');

const [packageFolder, model, shortlist, precision, ...vocabularies] = process.argv.slice(2);
const worker = path.join(packageFolder, 'worker');
const repeat = Number(process.env.REPEAT || 0);

// The integer products are imported from the browser where it has them; elsewhere the module's own
// serve.
const products = {
  int8_prepare_a: 'int8PrepareAFallback',
  int8_prepare_b: 'int8PrepareBFallback',
  int8_prepare_b_from_transposed: 'int8PrepareBFromTransposedFallback',
  int8_prepare_b_from_quantized_transposed: 'int8PrepareBFromQuantizedTransposedFallback',
  int8_prepare_bias: 'int8PrepareBiasFallback',
  int8_multiply_and_add_bias: 'int8MultiplyAndAddBiasFallback',
  int8_select_columns_of_b: 'int8SelectColumnsOfBFallback',
};

function fail(error) {
  console.error(error);
  process.exit(1);
}

global.Module = {
  print: (text) => process.stderr.write(text + '\n'),
  printErr: (text) => process.stderr.write(text + '\n'),
  instantiateWasm(imports, accept) {
    const gemm = {};
    for (const [name, fallback] of Object.entries(products)) {
      gemm[name] = (...values) => global.Module.asm[fallback](...values);
    }
    const code = fs.readFileSync(path.join(worker, 'bergamot-translator-worker.wasm'));
    WebAssembly.instantiate(code, { ...imports, wasm_gemm: gemm })
      .then((result) => accept(result.instance))
      .catch(fail);
    return {};
  },
  onRuntimeInitialized() {
    try {
      run(global.Module);
    } catch (error) {
      fail(error);
    }
  },
};

function load(engine, file, alignment) {
  const bytes = fs.readFileSync(file);
  const memory = new engine.AlignedMemory(bytes.length, alignment);
  memory.getByteArrayView().set(bytes);
  return memory;
}

function open(engine) {
  const settings = [
    'beam-size: 1', 'normalize: 1.0', 'word-penalty: 0', 'max-length-break: 128',
    'mini-batch-words: 1024', 'workspace: 128',
    'max-length-factor: ' + (process.env.LENGTH_FACTOR || '2.0'), 'skip-cost: true',
    'cpu-threads: 0', 'quiet: true', 'quiet-translation: true', 'ssplit-mode: sentence',
    'gemm-precision: ' + precision, 'alignment: soft',
  ];
  const list = new engine.AlignedMemoryList();
  for (const file of vocabularies) list.push_back(load(engine, file, 64));
  const lexicon = shortlist === '-' ? new engine.AlignedMemory(0, 64) : load(engine, shortlist, 64);
  return new engine.TranslationModel(
    settings.join('\n') + '\n', load(engine, model, 256), lexicon, list, null);
}

function run(engine) {
  const lines = fs.readFileSync(0, 'utf8').split('\n');
  if (lines[lines.length - 1] === '') lines.pop();
  const service = new engine.BlockingService({ cacheSize: 0 });
  const opened = open(engine);
  const translate = (text) => {
    const texts = new engine.VectorString();
    const options = new engine.VectorResponseOptions();
    texts.push_back(text);
    options.push_back({ qualityScores: false, alignment: false, html: false });
    const responses = service.translate(opened, texts, options);
    const translation = responses.get(0).getTranslatedText();
    for (const used of [texts, options, responses]) used.delete();
    return translation;
  };

  let total = 0;
  const output = lines.map((line) => {
    let best = Infinity;
    for (let i = 0; i < repeat; ++i) {
      const start = process.hrtime.bigint();
      translate(line);
      best = Math.min(best, Number(process.hrtime.bigint() - start) / 1e6);
    }
    total += best;
    return translate(line);
  });
  fs.writeFileSync(1, output.join('\n') + '\n');
  if (repeat) process.stderr.write(`ms-per-sentence ${(total / lines.length).toFixed(3)}\n`);
  process.exit(0);
}

(0, eval)(fs.readFileSync(path.join(worker, 'bergamot-translator-worker.js'), 'utf8'));
