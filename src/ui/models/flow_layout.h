// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLayout>
#include <vector>

namespace velun {

/// Puts widgets beside each other and continues in a new line where the width is used up.
class FlowLayout final : public QLayout {
 public:
  explicit FlowLayout(QWidget* parent);
  ~FlowLayout() override;

  void addItem(QLayoutItem* item) override;
  int count() const override { return static_cast<int>(items_.size()); }
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize minimumSize() const override;
  QSize sizeHint() const override { return minimumSize(); }
  void setGeometry(const QRect& area) override;

 private:
  /// Returns the height that is needed; moves the widgets if `moves`.
  int arrange(const QRect& area, bool moves) const;

  std::vector<QLayoutItem*> items_;
};

}  // namespace velun
