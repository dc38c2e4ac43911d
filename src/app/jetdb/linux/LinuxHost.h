#pragma once

#include "app/jetdb/JetdbHost.h"
#include "jet/host/posix/PosixStorage.h"

namespace zent {

/// The files, standard streams and clock of Linux.
class LinuxJetdbHost final : public JetdbHost {
 public:
  jet::Storage& storage() override { return storage_; }
  std::ostream& output() override;
  std::ostream& errors() override;
  bool IsSameFile(const std::string& a, const std::string& b) override;
  Result<std::string> ReadText(const std::string& path) override;
  std::optional<std::string> Variable(const std::string& name) override;
  jet::User user() override;
  jet::Date Now() override;

 private:
  jet::PosixStorage storage_;
};

}  // namespace zent
