#pragma once

#include <memory>
#include <string>

#include "app/jetdb/JetdbHost.h"
#include "app/jetdb/JetdbLine.h"
#include "jet/catalog/Catalog.h"

namespace zent {

/// The password that `source` tells of; empty when it tells of none.
Result<std::string> PasswordOf(JetdbHost& host, const PasswordSource& source);

/// A database of the command line, open, its password checked.
struct OpenedDatabase {
  std::unique_ptr<jet::Pager> pager;
  std::unique_ptr<jet::Catalog> catalog;
};

/// Opens the pages alone.
Result<std::unique_ptr<jet::Pager>> OpenPages(JetdbHost& host, const std::string& path,
                                              const std::string& password, jet::Sharing sharing);
/// `host` must outlive it.
Result<OpenedDatabase> OpenDatabase(JetdbHost& host, const std::string& path,
                                    const std::string& password, jet::Sharing sharing);
/// As the options of a reading verb say.
Result<OpenedDatabase> OpenToRead(JetdbHost& host, const JetdbLine& line);

}  // namespace zent
