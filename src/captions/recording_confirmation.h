// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/recording_queue.h"

namespace velun {

class ModalQuestion;

/// Asks whether to quit although recordings are not finished or their captions could not be saved.
/// Asks only if there are any. Returns whether the program may end. Main thread.
bool confirmEndingRecordings(const RecordingQueue& recordings, ModalQuestion& question);

/// Asks whether to remove an item of the queue although its captions are not saved. Asks only if
/// there are any. Returns whether it may be removed. Main thread.
bool confirmRemoving(const RecordingQueue& recordings, const RecordingQueue::Item& item,
                     ModalQuestion& question);

}  // namespace velun
