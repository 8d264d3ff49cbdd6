#pragma once

namespace Vantor {

/// How an identifier (key, universal label, UUID, AUID, UMID) is written as text. Text is read in either form, upper or
/// lower case, whichever value the reader is given. The numbers are part of the interface.
enum StringRepresentationEncodingType {
  /// Upper-case hexadecimal pairs joined by points, "06.0E.2B.34...": 47 code units for 16 bytes, 95 for 32, 191
  /// for 64.
  kDottedForm = 0,
  /// Lower-case URN: "urn:smpte:ul:" and four groups of eight digits (RFC 5119, ST 2029), "urn:uuid:" and 8-4-4-4-12
  /// digits (RFC 4122), "urn:smpte:umid:" and eight or sixteen groups of eight digits.
  kUrnForm = 5
};

}  // namespace Vantor
