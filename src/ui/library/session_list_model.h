// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/library/history_view_model.h"

#include <QAbstractListModel>
#include <QDate>
#include <QString>
#include <vector>

namespace velun {

/// The rows of the sidebar: the shown sessions in order, with a header row before each section.
class SessionListModel final : public QAbstractListModel {
  Q_OBJECT

 public:
  enum Role {
    /// True for the header of a section.
    isHeaderRole = Qt::UserRole,
    /// The text of sessionSummary().
    summaryRole,
    /// The text of sessionTimes().
    timesRole,
    /// The first words.
    previewRole,
  };

  using QAbstractListModel::QAbstractListModel;

  /// Shows these sessions, with sections that depend on `today`, or without them if it is null.
  void show(const SavedSessions& sessions, const QDate& today);

  /// The shown sessions in display order.
  const SavedSessions& sessions() const { return sessions_; }
  QList<QUrl> visibleURLs() const;

  /// The session at a row; null for a header.
  std::shared_ptr<const ListedSession> sessionAt(const QModelIndex& index) const;
  QModelIndex indexOf(const QUrl& url) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  /// The files of sessions, for programs into which they are dragged. They are copied: the library
  /// would not know of files that other programs move.
  QStringList mimeTypes() const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;
  Qt::DropActions supportedDragActions() const override { return Qt::CopyAction; }

 private:
  struct Row {
    QString header;
    std::shared_ptr<const ListedSession> session;
  };

  SavedSessions sessions_;
  std::vector<Row> rows_;
};

/// For example "12 sentences · with translation", in the interface language.
QString sessionSummary(const SessionSummary& session);

/// When a session began, in local time, and how long it was: "2:05 PM · 12 min". Without a known
/// end only the first.
QString sessionTimes(const SessionSummary& session);

}  // namespace velun
