// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <cstddef>
#include <QString>
#include <QStringList>
#include <vector>

namespace velun {

// A line's speaker is a number in its session ("1") until the user gives a name ("Anna").

/// The speaker with this number, from 1.
QString numberedSpeaker(int number);

/// For exports: "Speaker 1", in the interface language, or the name.
QString speakerName(const QString& speaker);

/// For the screen: the same, and a question mark as long as the speaker has no name, because who
/// spoke is an estimate.
QString speakerLabel(const QString& speaker);

/// The speaker whom the user means by a text; empty for a text without letters. "Speaker 2", also
/// with a question mark, is the second speaker.
QString speakerNamed(const QString& text);

/// The speakers of the lines, in the order of their first lines.
QStringList speakersOf(const std::vector<Line>& lines);

/// Gives every line of the speaker `from` to `to`. With the name of another speaker the two become
/// one. Returns the indices of the lines.
std::vector<std::size_t> renameSpeaker(std::vector<Line>& lines, const QString& from,
                                       const QString& to);

/// The highest number of a speaker without a name; 0 if there is none.
int highestSpeaker(const std::vector<Line>& lines);

/// Adds `offset` to the number of each speaker without a name. Returns the highest number, or
/// `offset` if there is none.
int addToNumbers(std::vector<Line>& lines, int offset);

}  // namespace velun
