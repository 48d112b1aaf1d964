// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/capture_failure.h"

#include "language/localization.h"

#include <cerrno>

namespace velun {

namespace {

QString stage(CaptureProblem problem, AudioTarget::Kind kind) {
  const bool isOutput = kind != AudioTarget::Kind::input;
  if (problem == CaptureProblem::lost) {
    return L("Audio capture was interrupted.", "오디오 캡처가 중단되었습니다.");
  }
  if (problem == CaptureProblem::noDevice || problem == CaptureProblem::noSessionManager) {
    return isOutput ? L("Output device lookup failed.", "출력 장치 조회 실패.")
                    : L("Microphone lookup failed.", "마이크 조회 실패.");
  }
  return isOutput ? L("Audio start failed.", "오디오 시작 실패.")
                  : L("Microphone start failed.", "마이크 시작 실패.");
}

QString noDevice(AudioTarget::Kind kind) {
  if (kind != AudioTarget::Kind::input) {
    return L("No output device was found. Connect one, or turn one on in the sound settings.",
             "출력 장치를 찾을 수 없습니다. 장치를 연결하거나 사운드 설정에서 켜세요.");
  }
  return L("No microphone was found. Connect one, or turn one on in the sound settings.",
           "마이크를 찾을 수 없습니다. 마이크를 연결하거나 사운드 설정에서 켜세요.");
}

QString reason(CaptureProblem problem, AudioTarget::Kind kind) {
  switch (problem) {
    case CaptureProblem::outOfResources:
      return L(
          "The system is out of memory, threads or file descriptors. Close other programs, "
          "then try again.",
          "메모리, 스레드 또는 파일 디스크립터가 부족합니다. 다른 프로그램을 닫고 다시 "
          "시도하세요.");
    case CaptureProblem::notConfigured:
      return L("The configuration of the sound server (PipeWire) is missing. Reinstall PipeWire.",
               "사운드 서버(PipeWire)의 설정 파일이 없습니다. PipeWire를 다시 설치하세요.");
    case CaptureProblem::notRunning:
      return L("The sound server (PipeWire) is not running. Start it, or log in again.",
               "사운드 서버(PipeWire)가 실행되고 있지 않습니다. 서버를 시작하거나 다시 "
               "로그인하세요.");
    case CaptureProblem::notAnswering:
      return L("The sound server (PipeWire) is not responding. Restart it, or log in again.",
               "사운드 서버(PipeWire)가 응답하지 않습니다. 서버를 다시 시작하거나 다시 "
               "로그인하세요.");
    case CaptureProblem::noSessionManager:
      return L(
          "The session manager of the sound server (PipeWire) is not running. Start it, or "
          "log in again.",
          "사운드 서버(PipeWire)의 세션 관리자가 실행되고 있지 않습니다. 세션 관리자를 "
          "시작하거나 다시 로그인하세요.");
    case CaptureProblem::noDevice:
      return noDevice(kind);
    case CaptureProblem::refused:
      return L("The sound server (PipeWire) refused the recording. Restart it, or log in again.",
               "사운드 서버(PipeWire)가 녹음을 거부했습니다. 서버를 다시 시작하거나 다시 "
               "로그인하세요.");
    case CaptureProblem::lost:
      return L("The sound server (PipeWire) did not come back. Start captions again once it works.",
               "사운드 서버(PipeWire)가 복구되지 않았습니다. 복구된 뒤 자막을 다시 시작하세요.");
  }
  return {};
}

}  // namespace

CaptureProblem problemOf(int status) {
  switch (-status) {
    case EMFILE:
    case ENFILE:
    case ENOMEM:
    case EAGAIN:
      return CaptureProblem::outOfResources;
    case ENOENT:
      return CaptureProblem::notConfigured;
    default:
      return CaptureProblem::notRunning;
  }
}

QString describe(CaptureProblem problem, AudioTarget::Kind kind) {
  return stage(problem, kind) + u' ' + reason(problem, kind);
}

}  // namespace velun
