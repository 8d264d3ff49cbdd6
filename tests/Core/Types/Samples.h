#pragma once

#include <vector>

#include "tests/Core/Types/ValueBytes.h"

/// A value of every type with its octets, and octets that are no value of it. A type of the list that is missing here
/// does not compile.
namespace Vantor::Types {

/// `value()` writes `bytes()`, `other()` is not equal to it, and none of `undecodable()` is a value of the type; octets
/// of another count than the type's own need not be listed.
template <class T>
struct Sample;

/// For types whose values may be any octets of the right count.
struct EverythingDecodes {
  static std::vector<Bytes> undecodable() { return {}; }
};

inline const Bytes kSixteen = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77,
                               0x88, 0x99, 0xaa, 0xbb, 0xcc, 0xdd, 0xee, 0xff};

inline const Bytes kSixtyFour = [] {
  Bytes octets;
  for (uint8 octet = 0x80; octet < 0xc0; ++octet) octets.push_back(octet);
  return octets;
}();

inline const std::vector<Bytes> kNoCollections = {
    {},
    {0, 0, 0, 0, 0, 0, 0},                       // cut off in the item size
    {0, 0, 0, 1, 0, 0, 0, 2, 1},                 // fewer octets than counted
    {0, 0, 0, 1, 0, 0, 0, 2, 1, 2, 3},           // more octets than counted
    {0, 0, 0, 1, 0, 0, 0, 0},                    // an item of no octets
    {0xff, 0xff, 0xff, 0xff, 0, 0, 0, 0},        // very many of them
    {0x10, 0, 0, 0, 0, 0, 0, 16},                // 2^28 items of 16 octets: 2^32, which is 0 in 32 bits
    {0x10, 0, 0, 1, 0x10, 0, 0, 0, 1, 2, 3, 4},  // 2^56 + 2^28 octets
    {0x80, 0, 0, 0, 0, 0, 0, 2},
    {0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 1}};  // 2^64 - 2^33 + 1 octets

/// Two items of three octets.
template <class T>
T sampleCollection() {
  T collection(3);
  collection.append(auto_ptr<SimpleDataType>(new Unknown(Bytes{1, 2, 3})));
  collection.append(auto_ptr<SimpleDataType>(new Unknown(Bytes{4, 5, 6})));
  return collection;
}

template <>
struct Sample<J2KQuantisationDefault> {
  static J2KQuantisationDefault value() {
    const Bytes steps = {0x77, 0x1e};
    return J2KQuantisationDefault(0x42, steps.data(), steps.size());
  }
  static J2KQuantisationDefault other() { return J2KQuantisationDefault(0x42, nullptr, 0); }
  static Bytes bytes() { return {0x42, 0x77, 0x1e}; }
  static std::vector<Bytes> undecodable() { return {{}}; }
};

template <>
struct Sample<J2KCodingStyleDefault> {
  static J2KCodingStyleDefault value() {
    const Bytes style = {0x05, 0x03};
    return J2KCodingStyleDefault(0x01, 0x04000101, style.data(), style.size());
  }
  static J2KCodingStyleDefault other() { return J2KCodingStyleDefault(0x01, 0x04000101, nullptr, 0); }
  static Bytes bytes() { return {0x01, 0x04, 0x00, 0x01, 0x01, 0x05, 0x03}; }
  static std::vector<Bytes> undecodable() { return {{}, {0x01}, {0x01, 0x04, 0x00, 0x01}}; }
};

template <>
struct Sample<J2KPictureComponent> : EverythingDecodes {
  static J2KPictureComponent value() { return J2KPictureComponent(11, 1, 2); }
  static J2KPictureComponent other() { return J2KPictureComponent(11, 2, 1); }
  static Bytes bytes() { return {0x0b, 0x01, 0x02}; }
};

template <>
struct Sample<DataValue> : EverythingDecodes {
  static DataValue value() { return DataValue(Bytes{0x00, 0xff, 0x00}); }
  static DataValue other() { return DataValue(Bytes{0x00, 0xff}); }
  static Bytes bytes() { return {0x00, 0xff, 0x00}; }
};

template <>
struct Sample<StrongReference> : EverythingDecodes {
  static StrongReference value() { return StrongReference(kSixteen.data()); }
  static StrongReference other() { return StrongReference(); }
  static Bytes bytes() { return kSixteen; }
};

template <>
struct Sample<WeakReference> : EverythingDecodes {
  static WeakReference value() { return WeakReference(kSixteen.data()); }
  static WeakReference other() { return WeakReference(); }
  static Bytes bytes() { return kSixteen; }
};

template <>
struct Sample<Unknown> : EverythingDecodes {
  static Unknown value() { return Unknown(KLV::Value(Bytes{0xde, 0xad})); }
  static Unknown other() { return Unknown(Bytes{0xde, 0xad, 0x00}); }
  static Bytes bytes() { return {0xde, 0xad}; }
};

template <>
struct Sample<VersionType> : EverythingDecodes {
  static VersionType value() { return VersionType(1, 2); }
  static VersionType other() { return VersionType(2, 1); }
  static Bytes bytes() { return {0x01, 0x02}; }
};

