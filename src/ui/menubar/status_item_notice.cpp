// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/status_item_notice.h"

#include "language/localization.h"
#include "ui/common/alert_dialog.h"

namespace velun {

void showStatusItemNotice() {
  Question told;
  told.message = L("No Place for the Status Icon", "상태 아이콘을 표시할 곳이 없습니다");
  told.informativeText =
      L("This desktop has no tray, so Velun shows its caption window instead. To bring the window "
        "back later, start Velun again.",
        "이 데스크톱에는 트레이가 없어 Velun이 자막 창을 대신 표시합니다. 나중에 창을 다시 보려면 "
        "Velun을 다시 실행하세요.");
  told.buttons = {L("OK", "확인")};
  auto* notice = new AlertDialog(told);
  notice->setAttribute(Qt::WA_DeleteOnClose);
  notice->setWindowModality(Qt::NonModal);
  notice->show();
}

}  // namespace velun
