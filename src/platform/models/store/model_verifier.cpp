// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/store/model_verifier.h"

#include <QMetaObject>
#include <system_error>
#include <utility>

namespace velun {

void ModelVerifier::verify(std::vector<Model> models, bool areExpected) {
  try {
    thread_ = std::jthread([this, models = std::move(models), areExpected,
                            earlier = std::move(thread_)](const std::stop_token& stop) mutable {
      const std::stop_callback stopEarlier(stop, [&earlier] { earlier.request_stop(); });
      if (earlier.joinable()) earlier.join();
      for (const Model& model : models) {
        if (stop.stop_requested()) return;
        verifyOne(model, areExpected, stop);
      }
    });
  } catch (const std::system_error&) {
    // No thread is available. Verified at the next start.
  }
}

void ModelVerifier::verifyOne(const Model& model, bool isExpected, const std::stop_token& stop) {
  try {
    if (installer_.isPlaced(model) && installer_.installPlaced(model, stop)) {
      QMetaObject::invokeMethod(
          this, [this, id = model.id] { Q_EMIT verified(id); }, Qt::QueuedConnection);
    } else if (isExpected && installer_.isDamaged(model, stop)) {
      QMetaObject::invokeMethod(
          this, [this, model] { Q_EMIT damaged(model); }, Qt::QueuedConnection);
    }
  } catch (const std::exception&) {
    // Tried again at the next start.
  }
}

}  // namespace velun
