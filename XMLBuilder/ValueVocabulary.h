#pragma once

#include "Core/Platform/StringForm.h"

namespace Vantor::XMLBuilder {

/// Names of the child elements of compound values, and the form of identifiers: one instance for properties in the
/// legacy namespaces, one for those of SMPTE ST 434:2014. Texts are NUL-terminated.
///
/// Two peculiarities are part of the form: the components of an RGBA layout keep the prefix "types" in either instance
/// though their namespace changes, and the JPEG 2000 names are the same in both.
struct ValueVocabulary {
  StringRepresentationEncodingType identifierForm;
  const char16_t* typesURI;
  const char16_t* numerator;
  const char16_t* denominator;
  const char16_t* major;
  const char16_t* minor;
  const char16_t* patch;
  const char16_t* build;
  const char16_t* release;
  const char16_t* year;
  const char16_t* month;
  const char16_t* day;
  const char16_t* hour;
  const char16_t* minute;
  const char16_t* second;
  const char16_t* mSec4;
};

/// Components of an RGBA layout that its text form holds, of `Types::RGBALayout::kComponents`.
inline constexpr uint32 kRGBAComponentsWritten = 5;

namespace ValueNames {

inline constexpr const char16_t* kRGBAComponent = u"types:RGBAComponent";
inline constexpr const char16_t* kCode = u"types:Code";
inline constexpr const char16_t* kDepth = u"types:Depth";
inline constexpr const char16_t* kSsizi = u"s422mTypes:Ssizi";
inline constexpr const char16_t* kXRSizi = u"s422mTypes:XRSizi";
inline constexpr const char16_t* kYRSizi = u"s422mTypes:YRSizi";
inline constexpr const char16_t* kScod = u"s422mTypes:Scod";
inline constexpr const char16_t* kSGcod = u"s422mTypes:SGcod";
inline constexpr const char16_t* kSpcod = u"s422mTypes:Spcod";
inline constexpr const char16_t* kSqcd = u"s422mTypes:Sqcd";
inline constexpr const char16_t* kSPgcd = u"s422mTypes:SPgcd";

}  // namespace ValueNames

extern const ValueVocabulary kLegacyValues;
extern const ValueVocabulary kSt434Values;

}  // namespace Vantor::XMLBuilder
