// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/common/selectable_label.h"

namespace velun {

/// A text that screen readers announce when it appears or changes. Hidden while it is empty.
class NoticeLabel final : public SelectableLabel {
  Q_OBJECT

 public:
  explicit NoticeLabel(QWidget* parent = nullptr);

  void setNotice(const QString& text);
};

}  // namespace velun
