// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/language_popup.h"

#include "language/localization.h"
#include "ui/common/editing_keys.h"
#include "ui/common/input_method_relay.h"
#include "ui/common/language_choice_delegate.h"
#include "ui/common/language_choice_model.h"
#include "ui/common/notice_label.h"

#include <algorithm>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>

namespace velun {

namespace {

constexpr int kMaxRows = 11;
constexpr int kMinWidth = 280;
constexpr int kMargin = 6;
/// The largest part of the screen’s height and width that it covers.
constexpr double kMaxHeightShare = 0.6;
constexpr double kMaxWidthShare = 0.5;

bool movesInList(int key) {
  return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp ||
         key == Qt::Key_PageDown;
}

bool movesToAnEnd(int key) {
  return key == Qt::Key_Home || key == Qt::Key_End;
}

bool isTyped(const QKeyEvent& key) {
  const bool isText = !key.text().isEmpty() && key.text().at(0).isPrint();
  const bool isCommand = key.modifiers() & (Qt::ControlModifier | Qt::AltModifier);
  return (isText && !isCommand) || key.key() == Qt::Key_Backspace;
}

/// A Wayland compositor places every window but popups, and gives those the keyboard. On X11 input
/// methods do not work in a popup.
Qt::WindowType popupType() {
  return QGuiApplication::platformName().startsWith(u"wayland") ? Qt::Popup : Qt::Tool;
}

}  // namespace

LanguagePopup::LanguagePopup(QWidget* parent)
    : QWidget(parent, popupType() | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      choices_(new LanguageChoiceModel(this)),
      search_(new QLineEdit(this)),
      list_(new QListView(this)),
      notice_(new NoticeLabel(this)) {
  setAttribute(Qt::WA_QuitOnClose, false);
  // A click on what opened it only closes it.
  setAttribute(Qt::WA_NoMouseReplay);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  column->setSpacing(kMargin);
  column->addWidget(search_);
  column->addWidget(list_);
  column->addWidget(notice_);
  keepEditingKeys(*search_);
  search_->setClearButtonEnabled(true);
  search_->installEventFilter(this);
  list_->installEventFilter(this);
  list_->setModel(choices_);
  list_->setItemDelegate(new LanguageChoiceDelegate(list_));
  list_->setFrameShape(QFrame::NoFrame);
  list_->setUniformItemSizes(true);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  if (windowType() == Qt::Popup) relay_ = new InputMethodRelay(*this, *search_);
  connect(search_, &QLineEdit::textChanged, this, &LanguagePopup::filter);
  connect(list_, &QListView::clicked, this, &LanguagePopup::chooseCurrentRow);
}

void LanguagePopup::open(const QString& title, std::vector<LanguageChoice> choices,
                         const QString& current, const QRect& anchor, const QString& typed) {
  setWindowTitle(title);
  setAccessibleName(title);
  list_->setAccessibleName(title);
  const QString hint = L("Search Languages", "언어 검색");
  search_->setPlaceholderText(hint);
  search_->setAccessibleName(hint);
  current_ = current;
  search_->clear();
  choices_->setChoices(std::move(choices), current);
  search_->setText(typed);
  filter();
  place(anchor);
  wasActive_ = false;
  if (relay_) relay_->begin();
  show();
  raise();
  activateWindow();
  search_->setFocus(Qt::PopupFocusReason);
  Q_EMIT opened();
}

void LanguagePopup::addTyped(const QString& text) {
  search_->insert(text);
}

void LanguagePopup::place(const QRect& anchor) {
  const QScreen* screen = QGuiApplication::screenAt(anchor.center());
  const QRect area = (screen ? screen : this->screen())->availableGeometry();
  const int rowHeight = std::max(1, list_->sizeHintForRow(0));
  const int rows = std::clamp(choices_->rowCount(), 1, kMaxRows);
  const int others = sizeHint().height() - list_->sizeHint().height();
  const int height = std::min(others + rows * rowHeight + 2 * list_->frameWidth(),
                              static_cast<int>(area.height() * kMaxHeightShare));
  const int wanted =
      list_->sizeHintForColumn(0) + list_->verticalScrollBar()->sizeHint().width() + 2 * kMargin;
  const int width = std::min(std::max({wanted, anchor.width(), kMinWidth}),
                             static_cast<int>(area.width() * kMaxWidthShare));
  const bool fitsBelow = anchor.bottom() + 1 + height <= area.bottom() + 1;
  const int top = fitsBelow ? anchor.bottom() + 1 : anchor.top() - height;
  const int left =
      layoutDirection() == Qt::LeftToRight ? anchor.left() : anchor.right() + 1 - width;
  setGeometry(std::clamp(left, area.left(), area.right() + 1 - width),
              std::clamp(top, area.top(), area.bottom() + 1 - height), width, height);
}

void LanguagePopup::filter() {
  choices_->setFilter(search_->text());
  const int row = search_->text().isEmpty() ? choices_->rowOf(current_) : 0;
  selectRow(std::max(0, row));
  notice_->setNotice(choices_->rowCount() == 0 ? L("No language found", "찾는 언어가 없습니다")
                                               : QString());
}

void LanguagePopup::selectRow(int row) {
  const QModelIndex index = choices_->index(row, 0);
  list_->setCurrentIndex(index);
  list_->scrollTo(index, QAbstractItemView::EnsureVisible);
}

void LanguagePopup::chooseCurrentRow() {
  const QModelIndex row = list_->currentIndex();
  if (!row.isValid()) return;
  const QString identifier = row.data(LanguageChoiceModel::identifierRole).toString();
  hide();
  Q_EMIT chosen(identifier);
}

bool LanguagePopup::event(QEvent* event) {
  if (event->type() == QEvent::WindowActivate) wasActive_ = true;
  // The window manager may activate it only some time after it is shown, and may activate another
  // window for a moment.
  if (event->type() == QEvent::WindowDeactivate && wasActive_) {
    QMetaObject::invokeMethod(this, &LanguagePopup::closeUnlessActive, Qt::QueuedConnection);
  }
  return QWidget::event(event);
}

void LanguagePopup::closeUnlessActive() {
  // It may have been closed and opened again meanwhile. In some styles isActiveWindow() is true
  // when the window below it is the active one.
  if (wasActive_ && QApplication::activeWindow() != this) hide();
}

void LanguagePopup::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  if (relay_) relay_->end();
  Q_EMIT closed();
}

void LanguagePopup::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Window));
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

