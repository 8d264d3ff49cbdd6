#include "Editing/GivenValues.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>

#include "Core/Metadata/PropertyLine.h"
#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Text/StringText.h"
#include "JSON/PropertyValue.h"
#include "JSON/Refusal.h"
#include "JSON/Text.h"
#include "Report/JSONOutput.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardInput.h"

namespace Vantor::Tool {

namespace {

using JSON::Refusal;
using GivenValues = std::vector<std::shared_ptr<const GivenValue>>;

/// Pipes, too, which have no size.
std::string documentText(const Path& document) {
  if (isStandardInput(document)) return StandardInput::instance().all();
  std::error_code error;
  if (std::filesystem::is_directory(document, error)) throw CommandError("it is a folder");
  errno = 0;
  std::ifstream stream(document, std::ios::binary);
  if (!stream) throw CommandError(std::generic_category().message(errno));
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::string messageOf(const std::string& pointer, const Refusal& refusal) {
  return JSON::describe({pointer + refusal.place().pointer, refusal.place().line}, "") + refusal.what();
}

bool isOctets(const JSON::Value& json) { return json.find("octets") != nullptr; }

/// As it stands for any property, whatever its type.
wstring rawOctetsText(const Bytes& octets) {
  return u"0x[" + Platform::hexText<wstring>(octets.data(), octets.size()) + u"]";
}

PropertyPath pathIn(const std::string& text) {
  PropertyPath path(text);
  const bool isWhole = !path.set.empty() && !path.property.empty() && !path.value;
  if (!isWhole) throw Refusal("'" + text + "' is no property; write Set.Property");
  return path;
}

/// Reads the values of a document.
class ValuesReader {
 public:
  explicit ValuesReader(std::string document) : document_(std::move(document)) {}

  GivenValues read(const JSON::Value& root) {
    if (root.find("format") != nullptr) {
      readFiles(root);
    } else {
      readPlain(root);
    }
    if (values_.empty()) throw Refusal("there are no values");
    return std::move(values_);
  }

 private:
  void readPlain(const JSON::Value& root) {
    for (const auto& [name, value] : *root.members()) {
      JSON::readingAt(name, value, [&, &name = name, &value = value] {
        add(pathIn(name), {document_, "", name, value, std::nullopt, value.line()});
      });
    }
  }

  void readFiles(const JSON::Value& root) {
    requireFormat(root);
    JSON::requireMembers(root, {"format", "version", "files"});
    const auto& files = JSON::requiredMember(root, "files");
    JSON::readingAt("files", files, [&] {
      if (files.items() == nullptr) throw Refusal("it is no array");
      const auto count = files.items()->size();
      if (count != 1) throw Refusal("values of one file are taken, not of " + std::to_string(count));
      JSON::readingAt("0", files.items()->front(), [&] { readFile(files.items()->front()); });
    });
  }

  static void requireFormat(const JSON::Value& root) {
    const auto& format = JSON::requiredText(root, "format");
    const auto expected = formatName("get");
    if (format != expected) throw Refusal("the format is \"" + format + "\", not \"" + expected + "\"");
    const auto& version = JSON::requiredMember(root, "version");
    JSON::readingAt("version", version, [&] { JSON::requireVersion(version, kFormatVersion); });
  }

  void readFile(const JSON::Value& file) {
    JSON::requireMembers(file, {"file", "partition", "values", "missing", "problem"});
    if (file.find("problem") != nullptr) throw Refusal("there are no values: " + JSON::requiredText(file, "problem"));
    const auto& values = JSON::requiredMember(file, "values");
    JSON::readingAt("values", values, [&] {
      if (values.items() == nullptr) throw Refusal("it is no array");
      for (std::size_t i = 0; i < values.items()->size(); ++i) {
        const auto& value = values.items()->at(i);
        JSON::readingAt(std::to_string(i), value, [&] { readValue(value, i); });
      }
    });
  }

  void readValue(const JSON::Value& json, std::size_t place) {
    JSON::requireMembers(json, {"path", "set", "instanceUID", "property", "value", "text"});
    auto path = pathIn(JSON::requiredText(json, "path") + "." + JSON::requiredText(json, "property"));
    GivenValue::Part part = {document_, "/files/0/values/" + std::to_string(place), "value", {}, {}, json.line()};
    if (const auto* value = json.find("value")) part.value = *value;
    if (json.find("text") != nullptr) part.text = JSON::requiredText(json, "text");
    if (!part.value && !part.text) throw Refusal("the member \"value\" is missing");
    add(std::move(path), std::move(part));
  }

  void add(PropertyPath path, GivenValue::Part part) {
    values_.push_back(std::make_shared<GivenValue>(std::move(path), std::move(part)));
  }

  std::string document_;
  GivenValues values_;
};

}  // namespace

/// @param json  null for the object itself.
template <class Action>
void GivenValue::within(const std::string& member, const JSON::Value* json, Action action) const {
  try {
    JSON::Value object;
    object.setLine(part_.line);
    JSON::readingAt(member, json == nullptr ? object : *json, action);
  } catch (const Refusal& refusal) {
    throw OtherFileError(part_.document + ": " + messageOf(part_.pointer, refusal));
  }
}

void GivenValue::assignTo(MetadataSet& set) const {
  const bool isText = !part_.value;
  within(isText ? "text" : part_.member, isText ? nullptr : &*part_.value,
         [&] { set.set(path_.property, textFor(set)); });
}

/// What stands for the value on a command line, so that all rules of that hold.
wstring GivenValue::textFor(const MetadataSet& set) const {
  if (!part_.value) return Utils::stringToWstring(*part_.text);
  const auto& json = *part_.value;
  if (json.isNull()) throw Refusal("null is no value; --remove removes a property");
  const auto* definition = heldProperty(set, path_.property).definition;
  if (isOctets(json)) return rawOctetsText(JSON::octetsIn(json));
  const bool isWord = json.text() != nullptr && !Types::isTextType(definition->dataType());
  if (isWord) return Utils::stringToWstring(*json.text());
  const PropertyPlace place = {&set, definition};
  return printLine(place, *JSON::valueFrom(place, json));
}

std::vector<std::string> GivenValue::requireAgreement(const MetadataSet& set) const {
  const auto held = heldProperty(set, path_.property);
  const auto* value = held.element == nullptr ? nullptr : held.element->wireValue();
  const bool isExact = part_.value && !isOctets(*part_.value) && value != nullptr;
  if (!isExact || held.element->metaAttribute().asUnknown() != nullptr) return {};
  JSON::Diagnostics found;
  within(part_.member, &*part_.value, [&] {
    JSON::requireAgreement({&set, held.definition}, *part_.value, *value, found);
  });
  if (part_.text) within("text", nullptr, [&] { requireText(set); });
  return messagesOf(std::move(found));
}

std::vector<std::string> GivenValue::messagesOf(JSON::Diagnostics diagnostics) const {
  std::vector<std::string> messages;
  for (auto& diagnostic : diagnostics) {
    diagnostic.place.isWithin(part_.member, part_.value->line());
    diagnostic.place.pointer.insert(0, part_.pointer);
    messages.push_back(part_.document + ": warning: " + describe(diagnostic));
  }
  return messages;
}

void GivenValue::requireText(const MetadataSet& set) const {
  const auto held = heldProperty(set, path_.property);
  const auto line = Utils::wstringToString(lineOf(set, held).value_or(wstring()));
  const auto text = Utils::stringToWstring(*part_.text);
  const PropertyPlace place = {&set, held.definition};
  if (line == *part_.text || parseProperty(place, text)->equals(*held.element->wireValue())) return;
  throw Refusal("\"text\" has '" + *part_.text + "', but the value is " + line +
                "; correct one, or leave \"text\" out");
}

GivenValues readGivenValues(const Path& document) {
  const auto name = oneLine(Platform::pathToUTF8(document));
  try {
    return ValuesReader(name).read(JSON::fromText(documentText(document)));
  } catch (const Refusal& refusal) {
    throw OtherFileError(name + ": " + (refusal.place().pointer.empty() ? refusal.what() : messageOf("", refusal)));
  } catch (...) {
    throw OtherFileError(name + ": " + currentExceptionText());
  }
}

}  // namespace Vantor::Tool
