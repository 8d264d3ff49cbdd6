#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "Core/Comparison/PartitionComparison.h"
#include "Edit/Check.h"
#include "JSON/Value.h"
#include "Report/DiagnosticText.h"

/// What commands print with --json: one object each, described by docs/mxf-metadata.schema.json.
namespace Vantor::Tool {

/// --json.
CLI::Option* addJSON(CLI::App& command, bool& isJSON);

/// The version of every format below.
inline constexpr int64 kFormatVersion = 1;
/// "mxfxml-..." for what a command prints.
std::string formatName(const std::string& command);
/// An object of a command, with its format and version.
JSON::Value formatted(const std::string& command);

/// Writes a value and a line feed to standard output. @throws as `writeStandardOutput`.
void printJSON(const JSON::Value& value);

/// Adds "equal", "differences", "insignificant", "sets" and "properties" to an object. The compared partitions still
/// live.
void addComparison(const PartitionComparison& comparison, JSON::Value& object);

JSON::Value jsonOf(const Diagnostics& diagnostics);
JSON::Value jsonOf(const std::vector<Edit::Finding>& findings);
/// Every rule.
JSON::Value jsonOfRules();

}  // namespace Vantor::Tool
