// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/session_detail_view.h"

#include "language/localization.h"
#include "model/renderings.h"
#include "model/session_store.h"
#include "ui/caption/copy_transcript_button.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/speaker_labels.h"
#include "ui/caption/text_size_gestures.h"
#include "ui/caption/text_size_notice.h"
#include "ui/caption/transcript_view.h"
#include "ui/common/find_bar.h"
#include "ui/library/bilingual_view.h"
#include "ui/library/language_label.h"
#include "ui/library/session_search.h"

#include <algorithm>
#include <QClipboard>
#include <QComboBox>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QScrollBar>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace velun {

namespace {

/// Limits the cost of painting; nobody looks at more matches.
constexpr std::size_t kMaxHighlights = 500;

constexpr QMargins kBarMargins(18, 8, 10, 8);
constexpr int kBarSpacing = 12;
/// The choice after those of `allTranscriptContents`.
constexpr int kSideBySide = static_cast<int>(allTranscriptContents.size());

QWidget* group(QLabel* label, QComboBox* chooser, QWidget* parent) {
  auto* made = new QWidget(parent);
  auto* row = new QHBoxLayout(made);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(8);
  row->addWidget(label);
  row->addWidget(chooser);
  return made;
}

}  // namespace

SessionDetailView::SessionDetailView(AppSettings& settings, Clock& clock, QWidget* parent)
    : QWidget(parent),
      settings_(settings),
      contentLabel_(new QLabel(this)),
      contents_(new QComboBox(this)),
      languageLabel_(new QLabel(this)),
      languages_(new QComboBox(this)),
      copy_(new CopyTranscriptButton([this] { return text(); }, false, clock, this)),
      pages_(new QStackedWidget(this)),
      transcript_(new TranscriptView(this)),
      table_(new BilingualView(this)) {
  contentLabel_->setBuddy(contents_);
  languageLabel_->setBuddy(languages_);
  languages_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  contentGroup_ = group(contentLabel_, contents_, this);
  languageGroup_ = group(languageLabel_, languages_, this);
  bar_ = new QGridLayout;
  bar_->setContentsMargins(kBarMargins);
  bar_->setHorizontalSpacing(kBarSpacing);
  bar_->setVerticalSpacing(6);
  bar_->addWidget(contentGroup_, 0, 0);
  bar_->addWidget(languageGroup_, 0, 1);
  bar_->setColumnStretch(2, 1);
  bar_->addWidget(copy_, 0, 3);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addLayout(bar_);
  // What the commands for one line work on.
  transcript_->setMarksLineAtCursor(true);
  pages_->addWidget(transcript_);
  pages_->addWidget(table_);
  column->addWidget(pages_, 1);

  new TextSizeNotice(settings, clock, *transcript_);
  auto* gestures = new TextSizeGestures(settings, this);
  gestures->watch(*transcript_->textView().viewport());

  connect(contents_, &QComboBox::activated, this, [this](int index) {
    isSideBySide_ = index == kSideBySide;
    content_ = isSideBySide_ ? TranscriptContent::both
                             : allTranscriptContents[static_cast<std::size_t>(index)];
    present();
    Q_EMIT currentLineChanged();
  });
  connect(languages_, &QComboBox::activated, this, [this](int index) {
    const QString chosen = languages_->itemData(index).toString();
    language_ = chosen.isEmpty() ? std::nullopt : std::optional(chosen);
    present();
  });
  connect(&transcript_->textView(), &QTextEdit::cursorPositionChanged, this,
          &SessionDetailView::currentLineChanged);
  connect(table_, &BilingualView::currentLineChanged, this, &SessionDetailView::currentLineChanged);
  connect(&transcript_->textView(), &SelectableTranscriptTextView::menuOpening, this,
          &SessionDetailView::addLineActions);
  connect(transcript_, &TranscriptView::labelClicked, this, &SessionDetailView::labelClicked);
  connect(&settings_, &AppSettings::fontSizeChanged, this, &SessionDetailView::present);
  connect(&Localization::shared(), &Localization::languageChanged, this,
          &SessionDetailView::translate);
  translate();
}

