// The platform's reader and writer with the suite's way of dealing with errors.
#pragma once

#include "platform/core/stream/Reader.h"
#include "platform/core/stream/Writer.h"

namespace wrenfold {

// The object whose components the names in an object's record refer to: the owner of a component
// that has a named one, else the object itself.
TPersistent* NamingRoot(TPersistent& object);

// A reader that asks the user whether to go on when a property cannot be read.
class TAdvReader : public TReader {
 public:
  using TReader::TReader;

  // Goes on silently instead of asking.
  bool IgnoreErrors = false;

 protected:
  // Once the user has said no, the error stands without another question on its way up.
  bool Error(const std::string& message) override;

 private:
  bool FRefused = false;
};

// A writer by the platform's rules.
class TAdvWriter : public TWriter {
 public:
  using TWriter::TWriter;
};

}  // namespace wrenfold
