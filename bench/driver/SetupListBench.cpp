// What a line of the setup list costs, in a list of 10,000 and of 100,000 "msg" lines: linear when
// both cost the same.
#include <string>

#include "Ratio.h"
#include "driver/SetupList.h"
#include "fakes/run/RunBuilder.h"

namespace {

constexpr int kFew = 10'000;
constexpr int kMany = 100'000;

/// A window that drops what it is given: the cost of the run alone.
class NoWindow : public zent::testing::RecordingWindow {
 public:
  void AppendMessage(std::string_view, std::size_t) override {}
  void ShowProgress(std::size_t, std::size_t) override {}
};

double TimeOfList(int lines) {
  std::string list = "[setup]\r\n";
  for (int i = 0; i < lines; ++i) list += "msg,\"line " + std::to_string(i) + " of the list\"\r\n";
  return zent::bench::BestTime([&] {
    zent::testing::RunBuilder given;
    given.machine.files.PutFile(R"(D:\Package\ZentUpdate.ini)", list);
    NoWindow window;
    zent::testing::RecordingObserver observer;
    zent::UpdateRun run(given.machine.platform, window, observer, {});
    run.state = given.run.state;
    zent::RunSetupList(run);
  });
}

}  // namespace

int main() {
  const double few = TimeOfList(kFew) / kFew;
  const double many = TimeOfList(kMany) / kMany;
  zent::bench::PrintRatio("setup list: cost of a line, 100,000 lines against 10,000", many / few,
                          "1 is linear");
  return 0;
}
