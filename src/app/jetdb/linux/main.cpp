#include <exception>
#include <iostream>

#include "app/jetdb/linux/LinuxHost.h"

// Nothing is done about Ctrl+C: a transaction that it cuts off is undone by the next opening.
int main(int argc, char** argv) {
  try {
    std::ios::sync_with_stdio(false);
    zent::LinuxJetdbHost host;
    return zent::RunJetdb(host, argc, argv);
  } catch (const std::exception& defect) {
    std::cerr << "jetdb: " << defect.what() << "\n";
    return zent::kJetdbFailed;
  }
}
