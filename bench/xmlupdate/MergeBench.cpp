// What a merge costs: 5,000 operations into a file of 20 MB. Linear in the operations when 5,000
// cost what 1,000 do, each; linear in the file when a byte of 20 MB costs what one of 5 MB does.
#include <cstdlib>
#include <string>

#include "Ratio.h"
#include "fakes/run/RunBuilder.h"
#include "xmlupdate/modMergeXMLs.h"

namespace {

constexpr int kFields = 100;  // of a form
const std::string kPadding(160, 'x');

/// Forms of a hundred fields each, about `megabytes` in all.
std::string FormsOf(int megabytes, const char* version) {
  std::string text = "<Forms><Version>" + std::string(version) + "</Version>";
  const auto size = static_cast<std::size_t>(megabytes) << 20U;
  for (int form = 0; text.size() < size; ++form) {
    text += "<Form ID=\"" + std::to_string(form) + "\">";
    for (int field = 0; field < kFields; ++field) {
      text +=
          "<Field ID=\"" + std::to_string(field) + "\"><Caption>" + kPadding + "</Caption></Field>";
    }
    text += "</Form>";
  }
  return text + "</Forms>";
}

/// Replaces one field each, all over the forms.
std::string DescriptionOf(int operations, int forms) {
  std::string text = "<XMLUpdates><XMLUpdate FileName=\"Forms.xml\">";
  for (int i = 0; i < operations; ++i) {
    const std::string path = "/Forms/Form[@ID='" + std::to_string(i % forms) + "']/Field[@ID='" +
                             std::to_string(i / forms % kFields) + "']";
    text += "<Replace><Node>" + path + "</Node><This>" + path + "</This></Replace>";
  }
  return text + "</XMLUpdate></XMLUpdates>";
}

double TimeOfMerge(int operations, int megabytes) {
  const std::string system = FormsOf(megabytes, "2");
  const std::string customised = FormsOf(megabytes, "1");
  const std::string description = DescriptionOf(operations, 40 * megabytes);
  return zent::bench::BestTime([&] {
    zent::testing::RunBuilder given;
    given.machine.files.PutFile(R"(D:\Data\Sys\Forms.xml)", system);
    given.machine.files.PutFile(R"(D:\Data\Customize\Forms.xml)", customised);
    given.machine.files.PutFile(R"(D:\Package\Update.xml)", description);
    if (!zent::MergeXMLs(given.run, R"(D:\Data\)", R"(D:\Package\Update.xml)").ok()) std::abort();
  });
}

}  // namespace

int main() {
  const double none = TimeOfMerge(0, 20);
  const double few = TimeOfMerge(1'000, 20) - none;
  const double many = TimeOfMerge(5'000, 20) - none;
  zent::bench::PrintRatio("xupd, 20 MB: cost of an operation, 5,000 against 1,000",
                          many / 5'000 / (few / 1'000), "1 is linear");
  zent::bench::PrintRatio("xupd: cost of a byte without operations, 20 MB against 5 MB",
                          none / 20 / (TimeOfMerge(0, 5) / 5), "1 is linear");
  zent::bench::PrintRatio("xupd, 20 MB: 5,000 operations against parsing and saving alone",
                          many / none, "the scan of 800 forms each is in it");
  return 0;
}
