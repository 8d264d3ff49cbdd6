#include "Core/Metadata/ElementFactory.h"

#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/ReferenceElement.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Platform/Raise.h"
#include "Core/Types/Factories.h"

namespace Vantor {

namespace {

using Types::Identifiers::Identifier;

bool isReferenceType(Identifier type) {
  return type == Types::Identifiers::kStrongReference || type == Types::Identifiers::kWeakReference;
}

auto_ptr<Element> makeCollectionElement(AttributeHandle attribute,
                                        const MetaMetadata::MetaCollectionElement& definition) {
  const bool isArray = definition.dataType() == Types::Identifiers::kArray;
  if (isReferenceType(definition.dataSubType())) {
    if (isArray) return std::make_unique<ReferenceArrayElement>(std::move(attribute));
    return std::make_unique<ReferenceBatchElement>(std::move(attribute));
  }
  if (isArray) return std::make_unique<ArrayElement>(std::move(attribute));
  return std::make_unique<BatchElement>(std::move(attribute));
}

/// Casts a value to the class that its property holds.
template <class To>
auto_ptr<To> downcast(auto_ptr<Types::SimpleDataType> value) {
  auto* wanted = dynamic_cast<To*>(value.get());
  if (wanted == nullptr && value != nullptr) {
    Exceptions::raise<Exceptions::InvalidFormat>("a property of another type cannot hold a value of type {}",
                                                 Types::Identifiers::name(value->identifier()));
  }
  value.release();  // NOLINT(bugprone-unused-return-value): it is `wanted`
  return auto_ptr<To>(wanted);
}

/// Stores a decoded value where the kind of the property keeps it.
class ValueSetter : public Metadata::Visitors::NonConstElementVisitor {
 public:
  explicit ValueSetter(auto_ptr<Types::SimpleDataType> value) : value_(std::move(value)) {}
  void visit(ReferenceBatchElement& element) override { setCollection(element); }
  void visit(ReferenceArrayElement& element) override { setCollection(element); }
  void visit(ReferenceElement& element) override {
    element.setUnverifiedReference(downcast<Types::Reference>(std::move(value_)));
  }
  void visit(BatchElement& element) override { setCollection(element); }
  void visit(ArrayElement& element) override { setCollection(element); }
  void visit(SimpleElement& element) override { element.set(std::move(value_), false); }

 private:
  void setCollection(CollectionElement& element) { element.set(downcast<Types::Collection>(std::move(value_))); }

  auto_ptr<Types::SimpleDataType> value_;
};

}  // namespace

bool isReference(const MetaMetadata::MetaElement& definition) {
  const auto* collection = MetaMetadata::asCollection(definition);
  return isReferenceType(collection == nullptr ? definition.dataType() : collection->dataSubType());
}

bool isSimple(const MetaMetadata::MetaElement& definition) {
  return MetaMetadata::asCollection(definition) == nullptr && !isReferenceType(definition.dataType());
}

auto_ptr<Element> makeElement(AttributeHandle attribute, MetadataSet* owner) {
  const auto* definition = attribute->metaElement();
  if (definition == nullptr || isSimple(*definition)) {
    return std::make_unique<SimpleElement>(std::move(attribute), owner);
  }
  if (const auto* collection = MetaMetadata::asCollection(*definition))
    return makeCollectionElement(std::move(attribute), *collection);
  return std::make_unique<ReferenceElement>(std::move(attribute));
}

auto_ptr<Types::SimpleDataType> decodeValue(const MetaMetadata::MetaElement& definition, const uint8* bytes,
                                            std::size_t size) {
  if (const auto* collection = MetaMetadata::asCollection(definition)) {
    return Types::Factories::collectionFromBytes(collection->dataType(), collection->dataSubType(), bytes, size);
  }
  return Types::Factories::fromBytes(definition.dataType(), bytes, size);
}

std::string typeName(const MetaMetadata::MetaElement& definition) {
  const std::string name = Types::Identifiers::name(definition.dataType());
  const auto* collection = MetaMetadata::asCollection(definition);
  return collection == nullptr ? name : name + " of " + Types::Identifiers::name(collection->dataSubType());
}

void setDecodedValue(Element& element, auto_ptr<Types::SimpleDataType> value) {
  ValueSetter setter(std::move(value));
  element.accept(setter);
}

}  // namespace Vantor
