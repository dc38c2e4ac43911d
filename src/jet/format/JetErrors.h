#pragma once

#include <string>
#include <string_view>

#include "base/RuntimeError.h"
#include "jet/format/Layout.h"

/// Errors of the engine: the numbers and texts of DAO, source "DAO".
namespace zent::jet {

inline constexpr int kOverflow = 6;
inline constexpr int kDivisionByZero = 11;
inline constexpr int kInvalidPattern = 93;
inline constexpr int kInvalidArgument = 3001;
inline constexpr int kTableExists = 3010;
inline constexpr int kObjectNotFound = 3011;
inline constexpr int kObjectExists = 3012;
inline constexpr int kNotAnIndex = 3015;
inline constexpr int kNoCurrentIndex = 3019;
inline constexpr int kUpdateWithoutEdit = 3020;
inline constexpr int kNoCurrentRecord = 3021;
inline constexpr int kDuplicateKey = 3022;
inline constexpr int kDatabaseNotFound = 3024;
inline constexpr int kDiskSpace = 3026;
inline constexpr int kReadOnly = 3027;
inline constexpr int kInvalidPassword = 3031;
inline constexpr int kNoTransaction = 3034;
inline constexpr int kDatabaseInUse = 3045;
inline constexpr int kRecordTooLarge = 3047;
inline constexpr int kCannotOpenDatabase = 3049;  ///< not a database, or damaged
inline constexpr int kCannotOpenFile = 3051;      ///< rights
inline constexpr int kNullInKey = 3058;
inline constexpr int kTooFewParameters = 3061;
inline constexpr int kSelectNotExecuted = 3065;
inline constexpr int kSyntaxError = 3075;
inline constexpr int kNoSuchTable = 3078;
inline constexpr int kAmbiguousField = 3079;
inline constexpr int kUndefinedFunction = 3085;
inline constexpr int kAggregateInWhere = 3096;
inline constexpr int kNotInAggregate = 3122;
inline constexpr int kInvalidName = 3125;
inline constexpr int kUnknownInsertField = 3127;
inline constexpr int kInvalidBookmark = 3159;
inline constexpr int kFieldTooSmall = 3163;
inline constexpr int kRecordDeleted = 3167;
inline constexpr int kDatabaseTooLarge = 3183;
inline constexpr int kTooManyFields = 3190;
inline constexpr int kFieldDefinedTwice = 3191;
inline constexpr int kTransactionsTooDeep = 3193;
inline constexpr int kRelatedRecordsExist = 3200;
inline constexpr int kNoRelatedRecord = 3201;
inline constexpr int kTableInUse = 3211;
inline constexpr int kInvalidOperation = 3219;
inline constexpr int kNotSupportedHere = 3251;
inline constexpr int kInvalidFieldType = 3259;
inline constexpr int kItemNotFound = 3265;
inline constexpr int kTooManyIndexFields = 3277;
inline constexpr int kFieldInIndex = 3280;
inline constexpr int kIndexInUse = 3281;
inline constexpr int kPrimaryKeyExists = 3283;
inline constexpr int kIndexExists = 3284;
inline constexpr int kJoinNotSupported = 3296;
inline constexpr int kSubqueryFields = 3306;
inline constexpr int kUnionColumns = 3307;
inline constexpr int kValueRequired = 3314;
inline constexpr int kZeroLengthNotAllowed = 3315;
inline constexpr int kValidationFailed = 3316;
inline constexpr int kUnrecognizedFormat = 3343;
inline constexpr int kValueCountDiffers = 3346;
inline constexpr int kNumericOverflow = 3349;
inline constexpr int kSubqueryRows = 3354;
inline constexpr int kOpenedExclusively = 3356;
inline constexpr int kQueryTooComplex = 3360;
inline constexpr int kRelationMismatch = 3368;
inline constexpr int kObjectInvalid = 3420;
inline constexpr int kDataTypeConversion = 3421;
inline constexpr int kCriteriaTypeMismatch = 3464;
inline constexpr int kNoUniqueIndex = 3609;
inline constexpr int kTooManyIndexes = 3626;

/// The error `number` with DAO's text; `subject` is the name that the text holds between quotes.
RuntimeError JetError(int number, std::string_view subject = {});

/// As JetError, with our own words behind DAO's: "Cannot update. ... (reason)".
RuntimeError JetErrorBecause(int number, std::string_view reason, std::string_view subject = {});

/// Damage of `page`: kCannotOpenDatabase, ending in "(page 17: `what`)".
RuntimeError Damaged(PageNumber page, std::string_view what);

}  // namespace zent::jet
