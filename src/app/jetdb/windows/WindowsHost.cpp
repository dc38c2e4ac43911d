#include "app/jetdb/windows/WindowsHost.h"

#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "jet/format/ValueText.h"
#include "platform/win32/UniqueHandle.h"
#include "platform/win32/WideText.h"
#include "ui/console/win32/HandleInput.h"

namespace zent {
namespace {

/// Everything that is left of a file or pipe; a pipe that its writer has closed is at its end.
Result<std::string> ReadAll(HANDLE file) {
  std::string text;
  std::vector<char> piece(65536);
  DWORD got = 0;
  const auto size = static_cast<DWORD>(piece.size());
  while (ReadFile(file, piece.data(), size, &got, nullptr) != FALSE) {
    if (got == 0) return text;
    text.append(piece.data(), got);
  }
  return GetLastError() == ERROR_BROKEN_PIPE ? Result<std::string>(std::move(text))
                                             : Result<std::string>(StandardError(kDeviceIoError));
}

/// Standard input: what a person types at a console comes as Unicode.
Result<std::string> ReadInput() {
  HandleInput input(GetStdHandle(STD_INPUT_HANDLE));
  if (!input.IsConsole()) return ReadAll(GetStdHandle(STD_INPUT_HANDLE));
  std::string text;
  while (true) {
    const ConsoleInput::Reading reading = input.Next(std::nullopt);
    if (reading.state != ConsoleInput::State::Line) return text;
    text += reading.line + "\n";
  }
}

/// What tells a file from all others; nothing when it is not there.
std::optional<BY_HANDLE_FILE_INFORMATION> IdentityOf(const std::string& path) {
  constexpr DWORD kWhoeverHasIt = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const UniqueHandle file(
      CreateFileW(WideOf(path).c_str(), 0, kWhoeverHasIt, nullptr, OPEN_EXISTING, 0, nullptr));
  BY_HANDLE_FILE_INFORMATION identity = {};
  if (!file.ok() || GetFileInformationByHandle(file.get(), &identity) == FALSE) return std::nullopt;
  return identity;
}

}  // namespace

WindowsJetdbHost::WindowsJetdbHost()
    : output_(GetStdHandle(STD_OUTPUT_HANDLE)), errors_(GetStdHandle(STD_ERROR_HANDLE)) {}

bool WindowsJetdbHost::IsSameFile(const std::string& a, const std::string& b) {
  if (a == b) return true;
  const std::optional<BY_HANDLE_FILE_INFORMATION> one = IdentityOf(a);
  const std::optional<BY_HANDLE_FILE_INFORMATION> other = IdentityOf(b);
  return one && other && one->dwVolumeSerialNumber == other->dwVolumeSerialNumber &&
         one->nFileIndexHigh == other->nFileIndexHigh && one->nFileIndexLow == other->nFileIndexLow;
}

Result<std::string> WindowsJetdbHost::ReadText(const std::string& path) {
  if (path == "-") return ReadInput();
  const UniqueHandle file(CreateFileW(WideOf(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, 0, nullptr));
  if (!file.ok()) return StandardError(kFileNotFound, path);
  return ReadAll(file.get());
}

std::optional<std::string> WindowsJetdbHost::Variable(const std::string& name) {
  const std::wstring wide = WideOf(name);
  const DWORD size = GetEnvironmentVariableW(wide.c_str(), nullptr, 0);
  if (size == 0) return std::nullopt;
  std::wstring value(size, L'\0');
  value.resize(GetEnvironmentVariableW(wide.c_str(), value.data(), size));
  return Utf8Of(value);
}

jet::User WindowsJetdbHost::user() {
  std::array<wchar_t, MAX_COMPUTERNAME_LENGTH + 1> name = {};
  auto size = static_cast<DWORD>(name.size());
  if (GetComputerNameW(name.data(), &size) == FALSE) return {.computer = "localhost"};
  return {.computer = Utf8Of({name.data(), size})};
}

jet::Date WindowsJetdbHost::Now() {
  SYSTEMTIME local = {};
  GetLocalTime(&local);
  return jet::JoinDate({.year = local.wYear,
                        .month = local.wMonth,
                        .day = local.wDay,
                        .hour = local.wHour,
                        .minute = local.wMinute,
                        .second = local.wSecond})
      .value_or(jet::Date());
}

}  // namespace zent
