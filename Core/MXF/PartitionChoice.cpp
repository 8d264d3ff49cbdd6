#include "Core/MXF/PartitionChoice.h"

#include <charconv>

#include "Core/Platform/Raise.h"

namespace Vantor::MXF {

PartitionChoice PartitionChoice::parse(std::string_view text) {
  if (text == "header") return header();
  if (text == "footer") return footer();
  if (text == "best") return best();
  uint32 parsed = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, parsed);
  if (error == std::errc() && stop == end) return number(parsed);
  Exceptions::raise<Exceptions::InvalidFormat>(
      "'{}' names no partition: expected 'header', 'footer', 'best' or a number from 0", text);
}

std::string PartitionChoice::text() const {
  switch (kind_) {
    case Kind::kHeader:
      return "header";
    case Kind::kFooter:
      return "footer";
    case Kind::kNumber:
      return std::to_string(number_);
    case Kind::kBest:
      return "best";
  }
  return "";
}

std::string PartitionChoice::name() const {
  return kind_ == Kind::kNumber ? "partition " + text() : text() + " partition";
}

}  // namespace Vantor::MXF
