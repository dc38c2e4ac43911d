#include "driver/SetupList.h"

#include <exception>
#include <string>
#include <utility>

#include "base/Text.h"
#include "driver/CommandTable.h"
#include "driver/run/Messages.h"
#include "driver/run/PathMacros.h"
#include "lib/FuncLib.h"
#include "lib/TextFileReader.h"

namespace zent {
namespace {

constexpr std::string_view kListHeader = "[setup]";
// How a package author comments: the keyword of such a line is nobody's spelling mistake.
constexpr std::string_view kCommentStarts = "*;#'/-=";

/// The lines of the list: those behind "[setup]" up to the next section.
class ListLines {
 public:
  static Result<ListLines> Open(UpdateRun& run) {
    Result<TextFileReader> reader =
        TextFileReader::Open(run.platform.files, run.platform.system, run.state.SetupLstFileName);
    if (!reader.ok()) return reader.error();
    ListLines lines(std::move(reader.value()));
    std::string line;
    while (true) {
      const Result<bool> read = lines.ReadLine(line);
      if (!read.ok()) return read.error();
      if (!read.value() || ToLower(line) == kListHeader) return lines;
    }
  }

  /// Puts the next line, trimmed, into `line`; false at the end of the list.
  Result<bool> Next(std::string& line) {
    Result<bool> read = ReadLine(line);
    if (!read.ok() || !read.value()) return read;
    line = TrimBlanks(line);
    return line.empty() || line.front() != '[';
  }

  std::size_t number() const { return number_; }  ///< of the line last read, from 1

 private:
  explicit ListLines(TextFileReader reader) : reader_(std::move(reader)) {}

  Result<bool> ReadLine(std::string& line) {
    ++number_;
    return reader_.Next(line);
  }

  TextFileReader reader_;
  std::size_t number_ = 0;
};

/// Number of lines of the list, 0 when they cannot be counted: for the progress bar alone.
std::size_t CountListLines(UpdateRun& run) {
  Result<ListLines> lines = ListLines::Open(run);
  if (!lines.ok()) return 0;
  std::size_t count = 0;
  std::string line;
  while (lines.value().Next(line).value_or(false)) ++count;
  return count;
}

/// Takes "name=" off the keyword and the quotes off every token.
TokenList CleanTokens(const TokenList& tokens) {
  TokenList cleaned;
  for (const std::string& token : tokens) {
    const bool first = cleaned.Count() == 0;
    const std::size_t equals = first ? token.find('=') : std::string::npos;
    cleaned.Add(StripQuotes(equals == std::string::npos ? token : token.substr(equals + 1)));
  }
  return cleaned;
}

bool IsComment(std::string_view line) {
  return line.empty() || kCommentStarts.find(line.front()) != std::string_view::npos;
}

/// Whether the run may go on with the path arguments of this line.
bool ToleratePaths(UpdateRun& run, const Command& command, const TokenList& tokens) {
  for (const char digit : command.paths) {
    const Result<std::string> token = tokens.At(static_cast<std::size_t>(digit - '0'));
    if (!token.ok()) continue;
    const std::optional<std::string> problem = MacroProblem(token.value());
    if (problem && !run.Tolerate(*problem)) return false;
  }
  return true;
}

/// Calls the handler. Nothing escapes it: an error handed back and even a defect end as reports.
void CallHandler(UpdateRun& run, const Command& command, const TokenList& tokens) {
  const std::string headline = "Error running command " + std::string(command.keyword);
  try {
    const Status done = command.handler(run, TokensFor(command, tokens));
    if (!done.ok()) run.Report(headline, done.error());
  } catch (const std::exception& defect) {
    run.Report(headline, {.number = kInvalidProcedureCall, .description = defect.what()});
  } catch (...) {
    run.Report(headline, StandardError(kInvalidProcedureCall));
  }
}

/// The interpreter: what it remembers from line to line is whether a block is open.
class Interpreter {
 public:
  explicit Interpreter(UpdateRun& run) : run_(run) {}

  void RunLine(const std::string& line, std::size_t number) {
    TokenList split;
    const Result<std::size_t> count = GetTokens(line, ",", split, "\"");
    if (!count.ok()) {
      ReportUnsplitLine(line, number, count.error());
      return;
    }
    const TokenList tokens = CleanTokens(split);
    const std::string keyword = tokens.At(1).value_or("");
    const Command* const command = FindCommand(keyword);
    if (command == nullptr && IsComment(line)) return;

    run_.BeginCommand(RecordOf(command, keyword, tokens, number));
    RunCommand(command, keyword, tokens);
    run_.EndCommand();
  }

 private:
  static CommandRecord RecordOf(const Command* command, const std::string& keyword,
                                const TokenList& tokens, std::size_t number) {
    CommandRecord record;
    record.line = number;
    record.keyword =
        command == nullptr ? std::string(TrimBlanks(keyword)) : std::string(command->keyword);
    for (const std::string& token : tokens) record.tokens.push_back(MaskPasswords(token));
    return record;
  }

  void RunCommand(const Command* command, const std::string& keyword, const TokenList& tokens) {
    if (command != nullptr && command->marker != BlockMarker::None) {
      block_open_ = command->marker == BlockMarker::Begin;
      return;
    }
    if (block_open_ && !run_.state.IsVista) {
      run_.Skip("in a block for another system");
      return;
    }
    if (command == nullptr) {
      run_.Tolerate("unknown keyword " + std::string(TrimBlanks(keyword)));
      return;
    }
    if (ToleratePaths(run_, *command, tokens)) CallHandler(run_, *command, tokens);
  }

  void ReportUnsplitLine(const std::string& line, std::size_t number, const RuntimeError& error) {
    CommandRecord record;
    record.line = number;
    run_.BeginCommand(record);
    run_.Ask({.title = {},
              .text = "(GetTokens) Error: " + error.description + std::string(kLineBreak) +
                      "Line: " + line});
    run_.Warn(error.description);
    run_.EndCommand();
  }

  UpdateRun& run_;
  bool block_open_ = false;
};

}  // namespace

void RunSetupList(UpdateRun& run) {
  const std::size_t steps = CountListLines(run);
  Result<ListLines> lines = ListLines::Open(run);
  Status failure = lines.status();

  Interpreter interpreter(run);
  std::string line;
  for (std::size_t step = 1; failure.ok() && !run.state.ErrorOccurred; ++step) {
    if (run.window.CloseRequested()) {
      run.ShowMsg("The update was closed before its end.");
      run.state.ErrorOccurred = true;
      return;
    }
    const Result<bool> read = lines.value().Next(line);
    failure = read.status();
    if (!read.ok() || !read.value()) break;
    run.window.ShowProgress(step, steps);
    interpreter.RunLine(line, lines.value().number());
  }
  if (!failure.ok()) {
    run.Report("Error reading setup list " + run.state.SetupLstFileName, failure.error());
  }
}

}  // namespace zent
