// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"
#include "settings/panel_style.h"
#include "ui/caption/transcript_document.h"

#include <QWidget>

namespace velun {

/// Captions in a style as the panel shows them, in front of a background. Main thread.
class StylePreview final : public QWidget {
  Q_OBJECT

 public:
  enum class Backdrop { picture, light, dark };
  static constexpr std::array allBackdrops = {Backdrop::picture, Backdrop::light, Backdrop::dark};

  explicit StylePreview(QWidget* parent = nullptr);

  /// `fontSize` is in points; a very large one is shown smaller.
  void setStyle(const PanelStyle& style, double fontSize);
  void setBackdrop(Backdrop backdrop);
  /// Names it in the interface language.
  void translate();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void build();
  void layOut();
  QRect panelRect() const;
  void paintBackdrop(QPainter& painter) const;

  PanelStyle style_;
  double fontSize_ = 0;
  Backdrop backdrop_ = Backdrop::picture;
  CaptionSession session_;
  TranscriptDocument document_;
};

/// The name of a background for users.
QString title(StylePreview::Backdrop backdrop);

}  // namespace velun
