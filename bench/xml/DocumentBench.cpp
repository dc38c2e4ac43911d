// Load and save of a document against a plain parse and dump of the same library, and merge
// operations on documents of 5 MB and 20 MB.
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstdio>
#include <random>
#include <string>

#include "Ratio.h"
#include "xml/Document.h"

namespace {

using zent::xml::Document;
using zent::xml::Node;

constexpr int kSeed = 4711;
constexpr int kOperations = 100;
constexpr int kItemsSmall = 25'000;  // about 5 MB

std::string BigFile(int items) {
  std::string text = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<a>\r\n";
  for (int i = 0; i < items; ++i) {
    const std::string number = std::to_string(i);
    text += "  <b id='" + number + "'>\r\n    <ID>Item" + number +
            "</ID>\r\n    <Control>\r\n      <Caption>One | Two | " + std::string(90, 'x') +
            "</Caption>\r\n    </Control>\r\n  </b>\r\n";
  }
  return text + "</a>\r\n";
}

Document Load(const std::string& bytes) { return std::move(Document::Load(bytes, "big").value()); }

double PlainRound(const std::string& bytes) {
  return zent::bench::BestTime([&bytes] {
    xmlDoc* const document = xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr,
                                           nullptr, XML_PARSE_NOBLANKS);
    xmlChar* text = nullptr;
    int size = 0;
    xmlDocDumpFormatMemory(document, &text, &size, 1);
    xmlFree(text);
    xmlFreeDoc(document);
  });
}

double OurRound(const std::string& bytes) {
  return zent::bench::BestTime([&bytes] {
    if (!Load(bytes).Serialize().ok()) std::puts("not saved");
  });
}

/// Seconds that `operations` replacements of an element named by its attribute take.
double Merge(const std::string& bytes, int items, int operations) {
  Document document = Load(bytes);
  const Document system = Load("<s><b id='n'><ID>new</ID></b></s>");
  const Node source = system.SelectFirst("/s/b").value();
  std::mt19937 random(kSeed);
  int found = 0;
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < operations; ++i) {
    const int id = static_cast<int>(random() % static_cast<unsigned>(items));
    const Node old = document.SelectFirst("/a/b[@id='" + std::to_string(id) + "']").value();
    if (!old) continue;
    found += document.Replace(old, document.Copy(source).value()).ok() ? 1 : 0;
  }
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  if (found == 0) std::puts("nothing found");
  return time.count();
}

}  // namespace

int main() {
  const std::string small = BigFile(kItemsSmall);
  const std::string big = BigFile(4 * kItemsSmall);
  std::printf("documents of %.1f and %.1f MB\n", static_cast<double>(small.size()) / 1e6,
              static_cast<double>(big.size()) / 1e6);
  zent::bench::PrintRatio("XML: load and save, against a plain parse and dump",
                          OurRound(big) / PlainRound(big), "1 to 2");
  const double once = Merge(small, kItemsSmall, kOperations);
  const double fourfold = Merge(big, 4 * kItemsSmall, kOperations);
  std::printf("operations per second: %.0f at 1x, %.0f at 4x\n", kOperations / once,
              kOperations / fourfold);
  zent::bench::PrintRatio("XML: operations at 4 times the size, against once", fourfold / once,
                          "4: linear in the size");
  return 0;
}
