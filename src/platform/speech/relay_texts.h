// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The sentences that tell users about changes of the recognizer during captions, localized.
/// `title` and `next` are recognizers.
namespace velun::relay_texts {

/// `title` could not be loaded; `next` goes on.
QString notLoaded(const QString& title, const QString& next);

/// `title` ended too often; `next` goes on.
QString stopped(const QString& title, const QString& next);

/// `title` has taken over, as the user wanted.
QString changed(const QString& title);

}  // namespace velun::relay_texts