SessionDetailView::~SessionDetailView() = default;

QSize SessionDetailView::minimumSizeHint() const {
  const int first = contentGroup_->sizeHint().width() + kBarSpacing + copy_->sizeHint().width();
  const int width = std::max(first, languageGroup_->sizeHint().width()) + kBarMargins.left() +
                    kBarMargins.right();
  return {width, QWidget::minimumSizeHint().height()};
}

void SessionDetailView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  arrangeBar();
}

void SessionDetailView::arrangeBar() {
  const int oneRow = contentGroup_->sizeHint().width() + languageGroup_->sizeHint().width() +
                     copy_->sizeHint().width() + 3 * kBarSpacing + kBarMargins.left() +
                     kBarMargins.right();
  bar_->removeWidget(languageGroup_);
  if (oneRow <= width()) {
    bar_->addWidget(languageGroup_, 0, 1);
  } else {
    bar_->addWidget(languageGroup_, 1, 0, 1, 4, Qt::AlignLeading);
  }
}

void SessionDetailView::show(std::shared_ptr<const SavedSession> session) {
  if (session == session_ && isVisibleTo(parentWidget()) == (session != nullptr)) return;
  const bool isOther = !session || !session_ || session->url != session_->url;
  session_ = std::move(session);
  if (isOther) {
    language_ = std::nullopt;
    highlighted_.clear();
  }
  setVisible(session_ != nullptr);
  fillLanguages();
  present();
  // A transcript that is opened is read from its beginning.
  if (isOther) transcript_->textView().verticalScrollBar()->setValue(0);
}

void SessionDetailView::highlight(const QString& text) {
  table_->highlight(text);
  if (isSideBySide_ && text != highlighted_) table_->showMatchAtEnd(false);
  QTextEdit& view = transcript_->textView();
  QList<QTextEdit::ExtraSelection> marks;
  for (const TextRange& range : matchesIn(view.toPlainText(), text, kMaxHighlights)) {
    QTextEdit::ExtraSelection mark;
    mark.cursor = QTextCursor(view.document());
    mark.cursor.setPosition(static_cast<int>(range.position));
    mark.cursor.setPosition(static_cast<int>(range.position + range.length),
                            QTextCursor::KeepAnchor);
    mark.format.setBackground(QColor(0xFF, 0xD5, 0x4A));
    mark.format.setForeground(Qt::black);
    marks.append(mark);
  }
  view.setExtraSelections(marks);
  if (text != highlighted_ && !marks.isEmpty()) {
    showMatch(marks.constFirst().cursor);
  }
  highlighted_ = text;
}

void SessionDetailView::showMatch(QTextCursor match) {
  QTextEdit& view = transcript_->textView();
  match.setPosition(match.selectionStart());
  view.setTextCursor(match);
  view.ensureCursorVisible();
  // Keep some context visible around the match.
  QScrollBar& bar = *view.verticalScrollBar();
  bar.setValue(bar.value() + view.cursorRect().center().y() - view.viewport()->height() / 2);
}

bool SessionDetailView::stepToMatch(bool forward) {
  if (isSideBySide_) return table_->stepToMatch(forward);
  QTextEdit& view = transcript_->textView();
  const int place = view.textCursor().selectionStart();
  std::optional<QTextCursor> next;
  for (const QTextEdit::ExtraSelection& mark : view.extraSelections()) {
    const int start = mark.cursor.selectionStart();
    // They are in the order of the text.
    if (forward ? start > place && !next : start < place) next = mark.cursor;
  }
  if (next) showMatch(*next);
  return next.has_value();
}

void SessionDetailView::showMatchAtEnd(bool last) {
  if (isSideBySide_) return table_->showMatchAtEnd(last);
  const auto marks = transcript_->textView().extraSelections();
  if (!marks.isEmpty()) showMatch(last ? marks.constLast().cursor : marks.constFirst().cursor);
}

