// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

class ModalQuestion;
class RecordingQueue;

/// Asks whether to quit although recordings are not finished or their captions could not be saved.
/// Asks only if there are any. Returns whether the program may end. Main thread.
bool confirmEndingRecordings(const RecordingQueue& recordings, ModalQuestion& question);

}  // namespace velun
