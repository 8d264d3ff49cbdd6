#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "Core/Platform/Exceptions.h"
#include "JSON/Diagnostic.h"
#include "JSON/Value.h"

/// Why a part of a document is refused, and where.
namespace Vantor::JSON {

class Refusal : public std::runtime_error {
 public:
  /// @param line  of the document; 0 when it is not known.
  explicit Refusal(const std::string& reason, uint32 line = 0) : std::runtime_error(reason), place_{"", line} {}

  const Place& place() const { return place_; }
  void isWithin(std::string_view step, uint32 line) { place_.isWithin(step, line); }

 private:
  Place place_;
};

/// A name or key that the dictionary lacks.
class UnknownName : public Refusal {
 public:
  using Refusal::Refusal;
};

/// Reads a part of a value. What it throws gets the place of the part, but for a LimitExceeded, which is about the
/// whole.
/// @param step  a name or an index, as in a JSON pointer before its escapes.
template <class Read>
auto readingAt(std::string_view step, const Value& part, Read&& read) {
  try {
    return read();
  } catch (Refusal& refusal) {
    refusal.isWithin(step, part.line());
    throw;
  } catch (const Exceptions::LimitExceeded&) {
    throw;
  } catch (const Exceptions::BaseException& error) {
    Refusal refusal(error.message());
    refusal.isWithin(step, part.line());
    throw refusal;
  }
}

/// The same for a reader that adds to diagnostics, which get the place of the part, too.
template <class Read>
void readingAt(std::string_view step, const Value& part, Diagnostics& diagnostics, Read&& read) {
  const auto first = diagnostics.size();
  readingAt(step, part, read);
  for (auto i = first; i < diagnostics.size(); ++i) diagnostics[i].place.isWithin(step, part.line());
}

/// @throws Refusal when the object has a member of another name.
void requireMembers(const Value& object, std::initializer_list<std::string_view> names);

/// The member of an object that has to be there, and to be a text. @throws Refusal.
const Value& requiredMember(const Value& object, std::string_view name);
const std::string& requiredText(const Value& object, std::string_view name);
/// @throws Refusal for a value that is no text.
const std::string& textOf(const Value& value);
/// @throws Refusal for a value that is no whole number from `least` to `most`.
int64 numberOf(const Value& value, int64 least, int64 most);
/// @throws Refusal for the version of a format that is not the one that this program reads.
void requireVersion(const Value& version, int64 known);

}  // namespace Vantor::JSON
