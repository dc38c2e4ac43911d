#include "fakes/MemoryFileSystem.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "base/CaseFold.h"
#include "base/Text.h"

namespace zent::testing {
namespace {

constexpr std::uint32_t kSettable = kAttributeReadOnly | kAttributeHidden | kAttributeSystem;
constexpr std::size_t kLongestPath = 259;  // characters
constexpr std::string_view kForbidden = "<>\"|*?:";

/// A file as it was when it was opened.
class MemoryFile : public File {
 public:
  explicit MemoryFile(std::string contents) : contents_(std::move(contents)) {}

  Result<std::uint64_t> Size() override { return std::uint64_t{contents_.size()}; }
  Result<std::size_t> ReadAt(std::uint64_t offset, std::span<char> buffer) override {
    if (offset >= contents_.size()) return std::size_t{0};
    return contents_.copy(buffer.data(), buffer.size(), static_cast<std::size_t>(offset));
  }

 private:
  std::string contents_;
};

bool HasDrive(std::string_view path) {
  return path.size() >= 2 && std::isalpha(static_cast<unsigned char>(path[0])) != 0 &&
         path[1] == ':';
}

bool IsForbidden(std::string_view name) {
  return name.find_first_of(kForbidden) != std::string_view::npos ||
         std::any_of(name.begin(), name.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x20; });
}

std::string_view WithoutTrailingDots(std::string_view name) {
  return name.substr(0, name.find_last_not_of(". ") + 1);
}

std::string FolderOf(const std::string& node_path) {
  return node_path.substr(0, node_path.rfind('\\'));
}

std::string NameOf(const std::string& node_path) {
  return node_path.substr(node_path.rfind('\\') + 1);
}

bool Matches(std::string_view pattern, std::string_view name) {
  if (pattern.empty()) return name.empty();
  if (pattern.front() == '*') {
    return Matches(pattern.substr(1), name) || (!name.empty() && Matches(pattern, name.substr(1)));
  }
  if (name.empty() || (pattern.front() != '?' && pattern.front() != name.front())) return false;
  return Matches(pattern.substr(1), name.substr(1));
}

}  // namespace

MemoryFileSystem::MemoryFileSystem() { PutFolder(R"(C:\)"); }

void MemoryFileSystem::PutFolder(std::string_view path) {
  const std::string node_path = NodePath(path).value_or("");
  for (std::size_t end = 2; end != std::string::npos;) {
    const std::string level = node_path.substr(0, end);
    nodes_.try_emplace(FoldName(level), Node{level, kAttributeFolder});
    end = end >= node_path.size() ? std::string::npos
                                  : std::min(node_path.find('\\', end + 1), node_path.size());
  }
}

void MemoryFileSystem::PutFile(std::string_view path, std::string_view contents,
                               std::uint32_t attributes) {
  const std::string node_path = NodePath(path).value_or("");
  PutFolder(FolderOf(node_path) + '\\');
  nodes_.insert_or_assign(FoldName(node_path), Node{node_path, attributes, std::string(contents)});
}

std::optional<std::string> MemoryFileSystem::Contents(std::string_view path) const {
  const Node* const node = Look(path);
  if (node == nullptr || node->IsFolder()) return std::nullopt;
  return node->contents;
}

bool MemoryFileSystem::Exists(std::string_view path) const { return Look(path) != nullptr; }

std::vector<std::string> MemoryFileSystem::AllFiles() const {
  std::vector<std::string> paths;
  for (const auto& [key, node] : nodes_) {
    if (!node.IsFolder()) paths.push_back(node.path);
  }
  return paths;
}

void MemoryFileSystem::SetCurrentFolder(std::string_view path) {
  current_folder_ = NodePath(path).value_or("C:") + '\\';
}

void MemoryFileSystem::HoldOpen(std::string_view path, bool shared_for_reading) {
  const Result<Node*> node = Existing(path);
  if (node.ok())
    node.value()->sharing = shared_for_reading ? Sharing::ReadingOnly : Sharing::Nothing;
}

void MemoryFileSystem::HoldLoaded(std::string_view path) {
  const Result<Node*> node = Existing(path);
  if (node.ok()) node.value()->sharing = Sharing::ReadingAndRenaming;
}

void MemoryFileSystem::Release(std::string_view path) {
  const Result<Node*> node = Existing(path);
  if (node.ok()) node.value()->sharing = Sharing::Free;
}

Result<std::string> MemoryFileSystem::FullPath(std::string_view path) {
  Status fault = log_.Read("FullPath " + std::string(path));
  if (!fault.ok()) return fault.error();
  return Normalized(path);
}

Result<std::uint32_t> MemoryFileSystem::Attributes(std::string_view path) {
  Status fault = log_.Read("Attributes " + std::string(path));
  if (!fault.ok()) return fault.error();
  const Result<Node*> node = Existing(path);
  if (!node.ok()) return node.error();
  return node.value()->attributes;
}

