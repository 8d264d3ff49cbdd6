#include "JSON/Document.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include "Core/DataIO/File.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/Platform/DocumentLine.h"
#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Raise.h"
#include "JSON/Refusal.h"
#include "JSON/SetValue.h"
#include "JSON/Text.h"

namespace Vantor::JSON {

struct Document::Content {
  std::string text;
  Limits limits;
  std::optional<Description> description;
};

namespace {

using Exceptions::raise;
using Exceptions::raiseAt;

constexpr std::size_t kShownBytes = 256;  // enough for the white space before a document

std::string setIn(const Part& part) { return part.index ? nameOfSet(part.value) : std::string(); }

std::string messageOf(const Part& part, const Refusal& refusal) {
  return describe(refusal.place(), setIn(part)) + refusal.what();
}

/// The place in the whole document of what was found in an item.
template <class Found>
void placeIn(const Part& part, Found& found) {
  found.isWithin(std::to_string(*part.index), part.value.line());
  found.isWithin(part.name, part.value.line());
}

/// Reads a part; a refusal becomes an exception with the whole place.
template <class Kind, class Read>
void readPart(const Part& part, Read&& read) {
  const auto readItem = [&] { read(part.value); };
  const auto readMember = [&] {
    if (!part.index) return readItem();
    readingAt(std::to_string(*part.index), part.value, readItem);
  };
  try {
    readingAt(part.name, part.value, readMember);
  } catch (const Refusal& refusal) {
    raiseAt<Kind>(refusal.place().line, "{}", messageOf(part, refusal));
  }
}

Description descriptionFrom(const Value& json) {
  requireMembers(json, {"sets", "start", "partition", "metadata"});
  if (requiredText(json, "sets") != "all") throw Refusal("\"sets\" is not \"all\"");
  Description description;
  description.partition = requiredText(json, "partition");
  MXF::PartitionChoice::parse(description.partition);
  if (json.find("start") != nullptr) description.start = instanceUIDIn(json, "start");
  const auto digest = Platform::numberFromHex<uint64>(requiredText(json, "metadata"));
  if (!digest) throw Refusal("\"metadata\" is no digest of 16 hexadecimal digits");
  description.digest = *digest;
  return description;
}

/// What a document has beside its sets.
class Outline {
 public:
  void take(const Part& part) {
    names_.insert(part.name);
    if (part.name == "sets") return takeSet(part);
    if (part.index) throw Refusal("it is an array");
    if (part.name == "format") return takeFormat(textOf(part.value));
    if (part.name == "version") return takeVersion(part.value);
    if (part.name == "description") {
      description = descriptionFrom(part.value);
      return;
    }
    throw Refusal("documents have no such member");
  }

  void requireWhole() const {
    for (const char* name : {"format", "version", "sets"}) {
      if (names_.count(name) == 0) raise<Exceptions::ParseError>("the document has no member \"{}\"", name);
    }
  }

  std::optional<Description> description;

 private:
  static void takeSet(const Part& part) {
    const bool isEmptyList = !part.index && part.value.items() != nullptr;
    if (isEmptyList) return;
    if (!part.index) throw Refusal("it is no array");
    if (part.value.members() == nullptr) throw Refusal("a set is an object");
  }
  static void takeFormat(const std::string& format) {
    if (format != kFormat) throw Refusal("the format is \"" + format + "\", not \"" + kFormat + "\"");
  }
  static void takeVersion(const Value& version) {
    if (version.integer() == nullptr || *version.integer() != kVersion) {
      throw Refusal("this version of the format is not known; version " + std::to_string(kVersion) + " is");
    }
  }

  std::set<std::string> names_;
};

}  // namespace

Document::Document(std::unique_ptr<Content> content) : content_(std::move(content)) {}
Document::Document(Document&&) noexcept = default;
Document& Document::operator=(Document&&) noexcept = default;
Document::~Document() = default;

Document Document::fromText(std::string text, const Limits& limits) {
  if (text.size() > limits.documentSize) refuseBeyond(&Limits::documentSize, limits.documentSize);
  auto content = std::make_unique<Content>();
  content->text = std::move(text);
  content->limits = limits;
  Outline outline;
  withinMemory(limits, [&] {
    readParts(content->text, [&outline](const Part& part) {
      readPart<Exceptions::ParseError>(part, [&](const Value&) { outline.take(part); });
    });
  });
  outline.requireWhole();
  content->description = std::move(outline.description);
  return Document(std::move(content));
}

Document Document::fromFile(const Path& file, const Limits& limits) {
  DataIO::File::FileDataSource source(file);
  if (source.size() > limits.documentSize) refuseBeyond(&Limits::documentSize, limits.documentSize);
  std::string text(static_cast<std::size_t>(source.size()), '\0');
  source.read(reinterpret_cast<uint8*>(text.data()), text.size());
  return fromText(std::move(text), limits);
}

const std::optional<Description>& Document::description() const { return content_->description; }

void Document::import(PartitionMetadata& partition, std::vector<std::string>* unknown, Diagnostics* diagnostics) const {
  withinMemory(content_->limits, [&] { importWithin(partition, unknown, diagnostics); });
}

void Document::importWithin(PartitionMetadata& partition, std::vector<std::string>* unknown,
                            Diagnostics* diagnostics) const {
  const auto forEachSet = [this](const auto& read) {
    readParts(content_->text, [&read](const Part& part) {
      if (part.name != "sets" || !part.index) return;
      readPart<Exceptions::InvalidFormat>(part, [&](const Value&) { read(part); });
    });
  };
  // First, since only the primer of their file has a meaning for the tags in dark sets, and so that the order of sets
  // does not decide which tags the other labels get.
  auto& tags = partition.partitionDictionary();
  std::vector<UnknownMark> marks;
  forEachSet([&](const Part& part) {
    if (isDark(part.value)) return reserveTags(part.value, tags);
    appendUnknownMarks(part.value, *tags.dictionary(), marks);
  });
  enterLabels(std::move(marks), tags);
  uint64 sets = 0;
  forEachSet([&](const Part& part) {
    if (++sets > content_->limits.sets) refuseBeyond(&Limits::sets, content_->limits.sets);
    std::vector<UnknownName> names;
    Diagnostics found;
    addSet(part.value, partition, unknown == nullptr ? nullptr : &names, found);
    for (auto& name : names) {
      placeIn(part, name);
      unknown->push_back(messageOf(part, name));
    }
    for (auto& one : found) {
      placeIn(part, one.place);
      one.set = setIn(part);
      if (diagnostics != nullptr) diagnostics->push_back(std::move(one));
    }
  });
}

bool isJSONFile(const Path& file) {
  try {
    DataIO::File::FileDataSource source(file);
    std::array<char, kShownBytes> start{};
    const auto size = static_cast<std::size_t>(std::min<uint64>(source.size(), start.size()));
    source.read(reinterpret_cast<uint8*>(start.data()), size);
    return looksLikeJSON({start.data(), size});
  } catch (const Exceptions::BaseException&) {
    return false;
  }
}

}  // namespace Vantor::JSON
