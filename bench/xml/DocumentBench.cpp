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
constexpr int kOperations = 5'000;
constexpr int kItemsSmall = 25'000;  // about 5 MB

std::string BigFile(int items) {
  std::string text = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<a>\r\n";
  for (int i = 0; i < items; ++i) {
    const std::string number = std::to_string(i);
    text.append("  <b id='").append(number).append("'>\r\n    <ID>Item").append(number);
    text.append("</ID>\r\n    <Control>\r\n      <Caption>One | Two | ").append(90, 'x');
    text.append("</Caption>\r\n    </Control>\r\n  </b>\r\n");
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

/// The same number of insertions, replacements and deletions beside, in place of and of an element
/// that `expression` names by one of the items' numbers. Seconds.
double Merge(const std::string& bytes, int items, const char* before, const char* behind) {
  Document document = Load(bytes);
  const Document system = Load("<s><b id='n'><ID>new</ID><Control/></b></s>");
  const Node source = system.SelectFirst("/s/b").value();
  std::mt19937 random(kSeed);
  int done = 0;
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < kOperations; ++i) {
    const int item = static_cast<int>(random() % static_cast<unsigned>(items));
    const Node found = document.SelectFirst(before + std::to_string(item) + behind).value();
    if (!found) continue;  // deleted or replaced before
    zent::Status changed;
    if (i % 3 == 0) changed = document.InsertBefore(document.Copy(source).value(), found);
    if (i % 3 == 1) changed = document.Replace(found, document.Copy(source).value());
    if (i % 3 == 2) changed = document.Remove(found);
    done += changed.ok() ? 1 : 0;
  }
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  if (done < kOperations / 2) std::puts("too little found");
  return time.count();
}

void MergeAt(const char* size, const std::string& bytes, int items) {
  const double round = OurRound(bytes);
  const double by_attribute = Merge(bytes, items, "/a/b[@id='", "']");
  const double by_child = Merge(bytes, items, "/a/b[ID='Item", "']");
  std::printf("%s: load and save %.2f s, %d operations by attribute %.2f s, by child %.2f s\n",
              size, round, kOperations, by_attribute, by_child);
  zent::bench::PrintRatio("XML: operations by attribute, against one load and save",
                          by_attribute / round, "below 10");
  zent::bench::PrintRatio("XML: operations by child, against one load and save", by_child / round,
                          "below 10");
}

}  // namespace

int main() {
  const std::string small = BigFile(kItemsSmall);
  const std::string big = BigFile(4 * kItemsSmall);
  std::printf("documents of %.1f and %.1f MB\n", static_cast<double>(small.size()) / 1e6,
              static_cast<double>(big.size()) / 1e6);
  zent::bench::PrintRatio("XML: load and save, against a plain parse and dump",
                          OurRound(big) / PlainRound(big), "1 to 2");
  MergeAt("5 MB", small, kItemsSmall);
  MergeAt("20 MB", big, 4 * kItemsSmall);
  return 0;
}
