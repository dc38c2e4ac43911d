#pragma once

#include <string>

#include "base/Status.h"
#include "jet/catalog/Catalog.h"
#include "jet/format/FileHeader.h"

namespace zent::jet {

/// Page 0 of an open database.
Result<FileHeader> HeaderOf(Pager& pager);

/// The properties of the database itself, or of one of its documents ("SummaryInfo",
/// "UserDefined"); none when there is no such object.
Result<PropertyBlob> DocumentProperties(Catalog& catalog, ObjectType type, std::string_view name);

/// "V1997", "V2000", "V2003", or "GENERIC_JET4" for a file that Access did not make, by the
/// version that Access noted in the properties.
std::string FormatName(JetVersion version, const PropertyBlob& database_properties);

}  // namespace zent::jet
