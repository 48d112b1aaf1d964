// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/student_config.h"

#include "platform/translation/student/model_format_error.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <string>

namespace velun {

namespace {

using Keys = std::map<std::string_view, std::string_view, std::less<>>;

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) return {};
  text = text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
  if (text.size() >= 2 && text.front() == text.back() && (text[0] == '"' || text[0] == '\'')) {
    text = text.substr(1, text.size() - 2);
  }
  return text;
}

// Parses "key: value" lines. Of a list, which follows its key on separate lines, only the first
// element is kept.
Keys readKeys(std::string_view text) {
  Keys keys;
  std::string_view listKey;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    const std::string_view content = trimmed(line);
    if (content.empty() || content[0] == '#') continue;
    if (line[0] == ' ' || line[0] == '-') {
      const bool element = content.size() > 1 && content[0] == '-' && content[1] == ' ';
      std::string_view& value = keys[listKey];
      if (value.empty()) value = element ? trimmed(content.substr(1)) : content;
      continue;
    }
    const auto colon = line.find(':');
    if (colon == std::string_view::npos) continue;
    listKey = line.substr(0, colon);
    keys[listKey] = trimmed(line.substr(colon + 1));
  }
  return keys;
}

// A property that the network must have. Keys may be missing that older files do not have; their
// default is the required value.
struct Requirement {
  std::string_view key;
  std::string_view value;
  bool mayBeMissing = true;
};

constexpr Requirement kRequirements[] = {
    {"type", "transformer", false},
    {"transformer-decoder-autoreg", "rnn", false},
    {"dec-cell", "ssru", false},
    {"transformer-ffn-activation", "relu", false},
    {"transformer-ffn-depth", "2"},
    {"transformer-preprocess", ""},
    {"transformer-postprocess", "dan"},
    {"transformer-postprocess-emb", "d"},
    {"transformer-postprocess-top", ""},
    {"transformer-no-projection", "false"},
    {"transformer-rnn-projection", "false"},
    {"transformer-decoder-dim-ffn", "0"},
    {"transformer-decoder-ffn-depth", "0"},
    {"transformer-no-bias", "false"},
    {"transformer-no-affine", "false"},
    {"transformer-train-position-embeddings", "false"},
    {"transformer-tied-layers", "[]"},
    {"transformer-pool", "false"},
    {"layer-normalization", "false"},
    {"tied-embeddings-src", "false"},
    {"output-omit-bias", "false"},
    {"right-left", "false"},
    {"lemma-dim-emb", "0"},
    {"factors-dim-emb", "0"},
};

int parseSize(const Keys& keys, std::string_view key, int max) {
  const auto found = keys.find(key);
  const std::string_view text = found == keys.end() ? std::string_view() : found->second;
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value < 1 || value > max) {
    throw ModelFormatError::unsupported(std::string(key) + ": " + std::string(text));
  }
  return value;
}

bool isSet(const Keys& keys, std::string_view key) {
  const auto found = keys.find(key);
  return found != keys.end() && found->second == "true";
}

}  // namespace

StudentConfig parseStudentConfig(std::string_view text) {
  const Keys keys = readKeys(text);
  for (const Requirement& requirement : kRequirements) {
    const auto found = keys.find(requirement.key);
    const bool fits =
        found == keys.end() ? requirement.mayBeMissing : found->second == requirement.value;
    if (!fits) {
      throw ModelFormatError::unsupported(
          std::string(requirement.key) + ": " +
          (found == keys.end() ? "missing" : std::string(found->second)));
    }
  }

  StudentConfig config;
  config.width = parseSize(keys, "dim-emb", 4096);
  config.feedForward = parseSize(keys, "transformer-dim-ffn", 1 << 16);
  config.heads = parseSize(keys, "transformer-heads", 64);
  config.encoderLayers = parseSize(keys, "enc-depth", 64);
  config.decoderLayers = parseSize(keys, "dec-depth", 64);
  config.oneVocabulary = isSet(keys, "tied-embeddings-all");
  if (!config.oneVocabulary && !isSet(keys, "tied-embeddings")) {
    throw ModelFormatError::unsupported("a separate output layer");
  }
  // The position encoding divides by half the width minus 1.
  if (config.width % 2 != 0 || config.width < 4 || config.width % config.heads != 0) {
    throw ModelFormatError::unsupported(
        "a width that is odd, below 4 or not a multiple of the heads");
  }
  return config;
}

}  // namespace velun
