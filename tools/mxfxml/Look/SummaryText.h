#pragma once

#include <string>
#include <vector>

#include "Summary/Summary.h"

/// Summaries as text for people.
namespace Vantor::Tool {

/// What belongs together, under one heading.
struct FieldGroup {
  struct Field {
    std::string name;
    std::string value;
  };
  std::string heading;
  std::vector<Field> fields;
};

/// The groups of a summary: General, then Video, Audio and so on, tracks that differ in number and name only together;
/// then descriptive frameworks. Fields that the file does not have are left out.
std::vector<FieldGroup> groupsOf(const Summary::MetadataSummary& summary);

/// Groups with a blank line between them, names and values in two columns, long values in several lines.
/// @param columns   of a line.
/// @param hasColor  with headings and names of fields set off from values.
std::string textOf(const std::vector<FieldGroup>& groups, std::size_t columns, bool hasColor = false);

/// "29.97 (30000/1001)", or a whole number.
std::string rateText(const Summary::Ratio& rate);
/// "00:28:15.040", in hours; rounded to milliseconds.
std::string timeText(double seconds);

}  // namespace Vantor::Tool
