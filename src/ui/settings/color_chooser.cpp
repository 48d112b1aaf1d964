// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/color_chooser.h"

#include "language/localization.h"

#include <QColorDialog>
#include <QPainter>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <vector>

namespace velun {

namespace {

constexpr int kSwatch = 16;
constexpr double kSwatchCorner = 4;
constexpr int kOtherRole = Qt::UserRole + 1;

struct NamedColor {
  QColor color;
  QString name;
};

std::vector<NamedColor> namedColors() {
  return {{QColor(255, 255, 255), L("White", "흰색")},
          {QColor(208, 208, 212), L("Light Gray", "밝은 회색")},
          {QColor(255, 221, 51), L("Yellow", "노란색")},
          {QColor(255, 170, 60), L("Orange", "주황색")},
          {QColor(255, 200, 110), L("Light Orange", "연한 주황색")},
          {QColor(130, 230, 130), L("Green", "연두색")},
          {QColor(90, 220, 240), L("Cyan", "청록색")},
          {QColor(158, 206, 255), L("Light Blue", "연한 파란색")},
          {QColor(124, 200, 255), L("Sky Blue", "하늘색")},
          {QColor(22, 71, 146), L("Dark Blue", "짙은 파란색")},
          {QColor(18, 18, 21), L("Charcoal", "먹색")},
          {QColor(10, 12, 16), L("Near Black", "검정에 가까운 색")},
          {QColor(0, 0, 0), L("Black", "검은색")}};
}

QIcon swatch(const QColor& color, qreal ratio) {
  QPixmap pixmap(QSize(kSwatch, kSwatch) * ratio);
  pixmap.setDevicePixelRatio(ratio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QColor(128, 128, 128));
  painter.setBrush(color);
  painter.drawRoundedRect(QRectF(0.5, 0.5, kSwatch - 1, kSwatch - 1), kSwatchCorner, kSwatchCorner);
  return QIcon(pixmap);
}

}  // namespace

ColorChooser::ColorChooser(Automatic automatic, QWidget* parent)
    : QComboBox(parent), hasAutomatic_(automatic == Automatic::yes) {
  connect(this, &QComboBox::activated, this, &ColorChooser::choose);
}

void ColorChooser::translate(const QString& automatic) {
  automatic_ = automatic;
  setColor(color_);
}

void ColorChooser::setColor(const std::optional<QColor>& color) {
  color_ = color;
  const QSignalBlocker blocker(this);
  clear();
  if (hasAutomatic_) addItem(automatic_);
  for (const NamedColor& named : namedColors()) {
    addItem(swatch(named.color, devicePixelRatioF()), named.name, named.color);
  }
  int current = color ? findData(*color) : 0;
  if (current < 0) {
    current = count();
    addItem(swatch(*color, devicePixelRatioF()), color->name(), *color);
  }
  addItem(L("Other Color…", "다른 색…"));
  setItemData(count() - 1, true, kOtherRole);
  setCurrentIndex(current);
}

void ColorChooser::choose(int index) {
  if (itemData(index, kOtherRole).toBool()) {
    setColor(color_);
    openDialog();
    return;
  }
  const QColor color = itemData(index).value<QColor>();
  Q_EMIT chosen(color.isValid() ? std::optional(color) : std::nullopt);
}

void ColorChooser::openDialog() {
  const std::optional<QColor> before = color_;
  auto* dialog = new QColorDialog(before.value_or(QColor(Qt::white)), window());
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowTitle(accessibleName());
  connect(dialog, &QColorDialog::currentColorChanged, this, [this](const QColor& color) {
    if (color.isValid()) Q_EMIT chosen(color);
  });
  connect(dialog, &QDialog::rejected, this, [this, before] { Q_EMIT chosen(before); });
  dialog->open();
}

void ColorChooser::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

}  // namespace velun
