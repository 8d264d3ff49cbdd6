#include "Registers/DictionaryFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#ifdef __unix__
#include <sys/stat.h>
#endif

#include <algorithm>
#include <fstream>
#include <random>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Path.h"

namespace Vantor::Registers {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// A folder with files, removed with the object.
class Folder {
 public:
  Folder()
      : path_(std::filesystem::temp_directory_path() / ("vantor-registers-" + std::to_string(std::random_device()()))) {
    std::filesystem::create_directory(path_);
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  const Path& path() const { return path_; }
  Path write(const std::string& name, const std::string& text) const {
    std::ofstream(path_ / name, std::ios::binary) << text;
    return path_ / name;
  }

 private:
  Path path_;
};

std::string registerOf(const std::string& root, const std::string& entries) {
  return "<?xml version='1.0'?>\n<" + root + " xmlns='http://www.smpte-ra.org/ns'><Entries>" + entries +
         "</Entries></" + root + ">";
}
std::string entryOf(const std::string& symbol, const std::string& key, const std::string& more) {
  return "<Entry><Symbol>" + symbol + "</Symbol><UL>urn:smpte:ul:" + key + "</UL><Kind>LEAF</Kind><Name>" + symbol +
         "</Name>" + more + "</Entry>";
}

constexpr const char* kAcmeKey = "060e2b34.027f0101.0f0e0d0c.00000100";

/// Registers of one set with one property: a `Preface` that only knows how many acmes there are.
class SmallRegisters {
 public:
  SmallRegisters() {
    groups = folder.write(
        "Groups.xml",
        registerOf("GroupsRegister", entryOf("Preface", "060e2b34.027f0101.0d010101.01012f00",
                                             "<KLVSyntax>06 53</KLVSyntax><Contents><Record><UL>urn:smpte:ul:"
                                             "060e2b34.01010101.0f0e0d0c.00010000</UL></Record></Contents>")));
    elements = folder.write(
        "Elements.xml", registerOf("ElementsRegister", entryOf("Acmes", "060e2b34.01010101.0f0e0d0c.00010000",
                                                               "<Type>urn:smpte:ul:060e2b34.01040101.01010100.00000000"
                                                               "</Type>")));
    types = folder.write("Types.xml",
                         registerOf("TypesRegister", entryOf("UInt8", "060e2b34.01040101.01010100.00000000",
                                                             "<TypeKind>Integer</TypeKind><TypeSize>1</TypeSize>"
                                                             "<TypeQualifiers>isNumeric</TypeQualifiers>")));
  }

  Folder folder;
  Path groups, elements, types;
};

/// Every definition on a line of its own.
std::vector<std::string> told(const Definitions& definitions) {
  std::vector<std::string> lines;
  for (const auto& property : definitions.properties()) {
    lines.push_back(MetaMetadata::registerText(property.key.key()) + " " + std::string(property.symbol) + " " +
                    std::string(property.tagName) + " " + textOf(property.type));
  }
  for (const auto& set : definitions.sets()) {
    lines.push_back(MetaMetadata::registerText(set.key) + " " + std::string(set.symbol) + " " +
                    std::string(set.tagName) + " " + std::string(set.parent) + (set.isConcrete ? "" : " abstract"));
    for (const auto& use : set.properties) {
      lines.push_back("  " + std::to_string(use.staticLocalTag) + " " +
                      std::string(definitions.properties()[use.property].symbol) + " " +
                      std::to_string(use.requiredStatus));
    }
  }
  for (const auto& enumeration : definitions.enumerations()) {
    lines.push_back("enum " + std::string(enumeration.name) + " " + Types::Identifiers::name(enumeration.base));
    for (const auto& value : enumeration.values) {
      lines.push_back("  " + std::to_string(value.number) + " " + std::string(value.name));
    }
  }
  return lines;
}

/// Every set with every property of the dictionary that is made.
std::vector<std::string> told(const MetaMetadata::Dictionary& dictionary) {
  const auto ascii = [](const wstring& text) { return std::string(text.begin(), text.end()); };
  std::vector<std::string> lines;
  for (auto set = dictionary.metaMetadataSetBegin(); set != dictionary.metaMetadataSetEnd(); ++set) {
    lines.push_back(MetaMetadata::registerText((*set)->key()) + " " + (*set)->symbol() +
                    ((*set)->isConcrete() ? "" : " abstract"));
    for (const auto& attribute : (*set)->attributes()) {
      const auto& element = *attribute.metaElement();
      const auto* collection = MetaMetadata::asCollection(element);
      lines.push_back("  " + MetaMetadata::registerText(element.key().key()) + " " +
                      ascii(element.extensionAttribute(MetaMetadata::kTagName)) + " " +
                      std::to_string(element.dataType()) + " " +
                      std::to_string(collection == nullptr ? Types::Identifiers::kNone : collection->dataSubType()) +
                      " " + ascii(attribute.extensionAttribute(MetaMetadata::kSchemaIndex)) + " " +
                      std::to_string(attribute.staticLocalTag()) + " " + std::to_string(attribute.requiredStatus()));
    }
  }
  return lines;
}

std::string messageOf(const std::vector<Path>& files, Definitions definitions = builtInDefinitions()) {
  try {
    readDictionaryFiles(files, definitions);
    definitions.check();
  } catch (const Exceptions::BaseException& error) {
    return error.message();
  }
  return "nothing is wrong";
}

class PublishedRegisterFiles : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(folder_ / "Groups.xml")) GTEST_SKIP() << "there are no registers";
  }
  Path folder_ = Path(VANTOR_SHARED_REGISTERS_DIR) / "xml";
};

