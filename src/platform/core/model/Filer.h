// What an object tells of its stored data beyond its published properties.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/model/Persistent.h"
#include "platform/core/model/Streams.h"

namespace wrenfold {

using TReaderProc = std::function<void(TReader&)>;
using TWriterProc = std::function<void(TWriter&)>;
using TTextsReader = std::function<void(std::vector<std::string>)>;
using TTextsWriter = std::function<std::vector<std::string>()>;
using TStreamProc = std::function<void(TStream&)>;

// What an object defines its further stored data with, in both directions.
class TFiler {
 public:
  TFiler() = default;
  TFiler(const TFiler&) = delete;
  TFiler& operator=(const TFiler&) = delete;
  virtual ~TFiler() = default;

  // A stored property of the given name, read and written by procedures; written when hasData.
  virtual void DefineProperty(std::string_view name, const TReaderProc& readData,
                              const TWriterProc& writeData, bool hasData) = 0;
  // The same as a list of texts; a list that cannot be read whole reaches nobody.
  virtual void DefineTexts(std::string_view name, const TTextsReader& readTexts,
                           const TTextsWriter& writeTexts, bool hasData) = 0;
  // The same as raw bytes.
  virtual void DefineBinaryProperty(std::string_view name, const TStreamProc& readData,
                                    const TStreamProc& writeData, bool hasData) = 0;
  // Whether data that equals what a new object has is to be written as well.
  virtual bool WritesDefaults() const { return false; }

  // The object whose components and methods names in the stream refer to.
  TPersistent* Root = nullptr;
};

}  // namespace wrenfold