Status MemoryFileSystem::SetAttributes(std::string_view path, std::uint32_t attributes) {
  Status fault = log_.Change("SetAttributes " + std::string(path));
  if (!fault.ok()) return fault;
  const Result<Node*> node = Existing(path);
  if (!node.ok()) return node.error();
  node.value()->attributes = (node.value()->attributes & ~kSettable) | (attributes & kSettable);
  return {};
}

Result<std::vector<FileEntry>> MemoryFileSystem::Find(std::string_view pattern) {
  Status fault = log_.Read("Find " + std::string(pattern));
  if (!fault.ok()) return fault.error();

  std::string path(pattern);
  std::replace(path.begin(), path.end(), '/', '\\');
  const std::size_t name_at = path.find_last_of("\\:") + 1;
  const Result<std::string> folder = NodePath(path.substr(0, name_at) + ".");
  if (!folder.ok()) return folder.error();
  const Node* const folder_node = Look(folder.value() + '\\');
  if (folder_node == nullptr || !folder_node->IsFolder()) return StandardError(kPathNotFound);

  const std::string wanted = path.substr(name_at) == "*.*" ? "*" : FoldName(path.substr(name_at));
  std::vector<FileEntry> found;
  for (const auto& [key, node] : nodes_) {
    if (node.path.size() < 3 || !SameName(FolderOf(node.path), folder.value())) continue;
    if (!Matches(wanted, FoldName(NameOf(node.path)))) continue;
    found.push_back({NameOf(node.path), node.attributes, node.contents.size()});
  }
  return found;
}

Result<std::unique_ptr<File>> MemoryFileSystem::OpenForReading(std::string_view path) {
  Status fault = log_.Read("OpenForReading " + std::string(path));
  if (!fault.ok()) return fault.error();
  const Result<Node*> node = ExistingFile(path);
  if (!node.ok()) return node.error();
  if (node.value()->sharing == Sharing::Nothing) return StandardError(kPermissionDenied);
  return std::unique_ptr<File>(std::make_unique<MemoryFile>(node.value()->contents));
}

Status MemoryFileSystem::Write(std::string_view path, std::string_view contents) {
  Status fault = log_.Change("Write " + std::string(path));
  if (!fault.ok()) return fault;
  const Result<Node*> target = Target(path);
  if (!target.ok()) return target.error();
  if (target.value() != nullptr) {
    target.value()->contents = contents;
  } else {
    const std::string node_path = NodePath(path).value();
    nodes_.insert_or_assign(FoldName(node_path), Node{node_path, 0, std::string(contents)});
  }
  return {};
}

Status MemoryFileSystem::Copy(std::string_view source, std::string_view target) {
  Status fault = log_.Change("Copy " + std::string(source) + " > " + std::string(target));
  if (!fault.ok()) return fault;
  const Result<Node*> from = ExistingFile(source);
  if (!from.ok()) return from.error();
  if (from.value()->sharing == Sharing::Nothing) return StandardError(kPermissionDenied);
  const Result<Node*> to = Target(target);
  if (!to.ok()) return to.error();
  if (to.value() != nullptr && (to.value()->attributes & kAttributeHidden) != 0) {
    return StandardError(kPathFileAccess);
  }

  Node copy{*from.value()};
  copy.sharing = Sharing::Free;
  copy.path = to.value() != nullptr ? to.value()->path : NodePath(target).value();
  nodes_.insert_or_assign(FoldName(copy.path), copy);
  if (on_copied) on_copied(source, target);
  return {};
}

Status MemoryFileSystem::Move(std::string_view old_path, std::string_view new_path) {
  Status fault = log_.Change("Move " + std::string(old_path) + " > " + std::string(new_path));
  if (!fault.ok()) return fault;
  const Result<Node*> old_node = Existing(old_path);
  if (!old_node.ok()) return old_node.error();
  const Sharing sharing = old_node.value()->sharing;
  if (sharing != Sharing::Free && sharing != Sharing::ReadingAndRenaming) {
    return StandardError(kPermissionDenied);
  }
  const Result<std::string> target = NodePath(new_path);
  if (!target.ok()) return target.error();
  Status parent = CheckParent(target.value());
  if (!parent.ok()) return parent;
  const std::string source = old_node.value()->path;
  const bool same = SameName(source, target.value());
  if (!same && Exists(target.value() + '\\')) return StandardError(kFileAlreadyExists);

  // The node itself and, below a folder, all others.
  std::map<std::string, Node> moved;
  const std::string below = FoldName(source) + '\\';
  for (auto it = nodes_.begin(); it != nodes_.end();) {
    if (it->first != FoldName(source) && !it->first.starts_with(below)) {
      ++it;
      continue;
    }
    Node node = std::move(it->second);
    node.path = target.value() + node.path.substr(source.size());
    moved.insert_or_assign(FoldName(node.path), std::move(node));
    it = nodes_.erase(it);
  }
  nodes_.merge(moved);
  return {};
}

