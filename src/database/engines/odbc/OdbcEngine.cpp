#include "database/engines/odbc/OdbcEngine.h"

#include <utility>

#include "base/Text.h"
#include "database/engines/odbc/OdbcDatabase.h"
#include "odbc/OdbcConnection.h"

namespace zent {
namespace {

constexpr std::string_view kOdbcPrefix = "ODBC;";

class OdbcWorkspace final : public ServerWorkspace {
 public:
  OdbcWorkspace(OdbcEngine& engine, int login_timeout)
      : engine_(engine), login_timeout_(login_timeout) {}

  void SetLoginTimeout(int seconds) override { login_timeout_ = seconds; }

  Result<std::unique_ptr<OpenedDatabase>> Open(std::string_view connect) override {
    if (EqualsIgnoringCase(connect.substr(0, kOdbcPrefix.size()), kOdbcPrefix)) {
      connect.remove_prefix(kOdbcPrefix.size());
    }
    return engine_.Connect(connect, login_timeout_);
  }

 private:
  OdbcEngine& engine_;
  int login_timeout_;
};

}  // namespace

Status OdbcEngine::Prepare() {
  if (environment_ != nullptr) return {};
  Result<std::unique_ptr<odbc::OdbcEnvironment>> made = make_();
  if (!made.ok()) {
    RuntimeError error = made.error();
    error.source = kEngineSource;
    return error;
  }
  environment_ = std::move(made.value());
  faults_ = std::make_unique<OdbcFaults>(*environment_);
  return {};
}

Result<std::unique_ptr<ServerWorkspace>> OdbcEngine::CreateWorkspace(std::string_view /*name*/,
                                                                     int login_timeout) {
  if (const Status prepared = Prepare(); !prepared.ok()) return prepared.error();
  return std::unique_ptr<ServerWorkspace>(std::make_unique<OdbcWorkspace>(*this, login_timeout));
}

Result<std::unique_ptr<OpenedDatabase>> OdbcEngine::Connect(std::string_view text, int timeout) {
  if (const Status prepared = Prepare(); !prepared.ok()) return prepared.error();
  Result<std::unique_ptr<odbc::OdbcConnection>> connected =
      faults_->Told(environment_->Connect(text, timeout));
  if (!connected.ok()) return connected.error();
  return std::unique_ptr<OpenedDatabase>(
      std::make_unique<OdbcDatabase>(std::move(connected.value()), *faults_));
}

const EngineErrors& OdbcEngine::Errors() const {
  return faults_ == nullptr ? none_ : faults_->errors();
}

}  // namespace zent
