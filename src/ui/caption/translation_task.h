// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <QObject>

namespace velun {

class CaptionViewModel;
class TranslationPlatform;
class TranslationSession;

/// Opens a translation session for the configuration that the model asks for, hands it to the
/// model, and closes it as soon as another one, or none, is asked for. Main thread.
class TranslationTask final : public QObject {
  Q_OBJECT

 public:
  /// Both must outlive the task.
  TranslationTask(CaptionViewModel& model, TranslationPlatform& platform,
                  QObject* parent = nullptr);
  ~TranslationTask() override;

 private:
  void reopen();

  CaptionViewModel& model_;
  TranslationPlatform& platform_;
  std::shared_ptr<TranslationSession> session_;
};

}  // namespace velun
