#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "fakes/run/RunBuilder.h"

namespace zent::testing {

/// An XML text on one line: without its declaration and the white space between elements.
std::string Compact(std::string text);

/// A run with XML files: the package's description in D:\Package\Update.xml, the application's
/// files in D:\Data\Sys and D:\Data\Customize. Forms.xml is there in both.
struct XmlMachine : RunBuilder {
  explicit XmlMachine(RunOptions options = {});

  /// The description: `entries` in an XMLUpdates element.
  void Describe(std::string_view entries);
  /// A description of one entry, for Forms.xml.
  void DescribeForms(std::string_view operations);
  void PutSystem(std::string_view name, std::string_view text);
  void PutCustomised(std::string_view name, std::string_view text);
  /// The customised copy, compact; empty when there is none.
  std::string Customised(std::string_view name = "Forms.xml") const;

  /// Runs "xupd" on the description.
  CommandRecord Xupd();
  /// Runs "updxfields" on D:\Package\Fields.xml, which is `description`.
  CommandRecord UpdXFields(std::string_view description);
  /// The messages after "Updating XML files.".
  std::vector<std::string> MergeMessages() const;
};

}  // namespace zent::testing
