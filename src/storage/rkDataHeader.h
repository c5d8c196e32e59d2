// The short header in front of stored data that names its format and describes it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/core/model/Streams.h"
#include "storage/rkDataProps.h"

namespace wrenfold {

// osfBin: one root component after the other; osfResBin: each behind a resource header; osfExtBin:
// one signature, then each object's properties alone; osfText: the text form.
enum TObjectStorageFormat : std::uint8_t { osfBin, osfResBin, osfExtBin, osfText };

// What a header tells: the format, and whether binary bodies stand behind resource headers.
struct TObjDataDscr {
  TObjectStorageFormat Format = osfBin;
  bool IsRes = false;
};

// The character that underlines the text header.
extern char SeparatorChar;

// A longer description than 255 bytes is cut.
void WriteBinDataHeader(TStream& stream, bool isRes, std::string_view description);
// Line breaks of the description become blanks.
void WriteTextDataHeader(TStream& stream, std::string_view description);

// Reads a header of either form. Of a text header the description keeps the blank in front of it,
// and isRes stays as it was. Raises EDataHandlingError when there is no header, EReadError when it
// is cut off.
void ReadDataHeader(TStream& stream, TObjectStorageFormat& format, bool& isRes,
                    std::string& description);
void SkipDataHeader(TStream& stream);

}  // namespace wrenfold
