#include "platform/win32/session/WaitedProgram.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <utility>

#include "platform/ErrorOutput.h"
#include "platform/win32/AnsiText.h"
#include "platform/win32/Win32Errors.h"

namespace zent {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kStep(10);
constexpr DWORD kPipeSize = 65536;  // bytes
// What the program has started itself may write on and on.
constexpr int kReadsInOneGo = 16;

class WaitedProgram : public RunningProgram {
 public:
  WaitedProgram(UniqueHandle process, UniqueHandle reader)
      : process_(std::move(process)), reader_(std::move(reader)) {}

  Result<std::optional<ProgramEnd>> Wait(milliseconds time) override {
    const auto latest = steady_clock::now() + time;
    for (milliseconds step(0);;) {
      if (const Status looked = LookForEnd(step); !looked.ok()) return looked.error();
      // In this order: what was written before the end is in the pipe by now.
      ReadErrorOutput();
      if (exit_code_) return std::optional(ProgramEnd{*exit_code_, output_.Text(TextOfAnsi)});
      const auto left = std::chrono::ceil<milliseconds>(latest - steady_clock::now());
      if (left <= milliseconds(0)) return std::optional<ProgramEnd>();
      step = std::min(left, kStep);
    }
  }

 private:
  Status LookForEnd(milliseconds time) {
    if (exit_code_) return {};
    const DWORD waited = WaitForSingleObject(process_.get(), static_cast<DWORD>(time.count()));
    if (waited == WAIT_TIMEOUT) return {};
    DWORD code = 0;
    if (waited != WAIT_OBJECT_0 || GetExitCodeProcess(process_.get(), &code) == FALSE) {
      return LastError();
    }
    exit_code_ = code;
    return {};
  }

  /// Reads what is there: a read that waits would wait for whoever else holds the pipe.
  void ReadErrorOutput() {
    std::array<char, 4096> buffer = {};
    for (int reads = 0; reads < kReadsInOneGo; ++reads) {
      DWORD there = 0;
      DWORD count = 0;
      if (PeekNamedPipe(reader_.get(), nullptr, 0, nullptr, &there, nullptr) == FALSE ||
          there == 0 ||
          ReadFile(reader_.get(), buffer.data(), std::min(there, static_cast<DWORD>(buffer.size())),
                   &count, nullptr) == FALSE) {
        return;
      }
      output_.Add({buffer.data(), count});
    }
  }

  UniqueHandle process_;
  UniqueHandle reader_;
  ErrorOutput output_;
  std::optional<std::uint32_t> exit_code_;
};

/// A program that inherits handles inherits all that may be. Those of our own streams, which
/// whoever started us waits on, are kept from that for good: nothing that we start gets them.
void KeepOwnStreams() {
  for (const DWORD stream : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
    SetHandleInformation(GetStdHandle(stream), HANDLE_FLAG_INHERIT, 0);
  }
}

}  // namespace

Result<WaitedStreams> WaitedStreams::Open() {
  KeepOwnStreams();
  SECURITY_ATTRIBUTES inherited = {};
  inherited.nLength = sizeof(inherited);
  inherited.bInheritHandle = TRUE;
  HANDLE reader = nullptr;
  HANDLE writer = nullptr;
  if (CreatePipe(&reader, &writer, &inherited, kPipeSize) == FALSE) return LastError();
  WaitedStreams streams;
  streams.reader = UniqueHandle(reader);
  streams.standard_error = UniqueHandle(writer);
  if (SetHandleInformation(reader, HANDLE_FLAG_INHERIT, 0) == FALSE) return LastError();
  streams.nothing = UniqueHandle(CreateFileA("NUL", GENERIC_READ | GENERIC_WRITE,
                                             FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                             OPEN_EXISTING, 0, nullptr));
  if (!streams.nothing.ok()) return LastError();
  return streams;
}

void WaitedStreams::GiveTo(STARTUPINFOA& startup) const {
  startup.dwFlags |= STARTF_USESTDHANDLES;
  startup.hStdInput = nothing.get();
  startup.hStdOutput = nothing.get();
  startup.hStdError = standard_error.get();
}

std::unique_ptr<RunningProgram> WaitFor(UniqueHandle process, UniqueHandle reader) {
  return std::make_unique<WaitedProgram>(std::move(process), std::move(reader));
}

}  // namespace zent
