// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/export_window_controller.h"

#include "language/localization.h"
#include "ui/common/window_presentation.h"
#include "ui/library/export_view.h"
#include "ui/library/save_session_file.h"

namespace velun {

namespace {

constexpr QSize kContentSize(420, 345);

QString windowTitle() {
  return L("Export Session", "세션 내보내기");
}

}  // namespace

ExportWindowController::ExportWindowController(FilePanels panels,
                                               std::function<void(QWidget*)> windowMade)
    : panels_(std::move(panels)), windowMade_(std::move(windowMade)) {}

ExportWindowController::~ExportWindowController() = default;

void ExportWindowController::show(const CaptionSession& session,
                                  std::optional<LineRange> selected) {
  close();
  auto view = std::make_unique<ExportView>(
      session, selected, [this] { close(); },
      [this, session](const ExportOptions& options) { exportSession(session, options); });
  window_ = WindowPresentation::makeWindow(windowTitle(), kContentSize, std::move(view), false);
  window_->setObjectName("Export");
  windowMade_(window_.get());
  WindowPresentation::present(*window_);
}

void ExportWindowController::exportSession(const CaptionSession& session,
                                           const ExportOptions& options) {
  try {
    if (saveSessionFile(session, windowTitle(), options, panels_)) close();
  } catch (const std::exception& error) {
    WindowPresentation::showError(error);
  }
}

void ExportWindowController::updateTitle() {
  if (window_) window_->setWindowTitle(windowTitle());
}

void ExportWindowController::close() {
  if (!window_) return;
  // Deleted later: this may be a slot of one of the window's buttons.
  window_->hide();
  window_.release()->deleteLater();
}

}  // namespace velun
