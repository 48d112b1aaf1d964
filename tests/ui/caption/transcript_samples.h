// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"
#include "ui/caption/transcript_document.h"

#include <QTextBlock>
#include <QTextDocument>

namespace velun::test {

inline Line lineOf(const QString& text, const std::map<QString, QString>& translations = {}) {
  Line line;
  line.text = text;
  for (const auto& [language, translation] : translations)
    line.translations[language] = translation;
  return line;
}

/// The comparable contents of a document: each character and each paragraph with its format.
struct SeenDocument {
  QString text;
  QList<QPair<QString, QTextCharFormat>> runs;
  QList<QTextBlockFormat> blocks;
  QList<QTextCharFormat> blockChars;

  explicit SeenDocument(const QTextDocument& document) : text(document.toPlainText()) {
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
      blocks << block.blockFormat();
      blockChars << block.charFormat();
      for (auto run = block.begin(); !run.atEnd(); ++run) {
        const QTextCharFormat format = run.fragment().charFormat();
        const bool joined = !runs.isEmpty() && run != block.begin() && runs.back().second == format;
        if (joined) {
          runs.back().first += run.fragment().text();
        } else {
          runs.append({run.fragment().text(), format});
        }
      }
      runs.append({QString(u'\n'), block.charFormat()});
    }
  }

  bool operator==(const SeenDocument&) const = default;
};

}  // namespace velun::test
