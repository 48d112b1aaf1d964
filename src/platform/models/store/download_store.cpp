// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/store/download_store.h"

#include "platform/foundation/failure.h"
#include "platform/foundation/one_shot.h"
#include "platform/models/store/model_store_failures.h"

#include <exception>
#include <QDir>
#include <QFile>
#include <QNetworkInformation>
#include <QPointer>
#include <QStandardPaths>
#include <system_error>

namespace velun {

/// One running installation.
struct DownloadStore::Job {
  explicit Job(QString modelId, const std::stop_token& callerStop)
      : id(std::move(modelId)), forwardStop(callerStop, [this] { stop.request_stop(); }) {}

  QString id;
  std::stop_source stop;
  std::stop_callback<std::function<void()>> forwardStop;
  std::jthread worker;
};

QString DownloadStore::standardRoot() {
  const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  return QDir(data).filePath("app.velun.Velun/models");
}

bool DownloadStore::isConnectionMetered() {
  if (!QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Metered)) {
    return false;
  }
  return QNetworkInformation::instance()->isMetered();
}

DownloadStore::DownloadStore(ModelCatalogue catalogue, ModelStoreOptions options,
                             const Clock& clock, std::function<bool()> isMetered)
    : installer_(options), root_(options.root), clock_(clock), isMetered_(std::move(isMetered)) {
  verifyPlaced(std::move(catalogue));
}

DownloadStore::~DownloadStore() {
  for (const auto& job : jobs_) job->stop.request_stop();
}

bool DownloadStore::isInstalled(const Model& model) const {
  return installer_.isInstalled(model);
}

QString DownloadStore::folder(const Model& model) const {
  return installer_.folder(model.id);
}

QCoro::Task<> DownloadStore::install(Model model, std::stop_token stop) {
  if (stop.stop_requested()) throw Cancelled();
  if (isInstalled(model)) co_return;
  const OneShot<bool> done;
  start(model, stop, [done](std::exception_ptr error) {
    if (error) {
      done.fail(error);
    } else {
      done.complete(true);
    }
  });
  // The caller does not wait until the thread notices the stop request: it may be writing to a slow
  // disk.
  const auto cancel = [done] {
    done.fail(std::make_exception_ptr(Cancelled()));
  };
  const std::stop_callback cancelled(stop, cancel);
  co_await done;
}

void DownloadStore::installQuietly(const Model& model) {
  if (isInstalled(model) || busy().contains(model.id)) return;
  if (failedToday(model.id) || isMetered_()) return;
  const QPointer<DownloadStore> self(this);
  start(model, std::stop_token(), [self, id = model.id](std::exception_ptr error) {
    if (!error) return;
    try {
      std::rethrow_exception(error);
    } catch (const Cancelled&) {
      // The program ends.
    } catch (const std::exception&) {
      QMetaObject::invokeMethod(QCoreApplication::instance(), [self, id] {
        if (self) self->rememberFailure(id);
      });
    }
  });
}

QStringList DownloadStore::busy() const {
  QStringList ids;
  for (const auto& job : jobs_) ids.append(job->id);
  ids.removeDuplicates();
  return ids;
}

void DownloadStore::start(const Model& model, const std::stop_token& stop, const Done& done) {
  auto owned = std::make_unique<Job>(model.id, stop);
  Job* const job = owned.get();
  try {
    job->worker = std::jthread(
        [this, job, model, installer = installer_, token = job->stop.get_token(), done] {
          std::exception_ptr error;
          try {
            installer.install(model, token);
          } catch (...) {
            error = std::current_exception();
          }
          // The destructor joins this thread, so the store still exists.
          QMetaObject::invokeMethod(
              this, [this, job] { finish(job); }, Qt::QueuedConnection);
          done(error);
        });
  } catch (const std::system_error&) {
    done(std::make_exception_ptr(model_failures::noThread()));
    return;
  }
  jobs_.push_back(std::move(owned));
  Q_EMIT busyChanged();
}

void DownloadStore::finish(const Job* job) {
  std::erase_if(jobs_, [job](const auto& owned) { return owned.get() == job; });
  Q_EMIT busyChanged();
}

void DownloadStore::verifyPlaced(ModelCatalogue catalogue) {
  const auto find = [installer = installer_](const Model& model, const std::stop_token& stop) {
    try {
      if (installer.isPlaced(model)) installer.installPlaced(model, stop);
    } catch (const std::exception&) {
      // Tried again at the next start.
    }
  };
  try {
    finder_ = std::jthread([find, catalogue = std::move(catalogue)](const std::stop_token& stop) {
      for (const Model& model : catalogue.models()) {
        if (stop.stop_requested()) return;
        find(model, stop);
      }
    });
  } catch (const std::system_error&) {
    // No thread is available. Tried again at the next start.
  }
}

QString DownloadStore::failurePath(const QString& id) const {
  return QDir(root_).filePath(".downloads/" + id + "/failed");
}

bool DownloadStore::failedToday(const QString& id) const {
  QFile file(failurePath(id));
  if (!file.open(QIODevice::ReadOnly)) return false;
  const Instant then{std::chrono::microseconds(file.readAll().trimmed().toLongLong())};
  const auto passed = clock_.now() - then;
  return passed >= std::chrono::seconds(0) && passed < std::chrono::hours(24);
}

void DownloadStore::rememberFailure(const QString& id) const {
  QFile file(failurePath(id));
  if (!file.open(QIODevice::WriteOnly)) return;
  file.write(QByteArray::number(qint64(clock_.now().time_since_epoch().count())));
}

}  // namespace velun
