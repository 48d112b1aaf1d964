// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/session_list_model.h"

#include "language/localization.h"
#include "ui/library/session_sections.h"

#include <algorithm>
#include <QDateTime>
#include <QLocale>
#include <QMimeData>

namespace velun {

namespace {

QString lengthText(std::chrono::seconds length) {
  if (length < std::chrono::minutes(1)) return L("%1 s", "%1초").arg(length.count());
  const auto minutes = std::chrono::round<std::chrono::minutes>(length).count();
  constexpr auto kHour = 60;
  if (minutes < kHour) return L("%1 min", "%1분").arg(minutes);
  return L("%1 h %2 min", "%1시간 %2분").arg(minutes / kHour).arg(minutes % kHour);
}

}  // namespace

QString sessionTimes(const SessionSummary& session) {
  using std::chrono::floor;
  using std::chrono::seconds;
  const auto start = floor<seconds>(session.startedAt).time_since_epoch();
  const QLocale locale(Localization::shared().locale());
  QString text =
      locale.toString(QDateTime::fromSecsSinceEpoch(start.count()).time(), QLocale::ShortFormat);
  if (!session.endedAt) return text;
  const auto length = floor<seconds>(*session.endedAt - session.startedAt);
  return text + QStringLiteral(" · ") + lengthText(std::max(length, seconds(0)));
}

QString sessionSummary(const SessionSummary& session) {
  const auto count = session.lineCount;
  QString summary = count == 1 ? L("1 sentence", "1문장") : L("%1 sentences", "%1문장").arg(count);
  if (session.hasTranslations) summary += L(" · with translation", " · 번역 포함");
  return summary;
}

void SessionListModel::show(const SavedSessions& sessions, const QDate& today) {
  beginResetModel();
  sessions_ = sessions;
  rows_.clear();
  QString section;
  for (const auto& session : sessions_) {
    const QString title = sectionTitle(session->summary.startedAt, today);
    if (today.isValid() && title != section) rows_.push_back({title, nullptr});
    section = title;
    rows_.push_back({QString(), session});
  }
  endResetModel();
}

QList<QUrl> SessionListModel::visibleURLs() const {
  QList<QUrl> urls;
  for (const auto& session : sessions_) urls.append(session->url);
  return urls;
}

std::shared_ptr<const ListedSession> SessionListModel::sessionAt(const QModelIndex& index) const {
  return index.isValid() ? rows_[static_cast<std::size_t>(index.row())].session : nullptr;
}

QModelIndex SessionListModel::indexOf(const QUrl& url) const {
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    if (rows_[i].session && rows_[i].session->url == url) return index(static_cast<int>(i));
  }
  return {};
}

int SessionListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant SessionListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Row& row = rows_[static_cast<std::size_t>(index.row())];
  if (role == isHeaderRole) return row.session == nullptr;
  if (!row.session) {
    const bool isText = role == Qt::DisplayRole || role == Qt::AccessibleTextRole;
    return isText ? QVariant(row.header) : QVariant();
  }
  const SessionSummary& session = row.session->summary;
  if (role == Qt::DisplayRole) return session.title;
  if (role == summaryRole) return sessionSummary(session);
  if (role == timesRole || role == Qt::AccessibleDescriptionRole) return sessionTimes(session);
  if (role == previewRole) return session.firstWords;
  if (role == Qt::AccessibleTextRole) {
    return QStringLiteral("%1, %2").arg(session.title, sessionSummary(session));
  }
  if (role == Qt::ToolTipRole) return row.session->url.toLocalFile();
  return {};
}

Qt::ItemFlags SessionListModel::flags(const QModelIndex& index) const {
  return sessionAt(index) ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled
                          : Qt::NoItemFlags;
}

QStringList SessionListModel::mimeTypes() const {
  return {QStringLiteral("text/uri-list")};
}

QMimeData* SessionListModel::mimeData(const QModelIndexList& indexes) const {
  QModelIndexList rows = indexes;
  std::sort(rows.begin(), rows.end());
  QList<QUrl> files;
  for (const QModelIndex& row : rows) {
    if (const auto session = sessionAt(row)) files.append(session->url);
  }
  auto* data = new QMimeData;
  data->setUrls(files);
  return data;
}

}  // namespace velun
