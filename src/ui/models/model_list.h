// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model.h"

#include <optional>
#include <QObject>
#include <QString>
#include <QStringList>
#include <vector>

namespace velun {

/// What a user can do with a model.
enum class ModelAction {
  use,
  chooseAutomatically,
  install,
  update,
  pause,
  resume,
  cancel,
  retry,
  remove,
  showLicence,
};

/// One button of a row; its text is in the interface language.
struct ModelRowAction {
  ModelAction action = ModelAction::use;
  QString text;
  QString toolTip;  ///< why it is disabled; empty if the text says everything
  bool isEnabled = true;

  bool operator==(const ModelRowAction&) const = default;
};

/// One model of a language. The texts are in the interface language.
struct ModelRow {
  QString id;
  QString title;
  QString mark;                                   ///< such as "In Use"; may be empty
  QStringList facts;                              ///< lines below the title
  QString notice;                                 ///< such as a failed download; may be empty
  std::optional<double> progress = std::nullopt;  ///< of a download, 0…1
  QString progressText;
  std::vector<ModelRowAction> actions;

  bool operator==(const ModelRow&) const = default;
};

/// One language and its models.
struct ModelGroup {
  QString id;                ///< a locale or language identifier
  QString title;             ///< the name of the language in the interface language
  QString ownName;           ///< its name in the language itself; may be empty
  QString summary;           ///< one line that is shown also while the rows are hidden
  bool isInstalled = false;  ///< whether it can be used without a download
  bool isCurrent = false;    ///< whether captions use it now; its rows are shown at first
  QStringList searchNames;   ///< folded (language_search.h)
  std::vector<ModelRow> rows;

  bool operator==(const ModelGroup&) const = default;
};

/// The models for one purpose, such as recognition, and the actions on them. Main thread.
class ModelList : public QObject {
  Q_OBJECT

 public:
  /// The heading, in the interface language.
  virtual QString title() const = 0;

  /// In the order of the interface language; those that are installed need not come first.
  virtual std::vector<ModelGroup> groups() const = 0;

  /// Carries out an action of the row `model` of `group`; asks the user where necessary.
  virtual void perform(ModelAction action, const QString& group, const QString& model) = 0;

 Q_SIGNALS:
  /// A group may have changed.
  void changed();
  /// The user wants to read the licence of a model.
  void licenceRequested(const velun::Model& model);
};

}  // namespace velun
