// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/store/download_store.h"

#include "platform/foundation/failure.h"
#include "platform/models/store/download_speed.h"
#include "platform/models/store/file_placement.h"
#include "platform/models/store/model_store_failures.h"
#include "platform/models/store/verified_record.h"

#include <algorithm>
#include <exception>
#include <QDateTime>
#include <QDir>
#include <QNetworkInformation>
#include <QPointer>
#include <QStandardPaths>
#include <QUuid>
#include <system_error>
#include <vector>

namespace velun {

namespace {

/// How often a running download is reported.
constexpr std::chrono::milliseconds kReportInterval{300};

}  // namespace

/// One running installation.
struct DownloadStore::Job {
  std::stop_source stop;
  InstallProgress progress;
  DownloadSpeed speed;
  /// Last, so that it is joined before the rest is destroyed.
  std::jthread worker;
};

/// What is wanted of one model.
struct DownloadStore::Download {
  explicit Download(Model wanted) : model(std::move(wanted)) {}

  bool isWanted() const { return !isPaused && (isAsked || !waiters.empty()); }
  bool isStopping() const { return job && job->stop.stop_requested(); }

  Model model;
  bool isAsked = false;
  bool isPaused = false;
  bool isDiscarded = false;            ///< delete the files when the job has ended
  ModelFailure::Text failure;          ///< empty without a failure
  std::vector<OneShot<bool>> waiters;  ///< calls of `install`
  std::unique_ptr<Job> job;            ///< at most one at a time, also while it is stopping
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

DownloadStore::DownloadStore(const ModelCatalogue& catalogue, const ModelStoreOptions& options,
                             Clock& clock, std::function<bool()> isMetered)
    : catalogue_(catalogue),
      installer_(options),
      root_(options.root),
      verifier_(installer_),
      clock_(clock),
      isMetered_(std::move(isMetered)) {
  connect(&verifier_, &ModelVerifier::verified, this, &ModelStore::stateChanged);
  connect(&verifier_, &ModelVerifier::damaged, this, &DownloadStore::reportDamage);
  verifier_.verify(catalogue_.models(), false);
  // Left by a run that was killed.
  const auto seconds = std::chrono::floor<std::chrono::seconds>(clock_.now().time_since_epoch());
  setAsideAbandonedCopies(root_, discardedFolder(), QDateTime::fromSecsSinceEpoch(seconds.count()));
  deleteOnThread(discardedFolder());
}

DownloadStore::~DownloadStore() {
  for (const auto& [id, download] : downloads_) {
    if (download->job) download->job->stop.request_stop();
    for (const OneShot<bool>& waiter : download->waiters) {
      waiter.fail(std::make_exception_ptr(Cancelled()));
    }
  }
}

bool DownloadStore::isInstalled(const Model& model) const {
  return installer_.isInstalled(model);
}

QString DownloadStore::folder(const Model& model) const {
  return installer_.folder(model.id);
}

std::optional<ModelInstallation> DownloadStore::installation(const Model& model) const {
  return installer_.installation(model);
}

ModelFilePlacer DownloadStore::filePlacer() const {
  return [catalogue = catalogue_, installer = installer_](
             const QString& path, const std::function<void(double)>& progress,
             const std::stop_token& stop) {
    return placeModelFile(catalogue, installer, path, progress, stop);
  };
}

std::int64_t DownloadStore::diskBytes(const Model& model) const {
  return installer_.diskBytes(model);
}

QStringList DownloadStore::busy() const {
  QStringList ids;
  for (const auto& [id, download] : downloads_) {
    if (download->job) ids.append(id);
  }
  return ids;
}

ModelState DownloadStore::state(const Model& model) const {
  using enum ModelState::Stage;
  const auto found = downloads_.find(model.id);
  const Download* download = found == downloads_.end() ? nullptr : found->second.get();
  if (download && download->isWanted()) return runningState(model, *download);
  ModelState state;
  state.totalBytes = model.downloadBytes();
  if (isInstalled(model)) {
    state.stage = installed;
    state.doneBytes = state.totalBytes;
    return state;
  }
  if (download && download->isDiscarded) return state;
  state.doneBytes = installer_.downloadedBytes(model);
  if (download && download->failure) {
    state.stage = failed;
    state.failure = download->failure();
  } else if (state.doneBytes > 0 || (download && download->isPaused)) {
    state.stage = paused;
  }
  return state;
}

ModelState DownloadStore::runningState(const Model& model, const Download& download) const {
  using enum ModelState::Stage;
  ModelState state;
  state.stage = waiting;
  state.totalBytes = model.downloadBytes();
  if (!download.job || download.isStopping()) return state;
  const InstallProgress& progress = download.job->progress;
  state.doneBytes = std::min(progress.doneBytes(), state.totalBytes);
  if (progress.step == InstallProgress::Step::verifying) state.stage = verifying;
  if (progress.step == InstallProgress::Step::downloading) {
    state.stage = downloading;
    state.bytesPerSecond = download.job->speed.bytesPerSecond();
    state.secondsLeft = download.job->speed.secondsFor(state.totalBytes - state.doneBytes);
  }
  return state;
}

QCoro::Task<> DownloadStore::install(Model model, std::stop_token stop) {
  if (stop.stop_requested()) throw Cancelled();
  if (isInstalled(model)) co_return;
  const OneShot<bool> done;
  Download& download = downloadOf(model);
  download.waiters.push_back(done);
  download.isPaused = false;
  proceed(download);
  QCoro::Task<> waiting = waitFor(model, done, stop);
  co_await waiting;
}

QCoro::Task<> DownloadStore::waitFor(Model model, OneShot<bool> done, std::stop_token stop) {
  const QPointer<DownloadStore> self(this);
  // The caller does not wait until the thread notices the stop request: it may be writing to a slow
  // disk.
  const auto leave = [self, done, id = model.id] {
    done.fail(std::make_exception_ptr(Cancelled()));
    if (!self) return;
    const auto found = self->downloads_.find(id);
    if (found == self->downloads_.end()) return;
    Download& download = *found->second;
    std::erase_if(download.waiters, [](const OneShot<bool>& each) { return each.isAnswered(); });
    self->proceed(download);
  };
  const std::stop_callback cancelled(stop, leave);
  co_await done;
}

DownloadStore::Download& DownloadStore::downloadOf(const Model& model) {
  std::unique_ptr<Download>& download = downloads_[model.id];
  if (!download) download = std::make_unique<Download>(model);
  download->model = model;
  return *download;
}

void DownloadStore::download(const Model& model) {
  if (isInstalled(model)) return;
  Download& download = downloadOf(model);
  download.isAsked = true;
  download.isPaused = false;
  proceed(download);
}

void DownloadStore::pause(const Model& model) {
  const auto found = downloads_.find(model.id);
  if (found == downloads_.end() || !found->second->isWanted()) return;
  found->second->isPaused = true;
  proceed(*found->second);
}

void DownloadStore::cancel(const Model& model) {
  if (isInstalled(model)) return;
  discard(model);
}

void DownloadStore::remove(const Model& model) {
  if (isUsed(model)) throw model_failures::inUse(model.kind);
  discard(model);
  const bool isGone =
      downloads_.contains(model.id) || (!isInstalled(model) && !installation(model));
  if (!isGone) throw model_failures::notRemoved();
}

void DownloadStore::discard(const Model& model) {
  Download& download = downloadOf(model);
  download.isAsked = false;
  download.isPaused = false;
  download.isDiscarded = true;
  download.failure = nullptr;
  for (const OneShot<bool>& waiter : std::exchange(download.waiters, {})) {
    waiter.fail(std::make_exception_ptr(model_failures::cancelled()));
  }
  proceed(download);
}

/// Starts or stops the job as wanted, and deletes discarded files.
void DownloadStore::proceed(Download& download) {
  const QString id = download.model.id;
  if (download.job) {
    if (!download.isWanted()) download.job->stop.request_stop();
  } else {
    if (std::exchange(download.isDiscarded, false)) {
      const QString target = discardedFolder() + u'/' + QUuid::createUuid().toString(QUuid::Id128);
      installer_.setAside(download.model, target);
      deleteOnThread(target);
    }
    if (download.isWanted()) startJob(download);
    forgetIfIdle(id);
  }
  Q_EMIT stateChanged(id);
}

void DownloadStore::startJob(Download& download) {
  download.failure = nullptr;
  download.job = std::make_unique<Job>();
  Job& job = *download.job;
  try {
    job.worker = std::jthread([this, &job, model = download.model, installer = installer_] {
      std::exception_ptr error;
      try {
        installer.install(model, job.progress, job.stop.get_token());
      } catch (...) {
        error = std::current_exception();
      }
      // The destructor joins this thread, so the store still exists.
      QMetaObject::invokeMethod(
          this, [this, id = model.id, error] { finish(id, error); }, Qt::QueuedConnection);
    });
    reportLater();
  } catch (const std::system_error&) {
    download.job.reset();
    fail(download, std::make_exception_ptr(model_failures::noThread()));
  }
}

void DownloadStore::finish(const QString& id, const std::exception_ptr& error) {
  Download& download = *downloads_.at(id);
  const bool wasStopped = download.isStopping();
  download.job.reset();
  if (!error) {
    download.isAsked = false;
    download.isPaused = false;
    for (const OneShot<bool>& waiter : std::exchange(download.waiters, {})) waiter.complete(true);
    Q_EMIT installed(id);
  } else if (!wasStopped) {
    fail(download, error);
  }
  proceed(download);
}

void DownloadStore::fail(Download& download, const std::exception_ptr& error) {
  download.isAsked = false;
  try {
    std::rethrow_exception(error);
  } catch (const std::exception& failure) {
    download.failure = ModelFailure::textOf(failure);
  }
  for (const OneShot<bool>& waiter : std::exchange(download.waiters, {})) waiter.fail(error);
}

void DownloadStore::forgetIfIdle(const QString& id) {
  const auto found = downloads_.find(id);
  if (found == downloads_.end()) return;
  const Download& download = *found->second;
  const bool isIdle = !download.job && !download.failure && !download.isPaused &&
                      !download.isAsked && download.waiters.empty();
  if (isIdle) downloads_.erase(found);
}

void DownloadStore::reportLater() {
  if (!reporting_) reporting_ = clock_.callAfter(kReportInterval, [this] { report(); });
}

void DownloadStore::report() {
  reporting_.reset();
  const QStringList running = busy();
  if (running.isEmpty()) return;
  reportLater();
  for (const QString& id : running) {
    const auto found = downloads_.find(id);
    if (found == downloads_.end() || !found->second->job) continue;
    Job& job = *found->second->job;
    if (job.progress.step == InstallProgress::Step::downloading) {
      job.speed.add(clock_.monotonicSeconds(), job.progress.doneBytes());
    }
    Q_EMIT stateChanged(id);
  }
}

void DownloadStore::reportDamage(const Model& model) {
  // It may be downloaded again already.
  const auto found = downloads_.find(model.id);
  if (isInstalled(model) || (found != downloads_.end() && found->second->isWanted())) return;
  const ModelFailure damage = model_failures::damagedFiles(model.title);
  downloadOf(model).failure = damage.text();
  Q_EMIT stateChanged(model.id);
  Q_EMIT damageFound(damage.errorDescription());
}

void DownloadStore::verifyAgain(const QString& id) {
  const Model* model = catalogue_.find(id);
  if (!model || !isInstalled(*model)) return;
  try {
    VerifiedRecord::doubt(folder(*model));
  } catch (const Failure&) {
    // The disk is full or cannot be written: it stays installed.
    return;
  }
  Q_EMIT stateChanged(id);
  verifier_.verify({*model}, true);
}

/// Deletes a folder on a thread, after the earlier ones.
void DownloadStore::deleteOnThread(const QString& path) {
  try {
    deletion_ = std::jthread([earlier = std::move(deletion_), path]() mutable {
      if (earlier.joinable()) earlier.join();
      QDir(path).removeRecursively();
    });
  } catch (const std::system_error&) {
    // No thread is available. Deleted at the next start.
  }
}

QString DownloadStore::discardedFolder() const {
  return QDir(root_).filePath(".discarded");
}

}  // namespace velun
