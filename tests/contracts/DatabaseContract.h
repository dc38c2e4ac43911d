#pragma once

/// What every adapter of the port OpenedDatabase does. A test program of an adapter includes this
/// file once and instantiates the suite with its databases:
///   INSTANTIATE_TEST_SUITE_P(Server, DatabaseContract, ::testing::Values(kServerDatabases));
#include "contracts/ContractDatabase.h"
#include "contracts/DatabaseFaultsContract.h"
#include "contracts/DatabaseRowsContract.h"
#include "contracts/DatabaseStructureContract.h"
#include "contracts/DatabaseTransactionsContract.h"
#include "contracts/DatabaseValuesContract.h"
