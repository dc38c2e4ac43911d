#include "database/StructureSyncCore.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/CaseFold.h"
#include "base/Text.h"
#include "database/SQLFuncs.h"
#include "database/Structure.h"

namespace zent {
namespace {

constexpr std::string_view kVersionTable = "version";
constexpr std::string_view kLookupTable = "lookup";

const FieldDefinition* FindField(const TableDefinition& table, std::string_view name) {
  const auto found =
      std::find_if(table.fields.begin(), table.fields.end(),
                   [&](const FieldDefinition& field) { return SameName(field.name, name); });
  return found == table.fields.end() ? nullptr : &*found;
}

/// The walk over the template's tables.
class Synchronisation {
 public:
  Synchronisation(UpdateRun& run, OpenedDatabase& source, OpenedDatabase& target,
                  const LookupTopUp& top_up)
      : run_(run),
        source_(source),
        target_(target),
        top_up_(top_up),
        change_{.run = run, .source = source, .target = target} {}

  Result<SyncEnd> Run() {
    if (const Status begun = target_.BeginTransaction(); !begun.ok()) return begun.error();
    Result<SyncEnd> end = SyncAll();
    const Status restored = RestoreRelations(change_);
    if (end.ok() && !restored.ok()) end = restored.error();
    if (change_.must_roll_back) {
      run_.Note("the database was left as it was");
      // The error that counts is the first one; what cannot be rolled back now is when it is
      // closed.
      static_cast<void>(target_.Rollback().ok());
      return end;
    }
    const Status committed = target_.Commit();
    if (end.ok() && !committed.ok()) end = committed.error();
    return end;
  }

 private:
  Result<SyncEnd> SyncAll() {
    Result<SyncEnd> end = SyncTables();
    if (!end.ok() || end.value() == SyncEnd::Stopped) return end;
    if (is_lookup_synchronised_ && top_up_) {
      const Result<std::size_t> added = top_up_(run_, source_, target_);
      if (!added.ok()) return added.error();
    }
    if (version_table_) {
      const Status replaced = ReplaceTable(change_, *version_table_);
      if (!replaced.ok()) return replaced.error();
    }
    return end;
  }

  /// Once: each table of the template is looked up before it is made.
  Status ListTarget() {
    Result<std::vector<TableEntry>> tables = target_.Tables();
    if (!tables.ok()) return tables.error();
    for (TableEntry& table : tables.value()) {
      std::string key = FoldName(table.name);
      present_.emplace(std::move(key), std::move(table));
    }
    return {};
  }

  bool IsLinkedInTarget(const TableEntry& table) const {
    if (run_.database.kind == kSQLServer) return false;
    const auto found = present_.find(FoldName(table.name));
    return found != present_.end() && IsLink(found->second);
  }

  Result<SyncEnd> SyncTables() {
    const Result<std::vector<TableEntry>> tables = source_.Tables();
    if (!tables.ok()) return tables.error();
    if (const Status listed = ListTarget(); !listed.ok()) return listed.error();
    std::size_t number = 0;
    for (const TableEntry& table : tables.value()) {
      ++number;
      if (IsSystemTable(table)) {
        run_.ShowMsg("Skipping " + table.name + " (system table)");
        continue;
      }
      run_.ShowMsg(
          fmt::format("Checking {} ({} of {})", table.name, number, tables.value().size()));
      if (IsLink(table) || IsLinkedInTarget(table)) {
        run_.ShowMsg("Skipping linked table. (" + table.name + ")");
        continue;
      }
      Result<SyncEnd> end = SyncTable(table.name);
      if (!end.ok() || end.value() == SyncEnd::Stopped) return end;
      if (SameName(table.name, kLookupTable)) is_lookup_synchronised_ = true;
    }
    return SyncEnd::Done;
  }

  Result<SyncEnd> SyncTable(const std::string& table) {
    if (ToLower(table) == kVersionTable) {
      version_table_ = table;
      return SyncEnd::Done;
    }
    if (present_.contains(FoldName(table))) return SyncFields(table);
    const Status copied =
        CopyTable(run_, source_, target_, table, target_.Name(), TableData::Leave);
    if (!copied.ok()) return copied.error();
    return SyncEnd::Done;
  }

  /// The rebuild comes first: rows that it copies need no value of a field that is new.
  Result<SyncEnd> SyncFields(const std::string& table) {
    const Result<std::optional<TableDefinition>> pattern = source_.Table(table);
    if (!pattern.ok()) return pattern.error();
    const Result<std::optional<TableDefinition>> present = target_.Table(table);
    if (!present.ok()) return present.error();
    if (!pattern.value() || !present.value()) return StandardError(kObjectNotSet, table);

    std::vector<FieldDefinition> missing;
    std::vector<FieldDefinition> differing;
    for (const FieldDefinition& field : pattern.value()->fields) {
      const FieldDefinition* const old = FindField(*present.value(), field.name);
      if (old == nullptr) {
        missing.push_back(field);
      } else if (NeedsRebuild(*old, field)) {
        differing.push_back(field);
      }
    }
    if (!differing.empty()) {
      Result<SyncEnd> rebuilt = RebuildFields(change_, table, differing);
      if (!rebuilt.ok() || rebuilt.value() == SyncEnd::Stopped) return rebuilt;
    }
    for (FieldDefinition& field : missing) {
      // Behind the others: what counts the positions of the fields that were there stays right.
      field.ordinal_position = 0;
      const Status added = CopyField(run_, target_, table, field);
      if (!added.ok()) return added.error();
    }
    return SyncEnd::Done;
  }

  UpdateRun& run_;
  OpenedDatabase& source_;
  OpenedDatabase& target_;
  const LookupTopUp& top_up_;
  StructureChange change_;
  std::map<std::string, TableEntry> present_;  ///< the target's tables at first, by folded name
  /// "lookup" anywhere in the names of the tables that were not skipped calls for the items; but
  /// where the table itself was skipped or is missing, nothing can be read or nothing be added.
  bool is_lookup_synchronised_ = false;
  std::optional<std::string> version_table_;  ///< as the template spells it
};

}  // namespace

bool NeedsRebuild(const FieldDefinition& field, const FieldDefinition& pattern) {
  if (field.type != pattern.type || field.size < pattern.size) return true;
  return field.type == FieldType::Decimal &&
         (field.precision < pattern.precision || field.scale < pattern.scale);
}

Result<SyncEnd> SynchroniseTables(UpdateRun& run, OpenedDatabase& source, OpenedDatabase& target,
                                  const LookupTopUp& top_up) {
  return Synchronisation(run, source, target, top_up).Run();
}

}  // namespace zent
