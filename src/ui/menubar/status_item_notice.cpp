// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/status_item_notice.h"

#include "language/localization.h"
#include "ui/common/alert_dialog.h"

namespace velun {

void showStatusItemNotice() {
  Question notice;
  notice.message = L("No System Tray Found", "시스템 트레이를 찾을 수 없습니다");
  notice.informativeText =
      L("This desktop has no system tray, so Velun shows its caption window instead. To bring the "
        "window back later, start Velun again. The menu at the right of its header quits Velun.",
        "이 데스크톱에는 시스템 트레이가 없어 Velun이 자막 창을 대신 표시합니다. 나중에 창을 다시 "
        "보려면 Velun을 다시 실행하세요. 창 위쪽 오른쪽의 메뉴에서 Velun을 종료할 수 있습니다.");
  notice.buttons = {L("OK", "확인")};
  auto* dialog = new AlertDialog(notice);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowModality(Qt::NonModal);
  dialog->show();
}

}  // namespace velun
