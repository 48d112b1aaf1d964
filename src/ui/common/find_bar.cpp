// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/find_bar.h"

#include "language/localization.h"
#include "ui/common/editing_keys.h"
#include "ui/common/notice_label.h"
#include "ui/common/symbol.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTextDocument>
#include <QTextEdit>
#include <QToolButton>

namespace velun {

namespace {

constexpr char kCaptionStyle[] = R"(
QLineEdit { background: rgba(255,255,255,26); border: 1px solid rgba(255,255,255,140);
            border-radius: 7px; padding: 4px 8px; selection-background-color: #3d6ea8; }
QLineEdit:focus { border: 2px solid #5ea8ff; padding: 3px 7px; }
QLabel { color: rgba(255,255,255,166); }
QToolButton { background: transparent; border: none; border-radius: 7px; }
QToolButton:hover { background: rgba(255,255,255,26); }
QToolButton:pressed { background: rgba(255,255,255,46); }
QToolButton:focus { border: 2px solid #5ea8ff; }
)";

constexpr QColor kCaptionHint(255, 255, 255, 166);

QString notFound() {
  return L("Not found", "찾을 수 없음");
}

}  // namespace

FindBar::FindBar(QTextEdit& text, bool captionStyle, QWidget* parent)
    : QWidget(parent),
      text_(text),
      captionStyle_(captionStyle),
      field_(new QLineEdit(this)),
      outcome_(new NoticeLabel(this)) {
  keepEditingKeys(*field_);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(14, 4, 14, 10);
  row->setSpacing(6);
  row->addWidget(field_, 1);
  row->addWidget(outcome_);
  previous_ = makeButton(QStringLiteral("chevron.up"));
  next_ = makeButton(QStringLiteral("chevron.down"));
  done_ = makeButton(QStringLiteral("xmark"));
  if (captionStyle) {
    setStyleSheet(QString::fromLatin1(kCaptionStyle));
    // Not in the style sheet, which would halve the opacity of the placeholder text.
    QPalette colors = field_->palette();
    colors.setColor(QPalette::Text, Qt::white);
    colors.setColor(QPalette::PlaceholderText, kCaptionHint);
    field_->setPalette(colors);
  }
  connect(field_, &QLineEdit::textEdited, this, [this] {
    QTextCursor cursor = text_.textCursor();
    cursor.setPosition(cursor.selectionStart());
    text_.setTextCursor(cursor);
    findNext();
  });
  connect(&text_, &QTextEdit::textChanged, outcome_, [this] { outcome_->setNotice({}); });
  connect(previous_, &QToolButton::clicked, this, &FindBar::findPrevious);
  connect(next_, &QToolButton::clicked, this, &FindBar::findNext);
  connect(done_, &QToolButton::clicked, this, &FindBar::close);
  connect(&Localization::shared(), &Localization::languageChanged, this, &FindBar::translate);
  translate();
  hide();
}

QToolButton* FindBar::makeButton(const QString& symbol) {
  auto* button = new QToolButton(this);
  button->setIcon(symbolIcon(symbol, captionStyle_ ? QColor(Qt::white) : QColor()));
  button->setAutoRaise(true);
  button->setMinimumSize(28, 28);
  button->setFocusPolicy(Qt::TabFocus);
  layout()->addWidget(button);
  return button;
}

void FindBar::translate() {
  const auto name = [](QWidget* control, const QString& text) {
    control->setToolTip(text);
    control->setAccessibleName(text);
  };
  field_->setPlaceholderText(L("Find", "찾기"));
  name(field_, L("Find in Captions", "자막에서 찾기"));
  name(previous_, L("Find Previous", "이전 항목 찾기"));
  name(next_, L("Find Next", "다음 항목 찾기"));
  name(done_, L("Close", "닫기"));
  if (!outcome_->text().isEmpty()) outcome_->setNotice(notFound());
}

void FindBar::open() {
  const QString selected = text_.textCursor().selectedText();
  if (!selected.isEmpty() && !selected.contains(QChar::ParagraphSeparator)) {
    field_->setText(selected);
  }
  show();
  field_->setFocus(Qt::ShortcutFocusReason);
  field_->selectAll();
}

void FindBar::close() {
  hide();
  text_.setFocus(Qt::OtherFocusReason);
}

void FindBar::findNext() {
  find(false);
}

void FindBar::findPrevious() {
  find(true);
}

void FindBar::find(bool backward) {
  const QString wanted = field_->text();
  outcome_->setNotice({});
  if (wanted.isEmpty()) return;
  QTextDocument::FindFlags flags;
  flags.setFlag(QTextDocument::FindBackward, backward);
  QTextCursor found = text_.document()->find(wanted, text_.textCursor(), flags);
  if (found.isNull()) {
    QTextCursor edge(text_.document());
    if (backward) edge.movePosition(QTextCursor::End);
    found = text_.document()->find(wanted, edge, flags);
  }
  if (found.isNull()) {
    outcome_->setNotice(notFound());
  } else {
    text_.setTextCursor(found);
  }
}

void FindBar::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Escape:
      close();
      break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      find(event->modifiers().testFlag(Qt::ShiftModifier));
      break;
    default:
      QWidget::keyPressEvent(event);
  }
}

}  // namespace velun