Status MemoryFileSystem::Replace(std::string_view source, std::string_view target) {
  Status fault = log_.Change("Replace " + std::string(source) + " > " + std::string(target));
  if (!fault.ok()) return fault;
  const Result<Node*> from = ExistingFile(source);
  if (!from.ok()) return from.error();
  const Result<Node*> to = Target(target);
  if (!to.ok()) return to.error();
  if (to.value() == nullptr) return StandardError(kFileNotFound);
  if (from.value() == to.value() || from.value()->sharing != Sharing::Free) {
    return StandardError(kPermissionDenied);
  }
  to.value()->contents = std::move(from.value()->contents);
  nodes_.erase(FoldName(from.value()->path));
  if (on_copied) on_copied(source, target);
  return {};
}

Status MemoryFileSystem::Delete(std::string_view path) {
  Status fault = log_.Change("Delete " + std::string(path));
  if (!fault.ok()) return fault;
  const Result<Node*> node = ExistingFile(path);
  if (!node.ok()) return node.error();
  if ((node.value()->attributes & kAttributeReadOnly) != 0) return StandardError(kPathFileAccess);
  if (node.value()->sharing != Sharing::Free) return StandardError(kPermissionDenied);
  nodes_.erase(FoldName(node.value()->path));
  return {};
}

Status MemoryFileSystem::CreateFolder(std::string_view path) {
  Status fault = log_.Change("CreateFolder " + std::string(path));
  if (!fault.ok()) return fault;
  const Result<std::string> node_path = NodePath(path);
  if (!node_path.ok()) return node_path.error();
  if (Exists(path)) return StandardError(kPathFileAccess);
  Status parent = CheckParent(node_path.value());
  if (!parent.ok()) return parent;
  nodes_.emplace(FoldName(node_path.value()), Node{node_path.value(), kAttributeFolder});
  return {};
}

Result<std::string> MemoryFileSystem::Normalized(std::string_view path) const {
  if (path.empty()) return StandardError(kPathNotFound);
  std::string whole(path);
  std::replace(whole.begin(), whole.end(), '/', '\\');
  if (whole.starts_with('\\')) {
    whole = current_folder_.substr(0, 2) + whole;
  } else if (!HasDrive(whole)) {
    whole = current_folder_ + whole;
  }

  std::vector<std::string> names;
  for (std::size_t at = 2; at <= whole.size();) {
    const std::size_t end = std::min(whole.find('\\', at), whole.size());
    const std::string name = whole.substr(at, end - at);
    at = end + 1;
    if (name == "..") {
      if (!names.empty()) names.pop_back();
    } else if (const std::string_view kept = WithoutTrailingDots(name); !kept.empty()) {
      if (IsForbidden(kept)) return StandardError(kBadFileName);
      names.emplace_back(kept);
    }
  }
  std::string full{static_cast<char>(std::toupper(static_cast<unsigned char>(whole[0]))), ':'};
  for (const std::string& name : names) full += '\\' + name;
  if (names.empty() || whole.ends_with('\\')) full += '\\';
  return full;
}

Result<std::string> MemoryFileSystem::NodePath(std::string_view path) const {
  Result<std::string> full = Normalized(path);
  if (full.ok() && full.value().ends_with('\\')) full.value().pop_back();
  if (full.ok() && CountCharacters(full.value()) > kLongestPath) {
    return StandardError(kPathFileAccess);
  }
  return full;
}

const MemoryFileSystem::Node* MemoryFileSystem::Look(std::string_view path) const {
  const Result<std::string> node_path = NodePath(path);
  if (!node_path.ok()) return nullptr;
  const auto found = nodes_.find(FoldName(node_path.value()));
  return found == nodes_.end() ? nullptr : &found->second;
}

Result<MemoryFileSystem::Node*> MemoryFileSystem::Existing(std::string_view path) {
  const Result<std::string> node_path = NodePath(path);
  if (!node_path.ok()) return node_path.error();
  const auto found = nodes_.find(FoldName(node_path.value()));
  if (found != nodes_.end()) return &found->second;
  Status parent = CheckParent(node_path.value());
  return parent.ok() ? StandardError(kFileNotFound) : parent.error();
}

Result<MemoryFileSystem::Node*> MemoryFileSystem::ExistingFile(std::string_view path) {
  Result<Node*> node = Existing(path);
  if (node.ok() && node.value()->IsFolder()) return StandardError(kPathFileAccess);
  return node;
}

Status MemoryFileSystem::CheckParent(const std::string& node_path) const {
  if (node_path.size() < 3) return StandardError(kPathNotFound);  // a drive that is not there
  const Node* const parent = Look(FolderOf(node_path) + '\\');
  if (parent == nullptr || !parent->IsFolder()) return StandardError(kPathNotFound);
  return {};
}

Result<MemoryFileSystem::Node*> MemoryFileSystem::Target(std::string_view path) {
  Result<Node*> node = Existing(path);
  if (!node.ok()) {
    if (node.number() != kFileNotFound) return node;
    return static_cast<Node*>(nullptr);
  }
  if (node.value()->IsFolder()) return StandardError(kPathFileAccess);
  if ((node.value()->attributes & kAttributeReadOnly) != 0) return StandardError(kPathFileAccess);
  if (node.value()->sharing != Sharing::Free) return StandardError(kPermissionDenied);
  return node;
}

}  // namespace zent::testing
