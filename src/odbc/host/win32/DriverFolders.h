#pragma once

namespace zent::odbc {

/// Lets a driver find the libraries that it needs, an Oracle client's for one, in the folders of
/// PATH and of the installed drivers, besides the system's. The folders of the program and of the
/// package, where anybody may have put one, stay out even if PATH names them. A Windows that cannot
/// limit the search has nothing to be let.
void AllowDriverFolders();

}  // namespace zent::odbc
