// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/session_table.h"

#include <optional>
#include <QAbstractTableModel>
#include <QTableView>

namespace velun {

/// The rows of a `SessionTable`; cells that match a search are marked.
class BilingualModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  using QAbstractTableModel::QAbstractTableModel;

  /// `small` is the font of the columns before the texts.
  void show(SessionTable table, const QFont& small);
  void highlight(const QString& search);
  /// Whether a cell of the row matches the search.
  bool isMatch(int row) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  bool isMatch(const QString& text) const;

  SessionTable table_;
  QFont small_;
  QString search_;
};

/// A session's lines as rows, with the original and its translations side by side. Main thread.
class BilingualView final : public QTableView {
  Q_OBJECT

 public:
  explicit BilingualView(QWidget* parent = nullptr);

  /// Shows another table in a font of this size in points, from its start unless it has as many
  /// lines as the one before.
  void show(SessionTable table, double fontSize);

  /// Marks the cells that match `text`; an empty text marks none.
  void highlight(const QString& text) { rows_.highlight(text); }
  /// Goes to the next row that matches, or to the one before. Returns whether there is one.
  bool stepToMatch(bool forward);
  /// Goes to the first row that matches, or to the last, if there is one.
  void showMatchAtEnd(bool last);

  /// The index of the current line; nullopt without one.
  std::optional<std::size_t> currentLine() const;
  /// The range of the selected lines; nullopt if fewer than two are selected.
  std::optional<LineRange> selectedLines() const;

 Q_SIGNALS:
  void currentLineChanged();

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;

 private:
  void copySelection() const;
  void goTo(int row);
  /// Fits the heights of the visible rows; those of all would take long in a long session.
  void fitVisibleRows();

  BilingualModel rows_;
  QAction* copy_;
  bool isFitting_ = false;
};

}  // namespace velun
