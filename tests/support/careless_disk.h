// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/recorded_files.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace velun::test {

/// A file system that keeps only what it must: after a power loss a file has its contents only if
/// it was synced, and each change of a name since the last sync of the folder may have happened or
/// not, in any combination. Only before the first sync of the folder do changes of names happen in
/// order, as with a journal.
class CarelessDisk {
 public:
  /// File contents by name.
  using Folder = std::map<QByteArray, QByteArray>;

  void perform(const FileOperation& operation) {
    using Kind = FileOperation::Kind;
    switch (operation.kind) {
      case Kind::create:
        files_.resize(std::max(files_.size(), std::size_t(operation.file) + 1));
        return change({{operation.name, operation.file}});
      case Kind::truncate:
        return files_[std::size_t(operation.file)].setContents({});
      case Kind::write:
        return files_[std::size_t(operation.file)].setContents(
            files_[std::size_t(operation.file)].contents + operation.bytes);
      case Kind::syncFile:
        files_[std::size_t(operation.file)].isSynced = true;
        return;
      case Kind::syncFolder:
        synced_ = names_;
        pending_.clear();
        isFolderSynced_ = true;
        return;
      case Kind::link:
        return change({{operation.newName, names_.at(operation.name)}});
      case Kind::rename:
        return change(
            {{operation.newName, names_.at(operation.name)}, {operation.name, std::nullopt}});
      case Kind::unlink:
        return change({{operation.name, std::nullopt}});
    }
  }

  /// What programs see while there is power.
  Folder folder() const {
    return folderOf(names_, [](const File& file) { return file.contents; });
  }

  /// What a power loss now may leave.
  std::set<Folder> afterPowerLoss() const {
    std::set<Folder> folders;
    for (const std::vector<bool>& happened : combinations()) {
      Names names = synced_;
      for (std::size_t i = 0; i < pending_.size(); ++i) {
        if (happened[i]) apply(pending_[i], names);
      }
      for (const int divisor : {0, 2}) {
        folders.insert(folderOf(names, [divisor](const File& file) {
          if (file.isSynced) return file.contents;
          return divisor ? file.contents.left(file.contents.size() / divisor) : QByteArray();
        }));
      }
    }
    return folders;
  }

 private:
  struct File {
    void setContents(const QByteArray& bytes) {
      isSynced = isSynced && contents == bytes;
      contents = bytes;
    }
    QByteArray contents;
    bool isSynced = false;
  };
  using Names = std::map<QByteArray, int>;
  /// Names that change together; nullopt removes one.
  using Change = std::map<QByteArray, std::optional<int>>;

  static void apply(const Change& change, Names& names) {
    for (const auto& [name, file] : change) {
      if (file) {
        names[name] = *file;
      } else {
        names.erase(name);
      }
    }
  }

  void change(const Change& change) {
    apply(change, names_);
    pending_.push_back(change);
  }

  /// Which pending changes may have happened.
  std::vector<std::vector<bool>> combinations() const {
    return isFolderSynced_ ? anyCombination() : inOrder();
  }

  std::vector<std::vector<bool>> inOrder() const {
    std::vector<std::vector<bool>> all;
    for (std::size_t count = 0; count <= pending_.size(); ++count) {
      std::vector<bool> happened(count, true);
      happened.resize(pending_.size(), false);
      all.push_back(happened);
    }
    return all;
  }

  /// Every combination of the last six, with all or none of those before.
  std::vector<std::vector<bool>> anyCombination() const {
    constexpr std::size_t kMaxFree = 6;
    const std::size_t free = std::min(pending_.size(), kMaxFree);
    const std::size_t fixed = pending_.size() - free;
    std::vector<std::vector<bool>> all;
    for (const bool before : {false, true}) {
      for (std::size_t bits = 0; bits < (std::size_t(1) << free); ++bits) {
        std::vector<bool> happened(fixed, before);
        for (std::size_t i = 0; i < free; ++i) happened.push_back((bits >> i) & 1);
        all.push_back(happened);
      }
      if (fixed == 0) break;
    }
    return all;
  }

  template <class Contents>
  Folder folderOf(const Names& names, Contents contents) const {
    Folder folder;
    for (const auto& [name, file] : names) folder[name] = contents(files_[std::size_t(file)]);
    return folder;
  }

  std::vector<File> files_;
  Names names_;
  Names synced_;
  std::vector<Change> pending_;
  bool isFolderSynced_ = false;
};

}  // namespace velun::test
