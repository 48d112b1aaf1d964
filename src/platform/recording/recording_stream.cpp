// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/recording/recording_stream.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"

#include <cstring>
#include <QFileInfo>
#include <span>
#include <system_error>
#include <unistd.h>

namespace velun {

namespace {

using namespace std::chrono_literals;

/// A disk that sleeps, or a recording that comes over a slow network folder. A stream may pause for
/// as long as it likes.
constexpr auto kWait = 1s;

/// %1 is the name of the recording.
QString textOf(RecordingFault fault) {
  switch (fault) {
    case RecordingFault::notFound:
      return L("“%1” doesn’t exist.", "“%1” 파일이 없습니다.");
    case RecordingFault::noPermission:
      return L("You don’t have permission to read “%1”.", "“%1” 파일을 읽을 권한이 없습니다.");
    case RecordingFault::unreadable:
      return L("“%1” couldn’t be read.", "“%1” 파일을 읽을 수 없습니다.");
    case RecordingFault::noSound:
      return L("“%1” has no sound.", "“%1” 파일에 소리가 없습니다.");
    case RecordingFault::unknownCodec:
      return L("The sound of “%1” has a format that can’t be decoded on this computer.",
               "“%1” 파일의 소리 형식은 이 컴퓨터에서 재생할 수 없습니다.");
    case RecordingFault::none:
    case RecordingFault::notRecording:
      break;
  }
  return L("“%1” isn’t a sound or video file, or it is damaged.",
           "“%1” 파일은 소리나 동영상 파일이 아니거나 손상되었습니다.");
}

}  // namespace

RecordingStream::RecordingStream(const QString& program, const QString& path)
    : name_(path == standardInput() ? L("The standard input", "표준 입력")
                                    : QFileInfo(path).fileName()) {
  const QStringList command{program, QString::number(getpid()), path};
  try {
    pipeline_ = std::make_unique<ProcessPipeline>(std::vector<QStringList>{command});
  } catch (const std::system_error&) {
    throw Failure(L("The program that reads recordings can’t be started. Install Velun again.",
                    "녹음을 읽는 프로그램을 시작할 수 없습니다. Velun을 다시 설치하세요."));
  }
}

void RecordingStream::open() {
  read(sizeof header_);
  std::memcpy(&header_, bytes_.constData(), sizeof header_);
  bytes_.remove(0, sizeof header_);
  if (header_.fault != RecordingFault::none) throw Failure(textOf(header_.fault).arg(name_));
}

QString RecordingStream::standardInput() {
  return QStringLiteral("/proc/%1/fd/0").arg(getpid());
}

std::optional<double> RecordingStream::duration() const {
  return header_.duration < 0 ? std::nullopt : std::optional(header_.duration);
}

std::vector<float> RecordingStream::next() {
  std::uint32_t count = 0;
  read(sizeof count);
  std::memcpy(&count, bytes_.constData(), sizeof count);
  if (count == kBrokenOff) {
    throw Failure(L("The rest of “%1” can’t be read: the file is damaged, or its disk was removed.",
                    "“%1” 파일의 나머지를 읽을 수 없습니다. 파일이 손상되었거나 디스크가 "
                    "분리되었습니다.")
                      .arg(name_));
  }
  const auto size = static_cast<qsizetype>(count * sizeof(float));
  read(static_cast<qsizetype>(sizeof count) + size);
  std::vector<float> samples(count);
  // At the end there are none, and then no place to copy them to.
  if (count > 0) {
    std::memcpy(samples.data(), bytes_.constData() + sizeof count, static_cast<std::size_t>(size));
  }
  bytes_.remove(0, static_cast<qsizetype>(sizeof count) + size);
  return samples;
}

void RecordingStream::interrupt() {
  isInterrupted_ = true;
  pipeline_->interrupt();
}

/// Waits until `count` bytes have arrived.
void RecordingStream::read(qsizetype count) {
  std::span<const char> nothing;
  while (bytes_.size() < count) {
    const ProcessPipeline::Event event = pipeline_->exchange(nothing, bytes_, kWait);
    if (isInterrupted_) throw Cancelled();
    if (event != ProcessPipeline::Event::ended || bytes_.size() >= count) continue;
    throw Failure(L("“%1” can’t be read any further: the program that decodes it has ended.",
                    "“%1” 파일을 더 읽을 수 없습니다. 파일을 해독하는 프로그램이 종료되었습니다.")
                      .arg(name_));
  }
}

}  // namespace velun
