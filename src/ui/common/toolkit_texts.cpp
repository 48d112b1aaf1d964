// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/toolkit_texts.h"

#include "language/localization.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace velun {

namespace {

struct Text {
  std::string_view english;
  const char* korean;
};

/// Whatever can be met in this program's windows; "&" marks the key that reaches a control.
constexpr std::array kTexts = {
    // The file panel.
    Text{"Look in:", "찾는 위치:"},
    Text{"Back", "뒤로"},
    Text{"Go back", "뒤로 가기"},
    Text{"Forward", "앞으로"},
    Text{"Go forward", "앞으로 가기"},
    Text{"Parent Directory", "상위 폴더"},
    Text{"Go to the parent directory", "상위 폴더로 가기"},
    Text{"Create New Folder", "새 폴더 만들기"},
    Text{"Create a New Folder", "새 폴더 만들기"},
    Text{"List View", "목록 보기"},
    Text{"Change to list view mode", "목록 보기로 바꾸기"},
    Text{"Detail View", "자세히 보기"},
    Text{"Change to detail view mode", "자세히 보기로 바꾸기"},
    Text{"Sidebar", "사이드바"},
    Text{"List of places and bookmarks", "위치와 책갈피 목록"},
    Text{"Files", "파일"},
    Text{"File &name:", "파일 이름(&N):"},
    Text{"Files of type:", "파일 형식:"},
    Text{"Directory:", "폴더:"},
    Text{"Recent Places", "최근 위치"},
    Text{"&Open", "열기(&O)"},
    Text{"&Save", "저장(&S)"},
    Text{"&Choose", "선택(&C)"},
    Text{"&Rename", "이름 바꾸기(&R)"},
    Text{"&Delete", "삭제(&D)"},
    Text{"Show &hidden files", "숨긴 파일 보기(&H)"},
    Text{"&New Folder", "새 폴더(&N)"},
    Text{"New Folder", "새 폴더"},
    Text{"Remove", "제거"},
    Text{"Delete", "삭제"},
    Text{"Name", "이름"},
    Text{"Size", "크기"},
    Text{"Type", "종류"},
    Text{"Kind", "종류"},
    Text{"Date Modified", "수정한 날짜"},
    Text{"My Computer", "내 컴퓨터"},
    Text{"Computer", "컴퓨터"},
    Text{"Drive", "드라이브"},
    Text{"File", "파일"},
    Text{"%1 File", "%1 파일"},
    Text{"Folder", "폴더"},
    Text{"%1 already exists.\nDo you want to replace it?",
         "%1 파일이 이미 있습니다.\n바꾸시겠습니까?"},
    Text{"%1\nFile not found.\nPlease verify the correct file name was given.",
         "%1\n파일을 찾지 못했습니다.\n파일 이름이 올바른지 확인하세요."},
    Text{"%1\nDirectory not found.\nPlease verify the correct directory name was given.",
         "%1\n폴더를 찾지 못했습니다.\n폴더 이름이 올바른지 확인하세요."},
    Text{"'%1' is write protected.\nDo you want to delete it anyway?",
         "‘%1’은(는) 쓰기가 금지되어 있습니다.\n그래도 삭제하시겠습니까?"},
    Text{"Are you sure you want to delete '%1'?", "‘%1’을(를) 삭제하시겠습니까?"},
    Text{"Could not delete directory.", "폴더를 삭제하지 못했습니다."},
    // Buttons.
    Text{"OK", "확인"},
    Text{"Save", "저장"},
    Text{"Open", "열기"},
    Text{"Cancel", "취소"},
    Text{"Close", "닫기"},
    Text{"&Yes", "예(&Y)"},
    Text{"&No", "아니요(&N)"},
    // The menus of text fields and views.
    Text{"&Undo", "실행 취소(&U)"},
    Text{"&Redo", "다시 실행(&R)"},
    Text{"Cu&t", "잘라내기(&T)"},
    Text{"&Copy", "복사(&C)"},
    Text{"&Paste", "붙여넣기(&P)"},
    Text{"Select All", "전체 선택"},
    Text{"Copy &Link Location", "링크 주소 복사(&L)"},
};

}  // namespace

QString ToolkitTexts::translate(const char*, const char* source, const char*, int) const {
  const std::string_view english = source ? source : "";
  const auto found = std::find_if(kTexts.begin(), kTexts.end(),
                                  [english](const Text& text) { return text.english == english; });
  // Without an answer the toolkit shows its own text.
  return found == kTexts.end() ? QString() : L(source, found->korean);
}

}  // namespace velun
