// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/pictures/shown_windows.h"

#include "language/localization.h"
#include "model/session_file/session_file.h"
#include "support/settle.h"
#include "support/steady_picture.h"
#include "ui/common/window_presentation.h"
#include "ui/library/export_view.h"
#include "ui/library/history_view.h"
#include "ui/library/recordings_view.h"
#include "ui/menubar/about_view.h"
#include "ui/menubar/update_view.h"

#include <chrono>
#include <QFile>
#include <QListWidget>
#include <QSignalSpy>
#include <QTest>

namespace velun::test {

namespace {

using namespace std::chrono_literals;

constexpr int kTimeout = 60'000;

struct Spoken {
  const char* english;
  const char* korean;
};

constexpr Spoken kLecture[] = {
    {"Today we talk about rivers.", "오늘은 강에 대해 이야기합니다."},
    {"A river never stands still.", "강은 결코 멈춰 있지 않습니다."},
    {"It carries sand from the hills down to the sea.", "언덕에서 바다까지 모래를 실어 나릅니다."},
    {"In 1953 the flood moved more than 40 million tons in one night.",
     "1953년 홍수는 하룻밤에 4천만 톤 넘게 옮겼습니다."},
    {"Does anybody know where all of it went?", "그것이 다 어디로 갔는지 아는 사람 있나요?"},
    {"Most of it lies under the harbour.", "대부분은 항구 아래에 있습니다."}};

CaptionSession sampleSession(const QString& title, Instant start, bool isTranslated) {
  CaptionSession session;
  session.title = title;
  session.startedAt = start;
  auto time = start;
  for (const Spoken& spoken : kLecture) {
    Line line;
    line.text = QString::fromUtf8(spoken.english);
    line.time = time += 7s;
    line.sourceLanguage = "en_US";
    line.input = AudioInput::computer;
    if (isTranslated) line.translations["ko"] = QString::fromUtf8(spoken.korean);
    session.lines.push_back(line);
  }
  return session;
}

/// Lists a folder again, and waits for it.
void load(HistoryViewModel& model, HistoryWindowController& window) {
  QSignalSpy reloaded(&model, &HistoryViewModel::reloaded);
  window.show();
  if (!reloaded.wait(kTimeout)) throw std::runtime_error("the sessions were not listed");
}

QImage pictureNow(QWidget& window, int scale) {
  QImage picture(window.size() * scale, QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::transparent);
  window.render(&picture);
  return picture;
}

}  // namespace

QImage pictureOf(QWidget& window, int scale) {
  return steadyPicture([&window, scale] { return pictureNow(window, scale); });
}

const QStringList& ShownWindows::names() {
  static const QStringList all{"library",    "library-empty", "general",     "captions",
                               "appearance", "models",        "translation", "sessions",
                               "export",     "recordings",    "about",       "updates"};
  return all;
}

ShownWindows::ShownWindows(AppLanguage language)
    : fixture_(ModelCatalogue::builtIn()),
      services_(fixture_.services()),
      commands_(fixture_.captions, [] { return WindowState{.canClickThrough = true}; }),
      shortcuts_(commands_, keys_, fixture_.preferences),
      history_(SessionStore{QUrl::fromLocalFile(folder_.path())}, [](const QUrl&) {}),
      noHistory_(SessionStore{QUrl::fromLocalFile(emptyFolder_.path())}, [](const QUrl&) {}),
      library_(history_, fixture_.settings, {}, fixture_.clock),
      emptyLibrary_(noHistory_, fixture_.settings, {}, fixture_.clock),
      settings_(fixture_.captions, [] {}, nullptr, &services_,
                {.audio = &audio_, .login = &login_, .shortcuts = &shortcuts_}),
      recordings_(
          fixture_.settings, SessionStore{QUrl::fromLocalFile(recordingsFolder_.path())},
          [this](const QString&, const QString&, Instant) { return makeSource(); },
          fixture_.translation, fixture_.clock) {
  fixture_.settings.setLanguage(language);
  fixture_.store.setInstalled(fixture_.catalogue.ofKind(ModelKind::recognition).front());
  fixture_.clock.advance(10h);
  writeSessions();
}

QWidget& ShownWindows::show(const QString& name) {
  if (name == "library") return library();
  if (name == "library-empty") return emptyLibrary();
  if (name == "export") return exporting();
  if (name == "recordings") return recordings();
  if (name == "about") return about();
  if (name == "updates") return updates();
  return settings(static_cast<int>(names().indexOf(name) - names().indexOf("general")));
}

void ShownWindows::writeSessions() const {
  const char* titles[] = {"Hydrology Lecture", "Weekly Call", "Caption Session", "자막 세션"};
  const int days[] = {0, 1, 4, 40};
  for (int i = 0; i < 4; ++i) {
    QFile file(folder_.filePath(QStringLiteral("%1.json").arg(i)));
    if (!file.open(QFile::WriteOnly)) throw std::runtime_error("cannot write a session");
    const Instant start = fixture_.clock.now() - std::chrono::days(days[i]) - 2h;
    file.write(encodeSession(sampleSession(QString::fromUtf8(titles[i]), start, i != 1)));
  }
}

QWidget& ShownWindows::library() {
  load(history_, library_);
  history_.select(history_.sessions().front()->url);
  return library_.window();
}

QWidget& ShownWindows::emptyLibrary() {
  load(noHistory_, emptyLibrary_);
  return emptyLibrary_.window();
}

QWidget& ShownWindows::settings(int page) {
  if (!QTest::qWaitFor([this] { return !fixture_.captions.locales().isEmpty(); }, kTimeout)) {
    throw std::runtime_error("no languages were listed");
  }
  settings_.show();
  settings_.window().findChild<QListWidget*>()->setCurrentRow(page);
  return settings_.window();
}

QWidget& ShownWindows::exporting() {
  return showDialog(std::make_unique<ExportView>(
                        sampleSession("Hydrology Lecture", fixture_.clock.now(), true),
                        std::nullopt, [] {}, [](const ExportOptions&) {}),
                    {420, 345});
}

std::unique_ptr<CaptionSource> ShownWindows::makeSource() {
  auto source = std::make_unique<ScriptedSource>();
  source_ = source.get();
  return source;
}

/// One is done, one has failed, one is captioned and one waits.
QWidget& ShownWindows::recordings() {
  recordings_.add({"/recordings/Hydrology Lecture.mp4", "/recordings/Notes.m4a",
                   "/recordings/Interview with Professor Kim.ogg", "/recordings/Weekly Call.mkv"});
  source_->say(QString::fromUtf8(kLecture[0].english));
  Q_EMIT source_->ended(std::nullopt);
  settle();
  Q_EMIT source_->ended(L("“Notes.m4a” isn’t a sound or video file, or it is damaged.",
                          "“Notes.m4a” 파일은 소리나 동영상 파일이 아니거나 손상되었습니다."));
  settle();
  fixture_.clock.advance(60s);
  Q_EMIT source_->advanced(750, 2700);
  return showDialog(std::make_unique<RecordingsView>(recordings_, RecordingsView::Actions{}),
                    {520, 420});
}

QWidget& ShownWindows::about() {
  const std::vector<Credit> credits{{"Qt 6", "LGPL-3.0-only"}, {"PipeWire", "MIT"}};
  return showDialog(std::make_unique<AboutView>("1.0", credits), {420, 520});
}

QWidget& ShownWindows::updates() {
  auto view = std::make_unique<UpdateView>([](const QUrl&) {}, [] {});
  view->show(UpToDate{"1.0"});
  return showDialog(std::move(view), {460, 320});
}

QWidget& ShownWindows::showDialog(std::unique_ptr<QWidget> content, QSize size) {
  dialog_ = WindowPresentation::makeWindow({}, size, std::move(content), false);
  dialog_->show();
  return *dialog_;
}

}  // namespace velun::test
