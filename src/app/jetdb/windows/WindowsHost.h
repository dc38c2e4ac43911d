#pragma once

#include <windows.h>

#include "app/jetdb/JetdbHost.h"
#include "app/jetdb/windows/StandardOutput.h"
#include "jet/host/win32/Win32Storage.h"

namespace zent {

/// The files, standard streams and clock of Windows. Text goes to a console as Unicode, to a pipe
/// or file as UTF-8.
class WindowsJetdbHost final : public JetdbHost {
 public:
  WindowsJetdbHost();

  jet::Storage& storage() override { return storage_; }
  std::ostream& output() override { return output_; }
  std::ostream& errors() override { return errors_; }
  bool IsSameFile(const std::string& a, const std::string& b) override;
  Result<std::string> ReadText(const std::string& path) override;
  std::optional<std::string> Variable(const std::string& name) override;
  jet::User user() override;
  jet::Date Now() override;

 private:
  jet::Win32Storage storage_;
  StandardOutput output_;
  StandardOutput errors_;
};

}  // namespace zent
