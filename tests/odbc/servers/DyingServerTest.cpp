#include <cstdlib>
#include <fstream>

#include "odbc/OdbcRecordset.h"
#include "odbc/servers/ServerTest.h"

namespace zent::odbc {
namespace {

using testing::HasSubstr;

/// A server of this test alone, which dies while it is used.
class DyingServer : public testing::Test {
 protected:
  static std::string Path(const char* variable) {
    const char* const value = std::getenv(variable);
    return value == nullptr ? "" : value;
  }
  int Script(const std::string& name, const std::string& options = "") {
    return std::system((scripts_ + "/" + name + " " + state_ + options).c_str());
  }
  void SetUp() override { ASSERT_EQ(Script("start"), 0); }
  void TearDown() override { EXPECT_EQ(Script("stop"), 0); }

  /// Without a data source: the driver manager remembers those that it has read.
  std::string ConnectText() const {
    std::ifstream file(state_ + "/port");
    std::string port;
    std::getline(file, port);
    return "DRIVER=MariaDB;SERVER=127.0.0.1;PORT=" + port +
           ";DATABASE=korvo;UID=korvo;PWD=Geheim-Wort7;";
  }

  std::string scripts_ = Path("ZENT_SERVER_SCRIPTS");
  std::string state_ = Path("ZENT_SERVER_STATE") + "-dying";
};

TEST_F(DyingServer, IsReportedAndNothingHangs) {
  const auto environment = MakeEnvironment();
  auto connected = environment->Connect(ConnectText(), kLoginSeconds);
  ASSERT_TRUE(connected.ok()) << connected.error().description;
  OdbcConnection& connection = *connected.value();
  auto rows = OdbcRecordset::Open(connection, "SELECT * FROM Counters");
  ASSERT_TRUE(rows.ok());
  ASSERT_TRUE(rows.value()->Edit().ok());
  ASSERT_TRUE(rows.value()->Set(1, std::string("new")).ok());

  ASSERT_EQ(Script("stop", " --kill"), 0);

  const Status saved = rows.value()->Update();
  ASSERT_FALSE(saved.ok());
  EXPECT_THAT(saved.error().description, HasSubstr("connection to the server was lost"));
  EXPECT_TRUE(connection.lost());
  EXPECT_FALSE(environment->Connect(ConnectText(), kLoginSeconds).ok());
}

}  // namespace
}  // namespace zent::odbc
