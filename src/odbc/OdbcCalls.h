#pragma once

#ifdef _WIN32
#include <windows.h>
#endif

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <type_traits>

/// The calls of the ODBC interface that the engine makes. Its sources alone include this header;
/// what they offer to others names no type of the system.
namespace zent::odbc {

/// One table of calls: of the system's driver manager, or of a test. Texts are passed in their wide
/// forms only, UTF-16 on every system.
struct OdbcCalls {
  decltype(&::SQLAllocHandle) alloc_handle = nullptr;
  decltype(&::SQLFreeHandle) free_handle = nullptr;
  decltype(&::SQLSetEnvAttr) set_env_attr = nullptr;
  decltype(&::SQLSetConnectAttrW) set_connect_attr = nullptr;
  decltype(&::SQLDriverConnectW) driver_connect = nullptr;
  decltype(&::SQLDisconnect) disconnect = nullptr;
  decltype(&::SQLGetInfoW) get_info = nullptr;
  decltype(&::SQLGetDiagRecW) get_diag_rec = nullptr;
  decltype(&::SQLEndTran) end_tran = nullptr;
  decltype(&::SQLSetStmtAttrW) set_stmt_attr = nullptr;
  decltype(&::SQLExecDirectW) exec_direct = nullptr;
  decltype(&::SQLBindParameter) bind_parameter = nullptr;
  decltype(&::SQLRowCount) row_count = nullptr;
  decltype(&::SQLMoreResults) more_results = nullptr;
  decltype(&::SQLNumResultCols) num_result_cols = nullptr;
  decltype(&::SQLDescribeColW) describe_col = nullptr;
  decltype(&::SQLColAttributeW) col_attribute = nullptr;
  decltype(&::SQLBindCol) bind_col = nullptr;
  decltype(&::SQLFetch) fetch = nullptr;
  decltype(&::SQLGetData) get_data = nullptr;
  decltype(&::SQLTablesW) tables = nullptr;
  decltype(&::SQLColumnsW) columns = nullptr;
  decltype(&::SQLPrimaryKeysW) primary_keys = nullptr;
  decltype(&::SQLStatisticsW) statistics = nullptr;
};

/// Fills `calls` by asking `find` for the address of each name; the first name that is missing, or
/// null. `Find` is called with a name and gives a `void*`.
template <typename Find>
const char* FindCalls(Find find, OdbcCalls& calls) {
  const char* missing = nullptr;
  const auto take = [&](const char* name, auto& call) {
    void* const address = find(name);
    if (address == nullptr && missing == nullptr) missing = name;
    // Through void*: the compiler distrusts a cast from one type of function to another.
    call = reinterpret_cast<std::remove_reference_t<decltype(call)>>(address);
  };
  take("SQLAllocHandle", calls.alloc_handle);
  take("SQLFreeHandle", calls.free_handle);
  take("SQLSetEnvAttr", calls.set_env_attr);
  take("SQLSetConnectAttrW", calls.set_connect_attr);
  take("SQLDriverConnectW", calls.driver_connect);
  take("SQLDisconnect", calls.disconnect);
  take("SQLGetInfoW", calls.get_info);
  take("SQLGetDiagRecW", calls.get_diag_rec);
  take("SQLEndTran", calls.end_tran);
  take("SQLSetStmtAttrW", calls.set_stmt_attr);
  take("SQLExecDirectW", calls.exec_direct);
  take("SQLBindParameter", calls.bind_parameter);
  take("SQLRowCount", calls.row_count);
  take("SQLMoreResults", calls.more_results);
  take("SQLNumResultCols", calls.num_result_cols);
  take("SQLDescribeColW", calls.describe_col);
  take("SQLColAttributeW", calls.col_attribute);
  take("SQLBindCol", calls.bind_col);
  take("SQLFetch", calls.fetch);
  take("SQLGetData", calls.get_data);
  take("SQLTablesW", calls.tables);
  take("SQLColumnsW", calls.columns);
  take("SQLPrimaryKeysW", calls.primary_keys);
  take("SQLStatisticsW", calls.statistics);
  return missing;
}

/// A number as an address, as the calls want it. NOLINTNEXTLINE(performance-no-int-to-ptr)
inline SQLPOINTER AsPointer(SQLULEN number) { return reinterpret_cast<SQLPOINTER>(number); }

}  // namespace zent::odbc