void SessionDetailView::translate() {
  contentLabel_->setText(L("Show", "표시 내용"));
  contents_->setAccessibleName(contentLabel_->text());
  contents_->setToolTip(contentLabel_->text());
  languageLabel_->setText(L("Translation Language", "번역 언어"));
  languages_->setAccessibleName(languageLabel_->text());
  languages_->setToolTip(languageLabel_->text());
  fillContents();
  fillLanguages();
  present();
}

void SessionDetailView::fillContents() {
  contents_->clear();
  for (const TranscriptContent content : allTranscriptContents) contents_->addItem(title(content));
  contents_->addItem(L("Side by Side", "나란히"));
  contents_->setCurrentIndex(isSideBySide_ ? kSideBySide : static_cast<int>(content_));
}

void SessionDetailView::fillLanguages() {
  languages_->clear();
  languages_->addItem(L("All Translation Languages", "모든 번역 언어"), QString());
  if (session_) {
    for (const QString& language : session_->session.translationLanguages()) {
      languages_->addItem(languageLabel(language), language);
    }
  }
  const int chosen = languages_->findData(language_.value_or(QString()));
  if (chosen < 0) language_ = std::nullopt;
  languages_->setCurrentIndex(std::max(chosen, 0));
  arrangeBar();
}

void SessionDetailView::present() {
  TranscriptInputs inputs;
  inputs.session = session_ ? &session_->session : nullptr;
  inputs.fontSize = settings_.fontSize();
  inputs.content = content_;
  inputs.language = language_;
  inputs.showsMetadata = true;
  if (session_) {
    const bool isOnDark = palette().color(QPalette::Base).lightness() < 128;
    inputs.labelOf = [speakers =
                          SpeakerLabels(session_->session.lines, isOnDark)](const Line& line) {
      return speakers.labelOf(line);
    };
  }
  transcript_->update(inputs);
  table_->show(
      isSideBySide_ && session_ ? sessionTable(session_->session, tableOptions()) : SessionTable(),
      settings_.fontSize());
  pages_->setCurrentWidget(isSideBySide_ ? static_cast<QWidget*>(table_) : transcript_);
  if (!highlighted_.isEmpty()) highlight(highlighted_);
}

const Line* SessionDetailView::currentLine() const {
  if (!session_) return nullptr;
  const auto index = isSideBySide_ ? table_->currentLine() : transcript_->lineAtCursor();
  return index && *index < session_->session.lines.size() ? &session_->session.lines[*index]
                                                          : nullptr;
}

void SessionDetailView::copyCurrentLine() {
  const Line* line = currentLine();
  if (line) QGuiApplication::clipboard()->setText(renderTranscript(*line, content_, language_));
}

std::optional<LineRange> SessionDetailView::selectedLines() const {
  return isSideBySide_ ? table_->selectedLines() : transcript_->selectedLines();
}

bool SessionDetailView::openFindBar() {
  if (!isSideBySide_) transcript_->openFindBar();
  return !isSideBySide_;
}

bool SessionDetailView::stepInFindBar(bool forward) {
  FindBar* bar = transcript_->findBar();
  if (!bar || !bar->isVisible() || !bar->isAncestorOf(window()->focusWidget())) return false;
  forward ? bar->findNext() : bar->findPrevious();
  return true;
}

ExportOptions SessionDetailView::tableOptions() const {
  return {.format = SessionFormat::html, .content = content_, .language = language_};
}

ExportOptions SessionDetailView::printOptions() const {
  ExportOptions options = tableOptions();
  options.lines = selectedLines();
  return options;
}

void SessionDetailView::setLineActions(const QList<QAction*>& actions) {
  lineActions_ = actions;
  table_->addActions(actions);
}

void SessionDetailView::addLineActions(QMenu& menu, const QPoint& position) {
  SelectableTranscriptTextView& view = transcript_->textView();
  // The actions work on the line under the pointer.
  if (!view.hasSelection()) view.setTextCursor(view.cursorForPosition(position));
  menu.addSeparator();
  menu.addActions(lineActions_);
}

QString SessionDetailView::text() const {
  return session_ ? session_->session.transcript(content_, language_) : QString();
}

}  // namespace velun
