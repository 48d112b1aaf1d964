// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QColor>
#include <QComboBox>

namespace velun {

/// A list of named colours whose last entry opens a dialog for every other colour. Main thread.
class ColorChooser final : public QComboBox {
  Q_OBJECT

 public:
  /// Whether the first entry leaves the colour to the program.
  enum class Automatic { no, yes };

  explicit ColorChooser(Automatic automatic = Automatic::no, QWidget* parent = nullptr);

  /// Shows a colour, which gets an entry of its own if it has no name; nullopt is the automatic
  /// one. Emits nothing.
  void setColor(const std::optional<QColor>& color);

  /// Names the entries in the interface language. `automatic` is the text of the automatic entry.
  void translate(const QString& automatic = {});

 Q_SIGNALS:
  /// The user chose a colour; in the dialog, with every change.
  void chosen(std::optional<QColor> color);

 protected:
  /// Scrolling the form changes no setting.
  void wheelEvent(QWheelEvent* event) override;

 private:
  void choose(int index);
  void openDialog();

  bool hasAutomatic_;
  QString automatic_;
  std::optional<QColor> color_;
};

}  // namespace velun
