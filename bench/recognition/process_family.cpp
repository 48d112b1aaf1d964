// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/process_family.h"

#include <QDir>
#include <QFile>
#include <QStringList>
#include <sys/resource.h>
#include <unistd.h>

namespace velun::bench {

namespace {

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

double usedSeconds(int who) {
  rusage usage{};
  getrusage(who, &usage);
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

QByteArray contents(const QString& path) {
  QFile file(path);
  return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

/// The running processes that this process started.
QStringList children() {
  QStringList found;
  for (const QString& task : QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs)) {
    const QByteArray ids = contents("/proc/self/task/" + task + "/children");
    found += QString::fromLatin1(ids).split(u' ', Qt::SkipEmptyParts);
  }
  return found;
}

/// User and system time, the 14th and 15th field; the second is a name in brackets that may
/// contain spaces.
double runningSeconds(const QString& process) {
  constexpr int kUserTime = 11, kSystemTime = 12;
  const QByteArray stat = contents("/proc/" + process + "/stat");
  const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
  if (fields.size() <= kSystemTime) return 0;
  return (fields[kUserTime].toDouble() + fields[kSystemTime].toDouble()) /
         static_cast<double>(sysconf(_SC_CLK_TCK));
}

double residentMegabytesOf(const QString& process) {
  for (const QByteArray& line : contents("/proc/" + process + "/status").split('\n')) {
    if (line.startsWith("VmRSS:")) {
      return line.mid(6).simplified().split(' ').first().toDouble() / 1024;
    }
  }
  return 0;
}

}  // namespace

double cpuSeconds() {
  double sum = usedSeconds(RUSAGE_SELF) + usedSeconds(RUSAGE_CHILDREN);
  for (const QString& child : children()) sum += runningSeconds(child);
  return sum;
}

double residentMegabytes() {
  double sum = residentMegabytesOf(QStringLiteral("self"));
  for (const QString& child : children()) sum += residentMegabytesOf(child);
  return sum;
}

}  // namespace velun::bench
