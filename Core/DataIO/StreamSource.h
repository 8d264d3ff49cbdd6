#pragma once

#include <cstddef>
#include <string>

#include "Core/DataIO/ForwardSource.h"
#include "Core/DataIO/System.h"

namespace Vantor::DataIO::File {

/// Reads a C stream from front to back: a pipe, a terminal, a connection. What the stream reads ahead is its own
/// matter; see openStandardInput().
class StreamSource : public ForwardSource {
 public:
  /// @param name  how messages name the stream.
  StreamSource(Stream stream, std::string name);

 protected:
  std::size_t receive(uint8* to, std::size_t size) override;

 private:
  Stream stream_;
  std::string name_;
};

}  // namespace Vantor::DataIO::File
