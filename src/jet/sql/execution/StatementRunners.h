#pragma once

#include <cstdint>

#include "base/Status.h"
#include "jet/sql/execution/SqlSession.h"
#include "jet/sql/syntax/Statement.h"

/// One function for each kind of statement that changes something. Each returns the rows changed.
namespace zent::jet {

Result<std::int64_t> RunInsert(SqlSession& session, const InsertStatement& insert);
Result<std::int64_t> RunUpdate(SqlSession& session, const UpdateStatement& update);
Result<std::int64_t> RunDelete(SqlSession& session, const DeleteStatement& statement);
/// SELECT ... INTO.
Result<std::int64_t> RunSelectInto(SqlSession& session, const SelectStatement& select);

Status RunDefinition(SqlSession& session, const CreateTableStatement& create);
Status RunDefinition(SqlSession& session, const CreateIndexStatement& create);
Status RunDefinition(SqlSession& session, const AddColumnStatement& add);
Status RunDefinition(SqlSession& session, const AddConstraintStatement& add);
/// The values are converted. The column keeps its place and the properties that fit its new type.
/// kInvalidFieldType for a counter while there are rows.
Status RunDefinition(SqlSession& session, const AlterColumnStatement& alter);
Status RunDefinition(SqlSession& session, const DropColumnStatement& drop);
Status RunDefinition(SqlSession& session, const DropConstraintStatement& drop);
Status RunDefinition(SqlSession& session, const DropTableStatement& drop);
Status RunDefinition(SqlSession& session, const DropIndexStatement& drop);

/// The file that a statement names with IN, or the session's own for an empty path.
Result<Catalog*> CatalogOf(SqlSession& session, const std::string& path);

}  // namespace zent::jet
