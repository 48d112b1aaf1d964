// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/relay_texts.h"

#include "language/localization.h"

namespace velun::relay_texts {

QString notLoaded(const QString& title, const QString& next) {
  return L(
      QString("“%1” couldn’t be loaded. Captions continue with “%2”.").arg(title, next),
      QString("‘%1’을(를) 불러올 수 없습니다. ‘%2’(으)로 자막을 계속합니다.").arg(title, next));
}

QString stopped(const QString& title, const QString& next) {
  return L(QString("“%1” stopped repeatedly. Captions continue with “%2”.").arg(title, next),
           QString("‘%1’이(가) 반복해서 중단되었습니다. ‘%2’(으)로 자막을 계속합니다.")
               .arg(title, next));
}

QString changed(const QString& title) {
  return L(QString("Captions now use “%1”.").arg(title),
           QString("이제 ‘%1’(으)로 자막을 만듭니다.").arg(title));
}

}  // namespace velun::relay_texts
