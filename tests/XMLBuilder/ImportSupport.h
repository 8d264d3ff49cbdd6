#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>

#include "Core/Platform/Exceptions.h"
#include "XML2Partition.h"
#include "XMLUtils/UnicodeString.h"
#include "tests/XMLBuilder/Support.h"

/// Shared by the tests of the import: ways to hand over a document, what an import throws, and properties to look at.
namespace Vantor::XML2Partition {

using XMLBuilder::Listed;
using XMLBuilder::TestDictionary;
using XMLBuilder::TestPartition;
using XMLBuilder::TestSet;
using XMLBuilder::uid;
using XMLBuilder::XMLName;

using SetList = Templates::list<MetadataSet*, Platform::malloc_alloc>;

/// A file with some bytes in it, removed with the object.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& bytes);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const std::filesystem::path& path() const { return path_; }
  XMLUtils::UnicodeString unicodePath() const { return XMLUtils::UnicodeString(wstring(path_.u16string().c_str())); }

 private:
  std::filesystem::path path_;
};

/// The three exported functions. They differ in what they do with blank text, and in a line number.
enum class Entry { kBuffer, kString, kFile };
inline constexpr Entry kEntries[] = {Entry::kBuffer, Entry::kString, Entry::kFile};

/// Imports a text as it is, handed over as UTF-8, as UTF-16 or in a file.
SetList importRaw(const std::string& text, PartitionMetadata& partition, Entry entry = Entry::kBuffer);
/// The same with what `XMLBuilder::xml` makes of the text.
SetList import(const std::string& text, PartitionMetadata& partition, Entry entry = Entry::kBuffer);
SetList import(const std::string& text, const TestPartition& partition, Entry entry = Entry::kBuffer);

/// A root that declares every prefix that `XMLBuilder::xml` knows, around a content.
std::string document(const std::string& content);

/// An exception of the core library, with all of its parts.
struct Failure {
  std::string kind;  ///< the class; "nothing" when there was no exception
  std::string message;
  std::string file;
  int line = 0;

  friend bool operator==(const Failure& left, const Failure& right) {
    return left.kind == right.kind && left.message == right.message && left.file == right.file &&
           left.line == right.line;
  }
  friend std::ostream& operator<<(std::ostream& stream, const Failure& failure);
};

/// Failures of the value readers.
Failure invalidFormat(const std::string& message, int line);
Failure invalidLength(const std::string& message, int line);
/// Failures of the XML stack, wherever it was.
Failure converted(const std::string& message);
/// A failure of the XPath engine; without one the library words it itself, under another class.
Failure pathFailure(const std::string& message);

/// What an operation throws. Anything but an exception of the core library passes through.
template <class Operation>
Failure failureOf(Operation&& operation) {
  const auto failure = [](const char* kind, const Exceptions::BaseException& error) {
    return Failure{kind, error.message(), error.file(), error.line()};
  };
  try {
    operation();
    return {"nothing", {}, {}, 0};
  } catch (const Exceptions::ParseError& error) {
    return failure("ParseError", error);
  } catch (const Exceptions::InvalidFormat& error) {
    return failure("InvalidFormat", error);
  } catch (const Exceptions::InvalidLength& error) {
    return failure("InvalidLength", error);
  } catch (const Exceptions::BaseException& error) {
    return failure("BaseException", error);
  }
}

/// A property by its symbol, present or not; misplaced ones too.
Element& property(MetadataSet& set, const std::string& symbol);
/// Its value, null when it has none.
const Types::SimpleDataType* valueOf(MetadataSet& set, const std::string& symbol);

/// Whether a value is there, of the expected type and with the expected octets.
::testing::AssertionResult holds(const Types::SimpleDataType* actual, const Types::SimpleDataType& expected);
inline ::testing::AssertionResult holds(const Types::SimpleDataType* actual,
                                        const auto_ptr<Types::SimpleDataType>& expected) {
  return holds(actual, *expected);
}

/// A partition whose dictionary knows a Preface with a property `Prop` of some type.
TestPartition emptyPartition(MetaMetadata::DataType type, const XMLName& name = {});
/// A document for it, as `XMLBuilder::xml` takes it: `<p:Prop>content</p:Prop>` in a Preface.
std::string withProperty(const std::string& content, const XMLName& name = {});

/// The property `Prop` of a set that an import made: `<p:Prop>content</p:Prop>`, of some type.
class ImportedProperty {
 public:
  ImportedProperty(MetaMetadata::DataType type, const std::string& content, Entry entry = Entry::kBuffer,
                   const XMLName& name = {});

  Element& element() const { return property(set(), "Prop"); }
  bool isPresent() const { return element().isPresent(); }
  const Types::SimpleDataType* value() const { return element().wireValue(); }
  /// The value as what it is expected to be; throws std::bad_cast when it is something else.
  template <class T>
  const T& as() const {
    return dynamic_cast<const T&>(*value());
  }

  MetadataSet& set() const { return *partition_->sets().front(); }
  const TestPartition& partition() const { return partition_; }

 private:
  TestPartition partition_;
};

/// What importing such a property throws.
Failure failureOf(MetaMetadata::DataType type, const std::string& content, Entry entry = Entry::kBuffer);

/// The identifiers of an exported document's sets and references, numbered as they come: the first becomes `uid(1)`,
/// and wherever it stands again, `uid(1)`. Other identifiers stay.
std::string renumbered(const std::string& text);

}  // namespace Vantor::XML2Partition
