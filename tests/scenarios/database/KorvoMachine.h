#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "scenarios/kill/FreshMachine.h"

namespace zent::testing {

/// A sample machine whose application keeps a small database of version 3.5, a package with its
/// template of version 3.6, and the real programs.
class KorvoMachine {
 public:
  /// `lines`: of the setup list.
  explicit KorvoMachine(const std::vector<std::string>& lines);

  /// What brings the database up to the template.
  static constexpr const char* kSynchronise = R"(stdf,Template.mdb,$(datapath)\Korvo.mdb)";
  static constexpr const char* kTemplate = "package/Template.mdb";

  /// Makes a database anew, by a name below the machine's folder: "package/Template.mdb".
  void MakeDatabase(const std::string& name, const std::string& script,
                    const std::string& password = "") const;

  /// Of the application.
  std::filesystem::path Korvo() const { return DataFolder() / "Korvo.mdb"; }
  std::filesystem::path DataFolder() const;
  /// The copies that were made of it, their folder and all.
  std::vector<std::filesystem::path> Backups() const;

  /// The rows of a query as CSV without its heading; of the application's database.
  std::string Rows(const std::string& query, const std::string& password = "") const;
  std::string RowsOf(const std::filesystem::path& file, const std::string& query,
                     const std::string& password = "") const;
  /// Empty when the file has no fault.
  std::string Faults(const std::filesystem::path& file, const std::string& password = "") const;

  /// Exit code, a line break, and what the program wrote.
  std::string Run(const std::vector<std::string>& options = {}) const;
  const FreshMachine& machine() const { return machine_; }

 private:
  FreshMachine machine_;
};

/// The database before, of three companies and two values of a list.
std::string OldDatabase();
/// The template: a longer field, another type, a new field, a new table, a new value.
std::string NewTemplate();

/// The companies before and after, as Rows gives them.
inline constexpr const char* kOldCompanies =
    "Anvil,7\nBr\xC3\xBC"
    "cke,12\nO'Neil,\n";

}  // namespace zent::testing
