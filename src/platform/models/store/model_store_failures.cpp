// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/store/model_store_failures.h"

#include "language/localization.h"

#include <cerrno>
#include <QFileDevice>

namespace velun::model_failures {

namespace {

QString megabytes(std::int64_t bytes) {
  return QString::number((bytes + 999'999) / 1'000'000);
}

}  // namespace

ModelFailure unreachable(const QString& host) {
  return ModelFailure([host] {
    return L("The model couldn’t be downloaded: no connection to %1. Check the "
             "network connection, then try again.",
             "모델을 다운로드할 수 없습니다. %1에 연결되지 않습니다. 네트워크 연결을 "
             "확인한 다음 다시 시도하세요.")
        .arg(host);
  });
}

ModelFailure interrupted(const QString& reason) {
  return ModelFailure([reason] {
    return L("The model download was interrupted (%1). Try again to continue it.",
             "모델 다운로드가 중단되었습니다(%1). 다시 시도하면 이어서 받습니다.")
        .arg(reason);
  });
}

ModelFailure refused(int httpStatus) {
  return ModelFailure([httpStatus] {
    return L("The model couldn’t be downloaded: the server returned error %1. "
             "Try again later.",
             "모델을 다운로드할 수 없습니다. 서버가 오류 %1(으)로 응답했습니다. 나중에 "
             "다시 시도하세요.")
        .arg(httpStatus);
  });
}

ModelFailure insecure() {
  return ModelFailure([] {
    return L(
        "The model wasn’t downloaded because its address isn’t secure. Use an HTTPS "
        "address.",
        "주소가 안전하지 않아 모델을 다운로드하지 않았습니다. HTTPS 주소를 사용하세요.");
  });
}

ModelFailure unexpectedFile() {
  return ModelFailure([] {
    return L(
        "The model couldn’t be downloaded: the server offers a different file than "
        "expected. Try again later.",
        "모델을 다운로드할 수 없습니다. 서버의 파일이 예상과 다릅니다. 나중에 다시 "
        "시도하세요.");
  });
}

DamagedModel damaged() {
  return DamagedModel([] {
    return L("The downloaded model was damaged and has been deleted. Try again.",
             "다운로드한 모델이 손상되어 삭제했습니다. 다시 시도하세요.");
  });
}

ModelFailure damagedFiles(const QString& title) {
  return ModelFailure([title] {
    return L("The files of “%1” are damaged. Download it again in Settings.",
             "‘%1’의 파일이 손상되었습니다. 설정에서 다시 다운로드하세요.")
        .arg(title);
  });
}

ModelFailure noSpace(std::int64_t neededBytes, std::int64_t freeBytes) {
  const QString needed = megabytes(neededBytes);
  const QString free = megabytes(freeBytes);
  return ModelFailure([needed, free] {
    return L("There isn’t enough disk space for the model: %1 MB needed, %2 MB "
             "free. Free some space, then try again.",
             "모델을 저장할 디스크 공간이 부족합니다. %1MB가 필요하지만 %2MB만 남아 "
             "있습니다. 공간을 확보한 다음 다시 시도하세요.")
        .arg(needed, free);
  });
}

ModelFailure notSaved(const QString& reason) {
  return ModelFailure([reason] {
    return L("The model couldn’t be saved: %1", "모델을 저장할 수 없습니다: %1").arg(reason);
  });
}

ModelFailure diskFull() {
  return ModelFailure([] {
    return L("The model couldn’t be saved: the disk is full. Free some space, then try again.",
             "디스크가 가득 차서 모델을 저장할 수 없습니다. 공간을 확보한 다음 다시 "
             "시도하세요.");
  });
}

ModelFailure notWritten(const QFileDevice& file) {
  return file.error() == QFileDevice::ResourceError ? diskFull() : notSaved(file.errorString());
}

ModelFailure notWritten(int code) {
  return code == ENOSPC || code == EDQUOT ? diskFull() : notSaved(qt_error_string(code));
}

ModelFailure cancelled() {
  return ModelFailure([] {
    return L("The model download was cancelled. Start captions to download it again.",
             "모델 다운로드를 취소했습니다. 다시 받으려면 자막을 시작하세요.");
  });
}

ModelFailure inUse(ModelKind kind) {
  // A translator stays loaded for two minutes after its last text.
  if (kind == ModelKind::translation) {
    return ModelFailure([] {
      return L("The model is in use. Turn off translation, then try again in two minutes.",
               "모델을 사용하고 있습니다. 번역을 끈 다음 2분 뒤에 다시 시도하세요.");
    });
  }
  return ModelFailure([] {
    return L("The model is in use. Stop captions, then try again.",
             "모델을 사용하고 있습니다. 자막을 중지한 다음 다시 시도하세요.");
  });
}

ModelFailure notRemoved() {
  return ModelFailure([] {
    return L("The model couldn’t be removed. Check the permissions of the models folder.",
             "모델을 삭제할 수 없습니다. 모델 폴더의 접근 권한을 확인하세요.");
  });
}

ModelFailure notRead(const QString& reason) {
  return ModelFailure([reason] {
    return L("The file couldn’t be read: %1", "파일을 읽을 수 없습니다: %1").arg(reason);
  });
}

ModelFailure unknownFile(const QString& name) {
  return ModelFailure([name] {
    return L("“%1” is not a file of a model that Velun knows, or it is damaged. Check "
             "where you downloaded it.",
             "“%1”은(는) Velun이 아는 모델의 파일이 아니거나 손상되었습니다. 내려받은 "
             "곳을 확인하세요.")
        .arg(name);
  });
}

ModelFailure unreadable(int code) {
  const QString reason = qt_error_string(code);
  return ModelFailure([reason] {
    return L("The downloaded model couldn’t be read: %1. Try again.",
             "다운로드한 모델을 읽을 수 없습니다: %1. 다시 시도하세요.")
        .arg(reason);
  });
}

ModelFailure noThread() {
  return ModelFailure([] {
    return L(
        "The model couldn’t be downloaded: the system is out of threads. Close some programs, then "
        "try again.",
        "시스템의 스레드가 부족하여 모델을 다운로드할 수 없습니다. 다른 프로그램을 닫은 다음 "
        "다시 시도하세요.");
  });
}

}  // namespace velun::model_failures
