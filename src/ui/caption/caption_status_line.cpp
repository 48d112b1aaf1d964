// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_status_line.h"

#include "captions/caption_view_model.h"
#include "language/localization.h"
#include "platform/translation/translation_platform.h"
#include "ui/caption/caption_appearance.h"
#include "ui/caption/transcript_formats.h"
#include "ui/caption/transcript_layout.h"
#include "ui/common/accessible_role.h"

namespace velun {

namespace {

constexpr double kSize = 12;

}  // namespace

CaptionStatusLine::CaptionStatusLine(CaptionViewModel& model, TranslationPlatform& translation,
                                     QWidget* parent)
    : SelectableLabel(parent), model_(model), translation_(translation) {
  setAccessibleRole(*this, QAccessible::Notification);
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setFont(systemFont(kSize));
  setPadding({TranscriptLayout::horizontalInset, 0, TranscriptLayout::horizontalInset, 10});
  QPalette colors = palette();
  colors.setColor(QPalette::WindowText, CaptionAppearance::secondaryText);
  setPalette(colors);
  setTextInteractionFlags(Qt::TextSelectableByMouse);
  setCursor(Qt::ArrowCursor);
  const auto follow = [this](auto& object, auto signal) {
    connect(&object, signal, this, &CaptionStatusLine::present);
  };
  follow(model, &CaptionViewModel::statusChanged);
  follow(model, &CaptionViewModel::translationStatusChanged);
  follow(model, &CaptionViewModel::saveErrorChanged);
  follow(model.settings(), &AppSettings::translateChanged);
  follow(model.settings(), &AppSettings::localeIDChanged);
  follow(model.settings(), &AppSettings::targetIDChanged);
  follow(translation, &TranslationPlatform::activityChanged);
  follow(Localization::shared(), &Localization::languageChanged);
  present();
}

void CaptionStatusLine::present() {
  QStringList texts;
  // A model that could not be downloaded is asked for again with every line.
  const bool showsActivity = model_.settings().translate() && !model_.translationStatus();
  const std::optional<QString> activity = showsActivity ? translation_.activity() : std::nullopt;
  for (const std::optional<QString>& said :
       {model_.status(), model_.saveError(), model_.translationStatus(), model_.translationNotice(),
        activity}) {
    if (said && !said->isEmpty() && !texts.contains(*said)) texts << *said;
  }
  const QString said = texts.join(u'\n');
  setAccessibleName(L("Status", "상태"));
  setToolTip(said);
  if (text() == said) return;
  setText(said);
  setAccessibleDescription(said);
  const bool wasVisible = isVisible();
  Q_EMIT textChanged();
  if (wasVisible && isVisible()) announce(*this);
}

int CaptionStatusLine::neededHeight(int width) const {
  return text().isEmpty() ? 0 : heightForWidth(width);
}

}  // namespace velun
