// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/caption_view_model.h"

#include "language/localization.h"

#include <algorithm>
#include <utility>

namespace velun {

namespace {

/// By name in ascending order; equal names keep their order.
QStringList sortedByName(const QStringList& identifiers) {
  std::vector<std::pair<QString, QString>> named;
  for (const QString& identifier : identifiers) {
    named.emplace_back(languageName(identifier), identifier);
  }
  std::stable_sort(named.begin(), named.end(), [](const auto& left, const auto& right) {
    return CodePointOrder()(left.first, right.first);
  });
  QStringList sorted;
  for (const auto& [name, identifier] : named) sorted.append(identifier);
  return sorted;
}

CaptionSession emptySession(Instant startedAt) {
  CaptionSession session;
  session.startedAt = startedAt;
  return session;
}

}  // namespace

CaptionViewModel::CaptionViewModel(AppSettings& settings, SessionStore store,
                                   std::unique_ptr<SpeechRecognizing> recognition,
                                   LanguageLists lists, Clock& clock, QObject* parent)
    : QObject(parent),
      settings_(settings),
      clock_(clock),
      session_(emptySession(clock.now())),
      isSavingSession_(settings.autoSaveSessions()),
      store_(std::move(store)),
      recognition_(std::move(recognition)),
      lists_(std::move(lists)) {
  engineChain_.onIdle = [this] {
    assign(isTransitioning_, false, &CaptionViewModel::isTransitioningChanged);
  };
  observeEngine();
  observeTranslator();
  observeSettings();
}

CaptionViewModel::~CaptionViewModel() = default;

void CaptionViewModel::newSession() {
  if (isRunning_ || isTransitioning_) return;
  session_ = emptySession(clock_.now());
  indexOfLine_.clear();
  pending_.reset();
  transcript_.reset();
  encoder_.reset();
  Q_EMIT sessionChanged();
  assign(volatileText_, QString(), &CaptionViewModel::volatileTextChanged);
  clear(status_, &CaptionViewModel::statusChanged);
  clear(translationStatus_, &CaptionViewModel::translationStatusChanged);
  clear(savedURL_, &CaptionViewModel::savedURLChanged);
  clear(saveError_, &CaptionViewModel::saveErrorChanged);
  assign(isSavingSession_, settings_.autoSaveSessions(), &CaptionViewModel::isSavingSessionChanged);
  updateTranslation();
}

QCoro::Task<> CaptionViewModel::loadLanguages() {
  return load(life_.weak(), lists_);
}

QCoro::Task<> CaptionViewModel::load(std::weak_ptr<CaptionViewModel> self, LanguageLists lists) {
  QCoro::Task<QStringList> localesTask = lists.supportedLocales();
  const QStringList locales = co_await localesTask;
  CaptionViewModel* model = self.lock().get();
  if (!model) co_return;
  model->assign(model->locales_, sortedByName(locales), &CaptionViewModel::localesChanged);

  QCoro::Task<QStringList> languagesTask = lists.supportedLanguages();
  const QStringList languages = co_await languagesTask;
  model = self.lock().get();
  if (!model) co_return;
  model->assign(model->languages_, sortedByName(languages), &CaptionViewModel::languagesChanged);
}

std::vector<float> CaptionViewModel::meterBands() const {
  return isRunning_ ? recognition_->meterBands() : std::vector<float>();
}

QCoro::Task<> CaptionViewModel::runTranslations(std::shared_ptr<TranslationSession> session) {
  return translator_.run(std::move(session));
}

TranscriptContent CaptionViewModel::captionContent() const {
  if (!settings_.translate() || translationNotice()) return TranscriptContent::original;
  return settings_.showTranslationOnly() ? TranscriptContent::translation : TranscriptContent::both;
}

std::optional<QString> CaptionViewModel::translationNotice() const {
  if (!settings_.translate() ||
      !CaptionTranslator::hasSameLanguage(settings_.localeID(), settings_.targetID())) {
    return std::nullopt;
  }
  return L("Input and translation languages are the same, so the original is shown.",
           "입력 언어와 번역 언어가 같아 원문을 표시합니다.");
}

QString CaptionViewModel::captionText() const {
  const TranscriptContent content = captionContent();
  const QString& transcript = transcript_.text(lines(), content, settings_.targetID());
  if (content == TranscriptContent::translation || volatileText_.isEmpty()) return transcript;
  return transcript.isEmpty() ? volatileText_ : transcript + QStringLiteral("\n\n") + volatileText_;
}

const QSet<QUuid>& CaptionViewModel::pendingTranslationIDs() const {
  static const QSet<QUuid> none;
  if (translationStatus_ || captionContent() != TranscriptContent::translation) return none;
  return pending_.ids(lines(), settings_.localeID(), settings_.targetID());
}

}  // namespace velun
