// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/caption_publisher.h"

#include "captions/caption_view_model.h"
#include "captions/update.h"
#include "model/speaker.h"
#include "settings/sharing_settings.h"

namespace velun {

namespace {

QString idText(const Line& line) {
  return line.id.toString(QUuid::WithoutBraces).toUpper();
}

FeedLine feedLine(const CaptionSession& session, const Line& line) {
  FeedLine published{.id = idText(line), .text = line.text, .time = line.time};
  published.input = session.inputName(line);
  published.language = line.sourceLanguage.value_or(QString());
  if (line.speaker) published.speaker = speakerName(*line.speaker);
  for (const auto& [language, text] : line.translations) {
    published.translations.insert(language, text);
  }
  return published;
}

}  // namespace

CaptionPublisher::CaptionPublisher(const CaptionViewModel& model, const SharingSettings& settings,
                                   CaptionFeed& feed)
    : model_(model), settings_(settings), feed_(feed) {
  connect(&settings, &SharingSettings::offersCaptionsChanged, this, &CaptionPublisher::switchFeed);
  connect(&model, &CaptionViewModel::isRunningChanged, this, &CaptionPublisher::publishState);
  connect(&model, &CaptionViewModel::isTransitioningChanged, this, &CaptionPublisher::publishState);
  connect(&model, &CaptionViewModel::volatileTextChanged, this, [this] {
    if (isOpen_) feed_.setDraft(model_.volatileText());
  });
  connect(&model, &CaptionViewModel::sessionChanged, this, &CaptionPublisher::publishLines);
  connect(&model, &CaptionViewModel::lineInserted, this,
          [this](int index) { publishInserted(static_cast<std::size_t>(index)); });
  connect(&model, &CaptionViewModel::translationChanged, this,
          [this](int index) { publishTranslation(static_cast<std::size_t>(index)); });
  switchFeed();
}

CaptionPublisher::~CaptionPublisher() {
  if (isOpen_) feed_.close();
}

void CaptionPublisher::switchFeed() {
  if (!update(isOpen_, settings_.offersCaptions())) return;
  if (!isOpen_) return feed_.close();
  session_ = model_.session().id;
  firstLine_ = nextLine_ = model_.lines().size();
  state_ = state();
  feed_.open(state_);
}

CaptionFeed::State CaptionPublisher::state() const {
  using State = CaptionFeed::State;
  if (model_.isRunning()) return model_.isTransitioning() ? State::starting : State::running;
  return model_.isTransitioning() ? State::stopping : State::stopped;
}

void CaptionPublisher::publishState() {
  if (isOpen_ && update(state_, state())) feed_.setState(state_);
}

void CaptionPublisher::publishLines() {
  if (!isOpen_) return;
  if (update(session_, model_.session().id)) {
    feed_.clear();
    firstLine_ = nextLine_ = 0;
  }
  const std::vector<Line>& lines = model_.lines();
  for (; nextLine_ < lines.size(); ++nextLine_) {
    feed_.addLine(feedLine(model_.session(), lines[nextLine_]));
  }
}

void CaptionPublisher::publishInserted(std::size_t index) {
  if (!isOpen_ || index >= nextLine_) return;
  ++nextLine_;
  if (index < firstLine_) ++firstLine_;
  feed_.addLine(feedLine(model_.session(), model_.lines()[index]));
}

void CaptionPublisher::publishTranslation(std::size_t index) {
  if (!isOpen_ || index < firstLine_) return;
  const Line& line = model_.lines()[index];
  // An earlier translation keeps its place when the language changes; only the new one counts.
  const auto found = line.translations.find(model_.settings().targetID());
  if (found != line.translations.end()) {
    feed_.addTranslation(idText(line), found->first, found->second);
  }
}

}  // namespace velun