TEST_F(PublishedRegisterFiles, GiveTheDefinitionsThatAreBuiltIn) {
  Definitions definitions;
  readDictionaryFiles({folder_ / "Types.xml", folder_ / "Groups.xml", folder_ / "Elements.xml"}, definitions);
  EXPECT_EQ(definitions.sets().size(), 352u);
  EXPECT_EQ(definitions.properties().size(), 1800u);
  EXPECT_EQ(told(definitions), told(registerDefinitions()));
  EXPECT_EQ(told(*definitions.makeDictionary()), told(*registerDefinitions().makeDictionary()));
}

/// But for the two properties that common names add to a set of the registers.
std::vector<std::string> withoutAdded(std::vector<std::string> lines) {
  // Rows of a set are indented.
  const auto isAdded = [](const std::string& line) {
    return line[0] == ' ' && (line.find(" LinkedTimecodeTrackID ") != std::string::npos ||
                              line.find(" DataStreamNumber ") != std::string::npos);
  };
  const auto end = std::remove_if(lines.begin(), lines.end(), isAdded);
  EXPECT_EQ(lines.end() - end, 2);
  lines.erase(end, lines.end());
  return lines;
}

TEST_F(PublishedRegisterFiles, OverTheBuiltInDefinitionsChangeNothingButASetThatIsExtended) {
  auto definitions = builtInDefinitions();
  readDictionaryFiles({folder_}, definitions);
  EXPECT_EQ(told(definitions), withoutAdded(told(builtInDefinitions())));
  EXPECT_EQ(told(*definitions.makeDictionary()), withoutAdded(told(*builtInDictionary())));
  ASSERT_EQ(definitions.labels().size(), builtInLabels().labels().size());
  for (std::size_t i = 0; i < definitions.labels().size(); ++i) {
    EXPECT_EQ(definitions.labels()[i].key, builtInLabels().labels()[i].key);
    EXPECT_EQ(definitions.labels()[i].symbol, builtInLabels().labels()[i].symbol);
    EXPECT_EQ(definitions.labels()[i].name, builtInLabels().labels()[i].name);
  }
}

TEST(DictionaryFiles, PutRegistersOverWhatIsBuiltIn) {
  const SmallRegisters registers;
  for (const auto& files : std::vector<std::vector<Path>>{{registers.folder.path()},
                                                          {registers.types, registers.groups, registers.elements}}) {
    auto definitions = builtInDefinitions();
    readDictionaryFiles(files, definitions);
    const auto dictionary = definitions.makeDictionary();
    ASSERT_EQ(dictionary->findSetBySymbol("Preface")->attributes().size(), 1u);
    EXPECT_EQ(dictionary->findSetBySymbol("Preface")->attributes()[0].metaElement()->symbol(), "Acmes");
    EXPECT_NE(dictionary->findSetBySymbol("Track"), nullptr) << "what the registers lack stays";
  }
}

