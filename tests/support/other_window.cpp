// SPDX-License-Identifier: GPL-3.0-or-later
// A window of another program: other_window COLOUR [--fullscreen]. Says on the standard output what
// reaches it: "clicked", "typed TEXT".

#include <cstdio>
#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QWidget>

namespace {

class OtherWindow final : public QWidget {
 public:
  explicit OtherWindow(const QColor& color) : color_(color) {}

 protected:
  void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), color_); }
  void mousePressEvent(QMouseEvent*) override { say("clicked"); }
  void keyPressEvent(QKeyEvent* event) override { say("typed " + event->text().toUtf8()); }

 private:
  static void say(const QByteArray& text) {
    std::puts(text.constData());
    std::fflush(stdout);
  }

  QColor color_;
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  const QStringList arguments = QApplication::arguments();
  OtherWindow window{QColor(arguments.value(1))};
  window.setWindowTitle(QStringLiteral("Another program"));
  window.resize(1200, 760);
  if (arguments.contains(QStringLiteral("--fullscreen"))) {
    window.showFullScreen();
  } else {
    window.show();
  }
  return QApplication::exec();
}
