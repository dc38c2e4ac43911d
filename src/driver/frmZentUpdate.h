#pragma once

#include <string>
#include <string_view>

#include "database/Counters.h"
#include "database/InUseCheck.h"
#include "database/port/OpenedDatabase.h"
#include "driver/run/UpdateRun.h"

namespace zent {

/// The window of the updater, and the order of its one run: loading it runs the whole update.
class frmZentUpdate final : public WindowEvents {
 public:
  /// `start_folder` is the package folder, a Windows path. All references outlive the window.
  frmZentUpdate(const Platform& platform, UpdateWindow& window, RunObserver& observer,
                RunOptions options, std::string start_folder);

  /// The driver: start-up, the setup list, the end of the run.
  void Form_Load() override;
  /// Unloads the window, which ends the program.
  void cmdClose_Click() override;
  /// Releases the wait of the minimum-version check.
  void cmdContinue_Click() override;
  /// Opens the download address of the service pack.
  void cmdInstall360_Click() override;

  /// Each reads its folder from the machine's folder settings, says so and keeps it in the run
  /// state; a missing one is said, sets ErrorOccurred and gives false.
  bool GetProgramFilesDir();
  bool GetCommonFilesDir();
  bool GetCommonAppDataDir();

  void ExpandDestFile(std::string& dest_file, std::string_view destination) const;
  void ShowMsg(std::string_view message) { run_.ShowMsg(message); }

  /// True when the user cancelled because the database cannot be opened exclusively.
  bool IsDataBaseOpen(std::string_view path) { return zent::IsDataBaseOpen(run_, path); }
  /// Draws the next record key of `table` into `next_number`; `success` tells whether there is one.
  void GetNextNumber(OpenedDatabase& database, std::string_view table, std::string& next_number,
                     bool& success) {
    success = zent::GetNextNumber(run_, database, table, next_number);
  }
  static std::string KeyFieldPrefix(std::string_view table) { return zent::KeyFieldPrefix(table); }

  /// How the run ended.
  RunResult result() const { return result_; }
  const UpdateRun& run() const { return run_; }
  UpdateRun& run() { return run_; }

 private:
  void RunUpdate();
  void ReadSettings();
  bool LocateApplication();
  void LocateFolders();
  void LocateData();
  void EndFailed();
  void EndSuccessful();
  void OfferRestart();
  bool FetchMachineFolder(std::string_view subkey, std::string_view value, std::string_view what,
                          std::string& folder);

  UpdateRun run_;
  RunObserver& observer_;
  std::string start_folder_;
  RunResult result_ = RunResult::Failed;
};

}  // namespace zent
