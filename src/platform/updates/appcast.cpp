// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/updates/appcast.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "platform/updates/version_order.h"

#include <QXmlStreamReader>

namespace velun {

namespace {

constexpr auto kNamespace = "http://www.andymatuschak.org/xml-namespaces/sparkle";

/// Far above real version numbers.
constexpr qsizetype kMaxVersionLength = 100;

/// An item before it is checked.
struct RawItem {
  AppcastItem item;
  QUrl link;
  QUrl notesLink;
  QString enclosureVersion;
  QString enclosureShortVersion;
  QString system;
  bool isOfChannel = false;
};

void readEnclosure(const QXmlStreamAttributes& attributes, RawItem& raw) {
  raw.enclosureVersion = attributes.value(kNamespace, "version").toString();
  raw.enclosureShortVersion = attributes.value(kNamespace, "shortVersionString").toString();
  raw.system = attributes.value(kNamespace, "os").toString();
}

void readOwnElement(QXmlStreamReader& reader, RawItem& raw) {
  const auto name = reader.name();
  if (name == u"version") {
    raw.item.version = reader.readElementText().trimmed();
  } else if (name == u"shortVersionString") {
    raw.item.shortVersion = reader.readElementText().trimmed();
  } else if (name == u"releaseNotesLink" || name == u"fullReleaseNotesLink") {
    raw.notesLink = QUrl(reader.readElementText().trimmed());
  } else if (name == u"channel") {
    raw.isOfChannel = true;
    reader.skipCurrentElement();
  } else {
    reader.skipCurrentElement();
  }
}

/// The text of an element and its children. QXmlStreamReader::readElementText() is recursive, so a
/// feed with deep nesting could overflow the stack.
QString readWholeText(QXmlStreamReader& reader) {
  QString text;
  for (int depth = 1; depth > 0 && !reader.atEnd();) {
    reader.readNext();
    if (reader.isStartElement()) ++depth;
    if (reader.isEndElement()) --depth;
    if (reader.isCharacters() || reader.isEntityReference()) text += reader.text();
  }
  return text;
}

RawItem readItem(QXmlStreamReader& reader) {
  RawItem raw;
  while (reader.readNextStartElement()) {
    if (reader.namespaceUri() == QLatin1String(kNamespace)) {
      readOwnElement(reader, raw);
    } else if (reader.name() == u"description") {
      raw.item.notes = readWholeText(reader).trimmed();
    } else if (reader.name() == u"link") {
      raw.link = QUrl(reader.readElementText().trimmed());
    } else if (reader.name() == u"enclosure") {
      readEnclosure(reader.attributes(), raw);
      reader.skipCurrentElement();
    } else {
      reader.skipCurrentElement();
    }
  }
  return raw;
}

bool isVersion(const QString& text) {
  return !text.isEmpty() && text.size() <= kMaxVersionLength;
}

bool isWebPage(const QUrl& url) {
  return url.isValid() && !url.host().isEmpty() &&
         (url.scheme() == "https" || url.scheme() == "http");
}

std::optional<AppcastItem> accepted(RawItem raw) {
  AppcastItem item = std::move(raw.item);
  if (item.version.isEmpty()) item.version = raw.enclosureVersion;
  if (item.shortVersion.isEmpty()) item.shortVersion = raw.enclosureShortVersion;
  if (item.shortVersion.isEmpty()) item.shortVersion = item.version;
  item.page = isWebPage(raw.link) ? raw.link : raw.notesLink;
  const bool isForUs = raw.system.isEmpty() || raw.system == "linux";
  if (!isVersion(item.version) || !isVersion(item.shortVersion) || !isForUs || raw.isOfChannel ||
      !isWebPage(item.page)) {
    return std::nullopt;
  }
  return item;
}

}  // namespace

std::vector<AppcastItem> readAppcast(const QByteArray& xml) {
  QXmlStreamReader reader(xml);
  std::vector<AppcastItem> items;
  bool isFeed = false;
  if (reader.readNextStartElement() && reader.name() == u"rss") {
    while (reader.readNextStartElement()) {
      if (reader.name() != u"channel") {
        reader.skipCurrentElement();
        continue;
      }
      isFeed = true;
      while (reader.readNextStartElement()) {
        if (reader.name() == u"item") {
          if (auto item = accepted(readItem(reader))) items.push_back(std::move(*item));
        } else {
          reader.skipCurrentElement();
        }
      }
    }
  }
  if (!isFeed || reader.hasError()) {
    throw Failure(L("The list of releases could not be read.", "배포 목록을 읽을 수 없습니다."));
  }
  return items;
}

std::optional<AppcastItem> newestAfter(const QString& version,
                                       const std::vector<AppcastItem>& items) {
  std::optional<AppcastItem> newest;
  for (const AppcastItem& item : items) {
    const QString& known = newest ? newest->version : version;
    if (compareVersions(item.version, known) > 0) newest = item;
  }
  return newest;
}

}  // namespace velun
