// SPDX-License-Identifier: GPL-3.0-or-later
// Makes a language model for the recognizer:
//   make_language_model VOCABULARY [fst=FILE:WEIGHT] [arpa=FILE:WEIGHT] [text=FILE:WEIGHT]...
//                       [limit=ENTRIES] [heldout=FILE]... [out=FILE]
// Estimates models of sentences, mixes them with existing ones, prunes the sum and writes it as
// text for fstcompile. Prints perplexities of the held-out sentences.
#include "estimate.h"
#include "fst_text.h"
#include "mixture.h"

#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace {

std::ifstream opened(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path);
  return file;
}

struct Arguments {
  std::vector<LanguageModel> models;
  std::vector<std::string> names;
  std::vector<double> weights;
  std::vector<std::string> heldOut;
  std::size_t limit = 0;
  std::string output;
};

LanguageModel readModel(const std::string& kind, const std::string& path,
                        const Vocabulary& vocabulary) {
  std::ifstream file = opened(path);
  if (kind == "fst") return readFst(file, vocabulary);
  if (kind == "arpa") return readArpa(file, vocabulary);
  return estimated(readSentences(file, vocabulary), vocabulary);
}

Arguments readArguments(int count, char** values, const Vocabulary& vocabulary) {
  Arguments arguments;
  for (int i = 2; i < count; ++i) {
    const std::string each = values[i];
    const auto at = each.find('=');
    const std::string name = each.substr(0, at), value = each.substr(at + 1);
    if (name == "limit")
      arguments.limit = std::stoul(value);
    else if (name == "heldout")
      arguments.heldOut.push_back(value);
    else if (name == "out")
      arguments.output = value;
    else if (name == "fst" || name == "arpa" || name == "text") {
      const auto colon = value.rfind(':');
      arguments.names.push_back(value.substr(0, colon));
      arguments.weights.push_back(std::stod(value.substr(colon + 1)));
      arguments.models.push_back(readModel(name, arguments.names.back(), vocabulary));
    } else {
      throw std::runtime_error("unknown argument " + name);
    }
  }
  return arguments;
}

void report(const std::string& name, const LanguageModel& model,
            const std::vector<std::pair<std::string, Sentences>>& heldOut) {
  std::printf("%s: %zu words, %zu pairs, %zu triples", name.c_str(), model.entries(1).size(),
              model.entries(2).size(), model.entries(3).size());
  for (const auto& [path, sentences] : heldOut) {
    std::printf(", %s %.1f", path.substr(path.rfind('/') + 1).c_str(),
                perplexity(model, sentences));
  }
  std::printf("\n");
  std::fflush(stdout);
}

void run(int count, char** values) {
  if (count < 3) throw std::runtime_error("usage: see the first lines of main.cpp");
  const Vocabulary vocabulary(values[1]);
  const Arguments arguments = readArguments(count, values, vocabulary);
  std::vector<std::pair<std::string, Sentences>> heldOut;
  for (const std::string& path : arguments.heldOut) {
    std::ifstream file = opened(path);
    heldOut.emplace_back(path, readSentences(file, vocabulary));
  }
  std::vector<const LanguageModel*> models;
  for (std::size_t i = 0; i < arguments.models.size(); ++i) {
    models.push_back(&arguments.models[i]);
    report(arguments.names[i], arguments.models[i], heldOut);
  }
  LanguageModel model = mixed(models, arguments.weights);
  report("mixed", model, heldOut);
  if (arguments.limit > 0) {
    model = pruned(model, arguments.limit, vocabulary);
    report("pruned", model, heldOut);
  }
  if (arguments.output.empty()) return;
  std::ofstream output(arguments.output);
  writeFst(output, model, vocabulary);
}

}  // namespace

int main(int count, char** values) {
  try {
    run(count, values);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
