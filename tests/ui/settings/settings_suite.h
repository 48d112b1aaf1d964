// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/localization.h"
#include "support/manual_clock.h"
#include "support/memory_preferences.h"
#include "support/scripted_audio_platform.h"
#include "support/scripted_recognizer.h"
#include "support/scripted_speech_platform.h"
#include "support/scripted_translation_platform.h"
#include "support/suite.h"
#include "ui/settings/settings_window_controller.h"

#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QScrollArea>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace velun::test {

struct ScriptedNotes final : SettingsNotes {
  bool hidesFromOthers() const override { return hides; }
  QString captureHiding() const override { return hiding; }
  QString download() const override { return downloading; }
  QString unknownWords() const override { return unknown; }
  bool hasSpeakerModel() const override { return hasSpeakers; }

  bool hides = true;
  QString hiding;
  QString downloading;
  QString unknown;
  bool hasSpeakers = false;
};

/// Tests of the settings window, without the page of models.
class SettingsSuite : public Suite {
  Q_OBJECT

 protected:
  void open() {
    controller_.reset();
    model_.reset();
    settings_ = std::make_unique<AppSettings>(preferences_.get());
    SessionStore store;
    store.directory = QUrl::fromLocalFile(folder_.path());
    translation_.languages = {"ko", "es", "de"};
    auto script = std::make_shared<ScriptedRecognizer::Script>();
    model_ = std::make_unique<CaptionViewModel>(*settings_, store,
                                                std::make_unique<ScriptedRecognizer>(script),
                                                speech_, translation_, clock_);
    controller_ = std::make_unique<SettingsWindowController>(
        *model_, [this] { ++folderOpenings_; }, &notes_, nullptr,
        DesktopSettings{.audio = &audio_});
    controller_->show();
  }

  QWidget& window() const { return controller_->window(); }
  QListWidget& list() const { return *window().findChild<QListWidget*>(); }

  void loadLists() {
    QSignalSpy loaded(model_.get(), &CaptionViewModel::languagesChanged);
    model_->loadLanguages();
    QTRY_COMPARE(loaded.count(), 1);
  }

  void showPage(const QString& title) const {
    const auto rows = list().findItems(title, Qt::MatchExactly);
    QCOMPARE(rows.size(), 1);
    list().setCurrentItem(rows.front());
  }

  template <class Control>
  Control* named(const QString& name) const {
    for (Control* each : window().findChildren<Control*>()) {
      if (each->accessibleName() == name) return each;
    }
    return nullptr;
  }

  static QStringList items(const QComboBox* chooser) {
    QStringList texts;
    for (int i = 0; i < chooser->count(); ++i) texts.append(chooser->itemText(i));
    return texts;
  }

  static void pick(QComboBox* chooser, int index) {
    chooser->setCurrentIndex(index);
    Q_EMIT chooser->activated(index);
  }

  /// Whether a page shows this text.
  bool shows(const QString& text) const {
    for (const QScrollArea* page : window().findChildren<QScrollArea*>()) {
      for (const QLabel* label : page->findChildren<QLabel*>()) {
        if (label->text() == text && label->isVisibleTo(page)) return true;
      }
    }
    return false;
  }

  QTemporaryDir folder_;
  ManualClock clock_;
  std::unique_ptr<MemoryPreferences> preferences_;
  std::unique_ptr<AppSettings> settings_;
  ScriptedSpeechPlatform speech_;
  ScriptedTranslationPlatform translation_;
  ScriptedAudioPlatform audio_;
  std::unique_ptr<CaptionViewModel> model_;
  std::unique_ptr<SettingsWindowController> controller_;
  int folderOpenings_ = 0;
  ScriptedNotes notes_;

 private Q_SLOTS:
  void init() {
    Suite::init();
    preferences_ = std::make_unique<MemoryPreferences>();
    folderOpenings_ = 0;
    notes_.hides = true;
    notes_.hiding.clear();
    notes_.downloading.clear();
    notes_.unknown.clear();
    notes_.hasSpeakers = false;
    open();
  }
  void cleanup() {
    controller_.reset();
    model_.reset();
    Localization::shared().setLanguage(AppLanguage::english);
  }
};

}  // namespace velun::test
