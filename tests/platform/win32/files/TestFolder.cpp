#include "platform/win32/files/TestFolder.h"

#include <windows.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <system_error>

#include "base/Utf.h"

namespace zent::testing {
namespace {

const std::filesystem::path kTop = R"(C:\top)";

std::filesystem::path PathOf(const std::string& utf8) {
  const std::u16string name = ToUtf16(utf8);
  return std::wstring(name.begin(), name.end());
}

/// Read-only files too.
void RemoveTop() {
  std::error_code ignored;
  for (auto it = std::filesystem::recursive_directory_iterator(kTop, ignored);
       it != std::filesystem::recursive_directory_iterator(); it.increment(ignored)) {
    SetFileAttributesW(it->path().c_str(), FILE_ATTRIBUTE_NORMAL);
  }
  std::filesystem::remove_all(kTop, ignored);
}

}  // namespace

std::filesystem::path TestFolder::Put(const std::string& name, std::string_view contents) const {
  return folder_.Put(PathOf(name), contents);
}

std::vector<std::string> TestFolder::Names() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(path())) {
    const std::wstring name = entry.path().filename().wstring();
    names.push_back(FromUtf16(std::u16string(name.begin(), name.end())));
  }
  std::sort(names.begin(), names.end());
  return names;
}

TopFolder::TopFolder() {
  RemoveTop();
  std::filesystem::create_directories(kTop / "w");
}

TopFolder::~TopFolder() { RemoveTop(); }

std::filesystem::path TopFolder::W(const std::string& name) const {
  return kTop / "w" / PathOf(name);
}

std::filesystem::path TopFolder::Put(const std::string& name, std::string_view contents) const {
  std::ofstream(W(name), std::ios::binary) << contents;
  return W(name);
}

std::string TopFolder::Get(const std::string& name) const {
  std::ifstream file(W(name), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void TopFolder::MakeFolder(const std::string& name) const {
  std::filesystem::create_directories(W(name));
}

std::vector<std::string> Found(FileSystem& files, std::string_view pattern) {
  const Result<std::vector<FileEntry>> found = files.Find(pattern);
  if (!found.ok()) return {std::to_string(found.number())};
  std::vector<std::string> names;
  for (const FileEntry& entry : found.value()) names.push_back(entry.name);
  return names;
}

}  // namespace zent::testing