template <>
struct Sample<UUID> : EverythingDecodes {
  static UUID value() { return UUID(kSixteen.data()); }
  static UUID other() { return UUID(); }
  static Bytes bytes() { return kSixteen; }
};

template <>
struct Sample<UTF8String> {
  static UTF8String value() { return UTF8String(wstring(u"h\u00e9\u20ac\U0001F600")); }
  static UTF8String other() { return UTF8String(wstring(u"h\u00e9")); }
  static Bytes bytes() { return {'h', 0xc3, 0xa9, 0xe2, 0x82, 0xac, 0xf0, 0x9f, 0x98, 0x80}; }
  static std::vector<Bytes> undecodable() {
    return {{'a', 0x00, 'b'},    // text after the first NUL
            {0x80},              // a continuation octet alone
            {0xc3},              // cut off
            {0xc0, 0xaf},        // overlong
            {0xed, 0xa0, 0x80},  // a surrogate
            {0xf4, 0x90, 0x80, 0x80}};
  }
};

template <>
struct Sample<UTF16String> {
  static UTF16String value() { return UTF16String(wstring(u"h\u00e9\U0001F600")); }
  static UTF16String other() { return UTF16String(wstring(u"h\u00e9")); }
  static Bytes bytes() { return {0x00, 'h', 0x00, 0xe9, 0xd8, 0x3d, 0xde, 0x00}; }
  static std::vector<Bytes> undecodable() {
    return {{0x00},                              // half a code unit
            {0x00, 'a', 0x00, 0x00, 0x00, 'b'},  // text after the first NUL
            {0xd8, 0x3d},                        // a high surrogate at the end
            {0xd8, 0x3d, 0x00, 'a'},             // a high surrogate before something else
            {0xde, 0x00},                        // a low surrogate alone
            {0xd8, 0x3d, 0x00, 0x00, 0xde, 0x00}};
  }
};

template <>
struct Sample<UTF16> : EverythingDecodes {
  static UTF16 value() { return UTF16(0x20ac); }
  static UTF16 other() { return UTF16(0xac20); }
  static Bytes bytes() { return {0x20, 0xac}; }
};

template <>
struct Sample<UniversalLabel> : EverythingDecodes {
  static UniversalLabel value() { return UniversalLabel(kSixteen.data()); }
  static UniversalLabel other() { return UniversalLabel(); }
  static Bytes bytes() { return kSixteen; }
};

template <>
struct Sample<UMID64> : EverythingDecodes {
  static UMID64 value() { return UMID64(kSixtyFour.data()); }
  static UMID64 other() { return UMID64(); }
  static Bytes bytes() { return kSixtyFour; }
};

template <>
struct Sample<UMID32> : EverythingDecodes {
  static UMID32 value() { return UMID32(kSixtyFour.data()); }
  static UMID32 other() { return UMID32(); }
  static Bytes bytes() { return Bytes(kSixtyFour.begin(), kSixtyFour.begin() + 32); }
};

template <>
struct Sample<UInt8> : EverythingDecodes {
  static UInt8 value() { return UInt8(0xfe); }
  static UInt8 other() { return UInt8(0xff); }
  static Bytes bytes() { return {0xfe}; }
};

template <>
struct Sample<UInt64> : EverythingDecodes {
  static UInt64 value() { return UInt64(0xfedcba9876543210); }
  static UInt64 other() { return UInt64(1); }
  static Bytes bytes() { return {0xfe, 0xdc, 0xba, 0x98, 0x76, 0x54, 0x32, 0x10}; }
};

template <>
struct Sample<UInt32> : EverythingDecodes {
  static UInt32 value() { return UInt32(0xfedcba98); }
  static UInt32 other() { return UInt32(1); }
  static Bytes bytes() { return {0xfe, 0xdc, 0xba, 0x98}; }
};

template <>
struct Sample<UInt16> : EverythingDecodes {
  static UInt16 value() { return UInt16(0xfedc); }
  static UInt16 other() { return UInt16(0xdcfe); }
  static Bytes bytes() { return {0xfe, 0xdc}; }
};

template <>
struct Sample<Timestamp> : EverythingDecodes {
  static Timestamp value() { return Timestamp(2024, 2, 29, 23, 59, 58, 999); }
  static Timestamp other() { return Timestamp(2024, 2, 29, 23, 59, 58, 500); }
  static Bytes bytes() { return {0x07, 0xe8, 2, 29, 23, 59, 58, 249}; }
};

template <>
struct Sample<SignalStandard> : EverythingDecodes {
  static SignalStandard value() { return SignalStandard(4); }
  static SignalStandard other() { return SignalStandard(5); }
  static Bytes bytes() { return {0x04}; }
};

template <>
struct Sample<RGBALayout> : EverythingDecodes {
  static RGBALayout value() {
    RGBALayout layout;
    layout.set(0, {'R', 10});
    layout.set(7, {'A', 8});
    return layout;
  }
  static RGBALayout other() { return RGBALayout(); }
  static Bytes bytes() { return {'R', 10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 'A', 8}; }
};

