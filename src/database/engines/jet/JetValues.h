#pragma once

#include "base/Status.h"
#include "database/port/EngineErrors.h"
#include "database/port/FieldType.h"
#include "database/port/FieldValue.h"
#include "jet/dao/Constants.h"
#include "jet/format/Value.h"

/// Values and types of the engine and those of the port, and back.
namespace zent {

FieldValue FromJet(const jet::Value& value);
/// kDataTypeConversion for a decimal that is no number.
Result<jet::Value> ToJet(const FieldValue& value);

FieldType FromJet(jet::DataType type);
/// kDataTypeConversion for types that Access files do not have.
Result<jet::DataType> ToJet(FieldType type);

}  // namespace zent