TEST(DictionaryFiles, ReadRegistersFirstWhateverTheOrder) {
  const SmallRegisters registers;
  const Path own = registers.folder.write("own.dictionary", "dictionary 1\n" + std::string(kAcmeKey) +
                                                                " Acme -\n - 060e2b34.01010101.0f0e0d0c.00010000 "
                                                                "Acmes UInt8 required\n");
  auto definitions = builtInDefinitions();
  readDictionaryFiles({own, registers.folder.path()}, definitions);
  EXPECT_EQ(definitions.makeDictionary()->findSetBySymbol("Acme")->attributes().size(), 1u);
}

TEST(DictionaryFiles, TellRegistersByTheirContent) {
  const SmallRegisters registers;
  const Path groups = registers.folder.write("groups", "\xEF\xBB\xBF \n" + registerOf("GroupsRegister", ""));
  EXPECT_THAT(messageOf({groups}), StartsWith(Platform::pathToUTF8(groups)));
  EXPECT_THAT(messageOf({registers.folder.write("a.xml", "dictionary 1\n")}), "nothing is wrong");
}

TEST(DictionaryFiles, NeedGroupsElementsAndTypesTogether) {
  const SmallRegisters registers;
  EXPECT_THAT(messageOf({registers.groups, registers.types}), HasSubstr("Elements.xml"));
  EXPECT_THAT(messageOf({registers.groups, registers.elements}), HasSubstr("Types.xml"));
  EXPECT_THAT(messageOf({registers.elements, registers.types}), HasSubstr("Groups.xml"));
}

TEST(DictionaryFiles, NameTheRegisterAndTheLineOfWhatOnlyShowsInTheEnd) {
  const SmallRegisters registers;
  const Path own =
      registers.folder.write("own.dictionary", "dictionary 1\n" + std::string(kAcmeKey) + " Preface2 - name=Preface\n");
  EXPECT_EQ(messageOf({registers.folder.path(), own}).find(Platform::pathToUTF8(own) + ":2: "), 0u);
  EXPECT_THAT(messageOf({registers.folder.path(), own}), HasSubstr(Platform::pathToUTF8(registers.groups) + ":2)"));
}

TEST(DictionaryFiles, ThatAreNotThereAreAnError) {
  EXPECT_THAT(messageOf({"/nonexistent/a.dictionary"}), HasSubstr("'/nonexistent/a.dictionary'"));
  const Folder empty;
  EXPECT_THAT(messageOf({empty.path()}), HasSubstr("Groups.xml"));
}

TEST(DictionaryFiles, DefineNoLabelThatIsBuiltIn) {
  const Folder folder;
  const std::string text = "dictionary 1\nlabel 060e2b34.04010101.0d010201.01010900 Mine My own\n";
  const Path file = folder.write("own.dictionary", text);
  EXPECT_EQ(messageOf({file}),
            Platform::pathToUTF8(file) +
                ":2: the label MXFOP1aSingleItemSinglePackageMultiTrackStreamInternal is built in, as "
                "'MXF OP1a SingleItem SinglePackage MultiTrack Stream Internal'; take the row away, "
                "or choose another key and symbol");
}

#ifdef __unix__
TEST(DictionaryFiles, AreNotWaitedForWhereTheyAreNoFiles) {
  const Folder folder;
  const Path pipe = folder.path() / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(messageOf({pipe}), "cannot read '" + Platform::pathToUTF8(pipe) + "': it is no file");
}

TEST(DictionaryFiles, AreRefusedWhenTheyAreTooLarge) {
  const Folder folder;
  const Path file = folder.write("large.xml", "<GroupsRegister/>");
  std::filesystem::resize_file(file, (std::uintmax_t{64} << 20) + 1);
  EXPECT_EQ(messageOf({file}),
            Platform::pathToUTF8(file) +
                ": a register or dictionary file has 64 MiB at most; this is another file, or one to be split");
}
#endif

}  // namespace
}  // namespace Vantor::Registers
