#pragma once

#include <memory>
#include <string>
#include <vector>

#include "jet/catalog/Catalog.h"
#include "jet/random/DatabaseModel.h"
#include "jet/random/RandomValues.h"
#include "jet/schema/Schema.h"
#include "jet/storage/Storage.h"

namespace zent::jet::testing {

/// A new database and a model of it. Each step changes both in one way, at random: tables, columns,
/// indexes, relationships, rows, ends of transactions. What differs is a failed expectation.
class RandomDatabase {
 public:
  RandomDatabase(Storage& storage, std::string path, unsigned seed, Palette palette);

  void Step();
  void Commit();
  /// Compares rows, indexes and relationships; checks the file when nothing is uncommitted.
  void Check();
  void Close();

  const DatabaseModel& model() const { return model_; }
  /// How many changes were made, and how many were refused as they had to be.
  int made() const { return made_; }
  int refused() const { return refused_; }

 private:
  using Faults = std::set<int>;

  void Open();
  void Rollback();
  /// Notes whether what the engine did is what the model says; true when the change is made.
  bool Expect(const char* what, const Status& done, const Faults& faults);
  Schema schema() { return Schema(*catalog_, Date{38000}); }

  ModelTable* PickTable();
  std::string FreshName(std::string_view stem) {
    return std::string(stem) + std::to_string(next_++);
  }
  ModelColumn MakeColumn();
  ModelIndex MakeIndex(const ModelTable& table);

  void ChangeStructure();
  void CreateTable();
  void RenameTable(ModelTable& table);
  void DropTable(ModelTable& table);
  void AddColumn(ModelTable& table);
  void DropColumn(ModelTable& table);
  void RenameColumn(ModelTable& table);
  void CreateIndex(ModelTable& table);
  void DropIndex(ModelTable& table);
  void CreateRelation();
  void DropRelation();

  void ChangeRows(ModelTable& table);
  void Insert(ModelTable& table);
  void Update(ModelTable& table);
  void Delete(ModelTable& table);
  ModelRow MakeRow(const ModelTable& table);

  Storage& storage_;
  std::string path_;
  RandomValues random_;
  std::unique_ptr<Pager> pager_;
  std::unique_ptr<Catalog> catalog_;
  DatabaseModel model_;
  DatabaseModel committed_;
  int next_ = 1;
  int made_ = 0;
  int refused_ = 0;
};

/// The rows, columns and indexes of all tables, and the relationships, against the model; whether
/// the rows have the same places too.
void ExpectModel(Catalog& catalog, const DatabaseModel& model, bool same_places);

/// What a check of the whole file finds.
std::vector<std::string> FaultsOfFile(Pager& pager);

}  // namespace zent::jet::testing
