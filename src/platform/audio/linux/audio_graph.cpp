// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/audio_graph.h"

#include <algorithm>
#include <QJsonDocument>
#include <QJsonObject>
#include <string_view>

namespace velun {

namespace {

std::string nameIn(const char* json) {
  if (!json) return {};
  const QJsonObject object = QJsonDocument::fromJson(json).object();
  return object.value(QLatin1String("name")).toString().toStdString();
}

}  // namespace

bool AudioDevice::isSink() const {
  return mediaClass == "Audio/Sink" || mediaClass == "Audio/Duplex";
}

bool AudioDevice::isSource() const {
  return mediaClass == "Audio/Source" || mediaClass == "Audio/Source/Virtual" ||
         mediaClass == "Audio/Duplex";
}

bool AudioDevice::isPlayback() const {
  return mediaClass == "Stream/Output/Audio" && !program.empty();
}

void AudioGraph::addDevice(const AudioDevice& device) {
  devices_[device.id] = device;
}

void AudioGraph::addLink(std::uint32_t link, std::uint32_t outputNode, std::uint32_t inputNode) {
  links_[link] = {outputNode, inputNode};
}

void AudioGraph::addPort(std::uint32_t port, const AudioPort& description) {
  ports_[port] = description;
}

void AudioGraph::remove(std::uint32_t id) {
  devices_.erase(id);
  ports_.erase(id);
  links_.erase(id);
}

void AudioGraph::beginSession() {
  endSession();
  hasSession_ = true;
  ++sessionNumber_;
}

void AudioGraph::endSession() {
  hasSession_ = false;
  defaultSinkName_.clear();
  defaultSourceName_.clear();
}

void AudioGraph::setDefault(const char* key, const char* value) {
  const std::string_view name = key ? key : "";
  if (!key || name == "default.audio.sink") defaultSinkName_ = nameIn(value);
  if (!key || name == "default.audio.source") defaultSourceName_ = nameIn(value);
}

const AudioDevice* AudioGraph::defaultSink() const {
  return sink(defaultSinkName_);
}

const AudioDevice* AudioGraph::defaultSource() const {
  return source(defaultSourceName_);
}

const AudioDevice* AudioGraph::sink(const std::string& name) const {
  return named(name, &AudioDevice::isSink);
}

const AudioDevice* AudioGraph::source(const std::string& name) const {
  return named(name, &AudioDevice::isSource);
}

std::uint32_t AudioGraph::auxChannelCount(std::uint32_t device) const {
  const auto isOfDevice = [device](const auto& entry) {
    const AudioPort& port = entry.second;
    return port.node == device && port.isOutput && port.channel.starts_with("AUX");
  };
  return std::uint32_t(std::ranges::count_if(ports_, isOfDevice));
}

bool AudioGraph::isLinked(std::uint32_t outputNode, std::uint32_t inputNode) const {
  const Link wanted{outputNode, inputNode};
  return std::ranges::any_of(links_, [&](const auto& link) { return link.second == wanted; });
}

const AudioDevice* AudioGraph::named(const std::string& name,
                                     bool (AudioDevice::*kind)() const) const {
  if (name.empty()) return nullptr;
  const auto found = std::ranges::find_if(devices_, [&](const auto& entry) {
    return entry.second.name == name && (entry.second.*kind)();
  });
  return found == devices_.end() ? nullptr : &found->second;
}

}  // namespace velun
