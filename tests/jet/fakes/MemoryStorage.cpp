#include "jet/fakes/MemoryStorage.h"

#include <utility>

#include "jet/fakes/MemoryNode.h"

namespace zent::jet::testing {
namespace {

bool IsName(std::string_view path) { return path.find('\0') == std::string_view::npos; }

}  // namespace

MemoryStorage::MemoryStorage() : machine_(std::make_unique<Machine>()) {}
MemoryStorage::~MemoryStorage() = default;

void MemoryStorage::Put(std::string_view path, std::string_view bytes) {
  auto node = std::make_shared<Node>();
  node->now = bytes;
  node->durable = bytes;
  machine_->used += bytes.size();
  names_[std::string(path)] = node;
  durable_names_[std::string(path)] = node;
}

std::string MemoryStorage::Bytes(std::string_view path) const {
  const auto found = names_.find(path);
  return found == names_.end() ? std::string() : found->second->now;
}

bool MemoryStorage::Has(std::string_view path) const { return names_.contains(path); }

std::vector<std::string> MemoryStorage::Names() const {
  std::vector<std::string> names;
  for (const auto& [name, node] : names_) names.push_back(name);
  return names;
}

void MemoryStorage::FailAt(int call, int error_number) {
  machine_->fail_at = machine_->calls + call;
  machine_->fail_number = error_number;
}
void MemoryStorage::StopAt(int call) { machine_->stop_at = machine_->calls + call; }
bool MemoryStorage::stopped() const { return machine_->stopped; }
void MemoryStorage::SpoilAt(std::uint64_t offset) { machine_->spoiled = offset; }
void MemoryStorage::LimitSpace(std::uint64_t bytes) { machine_->space = bytes; }
void MemoryStorage::ForbidWriting() { machine_->forbids_writing = true; }
int MemoryStorage::changing_calls() const { return machine_->calls; }
int MemoryStorage::flushes() const { return machine_->flushes; }
int MemoryStorage::reads() const { return machine_->reads; }

std::unique_ptr<MemoryStorage> MemoryStorage::AfterPowerLoss(const PowerLoss& loss) const {
  std::mt19937 random(loss.seed);
  auto names = durable_names_;
  for (std::size_t i = 0; i < name_changes_.size(); ++i) {
    if (!Keeps(loss, i, name_changes_.size(), random)) continue;
    if (name_changes_[i].node) {
      names[name_changes_[i].path] = name_changes_[i].node;
    } else {
      names.erase(name_changes_[i].path);
    }
  }
  auto disk = std::make_unique<MemoryStorage>();
  for (const auto& [name, node] : names) disk->Put(name, node->After(loss, random));
  return disk;
}

Result<std::unique_ptr<StoredFile>> MemoryStorage::Open(std::string_view path, Sharing sharing) {
  if (Status look = machine_->Look(); !look.ok()) return look.error();
  if (!IsName(path)) return StandardError(kBadFileName);
  const auto found = names_.find(path);
  if (found == names_.end()) return StandardError(kFileNotFound);
  if (machine_->forbids_writing && sharing != Sharing::ReadOnly) {
    return StandardError(kPathFileAccess);
  }
  for (const auto& [file, other] : found->second->openers) {
    if (sharing == Sharing::Exclusive || other == Sharing::Exclusive) {
      return StandardError(kPermissionDenied);
    }
  }
  return std::unique_ptr<StoredFile>(new MemoryFile(*machine_, found->second, sharing));
}

Result<std::unique_ptr<StoredFile>> MemoryStorage::Create(std::string_view path, Sharing sharing,
                                                          std::string_view /*like*/) {
  if (Status change = machine_->Change(); !change.ok()) return change.error();
  if (!IsName(path)) return StandardError(kBadFileName);
  if (machine_->forbids_writing) return StandardError(kPathFileAccess);
  if (names_.contains(path)) return StandardError(kFileAlreadyExists);
  auto node = std::make_shared<Node>();
  SetName(path, node);
  return std::unique_ptr<StoredFile>(new MemoryFile(*machine_, node, sharing));
}

void MemoryStorage::SetName(std::string_view path, NodePointer node) {
  const auto found = names_.find(path);
  if (found != names_.end()) {
    machine_->used -= found->second->now.size();
    names_.erase(found);
  }
  name_changes_.push_back({.path = std::string(path), .node = node});
  if (node) names_[std::string(path)] = std::move(node);
}

Status MemoryStorage::Delete(std::string_view path) {
  if (Status change = machine_->Change(); !change.ok()) return change;
  if (!IsName(path)) return StandardError(kBadFileName);
  const auto found = names_.find(path);
  if (found == names_.end()) return StandardError(kFileNotFound);
  if (machine_->forbids_writing) return StandardError(kPathFileAccess);
  if (keeps_open_files && !found->second->openers.empty()) {
    return StandardError(kPermissionDenied);
  }
  SetName(path, nullptr);
  return {};
}

Result<bool> MemoryStorage::Exists(std::string_view path) {
  if (Status look = machine_->Look(); !look.ok()) return look.error();
  if (!IsName(path)) return StandardError(kBadFileName);
  return names_.contains(path);
}

Status MemoryStorage::Rename(std::string_view path, std::string_view new_path) {
  if (Status change = machine_->Change(); !change.ok()) return change;
  if (!IsName(path) || !IsName(new_path)) return StandardError(kBadFileName);
  const auto found = names_.find(path);
  if (found == names_.end()) return StandardError(kFileNotFound);
  const NodePointer node = found->second;
  machine_->used += node->now.size();  // SetName takes away what stands under either name
  SetName(new_path, node);
  SetName(path, nullptr);
  return {};
}

Status MemoryStorage::FlushFolder(std::string_view /*path*/) {
  if (Status change = machine_->Change(); !change.ok()) return change;
  durable_names_ = names_;
  name_changes_.clear();
  return {};
}

void MemoryStorage::Pause(std::chrono::milliseconds /*time*/) {
  ++pauses_;
  if (on_pause) on_pause();
}

}  // namespace zent::jet::testing
