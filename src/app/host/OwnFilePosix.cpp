#include "app/host/OwnFile.h"

namespace zent {

OwnFile CreateOwnFile(const std::string& path) {
  return OwnFile(std::fopen(path.c_str(), "wbe"));  // e: closed in a program that is started
}

}  // namespace zent
