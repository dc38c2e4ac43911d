#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The text that names a server and how to log in: "DSN=Korvo;UID=sa;PWD=secret;".
namespace zent::odbc {

struct ConnectAttribute {
  std::string name;  ///< as written
  std::string value;
};

/// The attributes in their order. A value in braces may hold ";", and "}" doubled. Pieces without
/// "=" are left out.
std::vector<ConnectAttribute> ParseConnectText(std::string_view text);

/// The value of the first attribute `name` (any case); empty without one.
std::string ConnectValue(std::string_view text, std::string_view name);

/// `message` with stars for what `connect_text` gives as "PWD" and for every "PWD=..." of its own.
/// A password of fewer than four characters is looked for behind "PWD=" only: as a part of words it
/// would be shown by its stars.
std::string HidePassword(std::string_view message, std::string_view connect_text);

}  // namespace zent::odbc
