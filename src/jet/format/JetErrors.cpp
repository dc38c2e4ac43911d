#include "jet/format/JetErrors.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

namespace zent::jet {
namespace {

struct ErrorText {
  int number;
  const char* text;  ///< "|" stands for the subject
};

constexpr std::array kErrorTexts = {
    ErrorText{kOverflow, "Overflow"},
    ErrorText{kDivisionByZero, "Division by zero"},
    ErrorText{kInvalidPattern, "Invalid pattern string"},
    ErrorText{kInvalidArgument, "Invalid argument."},
    ErrorText{kTableExists, "Table '|' already exists."},
    ErrorText{kObjectNotFound,
              "The Microsoft Jet database engine could not find the object '|'.  Make sure the "
              "object exists and that you spell its name and the path name correctly."},
    ErrorText{kObjectExists, "Object '|' already exists."},
    ErrorText{kNotAnIndex, "'|' is not an index in this table."},
    ErrorText{kNoCurrentIndex, "Operation invalid without a current index."},
    ErrorText{kUpdateWithoutEdit, "Update or CancelUpdate without AddNew or Edit."},
    ErrorText{kNoCurrentRecord, "No current record."},
    ErrorText{
        kDuplicateKey,
        "The changes you requested to the table were not successful because they would create "
        "duplicate values in the index, primary key, or relationship.  Change the data in the "
        "field or fields that contain duplicate data, remove the index, or redefine the index "
        "to permit duplicate entries and try again."},
    ErrorText{kDatabaseNotFound, "Could not find file '|'."},
    ErrorText{kDiskSpace, "Not enough space on disk."},
    ErrorText{kReadOnly, "Cannot update.  Database or object is read-only."},
    ErrorText{kInvalidPassword, "Not a valid password."},
    ErrorText{kNoTransaction,
              "You tried to commit or rollback a transaction without first beginning a "
              "transaction."},
    ErrorText{kDatabaseInUse, "Could not use '|'; file already in use."},
    ErrorText{kRecordTooLarge, "Record is too large."},
    ErrorText{kCannotOpenDatabase,
              "Cannot open database '|'.  It may not be a database that your application "
              "recognizes, or the file may be corrupt."},
    ErrorText{kCannotOpenFile,
              "The Microsoft Jet database engine cannot open the file '|'.  It is already opened "
              "exclusively by another user, or you need permission to view its data."},
    ErrorText{kNullInKey, "Index or primary key cannot contain a Null value."},
    ErrorText{kTooFewParameters, "Too few parameters. Expected |."},
    ErrorText{kSelectNotExecuted, "Cannot execute a select query."},
    ErrorText{kSyntaxError, "Syntax error in query expression '|'."},
    ErrorText{kNoSuchTable,
              "The Microsoft Jet database engine cannot find the input table or query '|'.  Make "
              "sure it exists and that its name is spelled correctly."},
    ErrorText{
        kAmbiguousField,
        "The specified field '|' could refer to more than one table listed in the FROM clause "
        "of your SQL statement."},
    ErrorText{kUndefinedFunction, "Undefined function '|' in expression."},
    ErrorText{kAggregateInWhere, "Cannot have aggregate function in WHERE clause (|)."},
    ErrorText{kNotInAggregate,
              "You tried to execute a query that does not include the specified expression '|' as "
              "part of an aggregate function."},
    ErrorText{kInvalidName,
              "'|' is not a valid name.  Make sure that it does not include invalid characters or "
              "punctuation and that it is not too long."},
    ErrorText{kInvalidBookmark, "Not a valid bookmark."},
    ErrorText{
        kUnknownInsertField,
        "The INSERT INTO statement contains the following unknown field name: '|'.  Make sure "
        "you have typed the name correctly, and try the operation again."},
    ErrorText{kInvalidBookmark, "Not a valid bookmark."},
    ErrorText{kFieldTooSmall,
              "The field is too small to accept the amount of data you attempted to add.  Try "
              "inserting or pasting less data."},
    ErrorText{kRecordDeleted, "Record is deleted."},
    ErrorText{kDatabaseTooLarge,
              "The query cannot be completed.  Either the size of the query result is larger than "
              "the maximum size of a database (2 GB), or there is not enough temporary storage "
              "space on the disk to store the query result."},
    ErrorText{kTooManyFields, "Too many fields defined."},
    ErrorText{kFieldDefinedTwice, "Cannot define field more than once."},
    ErrorText{kTransactionsTooDeep, "Transactions are nested too deeply."},
    ErrorText{kRelatedRecordsExist,
              "The record cannot be deleted or changed because table '|' includes related "
              "records."},
    ErrorText{kNoRelatedRecord,
              "You cannot add or change a record because a related record is required in table "
              "'|'."},
    ErrorText{kTableInUse,
              "The database engine could not lock table '|' because it is already in use by "
              "another person or process."},
    ErrorText{kInvalidOperation, "Invalid operation."},
    ErrorText{kInvalidFieldType, "Invalid field data type."},
    ErrorText{kNotSupportedHere, "Operation is not supported for this type of object."},
    ErrorText{kItemNotFound, "Item not found in this collection."},
    ErrorText{kTooManyIndexFields, "Cannot have more than 10 fields in an index."},
    ErrorText{kFieldInIndex,
              "Cannot delete a field that is part of an index or is needed by the system."},
    ErrorText{kIndexInUse,
              "Cannot delete this index or table.  It is either the current index or is used in a "
              "relationship."},
    ErrorText{kPrimaryKeyExists, "Primary key already exists."},
    ErrorText{kIndexExists, "Index already exists."},
    ErrorText{kJoinNotSupported, "JOIN expression not supported."},
    ErrorText{kSubqueryFields,
              "You have written a subquery that can return more than one field without using the "
              "EXISTS reserved word in the main query's FROM clause."},
    ErrorText{kUnionColumns,
              "The number of columns in the two selected tables or queries of a union query do not "
              "match."},
    ErrorText{kValueRequired,
              "The field '|' cannot contain a Null value because the Required property for this "
              "field is set to True.  Enter a value in this field."},
    ErrorText{kZeroLengthNotAllowed, "Field '|' cannot be a zero-length string."},
    ErrorText{kValidationFailed, "|"},
    ErrorText{kUnrecognizedFormat, "Unrecognized database format '|'."},
    ErrorText{kValueCountDiffers,
              "Number of query values and destination fields are not the same."},
    ErrorText{kNumericOverflow, "Numeric field overflow."},
    ErrorText{kSubqueryRows, "At most one record can be returned by this subquery."},
    ErrorText{kOpenedExclusively,
              "You attempted to open a database that is already opened exclusively by user '|'.  "
              "Try again when the database is available."},
    ErrorText{kQueryTooComplex, "Query is too complex."},
    ErrorText{kRelationMismatch,
              "Relationship must be on the same number of fields with the same data types."},
    ErrorText{kObjectInvalid, "Object invalid or no longer set."},
    ErrorText{kDataTypeConversion, "Data type conversion error."},
    ErrorText{kCriteriaTypeMismatch, "Data type mismatch in criteria expression."},
    ErrorText{kNoUniqueIndex,
              "No unique index found for the referenced field of the primary table."},
    ErrorText{kTooManyIndexes,
              "The operation failed.  There are too many indexes on table '|'.  Delete some of the "
              "indexes on the table and try the operation again."},
};

}  // namespace

RuntimeError JetError(int number, std::string_view subject) {
  const auto* const found =
      std::find_if(kErrorTexts.begin(), kErrorTexts.end(),
                   [&](const ErrorText& row) { return row.number == number; });
  std::string text = found == kErrorTexts.end() ? "Reserved error." : found->text;
  const std::size_t at = text.find('|');
  if (at != std::string::npos) text.replace(at, 1, subject);
  return {.number = number, .description = std::move(text), .source = "DAO"};
}

RuntimeError JetErrorBecause(int number, std::string_view reason, std::string_view subject) {
  RuntimeError error = JetError(number, subject);
  error.description += fmt::format(" ({})", reason);
  return error;
}

RuntimeError Damaged(PageNumber page, std::string_view what) {
  return JetErrorBecause(kCannotOpenDatabase, fmt::format("page {}: {}", page, what));
}

}  // namespace zent::jet
