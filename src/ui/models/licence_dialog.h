// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

namespace velun {

struct Model;

/// The licence of a model: its name, what its makers say about it, its text or the address of the
/// text. Deletes itself when it is closed. Main thread.
class LicenceDialog final : public QDialog {
  Q_OBJECT

 public:
  LicenceDialog(const Model& model, QWidget* parent);
};

}  // namespace velun