template <>
struct Sample<Rational> : EverythingDecodes {
  static Rational value() { return Rational(30000, -1001); }
  static Rational other() { return Rational(-1001, 30000); }
  static Bytes bytes() { return {0x00, 0x00, 0x75, 0x30, 0xff, 0xff, 0xfc, 0x17}; }
};

template <>
struct Sample<ProductVersion> : EverythingDecodes {
  static ProductVersion value() { return ProductVersion(1, 2, 3, 0x0405, ReleaseVersion::kBeta); }
  static ProductVersion other() { return ProductVersion(1, 2, 3, 0x0405, ReleaseVersion::kReleased); }
  static Bytes bytes() { return {0, 1, 0, 2, 0, 3, 4, 5, 0, 4}; }
};

template <>
struct Sample<Position> : EverythingDecodes {
  static Position value() { return Position(-2); }
  static Position other() { return Position(2); }
  static Bytes bytes() { return {0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xfe}; }
};

template <>
struct Sample<Orientation> : EverythingDecodes {
  static Orientation value() { return Orientation(3); }
  static Orientation other() { return Orientation(4); }
  static Bytes bytes() { return {0x03}; }
};

template <>
struct Sample<LocalTag> : EverythingDecodes {
  static LocalTag value() { return LocalTag(0x3c0a); }
  static LocalTag other() { return LocalTag(0x0a3c); }
  static Bytes bytes() { return {0x3c, 0x0a}; }
};

template <>
struct Sample<Length> : EverythingDecodes {
  static Length value() { return Length(0x0102030405060708); }
  static Length other() { return Length(-1); }
  static Bytes bytes() { return {1, 2, 3, 4, 5, 6, 7, 8}; }
};

template <>
struct Sample<ISO8String> {
  static ISO8String value() { return ISO8String("d\xe9j\xe0"); }
  static ISO8String other() { return ISO8String("deja"); }
  static Bytes bytes() { return {'d', 0xe9, 'j', 0xe0}; }
  static std::vector<Bytes> undecodable() { return {{'a', 0x00, 'b'}}; }
};

template <>
struct Sample<ISO7String> {
  static ISO7String value() { return ISO7String("text"); }
  static ISO7String other() { return ISO7String("Text"); }
  static Bytes bytes() { return {'t', 'e', 'x', 't'}; }
  static std::vector<Bytes> undecodable() { return {{'a', 0x80}, {'a', 0x00, 'b'}}; }
};

template <>
struct Sample<Int8> : EverythingDecodes {
  static Int8 value() { return Int8(-2); }
  static Int8 other() { return Int8(2); }
  static Bytes bytes() { return {0xfe}; }
};

template <>
struct Sample<Int64> : EverythingDecodes {
  static Int64 value() { return Int64(-2); }
  static Int64 other() { return Int64(2); }
  static Bytes bytes() { return {0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xfe}; }
};

template <>
struct Sample<Int32> : EverythingDecodes {
  static Int32 value() { return Int32(-2); }
  static Int32 other() { return Int32(2); }
  static Bytes bytes() { return {0xff, 0xff, 0xff, 0xfe}; }
};

template <>
struct Sample<Int16> : EverythingDecodes {
  static Int16 value() { return Int16(-2); }
  static Int16 other() { return Int16(2); }
  static Bytes bytes() { return {0xff, 0xfe}; }
};

template <>
struct Sample<DataStream> : EverythingDecodes {
  static DataStream value() { return DataStream(Bytes{0x01, 0xab, 0x00}); }
  static DataStream other() { return DataStream(Bytes{0x01, 0xab}); }
  static Bytes bytes() { return {0x01, 0xab, 0x00}; }
};

template <>
struct Sample<Boolean> {
  static Boolean value() { return Boolean(true); }
  static Boolean other() { return Boolean(false); }
  static Bytes bytes() { return {0x01}; }
  static std::vector<Bytes> undecodable() { return {{0x02}, {0xff}}; }
};

template <>
struct Sample<Batch> {
  static Batch value() { return sampleCollection<Batch>(); }
  static Batch other() { return Batch(3); }
  static Bytes bytes() { return {0, 0, 0, 2, 0, 0, 0, 3, 1, 2, 3, 4, 5, 6}; }
  static std::vector<Bytes> undecodable() { return kNoCollections; }
};

template <>
struct Sample<AUID> : EverythingDecodes {
  static AUID value() { return AUID(kSixteen.data()); }
  static AUID other() { return AUID(); }
  static Bytes bytes() { return kSixteen; }
};

template <>
struct Sample<Array> {
  static Array value() { return sampleCollection<Array>(); }
  static Array other() { return Array(3); }
  static Bytes bytes() { return {0, 0, 0, 2, 0, 0, 0, 3, 1, 2, 3, 4, 5, 6}; }
  static std::vector<Bytes> undecodable() { return kNoCollections; }
};

}  // namespace Vantor::Types
