// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdio>
#include <memory>
#include <QString>

namespace velun::test {

/// A temporary file to write to, and what is in it.
class WrittenFile {
 public:
  std::FILE* file() const { return file_.get(); }

  QString text() const {
    std::fflush(file());
    std::rewind(file());
    QByteArray bytes;
    for (int c = std::fgetc(file()); c != EOF; c = std::fgetc(file())) {
      bytes.append(static_cast<char>(c));
    }
    return QString::fromUtf8(bytes);
  }

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, Close> file_{std::tmpfile()};
};

}  // namespace velun::test
