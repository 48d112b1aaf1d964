// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/transcript_content.h"

#include "language/localization.h"

namespace velun {

QString title(TranscriptContent content) {
  switch (content) {
    case TranscriptContent::both:
      return L("Original + Translation", "원문 + 번역");
    case TranscriptContent::original:
      return L("Original Only", "원문만");
    case TranscriptContent::translation:
      return L("Translation Only", "번역만");
  }
  Q_UNREACHABLE();
}

}  // namespace velun
