#pragma once

#include <string>
#include <vector>

#include "tests/XMLBuilder/Support.h"

/// Values of every type with what a property element holds for them, once in the legacy namespaces and once in those of
/// SMPTE ST 434:2014. A type of the list that is missing here does not compile.
namespace Vantor::XMLBuilder {

struct GoldenValue {
  /// @param st434  empty where it is the same as `legacy`.
  GoldenValue(const Types::SimpleDataType& value, std::string legacy, const std::string& st434 = {})
      : value(value.clone()), legacy(std::move(legacy)), st434(st434.empty() ? this->legacy : st434) {}

  SharedPtr<const Types::SimpleDataType> value;
  std::string legacy;
  std::string st434;
};
using GoldenValues = std::vector<GoldenValue>;

/// `static GoldenValues values()`.
template <class T>
struct Golden;

/// The octets 80, 81, 82...
inline const Bytes kOctets = [] {
  Bytes octets;
  for (uint8 octet = 0x80; octet < 0xc0; ++octet) octets.push_back(octet);
  return octets;
}();
inline constexpr const char* kSixteenDotted = "80.81.82.83.84.85.86.87.88.89.8A.8B.8C.8D.8E.8F";
inline constexpr const char* kSixtyFourDotted =
    "80.81.82.83.84.85.86.87.88.89.8A.8B.8C.8D.8E.8F.90.91.92.93.94.95.96.97.98.99.9A.9B.9C.9D.9E.9F."
    "A0.A1.A2.A3.A4.A5.A6.A7.A8.A9.AA.AB.AC.AD.AE.AF.B0.B1.B2.B3.B4.B5.B6.B7.B8.B9.BA.BB.BC.BD.BE.BF";

/// Child elements of a JPEG 2000 value where the document does not declare their prefix.
inline std::string undeclared(std::string children) {
  for (std::size_t at = 0; (at = children.find("<s422mTypes:", at)) != std::string::npos; ++at) {
    children.insert(children.find('>', at), " {s422mTypes}");
  }
  return children;
}

inline GoldenValue jpeg2000(const Types::SimpleDataType& value, const std::string& children) {
  return {value, children, undeclared(children)};
}

/// Child elements called by a prefix, "types" in the first form and "st377Types" in the second.
inline GoldenValue compound(const Types::SimpleDataType& value, const std::string& children) {
  std::string st434 = children;
  for (std::size_t at = 0; (at = st434.find("types:", at)) != std::string::npos; at += 11) {
    st434.replace(at, 6, "st377Types:");
  }
  return {value, children, st434};
}

template <class Text>
GoldenValues goldenTexts() {
  return {{Text(), ""},
          {Text(wstring(u" a<b & \u00e9\u20ac\U0001F600 ")), " a&lt;b &amp; \u00e9\u20ac\U0001F600 "},
          {Text(wstring(u"up to").append(1, u'\0').append(u"the first NUL")), "up to"}};
}

template <class Number>
GoldenValues goldenNumbers(const std::vector<std::pair<Number, const char*>>& numbers) {
  GoldenValues values;
  for (const auto& [number, text] : numbers) values.emplace_back(number, text);
  return values;
}

template <class T>
GoldenValues goldenSigned64() {
  return goldenNumbers<T>(
      {{T(0), "0"}, {T(-1), "-1"}, {T(INT64_MAX), "9223372036854775807"}, {T(INT64_MIN), "-9223372036854775808"}});
}

template <class T>
GoldenValues goldenUnsigned8() {
  return goldenNumbers<T>({{T(0), "0"}, {T(65), "65"}, {T(255), "255"}});
}

template <class T>
GoldenValues goldenBytes() {
  return {{T(), ""}, {T(Bytes{0x0f, 0xf0}), "0FF0"}, {T(Bytes{0x01, 0xab, 0x00}), "01AB00"}};
}

template <class T>
GoldenValues goldenReferences() {
  return {{T(kOctets.data()), kSixteenDotted}, {T(), "{0}"}};
}

template <class T>
GoldenValues goldenCollections() {
  T numbers;
  for (uint8 number = 1; number <= 3; ++number) numbers.append(Types::UInt8(number).clone());
  T ratios;
  for (int32 number = 1; number <= 2; ++number) ratios.append(Types::Rational(number, -number).clone());
  return {{T(), "(nothing)"},
          {numbers, "123"},
          compound(ratios,
                   "<types:Numerator>1</types:Numerator><types:Denominator>-1</types:Denominator>"
                   "<types:Numerator>2</types:Numerator><types:Denominator>-2</types:Denominator>")};
}

template <>
struct Golden<Types::J2KQuantisationDefault> {
  static GoldenValues values() {
    const Bytes steps = {0x77, 0x0e};
    return {jpeg2000(Types::J2KQuantisationDefault(255, steps.data(), steps.size()),
                     "<s422mTypes:Sqcd>255</s422mTypes:Sqcd><s422mTypes:SPgcd>770E</s422mTypes:SPgcd>"),
            jpeg2000(Types::J2KQuantisationDefault(),
                     "<s422mTypes:Sqcd>0</s422mTypes:Sqcd><s422mTypes:SPgcd></s422mTypes:SPgcd>")};
  }
};

template <>
struct Golden<Types::J2KCodingStyleDefault> {
  static GoldenValues values() {
    const Bytes style = {0x05, 0xab};
    return {jpeg2000(Types::J2KCodingStyleDefault(200, 0xfffffffe, style.data(), style.size()),
                     "<s422mTypes:Scod>200</s422mTypes:Scod><s422mTypes:SGcod>4294967294</s422mTypes:SGcod>"
                     "<s422mTypes:Spcod>05AB</s422mTypes:Spcod>")};
  }
};

template <>
struct Golden<Types::J2KPictureComponent> {
  static GoldenValues values() {
    return {jpeg2000(Types::J2KPictureComponent(255, 1, 2),
                     "<s422mTypes:Ssizi>255</s422mTypes:Ssizi><s422mTypes:XRSizi>1</s422mTypes:XRSizi>"
                     "<s422mTypes:YRSizi>2</s422mTypes:YRSizi>")};
  }
};

template <>
struct Golden<Types::DataValue> {
  static GoldenValues values() { return goldenBytes<Types::DataValue>(); }
};

template <>
struct Golden<Types::StrongReference> {
  static GoldenValues values() { return goldenReferences<Types::StrongReference>(); }
};

template <>
struct Golden<Types::WeakReference> {
  static GoldenValues values() { return goldenReferences<Types::WeakReference>(); }
};

template <>
struct Golden<Types::Unknown> {
  static GoldenValues values() { return goldenBytes<Types::Unknown>(); }
};

template <>
struct Golden<Types::VersionType> {
  static GoldenValues values() {
    return {{Types::VersionType(1, 2), "258"}, {Types::VersionType(), "0"}, {Types::VersionType(255, 255), "65535"}};
  }
};

template <>
struct Golden<Types::UUID> {
  static GoldenValues values() {
    return {{Types::UUID(kOctets.data()), kSixteenDotted, "urn:uuid:80818283-8485-8687-8889-8a8b8c8d8e8f"},
            {Types::UUID(), "{0}", "urn:uuid:00000000-0000-0000-0000-000000000000"}};
  }
};

template <>
struct Golden<Types::UTF8String> {
  static GoldenValues values() { return goldenTexts<Types::UTF8String>(); }
};

template <>
struct Golden<Types::UTF16String> {
  static GoldenValues values() { return goldenTexts<Types::UTF16String>(); }
};

template <>
struct Golden<Types::UTF16> {
  static GoldenValues values() {
    return {{Types::UTF16('A'), "A"}, {Types::UTF16(0x20ac), "\u20ac"}, {Types::UTF16(0), ""}};
  }
};

template <>
struct Golden<Types::UniversalLabel> {
  static GoldenValues values() {
    return {
        {Types::UniversalLabel(kOctets.data()), kSixteenDotted, "urn:smpte:ul:80818283.84858687.88898a8b.8c8d8e8f"}};
  }
};

template <>
struct Golden<Types::UMID64> {
  static GoldenValues values() { return {{Types::UMID64(kOctets.data()), kSixtyFourDotted}}; }
};

template <>
struct Golden<Types::UMID32> {
  static GoldenValues values() {
    return {{Types::UMID32(kOctets.data()), std::string(kSixtyFourDotted).substr(0, 95),
             "urn:smpte:umid:80818283.84858687.88898a8b.8c8d8e8f.90919293.94959697.98999a9b.9c9d9e9f"}};
  }
};

template <>
struct Golden<Types::UInt8> {
  static GoldenValues values() { return goldenUnsigned8<Types::UInt8>(); }
};

template <>
struct Golden<Types::UInt64> {
  static GoldenValues values() {
    return goldenNumbers<Types::UInt64>({{Types::UInt64(0), "0"}, {Types::UInt64(UINT64_MAX), "18446744073709551615"}});
  }
};

template <>
struct Golden<Types::UInt32> {
  static GoldenValues values() {
    return goldenNumbers<Types::UInt32>(
        {{Types::UInt32(1000000), "1000000"}, {Types::UInt32(UINT32_MAX), "4294967295"}});
  }
};

template <>
struct Golden<Types::UInt16> {
  static GoldenValues values() {
    return goldenNumbers<Types::UInt16>({{Types::UInt16(0), "0"}, {Types::UInt16(UINT16_MAX), "65535"}});
  }
};

template <>
struct Golden<Types::Timestamp> {
  static GoldenValues values() {
    return {compound(Types::Timestamp(65535, 2, 29, 23, 59, 58, 999),
                     "<types:Year>65535</types:Year><types:Month>2</types:Month><types:Day>29</types:Day>"
                     "<types:Hour>23</types:Hour><types:Minute>59</types:Minute><types:Second>58</types:Second>"
                     "<types:mSec4>249</types:mSec4>")};
  }
};

template <>
struct Golden<Types::SignalStandard> {
  static GoldenValues values() { return goldenUnsigned8<Types::SignalStandard>(); }
};

template <>
struct Golden<Types::RGBALayout> {
  static GoldenValues values() {
    Types::RGBALayout layout;
    layout.set(1, {'R', 10});
    layout.set(4, {255, 254});
    layout.set(5, {'A', 8});  // is not written any more
    const std::string rest =
        "<types:Code>0</types:Code><types:Depth>0</types:Depth></types:RGBAComponent>"
        "{RGBAComponent}<types:Code>82</types:Code><types:Depth>10</types:Depth></types:RGBAComponent>"
        "{RGBAComponent}<types:Code>0</types:Code><types:Depth>0</types:Depth></types:RGBAComponent>"
        "{RGBAComponent}<types:Code>0</types:Code><types:Depth>0</types:Depth></types:RGBAComponent>"
        "{RGBAComponent}<types:Code>255</types:Code><types:Depth>254</types:Depth></types:RGBAComponent>";
    return {
        {layout, components("<types:RGBAComponent>", "{RGBAComponent}" + rest),
         components("<types:RGBAComponent xmlns:types=\"http://www.smpte-ra.org/schemas/434/2014/types/377-1/2012\">",
                    "{RGBAComponent}" + rest)}};
  }
  static std::string components(const std::string& startTag, std::string text) {
    const std::string placeholder = "{RGBAComponent}";
    for (std::size_t at = 0; (at = text.find(placeholder)) != std::string::npos;) {
      text.replace(at, placeholder.size(), startTag);
    }
    return text;
  }
};

template <>
struct Golden<Types::Rational> {
  static GoldenValues values() {
    return {
        compound(Types::Rational(INT32_MAX, INT32_MIN),
                 "<types:Numerator>2147483647</types:Numerator><types:Denominator>-2147483648</types:Denominator>")};
  }
};

template <>
struct Golden<Types::ProductVersion> {
  static GoldenValues values() {
    return {compound(Types::ProductVersion(1, 0, 65535, 4, Types::ReleaseVersion::kPrivateBuild),
                     "<types:Major>1</types:Major><types:Minor>0</types:Minor><types:Patch>65535</types:Patch>"
                     "<types:Build>4</types:Build><types:Release>5</types:Release>"),
            compound(Types::ProductVersion(0, 0, 0, 0, static_cast<Types::ReleaseVersion>(65535)),
                     "<types:Major>0</types:Major><types:Minor>0</types:Minor><types:Patch>0</types:Patch>"
                     "<types:Build>0</types:Build><types:Release>65535</types:Release>")};
  }
};

template <>
struct Golden<Types::Position> {
  static GoldenValues values() { return goldenSigned64<Types::Position>(); }
};

template <>
struct Golden<Types::Orientation> {
  static GoldenValues values() { return goldenUnsigned8<Types::Orientation>(); }
};

template <>
struct Golden<Types::LocalTag> {
  static GoldenValues values() { return {{Types::LocalTag(0x3c0a), "3C.0A"}}; }
};

template <>
struct Golden<Types::Length> {
  static GoldenValues values() { return goldenSigned64<Types::Length>(); }
};

template <>
struct Golden<Types::ISO8String> {
  static GoldenValues values() {
    return {{Types::ISO8String("d\xe9j\xe0 <vu>"), "d\u00e9j\u00e0 &lt;vu&gt;"}, {Types::ISO8String(), ""}};
  }
};

template <>
struct Golden<Types::ISO7String> {
  static GoldenValues values() { return {{Types::ISO7String("a \"text\""), "a \"text\""}, {Types::ISO7String(), ""}}; }
};

template <>
struct Golden<Types::Int8> {
  static GoldenValues values() {
    return goldenNumbers<Types::Int8>(
        {{Types::Int8(-128), "-128"}, {Types::Int8(65), "65"}, {Types::Int8(127), "127"}});
  }
};

template <>
struct Golden<Types::Int64> {
  static GoldenValues values() { return goldenSigned64<Types::Int64>(); }
};

template <>
struct Golden<Types::Int32> {
  static GoldenValues values() {
    return goldenNumbers<Types::Int32>({{Types::Int32(INT32_MIN), "-2147483648"}, {Types::Int32(42), "42"}});
  }
};

template <>
struct Golden<Types::Int16> {
  static GoldenValues values() {
    return goldenNumbers<Types::Int16>({{Types::Int16(INT16_MIN), "-32768"}, {Types::Int16(42), "42"}});
  }
};

template <>
struct Golden<Types::DataStream> {
  static GoldenValues values() { return goldenBytes<Types::DataStream>(); }
};

template <>
struct Golden<Types::Boolean> {
  static GoldenValues values() { return {{Types::Boolean(true), "1"}, {Types::Boolean(false), "0"}}; }
};

template <>
struct Golden<Types::Batch> {
  static GoldenValues values() { return goldenCollections<Types::Batch>(); }
};

template <>
struct Golden<Types::AUID> {
  static GoldenValues values() { return {{Types::AUID(kOctets.data()), kSixteenDotted}}; }
};

template <>
struct Golden<Types::Array> {
  static GoldenValues values() { return goldenCollections<Types::Array>(); }
};

}  // namespace Vantor::XMLBuilder