bool LanguagePopup::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (anyKey(key)) return true;
    return watched == search_ ? searchKey(key) : listKey(key);
  }
  // Otherwise the window's shortcuts get Escape and Enter first.
  if (event->type() == QEvent::ShortcutOverride) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter) event->accept();
  }
  return QWidget::eventFilter(watched, event);
}

bool LanguagePopup::anyKey(const QKeyEvent& key) {
  switch (key.key()) {
    case Qt::Key_Escape:
      hide();
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      chooseCurrentRow();
      return true;
    default:
      return false;
  }
}

bool LanguagePopup::searchKey(const QKeyEvent& key) {
  const bool isForList =
      movesInList(key.key()) || (movesToAnEnd(key.key()) && search_->text().isEmpty());
  if (isForList) moveInList(key);
  return isForList;
}

bool LanguagePopup::listKey(const QKeyEvent& key) {
  const bool leavesList = key.key() == Qt::Key_Up && list_->currentIndex().row() == 0;
  if (!leavesList && !isTyped(key)) return false;
  search_->setFocus(Qt::OtherFocusReason);
  if (!leavesList) {
    QKeyEvent copy(key.type(), key.key(), key.modifiers(), key.text());
    QApplication::sendEvent(search_, &copy);
  }
  return true;
}

void LanguagePopup::moveInList(const QKeyEvent& key) {
  // The list gets the focus, so that screen readers read the rows.
  list_->setFocus(Qt::OtherFocusReason);
  QKeyEvent copy(key.type(), key.key(), key.modifiers());
  QApplication::sendEvent(list_, &copy);
}

}  // namespace velun
